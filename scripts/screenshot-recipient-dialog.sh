#!/usr/bin/env bash
# Draws the recipient dialog over a generated sample practice under a
# virtual display into docs/recipient-dialog.png.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
build=${1:-$root/build/debug}
out=$root/docs/recipient-dialog.png
cmake --build "$build" --target recipient-dialog-shot quillmere-pad
mkdir -p "$root/docs"
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
"$build/src/quillmere-pad" sample-db "$work/Data.qmd" --clients 60 --seed 7 --date 2024-03-01
QT_QPA_PLATFORM=xcb QT_FONT_DPI=96 xvfb-run -a -s "-screen 0 1280x1024x24" \
    "$build/tests/ui/recipient-dialog-shot" "$work/Data.qmd" "$work/shot.png"
mv "$work/shot.png" "$out"
echo "wrote $out"
