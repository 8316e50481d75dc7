#!/usr/bin/env python3
"""The installed program: its data, what it tells of itself, and what desktop and shell read of it.

    installed.py SOURCE BUILD CMAKE
"""
import os
import re
import shutil
import struct
import subprocess
import sys
import tempfile
import unittest
from configparser import RawConfigParser
from gzip import GzipFile
from pathlib import Path

SOURCE, BUILD, CMAKE = (sys.argv.pop(1) for _ in range(3))
ID = "org.quorlsdr.quorlsdr"
PROGRAMS = ("quorlsdr", "quorlsdr-cli")
MOST_BYTES = 4_000_000  # of the package


def run(*words, **more):
    return subprocess.run(words, capture_output=True, text=True, stdin=subprocess.DEVNULL, timeout=60, **more)


def read_name(font, number):
    """An entry of a font's own name table."""
    data = Path(font).read_bytes()
    tables = {data[at:at + 4]: struct.unpack(">II", data[at + 8:at + 16])
              for at in range(12, 12 + 16 * struct.unpack(">H", data[4:6])[0], 16)}
    offset, length = tables[b"name"]
    table = data[offset:offset + length]
    _, count, texts = struct.unpack(">HHH", table[:6])
    for row in range(count):
        platform, _, _, name, size, at = struct.unpack(">6H", table[6 + 12 * row:18 + 12 * row])
        if platform == 3 and name == number:
            return table[texts + at:texts + at + size].decode("utf-16-be")
    return ""


def commands_of(program):
    """Every row of words that takes options."""
    def reach(words):
        text = run(program, *words, "--help").stdout
        yield words
        if "Subcommands:\n" in text:
            for name in re.findall(r"^  ([a-z]+)\b", text.split("Subcommands:\n")[1], re.MULTILINE):
                yield from reach([*words, name])
    return list(reach([]))


class Installed(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.work = Path(tempfile.mkdtemp(prefix="quorlsdr-installed-"))
        cls.addClassCleanup(shutil.rmtree, cls.work)
        first = cls.work / "first"
        subprocess.run([CMAKE, "--install", BUILD, "--prefix", first], check=True, stdout=subprocess.DEVNULL)
        cls.root = cls.work / "moved"  # a prefix is a place like any other
        first.rename(cls.root)

    def setUp(self):
        self.home = Path(tempfile.mkdtemp(dir=self.work, prefix="home-"))
        self.home.chmod(0o700)
        self.environment = {key: value for key, value in os.environ.items()
                            if not key.startswith(("XDG_", "QUORLSDR"))}
        self.environment.update(HOME=str(self.home), QT_QPA_PLATFORM="offscreen", PULSE_SERVER="unix:/nowhere",
                                XDG_RUNTIME_DIR=str(self.home))

    def program(self, name, *words):
        return run(str(self.root / "bin" / name), *words, env=self.environment, cwd=self.home)

    def script(self, text, *words):
        (self.home / "script.txt").write_text(text)
        return self.program("quorlsdr", "--script", "script.txt", *words)

    def test_both_programs_find_their_data_beside_them(self):
        listed = self.program("quorlsdr-cli", "plan", "list")
        self.assertEqual((listed.returncode, listed.stderr), (0, ""))
        self.assertIn("Broadcast", listed.stdout)
        heard = self.program("quorlsdr-cli", "listen", "--demo", "--frequency", "7205", "--seconds", "2", "--output",
                             "heard.wav", "--quiet")
        self.assertEqual(heard.returncode, 0, heard.stderr)
        shown = self.script("wait 1000\nshot panel.png\n", "--demo", "--virtual-time")
        self.assertTrue((self.home / "panel.png").exists(), shown.stdout + shown.stderr)
        self.assertTrue((self.home / ".local/share/quorlsdr/themes/Night.thm").exists())

    def test_guide_comes_with_its_pictures(self):
        guide = self.root / "share/quorlsdr/guide"
        pages = {page.name: page.read_text() for page in guide.glob("*.md")}
        self.assertIn("index.md", pages)
        for name, text in pages.items():
            for target in re.findall(r"\]\(([^)#:]+)(?:#[^)]*)?\)", text):
                self.assertTrue((guide / target).is_file(), f"{name}: {target}")

    def test_missing_data_is_told_in_one_line_that_names_the_folder(self):
        self.program("quorlsdr-cli", "plan", "list")  # a user who has been here before
        data, away = self.root / "share/quorlsdr", self.root / "share/away"
        data.rename(away)
        self.addCleanup(away.rename, data)
        for words in (("quorlsdr-cli", "listen", "--demo"), ("quorlsdr", "--demo")):
            refused = self.program(*words)
            told = [line for line in refused.stderr.splitlines() if line.startswith("quorlsdr")]
            self.assertEqual((refused.returncode, len(told)), (2, 1), refused.stderr)
            self.assertIn(str(data), told[0])
        self.assertEqual(self.program("quorlsdr-cli", "plan", "list").returncode, 0)
        shutil.rmtree(self.home / ".local")
        refused = self.program("quorlsdr-cli", "plan", "list")
        self.assertEqual(refused.returncode, 2)
        self.assertIn(str(data), refused.stderr)
        self.environment["QUORLSDR_DATA"] = str(away)
        self.assertEqual(self.program("quorlsdr-cli", "plan", "list").returncode, 0)

    def test_version_commit_and_libraries(self):
        version = re.search(r"project\(quorlsdr VERSION (\S+)", Path(SOURCE, "CMakeLists.txt").read_text())[1]
        for name in PROGRAMS:
            lines = self.program(name, "--version").stdout.splitlines()
            self.assertEqual(lines[0], f"{name} {version}")
            self.assertRegex(lines[1], r"^commit: ([0-9a-f]{12}\+?|not known, .*)$")
            libraries = lines[2].removeprefix("libraries: ").split(", ")
            self.assertGreaterEqual(len(libraries), 7)
            for library in libraries:
                self.assertRegex(library, r"^[A-Za-z][\w-]+ \d+(\.\d+)+\w*$")

    def test_commit_of_sources_with_and_without_their_history(self):
        def commit(folder):
            header = self.home / "Commit.h"
            subprocess.run([CMAKE, f"-DSOURCE={folder}", f"-DHEADER={header}", "-P",
                            Path(SOURCE, "cmake/Commit.cmake")], check=True)
            return re.search(r'kCommit = "(.*)"', header.read_text())[1]

        git = ["git", "-C", self.home, "-c", "user.name=x", "-c", "user.email=x@example.invalid"]
        unpacked = self.home / "unpacked"
        unpacked.mkdir()
        (self.home / "file").write_text("1")
        for words in (["init", "-q"], ["add", "file"], ["commit", "-q", "-m", "first"]):
            subprocess.run([*git, *words], check=True, env=self.environment)
        self.assertRegex(commit(self.home), "^[0-9a-f]{12}$")
        (self.home / "file").write_text("2")
        self.assertRegex(commit(self.home), r"^[0-9a-f]{12}\+$")
        self.assertEqual(commit(unpacked), "")  # the history around it is another's

    def test_manual_pages_have_every_option_of_help(self):
        for name in PROGRAMS:
            with GzipFile(self.root / f"share/man/man1/{name}.1.gz") as page:
                text = page.read().decode().replace("\\-", "-").replace("\\&", "")
            self.assertNotIn("@", text)
            program = str(self.root / "bin" / name)
            for words in commands_of(program):
                options = re.findall(r"^  (-\S+)", run(program, *words, "--help").stdout, re.MULTILINE)
                start = text.index(f"\n.SS {' '.join(words)}\n") if len(words) > (words[:1] == ["plan"]) else 0
                end = text.find("\n.S", start + 1) if start else len(text)
                for option in ",".join(options).replace("{false}", "").split(","):
                    self.assertRegex(text[start:end], rf"(?m)^\.B .*{option}( |,|$)", f"{name} {words}")

    def test_completion_offers_what_help_tells(self):
        file = self.root / "share/bash-completion/completions/quorlsdr-cli"

        def offered(*words):
            done = run("bash", "--norc", "-c", f'source "{file}"; COMP_WORDS=("$@"); COMP_CWORD=$(($# - 1)); '
                       '_quorlsdr "$1" "${COMP_WORDS[COMP_CWORD]}" "${COMP_WORDS[COMP_CWORD-1]}"; '
                       'echo "${COMPREPLY[@]}"', "bash", str(self.root / "bin" / words[0]), *words[1:])
            self.assertEqual(done.stderr, "")
            return done.stdout.split()

        self.assertEqual(offered("quorlsdr-cli", "re"), ["receive"])
        self.assertEqual(offered("quorlsdr-cli", "plan", ""), ["list", "check"])
        self.assertEqual(offered("quorlsdr-cli", "listen", "--mo"), ["--model", "--mode"])
        self.assertEqual(offered("quorlsdr-cli", "listen", "--agc", "f"), ["fast"])
        self.assertEqual(offered("quorlsdr-cli", "listen", "--output", ""), [])  # a file: the shell knows them
        self.assertEqual(offered("quorlsdr", "--demo", "tr"), ["trace"])
        self.assertIn("--first-start", offered("quorlsdr", "--"))

    def test_desktop_entry(self):
        path = self.root / f"share/applications/{ID}.desktop"
        judged = run("desktop-file-validate", str(path))
        self.assertEqual((judged.returncode, judged.stdout + judged.stderr), (0, ""))
        entry = RawConfigParser(strict=True)
        entry.optionxform = str
        entry.read(path)
        options = run(str(self.root / "bin/quorlsdr"), "--help").stdout.split()
        self.assertEqual(entry["Desktop Entry"]["Actions"], "Demo;FirstStart;")
        for section in entry.sections():
            program, *words = entry[section]["Exec"].split()
            self.assertEqual(program, "quorlsdr")
            self.assertLessEqual(set(words), set(options), section)
        for size in (16, 22, 24, 32, 48, 64, 128, 256):
            icon = self.root / f"share/icons/hicolor/{size}x{size}/apps/{ID}.png"
            self.assertEqual(struct.unpack(">II", icon.read_bytes()[16:24]), (size, size))

    def test_metadata_of_software_centres(self):
        judged = run("appstreamcli", "validate", "--no-net", str(self.root / f"share/metainfo/{ID}.metainfo.xml"))
        self.assertEqual(judged.returncode, 0, judged.stdout)

    def test_fonts_stand_with_the_licences_that_they_name_themselves(self):
        copyright_text = (self.root / "share/doc/quorlsdr/copyright").read_text()
        table = Path(SOURCE, "data/fonts/README.md").read_text()
        fonts = [*Path(SOURCE, "data/fonts").glob("*.?tf")]
        self.assertEqual(len(fonts), 3)
        for font in fonts:
            holder = re.sub(r"Copyright (© )?|\s\(http.*", "", read_name(font, 0))
            number = re.search(r"\d+\.\d+", read_name(font, 5))[0]
            licence = re.search(r"(SIL Open Font License), Version (\d\.\d)", read_name(font, 13))
            row = next(line for line in table.splitlines() if font.name in line)
            self.assertIn(f" {number} | {holder} | {licence[1]} {licence[2]} |", row)
            paragraph = next(part for part in copyright_text.split("\n\n") if font.name.split("-")[0] in part)
            self.assertIn(f"Copyright: {holder}\nLicense: OFL-{licence[2]}\n", paragraph)

    def test_package_is_small_and_knows_what_it_needs(self):
        done = run("cpack", "-B", str(self.home), cwd=BUILD)
        self.assertEqual(done.returncode, 0, done.stdout + done.stderr)
        package = next(self.home.glob("*.deb"))
        self.assertLess(package.stat().st_size, MOST_BYTES)
        needs = run("dpkg-deb", "--field", str(package), "Depends").stdout
        for library in ("libqt6widgets6", "librtaudio6", "libsndfile1", "libsamplerate0", "libpng16-16"):
            self.assertIn(library, needs)
        run("dpkg-deb", "--extract", str(package), str(self.home / "root"))
        program = (self.home / "root/usr/bin/quorlsdr").read_bytes()
        self.assertNotIn(b".symtab", program)
        self.assertNotIn(SOURCE.encode() + b"/", program)  # nothing leads back to where it was built


if __name__ == "__main__":
    unittest.main(argv=sys.argv, verbosity=2)
