#!/usr/bin/env python3
"""Fills the frame of a manual page with the options that the program itself tells by --help.

Usage: make_man.py PROGRAM FRAME VERSION PAGE
In the frame @OPTIONS@ stands for the program's options, @COMMANDS@ for its commands with theirs.
"""
import gzip
import re
import subprocess
import sys
from pathlib import Path

COLUMN = 30  # where help begins to explain
HEADINGS = ("Positionals:", "Options:", "Subcommands:")


def roff(text):
    text = text.replace("\\", "\\e").replace("-", "\\-")
    return "\\&" + text if text.startswith((".", "'")) else text


def read_items(lines):
    """[name, explanation] of the indented lines of a section."""
    items = []
    for number, line in enumerate(lines):
        following = lines[number + 1] if number + 1 < len(lines) else ""
        if line.startswith(" " * COLUMN):
            items[-1][1] = (items[-1][1] + " " + line.strip()).strip()
        elif following.startswith(" " * COLUMN) and "  " not in line.strip():
            items.append([line.strip(), ""])
        else:
            items.append([line[:COLUMN].strip(), line[COLUMN:].strip()])
    return items


def read_help(program, words):
    """What `program words... --help` tells: summary, usage, sections (heading -> items), closing lines."""
    text = subprocess.run([program, *words, "--help"], check=True, capture_output=True, text=True).stdout
    head, _, rest = text.partition("Usage: ")
    usage, _, rest = rest.partition("\n")
    sections, closing, lines = {}, [], None
    for line in rest.splitlines():
        if line in HEADINGS:
            lines = sections.setdefault(line, [])
        elif lines is not None and line.startswith("  "):
            lines.append(line)
        elif line or closing:
            lines = None
            closing.append(line)
    return head.strip(), usage, {name: read_items(found) for name, found in sections.items()}, closing


def roff_items(sections):
    for heading in ("Positionals:", "Options:"):
        for name, explanation in sections.get(heading, ()):
            name = re.sub(r"\{false\}", "", name).replace(",-", ", -")
            yield ".TP"
            yield f".B {roff(name)}"
            yield roff(explanation)


def roff_command(program, words):
    summary, usage, sections, closing = read_help(program, words)
    if "Subcommands:" in sections:
        for name, _ in sections["Subcommands:"]:
            yield from roff_command(program, [*words, name])
        return
    yield f".SS {roff(' '.join(words))}"
    yield roff(summary + ".")
    yield ".PP"
    yield f".B {roff(usage)}"
    yield from roff_items(sections)
    if closing:
        yield from (".PP", ".EX", *(roff(line) for line in closing), ".EE")


def main(program, frame, version, page):
    _, _, sections, _ = read_help(program, [])
    commands = [name for name, _ in sections.get("Subcommands:", ())]
    filled = {
        "VERSION": version,
        "OPTIONS": "\n".join(roff_items(sections)),
        "COMMANDS": "\n".join(line for name in commands for line in roff_command(program, [name])),
    }
    text = re.sub(r"@([A-Z]+)@", lambda match: filled[match[1]], Path(frame).read_text(encoding="utf-8"))
    with open(page, "wb") as out, gzip.GzipFile("", "wb", 9, out, mtime=0) as packed:
        packed.write(text.encode())


if __name__ == "__main__":
    main(*sys.argv[1:])
