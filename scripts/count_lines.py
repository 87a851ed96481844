#!/usr/bin/env python3
"""Counts the lines of the files that git has at a commit, by room.

usage: count_lines.py [COMMIT [LATER]]     HEAD, unless given; with LATER, both and the difference

A room is a folder at the top, or one below embedded/ and tests/. Tests, benchmarks and documentation
are counted by themselves; all else is the product: what is delivered, and what builds and packs it.
Empty lines and comments count; pictures and the corpus of the fuzz targets do not.
"""

import collections
import pathlib
import subprocess
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent
KINDS = ("product", "tests", "benchmarks", "documentation")


def git(*arguments, text=None):
    return subprocess.run(["git", "-C", ROOT, *arguments], check=True, stdout=subprocess.PIPE,
                          input=text).stdout


def place(path):
    """The kind and the room of a file; None if it does not count."""
    if "corpus" in path.parts or path.suffix in (".png", ".svg", ".jpg"):
        return None
    top = path.parts[0] if len(path.parts) > 1 else "(top)"
    if top == "docs" or path.suffix == ".md":
        return "documentation", top
    if top == "bench":
        return "benchmarks", top
    if top in ("embedded", "tests") and len(path.parts) > 2:
        below = path.parts[:3] if path.parts[1] == "embedded" and len(path.parts) > 3 else path.parts[:2]
        return "tests" if top == "tests" else "product", "/".join(below)
    return "tests" if top == "tests" else "product", top


def count(commit):
    """(kind, room) -> lines."""
    rows = [line.split("\t") for line in
            git("ls-tree", "-r", commit).decode().splitlines() if line.startswith("100")]
    wanted = [(place(pathlib.PurePosixPath(name)), entry.split()[2]) for entry, name in rows]
    wanted = [(where, blob) for where, blob in wanted if where]
    texts = git("cat-file", "--batch", text="".join(f"{blob}\n" for _, blob in wanted).encode())
    lines = collections.Counter()
    at = 0
    for where, _ in wanted:
        end = texts.index(b"\n", at)
        size = int(texts[at:end].split()[2])
        lines[where] += texts.count(b"\n", end + 1, end + 1 + size)
        at = end + 1 + size + 1
    return lines


def main():
    if len(sys.argv) > 3 or "-h" in sys.argv[1:] or "--help" in sys.argv[1:]:
        print(__doc__.strip())
        return 0 if len(sys.argv) == 2 else 2
    try:
        counts = [count(commit) for commit in sys.argv[1:] or ["HEAD"]]
    except subprocess.CalledProcessError:
        return 2  # git has said why
    for kind in KINDS:
        rooms = sorted({room for lines in counts for one, room in lines if one == kind})
        rows = [(f"  {room}", [lines[kind, room] for lines in counts]) for room in rooms]
        rows.append((f"{kind} in all", [sum(column) for column in zip(*(row for _, row in rows))]))
        for name, row in rows:
            change = f"{row[1] - row[0]:+9,}" if len(row) == 2 else ""
            print(f"{name:30}", *(f"{lines:9,}" for lines in row), change)
    return 0


if __name__ == "__main__":
    sys.exit(main())
