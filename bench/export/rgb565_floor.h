/* SPDX-License-Identifier: MIT */
#ifndef VT_BENCH_RGB565_FLOOR_H
#define VT_BENCH_RGB565_FLOOR_H
#include <stddef.h>
#ifdef __cplusplus
extern "C" {
#endif
/* Writes the RGB565 text of `count` pixels to `out` (at least 11 * count bytes); returns its
 * length. */
size_t Rgb565FloorText(const unsigned* pixels, size_t count, char* out);
#ifdef __cplusplus
}
#endif
#endif
