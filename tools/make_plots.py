#!/usr/bin/env python3
"""Makes the plots of the guide out of what quorlsdr-cli puts out, and prints the figures that the guide states:
make_plots.py QUORLSDR_CLI FOLDER

Signals are made here, go through the program as any recording would, and are measured behind it. gnuplot draws.
"""
import array
import math
import random
import subprocess
import sys
import tempfile
import wave
from pathlib import Path

RATE = 48000
IF = 12000  # Hz, where the boards put what is tuned
PRESETS = {0: (50, 5000), 1: (200, 600), 2: (300, 2300), 3: (300, 3000), 4: (240, 4000)}
NOTHING = -120.0  # dB, what is below doesn't show


def decibels(ratio):
    return 20 * math.log10(ratio) if ratio > 1e-6 else NOTHING


class Radio:
    def __init__(self, program, work):
        self.program, self.work = program, work

    def table(self, *words):
        """CSV of the program, without its head."""
        told = subprocess.run([self.program, *words], capture_output=True, text=True, check=True)
        return [[float(field) for field in line.split(",")] for line in told.stdout.splitlines()[1:]]

    def receive(self, channels, *words):
        """Audio in -1 to 1 out of lists of samples in that range."""
        source, sink = self.work / "in.wav", self.work / "out.wav"
        # Dither: without it what is smaller than a step of the samples would vanish, and look better than it is.
        noise = random.Random(1)
        frames = array.array("h", (round(32767 * sample + noise.triangular(-2, 2, 0))
                                   for frame in zip(*channels) for sample in frame))
        with wave.open(str(source), "wb") as file:
            file.setnchannels(len(channels))
            file.setsampwidth(2)
            file.setframerate(RATE)
            file.writeframes(frames.tobytes())
        subprocess.run([self.program, "receive", *words, str(source), str(sink)], check=True)
        with wave.open(str(sink)) as file:
            return [sample / 32768 for sample in array.array("h", file.readframes(file.getnframes()))]


def tone(hertz, seconds, amplitude, lead=0.0):
    turn = 2 * math.pi * hertz / RATE
    return [amplitude * math.cos(turn * n + lead) for n in range(round(seconds * RATE))]


def amplitude_at(samples, hertz):
    """Of one line, by correlation under a Hann window."""
    turn, real, imaginary, weight = 2 * math.pi * hertz / RATE, 0.0, 0.0, 0.0
    for n, sample in enumerate(samples):
        window = 1 - math.cos(2 * math.pi * n / len(samples))
        real += window * sample * math.cos(turn * n)
        imaginary += window * sample * math.sin(turn * n)
        weight += window
    return 2 * math.hypot(real, imaginary) / weight


def filters(radio):
    curves = {}
    for number, (low, high) in PRESETS.items():
        rows = radio.table("filter", "--low", str(low), "--high", str(high))
        curve = [(hertz, level) for hertz, level, _ in rows]
        curves[f"{low} to {high} Hz"] = [point for point in curve if point[0] <= 7000]
        edge = {level: min((hertz for hertz, value in curve if hertz > high - 150 and value <= level)) for level in
                (-6, -60)}
        inner = [value for hertz, value in curve if low + 60 <= hertz <= high - 60]
        print(f"filter {number}: upper edge -6 dB at {edge[-6]:.0f} Hz, -60 dB at {edge[-60]:.0f} Hz, "
              f"{edge[-60] - edge[-6]:.0f} Hz later; within {max(inner) - min(inner):.4f} dB between")
    return curves


def gain_control(radio):
    """A tone 40 dB louder for a second, and what becomes of it."""
    quiet, loud, before, during, after = 0.002, 0.2, 12.0, 1.0, 12.0
    samples = tone(IF - 1000, before, quiet) + tone(IF - 1000, during, loud) + tone(IF - 1000, after, quiet)
    curves = {}
    for setting in ("off", "fast", "normal", "slow"):
        audio = radio.receive([samples], "--mode", "usb", "--filter", "300:2300", "--agc", setting)
        step = RATE // 100
        peaks = [max(abs(sample) for sample in audio[at:at + step]) for at in range(0, len(audio) - step, step)]
        curves[setting] = [(0.01 * place - before, max(decibels(peak), -70.0)) for place, peak in enumerate(peaks)]
        late = [level for second, level in curves[setting] if 11.5 < second < 12.5]
        final = sum(late) / len(late)
        back = next((second - during for second, level in curves[setting] if second > during + 0.05 and
                     level > final - 3), None)
        inside = [level for second, level in curves[setting] if 0.2 < second < 0.9]
        curves[setting] = [point for point in curves[setting] if point[0] >= -1]
        print(f"agc {setting}: loud {max(inside):.1f} dB, quiet again {final:.1f} dB, within 3 dB of that after "
              f"{back:.2f} s; highest at the step {max(level for _, level in curves[setting]):.1f} dB")
    return curves


def sideband(radio):
    """How far below the wanted side the same tone on the other side is heard."""
    offsets = [60, 80, 100, 150, 200, 250] + list(range(300, 5000, 75))
    track = ("--if-filter", "track")
    boards = {"DRT1, ELEKTOR DRM": ("drt1", 1, ()), "Real to IQ RX": ("real2iq", 1, track),
              "IQ Xtal RX and Real to IQ RX, IF filter on Track": ("iq", 2, track)}
    seconds, rest = 0.4, 0.15  # a tone, of which the begin doesn't count
    curves = {}
    for name, (model, channels, more) in boards.items():
        levels = {}
        for side in (-1, 1):
            signal = [[] for _ in range(channels)]
            for offset in offsets:
                hertz = IF + side * offset
                for channel in range(channels):
                    signal[channel] += tone(hertz, seconds, 0.4, channel * math.pi / 2)
            audio = radio.receive(signal, "--model", model, "--mode", "usb", "--filter", "50:5000", "--agc", "off",
                                  *more)
            piece = round(seconds * RATE)
            levels[side] = [amplitude_at(audio[place * piece + round(rest * RATE):(place + 1) * piece], offset)
                            for place, offset in enumerate(offsets)]
        wanted = max(levels.values(), key=sum)
        other = min(levels.values(), key=sum)
        curves[name] = [(offset, max(decibels(b) - decibels(a), NOTHING))
                        for offset, a, b in zip(offsets, wanted, other)]
        worst = max(level for offset, level in curves[name] if offset >= 300)
        print(f"sideband {name}: {worst:.1f} dB at worst from 300 Hz on; "
              + ", ".join(f"{offset} Hz {level:.0f} dB" for offset, level in curves[name] if offset <= 300))
    curves.pop("Real to IQ RX")  # the same as the one of both
    return curves


def draw(curves, path, labels, ranges, work):
    """One picture of several curves, in the order that they are given."""
    data = work / "curves.dat"
    data.write_text("\n\n\n".join("\n".join(f"{x} {y}" for x, y in curve) for curve in curves.values()))
    inks = ["#0072b2", "#d55e00", "#009e73", "#8a5fb5", "#555555"]
    lines = ", ".join(f"'{data}' index {place} with lines lw 2 lc rgb '{inks[place]}' title '{name}'"
                      for place, name in enumerate(curves))
    script = f"""set terminal pngcairo size 860,430 font 'DejaVu Sans,10' background rgb '#ffffff'
set output '{path}'
set border 3 lc rgb '#777777'
set tics nomirror
set grid lc rgb '#dddddd' lt 1
set key outside top horizontal center Left reverse samplen 2 width 1
set xlabel '{labels[0]}'
set ylabel '{labels[1]}'
set xrange [{ranges[0]}]
set yrange [{ranges[1]}]
plot {lines}
"""
    subprocess.run(["gnuplot"], input=script, text=True, check=True)
    subprocess.run(["pngquant", "--force", "--nofs", "--strip", "--ext", ".png", "64", str(path)], check=True)


def main():
    program, folder = str(Path(sys.argv[1]).resolve()), Path(sys.argv[2])
    with tempfile.TemporaryDirectory() as scratch:
        work = Path(scratch)
        radio = Radio(program, work)
        draw(filters(radio), folder / "plot-filters.png", ("Hz", "dB"), ("0:6000", "-100:5"), work)
        draw(gain_control(radio), folder / "plot-agc.png", ("seconds", "dB below full scale"), ("-1:12", "-70:0"),
             work)
        draw(sideband(radio), folder / "plot-sideband.png", ("Hz from the carrier", "dB below the wanted side"),
             ("0:5000", "-110:0"), work)


main()
