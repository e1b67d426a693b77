#!/usr/bin/env bash
# Installs what is missing, builds, and runs every test (unit, command-line, GUI offscreen),
# then the benchmark and the fuzz targets briefly as smoke tests.
set -euo pipefail
cd "$(dirname "$0")/.."
bash tools/deps.sh
export QT_QPA_PLATFORM=offscreen
bash tools/build.sh
dir="${VT_BUILD_DIR:-build}"
ctest --test-dir "$dir" --output-on-failure -j2
if [ -x "$dir/bench/vt_bench" ]; then
  "$dir/bench/vt_bench" --smoke
fi
if [ -x "$dir/bench/vt_export_bench" ]; then
  "$dir/bench/vt_export_bench" --smoke
fi
if [ -x "$dir/bench/vt_batch_bench" ]; then
  "$dir/bench/vt_batch_bench" --smoke
fi
bash tools/fuzz.sh 20
