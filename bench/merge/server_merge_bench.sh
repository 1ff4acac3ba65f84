#!/usr/bin/env bash
# The merge on a PostgreSQL server against the same merge on a file, in one
# run: the sample practice (10,000 clients unless given) is written to a
# file and imported into a server started here, and merge_alone_bench runs
# on each in turn. Then four merge commands of about 1,000 letters each run
# at once against one server database, beside one alone: every one must
# finish, none slower than 3 times the lone one.
#
#   bench/merge/server_merge_bench.sh BUILD_DIR [CLIENTS]
set -euo pipefail

build=${1:?usage: server_merge_bench.sh BUILD_DIR [CLIENTS]}
clients=${2:-10000}
program="$build/src/quillmere-pad"
bench="$build/bench/merge/merge_alone_bench"
for f in "$program" "$bench"; do
  [ -x "$f" ] || { echo "not built: $f" >&2; exit 1; }
done
here=$(cd "$(dirname "$0")" && pwd)
template="$here/../../tests/data/merge/Merge Template - Year End Letter.qmb"
# shellcheck source=../support/pg-server.sh
source "$here/../support/pg-server.sh"
uri="postgresql://qmbench@127.0.0.1:$port/practice"

mkdir -p "$work/files"
export QT_QPA_PLATFORM=offscreen HOME="$work/files"
"$program" sample-db "$work/files/sample.qmd" --clients "$clients" --seed 1 --date 2024-06-01 \
  | head -n 1
"$program" import "$work/files/sample.qmd" "$uri" | tail -n 1

# Side by side: file and server rounds alternate, and each pair's ratio is
# printed (the target is at least 0.5).
rate() { sed -n 's/.*letters, \([0-9]*\) letters\/s.*/\1/p' | tail -n 1; }
for round in 1 2 3; do
  file=$("$bench" "$work/files/sample.qmd" --template "$template" --rounds 2 | rate)
  server=$("$bench" "$uri" --template "$template" --rounds 2 | rate)
  awk -v r="$round" -v f="$file" -v s="$server" \
    'BEGIN { printf "round %d: file %d letters/s, server %d letters/s, server against file %.2fx\n", r, f, s, s / f }'
done

# About 1,000 letters: the sample makes letters for about 82% of its clients.
"${as_server[@]}" "$bin/psql" -h 127.0.0.1 -p "$port" -U qmbench -d postgres -q \
  -c "CREATE DATABASE small" >/dev/null
small="postgresql://qmbench@127.0.0.1:$port/small"
"$program" sample-db "$small" --clients 1213 --seed 2 --date 2024-06-01 | head -n 1
merge() {
  "$program" merge "$template" --database "$small" --out "$work/vault-$1" --all \
    --today 2024-06-01 >"$work/merge-$1.log" 2>&1
}
seconds() { date +%s.%N; }
# The first merge repairs the practice's default contacts; every timed one
# after it is a repeat merge, so that the lone one is not the slowest kind.
merge first
t0=$(seconds); merge lone; t1=$(seconds)
lone=$(awk -v a="$t0" -v b="$t1" 'BEGIN { print b - a }')
pids=()
starts=()
for n in 1 2 3 4; do
  ( s=$(seconds); merge "four-$n"; echo "$? $(awk -v a="$s" -v b="$(seconds)" 'BEGIN { print b - a }')" \
      >"$work/four-$n.result" ) &
  pids+=($!)
done
wait "${pids[@]}"
letters=$(grep -c $'\t' "$work/merge-lone.log" || true)
echo "lone merge of $letters letters: ${lone} s"
worst=0
for n in 1 2 3 4; do
  read -r status took <"$work/four-$n.result"
  echo "merge $n of 4 at once: exit $status, ${took} s, $(grep -c $'\t' "$work/merge-four-$n.log" || true) letters"
  worst=$(awk -v w="$worst" -v t="$took" 'BEGIN { print (t > w) ? t : w }')
done
awk -v w="$worst" -v l="$lone" 'BEGIN { printf "slowest of four against lone: %.2fx (target at most 3x)\n", w / l }'
