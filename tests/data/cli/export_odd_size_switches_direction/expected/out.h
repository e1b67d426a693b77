/* Data generated with Vantorelle V01a */
/* DD/MM/YYYY hh:mm:ss */
/* Bitmap Source file : odd.png */
/* Byte width format is 8 bit / Big endian */

// FOR GRAPHICS exported from WORK CANVAS

#include <avr/pgmspace.h>

const uint8_t  odd [] PROGMEM = {

};

const uint8_t  oddWidthPixels = 13 ;

const uint8_t  oddHeightPages = 0 ;
/******************/
/* 0 Bytes */
/* End of LCD Pattern           */
/* Save table and see info file odd.rtf */

