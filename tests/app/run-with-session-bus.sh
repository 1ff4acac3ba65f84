#!/bin/sh
# Runs a test program on a private session bus whose service folder holds
# the build's activation file, with HOME and the XDG folders in a temporary
# folder, as a host's machine would have them but touching nothing real.
# Usage: run-with-session-bus.sh SERVICE-FILE PROGRAM [ARGS...]
set -eu
service_file=$1
shift
if ! command -v dbus-run-session >/dev/null 2>&1; then
    echo "dbus-run-session is missing (Debian package dbus-daemon)" >&2
    exit 1
fi
root=$(mktemp -d)
trap 'rm -rf "$root"' EXIT
mkdir -p "$root/data/dbus-1/services" "$root/home" "$root/config" "$root/runtime"
chmod 700 "$root/runtime"
cp "$service_file" "$root/data/dbus-1/services/"
export HOME="$root/home" XDG_DATA_HOME="$root/data" XDG_CONFIG_HOME="$root/config"
export XDG_RUNTIME_DIR="$root/runtime" QT_QPA_PLATFORM=offscreen
status=0
dbus-run-session -- "$@" || status=$?
exit $status
