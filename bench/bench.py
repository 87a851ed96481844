#!/usr/bin/env python3
"""Measures what bench.sh has built; bench.sh --help says what and how."""

import argparse
import os
import pathlib
import platform
import subprocess
import sys
import time

import document
import measure_costs
import measure_growth
import measure_memory
import measure_module
import measure_users
import measure_wire
import tables
from questions import SOURCE, WrongAnswer
from results import Results, progress
from servers import IO_THREADS

from openpegasus import CannotIsolate  # tests/kit

SECTIONS = {"module": measure_module, "wire": measure_wire, "growth": measure_growth,
            "memory": measure_memory, "costs": measure_costs, "users": measure_users}
ROUNDS, QUICK_ROUNDS = 9, 3


def arguments():
    parser = argparse.ArgumentParser(prog="bench.sh", description=__doc__)
    parser.add_argument("what", nargs="*", metavar="what", default=[])
    parser.add_argument("--build", type=pathlib.Path, required=True)
    parser.add_argument("--against", type=pathlib.Path)
    parser.add_argument("--quick", action="store_true")
    parser.add_argument("--rounds", type=int)
    parser.add_argument("--io-threads", type=int, default=IO_THREADS)
    parser.add_argument("--save", action="store_true")
    parser.add_argument("--note", default="")
    chosen = parser.parse_args()
    for what in chosen.what:
        if what not in SECTIONS:
            parser.error(f"{what}: no such benchmark; there are {', '.join(SECTIONS)}")
    chosen.what = chosen.what or list(SECTIONS)
    chosen.rounds = chosen.rounds or (QUICK_ROUNDS if chosen.quick else ROUNDS)
    home = (chosen.build / "bench" / "openpegasus_home").read_text().strip()
    chosen.openpegasus = pathlib.Path(home) if home else None
    return chosen


def processor():
    for line in pathlib.Path("/proc/cpuinfo").read_text().splitlines():
        if line.startswith("model name"):
            return line.split(":", 1)[1].strip()
    return platform.machine()


def commit(place):
    done = subprocess.run(["git", "-C", place, "log", "-1", "--format=%cs %s"],
                          capture_output=True, text=True, check=False)
    return done.stdout.strip() or "unknown"


def facts(setup):
    """What the results depend on."""
    built = {}
    for side, build in measure_growth.builds(setup).items():
        for line in (build / "CMakeCache.txt").read_text().splitlines():
            if line.startswith("CMAKE_HOME_DIRECTORY:INTERNAL="):
                built[side] = commit(line.split("=", 1)[1])
    return {"built": built, "processors": os.cpu_count(), "processor": processor(),
            "system": f"{platform.system()} {platform.release()}", "quick": setup.quick,
            "date": time.strftime("%Y-%m-%d"), "note": setup.note,
            "load": round(os.getloadavg()[0], 1), "openpegasus": setup.openpegasus is not None}


def measure(what, setup, results):
    """An exit code; what was measured stays in the results."""
    results.facts[what] = facts(setup)
    try:
        SECTIONS[what].measure(setup, results)
    except (WrongAnswer, measure_wire.LoadFailed, CannotIsolate, RuntimeError,
            OSError) as error:
        print(f"bench.sh: {what}: {error}", file=sys.stderr)
        return 1
    except KeyboardInterrupt:
        print(f"bench.sh: interrupted in {what}", file=sys.stderr)
        return 130
    return 0


def main():
    setup = arguments()
    results = Results()
    if not setup.openpegasus:
        progress("no OpenPegasus server is found (PEGASUS_ROOT, PEGASUS_HOME): its side is left out")
    kept = setup.build / "results" / "results.json"
    kept.parent.mkdir(exist_ok=True)
    for what in setup.what:
        failed = measure(what, setup, results)
        results.write(kept)
        print("\n\n".join(tables.tables(results, what)), end="\n\n", flush=True)
        if failed:
            progress(f"what was measured until then is in {kept}; no more is saved")
            return failed
    print(tables.aims(results))
    progress(f"the results are in {kept}")
    if setup.save:
        document.save(results, SOURCE / "docs")
        progress("docs/performance.md has the tables, docs/performance/ the plots")
    return 0


if __name__ == "__main__":
    sys.exit(main())
