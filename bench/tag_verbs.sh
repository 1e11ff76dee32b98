#!/usr/bin/env bash
# Times the tag verbs of sonorit-cli as whole commands (one process each) over
# a generated tree of 2,000 tagged MP3 files:
#   bench/tag_verbs.sh [path/to/sonorit-cli] [work folder]
# Prints the start-up of a tag verb, `tags` over the tree (ms per file), and
# `write-tag2`/`retag` over the tree in one call each against the bare cost
# of replacing each file durably (write, fsync, rename).
set -euo pipefail
top=$(cd "$(dirname "$0")/.." && pwd)
cli=${1:-$top/build/cli/sonorit-cli}
work=${2:-$(mktemp -d)}
files=${FILES:-2000}
export HOME=$work/home XDG_CONFIG_HOME=$work/home/.config XDG_DATA_HOME=$work/home/.local/share
mkdir -p "$HOME"

# Four kinds of audio: constant rate with an Info header, variable rate with a
# Xing header, constant rate without a header (its length is walked), mono.
raw=$work/tone.raw
python3 - "$raw" <<'PY'
import math, struct, sys
rate, secs = 44100, 6
with open(sys.argv[1], "wb") as f:
    f.write(b"".join(struct.pack("<hh", int(8000*math.sin(i*0.0627)), int(8000*math.sin(i*0.0411))) for i in range(rate*secs)))
PY
lame --silent -r -s 44.1 -b 128 "$raw" "$work/cbr.mp3"
lame --silent -r -s 44.1 -V 4 "$raw" "$work/vbr.mp3"
lame --silent -r -s 44.1 -b 160 -t "$raw" "$work/plain.mp3"
lame --silent -r -s 44.1 -b 64 -m m "$raw" "$work/mono.mp3"

# The tree: Artist/Album/NN - Title.mp3 with an ID3v2.3 tag of the usual
# fields, a cover on every fifth file, padding on every third, ID3v1 on half.
python3 - "$work" "$files" <<'PY'
import os, struct, sys
work, count = sys.argv[1], int(sys.argv[2])
audio = [open(os.path.join(work, n), "rb").read() for n in ("cbr.mp3", "vbr.mp3", "plain.mp3", "mono.mp3")]
def frame(fid, data): return fid.encode() + struct.pack(">I", len(data)) + b"\0\0" + data
def text(fid, s): return frame(fid, b"\0" + s.encode("latin-1"))
def tag(body):
    n = len(body)
    return b"ID3\x03\0\0" + bytes([(n >> 21) & 127, (n >> 14) & 127, (n >> 7) & 127, n & 127]) + body
cover = frame("APIC", b"\0image/jpeg\0\x03\0" + b"\xff\xd8" + bytes(range(256)) * 20)
tree = os.path.join(work, "tree")
for i in range(count):
    artist, album, track = "Artist %03d" % (i // 40), "Album %03d" % (i // 10), i % 10 + 1
    folder = os.path.join(tree, artist, album)
    os.makedirs(folder, exist_ok=True)
    body = (text("TPE1", artist) + text("TALB", album) + text("TRCK", "%02d" % track) + text("TYER", "1999")
            + text("TIT2", "Title %d" % i) + text("TCON", "Rock") + text("TLEN", "6000")
            + frame("COMM", b"\0eng\0a comment"))
    if i % 5 == 0:
        body += cover
    if i % 3 == 0:
        body += b"\0" * 1024
    v1 = (b"TAG" + artist.encode().ljust(30) + artist.encode().ljust(30) + album.encode().ljust(30) + b"1999"
          + b" " * 28 + b"\0" + bytes([track, 17])) if i % 2 else b""
    with open(os.path.join(folder, "%02d - Title %d.mp3" % (track, i)), "wb") as f:
        f.write(tag(body) + audio[i % 4] + v1)
PY
mapfile -t list < <(find "$work/tree" -name '*.mp3' | sort)
n=${#list[@]}

# Best wall time of a command over RUNS runs, in seconds.
timed() {
  python3 - "${RUNS:-3}" "$@" <<'PY'
import subprocess, sys, time
best = None
for _ in range(int(sys.argv[1])):
    t = time.perf_counter()
    subprocess.run(sys.argv[2:], stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, env=None)
    t = time.perf_counter() - t
    best = t if best is None else min(best, t)
print(best)
PY
}
per() { python3 -c "import sys; print('%.4f' % (float(sys.argv[1]) * 1000 / float(sys.argv[2])))" "$@"; }

true_s=$(RUNS=30 timed /bin/true)
start_s=$(RUNS=30 timed "$cli" tags "${list[0]}")
echo "process start of /bin/true:           $(per "$true_s" 1) ms"
echo "tags on one file (start-up + 1 file): $(per "$start_s" 1) ms, beyond /bin/true $(per "$(echo "$start_s - $true_s" | bc)" 1) ms"

"$cli" tags "${list[@]}" >/dev/null  # warm the page cache
tags_s=$(RUNS=5 timed "$cli" tags "${list[@]}")
echo "tags over $n files:                 $(per "$tags_s" 1) ms = $(per "$tags_s" "$n") ms per file"

# The floor of a durable write: per file, read it, write the copy, fsync,
# rename it over the old one, and nothing else. The tag writes are measured
# against it over the same files.
cat >"$work/bare_replace.c" <<'C'
#include <fcntl.h>
#include <stdio.h>
#include <unistd.h>
static char buffer[1 << 24];
int main(int argc, char** argv)
{
    char temp[4096];
    snprintf(temp, sizeof temp, "%s/bare.tmp", argv[1]);
    for (int i = 2; i < argc; ++i) {
        int in = open(argv[i], O_RDONLY);
        ssize_t n = read(in, buffer, sizeof buffer);
        close(in);
        int out = open(temp, O_WRONLY | O_CREAT | O_TRUNC, 0644);
        if (n < 0 || write(out, buffer, (size_t)n) != n || fsync(out) != 0 || close(out) != 0 || rename(temp, argv[i]) != 0)
            return 1;
    }
    return 0;
}
C
cc -O2 -o "$work/bare_replace" "$work/bare_replace.c"
for verb in write-tag2 retag; do
  args=("$verb" "${list[@]}")
  [ "$verb" = write-tag2 ] && args+=(--comment "benchmarked")
  bare_s=$(RUNS=3 timed "$work/bare_replace" "$work" "${list[@]}")
  wall_s=$(RUNS=3 timed "$cli" "${args[@]}")
  echo "$verb over $n files: $(per "$wall_s" "$n") ms per file; a bare durable replace $(per "$bare_s" "$n") ms: beyond it $(per "$(echo "$wall_s - $bare_s" | bc)" "$n") ms per file"
done
[ -z "${2:-}" ] && rm -rf "$work"
exit 0
