#!/usr/bin/env python3
"""Holds the includes to the rooms: each knows only those before it, and nothing crosses the wall
between the modules, the embedded server and the tool that registers the modules."""

import functools
import pathlib
import re
import subprocess
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent

# The module's rooms know each other, the public provider headers, C++ and POSIX, nothing else.
MODULE_ROOMS = ["provider", "profiles", "objectmanager", "traversal"]
# The second module knows itself and the same headers; cimhost has it as a part.
SERVER_OBJECTS_ROOMS = ["serverobjects"]
PUBLIC = re.compile(r"Pegasus/(Common|Provider)/\w+\.h$")
SYSTEM = re.compile(r"[a-z0-9_/]+(\.h)?$")

# The embedded rooms, each knowing itself and those before it, and the libraries that each may use.
EMBEDDED_ROOMS = ["limits", "threads", "text", "pegasus", "mof", "repository", "routing", "http", "users",
                  "cimxml", "cimhost"]
# Those that are of use without a CIM object model, and what they know.
WITHOUT_CIM = {"limits": ["limits"], "threads": ["threads"], "text": ["text"], "mof": ["text", "mof"],
               "http": ["limits", "threads", "text", "http"],
               "users": ["limits", "threads", "text", "users"]}
LIBRARIES = {
    "text": ["utf8cpp/"],
    "cimxml": ["expat.h"],
    "http": ["boost/", "openssl/"],
    "users": ["openssl/", "crypt.h"],
    "cimhost": ["CLI/", "spdlog/", "openssl/"],
}

# The tool that registers the module knows the server by its commands, and MOF by its reader.
REGISTER_ROOMS = ["register", "mof", "text"]
REGISTER_LIBRARIES = ["CLI/", "nlohmann/"]

# The fuzz targets stand before the embedded server, and before the module as its server loads it.
FUZZ_ROOMS = ["fuzz", *EMBEDDED_ROOMS, *SERVER_OBJECTS_ROOMS]
FUZZ_LIBRARIES = ["expat.h"]

# The benchmarks stand outside: they know what a provider's author and a client know.
BENCH_LIBRARIES = ["benchmark/", "boost/"]

# Headers that a room's build makes.
GENERATED = {"mof": ["MofParser.h", "MofScanner.h"]}

INCLUDE = re.compile(r'^\s*#\s*include\s*([<"])([^>"]+)[>"]', re.M)


def is_system(name):
    return bool(SYSTEM.match(name)) and not name.startswith(
        tuple(library for libraries in LIBRARIES.values() for library in libraries)
    )


def module_allows(rooms, quoted, name):
    if quoted:
        return any(name.startswith(room + "/") for room in rooms)
    return bool(PUBLIC.match(name) or is_system(name))


def embedded_allows(room, quoted, name):
    if room == "pegasus":
        # Its sources sit together; the headers that hosts see are embedding/ and the public ones.
        return PUBLIC.match(name) or is_system(name) if not quoted else (
            "/" not in name or name.startswith(("embedding/", "text/")))
    known = WITHOUT_CIM.get(room) or EMBEDDED_ROOMS[: EMBEDDED_ROOMS.index(room) + 1]
    if name.startswith("embedding/"):
        return room not in WITHOUT_CIM
    if quoted:
        if room == "cimhost" and name.startswith("serverobjects/"):
            return True
        return name in GENERATED.get(room, []) or any(name.startswith(r + "/") for r in known)
    if PUBLIC.match(name):
        return room not in WITHOUT_CIM
    return is_system(name) or name.startswith(tuple(LIBRARIES.get(room, [])))


def register_allows(quoted, name):
    if quoted:
        return any(name.startswith(room + "/") for room in REGISTER_ROOMS)
    return is_system(name) or name.startswith(tuple(REGISTER_LIBRARIES))


def fuzz_allows(quoted, name):
    if quoted:
        return any(name.startswith(room + "/") for room in FUZZ_ROOMS)
    return bool(PUBLIC.match(name) or is_system(name)) or name.startswith(
        ("embedding/", *FUZZ_LIBRARIES))


def bench_allows(quoted, name):
    if quoted:
        return "/" not in name
    return bool(PUBLIC.match(name) or SYSTEM.match(name)) or any(
        name.startswith(library) for library in BENCH_LIBRARIES
    )


def main():
    listed = subprocess.run(
        ["git", "ls-files", "-co", "--exclude-standard"], cwd=ROOT, check=True, capture_output=True
    ).stdout.decode()
    wrong = []
    files = 0
    for path in map(pathlib.PurePosixPath, listed.splitlines()):
        if path.suffix not in (".cpp", ".h", ".y", ".l"):
            continue
        room = path.parts[0]
        if room == "embedded":
            allows = lambda q, n, r=path.parts[1]: embedded_allows(r, q, n)
        elif room in MODULE_ROOMS:
            allows = functools.partial(module_allows, MODULE_ROOMS)
        elif room in SERVER_OBJECTS_ROOMS:
            allows = functools.partial(module_allows, SERVER_OBJECTS_ROOMS)
        elif room == "register":
            allows = register_allows
        elif room == "bench":
            allows = bench_allows
        elif path.parts[:2] == ("tests", "fuzz"):
            allows = fuzz_allows
        else:
            continue
        files += 1
        text = (ROOT / path).read_text(encoding="utf-8")
        for match in INCLUDE.finditer(text):
            if not allows(match[1] == '"', match[2]):
                line = text.count("\n", 0, match.start(2)) + 1
                closing = {"<": ">"}.get(match[1], match[1])
                wrong.append(
                    f"{path}:{line}: {path.parent} may not include {match[1]}{match[2]}{closing}"
                )
        if room in ("embedded", "serverobjects") and re.search(r"ServerProfile|ORVEX_|Orvex", text):
            wrong.append(f"{path}: {room} knows nothing of the Server profile module")
    print("\n".join(wrong) or f"includes of {files} files respect the rooms")
    return 1 if wrong or not files else 0


if __name__ == "__main__":
    sys.exit(main())
