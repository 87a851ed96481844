#!/usr/bin/env python3
"""serverprofile-walk, and pywbem if there is a Python that has it, against the server of an
OpenPegasus on which both modules are installed as the documentation says, with the sample switch in
`interop` and `root/cimv2`.

usage: real_server_test.py --build BUILD-DIRECTORY --home PEGASUS_HOME [--pywbem PYTHON]
"""

import argparse
import json
import pathlib
import subprocess
import sys
import unittest

SOURCE = pathlib.Path(__file__).resolve().parent.parent.parent
sys.path.insert(1, sys.path[0] + "/../kit")

from openpegasus import INSTALLED, Installed

SERVER = PYWBEM = None


def walk(*options):
    return subprocess.run(
        [sys.executable, "-B", str(SOURCE / "walk" / "serverprofile-walk"), *options,
         f"http://{SERVER.address}"], capture_output=True, text=True, timeout=300, check=False)


class Walk(unittest.TestCase):
    def test_finds_interop_and_is_whole_there_and_in_cimv2(self):
        done = walk()
        self.assertEqual((done.returncode, done.stderr), (0, ""), done.stdout)
        self.assertRegex(done.stdout.splitlines()[-1],
                         r"^The walk is whole in interop, root/cimv2: \d{3} questions, 0 wrong$")

    def test_of_each_namespace_alone_is_whole(self):
        for namespace in INSTALLED:
            done = walk("--json", "--namespace", namespace)
            self.assertEqual(done.returncode, 0, done.stdout)
            self.assertTrue(json.loads(done.stdout)["whole"])

    def test_is_pywbems_too(self):
        if PYWBEM is None:
            self.skipTest("no Python with pywbem is given")
        done = subprocess.run(
            [PYWBEM, "-B", str(SOURCE / "tests" / "clients" / "pywbem_walk.py"), SERVER.address,
             *INSTALLED], capture_output=True, text=True, timeout=300, check=False)
        self.assertEqual(done.returncode, 0, done.stdout + done.stderr)

    def test_misses_what_the_switch_does_not_publish(self):
        # The sample goes, and comes back.
        path = 'ORVEX_ComputerSystem.CreationClassName="ORVEX_ComputerSystem",Name="10000005AD000001"'
        SERVER.must("cimcli di", "cimcli", "di", path, "-n", "interop")
        try:
            done = walk("--namespace", "interop")
        finally:
            SERVER.must("cimcli ci", "cimcli", "ci", "ORVEX_ComputerSystem",
                        "CreationClassName=ORVEX_ComputerSystem", "Name=10000005AD000001",
                        "-n", "interop")
        self.assertEqual(done.returncode, 1, done.stdout)
        self.assertIn("WRONG", done.stdout)
        self.assertEqual(walk("--namespace", "interop").returncode, 0)


if __name__ == "__main__":
    parser = argparse.ArgumentParser()
    parser.add_argument("--home", required=True)
    parser.add_argument("--build", required=True)
    parser.add_argument("--pywbem")
    known, rest = parser.parse_known_args()
    PYWBEM = known.pywbem
    with Installed(known.home, known.build) as SERVER:
        program = unittest.main(argv=[sys.argv[0], *rest], exit=False)
    sys.exit(not program.result.wasSuccessful())
