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
demo="$(mktemp -d)/demo.LCD"
echo
echo "Example: a settings file for a 240x128 display, scanned top down:"
( set -x
  "$cli" settings --settings "$demo" size 240x128
  "$cli" settings --settings "$demo" direction td
  "$cli" settings --settings "$demo" get GWI GHI td CORN1 MSBF )
