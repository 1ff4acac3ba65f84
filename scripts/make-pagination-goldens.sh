#!/bin/sh
# LibreOffice's page breaks of tests/data/pagination/*.rtf, as golden files
# beside them (NAME.lo-pages.txt: "pages: N", then a line per page with its
# number, a tab and its first words). Needs libreoffice-writer and
# poppler-utils; the suite reads only the committed results.
set -eu
root=$(cd "$(dirname "$0")/.." && pwd)
dir=$root/tests/data/pagination
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
for rtf in "$dir"/*.rtf; do
    name=$(basename "$rtf" .rtf)
    HOME=$work soffice --headless --convert-to pdf --outdir "$work" "$rtf" >/dev/null 2>&1
    pdf=$work/$name.pdf
    pages=$(pdfinfo "$pdf" | sed -n 's/^Pages: *//p')
    out=$dir/$name.lo-pages.txt
    {
        echo "# made by scripts/make-pagination-goldens.sh with $(soffice --version | head -1)"
        echo "pages: $pages"
        page=1
        while [ "$page" -le "$pages" ]; do
            words=$(pdftotext -f "$page" -l "$page" -enc UTF-8 "$pdf" - | tr -s ' \n\t\f' ' ' |
                sed 's/^ //' | cut -d' ' -f1-8)
            printf '%s\t%s\n' "$page" "$words"
            page=$((page + 1))
        done
    } > "$out"
    echo "wrote $out ($pages pages)"
done
