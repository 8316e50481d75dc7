#!/usr/bin/env python3
"""Runs what the guide tells its readers to type: run_commands.py GUIDE_FOLDER PROGRAMS_FOLDER SCRATCH_FOLDER

The code blocks of a page run in their order, in a folder of their own, by their marking:
  sh        as one script, each command with exit code 0
  sh live   line by line; each would go on until it is stopped, and gets a second
  sh board, sh root, sh host   need a board, rights or another machine: only their syntax and options are looked at
  text, ini   no commands
"""
import os
import re
import shlex
import shutil
import subprocess
import sys
from pathlib import Path

from guide_pages import pages_in

PARSED = {"sh board", "sh root", "sh host"}
PATIENCE = 60  # seconds


def environment(programs, home):
    kept = {key: value for key, value in os.environ.items() if not key.startswith("XDG_")}
    # A machine without screen and sound, whatever this one has.
    return kept | {"PATH": f"{programs}:{os.environ['PATH']}", "HOME": str(home), "QT_QPA_PLATFORM": "offscreen",
                   "PULSE_SERVER": "unix:/nowhere", "ALSA_CONFIG_PATH": "/dev/null"}


def run(script, folder, variables):
    try:
        done = subprocess.run(["bash", "-e", "-c", script], cwd=folder, env=variables, stdin=subprocess.DEVNULL,
                              capture_output=True, text=True, timeout=PATIENCE, check=False)
    except subprocess.TimeoutExpired:
        return f"was still running after {PATIENCE} s"
    if done.returncode == 0:
        return None
    return f"ended with {done.returncode}: {done.stdout[-500:]}{done.stderr[-500:]}"


def live_lines(block):
    return [line.split("#")[0].rstrip() for line in block.text.splitlines() if line.split("#")[0].strip()]


class Options:
    """What the programs themselves say that they take."""

    def __init__(self, programs):
        self.programs, self.known = programs, {}

    def of(self, program, command):
        words = [str(self.programs / program)] + ([command] if command else [])
        if tuple(words) not in self.known:
            told = subprocess.run(words + ["--help"], capture_output=True, text=True, check=False,
                                  env=os.environ | {"QT_QPA_PLATFORM": "offscreen"})
            self.known[tuple(words)] = set(re.findall(r"--[a-z][a-z-]*", told.stdout)) if told.returncode == 0 else None
        return self.known[tuple(words)]

    def fault(self, line):
        """The first word that the program of that line would not take."""
        for piece in re.split(r"[|;&]+", line):
            words = shlex.split(piece, comments=True)
            if not words or words[0] not in ("quorlsdr", "quorlsdr-cli"):
                continue
            command = words[1] if words[0] == "quorlsdr-cli" and len(words) > 1 else ""
            known = self.of(words[0], command)
            if known is None:
                return f"{words[0]} has no command {command}"
            for word in words[1:]:
                if word.startswith("--") and word.split("=")[0] not in known:
                    return f"{words[0]} {command} takes no {word}"
        return None


def fault_of(block, folder, variables, options):
    if block.marking == "sh":
        return run(block.text, folder, variables)
    if block.marking == "sh live":
        faults = (run(line + " --seconds 1", folder, variables) for line in live_lines(block))
        return next((fault for fault in faults if fault), None)
    if block.marking in PARSED:
        parsed = subprocess.run(["bash", "-n"], input=block.text, capture_output=True, text=True, check=False)
        if parsed.returncode != 0:
            return parsed.stderr
        return next((fault for fault in map(options.fault, block.text.splitlines()) if fault), None)
    return None if block.marking in ("text", "ini") else f"has the marking {block.marking!r}, which says nothing"


def main():
    guide, programs, scratch = (Path(argument).resolve() for argument in sys.argv[1:4])
    shutil.rmtree(scratch, ignore_errors=True)
    options, ran, faults = Options(programs), 0, 0
    for page in pages_in(guide):
        folder = scratch / page.path.stem
        folder.mkdir(parents=True)
        variables = environment(programs, folder)
        for block in page.blocks:
            fault = fault_of(block, folder, variables, options)
            ran += block.marking.startswith("sh")
            if fault:
                faults += 1
                print(f"{page.path.name}, line {block.line}: {fault}")
    print(f"{ran} blocks of commands, {faults} faults")
    sys.exit(1 if faults or ran < 10 else 0)


main()
