#!/usr/bin/env python3
"""Demodulates the demo recording station by station and prints what came out: demo.py BUILD_DIRECTORY"""
import array
import json
import math
import subprocess
import sys
import wave
from pathlib import Path

STATIONS = [
    ("AM broadcast", "am-broadcast.wav", "--mode am --filter 50:4000 --if-filter track", (1700,)),
    ("the same, whistle notched", "am-notched.wav",
     "--mode am --filter 50:4000 --if-filter track --notch audio:1700:200", (1700,)),
    ("Morse at +6 kHz", "morse.wav", "--mode usb --low-side --bfo 5500 --filter 200:800 --if-filter track", (500,)),
    ("sideband at -7 kHz", "two-tone.wav", "--mode usb --low-side --bfo -7000 --filter-mode 2 --if-filter track",
     (700, 1900)),
]

MORSE = {".-": "A", "-.-.": "C", "-..": "D", ".": "E", "-.-": "K", ".-..": "L", "---": "O", "--.-": "Q",
         ".-.": "R", "...": "S", "..-": "U"}
DOT_SECONDS = 0.06


def read_samples(path):
    with wave.open(str(path)) as file:
        samples = array.array("h", file.readframes(file.getnframes()))
    if sys.byteorder == "big":
        samples.byteswap()
    return samples


def level_at(samples, hertz):
    """Amplitude of one line, in decibels under full scale."""
    turn = 2.0 * math.pi * hertz / 48000.0
    real = sum(s * math.cos(turn * n) for n, s in enumerate(samples))
    imaginary = sum(s * math.sin(turn * n) for n, s in enumerate(samples))
    amplitude = 2.0 * math.hypot(real, imaginary) / len(samples)
    return 20.0 * math.log10(max(amplitude, 0.01) / 32768.0)


def read_morse(samples):
    """The text keyed on the tone: the loudness of every 5 ms, cut into dots, dashes and pauses."""
    step, around = 240, 100
    loud = [max(map(abs, samples[n:n + step])) for n in range(0, len(samples) - step, step)]
    # Half of the loudest within a second before and after, since the AGC is still finding its level.
    keyed = [level > max(loud[max(0, n - around):n + around]) / 2 for n, level in enumerate(loud)]
    text, signs, run = "", "", 1
    for before, now in zip(keyed, keyed[1:] + [not keyed[-1]]):
        if before == now:
            run += 1
            continue
        dots = run * 0.005 / DOT_SECONDS
        if before:
            signs += "-" if dots > 2 else "."
        elif dots > 2:
            text += MORSE.get(signs, "_" if signs else "") + (" " if dots > 5 else "")
            signs = ""
        run = 1
    return text.strip()


def main():
    build = Path(sys.argv[1])
    source = build / "demo" / "recording.wav"
    print(f"Recording: {source}, 16 s of a band on a 12 kHz IF\n")
    print(f"{'Station':27}{'file':18}{'level':>8}{'gain':>9}{'us/block':>10}{'x real time':>13}  heard")
    for name, file, options, tones in STATIONS:
        target = build / "demo" / file
        command = [str(build / "bin" / "quorlsdr-cli"), "receive", "--report", *options.split(), str(source),
                   str(target)]
        result = subprocess.run(command, stderr=subprocess.PIPE, text=True, check=False)
        if result.returncode != 0:
            sys.exit(result.stderr.strip())
        report = json.loads(result.stderr)
        samples = read_samples(target)
        heard = ", ".join(f"{hertz} Hz {level_at(samples[48000:144000], hertz):.0f} dB" for hertz in tones)
        if file == "morse.wav":
            heard = f'"{read_morse(samples)}"'
        print(f"{name:27}{file:18}{report['signal_level']:8.0f}{20 * math.log10(report['agc_gain']):6.1f} dB"
              f"{report['us_per_block_mean']:10.1f}{report['times_real_time']:13.0f}  {heard}")
    print(f"\nListen to them in {build / 'demo'}.")


if __name__ == "__main__":
    main()
