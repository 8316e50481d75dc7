#!/bin/sh
# Many recordings through the receiver on all cores, and beside it one at a time. usage: scale.sh BUILD [COUNT]
#
# COUNT recordings of ten minutes, 200 where none is given, share the bytes of one; one more is cut short, and
# must be the only one that fails.
set -eu
receiver=$(realpath "$1/bin/quorlsdr-cli")
recording=$(realpath "$1/demo/recording.wav")
count=${2:-200}
work=$(mktemp -d "${TMPDIR:-/tmp}/quorlsdr-scale.XXXXXX")
trap 'rm -rf "$work"' EXIT
cd "$work"
mkdir recordings one all

python3 - "$recording" recordings/0001.wav <<'PYTHON'
import sys, wave
with wave.open(sys.argv[1]) as source, wave.open(sys.argv[2], "wb") as target:
    target.setparams(source.getparams())
    frames = source.readframes(source.getnframes())
    wanted = 600 * source.getframerate() * len(frames) // source.getnframes()
    target.writeframes((frames * (wanted // len(frames) + 1))[:wanted])
PYTHON
for number in $(seq 2 "$count"); do ln recordings/0001.wav "recordings/$(printf %04d "$number").wav"; done
head -c 1000000 recordings/0001.wav >recordings/cut-short.wav

# receive_all JOBS FOLDER: reports go into the folder, the list of jobs with their exit codes beside it.
receive_all() {
  parallel --will-cite --jobs "$1" --joblog "$2.log" \
    "$receiver receive --mode am --report {} - >/dev/null 2>$2/{/.}.report" ::: recordings/*.wav || true
}
seconds() { python3 -c "print(max(float(l.split()[2]) + float(l.split()[3]) for l in open('$1').readlines()[1:]) -
  min(float(l.split()[2]) for l in open('$1').readlines()[1:]))"; }
failed() { awk 'NR > 1 && $7 != 0 { print $NF }' "$1" | sed 's|.*/||; s|\.report$||'; }

cores=$(nproc)
receive_all 1 one
receive_all "$cores" all
alone=$(seconds one.log)
together=$(seconds all.log)
hours=$(python3 -c "print(f'{$count / 6:.1f}')")
python3 -c "print('$count recordings, $hours hours: one at a time %.1f s, on $cores cores %.1f s: %.2f times as fast' %
  ($alone, $together, $alone / $together))"
for name in $(failed all.log); do echo "failed: $name: $(cat "all/$name.report")"; done
[ "$(failed one.log) $(failed all.log)" = "cut-short cut-short" ] || { echo "other recordings failed, too" >&2; exit 1; }
[ "$(grep -l times_real_time all/*.report | wc -l)" = "$count" ] || { echo "reports are missing" >&2; exit 1; }
