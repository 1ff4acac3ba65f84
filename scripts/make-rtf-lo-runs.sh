#!/usr/bin/env bash
# For each RTF of tests/data/rtf: our program converts it (as Save writes
# RTF), LibreOffice reads both the original and our output, and the runs it
# sees (alignment, bold, italic, text; scripts/lo-runs.py) must be the same.
# LibreOffice's reading of our output is kept as NAME.lo-runs.txt, which
# the suite compares with our own reading of what we wrote.
# Needs soffice (Debian package libreoffice-writer-nogui) and a built
# quillmere-pad: scripts/make-rtf-lo-runs.sh [path/to/quillmere-pad]
set -euo pipefail
cd "$(dirname "$0")/.."
exe=$(realpath "${1:-build/test/src/quillmere-pad}")
command -v soffice >/dev/null || { echo "install soffice (apt-get install libreoffice-writer-nogui)"; exit 1; }
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
status=0
for rtf in tests/data/rtf/*.rtf; do
  name=$(basename "$rtf" .rtf)
  cp "$rtf" "$work/$name.rtf"
  QT_QPA_PLATFORM=offscreen "$exe" convert "$rtf" "$work/$name.ours.rtf"
done
soffice --headless --convert-to fodt --outdir "$work/fodt" "$work"/*.rtf >/dev/null 2>&1
for rtf in tests/data/rtf/*.rtf; do
  name=$(basename "$rtf" .rtf)
  python3 scripts/lo-runs.py "$work/fodt/$name.fodt" > "$work/$name.original.runs"
  python3 scripts/lo-runs.py "$work/fodt/$name.ours.fodt" > "tests/data/rtf/$name.lo-runs.txt"
  if ! diff -u "$work/$name.original.runs" "tests/data/rtf/$name.lo-runs.txt"; then
    echo "LibreOffice reads our $name differently from the original" >&2
    status=1
  fi
done
exit $status
