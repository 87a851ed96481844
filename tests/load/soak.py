#!/usr/bin/env python3
"""A cimhost with failing peers beside the module, under load from good clients and bad ones.

exit code: 0 if all was well, 1 if not.
"""

import argparse
import pathlib
import subprocess
import sys
import tempfile

PLACE = pathlib.Path(__file__).resolve().parent
sys.path.insert(1, sys.path[0] + "/../kit")

import modules
from served import Served

NAMESPACE = "root/peers"
PEERS = {
    "TST_Throwing": ("Quiet", "manners", 2),
    "TST_Slow": ("Slow", "manners", 2),
    "TST_Disabled": ("Quiet", "manners", 10),
    "TST_Missing": ("Quiet", "nonesuch", 2),
}
# What the module reads back comes late, and a crowd before a peer is told so soon.
OPTIONS = ["--fault=*:*=hang:0.001", "--patience=1"]


def main():
    parser = argparse.ArgumentParser(
        description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("build", type=pathlib.Path, help="the build directory, with its tests")
    parser.add_argument("--minutes", default="10", metavar="M")
    parser.add_argument("--clients", default="4", metavar="N", help="that are good")
    parser.add_argument("--bad", default="8", metavar="N", help="that are not")
    parser.add_argument("--pause", default="0.01", metavar="SECONDS",
                        help="of a good client between two requests")
    parser.add_argument("--sanitized", action="store_true", help="the build has a sanitizer")
    chosen = parser.parse_args()
    build = chosen.build.resolve()
    with tempfile.TemporaryDirectory() as folder:
        peers = modules.options(PEERS, NAMESPACE, folder, build)
        with Served(build, [*peers, *OPTIONS], traced=False) as served:
            done = subprocess.run(
                [sys.executable, "-B", PLACE / "load.py", served.address, "--pid", str(served.pid),
                 "--minutes", chosen.minutes, "--clients", chosen.clients, "--bad", chosen.bad,
                 "--pause", chosen.pause, "--peers", NAMESPACE, "--namespace", "root/PG_InterOp",
                 *(["--sanitized"] if chosen.sanitized else [])], check=False)
    return done.returncode


if __name__ == "__main__":
    sys.exit(main())
