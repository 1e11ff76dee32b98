#!/usr/bin/env bash
# The same tests built with AddressSanitizer and UndefinedBehaviorSanitizer,
# then a short run of every fuzz target (clang, libFuzzer) over its corpus.
set -euo pipefail
top=$(cd "$(dirname "$0")/.." && pwd)
export QT_QPA_PLATFORM=offscreen
cmake -S "$top" -B "$top/build-asan" -G Ninja -DSONORIT_SANITIZE=ON -DSONORIT_BENCH=OFF
cmake --build "$top/build-asan"
ASAN_OPTIONS=detect_leaks=0 ctest --test-dir "$top/build-asan" --output-on-failure --timeout 600 -j2

CC=clang CXX=clang++ cmake -S "$top" -B "$top/build-fuzz" -G Ninja -DSONORIT_FUZZ=ON -DSONORIT_BENCH=OFF
cmake --build "$top/build-fuzz" --target fuzzers
seconds=${FUZZ_SECONDS:-20}
for target in "$top"/build-fuzz/fuzz/fuzz_*; do
  [ -f "$target" ] && [ -x "$target" ] || continue
  name=$(basename "$target")
  corpus="$top/fuzz/corpus/$name"
  work=$(mktemp -d)
  [ -d "$corpus" ] && cp -r "$corpus/." "$work/"
  echo "== $name for ${seconds}s"
  ASAN_OPTIONS=detect_leaks=0 "$target" -max_total_time="$seconds" -timeout=10 -rss_limit_mb=2048 "$work" >/dev/null 2>"$work.log" \
    || { tail -n 40 "$work.log"; exit 1; }
  rm -rf "$work" "$work.log"
done
