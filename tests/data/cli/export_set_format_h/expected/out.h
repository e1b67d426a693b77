/* Data generated with Vantorelle V01a */
/* DD/MM/YYYY hh:mm:ss */
/* Bitmap Source file : splash-1.png */
/* Byte width format is 8 bit / Big endian */

// FOR GRAPHICS exported from WORK CANVAS

#include <avr/pgmspace.h>

const uint8_t  splash1 [] PROGMEM = {

 FFh, FFh , 80h , 01h , B0h , F1h , B0h , 11h , 81h , 11h , 83h , 81h , 80h , 01h , FFh , FFh 
};

const uint8_t  splash1WidthPages = 2 ;

const uint8_t  splash1HeightPixels = 8 ;
/******************/
/* 16 Bytes */
/* End of LCD Pattern           */
/* Save table and see info file splash1.rtf */

