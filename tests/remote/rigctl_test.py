#!/usr/bin/env python3
"""The radio steered by Debian's rigctl and by hand over a socket, and what is heard then.

    rigctl_test.py COMMAND_LINE_PROGRAM DESKTOP_PROGRAM BANDPLANS WORK

Both programs receive the demo band in real time. rigctl ends with code 0 whatever was refused, answers from a cache
for a while after a set, and says that the power is on whatever the radio says: what it has set is read back by another
run, and the power over a socket.
"""
import math
import os
import pty
import shutil
import signal
import socket
import struct
import subprocess
import sys
import time

PATIENCE = 20.0  # seconds, for what comes by itself
RATE = 48000
CARRIER = -40  # dB over S9: a station, and no noise


def wait_for(look, what):
    """What `look` finds, as soon as it finds something."""
    end = time.monotonic() + PATIENCE
    while time.monotonic() < end:
        found = look()
        if found:
            return found
        time.sleep(0.02)
    raise AssertionError(what)


def expect(got, wanted, what):
    if got != wanted:
        raise AssertionError(f"{what}: {got!r} instead of {wanted!r}")


class Radio:
    """One of the programs, and the port that it listens at."""

    def __init__(self, words, port, work):
        self.port = port
        self.keys, terminal = pty.openpty()
        self.log = open(os.path.join(work, "output.txt"), "a+")
        environment = dict(os.environ, HOME=work, XDG_RUNTIME_DIR=work, QT_QPA_PLATFORM="offscreen",
                           PULSE_SERVER="unix:/nowhere")
        for name in ("XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_STATE_HOME"):
            environment.pop(name, None)
        self.process = subprocess.Popen(words, stdin=terminal, stdout=self.log, stderr=self.log, env=environment)
        os.close(terminal)
        self.line = wait_for(self.connect, "nobody listens at the port").makefile("rw", newline="\n")

    def connect(self):
        assert self.process.poll() is None, "the radio has ended"
        try:
            return socket.create_connection(("127.0.0.1", self.port), PATIENCE)
        except ConnectionRefusedError:
            return None

    def ask(self, command, lines=1):
        """By hand: the answer's lines."""
        self.line.write(command + "\n")
        self.line.flush()
        return [self.line.readline().rstrip("\n") for _ in range(lines)]

    def rigctl(self, *words):
        """One run of the client: what it prints."""
        run = subprocess.run(["rigctl", "-m", "2", "-r", f"127.0.0.1:{self.port}", *words], stdin=subprocess.DEVNULL,
                             capture_output=True, text=True, timeout=PATIENCE)
        return (run.stdout + run.stderr).split()

    def end(self):
        self.process.send_signal(signal.SIGTERM)
        expect(self.process.wait(PATIENCE), 0, "the radio's exit code")
        self.log.close()

    def kill(self):
        self.process.kill()
        self.process.wait()
        os.close(self.keys)


def free_port():
    with socket.socket() as probe:
        probe.bind(("127.0.0.1", 0))
        return probe.getsockname()[1]


def steer(radio):
    """What rigctl does to a radio, read back by another run each."""
    expect(radio.rigctl("F", "7121000", "M", "CW", "0", "L", "AF", "0.5"), [], "rigctl F M L")
    expect(radio.rigctl("f", "m", "l", "AF", "v"), ["7121000", "CW", "400", "0.500000", "VFOA"], "rigctl f m l v")
    expect(radio.ask("\\get_vfo_info VFOA", 5), ["7121000", "CW", "400", "0", "0"], "the same by hand")
    assert "Invalid parameter" in " ".join(radio.rigctl("F", "500000000")), "a frequency out of reach isn't refused"
    expect(radio.rigctl("f"), ["7121000"], "rigctl f after a refusal")


def meter(radio):
    """dB over S9."""
    return int(radio.ask("l STRENGTH")[0])


def samples(path):
    with open(path, "rb") as file:
        data = file.read()
    at = data.index(b"data") + 8
    count = (len(data) - at) // 2
    return struct.unpack_from(f"<{count}h", data, at)


def tone_share(block, hertz):
    """How much of the block's power is in that tone, 0 to 1."""
    power = sum(sample * sample for sample in block)
    turn = 2.0 * math.pi * hertz / RATE
    real = sum(sample * math.cos(turn * i) for i, sample in enumerate(block))
    imaginary = sum(sample * math.sin(turn * i) for i, sample in enumerate(block))
    return 2.0 * (real * real + imaginary * imaginary) / (len(block) * power) if power else 0.0


def listen(program, work):
    """The command line: a carrier that is tuned to by rigctl is heard in its place, as a tone of 400 Hz."""
    port, audio = free_port(), os.path.join(work, "audio.wav")
    radio = Radio([program, "listen", "--demo", "--frequency", "7250", "--mode", "am", "--remote", str(port), "--output", audio,
                   "--settings", os.path.join(work, "listen.ini")], port, work)
    try:
        growing = lambda: max((os.path.getsize(os.path.join(work, name)) for name in os.listdir(work)
                               if name.startswith("audio.wav")), default=0)
        second = 2 * RATE
        wait_for(lambda: growing() > second, "nothing is heard")
        steer(radio)
        wait_for(lambda: meter(radio) > CARRIER, "the carrier isn't on the meter")
        os.write(radio.keys, b"-")  # the volume's key goes on from where rigctl has put it
        wait_for(lambda: radio.ask("l AF") == ["0.488889"], "the key doesn't turn the volume down")
        tuned = growing()
        wait_for(lambda: growing() > tuned + 2 * second, "nothing more is heard")
        expect(radio.ask("\\get_powerstat"), ["1"], "the power")
        expect(radio.ask("\\set_powerstat 0"), ["RPRT 0"], "power off")
        expect(radio.ask("\\get_powerstat"), ["0"], "the power after it was switched off")
        expect(radio.ask("l STRENGTH"), ["-54"], "the meter of a radio that is off")
        radio.end()
    finally:
        radio.kill()
    heard = samples(audio)
    before, after = tone_share(heard[:RATE // 2], 400), tone_share(heard[-RATE // 2:], 400)
    assert before < 0.1, f"the tone is there before it is tuned to: {before}"
    assert after > 0.8, f"the carrier is not heard: {after}"


def desktop(program, plans, work):
    """The panel: it follows, and what was tuned by rigctl is in its settings when it ends."""
    port, settings = free_port(), os.path.join(work, "desktop.ini")
    with open(settings, "w") as file:
        file.write(f"[Remote]\nOn=True\nPort={port}\n")
    shutil.copytree(plans, os.path.join(work, "plans"))
    radio = Radio([program, "--demo", "--settings", settings, "--folder", os.path.join(work, "plans")], port, work)
    try:
        steer(radio)
        wait_for(lambda: meter(radio) > CARRIER, "the carrier isn't on the meter")
        radio.ask("F 7250000")
        wait_for(lambda: meter(radio) < CARRIER, "the free frequency isn't on the meter")
        radio.ask("F 7121000")
        expect(radio.ask("\\set_powerstat 0"), ["RPRT 0"], "power off")
        expect(radio.ask("\\get_powerstat"), ["0"], "the power after it was switched off")
        expect(radio.ask("\\set_powerstat 1"), ["RPRT 0"], "power on")
        expect(radio.ask("\\get_powerstat"), ["1"], "the power after it was switched on")
        expect(radio.ask("q"), ["RPRT 0"], "leaving")
        expect(radio.line.readline(), "", "the server closes")
        radio.end()
    finally:
        radio.kill()
    stored = open(settings).read()
    for line in ("LastTunedFrequency=71210000", "CurrentDemodMode=1", "CurrentFilterMode=1", "LastOutputVolume=-1000"):
        assert line in stored, f"{line} isn't in the settings"


def main():
    command_line, program, plans, work = sys.argv[1:]
    shutil.rmtree(work, ignore_errors=True)
    os.makedirs(work, mode=0o700)
    try:
        listen(command_line, work)
        desktop(program, plans, work)
    except AssertionError as fault:
        print(open(os.path.join(work, "output.txt")).read(), file=sys.stderr)
        sys.exit(f"rigctl_test: {fault}")


if __name__ == "__main__":
    main()
