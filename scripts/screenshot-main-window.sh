#!/usr/bin/env bash
# Draws the main window with a document and its tool bars under a virtual
# display into docs/main-window.png.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
build=${1:-$root/build/debug}
out=$root/docs/main-window.png
cmake --build "$build" --target main-window-shot
mkdir -p "$root/docs"
tmp=$(mktemp --suffix=.png)
trap 'rm -f "$tmp"' EXIT
QT_QPA_PLATFORM=xcb xvfb-run -a -s "-screen 0 1280x1024x24" \
    "$build/tests/ui/main-window-shot" "$tmp"
mv "$tmp" "$out"
trap - EXIT
echo "wrote $out"
