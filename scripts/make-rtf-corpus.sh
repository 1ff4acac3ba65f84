#!/usr/bin/env bash
# Builds the corpus of RTF files written by other programs in
# tests/data/rtf, with the text LibreOffice itself extracts from each
# (NAME.rtf -> NAME.lo.txt). Needs soffice and pandoc (Debian packages
# libreoffice-writer-nogui and pandoc); the suite uses the committed output.
set -euo pipefail
cd "$(dirname "$0")/.."
out=tests/data/rtf
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

# A small red picture, as a data URI for the HTML sources.
png=$(printf 'iVBORw0KGgoAAAANSUhEUgAAAAQAAAAECAIAAAAmkwkpAAAAEklEQVR4nGP4z8DAwMDAxMDAAAAVBAEA3lQl5wAAAABJRU5ErkJggg==')

cat > "$work/lo-letter.html" <<HTML
<html><body>
<h1>Quarterly Letter</h1>
<p>Dear «Contact First Name»,</p>
<p>Caf&eacute; cr&egrave;me, na&iuml;ve fa&ccedil;ade &ndash; &ldquo;quoted&rdquo; &euro;100 and &laquo;Company Name&raquo;.</p>
<p><b>Bold</b> <i>italic</i> <u>underlined</u> plain.</p>
<p style="text-align:center">Centred line</p>
<p style="text-align:right">Right line</p>
<ul><li>First bullet</li><li>Second bullet</li></ul>
<ol><li>One</li><li>Two</li><li>Three</li></ol>
<table border="1"><tr><td>A1</td><td>B1</td></tr><tr><td>A2</td><td>B2</td></tr></table>
<p>Picture: <img src="data:image/png;base64,$png" width="32" height="32"> after.</p>
<p>Greek &alpha;&beta;&gamma; and Cyrillic &#1046;&#1078;.</p>
<p>Yours truly</p>
</body></html>
HTML

cat > "$work/lo-plain.html" <<HTML
<html><body><p>Only one paragraph with «Year End Date» in it.</p><p></p><p>After an empty line.</p></body></html>
HTML

cat > "$work/pandoc-doc.md" <<'MD'
# Heading One

Text with *emphasis*, **strong** and `code`, and «Company Name».

- bullet one
- bullet two

1. first
2. second

| Col A | Col B |
|-------|-------|
| a1    | b1    |

Ünïcödé: Ω ≈ ✓ and “quotes”.
MD

for f in lo-letter lo-plain; do
  soffice --headless --infilter="HTML (StarWriter)" --convert-to rtf --outdir "$work" "$work/$f.html" >/dev/null 2>&1
  cp "$work/$f.rtf" "$out/$f.rtf"
done
pandoc -s -f markdown -t rtf -o "$out/pandoc-doc.rtf" "$work/pandoc-doc.md"

for f in "$out"/*.rtf; do  # hand-written files included
  name=$(basename "$f" .rtf)
  cp "$f" "$work/$name.rtf"
  soffice --headless --convert-to "txt:Text (encoded):UTF8" --outdir "$work" "$work/$name.rtf" >/dev/null 2>&1
  cp "$work/$name.txt" "$out/$name.lo.txt"
done
