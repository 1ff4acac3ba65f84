#!/usr/bin/env bash
# Prints a document through a real CUPS queue (the cups-pdf virtual printer)
# with the headless print command and checks the job's PDF: page count and
# page size. Needs root: it installs cups and printer-driver-cups-pdf, starts
# cupsd when it is not running and adds the queue QuillmerePDF. Not part of
# the test suite, because CI machines run no print service.
#   scripts/print-cups-pdf.sh BUILD_DIR [DOC]
set -euo pipefail

build=${1:?usage: print-cups-pdf.sh BUILD_DIR [DOC]}
doc=${2:-$(dirname "$0")/../tests/data/documents/three-page-letter.rtf}
program="$build/src/quillmere-pad"

if ! command -v cupsd >/dev/null || [ ! -e /usr/lib/cups/backend/cups-pdf ]; then
  DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends \
    cups cups-client printer-driver-cups-pdf poppler-utils </dev/null
fi
if ! lpstat -r >/dev/null 2>&1; then
  cupsd
  for _ in $(seq 20); do lpstat -r >/dev/null 2>&1 && break; sleep 0.5; done
fi
if ! lpstat -p QuillmerePDF >/dev/null 2>&1; then
  lpadmin -p QuillmerePDF -E -v cups-pdf:/ -P /usr/share/ppd/cups-pdf/CUPS-PDF_opt.ppd
fi

out="$HOME/PDF"
mkdir -p "$out"
before=$(ls "$out" | wc -l)
expected=$("$program" pages "$doc" | sed -n 's/^pages: //p')
"$program" print "$doc" --printer QuillmerePDF

# cups-pdf writes the job's file when the job is done.
for _ in $(seq 60); do
  [ "$(ls "$out" | wc -l)" -gt "$before" ] && break
  sleep 0.5
done
job=$(ls -t "$out"/*.pdf | head -1)
pages=$(pdfinfo "$job" | sed -n 's/^Pages: *//p')
size=$(pdfinfo "$job" | sed -n 's/^Page size: *//p')
echo "job PDF: $job"
echo "pages: $pages (expected $expected), page size: $size"
if [ "$pages" != "$expected" ]; then
  echo "FAIL: the job has $pages pages, the document $expected" >&2
  exit 1
fi
echo "1 passed, 0 failed"
