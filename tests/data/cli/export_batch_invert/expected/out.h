/* Data generated with Vantorelle V01a */
/* DD/MM/YYYY hh:mm:ss */
/* Bitmap Source file : splash-1.png */
/* Byte width format is 8 bit / Big endian */
/* Postprocessing is ENABLED  */

// FOR GRAPHICS exported from WORK CANVAS

#include <avr/pgmspace.h>

const uint8_t  splash1 [] PROGMEM = {

 0x00 , 0x00 , 0x7F , 0xFE , 0x4F , 0x0E , 0x4F , 0xEE , 0x7E , 0xEE , 0x7C , 0x7E , 0x7F , 0xFE , 0x00 , 0x00
};

const uint8_t  splash1WidthPages = 2 ;

const uint8_t  splash1HeightPixels = 8 ;
/******************/
/* 16 Bytes */
/* End of LCD Pattern           */
/* Save table and see info file splash1.rtf */

