/* Data generated with Vantorelle 0.1.0 */
/* 14/03/2026 15:09:26 */
/* Bitmap Source file : NewBitmap.bmp */
/* Byte width format is 8 bit / Big endian */

// FOR GRAPHICS exported from WORK CANVAS

#include <avr/pgmspace.h>

const uint8_t  NewBitmap [] PROGMEM = {

 0x81,     /*  #______#  */
 0x42,     /*  _#____#_  */
 0x24,     /*  __#__#__  */
 0x18,     /*  ___##___  */
 0x18,     /*  ___##___  */
 0x24,     /*  __#__#__  */
 0x42,     /*  _#____#_  */
 0x81     /*  #______#  */
};

const uint8_t  NewBitmapWidthPages = 1 ;

const uint8_t  NewBitmapHeightPixels = 8 ;
/******************/
/* 8 Bytes */
/* End of LCD Pattern           */
/* Save table and see info file NewBitmap.rtf */

