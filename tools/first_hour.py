#!/usr/bin/env python3
"""The changes in CONTRIBUTING.md, applied to a copy of the tree, built and tested. usage: first_hour.py BUILD

BUILD is where the copy is built; what is left there of an earlier time shortens it.
"""
import pathlib
import re
import shutil
import subprocess
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent


def hunks(text):
    """(path, old lines, new lines) of each hunk of the page's diffs; hunks are found by their lines alone."""
    for block in re.findall(r"^```diff\n(.*?)^```$", text, re.M | re.S):
        path = re.search(r"^\+\+\+ b/(.*)$", block, re.M).group(1)
        for hunk in block.split("@@\n")[1:]:
            lines = hunk.splitlines(keepends=True)
            yield (path, "".join(line[1:] for line in lines if line[0] in " -"),
                   "".join(line[1:] for line in lines if line[0] in " +"))


def apply(tree):
    for path, old, new in hunks((ROOT / "CONTRIBUTING.md").read_text()):
        file = tree / path
        text = file.read_text()
        if text.count(old) != 1:
            sys.exit(f"CONTRIBUTING.md: {path} doesn't have these lines once:\n{old}")
        file.write_text(text.replace(old, new))


def main():
    build = pathlib.Path(sys.argv[1]).resolve()
    tree = build / "tree"
    shutil.rmtree(tree, ignore_errors=True)
    tree.mkdir(parents=True)
    files = subprocess.run(["git", "ls-files", "-z"], cwd=ROOT, stdout=subprocess.PIPE, text=True, check=True)
    for name in filter(None, files.stdout.split("\0")):
        (tree / name).parent.mkdir(parents=True, exist_ok=True)
        shutil.copy2(ROOT / name, tree / name, follow_symlinks=False)
    apply(tree)
    subprocess.run(["cmake", "-S", tree, "-B", build / "out", "-G", "Ninja", "-DCMAKE_BUILD_TYPE=Debug",
                    "-DCMAKE_UNITY_BUILD=ON"], check=True, stdout=subprocess.DEVNULL)
    subprocess.run(["cmake", "--build", build / "out", "--target", "test_reception", "test_desktop"], check=True)
    for program, tests in [("test_reception", "LevelPanelsTest.*"), ("test_desktop", "*EveryControlItsView*")]:
        subprocess.run([build / "out/bin" / program, f"--gtest_filter={tests}", "--gtest_brief=1"], check=True)
    print("first hour: every step compiles, and its tests pass")


if __name__ == "__main__":
    main()
