/* Data generated with Vantorelle V01a */
/* 14/03/2026 15:09:26 */
/* Bitmap Source file : NewBitmap.bmp */
/* Byte width format is 8 bit / Big endian */

// FOR GRAPHICS exported from WORK CANVAS

#include <avr/pgmspace.h>

const uint8_t  Logo [] PROGMEM = {

 0xFF , 0xFF , 0xFF , 0x00 , 0x80 , 0x00 , 0x00 , 0x01 , 0xF0 , 0x00 , 0xAA , 0xAA , 0x00 , 0x00 , 0x00 , 0x80
};

const uint8_t  LogoWidthPages = 2 ;

const uint8_t  LogoHeightPixels = 8 ;
/******************/
/* 16 Bytes */
/* End of LCD Pattern           */
/* Save table and see info file Logo.rtf */

