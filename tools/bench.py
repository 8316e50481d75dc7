#!/usr/bin/env python3
"""Runs all benchmarks and prints one table. usage: bench.py BUILD

Ratios where another thing stands beside ("x"), else times on one core of this machine. Exit code 1 where a
limit is missed.
"""
import json
import os
import pathlib
import statistics
import subprocess
import sys
import tempfile

SECONDS = 12  # of each run of the radio; the load counts from the first block on


def program_rows(program):
    output = subprocess.run([program, "--benchmark_filter=none"], stdout=subprocess.PIPE, stderr=subprocess.DEVNULL,
                            text=True, check=False).stdout
    return [tuple(line.split("\t")) for line in output.splitlines() if line.count("\t") == 4]


def row(group, what, value, unit, limit=None):
    told = "" if limit is None else f"<= {limit:g}" + ("" if value <= limit else " MISSED")
    return group, what, f"{value:.4g}", unit, told


def radio(build, folder, hidden):
    """The demo on a display of its own, without a sound card: its report."""
    command = [build / "bin/quorlsdr", "--demo", "--report", "--seconds", str(SECONDS), "--settings",
               folder / f"hidden{hidden}.ini"]
    if hidden:
        # The window goes as it does when another one covers it.
        command = ["sh", "-c", 'display=$1; shift; "$@" & radio=$!; sleep 1; '
                   'xdotool search --sync --onlyvisible --class quorlsdr windowunmap; wait $radio', "sh", ":", *command]
    done = subprocess.run(["xvfb-run", "-a", "-s", "-screen 0 1280x1024x24", *command], stdout=subprocess.DEVNULL,
                          stderr=subprocess.PIPE, text=True, check=True, timeout=SECONDS + 60)
    return json.loads([line for line in done.stderr.splitlines() if line.startswith("{")][-1])


# A small process starts it: what it tells of memory counts that of whoever starts it, too.
MEASURED = """import resource, subprocess, sys, time
begin = time.monotonic()
subprocess.run(sys.argv[2:], stdin=open(sys.argv[1], "rb"), stdout=subprocess.DEVNULL, check=True)
print(time.monotonic() - begin, resource.getrusage(resource.RUSAGE_CHILDREN).ru_maxrss / 1024)
"""


def offline(build, folder):
    """Ten minutes of the demo's recording through `receive`: times real time, and the memory that it took."""
    recording = folder / "ten-minutes.raw"
    one = (build / "demo/recording.wav").read_bytes()[44:]
    minutes = 10 * 60 * 48000 * 4
    recording.write_bytes((one * (minutes // len(one) + 1))[:minutes])
    done = subprocess.run([sys.executable, "-c", MEASURED, recording, build / "bin/quorlsdr-cli", "receive", "--mode",
                           "am", "-", "-"], stdout=subprocess.PIPE, text=True, check=True)
    seconds, memory = map(float, done.stdout.split())
    return 600 / seconds, memory


def measure(build):
    for name in ["bench_dsp", "bench_scope", "bench_panel"]:
        yield from program_rows(build / "bin" / name)
    with tempfile.TemporaryDirectory() as scratch:
        folder = pathlib.Path(scratch)
        times, memory = offline(build, folder)
        yield row("Program", "receive, AM: minutes of a recording in a minute", times, "x")
        yield row("Program", "receive, 10 minutes: memory", memory, "MB", 16)
        shown, hidden = [radio(build, folder, False) for _ in range(3)], radio(build, folder, True)
        yield row("Program", "start to the first block", statistics.median(r["first_audio_s"] for r in shown), "s", 1.5)
        yield row("Program", "load of a core, panel and scope shown",
                  statistics.median(r["cpu_percent"] for r in shown), "%", 5)
        yield row("Program", "load of a core, window hidden", hidden["cpu_percent"], "%", 1.5)
        yield row("Program", "memory", statistics.median(r["resident_mb"] for r in shown), "MB", 120)


def main():
    build = pathlib.Path(sys.argv[1]).resolve()
    group, missed = "", False
    for next_group, what, value, unit, limit in measure(build):
        if next_group != group:
            group = next_group
            print(f"\n{group}")
        missed |= "MISSED" in limit
        print(f"  {what:<56}{value:>9} {unit:<3}{limit:>12}", flush=True)
    return 1 if missed else 0


if __name__ == "__main__":
    os.environ.setdefault("LC_ALL", "C.UTF-8")
    sys.exit(main())
