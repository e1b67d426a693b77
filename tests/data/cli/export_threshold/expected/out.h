/* Data generated with Vantorelle V01a */
/* DD/MM/YYYY hh:mm:ss */
/* Bitmap Source file : colours.png */
/* Byte width format is 8 bit / Big endian */

// FOR GRAPHICS exported from WORK CANVAS

#include <avr/pgmspace.h>

const uint8_t  colours [] PROGMEM = {

 0xA5 , 0xF8 
};

const uint8_t  coloursWidthPages = 1 ;

const uint8_t  coloursHeightPixels = 2 ;
/******************/
/* 2 Bytes */
/* End of LCD Pattern           */
/* Save table and see info file colours.rtf */

