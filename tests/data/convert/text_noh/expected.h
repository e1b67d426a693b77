/* Data generated with Vantorelle 0.1.0 */
/* 14/03/2026 15:09:26 */
/* Bitmap Source file : NewBitmap.bmp */
/* Byte width format is 8 bit / Big endian */

static const unsigned char NewBitmap[] = {
 0x81 , 0x42 , 0x24 , 0x18,
 0x18 , 0x24 , 0x42 , 0x81
};

const uint8_t  NewBitmapWidthPages = 1 ;

const uint8_t  NewBitmapHeightPixels = 8 ;
/******************/
/* 8 Bytes */
/* End of LCD Pattern           */
/* Save table and see info file NewBitmap.rtf */

