#!/bin/sh
# Makes the pictures of the panel in docs/pictures, off screen, on the demo band: the four display sizes at 1x and 2x,
# the scope in its modes, a recording that is played, and the timer.
# Usage: tools/make_screenshots.sh [PROGRAM]
set -eu
cd "$(dirname "$0")/.."
program=${1:-build/release/bin/quorlsdr}
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
mkdir -p docs/pictures
cat > "$work/script.txt" <<'SCRIPT'
hover lbl7Seg(4)
wait 14000
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
click optDisplaySize(1)
hover picScope 0.62 0.55
choose mnuScope Fill
choose mnuScope Peaks fall
click chkScopeShowFilters
wait 4000
shot docs/pictures/scope-spectrum.png 1 frScope
choose mnuScope Fill
choose mnuScope Peaks fall
hover lbl7Seg(4)
click chkScopeMode(1)
click optSpectrumSource(3)
click chkChn2On
set sldXWidth 400
wait 2000
shot docs/pictures/scope-time.png 1 frScope
click chkScopeMode(0)
click optSpectrumSource(0)
click chkChn2On
click chkScopeShowFilters
set sldXWidth 1023
set txtRecordFileName tour
click cmdWavCtls(0)
set picFreqDisp 7205000
wait 9000
set picFreqDisp 7220000
wait 12000
set picFreqDisp 7290000
wait 12000
click cmdWavCtls(3)
click cmdWavCtls(8)
click cmdWavCtls(1)
wait 1000
click cmdWavCtls(5)
wait 6000
shot docs/pictures/recorder-tracks.png
shot docs/pictures/recorder-tracks.png
click cmdWavCtls(9)
click cmdTimer
set txtTimerStart 18:05
set txtTimerEnd 19:00
click optTimerRepeat(1)
click optTimerRate(2)
click cmdTimerSave
choose lstTimer 1
set txtTimerStart 23:30
set txtTimerEnd 1:00
click optTimerRepeat(2)
choose cboTimerPlan Broadcast
choose cboTimerSubBand 3
choose cboTimerPreset 0
click optTimerRate(5)
click cmdTimerSave
shot docs/pictures/timer.png 1 frmTimer
shot docs/pictures/timer-2x.png 2 frmTimer
quit
SCRIPT
cp -r data/bandplans "$work/plans"  # the radio writes what it remembers into its plans
HOME="$work" QT_QPA_PLATFORM=offscreen "$program" --demo --virtual-time --settings "$work/demo.ini" --folder "$work/plans" \
  --script "$work/script.txt"
ls -l docs/pictures
