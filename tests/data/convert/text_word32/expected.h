/* Data generated with Vantorelle 0.1.0 */
/* 14/03/2026 15:09:26 */
/* Bitmap Source file : NewBitmap.bmp */
/* Word width format is 32 bit / Big endian */

// FOR GRAPHICS exported from WORK CANVAS

#include <avr/pgmspace.h>

const uint32_t  NewBitmap [] PROGMEM = {

 0x81422418  ,     /*  #______#_#____#___#__#_____##___  */
 0xFF00AA55  ,     /*  ########________#_#_#_#__#_#_#_#  */
 0x12345678  ,     /*  ___#__#___##_#___#_#_##__####___  */
 0x9FA00510       /*  #__######_#__________#_#___#____  */
};

const uint8_t  NewBitmapWidthPages = 4 ;

const uint8_t  NewBitmapHeightPixels = 4 ;
/******************/
/* 4 Words */
/* End of LCD Pattern           */
/* Save table and see info file NewBitmap.rtf */

