# Starts a PostgreSQL server of its own in a temporary folder, for a
# benchmark script that sources this file. Sets $work (the folder), $bin
# (the server programs), $port and $as_server, creates the database
# "practice" for user qmbench, and stops the server and removes the folder
# when the script exits.
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

