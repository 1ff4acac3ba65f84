#!/usr/bin/env bash
# Times our load and save of the generated 5 MB RTF side by side with
# pandoc and LibreOffice on the same file, in one run, and prints ratios.
# Needs a Release build with -DQM_BUILD_BENCH=ON in build/bench.
set -euo pipefail
cd "$(dirname "$0")/.."
build=${1:-build/bench}
for p in pandoc soffice; do command -v $p >/dev/null || { echo "install $p (apt-get install pandoc libreoffice-writer-nogui)"; exit 1; }; done
work=$(mktemp -d); trap 'rm -rf "$work"' EXIT
"$build/bench/platform/rtf-bench" --write "$work/big.rtf"
now() { date +%s.%N; }
t0=$(now); QT_QPA_PLATFORM=offscreen "$build/src/quillmere-pad" text "$work/big.rtf" > "$work/ours.txt"; t1=$(now)
QT_QPA_PLATFORM=offscreen "$build/src/quillmere-pad" convert "$work/big.rtf" "$work/ours.rtf"; t2=$(now)
pandoc -f rtf -t plain -o "$work/pandoc.txt" "$work/big.rtf"; t3=$(now)
soffice --headless --convert-to txt --outdir "$work" "$work/big.rtf" >/dev/null 2>&1; t4=$(now)
/usr/bin/time -f "%M" -o "$work/mem-ours" env QT_QPA_PLATFORM=offscreen "$build/src/quillmere-pad" text "$work/big.rtf" > /dev/null
/usr/bin/time -f "%M" -o "$work/mem-lo" soffice --headless --convert-to txt --outdir "$work/lo2" "$work/big.rtf" >/dev/null 2>&1
python3 - "$t0" "$t1" "$t2" "$t3" "$t4" "$(cat "$work/mem-ours")" "$(cat "$work/mem-lo")" <<'PY'
import sys
t0,t1,t2,t3,t4=map(float,sys.argv[1:6]); mo,ml=map(int,sys.argv[6:8])
load=t1-t0; conv=t2-t1; pan=t3-t2; lo=t4-t3
print(f"ours text (load)      {load:7.2f} s")
print(f"ours convert (load+save) {conv:7.2f} s")
print(f"pandoc -t plain       {pan:7.2f} s   ratio pandoc/ours {pan/load:5.1f}")
print(f"LibreOffice to txt    {lo:7.2f} s   ratio LibreOffice/ours {lo/load:5.1f}")
print(f"peak memory ours {mo/1024:.0f} MB, LibreOffice {ml/1024:.0f} MB (LibreOffice may fork; see note)")
PY
