' Data generated with Vantorelle 0.1.0 
' 14/03/2026 15:09:26
' Bitmap Source file : NewBitmap.bmp
' Byte width format is 8 bit / Big endian

' NewBitmap data
0 DATA &H00, &H01, &H02, &H03
1 DATA &HA0, &HA1, &H9F, &HFF
2 DATA &H05, &H10, &H80, &H7F
' end of data

const uint8_t  NewBitmapWidthPages = 1 ;

const uint8_t  NewBitmapHeightPixels = 12 ;

const uint8_t  NewBitmapX = 0 ;

const uint8_t  NewBitmapY = 0 ;
' ******************
' 12 Bytes 
'  End of LCD Pattern  
'  Save table and see info file NewBitmap.rtf
