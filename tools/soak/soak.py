#!/usr/bin/env python3
"""Soaks the desktop program: soak.py PROGRAM [--minutes 10] [--seed N] [--library SANITIZER] [--keep]

The radio runs off screen on a sound server, a serial port and a disk of its own, which fail all the time, while a
script works its panel at random. It is killed, ended and started again. What must hold is looked at from outside. The
seed repeats the gestures and the order of the troubles.
"""
import argparse
import collections
import glob
import os
import random
import re
import shutil
import signal
import subprocess
import sys
import threading
import time
import wave

from machine import Clients, Disk, Port, Sound, make_work_folder, run

LIFE = 75             # seconds
ANSWER = 15.0         # seconds between two signs of life, at most; a step of the script takes up to one
SOUND_BACK = 25.0     # seconds from a trouble's end until the radio receives again
RECORDED = 0.6        # seconds that a recording may be shorter than the panel showed: 0.1, and what we saw late
GROWTH = 96           # MB that a life may gain behind its first third, under a sanitizer

HERE = os.path.dirname(os.path.abspath(__file__))
ROOT = os.path.dirname(os.path.dirname(HERE))

SETTINGS = """[frmMain]
AutoStartSDR=True
KBDSupport=True
PerfStatsOn=1
SDRModelNo=0
VFO1.IFType=0
CurrentCaptureDeviceName=Monitor of Antenna
CurrentPlaybackDeviceName=Loudspeaker
[DDSAD9951]
ClkIn=360096000
[DDSSerialIF]
PortNo=1
COM1={port}
[VFO1.DRT1]
TunedFrequency=72050000
[Memories]
SafeMemories=True
[WavFile]
MostFileBytes=1400000
[Remote]
On=True
Port={remote}
"""

# What would end the life, take the machine's devices away for good, or work the recorder, which has lines of its own.
LEFT_ALONE = re.compile(r"optPwr\(2\)|frmFirstStart|frmConfig\.(cbo|txt|chkRemote|optIF|cmdFirst|chkLoLO|chkInv|chkEnable|chkClose"
                        r"|chkDream|cmdFind|FormCaption)|frmCalibrate|cmdWavCtls|optRecord|chkRecordIF|cmdBrowse|cmdTimer"
                        r"|frmTimer|optTimer|txtRecord|chkPerfStatsOn|optDisplaySize|mnu|chkKeepTail|chkStayOn")
WHEELED = [f"lbl7Seg({i})" for i in range(2, 8)] + ["lblFilterHi", "lblFilterLo", "lblOutVol", "lblBFO"]
KEYS = ["up", "down", "left", "right", "space", "a", "z", "pageup", "pagedown", "home", "escape"]
COMPARED = [f"lbl7Seg({i})" for i in range(9)] + ["lblTuningRate", "chkKeepTail"]


class Faults:
    def __init__(self):
        self.lines = []

    def __call__(self, text):
        self.lines.append(text)
        print("FAULT: " + text, flush=True)


class Script:
    """The lines that one life works through."""

    def __init__(self, seed, names):
        self.random = random.Random(seed)
        self.names = names
        self.lines = []

    def add(self, *lines):
        self.lines += lines

    def gesture(self):
        pick = self.random
        name = pick.choice(self.names)
        place = lambda: f"{pick.random():.2f} {pick.random():.2f}"
        held = pick.choice(["", "", "", " shift", " ctrl"])
        kind = pick.randrange(10)
        if kind < 4:
            self.add(f"click {name} {place()}{held}")
        elif kind < 5:
            self.add(f"rightclick {name} {place()}{held}")
        elif kind < 6:
            self.add(f"doubleclick {name} {place()}{held}")
        elif kind < 7:
            self.add(f"drag {name} {place()} {place()} {pick.choice(['left', 'middle', 'right'])}")
        elif kind < 8:
            self.add("key " + pick.choice(KEYS) + held)
        else:
            self.add(f"wheel {pick.choice(WHEELED)} {pick.randint(-9, 9)}")

    def sign(self):
        self.add("print optPwr(0)", "print lblStatsVal(0)", "print lblRecordTime")

    def play(self, steps):
        """Gestures; the radio is switched on wherever it is off."""
        for step in range(steps):
            for _ in range(self.random.randint(1, 3)):
                self.gesture()
            self.add(f"wait {self.random.randint(50, 250)}")
            if step % 3 == 0:
                self.sign()
            if step % 15 == 0:
                self.add("click optPwr(0)")

    def compare(self):
        """What the next life must show again."""
        # The BFO is in the digits, and begins anew.
        self.add("click optPwr(0)", "rightclick lblBFO", f"set picFreqDisp {self.random.randint(5900, 7400) * 1000}", "wait 1500")
        self.add("print optPwr(1)", *[f"print {name}" for name in COMPARED])


class Life:
    """The program from its start to its end."""

    def __init__(self, soak, script, name):
        self.soak = soak
        self.values = {}
        self.seen = {}                    # a control's value -> when it changed to that
        self.boxes = []
        self.last_sign = self.last_received = time.monotonic()
        self.sizes = []
        path = os.path.join(soak.work, f"{name}.txt")
        with open(path, "w", encoding="utf-8") as file:
            file.write("\n".join(script.lines) + "\nquit\n")
        self.process = subprocess.Popen(
            ["setarch", "-R", soak.program, "--settings", soak.settings, "--folder", soak.plans, "--script", path],
            env=soak.environment(), cwd=soak.work, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
            stderr=open(os.path.join(soak.work, name + ".err"), "wb"), text=True, errors="replace")
        self.reader = threading.Thread(target=self.read, daemon=True)
        self.reader.start()

    def read(self):
        for line in self.process.stdout:
            now = time.monotonic()
            self.last_sign = now
            if line.startswith("box: "):
                self.boxes.append(line[5:].strip())
                continue
            name, found, value = line.rstrip("\n").partition(" = ")
            if not found:
                if ".txt:" in line:
                    self.boxes.append("SCRIPT " + line.strip())
                continue
            if self.values.get(name) != value:
                self.seen[name] = now
                if name == "lblStatsVal(0)" and self.values.get("optPwr(0)") == "1":
                    self.last_received = now
            self.values[name] = value

    def runs(self):
        return self.process.poll() is None

    def measure(self):
        try:
            with open(f"/proc/{self.process.pid}/statm", encoding="ascii") as file:
                self.sizes.append(int(file.read().split()[1]) * 4096 >> 20)
        except (OSError, IndexError):
            pass

    def zombies(self):
        count = 0
        for stat in glob.glob("/proc/[0-9]*/stat"):
            try:
                with open(stat, encoding="utf-8", errors="replace") as file:
                    words = file.read().rpartition(")")[2].split()
            except OSError:
                continue
            count += words[0] == "Z" and int(words[1]) == self.process.pid
        return count

    def wait(self, seconds):
        end = time.monotonic() + seconds
        while self.runs() and time.monotonic() < end:
            time.sleep(0.05)
        return not self.runs()


class Soak:
    def __init__(self, options):
        self.program = os.path.abspath(options.program)
        self.library = options.library
        self.faults = Faults()
        self.random = random.Random(options.seed)
        self.seed = options.seed
        self.minutes = options.minutes
        self.work = make_work_folder()
        self.counts = collections.Counter()
        self.slowest = collections.Counter()
        self.most = 0
        self.disk = self.sound = None

    def prepare(self):
        shim = os.path.join(self.work, "pty_lines.so")
        subprocess.run(["c++", "-O1", "-shared", "-fPIC", "-o", shim, os.path.join(HERE, "pty_lines.cpp")], check=True)
        self.preload = f"{self.library}:{shim}" if self.library else shim
        self.disk = Disk(self.work)
        os.mkdir(os.path.join(self.work, "sound"))
        self.sound = Sound(os.path.join(self.work, "sound"))
        self.port = Port(os.path.join(self.work, "port"), shim)
        self.clients = Clients(self.seed)
        self.settings = os.path.join(self.disk.folder, "settings.ini")
        self.plans = os.path.join(self.disk.folder, "plans")
        self.music = os.path.join(self.disk.folder, "music")
        shutil.copytree(os.path.join(ROOT, "data", "bandplans"), self.plans)
        os.mkdir(self.music)
        with open(self.settings, "w", encoding="utf-8") as file:
            file.write(SETTINGS.format(port=self.port.path, remote=self.clients.port))
        self.sections = {plan: self.sections_of(plan) for plan in glob.glob(self.plans + "/*.bpl")}
        self.names = self.find_names()
        self.expected = None              # what the next life must show
        self.is_disk_filled = False       # in this life: what did not fit is missing in a recording
        self.recorded = None              # seconds of the recording that a kill has left behind
        self.troubles = []

    def environment(self):
        reports = os.path.join(self.work, "report")
        common = f"log_path={reports}:"
        suppressions = os.path.join(ROOT, "tests")
        return dict(self.sound.environment, QT_QPA_PLATFORM="offscreen", LD_PRELOAD=self.preload,
                    ASAN_OPTIONS=common + "quarantine_size_mb=16:detect_stack_use_after_return=0",
                    LSAN_OPTIONS=f"suppressions={suppressions}/lsan.supp:print_suppressions=0",
                    UBSAN_OPTIONS=common + "print_stacktrace=1:halt_on_error=1",
                    TSAN_OPTIONS=common + f"suppressions={suppressions}/tsan.supp:second_deadlock_stack=1")

    def find_names(self):
        path = os.path.join(self.work, "dump.txt")
        with open(path, "w", encoding="utf-8") as file:
            file.write("dump\n")
        listed = subprocess.run(
            ["setarch", "-R", self.program, "--demo", "--virtual-time", "--verbose", "--settings",
             os.path.join(self.work, "dump.ini"), "--folder", self.plans, "--script", path], env=self.environment(),
            cwd=self.work, capture_output=True, text=True, timeout=120, check=True).stdout
        names = re.findall(r"^(\S+) = .* enabled visible$", listed, re.MULTILINE)
        self.has_remote = "frmConfig.chkRemoteOn" in names
        return [name for name in names if not LEFT_ALONE.match(name)]

    @staticmethod
    def sections_of(plan):
        with open(plan, encoding="cp1252", newline="") as file:
            return re.findall(r"^\[(.*)\]", file.read(), re.MULTILINE)

    # One life.

    def live(self, number, seconds, end):
        script = Script(f"{self.seed} {number}", self.names)
        if self.recorded is not None:
            script.add("answer yes")
        script.add("wait 1500", *[f"print {name}" for name in COMPARED], "print lblRecorderState")
        if self.recorded is not None:
            script.add(f"set txtRecordFileName {self.music}/kept", "click cmdWavCtls(8)", "wait 2500",
                       "print lblRecorderState")
        script.add("set chkPerfStatsOn 1", "wait 500")
        records = end == "kill" and number % 2 == 0
        self.is_disk_filled = False
        if records:
            script.add("click optPwr(0)", "wait 500", f"set txtRecordFileName {self.music}/next", "click cmdWavCtls(0)")
        script.play(100000 if end != "quit" else int(seconds * 4))
        script.compare()
        script.sign()
        life = Life(self, script, f"life-{number}")
        begin = time.monotonic()
        self.check_start(life)
        while life.runs() and time.monotonic() < begin + seconds and not self.hangs(life):
            self.make_trouble(life)
        self.end(life, end, records)
        self.check_end(life, number)

    def check_start(self, life):
        """The first seconds belong to what the last life has left."""
        end = time.monotonic() + 30
        while life.runs() and "chkKeepTail" not in life.values and time.monotonic() < end:
            time.sleep(0.1)
        time.sleep(1.0)
        if not life.runs() or "chkKeepTail" not in life.values:
            self.faults(f"the program does not start: {life.process.poll()} {life.boxes[-3:]}")
            return
        shown = {name: life.values.get(name) for name in COMPARED}
        if self.expected and shown != self.expected:
            for name in COMPARED:
                if shown[name] != self.expected[name]:
                    self.faults(f"{name} was kept as {self.expected[name]!r} and comes back as {shown[name]!r}")
        if self.recorded is not None:
            self.check_recording(life)

    def check_recording(self, life):
        end = time.monotonic() + 15
        while life.runs() and not glob.glob(self.music + "/kept*.wav") and time.monotonic() < end:
            time.sleep(0.2)
        time.sleep(2.0)
        files = sorted(glob.glob(self.music + "/kept*.wav"))
        length = 0.0
        for path in files:
            with wave.open(path) as file:
                length += file.getnframes() / file.getframerate()
        self.counts["recordings mended"] += 1
        self.counts["parts of these"] += len(files)
        if length < self.recorded - RECORDED:
            self.faults(f"a recording of {self.recorded:.2f} s came back with {length:.2f} s in {len(files)} files; "
                        f"{life.values.get('lblRecorderState')}, {life.boxes[-3:]}")
        for path in files:
            os.unlink(path)
        self.recorded = None

    def hangs(self, life):
        if time.monotonic() - life.last_sign < ANSWER or not life.runs():
            return False
        self.faults(f"the program does not answer for {ANSWER} s")
        return True

    def pause(self, life, seconds):
        end = time.monotonic() + seconds
        while life.runs() and time.monotonic() < end and not self.hangs(life):
            time.sleep(0.2)
            self.watch(life)

    def watch(self, life):
        if not life.sizes or time.monotonic() > self.next_size:
            self.next_size = time.monotonic() + 1.0
            life.measure()

    def make_trouble(self, life):
        self.pause(life, self.random.uniform(1.0, 4.0))
        if not self.troubles:
            self.troubles = self.sound.troubles() + self.port.troubles() + self.disk.troubles() + self.clients.troubles() * self.has_remote
            self.random.shuffle(self.troubles)
        name, begin, end = self.troubles.pop()
        lasts = self.random.uniform(1.0, 6.0)
        if not life.runs():
            return
        print(f"  {time.monotonic() - self.begun:6.1f} s  {name}, for {lasts:.1f} s", flush=True)
        begin()
        self.is_disk_filled |= name == "disk is full"
        self.pause(life, lasts)
        end()
        self.counts[name] += 1
        self.await_sound(life, name)

    def await_sound(self, life, name):
        begin = time.monotonic()
        while life.runs() and not self.hangs(life):
            held = self.port.is_held_by(life.process.pid)
            if life.last_received > begin and held:
                if self.has_remote and not self.clients.asks() and life.runs():
                    self.faults(f"after \"{name}\" a remote client gets no answer")
                self.slowest[name] = max(self.slowest[name], time.monotonic() - begin)
                return
            if time.monotonic() - begin > SOUND_BACK:
                self.faults(f"{SOUND_BACK} s after \"{name}\": " +
                            ("the port is not taken again" if not held else "nothing is received") +
                            f"; On is {life.values.get('optPwr(0)')}, {life.boxes[-2:]}")
                return
            time.sleep(0.1)
            self.watch(life)

    # How a life ends, and what it leaves.

    def end(self, life, how, records):
        self.expected = None
        if life.runs() and life.zombies() > 0:
            self.faults(f"{life.zombies()} zombies")
        if not life.runs():
            pass
        elif how == "kill":
            if records:
                self.note_recording(life)
            life.process.send_signal(signal.SIGKILL)
        elif how == "term":
            life.process.send_signal(signal.SIGTERM)
        patience = 60 if how == "quit" else 30
        if not life.wait(patience):
            self.faults(f"the program does not end within {patience} s of \"{how}\"")
            life.process.send_signal(signal.SIGABRT)
            life.process.wait()
        life.reader.join(5)
        code, wanted = life.process.returncode, -signal.SIGKILL if how == "kill" else 0
        if code != wanted:
            self.faults(f"the program ends with {code}, not {wanted}: {life.boxes[-3:]}")
        self.counts["ended by " + how] += 1
        if how == "quit" and code == 0:
            self.expected = {name: life.values.get(name) for name in COMPARED}

    def note_recording(self, life):
        """How long the recording is now: its last whole second was shown a moment ago."""
        shown = life.values.get("lblRecordTime", "00:00:00")
        self.recorded = sum(int(part) * 60 ** place for place, part in enumerate(reversed(shown.split(":"))))
        if self.is_disk_filled:
            self.recorded = min(self.recorded, 1.0)

    def check_end(self, life, number):
        for box in life.boxes:
            if box.startswith("SCRIPT"):
                self.faults("the script stopped: " + box)
        self.counts["boxes"] += len(life.boxes)
        self.check_settings()
        self.check_plans()
        if self.expected:
            for pattern in ("*.new", "plans/*.new", "plans/~QUORLWAV.JNL"):
                left = glob.glob(os.path.join(self.disk.folder, pattern))
                if left:
                    self.faults(f"left behind: {left}")
        for report in glob.glob(os.path.join(self.work, "report.*")):
            with open(report, encoding="utf-8", errors="replace") as file:
                text = file.read()
            if text.strip():
                self.faults(f"a report of the sanitizer in life {number}:\n{text[:6000]}")
            os.unlink(report)
        sizes = life.sizes
        if len(sizes) > 30:
            early, late = max(sizes[:len(sizes) // 3]), max(sizes)
            self.most = max(self.most, late)
            if late > early + GROWTH:
                self.faults(f"memory grew from {early} to {late} MB")

    def check_settings(self):
        with open(self.settings, encoding="utf-8") as file:
            text = file.read()
        if not text.endswith("\n") or "[frmMain]" not in text:
            self.faults("the settings are torn")
        for line in text.splitlines():
            if not re.match(r"\[.+\]$|[^=\[]+=|$", line):
                self.faults("not a line of settings: " + line)

    def check_plans(self):
        for plan, sections in self.sections.items():
            missing = set(sections) - set(self.sections_of(plan))
            if missing:
                self.faults(f"{plan} has lost {sorted(missing)[:3]}")

    def run(self):
        self.begun = time.monotonic()
        self.next_size = 0.0
        end = self.begun + self.minutes * 60
        number = 0
        ends = ["kill", "quit", "kill", "term"]
        while time.monotonic() < end - 15:
            how = ends[number % len(ends)]
            seconds = min(LIFE, max(end - time.monotonic(), 15))
            print(f"{time.monotonic() - self.begun:6.1f} s  life {number}, which ends by {how}", flush=True)
            self.live(number, seconds, how)
            number += 1
        self.counts["lives"] = number

    def close(self):
        if self.sound:
            self.sound.end()
        if self.disk:
            self.disk.end()

    def tell(self):
        print(f"Seed {self.seed}, {self.minutes} minutes, at most {self.most} MB")
        self.counts["remote clients"] = self.clients.connected
        for name, count in sorted(self.counts.items()):
            slowest = f", received again after {self.slowest[name]:.1f} s at most" if name in self.slowest else ""
            print(f"  {count:4d}  {name}{slowest}")
        print(f"{len(self.faults.lines)} faults")


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("program")
    parser.add_argument("--minutes", type=float, default=10)
    parser.add_argument("--seed", type=int, default=int(time.time()))
    parser.add_argument("--library", default="", help="the sanitizer's, which must come before all others")
    parser.add_argument("--keep", action="store_true", help="keep the work folder")
    options = parser.parse_args()
    print(f"Seed {options.seed}", flush=True)
    soak = Soak(options)
    try:
        soak.prepare()
        soak.run()
    finally:
        soak.close()
        soak.tell()
        if options.keep or soak.faults.lines:
            print("Kept: " + soak.work)
        else:
            shutil.rmtree(soak.work, ignore_errors=True)
    return 1 if soak.faults.lines else 0


if __name__ == "__main__":
    sys.exit(main())
