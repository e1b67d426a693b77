/* Data generated with Vantorelle 0.1.0 */
/* 14/03/2026 15:09:26 */
/* Bitmap Source file : NewBitmap.bmp */
/* Byte width format is 8 bit / Big endian */

// FOR GRAPHICS exported from WORK CANVAS

#include <avr/pgmspace.h>

const uint8_t  NewBitmap [] PROGMEM = {

0  , 1  , 2  , 3  , 4  , 5  , 6  , 7  , 8  , 9  ,
10 , 11 , 12 , 13 , 14 , 15 , 160, 161, 162, 163,
164, 165, 166, 167, 168, 169, 170, 171, 172, 173,
174, 175, 159, 255, 5  , 16 , 128, 1  , 254, 127
};

const uint8_t  NewBitmapWidthPages = 2 ;

const uint8_t  NewBitmapHeightPixels = 20 ;
/******************/
/* 40 Bytes */
/* End of LCD Pattern           */
/* Save table and see info file NewBitmap.rtf */

