#!/usr/bin/env python3
"""The load in its short form against the server of an installed OpenPegasus, with the module in the
server's process and disabled meanwhile.

usage: real_server_test.py --home PEGASUS_HOME --module LIBRARY
"""

import argparse
import pathlib
import shutil
import sys

PLACE = pathlib.Path(__file__).resolve().parent
SOURCE = PLACE.parent.parent
sys.path.insert(0, str(PLACE.parent / "clients"))

from real_server import RealServer  # noqa: E402
from served import NAMESPACES  # noqa: E402

INTEROP = "root/PG_InterOp"
CLASSES = ("schema/orvex_switch.mof", "schema/orvex_serverprofile.mof", "samples/sample_switch.mof")
# Disabling takes the server a second, whatever it does; the others must be many more.
REQUESTS = "40000"


def compile_mof(server, namespace, name):
    done = server.run(["cimmof", "-aE", "-aV", "-n", namespace, str(SOURCE / name)])
    if done.returncode != 0:
        raise RuntimeError(f"cimmof {name} into {namespace}: {done.stdout}{done.stderr}")


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--home", required=True)
    parser.add_argument("--module", required=True)
    chosen = parser.parse_args()
    with RealServer(chosen.home, visible=[SOURCE]) as server:
        shutil.copy(chosen.module, server.providers)
        for namespace in NAMESPACES:
            for name in CLASSES:
                compile_mof(server, namespace, name)
        compile_mof(server, INTEROP, "schema/serverprofile_registration.mof")
        done = server.run([sys.executable, "-B", str(PLACE / "load.py"), server.address,
                           "--requests", REQUESTS, "--toggles", "1", "--home", str(server.home)])
        print(done.stdout + done.stderr)
    return done.returncode


if __name__ == "__main__":
    sys.exit(main())
