#!/usr/bin/env bash
# Times `quillmere-pad pdf` on the generated 5 MB letters file side by side
# with LibreOffice's headless conversion of the same RTF to PDF, alternating
# the two, and prints each round's times (wall clock, and processor time
# in user and system mode) and peak memory, and the median ratios. Needs a Release build with -DQM_BUILD_BENCH=ON (default build/rel).
#   bash scripts/bench-pdf-external.sh [BUILD_DIR] [ROUNDS]
set -euo pipefail
cd "$(dirname "$0")/.."
build=${1:-build/rel}
rounds=${2:-3}
command -v soffice >/dev/null || { echo "install soffice (apt-get install libreoffice-writer-nogui)"; exit 1; }
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
export QT_QPA_PLATFORM=offscreen
TMPDIR=$work "$build/bench/print/pdf-bench" --benchmark_filter=WriteRtf >/dev/null
rtf=$work/letters-5mb.rtf
# A first start of LibreOffice makes its profile; that is not conversion.
mkdir -p "$work/home" "$work/lo"
HOME=$work/home soffice --headless --convert-to pdf --outdir "$work/lo" "$work/nothing.rtf" \
    >/dev/null 2>&1 || true
: > "$work/rounds"
for round in $(seq "$rounds"); do
    /usr/bin/time -f "%e %M %U %S" -o "$work/ours" "$build/src/quillmere-pad" pdf "$rtf" "$work/ours.pdf" >/dev/null
    HOME=$work/home /usr/bin/time -f "%e %M %U %S" -o "$work/theirs" \
        soffice --headless --convert-to pdf --outdir "$work/lo" "$rtf" >/dev/null 2>&1
    echo "$round $(tail -1 "$work/ours") $(tail -1 "$work/theirs")" >> "$work/rounds"
done
echo "pages: ours $(pdfinfo "$work/ours.pdf" | sed -n 's/^Pages: *//p'), LibreOffice $(pdfinfo "$work/lo/letters-5mb.pdf" | sed -n 's/^Pages: *//p')"
python3 - "$work/rounds" <<'PY'
import statistics, sys
walls, cpus = [], []
for line in open(sys.argv[1]):
    n, ours, ours_kb, ours_u, ours_s, lo, lo_kb, lo_u, lo_s = line.split()
    ours_cpu = float(ours_u) + float(ours_s)
    lo_cpu = float(lo_u) + float(lo_s)
    walls.append(float(lo) / float(ours))
    cpus.append(lo_cpu / ours_cpu)
    print(f"round {n}: ours {float(ours):6.2f} s ({ours_cpu:5.2f} s cpu) {int(ours_kb)/1024:4.0f} MB   "
          f"LibreOffice {float(lo):6.2f} s ({lo_cpu:5.2f} s cpu) {int(lo_kb)/1024:4.0f} MB   "
          f"ratio {walls[-1]:4.1f} (cpu {cpus[-1]:4.1f})")
print(f"median ratio LibreOffice/ours: wall clock {statistics.median(walls):.1f}, "
      f"processor time {statistics.median(cpus):.1f}")
PY
