#!/bin/sh
# Makes the speech of the demo band: data/demo/speech/*.wav, 8000 Hz, mono, mu-law. Needs espeak-ng and sox.
# Run it after a change of the texts and commit the clips: the build itself needs neither program.
set -eu

target="$(dirname "$0")/../data/demo/speech"
mkdir -p "$target"
work="$(mktemp -d)"
trap 'rm -rf "$work"' EXIT

# clip NAME VOICE WORDS_PER_MINUTE PITCH TEXT: the band of a telephone, levels evened out as in a studio.
clip() {
  espeak-ng -v "$2" -s "$3" -p "$4" -w "$work/$1.wav" "$5"
  sox "$work/$1.wav" "$work/$1-narrow.wav" silence 1 0.01 0.1% reverse silence 1 0.01 0.1% reverse \
    highpass 120 gain -6 compand 0.005,0.12 6:-50,-50,-30,-16,-15,-10,0,-8 gain -n -1 gain -l 5 \
    gain -3 sinc -3400 norm -1
  sox -D "$work/$1-narrow.wav" -r 8000 -c 1 -e mu-law "$target/$1.wav" norm -1
}

clip welcome en-gb+f3 158 55 \
  "Welcome to the demonstration band. You are on seven thousand and fifty kilohertz, upper sideband. Enjoy the music."
clip cq-lsb en-us+m3 175 45 \
  "C Q, C Q, C Q forty metres. This is Quebec X-ray two Lima Alfa Bravo, calling C Q and standing by."
clip qso-one en-gb+m7 170 40 \
  "Thank you for the call. Your signal is five and nine. My antenna is a simple dipole between two trees."
clip qso-two en-gb-scotland+f2 175 60 \
  "Roger, roger. You are five and seven here, with slow fading. Sunny weather. Seventy three, and good luck."
clip horizon en-us+f4 165 50 \
  "This is Radio Horizon, on the forty one metre band. After the music: letters from listeners, and the weather at sea."
clip polarlicht de+f2 160 50 \
  "Hier ist Radio Polarlicht. Sie hören unser Abendprogramm auf Kurzwelle. Und nun Musik."
clip montana es+m4 172 50 \
  "Aquí Radio Montaña, la voz de las cumbres. Seguimos con más música."
clip lumiere fr-fr+f5 165 50 \
  "Ici Radio Lumière. Bonsoir à tous nos auditeurs sur les ondes courtes."
du -bc "$target"/*.wav | tail -1
