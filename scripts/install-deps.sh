#!/usr/bin/env bash
# Installs the Debian packages the build, the tests and the program need,
# only when something is missing. Safe to run again; never asks questions.
set -euo pipefail

packages=(
  build-essential cmake ninja-build pkg-config
  qt6-base-dev qt6-base-dev-tools qt6-base-private-dev libqt6sql6-sqlite libqt6sql6-psql libqt6svg6
  libgl-dev libxkbcommon-dev
  libgtest-dev libgmock-dev libbenchmark-dev
  libsqlite3-dev sqlite3 zlib1g-dev
  postgresql
  xvfb xauth
  dbus-daemon
  fonts-liberation2 fonts-dejavu-core
  poppler-utils
  desktop-file-utils shared-mime-info dpkg-dev
)

missing=()
for p in "${packages[@]}"; do
  if ! dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q 'install ok installed'; then
    missing+=("$p")
  fi
done

if [ ${#missing[@]} -eq 0 ]; then
  exit 0
fi

echo "Installing: ${missing[*]}"
sudo_cmd=()
if [ "$(id -u)" -ne 0 ]; then
  sudo_cmd=(sudo)
fi
export DEBIAN_FRONTEND=noninteractive
"${sudo_cmd[@]}" apt-get update -qq
"${sudo_cmd[@]}" apt-get install -y -qq --no-install-recommends "${missing[@]}" </dev/null
