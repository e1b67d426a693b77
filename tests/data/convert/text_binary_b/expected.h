/* Data generated with Vantorelle 0.1.0 */
/* 14/03/2026 15:09:26 */
/* Bitmap Source file : NewBitmap.bmp */
/* Byte width format is 8 bit / Big endian */

// FOR GRAPHICS exported from WORK CANVAS

#include <avr/pgmspace.h>

const uint8_t  NewBitmap [] PROGMEM = {

 00000000b,  00000001b,  00000010b,  00000011b,
 10100000b,  10100001b,  10011111b,  11111111b,
 00000101b,  00010000b,  10000000b,  01111111b
};

const uint8_t  NewBitmapWidthPages = 1 ;

const uint8_t  NewBitmapHeightPixels = 12 ;
/******************/
/* 12 Bytes */
/* End of LCD Pattern           */
/* Save table and see info file NewBitmap.rtf */

