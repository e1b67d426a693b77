/* Data generated with Vantorelle V01a */
/* DD/MM/YYYY hh:mm:ss */
/* Bitmap Source file : splash-1.png */
/* Byte width format is 8 bit / Big endian */

// FOR GRAPHICS exported from WORK CANVAS

#include <avr/pgmspace.h>

const uint8_t  splash1 [] PROGMEM = {

 0xFF , 0x81 , 0xB1 , 0xB1 , 0x81 , 0x81 , 0x85 , 0x8D , 0xA5 , 0xA1 , 0xA1 , 0xB9 , 0x81 , 0x81 , 0x81 , 0xFF
};

const uint8_t  splash1WidthPixels = 16 ;

const uint8_t  splash1HeightPages = 1 ;
/******************/
/* 16 Bytes */
/* End of LCD Pattern           */
/* Save table and see info file splash1.rtf */

