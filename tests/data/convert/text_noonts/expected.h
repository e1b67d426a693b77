// FOR GRAPHICS exported from WORK CANVAS

#include <avr/pgmspace.h>

const uint8_t  NewBitmap [] PROGMEM = {

 0x81 , 0x42 , 0x24 , 0x18,
 0x18 , 0x24 , 0x42 , 0x81
};

const uint8_t  NewBitmapWidthPages = 1 ;

const uint8_t  NewBitmapHeightPixels = 8 ;
