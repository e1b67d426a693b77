#!/usr/bin/env bash
# Exports a few small pictures in a choice of modes, directions and keys with one build of
# vantorelle-cli twice, once as it is and once with VT_REFERENCE_PATHS=1 (the plain reference
# paths in place of the fast ones), and fails on any difference of output file, messages or
# exit status (tools/compare_exports.sh does the comparing). About a minute on two cores.
# Usage: tools/both_paths.sh CLI [WORK_DIR]
# PICTURES=DIR takes the pictures of DIR (.png, .bmp) instead of the ones drawn here; MODES,
# DIRECTIONS and KEYS replace the choice below (as compare_exports.sh takes them).
set -euo pipefail
here="$(cd "$(dirname "$0")" && pwd)"
cli="$1"
work="${2:-$(mktemp -d)}"
mkdir -p "$work"

# Appends the four bytes of $1, lowest first, as printf escapes to `bytes`.
le32() {
  local escaped
  printf -v escaped '\\x%02x\\x%02x\\x%02x\\x%02x' $(($1 & 255)) $((($1 >> 8) & 255)) \
    $((($1 >> 16) & 255)) $((($1 >> 24) & 255))
  bytes+=$escaped
}

# draw FILE WIDTH HEIGHT SEED: a 24-bit BMP of colours anywhere, black and white among them,
# with runs of one colour, drawn from SEED.
draw() {
  local file=$1 width=$2 height=$3 state=$4
  local row=$(((width * 3 + 3) / 4 * 4)) x y r=0 g=0 b=0 pick pixel
  local bytes='BM'
  le32 $((54 + row * height)); le32 0; le32 54; le32 40; le32 "$width"; le32 "$height"
  bytes+='\x01\x00\x18\x00'
  le32 0; le32 $((row * height)); le32 2835; le32 2835; le32 0; le32 0
  for ((y = 0; y < height; y++)); do
    for ((x = 0; x < width; x++)); do
      state=$(((state * 1103515245 + 12345) & 0x7FFFFFFF))
      pick=$(((state >> 16) % 8))
      if ((pick == 0)); then
        r=0 g=0 b=0
      elif ((pick == 1)); then
        r=255 g=255 b=255
      elif ((pick > 2)); then # 2 repeats the pixel before
        r=$(((state >> 3) & 255)) g=$(((state >> 11) & 255)) b=$(((x * 255 / width + y * 37) & 255))
      fi
      printf -v pixel '\\x%02x\\x%02x\\x%02x' "$b" "$g" "$r"
      bytes+=$pixel
    done
    for ((x = width * 3; x < row; x++)); do bytes+='\x00'; done
  done
  printf "$bytes" >"$file"
}

pictures="${PICTURES:-}"
if [ -z "$pictures" ]; then
  pictures="$work/pictures"
  rm -rf "$pictures" && mkdir -p "$pictures"
  draw "$pictures/p16x8.bmp" 16 8 1
  draw "$pictures/p13x7.bmp" 13 7 2
  draw "$pictures/p37x19.bmp" 37 19 3
fi

# Every mode family once, the directions of each walker family, keys that change the bytes,
# the spelling, the line shape and the end of the array.
export MODES="${MODES:-monochrome gray4 gray4-2pages gray32-packed gray32-r gray16-h gray16-slices
  colors8 colors16 gray256 colors256 colors4096-packed colors65536 colors262k colors16m}"
export DIRECTIONS="${DIRECTIONS:-default tl tra td tua}"
default_keys='- MSBF=0|Neg=1|ORGC=3|delallas=1 FXHB=+D+|ColRx=1|fpar11={|fpar12=}|ORGC=5'
export KEYS="${KEYS:-$default_keys}"
export OLD_ENV="" NEW_ENV="VT_REFERENCE_PATHS=1"
"$here/compare_exports.sh" "$cli" "$cli" "$pictures" "$work/compare"
