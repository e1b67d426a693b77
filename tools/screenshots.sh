#!/usr/bin/env bash
# Takes the pictures of docs/ again with build/tools/screenshots/vt_screenshots under xvfb-run
# (package xvfb), each run in a fresh home folder so that no earlier settings show.
# Usage: bash tools/screenshots.sh [output folder, docs by default]; VT_SCREEN sets the screen
# (1280x800x24 by default).
set -euo pipefail
cd "$(dirname "$0")/.."
dir="${VT_BUILD_DIR:-build}"
out="${1:-docs}"
cmake --build "$dir" -j2 --target vt_screenshots
tool="$PWD/$dir/tools/screenshots/vt_screenshots"
work="$(mktemp -d)"
trap 'rm -rf "$work"' EXIT
mkdir -p "$out"

# shoot <name> <arguments...>: one run of the tool, pictures named <name>*.png in $work.
shoot() {
  local name="$1"
  shift
  local home="$work/home-$name"
  mkdir -p "$home/Pictures" && mkdir -p -m 700 "$home/run"
  cp tools/screenshots/scene.png "$home/Pictures/"
  HOME="$home" XDG_CONFIG_HOME="$home/.config" XDG_RUNTIME_DIR="$home/run" \
    xvfb-run -a -s "-screen 0 ${VT_SCREEN:-1280x800x24}" "$tool" "$@" "$work/$name.png"
}

# The sample exported in monochrome on the graphics page, with the settings panel and the
# export dialog beside it.
shoot main --picture "$PWD/samples/logo.png" --page 1
cp "$work/main.png" "$out/main-window.png"
cp "$work/main-settings-panel.png" "$out/settings-panel.png"
cp "$work/main-export-dialog.png" "$out/export-dialog.png"

# A colour picture waiting on the threshold slider, and the load preview with an area drawn.
shoot scene --picture "$work/home-scene/Pictures/scene.png" --threshold 120 --page 1
cp "$work/scene.png" "$out/threshold-tool.png"
cp "$work/scene-load-preview.png" "$out/load-preview.png"
echo "Pictures written to $out"
