/* Data generated with Vantorelle V01a */
/* DD/MM/YYYY hh:mm:ss */
/* Bitmap Source file : gray100.png */
/* Byte width format is 8 bit / Big endian */

// FOR GRAPHICS exported from WORK CANVAS

#include <avr/pgmspace.h>

const uint8_t  gray100 [] PROGMEM = {

 0xB6 , 0xDB 
};

const uint8_t  gray100WidthPages = 2 ;

const uint8_t  gray100HeightPixels = 1 ;
/******************/
/* 2 Bytes */
/* End of LCD Pattern           */
/* Save table and see info file gray100.rtf */

