/* Data generated with Vantorelle V01a */
/* DD/MM/YYYY hh:mm:ss */
/* Bitmap Source file : splash-1.png */
/* Byte width format is 8 bit / Big endian */

// FOR GRAPHICS exported from WORK CANVAS

#include <avr/pgmspace.h>

const uint8_t  splash1 [] PROGMEM = {

 0b11111111,  0b11111111 ,  0b10000000 ,  0b00000001 ,
 0b10110000,  0b11110001 ,  0b10110000 ,  0b00010001 ,
 0b10000001,  0b00010001 ,  0b10000011 ,  0b10000001 ,
 0b10000000,  0b00000001 ,  0b11111111 ,  0b11111111 
};

const uint8_t  splash1WidthPages = 2 ;

const uint8_t  splash1HeightPixels = 8 ;
/******************/
/* 16 Bytes */
/* End of LCD Pattern           */
/* Save table and see info file splash1.rtf */

