/* SPDX-License-Identifier: MIT */
/* The floor of the export benchmark: the least a converter of a picture to RGB565 text can do.
 * Each pixel (0x00BBGGRR, as the canvas stores it) becomes one 16-bit word written as two byte
 * constants "0xHH," with 16 constants a line. No settings, no palette, no header. */
#include "rgb565_floor.h"

static const char kDigits[] = "0123456789ABCDEF";

static char* PutByte(char* out, unsigned v) {
  out[0] = '0';
  out[1] = 'x';
  out[2] = kDigits[(v >> 4) & 15];
  out[3] = kDigits[v & 15];
  out[4] = ',';
  return out + 5;
}

size_t Rgb565FloorText(const unsigned* pixels, size_t count, char* out) {
  char* p = out;
  size_t onLine = 0;
  for (size_t i = 0; i < count; ++i) {
    const unsigned c = pixels[i];
    const unsigned r = c & 0xFF, g = (c >> 8) & 0xFF, b = (c >> 16) & 0xFF;
    const unsigned word = ((r >> 3) << 11) | ((g >> 2) << 5) | (b >> 3);
    p = PutByte(p, word >> 8);
    p = PutByte(p, word & 0xFF);
    onLine += 2;
    if (onLine == 16) {
      *p++ = '\n';
      onLine = 0;
    }
  }
  return (size_t)(p - out);
}
