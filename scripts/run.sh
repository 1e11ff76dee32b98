#!/usr/bin/env bash
# Installs what the program needs, builds it and starts the window program.
# Arguments pass on to the program, so a library file can be given:
#   scripts/run.sh ~/Music/MyLibrary.vkt
set -euo pipefail
top=$(cd "$(dirname "$0")/.." && pwd)
"$top/scripts/install-deps.sh"
cmake -S "$top" -B "$top/build" -G Ninja -DSONORIT_BENCH=OFF
cmake --build "$top/build" --target sonorit sonorit-cli
exec "$top/build/ui/sonorit" "$@"
