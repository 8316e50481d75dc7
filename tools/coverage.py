#!/usr/bin/env python3
"""Lines that the tests have reached, a row for each folder. usage: coverage.py BUILD

Exit code 1 where a folder is below its limit: 80 per cent where the machine or the window system is the
other side, 90 elsewhere.
"""
import collections
import json
import pathlib
import subprocess
import sys

OUTSIDE = ("src/desktop", "src/platform/linux")


def main():
    root, build = pathlib.Path(__file__).resolve().parent.parent, pathlib.Path(sys.argv[1]).resolve()
    summary = subprocess.run(
        ["gcovr", "--root", root, "--object-directory", build, "--filter", root / "src", "--filter", root / "apps",
         "--json-summary", "--gcov-ignore-parse-errors", "-j", "2", build], stdout=subprocess.PIPE, text=True, check=True)
    lines, reached = collections.Counter(), collections.Counter()
    for file in json.loads(summary.stdout)["files"]:
        folder = str(pathlib.PurePath(file["filename"]).parent)
        for name in (folder, "all"):
            lines[name] += file["line_total"]
            reached[name] += file["line_covered"]
    below = 0
    for folder in sorted(lines):
        share = 100.0 * reached[folder] / max(lines[folder], 1)
        limit = 80 if folder.startswith(OUTSIDE) else 90
        below += share < limit
        print(f"{folder:<32}{reached[folder]:>7} of {lines[folder]:>6} lines {share:>6.1f} %{'' if share >= limit else f'  below {limit}'}")
    return 1 if below else 0


if __name__ == "__main__":
    sys.exit(main())
