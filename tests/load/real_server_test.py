#!/usr/bin/env python3
"""The load in its short form against the server of an installed OpenPegasus, with the module in the
server's process and disabled meanwhile.

usage: real_server_test.py --home PEGASUS_HOME --build BUILD-DIRECTORY
"""

import argparse
import pathlib
import sys

PLACE = pathlib.Path(__file__).resolve().parent
sys.path.insert(1, sys.path[0] + "/../kit")

from openpegasus import INSTALLED, Installed

# Disabling takes the server a second, whatever it does; the load must go on for many more.
MINUTES = "0.25"


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--home", required=True)
    parser.add_argument("--build", required=True)
    parser.add_argument("--minutes", default=MINUTES)
    chosen = parser.parse_args()
    namespaces = [word for namespace in INSTALLED for word in ("--namespace", namespace)]
    with Installed(chosen.home, chosen.build) as server:
        # A server that has namespaces of its own answers for them itself, and a few clients at once
        # that ask it for them end it, with no module registered.
        done = server.run([sys.executable, "-B", str(PLACE / "load.py"), server.address,
                           "--minutes", chosen.minutes, "--toggles", "1",
                           "--home", str(server.home), "--also", "ServerObjectsProviderModule",
                           "--without", "PG_Namespace", *namespaces])
        print(done.stdout + done.stderr)
    return done.returncode


if __name__ == "__main__":
    sys.exit(main())
