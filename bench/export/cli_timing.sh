#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Times whole `vantorelle-cli export` runs (start-up included) on the export benchmark's
# pictures: 320x240 in 65536 colours and 128x64 in monochrome, as the speed goals name them,
# and the other sizes for reference. Needs hyperfine. Usage: cli_timing.sh [BUILD_DIR]
set -euo pipefail
build="${1:-build}"
cli="$build/src/cli/vantorelle-cli"
work="$(mktemp -d)"
trap 'rm -rf "$work"' EXIT
"$build/bench/vt_export_bench" --write-pictures "$work"
# One run first writes the settings files and header templates; the timed runs find them.
runs=()
for size in 128x64 320x240 800x480; do
  for mode in colors65536 monochrome; do
    picture="$work/picture$size.png"
    [ "$mode" = monochrome ] && picture="$work/picture$size-bw.png"
    cmd="$cli export $picture --settings $work/$mode.LCD --mode $mode -o $work/out-$mode-$size.h"
    $cmd >/dev/null
    runs+=("$cmd")
  done
done
hyperfine -N --warmup 3 --runs "${RUNS:-30}" "${runs[@]}"
