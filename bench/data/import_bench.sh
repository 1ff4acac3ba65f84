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

here=$(dirname "$0")
# shellcheck source=../support/pg-server.sh
source "$here/../support/pg-server.sh"

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
