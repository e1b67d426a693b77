#!/usr/bin/env bash
# Exports every picture of a folder (.png, .bmp) in every pixel mode, data direction and a few
# bit-order keys with two builds of vantorelle-cli, and reports every export whose text,
# messages or exit status differ (dates and times left out). For checking that a speed change
# keeps the output.
# Usage: tools/compare_exports.sh OLD_CLI NEW_CLI PICTURE_DIR WORK_DIR
# MODES="gray4 colors256" narrows the modes; DIRECTIONS="default tl td" the directions;
# KEYS="- ORGC=3|Neg=1" replaces the key sets (each word one set of --set keys joined by "|",
# "-" for none). OLD_ENV and NEW_ENV give environment settings for each side's runs
# ("VT_REFERENCE_PATHS=1"): one build against itself with the reference paths on one side.
set -uo pipefail
old="$1" new="$2" pictures="$3" work="$4"
modes=${MODES:-$("$new" --help 2>&1 | sed -n 's/^ *monochrome, /monochrome, /p' | tr -d ' .' | tr ',' ' ')}
directions=${DIRECTIONS:-"default tr tl tra tla td tda tu tua"}
read -ra old_env <<<"${OLD_ENV:-}"
read -ra new_env <<<"${NEW_ENV:-}"
keys=("" "MSBF=0" "SWRG=1" "rgb2=1" "Neg=1" "snib=1" "RGBA=1")
if [ -n "${KEYS:-}" ]; then
  keys=()
  for set in $KEYS; do [ "$set" = - ] && keys+=("") || keys+=("$set"); done
fi
rm -rf "$work" && mkdir -p "$work/old" "$work/new"
# Dates, times and the side's own folder are left out of the comparison.
strip_dates() {
  sed -E -e 's#[0-9]{2}/[0-9]{2}/[0-9]{4} [0-9]{2}:[0-9]{2}:[0-9]{2}##g' \
    -e "s#$work/(old|new)/##g" "$1" 2>/dev/null
}
runs=0 differ=0
shopt -s nullglob
for picture in "$pictures"/*.png "$pictures"/*.bmp; do
  for mode in $modes; do
    for direction in $directions; do
      for key in "${keys[@]}"; do
        args=(export "$picture" --mode "$mode")
        [ "$direction" != default ] && args+=(--direction "$direction")
        if [ -n "$key" ]; then
          IFS='|' read -ra sets <<<"$key"
          for one in "${sets[@]}"; do args+=(--set "$one"); done
        fi
        for side in old new; do
          cli=$old side_env=("${old_env[@]}")
          [ "$side" = new ] && cli=$new side_env=("${new_env[@]}")
          rm -rf "$work/$side/out" && mkdir -p "$work/$side/out"
          env "${side_env[@]}" HOME="$work/$side/home" "$cli" "${args[@]}" \
            -o "$work/$side/out/a.h" >"$work/$side/out/log" 2>&1
          echo "exit $?" >>"$work/$side/out/log"
        done
        runs=$((runs + 1))
        if ! cmp -s <(strip_dates "$work/old/out/a.h") <(strip_dates "$work/new/out/a.h") ||
           ! cmp -s <(strip_dates "$work/old/out/log" | grep -v XDG_RUNTIME) \
                    <(strip_dates "$work/new/out/log" | grep -v XDG_RUNTIME); then
          differ=$((differ + 1))
          echo "DIFFERS: ${args[*]}"
          # Both sides kept for a look: a difference that does not come back on a rerun is
          # the machine's, not the build's.
          mkdir -p "$work/differs/$differ" && cp -r "$work/old/out" "$work/differs/$differ/old" &&
            cp -r "$work/new/out" "$work/differs/$differ/new"
        fi
      done
    done
  done
done
echo "$runs exports compared, $differ differ"
[ "$differ" -eq 0 ]
