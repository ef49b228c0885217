"""Checks that what a guide shows of files is what stands in them.

    GuideExcerpts.py GUIDE

A block of code behind a line such as <!-- samples/filter/PlotFilter.cpp --> must stand in that file,
line by line; a line of three dots stands for lines that are left out. A block of C++ without such a
line is a fault.
"""

import pathlib
import re
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent.parent
BLOCK = re.compile(r"(?:^<!-- (\S+) -->\n)?^```(\w*)\n(.*?)^```$", re.MULTILINE | re.DOTALL)


def pieces(block):
    """The runs of lines between the lines of three dots."""
    return [piece for piece in re.split(r"^\s*\.\.\.\n", block, flags=re.MULTILINE) if piece]


def fault_of(path, block):
    """What is wrong with an excerpt, or None."""
    text = "\n" + (ROOT / path).read_text()
    start = 0
    for piece in pieces(block):
        found = text.find("\n" + piece, start)
        if found < 0:
            return f"{path} does not hold, in this order:\n{piece}"
        start = found + len(piece)
    return None


def main():
    guide = pathlib.Path(sys.argv[1])
    blocks = BLOCK.findall(guide.read_text())
    excerpts = [(path, block) for path, _, block in blocks if path]
    faults = [fault for path, block in excerpts if (fault := fault_of(path, block))]
    faults += [f"C++ that no file holds:\n{block}"
               for path, kind, block in blocks if kind == "cpp" and not path]
    if not excerpts:
        faults.append("no excerpts were found")
    print(*faults, sep="\n", file=sys.stderr)
    return 1 if faults else 0


sys.exit(main())
