#!/usr/bin/env bash
# Builds the libFuzzer targets with clang into build-fuzz/ and runs each for N seconds (default 60).
set -euo pipefail
cd "$(dirname "$0")/.."
seconds="${1:-60}"
dir=build-fuzz
CC=clang CXX=clang++ cmake -S . -B "$dir" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo \
  -DVT_BUILD_FUZZ=ON -DVT_BUILD_GUI=OFF -DVT_BUILD_TESTS=OFF -DVT_BUILD_BENCH=OFF >/dev/null
cmake --build "$dir" -j2
for target in "$dir"/fuzz/fuzz_*; do
  [ -f "$target" ] && [ -x "$target" ] || continue
  name="$(basename "$target")"
  corpus="fuzz/corpus/${name#fuzz_}"
  work="$(mktemp -d)"
  echo "Fuzzing $name for ${seconds}s"
  "$target" -max_total_time="$seconds" -max_len=65536 -rss_limit_mb=2048 "$work" "$corpus" \
    2>&1 | tail -n 3
done
