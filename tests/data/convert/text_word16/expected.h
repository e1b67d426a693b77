/* Data generated with Vantorelle 0.1.0 */
/* 14/03/2026 15:09:26 */
/* Bitmap Source file : NewBitmap.bmp */
/* Word width format is 16 bit / Big endian */

// FOR GRAPHICS exported from WORK CANVAS

#include <avr/pgmspace.h>

const uint16_t  NewBitmap [] PROGMEM = {

 0x0001 , 0x0203 , 0x0405 , 0x0607 , 0x0809 , 0x0A0B , 0x0C0D , 0x0E0F,
 0xA0A1 , 0xA2A3 , 0xA4A5 , 0xA6A7 , 0xA8A9 , 0xAAAB , 0xACAD , 0xAEAF,
 0x9FFF , 0x0510 , 0x8001 , 0xFE7F 
};

const uint8_t  NewBitmapWidthPages = 2 ;

const uint8_t  NewBitmapHeightPixels = 20 ;
/******************/
/* 20 Words */
/* End of LCD Pattern           */
/* Save table and see info file NewBitmap.rtf */

