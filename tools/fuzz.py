#!/usr/bin/env python3
"""Runs every fuzz target of a build, two beside each other: fuzz.py BUILD [--seconds 300]

What a target has found new is kept in BUILD/corpus, inputs that break it in BUILD/artifacts.
"""
import argparse
import concurrent.futures
import os
import re
import subprocess
import sys
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent
MORE_SEEDS = {"plans": "data/bandplans", "themes": "data/themes"}
STATS = ("number_of_executed_units", "average_exec_per_sec", "new_units_added", "peak_rss_mb")


def run(target, build, seconds):
    name = target.name.removeprefix("fuzz_")
    corpus, artifacts = build / "corpus" / name, build / "artifacts"
    for folder in (corpus, artifacts):
        folder.mkdir(parents=True, exist_ok=True)
    seeds = [ROOT / "fuzz" / "corpus" / name, ROOT / MORE_SEEDS.get(name, "none")]
    command = [target, f"-max_total_time={seconds}", "-timeout=10", "-rss_limit_mb=512", "-max_len=65536",
               "-print_final_stats=1", "-verbosity=0", "-print_funcs=0", f"-artifact_prefix={artifacts}/{name}-",
               corpus, *[seed for seed in seeds if seed.exists()]]
    # What the sanitizer keeps of freed memory isn't the target's.
    environment = {**os.environ, "ASAN_OPTIONS": os.environ.get("ASAN_OPTIONS", "") + ":quarantine_size_mb=16"}
    done = subprocess.run([str(word) for word in command], env=environment, stdin=subprocess.DEVNULL,
                          capture_output=True, text=True, errors="replace", check=False)
    found = dict(re.findall(r"^stat::(\w+): +(\d+)", done.stderr, re.MULTILINE))
    return name, done.returncode, [found.get(stat, "-") for stat in STATS], done.stderr


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("build", type=Path)
    parser.add_argument("--seconds", type=int, default=300, help="for each target")
    options = parser.parse_args()
    targets = sorted((options.build / "bin").glob("fuzz_*"))
    if not targets:
        sys.exit(f"fuzz.py: there are no fuzz targets in {options.build / 'bin'}; build them first")
    failed = 0
    print(f"{'target':12}{'inputs':>12}{'a second':>10}{'new':>8}{'MB':>6}", flush=True)
    with concurrent.futures.ThreadPoolExecutor(2) as pool:
        for name, code, stats, errors in pool.map(lambda target: run(target, options.build, options.seconds), targets):
            print(f"{name:12}{stats[0]:>12}{stats[1]:>10}{stats[2]:>8}{stats[3]:>6}  {'FAILED' if code else ''}", flush=True)
            if code:
                failed += 1
                print("\n".join(errors.splitlines()[-60:]))
    print(f"{len(targets)} targets, {options.seconds} s each, {failed} failed; artifacts: {options.build / 'artifacts'}")
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())
