#!/usr/bin/env python3
"""Runs the tests with the preset "coverage" and reports what of the sources they reach.

usage: coverage.py [--no-run] [--all] [TEST...]

  --no-run   reports on the run before
  --all      lists what no test reaches in every room, not only in those that have to be explained
  TEST       regular expressions of CTest's names; without any, all tests run

It prints lines and branches by room, then each branch of the module and of the rooms that read bytes
from outside that has never gone one of its two ways, unless a comment on its line or above it says why:
"Not tested: ...". build/coverage/report has the sources with their counts, as HTML. Exit code: 0, 1 with
branches to be explained, 2 when there was no run.
"""

import collections
import itertools
import json
import os
import pathlib
import shutil
import subprocess
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent
BUILD = ROOT / "build" / "coverage"
PROFILES = BUILD / "profiles"
MERGED = BUILD / "merged.profdata"
REASON = "Not tested:"

ROOMS = ("common", "provider", "profiles", "objectmanager", "traversal", "serverobjects", "register",
         "embedded/threads", "embedded/text", "embedded/pegasus", "embedded/mof",
         "embedded/repository", "embedded/routing", "embedded/http", "embedded/cimxml",
         "embedded/cimhost")
# The module, and what reads bytes from outside.
EXPLAINED = ("common", "provider", "profiles", "objectmanager", "traversal",
             "embedded/text", "embedded/mof", "embedded/http", "embedded/cimxml")


def run(*command, **more):
    done = subprocess.run(command, cwd=ROOT, check=False, **more)
    if done.returncode != 0:
        sys.exit(f"coverage.py: {command[0]} ended with {done.returncode}, see above")
    return done.stdout


def test(patterns):
    """Runs the tests. One that fails is shown by CTest and does not end the report."""
    if not (shutil.which("clang++") and shutil.which("llvm-cov")):
        print("coverage.py: no clang++ or llvm-cov; scripts/setup.sh test installs them", file=sys.stderr)
        sys.exit(2)
    run("cmake", "--preset", "coverage", stdout=subprocess.DEVNULL)
    run("cmake", "--build", "--preset", "coverage")
    shutil.rmtree(PROFILES, ignore_errors=True)
    environment = {**os.environ, "LLVM_PROFILE_FILE": str(PROFILES / "%4m.profraw")}
    chosen = ("-R", "|".join(patterns)) if patterns else ()
    # The instrumented library exports what counts.
    subprocess.run(("ctest", "--preset", "coverage", "-j2", "-E", "exported_symbols", *chosen),
                   cwd=ROOT, check=False, env=environment)
    run("llvm-profdata", "merge", "-o", str(MERGED), *map(str, PROFILES.glob("*.profraw")))


def binaries():
    """The programs and libraries that were made, as llvm-cov wants them."""
    made = [path for folder in ("bin", "lib", "tests") for path in (BUILD / folder).rglob("*")
            if path.is_file() and not path.is_symlink() and path.suffix in ("", ".so", ".0")
            and path.read_bytes()[:4] == b"\x7fELF"]
    first, *others = map(str, sorted(made))
    return [first, *(option for path in others for option in ("-object", path))]


def room_of(path):
    return next((room for room in ROOMS if path.startswith(room + "/")), None)


def is_explained(lines, number):
    """Whether the line, or the comment that ends above it, has the reason."""
    above = itertools.takewhile(lambda line: line.lstrip().startswith("//"),
                                reversed(lines[:number - 1]))
    return any(REASON in line for line in (lines[number - 1], *above))


def main():
    arguments = sys.argv[1:]
    if "--help" in arguments or "-h" in arguments:
        print(__doc__.strip())
        return 0
    options = {one for one in arguments if one.startswith("-")}
    if options - {"--no-run", "--all"}:
        print(f"coverage.py: {' '.join(sorted(options))}: no such option (try --help)", file=sys.stderr)
        return 2
    if "--no-run" not in options:
        test([one for one in arguments if one not in options])
    if not MERGED.is_file():
        print("coverage.py: there was no run before", file=sys.stderr)
        return 2
    sources = [str(ROOT / room) for room in ROOMS]
    common = (*binaries(), "-instr-profile", str(MERGED))
    counted = json.loads(run("llvm-cov", "export", *common, *sources, stdout=subprocess.PIPE,
                             stderr=subprocess.DEVNULL))["data"][0]["files"]
    run("llvm-cov", "show", *common, "-format=html", "-show-branches=count",
        f"-output-dir={BUILD / 'report'}", *sources, stderr=subprocess.DEVNULL)

    totals = collections.defaultdict(lambda: collections.Counter())
    missing = []
    for entry in counted:
        path = os.path.relpath(entry["filename"], ROOT)
        room = room_of(path)
        if room is None:
            continue
        lines = (ROOT / path).read_text(encoding="utf-8").splitlines()
        summary = entry["summary"]
        for kind in ("lines", "branches"):
            totals[room][kind] += summary[kind]["count"]
            totals[room][kind + " reached"] += summary[kind]["covered"]
        ways = collections.defaultdict(lambda: [0, 0])
        for line, column, _, _, true, false, *_ in entry["branches"]:
            ways[line, column][0] += true
            ways[line, column][1] += false
        for (line, column), (true, false) in sorted(ways.items()):
            if "if constexpr" in lines[line - 1]:
                continue
            if (true and false) or is_explained(lines, line):
                totals[room]["explained"] += not (true and false)
                continue
            if "--all" in options or room in EXPLAINED:
                never = "reached" if not (true or false) else "false" if true else "true"
                missing.append(f"{path}:{line}:{column}: never {never}: {lines[line - 1].strip()}")

    for room in ROOMS:
        total = totals[room]
        part = lambda kind: (f"{100 * total[kind + ' reached'] / total[kind]:5.1f} % of "
                             f"{total[kind]:5}" if total[kind] else "      none    ")
        print(f"{room:22} lines {part('lines')}   branches {part('branches')}, "
              f"{total['explained']} explained")
    print("\n".join(missing))
    print(f"{len(missing)} branches are neither taken both ways nor explained")
    return 1 if missing else 0


if __name__ == "__main__":
    sys.exit(main())
