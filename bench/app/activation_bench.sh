#!/bin/sh
# A host's first call against the program's stand-alone start-up, side by
# side in one run, on a private session bus with a sample practice:
#   stand-alone   launch to the main window up (the running program's name
#                 taken on the bus, which start-up does last);
#   activation    a host's first call (a property read) to its answer, the
#                 program started by the bus through its activation file;
#   opening       the same, then openNewMergeDocument(1) answered: start-up
#                 with the host's values and a template window.
# Each is the median of ROUNDS runs; the ratios are to stand-alone.
# Usage: bench/app/activation_bench.sh BUILD-DIR [ROUNDS]
set -eu
if [ "${1:-}" = "--inner" ]; then
    exe=$2
    rounds=$3
    now() { date +%s%N; }
    median() { sort -n | awk '{ v[NR] = $1 } END { print v[int((NR + 1) / 2)] }'; }
    wait_gone() {
        i=0
        while gdbus call --session --dest org.freedesktop.DBus --object-path /org/freedesktop/DBus \
            --method org.freedesktop.DBus.NameHasOwner "$1" | grep -q true; do
            i=$((i + 1))
            [ $i -lt 200 ] || { echo "$1 did not end" >&2; exit 1; }
            sleep 0.05
        done
    }
    call() {
        gdbus call --session --dest org.quillmere.QuillmerePad --object-path /clsDocMerge "$@" >/dev/null
    }
    : > "$root/standalone"; : > "$root/activation"; : > "$root/opening"
    r=0
    while [ $r -lt "$rounds" ]; do
        r=$((r + 1))
        t0=$(now)
        "$exe" >/dev/null 2>&1 &
        pid=$!
        gdbus wait --session --timeout 60 org.quillmere.QuillmerePad.Desktop
        t1=$(now)
        echo $(((t1 - t0) / 1000000)) >> "$root/standalone"
        kill "$pid"
        wait "$pid" || true
        wait_gone org.quillmere.QuillmerePad.Desktop

        t0=$(now)
        call --method org.freedesktop.DBus.Properties.Get org.quillmere.clsDocMerge currentProvince
        t1=$(now)
        echo $(((t1 - t0) / 1000000)) >> "$root/activation"
        call --method org.quillmere.clsDocMerge.Quit
        wait_gone org.quillmere.QuillmerePad

        t0=$(now)
        call --method org.freedesktop.DBus.Properties.Set org.quillmere.clsDocMerge \
            DatabaseLocation "<\"$database\">"
        call --method org.quillmere.clsDocMerge.openNewMergeDocument 1
        t1=$(now)
        echo $(((t1 - t0) / 1000000)) >> "$root/opening"
        call --method org.quillmere.clsDocMerge.Quit
        wait_gone org.quillmere.QuillmerePad
    done
    standalone=$(median < "$root/standalone")
    activation=$(median < "$root/activation")
    opening=$(median < "$root/opening")
    echo "stand-alone start-up       $standalone ms (median of $rounds)"
    awk -v a="$activation" -v s="$standalone" \
        'BEGIN { printf "activation to first answer %d ms, ratio %.2f\n", a, a / s }'
    awk -v a="$opening" -v s="$standalone" \
        'BEGIN { printf "activation to opening call %d ms, ratio %.2f\n", a, a / s }'
    exit 0
fi

build=$(cd "${1:?usage: activation_bench.sh BUILD-DIR [ROUNDS]}" && pwd)
rounds=${2:-5}
exe=$build/src/quillmere-pad
[ -x "$exe" ] || { echo "no program at $exe" >&2; exit 1; }
root=$(mktemp -d)
trap 'rm -rf "$root"' EXIT
mkdir -p "$root/data/dbus-1/services" "$root/home" "$root/config" "$root/runtime"
chmod 700 "$root/runtime"
printf '[D-BUS Service]\nName=org.quillmere.QuillmerePad\nExec=%s --automation\n' "$exe" \
    > "$root/data/dbus-1/services/org.quillmere.QuillmerePad.service"
export HOME="$root/home" XDG_DATA_HOME="$root/data" XDG_CONFIG_HOME="$root/config"
export XDG_RUNTIME_DIR="$root/runtime" QT_QPA_PLATFORM=offscreen root
# A practice set up as the run command sets one up, so that the stand-alone
# start asks nothing; the host names the same database.
"$exe" install-sample >/dev/null
database=$(find "$root" -name Data.qmd | head -n 1)
export database
dbus-run-session -- sh "$0" --inner "$exe" "$rounds"
