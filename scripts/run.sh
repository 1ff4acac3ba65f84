#!/usr/bin/env bash
# Builds Quillmere Pad and starts it. When the user's settings name no client
# database, a sample practice is installed as that user's database first, so
# the program opens on real data.
set -euo pipefail
cd "$(dirname "$0")/.."

bash scripts/install-deps.sh

build=build/release
jobs=$(nproc 2>/dev/null || echo 2)
cmake -S . -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=Release -DQM_BUILD_TESTS=OFF >/dev/null
cmake --build "$build" --parallel "$jobs" --target quillmere-pad
exe="$PWD/$build/src/quillmere-pad"

if "$exe" --help 2>/dev/null | grep -q 'install-sample'; then
  QT_QPA_PLATFORM=offscreen "$exe" install-sample
fi

if [ -z "${DISPLAY:-}" ] && [ -z "${WAYLAND_DISPLAY:-}" ]; then
  echo "No display found: starting Quillmere Pad on a virtual display (xvfb-run)." >&2
  exec xvfb-run -a -s "-screen 0 1280x1024x24" "$exe" "$@"
fi
exec "$exe" "$@"
