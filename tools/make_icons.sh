#!/bin/sh
# Renders the icon's usual sizes from its drawings: data/icons/*.png. Needs rsvg-convert (package librsvg2-bin). Run it
# after a change of a drawing and commit the pictures: the build itself needs no such program.
set -eu
cd "$(dirname "$0")/../data/icons"
for size in 16 22 24 32 48 64 128 256; do
  drawing=org.quorlsdr.quorlsdr.svg
  if [ "$size" -lt 48 ]; then drawing=org.quorlsdr.quorlsdr-small.svg; fi
  rsvg-convert -w "$size" -h "$size" "$drawing" -o "$size.png"
done
