#!/usr/bin/env python3
"""Has the program write its files and reads them by a reader that knows no more than the guide tells:
check_formats.py DATA_FOLDER PROGRAMS_FOLDER RECORD_UNTIL_KILLED SCRATCH_FOLDER"""
import json
import os
import re
import shutil
import subprocess
import sys
import time
import unittest
from pathlib import Path

import read_files

DATA, PROGRAMS, RECORD_UNTIL_KILLED, SCRATCH = (Path(argument).resolve() for argument in sys.argv[1:5])


def run(program, *words):
    done = subprocess.run([str(PROGRAMS / program), *map(str, words)], cwd=SCRATCH, capture_output=True, text=True,
                          check=False, env=os.environ | {"QT_QPA_PLATFORM": "offscreen", "HOME": str(SCRATCH)})
    assert done.returncode == 0, done.stdout + done.stderr
    return done.stdout


def worked(name, lines, *options):
    """The panel worked by a script; its folder and settings are of that name."""
    (SCRATCH / f"{name}.txt").write_text("\n".join(lines) + "\n")
    return run("quorlsdr", "--demo", "--virtual-time", "--settings", SCRATCH / f"{name}.ini", "--folder",
               SCRATCH / name, "--script", SCRATCH / f"{name}.txt", "--verbose", *options)


class Formats(unittest.TestCase):
    def test_recording_of_the_panel_with_three_tracks(self):
        worked("tour", ["set txtRecordFileName heard.wav", "click cmdWavCtls(0)", "set picFreqDisp 7205000", "wait 5000",
                        "set picFreqDisp 7220000", "wait 4000", "set picFreqDisp 7290000", "wait 6000",
                        "click cmdWavCtls(3)", f"answer {SCRATCH}/heard.wav", "click cmdWavCtls(8)", "quit"])
        path = next(SCRATCH.rglob("heard.wav"))
        read = read_files.recording(path.read_bytes())
        self.assertEqual((read["channels"], read["rate"], read["bits"]), (1, 48000, 16))
        self.assertGreater(max(read["samples"]), 1000)
        self.assertEqual([record["hertz"] for record in read["log"]][-3:], [7205000.0, 7220000.0, 7290000.0])
        told = json.loads(run("quorlsdr-cli", "tracks", "--json", path))
        listed = [record for record in read["log"] if record["end"] - record["frame"] >= 24000]
        self.assertEqual(len(told), len(listed))
        for track, record in zip(told, listed):
            self.assertAlmostEqual(track["khz"] * 1000, record["hertz"])
            self.assertAlmostEqual(track["start_seconds"], record["frame"] / 48000, places=5)
            self.assertAlmostEqual(track["seconds"], (record["end"] - record["frame"]) / 48000, places=3)
            self.assertEqual(track["date"], str(record["when"]))

    def test_recording_of_the_if(self):
        run("quorlsdr-cli", "listen", "--demo", "--model", "iq", "--low-side", "--frequency", "7205", "--seconds", "3",
            "--record-if", "band.wav")
        read = read_files.recording((SCRATCH / "band.wav").read_bytes())
        self.assertEqual((read["channels"], read["board"], read["low side"]), (2, 2, True))
        self.assertAlmostEqual(len(read["samples"]) / 2 / 48000, 3, delta=0.1)
        self.assertEqual([(record["hertz"], record["frame"]) for record in read["log"]], [(7205000.0, 0)])

    def test_journal_of_a_recording_that_was_killed(self):
        folder = SCRATCH / "killed"
        folder.mkdir()
        (folder / "progress").write_bytes(bytes(64))
        program = subprocess.Popen([RECORD_UNTIL_KILLED, str(folder), str(folder / "progress")])
        deadline = time.monotonic() + 30
        while int.from_bytes((folder / "progress").read_bytes()[:8], "little") < 48000 and time.monotonic() < deadline:
            self.assertIsNone(program.poll())
            time.sleep(0.02)
        program.kill()
        program.wait()
        read = read_files.journal((folder / "~QUORLWAV.JNL").read_bytes())
        self.assertEqual((read["rate"], read["channels"], read["half"], read["first file"]), (48000, 1, 32768, 1))
        self.assertTrue(read["slots"])
        for half, samples in read["slots"].items():
            for place in range(0, len(samples), 997):
                mixed = (half * 32768 + place + 1) * 0x9E3779B97F4A7C15 >> 48 & 0xFFFF
                self.assertEqual(samples[place] & 0xFFFF, mixed)
        logged = [event for event in read["events"] if event[0] == 1]
        self.assertEqual([event[1] for event in logged], [70000000 + 1000 * i for i in range(len(logged))])
        self.assertGreater(len(logged), 3)
        age = time.time() - read_files.date_of_days(logged[0][3]).timestamp()
        self.assertTrue(0 <= age < 120, age)

    def test_plans(self):
        for path in sorted((DATA / "bandplans").glob("*.bpl")):
            told = [(preset["subband"], round(1000 * preset["khz"]), preset["mode"], preset["description"])
                    for preset in json.loads(run("quorlsdr-cli", "plan", "list", "--json", path))]
            self.assertEqual(read_files.plan(path.read_bytes()), told, path.name)
            self.assertGreater(len(told), 5)

    def test_preset_that_follows_the_panel(self):
        printed = worked("follows", ["click optPreset(2)", "wait 300", "click optMode(1)", "click optFilter(3)",
                                     "click optAGC(3)", "wait 1000", "print lblFilterLo", "print lblFilterHi",
                                     "print lblAGCAttack", "print lblAGCDecay"])
        low, high, decay, attack = (float(text) for text in re.findall(r"^lbl\S+ = ([\d.]+)", printed, re.MULTILINE))
        read = read_files.preset((SCRATCH / "follows" / "Demo.bpl").read_bytes(), 0, 2)
        self.assertEqual(read, {"mode": "USB", "Hz": 7235000, "edges": (low, high), "decay s": decay, "attack ms": attack})
        self.assertNotEqual(decay, attack)

    def test_themes(self):
        for path in sorted((DATA / "themes").glob("*.thm")):
            read = read_files.theme(path.read_bytes())
            self.assertEqual(len(read), 15)
            swatches = {key: f"frmConfig.{key}" for key in read}
            printed = worked(f"theme-{path.stem.replace(' ', '')}",
                             ["click cmdConfig", f"choose frmConfig.cboTheme {path.stem}"] +
                             [f"print {swatch}" for swatch in swatches.values()])
            shown = dict(re.findall(r"frmConfig\.(\S+) = #([0-9A-F]{6})", printed))
            self.assertEqual({key.lower(): "%02X%02X%02X" % colour for key, colour in read.items()},
                             {key.lower(): colour for key, colour in shown.items()})

    def test_settings(self):
        worked("set", ["set picFreqDisp 6070000", "click cmdConfig", r"set frmConfig.txtDreamProgArgs a\b%CurFreq%",
                       "click frmConfig.cmdOK", "click cmdTimer", "set txtTimerStart 18:05", "set txtTimerEnd 19:00",
                       "click optTimerRepeat(1)", "click optTimerRate(2)", "click cmdTimerSave"])
        read = read_files.settings((SCRATCH / "set.ini").read_bytes())
        self.assertEqual(read["vfo1.drt1"]["tunedfrequency"], "60700000")
        self.assertEqual(read["frmmain"]["drm.dreamprogargs"], r"a\b%CurFreq%")
        self.assertEqual(read["ddsad9951"]["clkin"], "360096000")
        programme = read_files.programme(read["timer"]["timer1"])
        self.assertEqual((programme["counts"], programme["repeat"], programme["rate"], programme["dHz"]),
                         ("True", "Daily", "2", "60700000"))
        self.assertEqual(programme["begin"][11:], "18:05:00")

    def test_stations(self):
        band, stations = read_files.stations((DATA / "demo" / "stations.ini").read_bytes())
        self.assertEqual(band["seed"], "7")
        self.assertEqual(stations["radio horizon"]["frequency_khz"], "7205")
        described = " ".join(preset[3].lower() for preset in read_files.plan((DATA / "bandplans/Demo.bpl").read_bytes()))
        broadcasters = [name for name, keys in stations.items() if keys["mode"] == "am"]
        self.assertGreater(len(broadcasters), 5)
        for name in broadcasters:
            self.assertIn(name, described)


if __name__ == "__main__":
    shutil.rmtree(SCRATCH, ignore_errors=True)
    SCRATCH.mkdir(parents=True)
    unittest.main(argv=sys.argv[:1])
