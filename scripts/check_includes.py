#!/usr/bin/env python3
"""Checks that each room includes only what the table of rooms lets it include.

usage: check_includes.py [--root DIRECTORY] [--draw]
  --root  the source tree to look at; without it, the one that this script is in
  --draw  writes a Graphviz drawing of the rooms instead: an arrow for the includes from one room
          into another, with their number, red where the table does not allow them"""

import argparse
import collections
import pathlib
import re
import subprocess
import sys

PUBLIC = "embedded/pegasus/include"  # the public provider headers
EMBEDDING = "embedded/pegasus/embedding"  # what the server gets beside them
BASE = "embedded/limits embedded/threads embedded/text"  # of use without a CIM object model
SERVER = f"{BASE} {PUBLIC} {EMBEDDING} embedded/mof embedded/repository embedded/routing"

# Each room: the rooms that it may include beside itself, and the libraries beside C++ and POSIX.
ROOMS = {
    "embedded/limits": ("", ""),
    "embedded/threads": ("", ""),
    "embedded/text": ("", "utf8cpp/"),
    PUBLIC: ("", ""),
    EMBEDDING: (f"{PUBLIC} embedded/text", ""),
    "embedded/pegasus/src": (f"{PUBLIC} {EMBEDDING} embedded/text", ""),
    "embedded/mof": ("embedded/text embedded/threads", ""),
    "embedded/repository": (f"{BASE} {PUBLIC} {EMBEDDING} embedded/mof", "boost/"),
    "embedded/routing": (f"{BASE} {PUBLIC} {EMBEDDING} embedded/mof embedded/repository", ""),
    "embedded/http": (BASE, "boost/ openssl/"),
    "embedded/users": (BASE, "openssl/ crypt.h"),
    "embedded/cimxml": (f"{SERVER} embedded/http embedded/users", "expat.h"),
    "serverobjects": (PUBLIC, ""),
    "embedded/cimhost": (f"{SERVER} embedded/http embedded/users embedded/cimxml serverobjects",
                         "CLI/ spdlog/ openssl/"),
    # The module: what its rooms share, the families, the operations.
    "common": (PUBLIC, ""),
    "profiles": (f"{PUBLIC} common", ""),
    "objectmanager": (f"{PUBLIC} common", ""),
    "traversal": (f"{PUBLIC} common", ""),
    "provider": (f"{PUBLIC} common profiles objectmanager traversal", ""),
    # It knows the server by its commands, and MOF by its reader.
    "register": ("embedded/mof embedded/text", "CLI/ nlohmann/"),
    # Before the embedded server, and before the module as its server loads it.
    "tests/fuzz": (f"{SERVER} embedded/http embedded/users embedded/cimxml embedded/cimhost "
                   "serverobjects", "expat.h"),
    # Outside: what a provider's author and a client know.
    "bench": (PUBLIC, "benchmark/ boost/"),
}
# Files that belong to another room than their folder's, and headers that a room's build makes.
BELONG = {"provider/ServerProfileProvider.h": "common", "MofParser.h": "embedded/mof",
          "MofScanner.h": "embedded/mof"}
# Folders where an include is looked for, after that of the including file.
SEARCHED = ("", "embedded/", "embedded/pegasus/", PUBLIC + "/", "tests/")

LIBRARIES = tuple(library for _, libraries in ROOMS.values() for library in libraries.split())
SYSTEM = re.compile(r"[a-z0-9_/]+(\.h)?$")
INCLUDE = re.compile(r'^\s*#\s*include\s*([<"]([^>"]+)[>"])', re.M)
MODULE = re.compile(r"ServerProfile|ORVEX_|Orvex")


def room_of(path):
    """The room of a file; None if it is in none."""
    return BELONG.get(path) or max((room for room in ROOMS if path.startswith(room + "/")),
                                   key=len, default=None)


def includes(root):
    """The room, path, line, include as written, its name and the room that it leads to, if any."""
    listed = subprocess.run(["git", "ls-files", "-co", "--exclude-standard"], cwd=root, check=True,
                            capture_output=True, text=True).stdout.splitlines()
    files = {path for path in listed if path.endswith((".cpp", ".h", ".y", ".l"))
             and (root / path).exists()}
    for path in sorted(files):
        room = room_of(path)
        if room is None:
            continue
        text = (root / path).read_text(encoding="utf-8")
        if room.startswith(("embedded/", "serverobjects")) and (found := MODULE.search(text)):
            yield room, path, text.count("\n", 0, found.start()) + 1, found[0], None, "common"
        own = path.rpartition("/")[0] + "/"
        for match in INCLUDE.finditer(text):
            target = next((folder + match[2] for folder in (own, *SEARCHED)
                           if folder + match[2] in files or match[2] in BELONG), "")
            yield (room, path, text.count("\n", 0, match.start(2)) + 1, match[1], match[2],
                   room_of(match[2] if match[2] in BELONG else target))


def allowed(room, name, target):
    rooms, libraries = ROOMS[room]
    if target:
        return target == room or target in rooms.split()
    return name.startswith(tuple(libraries.split())) if name.startswith(LIBRARIES) else (
        bool(SYSTEM.match(name)))


def drawing(found):
    edges = collections.Counter(
        (room, target, allowed(room, name, target))
        for room, _, _, _, name, target in found if target not in (None, room))
    lines = [f'  "{one}" -> "{other}" [label="{count}"{"" if fine else ", color=red"}];'
             for (one, other, fine), count in sorted(edges.items())]
    rooms = sorted({room for room, *_ in found})
    return "\n".join(["digraph rooms {", "  node [shape=box];",
                      *(f'  "{room}";' for room in rooms), *lines, "}"])


def main():
    parser = argparse.ArgumentParser(usage=__doc__)
    parser.add_argument("--root", type=pathlib.Path,
                        default=pathlib.Path(__file__).resolve().parent.parent)
    parser.add_argument("--draw", action="store_true")
    options = parser.parse_args()
    found = list(includes(options.root))
    if options.draw:
        print(drawing(found))
        return 0
    wrong = [f"{path}:{line}: {room} may not know {written}"
             for room, path, line, written, name, target in found
             if not allowed(room, name, target)]
    print("\n".join(wrong) or f"{len(found)} includes respect the rooms")
    return 1 if wrong or not found else 0


if __name__ == "__main__":
    sys.exit(main())
