"""The machine around a radio that is soaked: a sound server, a serial port and a disk of its own, each with
what goes wrong with it. Every trouble is a pair of routines, one that begins and one that ends it."""
import os
import random
import shutil
import signal
import socket
import struct
import subprocess
import tempfile
import time


def run(*command):
    return subprocess.run(command, stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL,
                          check=False).returncode == 0


def stop(process):
    if process and process.poll() is None:
        process.send_signal(signal.SIGCONT)
        process.terminate()
        try:
            process.wait(5)
        except subprocess.TimeoutExpired:
            process.kill()
            process.wait()


class Sound:
    """PulseAudio with two null sinks; a band of noise that rises and falls is on the antenna."""

    SINKS = {"antenna": "Antenna", "speaker": "Loudspeaker"}

    def __init__(self, folder):
        self.folder = folder
        self.environment = dict(os.environ, HOME=folder, XDG_RUNTIME_DIR=folder, XDG_CONFIG_HOME=folder,
                                PULSE_RUNTIME_PATH=folder, PULSE_STATE_PATH=folder,
                                PULSE_SERVER=f"unix:{folder}/socket")
        self.server = self.player = None
        self.band = os.path.join(folder, "band.raw")
        self.write_band()
        self.start()

    def write_band(self):
        noise = random.Random(1)
        with open(self.band, "wb") as file:
            for _ in range(60):
                level = noise.randint(500, 12000)
                file.write(b"".join(struct.pack("<h", noise.randint(-level, level)) for _ in range(12000)) * 4)

    def start(self):
        script = os.path.join(self.folder, "script.pa")
        with open(script, "w", encoding="ascii") as file:
            file.write(f"load-module module-native-protocol-unix auth-anonymous=1 socket={self.folder}/socket\n")
        self.server = subprocess.Popen(
            ["pulseaudio", "--daemonize=no", "--system=no", "--exit-idle-time=-1", "--use-pid-file=no",
             "--disable-shm=yes", "-n", "-F", script], env=self.environment, stdin=subprocess.DEVNULL,
            stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        end = time.monotonic() + 10
        while not self.control("info"):
            if time.monotonic() > end:
                raise RuntimeError("pulseaudio does not start")
            time.sleep(0.1)
        for sink in self.SINKS:
            self.load(sink)

    def control(self, *command):
        return subprocess.run(["pactl", *command], env=self.environment, stdout=subprocess.DEVNULL,
                              stderr=subprocess.DEVNULL, timeout=20, check=False).returncode == 0

    def load(self, sink):
        self.control("load-module", "module-null-sink", f"sink_name={sink}", "rate=48000",
                     f"sink_properties=device.description={self.SINKS[sink]}")
        if sink == "antenna":
            self.silence()
            play = f"while :; do pacat --device=antenna --raw --channels=1 --rate=48000 {self.band}; sleep 0.2; done"
            self.player = subprocess.Popen(["sh", "-c", "exec 2>/dev/null; " + play], env=self.environment,
                                           stdin=subprocess.DEVNULL, start_new_session=True)

    def unload(self, sink):
        listed = subprocess.run(["pactl", "list", "short", "modules"], env=self.environment, capture_output=True,
                                text=True, timeout=20, check=False).stdout
        for line in listed.splitlines():
            if f"sink_name={sink} " in line:
                self.control("unload-module", line.split()[0])

    def silence(self):
        """The player goes with all that it has started."""
        if self.player:
            os.killpg(self.player.pid, signal.SIGKILL)
            self.player.wait()
        self.player = None

    def hang(self):
        self.server.send_signal(signal.SIGSTOP)

    def go_on(self):
        self.server.send_signal(signal.SIGCONT)

    def end(self):
        self.silence()
        stop(self.server)

    def troubles(self):
        return [("sound server is ended and started", self.end, self.start),
                ("sound server hangs", self.hang, self.go_on),
                ("loudspeaker goes and comes", lambda: self.unload("speaker"), lambda: self.load("speaker")),
                ("input goes and comes", lambda: self.unload("antenna"), lambda: self.load("antenna"))]


class Port:
    """A pseudo terminal that passes for a serial port, behind a name that stays."""

    def __init__(self, path, library):
        self.path = path
        self.library = library
        self.master = self.slave = None
        self.plug()

    def plug(self):
        self.master, slave = os.openpty()
        self.slave = os.ttyname(slave)
        os.close(slave)
        os.symlink(self.slave, self.path)

    def pull(self):
        os.unlink(self.path)
        os.close(self.master)

    def is_held_by(self, process):
        folder = f"/proc/{process}/fd"
        try:
            return any(os.readlink(f"{folder}/{file}") == self.slave for file in os.listdir(folder))
        except OSError:
            return False

    def troubles(self):
        return [("serial port is pulled out and put back", self.pull, self.plug)]


class Disk:
    """A small file system of its own where that can be had, which is as root; else a folder without troubles."""

    MEGABYTES = 64

    def __init__(self, work):
        self.folder = os.path.join(work, "disk")
        self.image = os.path.join(work, "disk.img")
        self.filler = os.path.join(self.folder, "filler")
        os.mkdir(self.folder)
        with open(self.image, "wb") as file:
            file.truncate(self.MEGABYTES << 20)
        self.is_own = (os.geteuid() == 0 and shutil.which("fsfreeze") is not None and
                       run("mkfs.ext4", "-q", "-O", "^has_journal", self.image) and
                       run("mount", "-o", "loop", self.image, self.folder))
        self.is_frozen = False
        if not self.is_own:
            print("The disk's troubles are left out: they need root, loop devices and fsfreeze")

    def fill(self):
        left = os.statvfs(self.folder)
        with open(self.filler, "wb") as file:
            try:
                os.posix_fallocate(file.fileno(), 0, max(left.f_bavail * left.f_frsize - (64 << 10), 1))
            except OSError:
                pass

    def empty(self):
        os.unlink(self.filler)

    def freeze(self):
        self.is_frozen = run("fsfreeze", "-f", self.folder)

    def thaw(self):
        if self.is_frozen:
            run("fsfreeze", "-u", self.folder)
        self.is_frozen = False

    def end(self):
        self.thaw()
        if self.is_own:
            for _ in range(50):
                if run("umount", self.folder):
                    return
                time.sleep(0.1)

    def troubles(self):
        if not self.is_own:
            return []
        return [("disk is full", self.fill, self.empty), ("disk stands still", self.freeze, self.thaw)]


class Clients:
    """Programs that steer the radio from outside, well and badly behaved ones, all at once while the trouble lasts."""

    LINES = [b"f\n", b"m\n", b"l STRENGTH\n", b"\\dump_state\n", b"\\chk_vfo\n", b"s\n", b"M AM 0\nM USB 2400\n",
             b"L AF 0.5\n", b"+f\n", b";m\n", b"f f f\r\n", b"\\get_vfo_info VFOA\n"]
    NONSENSE = [b"\0" * 5000, b"x" * (1 << 20), b"F nan\n" * 500, b"f\n" * 10000, bytes(range(256)) * 40, b"F 7"]

    def __init__(self, seed):
        with socket.socket() as probe:
            probe.bind(("127.0.0.1", 0))
            self.port = probe.getsockname()[1]
        self.random = random.Random(seed)
        self.open = []
        self.connected = 0

    def come(self):
        for _ in range(self.random.randint(5, 80)):
            client = socket.socket()
            client.setblocking(False)
            client.connect_ex(("127.0.0.1", self.port))
            self.open.append(client)
        time.sleep(0.5)
        for client in self.open:
            kind = self.random.random()
            text = self.random.choice(self.NONSENSE if kind < 0.3 else self.LINES)
            try:
                client.send(text)
                self.connected += 1
            except OSError:
                pass

    def go(self):
        """Some read what came for them, most never have; some end in order."""
        for client in self.open:
            try:
                if self.random.random() < 0.3:
                    client.recv(1 << 16)
                if self.random.random() < 0.5:
                    client.shutdown(socket.SHUT_WR)
            except OSError:
                pass
            client.close()
        self.open = []

    def asks(self, patience=15.0):
        """The answer to a question of one more client; empty for none."""
        end = time.monotonic() + patience
        while time.monotonic() < end:
            try:
                with socket.create_connection(("127.0.0.1", self.port), 2.0) as client:
                    client.sendall(b"f\n")
                    client.settimeout(5.0)
                    answer = client.recv(100).decode("ascii", "replace").strip()
                    if answer.isdigit():
                        return answer
            except OSError:
                pass
            time.sleep(0.3)
        return ""

    def troubles(self):
        return [("remote clients come in a crowd", self.come, self.go)]


def make_work_folder():
    return tempfile.mkdtemp(prefix="quorlsdr-soak-")
