/* Data generated with Vantorelle V01a */
/* DD/MM/YYYY hh:mm:ss */
/* Bitmap Source file : splash-1.png */
/* Word width format is 32 bit / Big endian */

// FOR GRAPHICS exported from WORK CANVAS

#include <avr/pgmspace.h>

const uint32_t  splash1 [] PROGMEM = {

 0xFFFF8001  ,,     /*  #################______________#  */
 0xB0F1B011  ,,     /*  #_##____####___##_##_______#___#  */
 0x81118381  ,,     /*  #______#___#___##_____###______#  */
 0x8001FFFF  ,     /*  #______________#################  */
};

const uint8_t  splash1WidthPages = 2 ;

const uint8_t  splash1HeightPixels = 8 ;
/******************/
/* 4 Words */
/* End of LCD Pattern           */
/* Save table and see info file splash1.rtf */

