#!/bin/sh
# Starts the radio on the demo band: on the desktop where there is one, else off screen by a script that leaves what it
# saw and heard behind. Usage: tools/run.sh BUILD_FOLDER
set -eu
program=$1/bin/quorlsdr
if [ -n "${DISPLAY:-}${WAYLAND_DISPLAY:-}" ]; then
  exec "$program" --demo
fi
here=$(cd "$(dirname "$0")/.." && pwd)
echo "There is no display here: the panel runs off screen, by the script data/scripts/tour.txt."
mkdir -p out
cd out
QT_QPA_PLATFORM=offscreen "../$program" --demo --virtual-time --settings "$PWD/demo.ini" \
  --script "$here/data/scripts/tour.txt" --output demo.wav
echo "What was heard: $PWD/demo.wav"
echo "What was seen:  $PWD/panel.png"
echo "In a terminal:  $1/bin/quorlsdr-cli listen --demo --frequency 7050 --mode usb"
