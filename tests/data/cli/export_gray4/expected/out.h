/* Data generated with Vantorelle V01a */
/* DD/MM/YYYY hh:mm:ss */
/* Bitmap Source file : grays.png */
/* Byte width format is 8 bit / Big endian */

// FOR GRAPHICS exported from WORK CANVAS

#include <avr/pgmspace.h>

const uint8_t  grays [] PROGMEM = {

 0x1B , 0xE4 , 0xF0 , 0x5A 
};

const uint8_t  graysWidthPages = 2 ;

const uint8_t  graysHeightPixels = 2 ;
/******************/
/* 4 Bytes */
/* End of LCD Pattern           */
/* Save table and see info file grays.rtf */

