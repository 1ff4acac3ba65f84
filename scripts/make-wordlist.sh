#!/usr/bin/env bash
# Makes the spell checker's word list from Debian's Canadian English word
# list (package wcanadian): lower-case words, sorted by character code,
# duplicates dropped, code page 1252, CR LF line ends, two zero bytes behind
# the last line end. The result is committed, so the build does not need the
# package; run this only to refresh the list.
set -euo pipefail
cd "$(dirname "$0")/.."

source_list=/usr/share/dict/canadian-english
target=resources/wordlist/list.db

if [ ! -f "$source_list" ]; then
  echo "Installing wcanadian for $source_list"
  export DEBIAN_FRONTEND=noninteractive
  apt-get update -qq
  apt-get install -y -qq --no-install-recommends wcanadian </dev/null
fi

python3 - "$source_list" "$target" <<'PY'
import sys

source, target = sys.argv[1], sys.argv[2]
with open(source, encoding="utf-8") as f:
    words = {line.strip().lower() for line in f}
words.discard("")
# Character-code order is what the program's own sort produces, so a word
# added later lands where a binary comparison puts it.
ordered = sorted(words)
data = b"".join(w.encode("cp1252") + b"\r\n" for w in ordered) + b"\0\0"
with open(target, "wb") as f:
    f.write(data)
print(f"{target}: {len(ordered)} words, {len(data)} bytes, longest {max(map(len, ordered))}")
PY
