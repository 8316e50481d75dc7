#!/bin/sh
# Makes the pictures of the panel in docs/pictures: the four display sizes at 1x and 2x, off screen, on the demo band.
# Usage: tools/make_screenshots.sh [PROGRAM]
set -eu
cd "$(dirname "$0")/.."
program=${1:-build/release/bin/quorlsdr}
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
mkdir -p docs/pictures
cat > "$work/script.txt" <<'SCRIPT'
hover lbl7Seg(4)
wait 4000
click optDisplaySize(1)
shot docs/pictures/panel-std.png
shot docs/pictures/panel-std-2x.png 2
click optDisplaySize(0)
shot docs/pictures/panel-ext.png
shot docs/pictures/panel-ext-2x.png 2
click optDisplaySize(3)
shot docs/pictures/panel-full.png
shot docs/pictures/panel-full-2x.png 2
click optDisplaySize(2)
shot docs/pictures/panel-comp.png
shot docs/pictures/panel-comp-2x.png 2
quit
SCRIPT
QT_QPA_PLATFORM=offscreen "$program" --demo --virtual-time --settings "$work/demo.ini" --folder data/bandplans \
  --script "$work/script.txt"
ls -l docs/pictures
