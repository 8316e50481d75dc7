#!/usr/bin/env python3
"""Every link, anchor and picture of the docs exists, and every picture that is kept is shown by a page of the guide:
check_links.py SOURCE_FOLDER"""
import sys
from pathlib import Path

from guide_pages import Page, pages_in

MOST_PICTURE_BYTES = 1_500_000  # the installed guide is to stay small


def faults_of_links(page, root, guide):
    for is_picture, target in page.targets():
        if target.startswith(("https://", "http://")):
            continue
        name, _, anchor = target.partition("#")
        path = (page.path.parent / name).resolve() if name else page.path.resolve()
        where = f"{page.path.relative_to(root)}: {target}"
        if not path.is_file():
            yield f"{where} does not exist"
        elif anchor and anchor not in Page(path).anchors():
            yield f"{where} names no heading of that page"
        elif guide in page.path.parents and guide not in path.parents:
            yield f"{where} leads out of the guide, which is installed without the rest"
        elif is_picture != (path.suffix == ".png"):
            yield f"{where} is shown as what it is not"


def faults_of_guide(pages, guide):
    pictures = guide / "pictures"
    shown = {(guide / target).resolve() for page in pages for is_picture, target in page.targets() if is_picture}
    for path in sorted(pictures.iterdir()):
        if path.resolve() not in shown:
            yield f"{path.name} is shown by no page"
    size = sum(path.stat().st_size for path in pictures.iterdir())
    if size > MOST_PICTURE_BYTES:
        yield f"the pictures take {size} bytes, more than {MOST_PICTURE_BYTES}"
    index = next(page for page in pages if page.path.name == "index.md")
    listed = [target for _, target in index.targets()]
    for page in pages:
        if page is not index and listed.count(page.path.name) != 1:
            yield f"{page.path.name} stands {listed.count(page.path.name)} times in the index, which is the contents"
    for page in pages:
        for anchor in {name for name in page.anchors() if page.anchors().count(name) > 1}:
            yield f"{page.path.name} has several headings #{anchor}"


def main():
    root = Path(sys.argv[1]).resolve()
    guide = root / "docs" / "guide"
    pages = pages_in(guide)
    others = pages_in(root / "docs") + [Page(root / name) for name in ("README.md", "CONTRIBUTING.md", "CHANGELOG.md")]
    faults = [fault for page in pages + others for fault in faults_of_links(page, root, guide)]
    faults += faults_of_guide(pages, guide)
    links = sum(len(page.targets()) for page in pages + others)
    for fault in faults:
        print(fault)
    print(f"{len(pages)} pages of the guide, {links} links in all, {len(faults)} faults")
    sys.exit(1 if faults or links < 20 else 0)


main()
