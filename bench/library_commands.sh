#!/bin/sh
# Times the library commands of sonorit-cli over a tree of N small MP3 files
# (default 2000), one process per command, in a private home:
#   bench/library_commands.sh BUILD_DIR [N]
# Prints milliseconds per file for a new library over the tree, an add of N
# tagged files from outside it (and, beside it, what copying them costs), a
# refresh of the unchanged library, Rename All and Relocate All. Needs lame.
set -eu
cli="$1/cli/sonorit-cli"
n="${2:-2000}"
home=$(mktemp -d)
trap 'rm -rf "$home"' EXIT
export HOME="$home" XDG_DATA_HOME="$home/data" XDG_CONFIG_HOME="$home/config"
mkdir -p "$home/Music" "$home/In" "$home/T"
head -c 44100 /dev/zero | lame --quiet -r -s 22.05 -m m --bitwidth 16 - "$home/one.mp3" 2>/dev/null
# Ten tagged tracks; every folder gets its own album, so that an import
# places each file by its tags as a real one would.
k=1
while [ "$k" -le 10 ]; do
  cp "$home/one.mp3" "$home/T/$k.mp3"
  "$cli" write-tag2 "$home/T/$k.mp3" --artist Artist --title "Title $k" --track "$k" >/dev/null
  k=$((k + 1))
done
d=0
while [ "$d" -lt $((n / 10)) ]; do
  mkdir -p "$home/Music/a$d" "$home/In/b$d"
  for k in 1 2 3 4 5 6 7 8 9 10; do
    cp "$home/T/$k.mp3" "$home/Music/a$d/t$k.mp3"
    cp "$home/T/$k.mp3" "$home/In/b$d/u$k.mp3"
  done
  "$cli" write-tag2 "$home/Music/a$d/"*.mp3 --album "Album $d" >/dev/null
  "$cli" write-tag2 "$home/In/b$d/"*.mp3 --album "Imported $d" >/dev/null
  d=$((d + 1))
done
sync
ms() { date +%s%N | cut -c1-13; }
per() { awk -v t="$1" -v n="$n" 'BEGIN { printf "%.3f ms per file\n", t / n }'; }
t0=$(ms); "$cli" --dialog "$home/Music" new "$home/L.vkt" >/dev/null 2>&1; t1=$(ms)
echo "new library:   $(per $((t1 - t0)))"
t0=$(ms); "$cli" refresh "$home/L.vkt" >/dev/null 2>&1; t1=$(ms)
echo "refresh:       $(per $((t1 - t0)))"
t0=$(ms); cp -r "$home/In" "$home/Copies"; sync; t1=$(ms)
echo "copies alone:  $(per $((t1 - t0))) (cp and one sync, for comparison with add)"
t0=$(ms); find "$home/In" -name '*.mp3' -print0 | xargs -0 "$cli" add "$home/L.vkt" >/dev/null 2>&1; t1=$(ms)
echo "add:           $(per $((t1 - t0)))"
t0=$(ms); "$cli" rename "$home/L.vkt" all >/dev/null 2>&1; t1=$(ms)
echo "rename all:    $(per $((t1 - t0))) (of $((2 * n)) tracks, per file of the tree)"
t0=$(ms); "$cli" relocate "$home/L.vkt" all >/dev/null 2>&1; t1=$(ms)
echo "relocate all:  $(per $((t1 - t0))) (of $((2 * n)) tracks, per file of the tree)"
