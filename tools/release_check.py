#!/usr/bin/env python3
"""What listeners do with the package, on a bare Debian 12 root: install it, start the demo from its desktop entry, upgrade
over an older version, remove it.

Usage: release_check.py PACKAGE OLDER_PACKAGE WORK
Needs root and Debian's package registry. WORK keeps the bare root for the next time, and what was seen: demo.png.
"""
import array
import math
import os
import re
import shlex
import shutil
import signal
import struct
import subprocess
import sys
import time
import zlib
from configparser import RawConfigParser
from pathlib import Path

PATIENCE = 30.0  # seconds until a window shows
USER = "listener"
ENTRY = "usr/share/applications/org.quorlsdr.quorlsdr.desktop"
# What apt and the dependencies keep for themselves, and what belongs to the user.
NOT_OURS = ("dev/", "home/", "proc/", "run/", "tmp/", "var/cache/", "var/lib/apt/", "var/lib/dpkg/", "var/log/")


def enter_own_namespaces():
    """Mounts and processes of this check end with it."""
    if os.environ.get("QUORL_OWN_NAMESPACES") != "1":
        os.environ["QUORL_OWN_NAMESPACES"] = "1"
        os.execvp("unshare", ["unshare", "--mount", "--pid", "--fork", "--kill-child", "--mount-proc", sys.executable,
                              __file__, *sys.argv[1:]])


def require(condition, text):
    if not condition:
        sys.exit(f"release check: FAILED: {text}")


def wait_for(question, what):
    end = time.monotonic() + PATIENCE
    while time.monotonic() < end:
        if answer := question():
            return answer
        time.sleep(0.2)
    sys.exit(f"release check: FAILED: {what}")


class Root:
    """A bare Debian, a copy of one that was made before."""

    def __init__(self, work):
        self.path = work / "root"
        bare = work / "bare"
        if not (bare / "made").exists():
            shutil.rmtree(bare, ignore_errors=True)
            subprocess.run(["debootstrap", "--variant=minbase", "bookworm", bare], check=True, stdout=subprocess.DEVNULL)
            (bare / "made").touch()
        if self.path.exists():
            subprocess.run(["rm", "-rf", "--one-file-system", self.path], check=True)
        subprocess.run(["cp", "-a", bare, self.path], check=True)
        shutil.copy("/etc/resolv.conf", self.path / "etc/resolv.conf")
        (self.path / "usr/sbin/policy-rc.d").write_text("#!/bin/sh\nexit 101\n")  # starts no services
        (self.path / "usr/sbin/policy-rc.d").chmod(0o755)
        subprocess.run(["mount", "-t", "proc", "proc", self.path / "proc"], check=True)
        self.run("useradd", "--create-home", USER)
        self.run("apt-get", "update", "-qq")

    def run(self, *words):
        done = subprocess.run(["chroot", self.path, "env", "DEBIAN_FRONTEND=noninteractive", "LC_ALL=C.UTF-8", *words],
                              capture_output=True, text=True, stdin=subprocess.DEVNULL)
        require(done.returncode == 0, f"{shlex.join(words)}:\n{done.stdout}{done.stderr}")
        return done.stdout

    def install(self, package):
        shutil.copy(package, self.path / "tmp")
        self.run("apt-get", "install", "-y", "--no-install-recommends", f"/tmp/{package.name}")

    def files(self):
        found = set()
        for folder, folders, names in os.walk(self.path):
            here = os.path.relpath(folder, self.path) + "/"
            here = "" if here == "./" else here
            folders[:] = [name for name in folders if not f"{here}{name}/".startswith(NOT_OURS)]
            found.update(here + name for name in names)
            found.update(f"{here}{name}/" for name in folders)
        return found

    def home(self):
        """Path below the user's home -> content."""
        home = self.path / "home" / USER
        return {str(file.relative_to(home)): file.read_bytes() for file in home.rglob("*") if file.is_file()}


class Desk:
    """A display and a sound system for the user of the root, outside of it: nothing that the program needs comes with them."""

    def __init__(self, root, work):
        self.root = root
        self.picture = work / "screen"
        shutil.rmtree(self.picture, ignore_errors=True)
        self.picture.mkdir()
        sockets = root.path / "tmp/.X11-unix"
        sockets.mkdir(mode=0o1777)
        os.makedirs("/tmp/.X11-unix", exist_ok=True)
        subprocess.run(["mount", "-t", "tmpfs", "tmpfs", "/tmp/.X11-unix"], check=True)  # away from other displays
        subprocess.run(["mount", "--bind", "/tmp/.X11-unix", sockets], check=True)
        read_end, write_end = os.pipe()
        self.display = subprocess.Popen(["Xvfb", "-displayfd", str(write_end), "-screen", "0", "1440x900x24", "-ac",
                                         "-nolisten", "tcp", "-noreset", "-fbdir", self.picture],
                                        pass_fds=[write_end], stderr=subprocess.DEVNULL)
        os.close(write_end)
        self.name = ":" + os.read(read_end, 16).decode().strip()
        self.sound = root.path / "tmp/sound"
        own = work / "sound"
        own.mkdir(exist_ok=True)
        environment = dict(os.environ, HOME=str(own), XDG_RUNTIME_DIR=str(own))
        self.server = subprocess.Popen(
            ["pulseaudio", "-n", "--daemonize=no", "--exit-idle-time=-1", "--disable-shm=yes", "--use-pid-file=no",
             "--load=module-null-sink sink_name=speaker",
             f"--load=module-native-protocol-unix auth-anonymous=1 socket={self.sound}"],
            env=environment, stderr=subprocess.DEVNULL)
        wait_for(self.sound.exists, "no sound system")

    def command(self, *words):
        return ["chroot", f"--userspec={USER}:{USER}", self.root.path, "env", "-i", f"HOME=/home/{USER}", "LANG=C.UTF-8",
                "PATH=/usr/bin:/bin", f"DISPLAY={self.name}", "PULSE_SERVER=unix:/tmp/sound", *words]

    def run(self, *words):
        done = subprocess.run(self.command(*words), capture_output=True, text=True, stdin=subprocess.DEVNULL)
        require(done.returncode == 0, f"{shlex.join(words)}:\n{done.stdout}{done.stderr}")
        return done.stdout

    def script(self, text):
        (self.root.path / "tmp/script.txt").write_text(text)
        return self.run("quorlsdr", "--demo", "--virtual-time", "--script", "/tmp/script.txt")

    def window(self):
        """What the window manager would know of the radio's window; empty before it shows."""
        tree = subprocess.run(["xwininfo", "-display", self.name, "-root", "-tree"], capture_output=True, text=True).stdout
        found = re.search(r'^\s+(0x[0-9a-f]+) ".*": \("quorlsdr" "quorlsdr"\)\s+(\d{3,})x(\d{3,})', tree, re.MULTILINE)
        if not found:
            return ""
        return subprocess.run(["xprop", "-display", self.name, "-id", found[1]], capture_output=True, text=True).stdout

    def pixels(self):
        """Width, height and rows of the screen, four bytes a pixel."""
        dump = (self.picture / "Xvfb_screen0").read_bytes()
        words = struct.unpack(">25I", dump[:100])
        width, height, line = words[4], words[5], words[12]
        start = words[0] + words[19] * 12
        return width, height, [dump[start + y * line:start + y * line + 4 * width] for y in range(height)]

    def heard(self, seconds):
        """Decibels below full scale of what the loudspeaker plays."""
        with subprocess.Popen(["parec", f"--server=unix:{self.sound}", "--device=speaker.monitor", "--format=s16le",
                               "--rate=48000", "--channels=1", "--raw"], stdout=subprocess.PIPE,
                              stderr=subprocess.DEVNULL) as recorder:
            samples = array.array("h", recorder.stdout.read(int(96000 * seconds)))
            recorder.terminate()
        mean = sum(sample * sample for sample in samples) / len(samples)
        return 10 * math.log10(max(mean, 1e-9) / 32768 ** 2)


def write_png(path, width, height, rows):
    def chunk(kind, data):
        return struct.pack(">I", len(data)) + kind + data + struct.pack(">I", zlib.crc32(kind + data))

    def line(row):  # from blue, green, red and nothing
        rgb = bytearray(3 * width)
        rgb[0::3], rgb[1::3], rgb[2::3] = row[2::4], row[1::4], row[0::4]
        return b"\0" + rgb

    path.write_bytes(b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", struct.pack(">IIBBBBB", width, height, 8, 2, 0, 0, 0)) +
                     chunk(b"IDAT", zlib.compress(b"".join(map(line, rows)))) + chunk(b"IEND", b""))


def start(root, desk, section):
    """The process of a section of the desktop entry, its window on the screen."""
    entry = RawConfigParser(strict=True)
    entry.optionxform = str
    entry.read(root.path / ENTRY)
    require((root.path / "usr/bin" / entry["Desktop Entry"]["TryExec"]).exists(), "the desktop entry names no program")
    program = subprocess.Popen(desk.command(*shlex.split(entry[section]["Exec"])), start_new_session=True)
    window = wait_for(desk.window, f"no window of {section}")
    require("_NET_WM_ICON(CARDINAL)" in window, "the window has no icon")
    return program


def end(program, desk):
    os.killpg(program.pid, signal.SIGTERM)
    require(program.wait(PATIENCE) == 0, "the program ended with a fault")
    wait_for(lambda: not desk.window(), "the window stays")


def start_demo(root, desk, picture):
    """The demo by its desktop entry; it plays, paints and ends in good order."""
    program = start(root, desk, "Desktop Action Demo")
    wait_for(lambda: desk.heard(0.5) > -50, "the demo is silent")
    level = desk.heard(2)
    width, height, before = desk.pixels()
    time.sleep(1)
    after = desk.pixels()[2]
    moved = sum(a != b for a, b in zip(before, after))
    colours = len({row[at:at + 3] for row in after for at in range(0, 4 * width, 4)})
    write_png(picture, width, height, after)
    require(moved > 100 and colours > 500, f"the window stands still: {moved} lines moved, {colours} colours")
    end(program, desk)
    return f"{level:.1f} dB of sound, {moved} of {height} lines moved, {colours} colours"


def check(package, older, work):
    begin = time.monotonic()

    def passed(text):
        print(f"{time.monotonic() - begin:6.1f} s  {text}", flush=True)

    root = Root(work)
    bare = root.files()
    passed("a bare Debian 12")
    root.install(older)
    old_version = root.run("quorlsdr", "--version").splitlines()[0]
    passed(f"installed: {old_version}")
    desk = Desk(root, work)
    desk.script("wait 500\nset picFreqDisp 7260000\nclick optMode(1)\nwait 500\nquit\n")
    own = root.path / "home" / USER / ".local/share/quorlsdr/Mine.bpl"
    shutil.copy(own.parent / "Demo.bpl", own)
    kept = root.home()
    require(".config/quorlsdr/demo.ini" in kept, "no settings were stored")

    root.install(package)
    version = root.run("quorlsdr", "--version").splitlines()[0]
    require(version != old_version, f"still {version}")
    require(root.home() == kept, "the upgrade has changed the user's files")
    desk.script("wait 500\nexpect optMode(1) 1\nexpect lbl7Seg(2) 2\nexpect lbl7Seg(3) 6\nquit\n")
    passed(f"upgraded with the settings kept: {version}")
    passed("the demo from its desktop entry: " + start_demo(root, desk, work / "demo.png"))
    end(start(root, desk, "Desktop Action FirstStart"), desk)
    passed("the first start from its desktop entry")

    kept = root.home()
    files = set(root.run("dpkg", "-L", "quorlsdr").split("\n"))
    root.run("apt-get", "remove", "-y", "quorlsdr")
    require(not [name for name in files if name and (root.path / name[1:]).is_file()], "files are left after remove")
    require("quorlsdr" not in root.run("dpkg-query", "--list"), "dpkg still knows it: something waits for a purge")
    root.run("apt-get", "autoremove", "--purge", "-y")
    left = sorted(root.files() - bare)
    require(not [name for name in left if "quorlsdr" in name or "/" + name.rstrip("/") in files], f"left behind: {left}")
    require(root.home() == kept, "removing has changed the user's files")
    passed(f"removed, the user's {len(kept)} files kept; of other packages {len(left)} files and folders stay: " +
           ", ".join(left[:5]))
    print("release check: all passed")


if __name__ == "__main__":
    if os.geteuid() != 0:
        sys.exit("release check: needs root, for a root folder of its own")
    enter_own_namespaces()
    check(Path(sys.argv[1]), Path(sys.argv[2]), Path(sys.argv[3]).resolve())
