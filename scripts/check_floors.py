#!/usr/bin/env python3
"""Checks that no folder includes what stands above it, or what is another folder's own."""

import re
import sys
from pathlib import Path

# Lowest first. A folder sees itself and what stands before it.
FLOORS = "env model collection expr constraint function algorithm solution sched check".split()
SEEN = {floor: set(FLOORS[: i + 1]) for i, floor in enumerate(FLOORS)}
# The bootstrap stands apart: nothing above sees it, and it sees little.
SEEN |= {"jace": {"jace", "env"}, "bootstrap": {"bootstrap", "jace", "env"}}

ROOT = Path(__file__).resolve().parent.parent
INCLUDE = re.compile(r'^\s*#\s*include\s*["<]([^">]+)[">]', re.MULTILINE)


def included(path):
    """The headers of the library that a file names, as (folder, whether it is private, name)."""
    for name in INCLUDE.findall(path.read_text()):
        parts = name.removesuffix(".h").split("/")
        if (ROOT / "include" / name).is_file() and len(parts) > 1:
            yield parts[1], False, name
        elif (ROOT / "src" / name).is_file() and not (path.parent / name).is_file():
            yield parts[0], True, name


def folders(path):
    """The folders that a file depends on: what it includes from common/ counts as its own lines."""
    for folder, private, name in included(path):
        if folder == "common":
            yield from folders(ROOT / "src" / name)
        else:
            yield folder, private, name


def faults():
    for pattern, at in (("include/vorlane/**/*.h", 2), ("src/*/*.*", 1)):
        for path in sorted(ROOT.glob(pattern)):
            own = path.relative_to(ROOT).parts[at].removesuffix(".h")
            if own not in SEEN:  # common/, and the umbrellas over everything
                continue
            for folder, private, name in folders(path):
                if folder not in SEEN[own] or (private and folder != own):
                    yield path, name
    for tree in ("engines", "extras"):
        for path in sorted(p for p in ROOT.glob(f"{tree}/**/*") if p.suffix in (".h", ".cpp")):
            yield from ((path, name) for _, private, name in included(path) if private)


found = [f"{path.relative_to(ROOT)} must not include {name}" for path, name in faults()]
print("\n".join(found) or "each folder includes its own floor and those below")
sys.exit(bool(found))
