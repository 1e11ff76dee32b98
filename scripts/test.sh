#!/usr/bin/env bash
# Installs what the project needs, builds everything and runs all tests.
set -euo pipefail
top=$(cd "$(dirname "$0")/.." && pwd)
"$top/scripts/install-deps.sh"
cmake -S "$top" -B "$top/build" -G Ninja
cmake --build "$top/build"
export QT_QPA_PLATFORM=offscreen
ctest --test-dir "$top/build" --output-on-failure --timeout 300 -j2
