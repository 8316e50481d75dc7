#!/bin/sh
# Makes the pictures of the panel in docs/pictures, off screen, on the demo band: the four display sizes at 1x and 2x,
# the scope in its modes, a recording that is played, the timer, the pages of the configuration, the first start, and
# the themes.
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

# The configuration: each page, and a field with its fault.
{
  echo 'hover lbl7Seg(4)'
  echo 'wait 2000'
  echo 'click cmdConfig'
  page=0
  for name in receiver interface sound tuning display drm colours about; do
    echo "click frmConfig.TabStrip1($page)"
    echo 'wait 2000'
    echo "shot docs/pictures/config-$name.png 1 frmConfig"
    echo "shot docs/pictures/config-$name-2x.png 2 frmConfig"
    page=$((page + 1))
  done
  echo 'click frmConfig.TabStrip1(4)'
  echo 'set frmConfig.txtSpectrumDisplaySmoothingCount 99'
  echo 'click frmConfig.cmdApply'
  echo 'wait 500'
  echo 'shot docs/pictures/config-fault.png 1 frmConfig'
  echo 'shot docs/pictures/config-fault-2x.png 2 frmConfig'
  echo 'quit'
} > "$work/config.txt"
HOME="$work" QT_QPA_PLATFORM=offscreen "$program" --demo --virtual-time --settings "$work/config.ini" \
  --script "$work/config.txt"

# The calibration, on a board whose clock is wrong.
cat > "$work/calibrate.txt" <<'SCRIPT'
set picFreqDisp 10000000
click cmdConfig
click frmConfig.cmdCalDDS
wait 3000
click frmCalibrate.cmdZeroBeat
set frmCalibrate.txtOfficialFreq 10 000 000
wait 3000
shot docs/pictures/calibrate.png 1 frmCalibrate
shot docs/pictures/calibrate-2x.png 2 frmCalibrate
quit
SCRIPT
HOME="$work" QT_QPA_PLATFORM=offscreen "$program" --demo --virtual-time --board-error 7 --settings "$work/calibrate.ini" \
  --script "$work/calibrate.txt"

# The first start: each board, an input that is too loud, one signal twice, and no input at all.
python3 - "$work" <<'TONES'
import math, struct, sys, wave

def write(name, left, right, lead):
    with wave.open(f"{sys.argv[1]}/{name}.wav", "wb") as file:
        file.setnchannels(2)
        file.setsampwidth(2)
        file.setframerate(48000)
        frames = bytearray()
        for n in range(48000):
            phase = 2 * math.pi * 1500 * n / 48000
            frames += struct.pack("<hh", round(left * math.sin(phase)), round(right * math.sin(phase + lead)))
        file.writeframes(frames)

write("pair", 6000, 6200, math.pi / 2)
write("loud", 30000, 29000, math.pi / 2)
write("alike", 6000, 6000, 0)
TONES
first_start() {  # NAME BOARD ANTENNA
  {
    echo "click frmFirstStart.optBoard($2)"
    echo 'wait 2500'
    echo "shot docs/pictures/first-start-$1.png 1 frmFirstStart"
    echo "shot docs/pictures/first-start-$1-2x.png 2 frmFirstStart"
  } > "$work/first.txt"
  HOME="$work" QT_QPA_PLATFORM=offscreen "$program" --demo --virtual-time --first-start --antenna "$work/$3.wav" \
    --settings "$work/first-$1.ini" --script "$work/first.txt"
}
first_start drt1 0 pair
first_start elektor 1 pair
first_start iq 2 pair
first_start real-iq 3 pair
first_start none 4 pair
first_start loud 0 loud
first_start alike 2 alike
cat > "$work/first.txt" <<'SCRIPT'
click frmFirstStart.optBoard(1)
click frmFirstStart.optIF(0)
set frmFirstStart.txtPortAddress lpt1
click frmFirstStart.cmdStart
wait 1000
shot docs/pictures/first-start-no-input.png 1 frmFirstStart
shot docs/pictures/first-start-no-input-2x.png 2 frmFirstStart
SCRIPT
HOME="$work" PULSE_SERVER=unix:/nowhere ALSA_CONFIG_PATH=/dev/null QT_QPA_PLATFORM=offscreen "$program" --first-start \
  --settings "$work/first-no-input.ini" --script "$work/first.txt"

# A folder of its own gets the themes. All pictures before are in Night; Daylight shows all sizes, the others the
# standard one.
theme() {
  name=$1
  tag=$(echo "$name" | tr 'A-Z ' 'a-z-')
  sizes=std:1
  if [ "$name" = Daylight ]; then sizes="ext:0 full:3 comp:2 std:1"; fi
  {
    printf '%s\n' 'click cmdConfig' "choose frmConfig.cboTheme $name" 'click frmConfig.TabStrip1(6)' 'wait 300'
    printf 'shot docs/pictures/colours-%s%s.png %d frmConfig\n' "$tag" '' 1 "$tag" -2x 2
    printf '%s\n' 'click frmConfig.cmdOK' 'hover lbl7Seg(4)' 'wait 14000' 'click optDisplaySize(1)'
    for size in $sizes; do
      printf 'click optDisplaySize(%s)\n' "${size#*:}"
      printf 'shot docs/pictures/%s-%s%s.png %d\n' "$tag" "${size%:*}" '' 1 "$tag" "${size%:*}" -2x 2
    done
    printf '%s\n' 'rightclick picScope 0.4 0.3' "shot docs/pictures/$tag-menu.png 1 mnuScope" quit
  } > "$work/$tag.txt"
  HOME="$work" QT_QPA_PLATFORM=offscreen "$program" --demo --virtual-time --settings "$work/$tag.ini" \
    --folder "$work/$tag" --script "$work/$tag.txt"
}
for name in Daylight 'High contrast' 'Green phosphor'; do theme "$name"; done
ls -l docs/pictures
