/* Data generated with Vantorelle V01a */
/* DD/MM/YYYY hh:mm:ss */
/* Bitmap Source file : splash-1.png */
/* Word width format is 16 bit / Big endian */

// FOR GRAPHICS exported from WORK CANVAS

#include <avr/pgmspace.h>

const uint16_t  splash1 [] PROGMEM = {

 0xFFFF , 0x8001 , 0xB0F1 , 0xB011 , 0x8111 , 0x8381 , 0x8001 , 0xFFFF 
};

const uint8_t  splash1WidthPages = 2 ;

const uint8_t  splash1HeightPixels = 8 ;
/******************/
/* 8 Words */
/* End of LCD Pattern           */
/* Save table and see info file splash1.rtf */

