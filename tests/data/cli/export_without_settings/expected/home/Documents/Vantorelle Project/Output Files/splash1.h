/* Data generated with Vantorelle V01a */
/* DD/MM/YYYY hh:mm:ss */
/* Bitmap Source file : splash-1.png */
/* Byte width format is 8 bit / Big endian */

// FOR GRAPHICS exported from WORK CANVAS

#include <avr/pgmspace.h>

const uint8_t  splash1 [] PROGMEM = {

 0xFF , 0xFF , 0x80 , 0x01 , 0xB0 , 0xF1 , 0xB0 , 0x11 , 0x81 , 0x11 , 0x83 , 0x81 , 0x80 , 0x01 , 0xFF , 0xFF
};

const uint8_t  splash1WidthPages = 2 ;

const uint8_t  splash1HeightPixels = 8 ;
/******************/
/* 16 Bytes */
/* End of LCD Pattern           */
/* Save table and see info file splash1.rtf */

