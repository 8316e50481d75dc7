"""The pages of the guide as text: their code blocks, headings, links and pictures."""
import re
from dataclasses import dataclass
from pathlib import Path

FENCE = re.compile(r"^```(.*)$")


@dataclass
class Block:
    page: Path
    line: int  # of its first line of code, from 1
    marking: str
    text: str


class Page:
    def __init__(self, path):
        self.path = path
        self.blocks = []
        self.prose = []  # lines outside of code blocks
        fence, code = None, []
        for number, line in enumerate(path.read_text(encoding="utf-8").splitlines(), 1):
            found = FENCE.match(line)
            if found and fence is None:
                fence, code = (found[1].strip(), number + 1), []
            elif found:
                self.blocks.append(Block(path, fence[1], fence[0], "\n".join(code) + "\n"))
                fence = None
            elif fence is None:
                self.prose.append(line)
            else:
                code.append(line)

    def anchors(self):
        heads = (line.lstrip("#").strip() for line in self.prose if re.match(r"#{1,6} ", line))
        return [re.sub(r"[^\w\- ]", "", head.lower()).replace(" ", "-") for head in heads]

    def targets(self):
        """Of links and pictures, as (is a picture, target)."""
        text = re.sub(r"`[^`]*`", "", "\n".join(self.prose))
        found = re.findall(r"(!?)\[[^\]]*\]\(([^)\s]+)\)", text)
        return [(sign == "!", target) for sign, target in found]


def pages_in(folder):
    return [Page(path) for path in sorted(Path(folder).glob("*.md"))]
