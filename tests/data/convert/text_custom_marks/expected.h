/* Data generated with Vantorelle 0.1.0 */
/* 14/03/2026 15:09:26 */
/* Bitmap Source file : NewBitmap.bmp */
/* Byte width format is 8 bit / Big endian */

// FOR GRAPHICS exported from WORK CANVAS

#include <avr/pgmspace.h>

const uint8_t  NewBitmap [] PROGMEM = {

 0x00 ; 0x01 ; 0x02 ; 0x03 &
 0xA0 ; 0xA1 ; 0x9F ; 0xFF &
 0x05 ; 0x10 ; 0x80 ; 0x7F 
};

const uint8_t  NewBitmapWidthPages = 1 ;

const uint8_t  NewBitmapHeightPixels = 12 ;
/******************/
/* 12 Bytes */
/* End of LCD Pattern           */
/* Save table and see info file NewBitmap.rtf */

