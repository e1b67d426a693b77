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
# The fast paths give what the plain reference paths give: the converter and command-line
# suites (their goldens included) once more with every fast path off, then the same exports
# made both ways and compared byte for byte.
VT_REFERENCE_PATHS=1 ctest --test-dir "$dir" --output-on-failure -j2 -R 'Cli|ReferencePaths|Export|DataText|Walk|Pack|Palette'
bash tools/both_paths.sh "$dir/src/cli/vantorelle-cli" "$(mktemp -d)"
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
