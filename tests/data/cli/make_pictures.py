#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Writes the input pictures of the command-line goldens from the grids below.

Run from anywhere: python3 tests/data/cli/make_pictures.py. The pictures are small on purpose,
so that the expected bytes of each case can be worked out by hand from these grids.
"""
import os
import struct
import zlib

HERE = os.path.dirname(os.path.abspath(__file__))

BLACK, WHITE = (0, 0, 0), (255, 255, 255)
COLOURS = {
    '#': BLACK, '.': WHITE,
    'R': (255, 0, 0), 'G': (0, 255, 0), 'B': (0, 0, 255),
    'Y': (255, 255, 0), 'C': (0, 255, 255), 'M': (255, 0, 255),
}

# 16 x 8, black '#' and white '.': a frame with a few marks inside, different in each half
# and in each direction so that a wrong walk shows.
MONO_16X8 = [
    "################",
    "#..............#",
    "#.##....####...#",
    "#.##.......#...#",
    "#......#...#...#",
    "#.....###......#",
    "#..............#",
    "################",
]

# 13 x 7: neither side a multiple of 8.
MONO_13X7 = [
    "#############",
    "#...........#",
    "#.###.......#",
    "#.....#.....#",
    "#.......###.#",
    "#...........#",
    "#############",
]


def counting_24x8():
    """24 x 8 by rows: row y, byte b (0 to 2) holds 3y + b, its first pixel the top bit."""
    rows = []
    for y in range(8):
        row = ''
        for b in range(3):
            value = 3 * y + b
            row += ''.join('#' if value >> (7 - bit) & 1 else '.' for bit in range(8))
        rows.append(row)
    return rows


def grid(rows):
    return [[COLOURS[c] for c in row] for row in rows]


def gray(*levels):
    return [(g, g, g) for g in levels]


# 8 x 2: six colours, black and white; then eight grays. Grayed with (77R + 150G + 29B) >> 8:
# red 76, green 149, blue 28, yellow 226, cyan 178, magenta 105.
COLOURS_8X2 = [
    [COLOURS[c] for c in "RGBYCM.#"],
    gray(0, 32, 64, 96, 127, 128, 200, 255),
]

# 16 x 1, all gray 100.
GRAY100_16X1 = [gray(*[100] * 16)]

# 8 x 2 in the four levels of 2 bits: 0, 85, 170, 255.
GRAY4_8X2 = [
    gray(0, 85, 170, 255, 255, 170, 85, 0),
    gray(255, 255, 0, 0, 85, 85, 170, 170),
]

# 4 x 2 in the pure colours of the 5-6-5 grid.
COLOURS_4X2 = [
    [COLOURS[c] for c in "RGB."],
    [COLOURS[c] for c in "#YCM"],
]


def png_bytes(pixels):
    height, width = len(pixels), len(pixels[0])
    raw = b''.join(b'\x00' + b''.join(bytes(p) for p in row) for row in pixels)

    def chunk(kind, data):
        return (struct.pack('>I', len(data)) + kind + data +
                struct.pack('>I', zlib.crc32(kind + data) & 0xFFFFFFFF))

    header = struct.pack('>IIBBBBB', width, height, 8, 2, 0, 0, 0)
    return (b'\x89PNG\r\n\x1a\n' + chunk(b'IHDR', header) +
            chunk(b'IDAT', zlib.compress(raw, 9)) + chunk(b'IEND', b''))


def bmp_bytes(pixels):
    """24-bit bottom-up BMP, rows padded to 4 bytes."""
    height, width = len(pixels), len(pixels[0])
    stride = (width * 3 + 3) & ~3
    data = b''
    for row in reversed(pixels):
        line = b''.join(bytes((b, g, r)) for r, g, b in row)
        data += line + b'\x00' * (stride - len(line))
    info = struct.pack('<IiiHHIIiiII', 40, width, height, 1, 24, 0, len(data), 2835, 2835, 0, 0)
    header = struct.pack('<2sIHHI', b'BM', 14 + 40 + len(data), 0, 0, 14 + 40)
    return header + info + data


def write(case, name, data):
    folder = os.path.join(HERE, case)
    os.makedirs(folder, exist_ok=True)
    with open(os.path.join(folder, name), 'wb') as f:
        f.write(data)


def main():
    mono = png_bytes(grid(MONO_16X8))
    for case in ('export_mono_default', 'export_word16', 'export_word32', 'export_bin',
                 'export_direction_td', 'export_direction_tl_corner3', 'export_set_format_h',
                 'export_set_neg_cleared_by_monochrome', 'export_set_number_warning',
                 'export_compression_with_word16', 'export_compression_with_bin',
                 'export_unknown_mode', 'export_unknown_direction', 'export_bad_corner',
                 'export_bad_output_width', 'export_threshold_and_dither',
                 'export_threshold_out_of_range', 'export_unknown_dither',
                 'export_threshold_in_gray_mode', 'export_set_without_equals',
                 'export_set_unknown_key', 'export_option_without_value',
                 'export_unexpected_argument', 'export_two_pages_gray_with_word16',
                 'export_monochrome_inverted', 'export_set_by_section', 'export_without_settings',
                 'export_output_is_a_folder', 'export_batch_invert', 'export_batch_endless'):
        write(case, 'splash-1.png', mono)
    write('export_ihex', 'counting.bmp', bmp_bytes(grid(counting_24x8())))
    thirteen = png_bytes(grid(MONO_13X7))
    write('export_direction_does_not_fit', 'odd.png', thirteen)
    write('export_odd_size_switches_direction', 'odd.png', thirteen)
    colours = png_bytes(COLOURS_8X2)
    for case in ('export_threshold', 'export_dither_nearest', 'export_unconverted_colours'):
        write(case, 'colours.png', colours)
    write('export_dither_floyd_steinberg', 'gray100.png', png_bytes(GRAY100_16X1))
    write('export_gray4', 'grays.png', png_bytes(GRAY4_8X2))
    write('export_colors65536', 'colours.png', png_bytes(COLOURS_4X2))
    write('export_picture_too_large', 'wide.png', png_bytes([[WHITE] * 1025]))
    write('export_truncated_picture', 'cut.png', mono[:60])
    write('export_not_a_picture', 'words.png', b'these are words, not a picture\n')
    write('export_not_a_graphic_file', 'words.txt', b'these are words, not a picture\n')


if __name__ == '__main__':
    main()
