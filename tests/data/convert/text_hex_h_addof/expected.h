; Data generated with Vantorelle 0.1.0 
; 14/03/2026 15:09:26
; Bitmap Source file : NewBitmap.bmp
; Byte width format is 8 bit / Big endian

// FOR GRAPHICS exported from WORK CANVAS

#include <avr/pgmspace.h>

const uint8_t  NewBitmap [] PROGMEM = {

 00h, 01h , 02h , 03h , 04h , 05h , 06h , 07h 
 08h, 09h , 0Ah , 0Bh , 0Ch , 0Dh , 0Eh , 0Fh 
 0A0h, 0A1h , 0A2h , 0A3h , 0A4h , 0A5h , 0A6h , 0A7h 
 0A8h, 0A9h , 0AAh , 0ABh , 0ACh , 0ADh , 0AEh , 0AFh 
 9Fh, 0FFh , 05h , 10h , 80h , 01h , 0FEh , 7Fh 
};

const uint8_t  NewBitmapWidthPages = 2 ;

const uint8_t  NewBitmapHeightPixels = 20 ;
; ******************
; 40 Bytes 
;  End of LCD Pattern  
;  Save table and see info file NewBitmap.rtf
