#!/usr/bin/env bash
# Times `quillmere-pad import` of the sample practice (10,000 clients unless
# given) from a file into a PostgreSQL server started here in a temporary
# folder, and beside it the same import into a new file, so that the two
# figures come from one run on one machine. Target: the server import under
# 30 s.
#
#   bench/data/import_bench.sh BUILD_DIR [CLIENTS]
set -euo pipefail

build=${1:?usage: import_bench.sh BUILD_DIR [CLIENTS]}
clients=${2:-10000}
program="$build/src/quillmere-pad"
[ -x "$program" ] || { echo "no program at $program" >&2; exit 1; }

bin=$(dirname "$(readlink -f "$(command -v initdb 2>/dev/null || echo /nonexistent)")")
if [ ! -x "$bin/pg_ctl" ]; then
  bin=$(ls -d /usr/lib/postgresql/*/bin 2>/dev/null | sort -V | tail -n 1)
fi
[ -n "$bin" ] && [ -x "$bin/initdb" ] || { echo "initdb not found (install postgresql)" >&2; exit 1; }

work=$(mktemp -d "${TMPDIR:-/tmp}/qmib-XXXXXX")
as_server=()
if [ "$(id -u)" -eq 0 ]; then
  # The server refuses to run as root.
  chown nobody "$work"
  as_server=(runuser -u nobody --)
fi
cleanup() {
  "${as_server[@]}" "$bin/pg_ctl" -D "$work/data" -m immediate -w stop >/dev/null 2>&1 || true
  rm -rf "$work"
}
trap cleanup EXIT

port=$(python3 -c 'import socket; s=socket.socket(); s.bind(("127.0.0.1", 0)); print(s.getsockname()[1])')
(cd "$work" && "${as_server[@]}" "$bin/initdb" -D "$work/data" -U qmbench -A trust -E UTF8 \
  --locale=C --no-sync >/dev/null)
# The server's defaults, as a practice would run it: durability stays on.
(cd "$work" && "${as_server[@]}" "$bin/pg_ctl" -D "$work/data" -l "$work/server.log" -w \
  -o "-k $work -p $port -h 127.0.0.1" start >/dev/null)
"${as_server[@]}" "$bin/psql" -h 127.0.0.1 -p "$port" -U qmbench -d postgres -q \
  -c "CREATE DATABASE practice" >/dev/null

mkdir -p "$work/files"
export QT_QPA_PLATFORM=offscreen
"$program" sample-db "$work/files/sample.qmd" --clients "$clients" --seed 1 --date 2024-06-01 \
  | head -n 1

seconds() { date +%s.%N; }
t0=$(seconds)
"$program" import "$work/files/sample.qmd" "postgresql://qmbench@127.0.0.1:$port/practice" \
  | tail -n 1
t1=$(seconds)
"$program" import "$work/files/sample.qmd" "$work/files/copy.qmd" | tail -n 1
t2=$(seconds)

awk -v c="$clients" -v s0="$t0" -v s1="$t1" -v s2="$t2" 'BEGIN {
  printf "import %s clients into PostgreSQL: %.2f s (target < 30 s)\n", c, s1 - s0
  printf "import %s clients into a new file: %.2f s\n", c, s2 - s1
  printf "ratio server/file: %.2f\n", (s1 - s0) / (s2 - s1)
}'
