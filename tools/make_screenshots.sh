#!/bin/sh
# Makes the pictures of the guide, off screen, on the demo band and on the virtual clock, in 128 colours.
# Usage: tools/make_screenshots.sh [PROGRAM [FOLDER [SCALE]]]
# A scale of 2 is for screens of twice the pixels; give it a folder of its own.
set -eu
cd "$(dirname "$0")/.."
program=${1:-build/release/bin/quorlsdr}
folder=${2:-docs/guide/pictures}
scale=${3:-1}
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
mkdir -p "$folder"

# worked NAME [OPTION...]: the program worked by the script on standard input, with settings and plans of that name, in
# which a line "picture NAME [PANEL]" is a shot.
worked() {
  name=$1
  shift
  sed "s|^picture \([^ ]*\)\(.*\)|shot $folder/\1.png $scale\2|" > "$work/$name.txt"
  HOME="$work" QT_QPA_PLATFORM=offscreen "$program" --virtual-time --settings "$work/$name.ini" "$@" \
    --script "$work/$name.txt" > "$work/$name.log" 2>&1 || { cat "$work/$name.log"; exit 1; }
}

cp -r data/bandplans "$work/plans"  # the radio writes what it remembers into its plans
worked panel --demo --folder "$work/plans" <<'SCRIPT'
hover lbl7Seg(4)
wait 14000
click optDisplaySize(1)
picture panel-std
click optDisplaySize(0)
picture panel-ext
click optDisplaySize(3)
picture panel-full
click optDisplaySize(2)
picture panel-comp
click optDisplaySize(1)
hover picScope 0.62 0.55
choose mnuScope Fill
choose mnuScope Peaks fall
click chkScopeShowFilters
wait 4000
picture scope-spectrum frScope
choose mnuScope Fill
choose mnuScope Peaks fall
hover lbl7Seg(4)
click chkScopeMode(1)
click optSpectrumSource(3)
click chkChn2On
set sldXWidth 400
wait 2000
picture scope-time frScope
click chkScopeMode(0)
click optSpectrumSource(0)
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
wait 8000
picture recorder-tracks
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
picture timer frmTimer
quit
SCRIPT

# The configuration: pages, and a field with its fault.
{
  printf '%s\n' 'hover lbl7Seg(4)' 'wait 2000' 'click cmdConfig'
  for page in receiver:0 interface:1 sound:2 drm:5 remote:8; do
    printf '%s\n' "click frmConfig.TabStrip1(${page#*:})" 'wait 2000' "picture config-${page%:*} frmConfig"
  done
  printf '%s\n' 'click frmConfig.TabStrip1(4)' 'set frmConfig.txtSpectrumDisplaySmoothingCount 99' \
    'click frmConfig.cmdApply' 'wait 500' 'picture config-fault frmConfig'
  printf '%s\n' 'click frmConfig.cmdGuide' 'picture guide frmGuide' quit
} | worked config --demo

# The calibration, on a board whose clock is wrong.
worked calibrate --demo --board-error 7 <<'SCRIPT'
set picFreqDisp 10000000
click cmdConfig
click frmConfig.cmdCalDDS
wait 3000
click frmCalibrate.cmdZeroBeat
set frmCalibrate.txtOfficialFreq 10 000 000
wait 3000
picture calibrate frmCalibrate
quit
SCRIPT

# The first start with a board of two channels: I and Q, and one signal twice.
python3 - "$work" <<'TONES'
import math, struct, sys, wave

def write(name, lead):
    with wave.open(f"{sys.argv[1]}/{name}.wav", "wb") as file:
        file.setnchannels(2)
        file.setsampwidth(2)
        file.setframerate(48000)
        phases = [2 * math.pi * 1500 * n / 48000 for n in range(48000)]
        file.writeframes(b"".join(
            struct.pack("<hh", round(6000 * math.sin(phase)), round(6000 * math.sin(phase + lead))) for phase in phases))

write("iq", math.pi / 2)
write("alike", 0)
TONES
for signal in iq alike; do
  printf '%s\n' 'click frmFirstStart.optBoard(2)' 'wait 2500' "picture first-start-$signal frmFirstStart" |
    worked "first-$signal" --demo --first-start --antenna "$work/$signal.wav"
done

# All pictures before are in Night. A folder of its own gets the themes.
for theme in Daylight 'High contrast' 'Green phosphor'; do
  tag=$(echo "$theme" | tr 'A-Z ' 'a-z-')
  {
    printf '%s\n' 'click cmdConfig' "choose frmConfig.cboTheme $theme" 'click frmConfig.TabStrip1(6)' 'wait 300'
    if [ "$theme" = Daylight ]; then echo 'picture colours-daylight frmConfig'; fi
    printf '%s\n' 'click frmConfig.cmdOK' 'hover lbl7Seg(4)' 'wait 14000' 'click optDisplaySize(1)' "picture $tag-std" quit
  } | worked "$tag" --demo --folder "$work/$tag"
done

# A panel has few tones, so that 128 are enough; dithering would only roughen its flat grounds.
find "$folder" -name '*.png' -newer "$work/panel.txt" -print0 |
  xargs -0 pngquant --force --nofs --strip --speed 1 --ext .png 128
du -sh "$folder"
