#!/usr/bin/env bash
# Draws a template with the merge panel and the result of merging it on the
# sample practice, under a virtual display, into docs/merge-template.png and
# docs/merge-result.png.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
build=${1:-$root/build/debug}
cmake --build "$build" --target merge-window-shot
mkdir -p "$root/docs"
tmp=$(mktemp -d)
trap 'rm -rf "$tmp"' EXIT
QT_QPA_PLATFORM=xcb QT_FONT_DPI=96 xvfb-run -a -s "-screen 0 1280x1024x24" \
    "$build/tests/ui/merge-window-shot" "$tmp/template.png" "$tmp/result.png" -style Fusion
mv "$tmp/template.png" "$root/docs/merge-template.png"
mv "$tmp/result.png" "$root/docs/merge-result.png"
echo "wrote $root/docs/merge-template.png and $root/docs/merge-result.png"
