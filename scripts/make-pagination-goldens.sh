#!/bin/sh
# LibreOffice's page breaks of tests/data/pagination/*.rtf, and of the
# generated 5 MB letters file of the benchmarks, as golden files beside them
# (NAME.lo-pages.txt: "pages: N", then a line per page with its number, a tab
# and its first words). Needs libreoffice-writer, poppler-utils and a build
# with -DQM_BUILD_BENCH=ON (first argument, default build/rel) for the
# generated file, which is made again by the tests rather than committed.
# The suite reads only the committed results.
set -eu
root=$(cd "$(dirname "$0")/.." && pwd)
build=${1:-$root/build/rel}
dir=$root/tests/data/pagination
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

# golden RTF NAME WORDS: the golden of RTF as NAME.lo-pages.txt, WORDS words
# of each page.
golden() {
    rtf=$1 name=$2 count=$3
    HOME=$work soffice --headless --convert-to pdf --outdir "$work" "$rtf" >/dev/null 2>&1
    pdf=$work/$(basename "$rtf" .rtf).pdf
    pages=$(pdfinfo "$pdf" | sed -n 's/^Pages: *//p')
    out=$dir/$name.lo-pages.txt
    {
        echo "# made by scripts/make-pagination-goldens.sh with $(soffice --version | head -1)"
        echo "pages: $pages"
        # One pdftotext for all pages: each page ends with a form feed.
        pdftotext -enc UTF-8 "$pdf" - | python3 -c '
import sys
count = int(sys.argv[1])
pages = sys.stdin.read().split("\f")[: int(sys.argv[2])]
for number, text in enumerate(pages, 1):
    print(f"{number}\t" + " ".join(text.split()[:count]))
' "$count" "$pages"
    } > "$out"
    echo "wrote $out ($pages pages)"
}

for rtf in "$dir"/*.rtf; do
    golden "$rtf" "$(basename "$rtf" .rtf)" 8
done

# Every letter of the generated file starts a page with the same heading:
# enough words to reach the client's number.
if [ -x "$build/bench/print/pdf-bench" ]; then
    TMPDIR=$work QT_QPA_PLATFORM=offscreen "$build/bench/print/pdf-bench" \
        --benchmark_filter=WriteRtf >/dev/null
    golden "$work/letters-5mb.rtf" letters-5mb 12
else
    echo "no $build/bench/print/pdf-bench: the golden of the generated 5 MB file was not made" >&2
    exit 1
fi
