#!/usr/bin/env bash
# Installs what is missing, builds, and starts Vantorelle. Without a display it shows the
# command-line tool instead, on a settings file in a temporary folder.
set -euo pipefail
cd "$(dirname "$0")/.."
bash tools/deps.sh
bash tools/build.sh
dir="${VT_BUILD_DIR:-build}"
if [ -n "${DISPLAY:-}" ] || [ -n "${WAYLAND_DISPLAY:-}" ]; then
  exec "$dir/src/gui/vantorelle" "$@"
fi
echo "No display found: here is the command-line tool, vantorelle-cli."
cli="$dir/src/cli/vantorelle-cli"
"$cli" --help
work="$(mktemp -d)"
demo="$work/demo.LCD"
echo
echo "Example: the bundled sample samples/logo.png (128x64) as a C array for a display scanned"
echo "top down, then the first lines of the array:"
( set -x
  "$cli" settings --settings "$demo" direction td
  "$cli" export samples/logo.png --settings "$demo" -o "$work/logo.h" )
head -n 20 "$work/logo.h"
