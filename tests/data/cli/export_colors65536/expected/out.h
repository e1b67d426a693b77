/* Data generated with Vantorelle V01a */
/* DD/MM/YYYY hh:mm:ss */
/* Bitmap Source file : colours.png */
/* Byte width format is 8 bit / Big endian */

// FOR GRAPHICS exported from WORK CANVAS

#include <avr/pgmspace.h>

const uint8_t  colours [] PROGMEM = {

 0xF8 , 0x00 , 0x07 , 0xE0 , 0x00 , 0x1F , 0xFF , 0xFF , 0x00 , 0x00 , 0xFF , 0xE0 , 0x07 , 0xFF , 0xF8 , 0x1F
};

const uint8_t  coloursWidthPages = 4 ;

const uint8_t  coloursHeightPixels = 2 ;
/******************/
/* 16 Bytes */
/* End of LCD Pattern           */
/* Save table and see info file colours.rtf */

