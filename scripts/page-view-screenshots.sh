#!/bin/bash
# Pictures of the document window under Xvfb, into docs/: an empty document,
# the three-page letter in page display and in continuous display.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
build=${BUILD_DIR:-$root/build/dev}
cmake --build "$build" --target page-view-shot >/dev/null
shot=$(find "$build" -name page-view-shot -type f -perm -u+x | head -1)
letter=$root/tests/data/documents/three-page-letter.rtf
export QT_FONT_DPI=96
run() { xvfb-run -a -s "-screen 0 1280x1024x24" "$shot" "$@"; }
run - "$root/docs/page-view-empty.png"
run "$letter" "$root/docs/page-view-letter.png" --zoom 60
run "$letter" "$root/docs/page-view-letter-page2.png" --page 2
run "$letter" "$root/docs/page-view-continuous.png" --continuous --zoom 60
