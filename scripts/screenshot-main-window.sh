#!/usr/bin/env bash
# Draws the main window with a document and its tool bars under a virtual
# display into docs/main-window.png. The window comes up in a home folder of
# its own where install-sample has put the sample practice and its templates,
# so Quick Picks lists them as a new user sees them.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
build=${1:-$root/build/debug}
out=$root/docs/main-window.png
cmake --build "$build" --target main-window-shot quillmere-pad
mkdir -p "$root/docs"
home=$(mktemp -d)
tmp=$(mktemp --suffix=.png)
trap 'rm -rf "$home" "$tmp"' EXIT
export HOME=$home XDG_CONFIG_HOME=$home/.config XDG_DATA_HOME=$home/.local/share
export XDG_DOCUMENTS_DIR=$home/Documents
mkdir -p "$XDG_CONFIG_HOME" "$XDG_DATA_HOME" "$XDG_DOCUMENTS_DIR"
QT_QPA_PLATFORM=offscreen "$build/src/quillmere-pad" install-sample >/dev/null
QT_QPA_PLATFORM=xcb QT_FONT_DPI=96 xvfb-run -a -s "-screen 0 1280x1024x24" \
    "$build/tests/ui/main-window-shot" "$tmp" -style Fusion
mv "$tmp" "$out"
trap 'rm -rf "$home"' EXIT
echo "wrote $out"
