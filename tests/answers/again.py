#!/usr/bin/env python3
"""Two clients that ask cimhost with the sample switch the whole wire suite at once get the same
answers.

Shows that the suite can be asked of any server that serves the module, and that what it finds
different between two servers is not chance.

usage: again.py BUILD-DIRECTORY [--pairs]
"""

import argparse
import concurrent.futures
import functools
import pathlib
import sys
import tempfile

sys.path.insert(1, sys.path[0] + "/../kit")

import compare
import record
import suite
from served import Served

SOURCE = pathlib.Path(__file__).resolve().parent.parent.parent
LEAST = 3000  # questions; fewer, and the server named no objects to ask about


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("build")
    parser.add_argument("--pairs", action="store_true", help=suite.PAIRS_HELP)
    options = parser.parse_args()
    wire = f"root/wire={SOURCE / 'tests' / 'wire' / 'wire.mof'}"
    with tempfile.TemporaryDirectory() as directory:
        stores = [pathlib.Path(directory, name) for name in ("one", "other")]
        with Served(options.build, ["--mof", wire, "--namespace", "root/other"]) as served:
            with concurrent.futures.ThreadPoolExecutor() as pool:
                list(pool.map(functools.partial(record.record, served.address, pairs=options.pairs),
                              stores))
        one, other = map(compare.load, stores)
    counts, unlisted = compare.compare(one, other)
    compare.report(one, counts, unlisted)
    return 1 if unlisted or counts or len(one) < LEAST else 0


if __name__ == "__main__":
    sys.exit(main())
