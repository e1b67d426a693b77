#!/usr/bin/env bash
# Configures and builds into build/ (or $VT_BUILD_DIR) with two jobs.
set -euo pipefail
cd "$(dirname "$0")/.."
dir="${VT_BUILD_DIR:-build}"
cmake -S . -B "$dir" -G Ninja -DCMAKE_BUILD_TYPE="${VT_BUILD_TYPE:-RelWithDebInfo}" "$@" >/dev/null
cmake --build "$dir" -j2
