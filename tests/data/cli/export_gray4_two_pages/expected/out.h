/* Data generated with Vantorelle V01a */
/* DD/MM/YYYY hh:mm:ss */
/* Bitmap Source file : levels.png */
/* Byte width format is 8 bit / Big endian */

// FOR GRAPHICS exported from WORK CANVAS

#include <avr/pgmspace.h>

const uint8_t  levels [] PROGMEM = {

 0x3C , 0xFF 
};

const uint8_t  d_levels [] PROGMEM = {
 0x5A , 0xFF 
};

const uint8_t  levelsWidthPixels = 2 ;

const uint8_t  levelsHeightPages = 2 ;
/******************/
/* 2 Bytes */
/* End of LCD Pattern           */
/* Save table and see info file levels.rtf */

