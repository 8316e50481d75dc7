#!/usr/bin/env python3
"""Reads every include and fails on an arrow that runs up the layers.

The allowed arrows are the LINKS of the quorl_library lines in src/CMakeLists.txt, direct and through others.
Beside them: only the standard library in src/, but for Qt in src/desktop, RtAudio, sound file libraries and
system headers in src/platform/linux, and system headers in src/desktop/qt. Programs, tests, benchmarks, tools
and fuzz targets may use system headers; Qt only apps/quorlsdr, tests/desktop and bench/desktop.
"""
import re
import sys
import tempfile
from pathlib import Path

STANDARD = set("""
algorithm any array atomic barrier bit bitset cassert ccomplex cctype cerrno cfenv cfloat charconv chrono
cinttypes climits clocale cmath codecvt compare complex concepts condition_variable coroutine csetjmp csignal
cstdarg cstddef cstdint cstdio cstdlib cstring ctime cuchar cwchar cwctype deque exception execution filesystem
format forward_list fstream functional future initializer_list iomanip ios iosfwd iostream istream iterator
latch limits list locale map memory memory_resource mutex new numbers numeric optional ostream queue random
ranges ratio regex scoped_allocator semaphore set shared_mutex source_location span sstream stack stdexcept
stop_token streambuf string string_view strstream syncstream system_error thread tuple type_traits typeindex
typeinfo unordered_map unordered_set utility valarray variant vector version
""".split())

INCLUDE = re.compile(r'^\s*#\s*include\s*([<"])([^>"]+)[>"]', re.MULTILINE)
LIBRARY = re.compile(r"^\s*quorl_library\(([^)]*)\)", re.MULTILINE)
FREE_OF_SYSTEM_RULE = ("apps", "tests", "bench", "fuzz", "tools")
QT_AT_HOME = ("src/desktop", "apps/quorlsdr", "tests/desktop", "bench/desktop")


def read_arrows(cmake_text):
    """Folder -> set of folders that it may include from, itself among them."""
    direct = {}
    for body in LIBRARY.findall(cmake_text):
        words = body.split()
        links, section = [], None
        for word in words[1:]:
            if word in ("LINKS", "EXTERNAL"):
                section = word
            elif section == "LINKS":
                links.append(word)
        direct[words[0]] = links

    def reach(folder, seen):
        if folder not in seen:
            seen.add(folder)
            for below in direct.get(folder, ()):
                reach(below, seen)
        return seen

    return {folder: reach(folder, set()) for folder in direct}


def folder_of(path, arrows):
    """The library folder that a path relative to src/ belongs to: the longest that fits."""
    parts = path.split("/")[:-1]
    for length in range(len(parts), 0, -1):
        if "/".join(parts[:length]) in arrows:
            return "/".join(parts[:length])
    return None


def fault_of_header(name, place):
    """What is wrong with including the foreign header `name` from `place` (a path from the root)."""
    if name in STANDARD:
        return None
    if re.match(r"Q[A-Z]|Qt", name):
        return None if place.startswith(tuple(home + "/" for home in QT_AT_HOME)) else "Qt outside src/desktop"
    if not place.startswith("src/") or place.startswith(("src/platform/linux/", "src/desktop/qt/")):
        return None
    return "a header from outside the standard library"


def check_file(path, root, arrows):
    place = path.relative_to(root).as_posix()
    text = path.read_text(encoding="utf-8", errors="replace")
    own = folder_of(place[4:], arrows) if place.startswith("src/") else None
    if place.startswith("src/") and own is None:
        yield 1, "its folder has no quorl_library line in src/CMakeLists.txt"
    for match in INCLUDE.finditer(text):
        line = text.count("\n", 0, match.start(2)) + 1
        name = match.group(2)
        if match.group(1) == "<":
            fault = fault_of_header(name, place)
            if fault:
                yield line, f"<{name}>: {fault}"
        elif place.startswith("src/") and own is not None:
            target = folder_of(name, arrows)
            if not (root / "src" / name).is_file():
                yield line, f'"{name}": no such file below src/'
            elif target not in arrows[own]:
                yield line, f'"{name}": {own} may not include from {target}'


def check_tree(root):
    arrows = read_arrows((root / "src/CMakeLists.txt").read_text(encoding="utf-8"))
    faults = []
    for top in ("src",) + FREE_OF_SYSTEM_RULE:
        for path in sorted((root / top).rglob("*")):
            if path.suffix in (".h", ".cpp"):
                place = path.relative_to(root)
                faults += [f"{place}:{line}: {what}" for line, what in check_file(path, root, arrows)]
    return faults


def self_test():
    """Plants one breach of each kind and expects each, and nothing else, to be found."""
    tree = {
        "src/CMakeLists.txt": "quorl_library(low)\nquorl_library(mid LINKS low)\nquorl_library(top LINKS mid)\n"
                              "quorl_library(desktop LINKS top)\nquorl_library(platform/linux LINKS low)\n",
        "src/low/Good.h": "#include <vector>\n",
        "src/mid/Good.h": '#include "low/Good.h"\n',
        "src/top/Good.cpp": '#include "low/Good.h"\n#include "mid/Good.h"\n',
        "src/desktop/Good.cpp": "#include <QWidget>\n",
        "src/desktop/qt/Good.cpp": "#include <unistd.h>\n",
        "src/desktop/System.cpp": "#include <unistd.h>\n",
        "src/platform/linux/Good.cpp": "#include <sys/ioctl.h>\n#include <rtaudio/RtAudio.h>\n",
        "apps/tool/Good.cpp": "#include <unistd.h>\n",
        "src/low/Up.cpp": '#include "mid/Good.h"\n',
        "src/mid/Qt.cpp": "#include <QString>\n",
        "src/mid/System.cpp": "#include <unistd.h>\n",
        "src/mid/Sound.cpp": "  #  include <rtaudio/RtAudio.h>\n",
        "src/mid/Missing.cpp": '#include "low/Gone.h"\n',
        "src/stray/Stray.cpp": "#include <vector>\n",
        "tests/low/Qt.cpp": "#include <QtCore/QString>\n",
    }
    expected = {"src/low/Up.cpp", "src/desktop/System.cpp", "src/mid/Qt.cpp", "src/mid/System.cpp", "src/mid/Sound.cpp",
                "src/mid/Missing.cpp", "src/stray/Stray.cpp", "tests/low/Qt.cpp"}
    with tempfile.TemporaryDirectory() as name:
        root = Path(name)
        for path, text in tree.items():
            (root / path).parent.mkdir(parents=True, exist_ok=True)
            (root / path).write_text(text, encoding="utf-8")
        found = {fault.split(":")[0] for fault in check_tree(root)}
    if found != expected:
        sys.exit(f"check_layers: missed {sorted(expected - found)}, wrongly blamed {sorted(found - expected)}")
    print("check_layers: finds what it should")


def main():
    if sys.argv[1:] == ["--self-test"]:
        self_test()
        return
    faults = check_tree(Path(__file__).resolve().parent.parent)
    for fault in faults:
        print(fault, file=sys.stderr)
    if faults:
        sys.exit(1)
    print("check_layers: every arrow runs down")


if __name__ == "__main__":
    main()
