#!/usr/bin/env bash
# Builds Quillmere Pad and runs the whole test suite.
set -euo pipefail
cd "$(dirname "$0")/.."

bash scripts/install-deps.sh

build=build/test
jobs=$(nproc 2>/dev/null || echo 2)
cmake -S . -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=Debug -DQM_WERROR=ON -DQM_BUILD_TESTS=ON >/dev/null
cmake --build "$build" --parallel "$jobs"
cd "$build"
QT_QPA_PLATFORM=offscreen ctest --output-on-failure --parallel "$jobs" --timeout 600 </dev/null
