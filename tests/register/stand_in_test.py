#!/usr/bin/env python3
"""serverprofile-register with a stand-in of the server."""

import argparse
import copy
import os
import pathlib
import re
import subprocess
import sys
import unittest

import stand_in
from scenarios import SCHEMA, Scenarios

LIBRARIES = pathlib.Path()
CIM = ("cim_core", "cim_system", "cim_software", "cim_interop")


def schema(*names):
    """The project's MOF in the stand-in's form."""
    state = {"namespaces": {}, "registered": []}
    for name in names:
        stand_in.Cimmof(state, ["-n", "root", str(SCHEMA / f"{name}.mof")]).run()
    return state["namespaces"]["root"]


class StandIn:
    """A server that is a dictionary; see stand_in.py."""

    def __init__(self):
        self.state = {
            "namespaces": {"root/cimv2": schema(*CIM),
                           "root/PG_InterOp": schema(*CIM, "pg_registration", "pg_server")},
            "registered": [], "stored": [], "providers": f"lib:{LIBRARIES / 'good'}"}

    def call(self, name, arguments):
        return stand_in.call(self.state, name, arguments)

    def fill(self, namespace):
        self.state["namespaces"][namespace] = schema(*CIM)

    def snapshot(self):
        state = copy.deepcopy(self.state)
        for instance in state["registered"]:
            for name, value in instance["properties"].items():
                instance["properties"][name] = re.sub(r"\s", "", value)
        state["registered"].sort(key=str)
        return state

    def run(self, command):
        return subprocess.run(command, stdin=subprocess.DEVNULL, capture_output=True, text=True,
                              check=False)

    def popen(self, command):
        return subprocess.Popen(command, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                                stderr=subprocess.PIPE, text=True)

    def signal(self, process, number):
        process.send_signal(number)


class WithStandIn(Scenarios, unittest.TestCase):
    maxDiff = None

    def setUp(self):
        self.server = StandIn()
        super().setUp()

    def test_a_library_that_the_server_cannot_load_is_said(self):
        damaged = self.place / "damaged"
        damaged.mkdir()
        (damaged / "libServerProfileProvider.so").write_text("no library")
        for library, problem in (
                (LIBRARIES / "empty", "has no function PegasusCreateProvider"),
                (LIBRARIES / "embedded", "is not linked with OpenPegasus"),
                (LIBRARIES / "undefined", "cannot be loaded: .*undefined symbol: .*Nowhere"),
                (damaged, "cannot be loaded: .*too short"),
                (self.place, "the server finds no libServerProfileProvider.so in ")):
            with self.subTest(library=library):
                self.server.state["providers"] = str(library)
                before = self.server.snapshot()
                for command in ("install", "status"):
                    self.assertRegex(self.tool_says([command], 1), f"WRONG  .*{problem}")
                self.assertStateIs(before)
        self.server.state["providers"] = self.pristine["providers"]

    def test_status_asks_for_nothing_that_loads_a_wrong_library(self):
        self.tool_says(["install"], 0)
        self.server.state["providers"] = str(LIBRARIES / "embedded")
        said = self.tool_says(["status"], 1)
        self.assertIn("no requests are tried, as the server would load that library", said)
        self.assertNotIn("from the module", said)
        self.server.state["providers"] = self.pristine["providers"]

    def test_a_library_that_the_server_would_not_load_is_said(self):
        other = LIBRARIES / "undefined" / "libServerProfileProvider.so"
        said = self.tool_says(["install", "--library", other], 1)
        self.assertIn(f"WRONG  {other} is not what the server loads; that is "
                      f"{LIBRARIES}/good/libServerProfileProvider.so", said)
        self.tool_says(["status", "--library", LIBRARIES / "good/libServerProfileProvider.so"], 1)

    def test_classes_with_instances_of_others_are_kept(self):
        self.tool_says(["install"], 0)
        self.server.state["stored"].append(["root/cimv2", "ORVEX_ObjectManagerHost"])
        self.assertIn("kept root/cimv2:ORVEX_ObjectManagerHost: others have instances of it",
                      self.tool_says(["remove"], 0))
        self.server.state["stored"].clear()

    def test_mof_that_cannot_be_read_is_said(self):
        (self.mof / "serverprofile_registration.mof").write_text("instance PG_Provider")
        self.assertIn("serverprofile_registration.mof:1: 'of' is expected, not 'PG_Provider'",
                      self.tool_says(["install"], 1))
        (self.mof / "serverprofile_registration.mof").unlink()
        said = self.tool_says(["install"], 1)
        self.assertIn("serverprofile_registration.mof: No such file or directory", said)
        self.assertIn("--mof", said)

    def test_an_output_that_nobody_reads_any_more_stops_nothing(self):
        process = self.server.popen(self.command(["install"]))
        process.stdout.close()
        process.stderr.close()
        self.assertEqual(process.wait(), 0)
        self.tool_says(["status"], 0)

    def test_a_wrong_command_line_is_said(self):
        for arguments in ([], ["instal"], ["install", "--namespace", "root/a;b"],
                          ["install", "--namespace", ""], ["install", "--timeout", "0"],
                          ["install", "status"]):
            with self.subTest(arguments=arguments):
                self.assertIn("--help", self.tool_says(arguments, 2))
        self.assertStateIs(self.pristine)


if __name__ == "__main__":
    parser = argparse.ArgumentParser()
    parser.add_argument("--tool", required=True)
    parser.add_argument("--client", required=True)
    parser.add_argument("--libraries", required=True, type=pathlib.Path)
    known, rest = parser.parse_known_args()
    os.environ.pop("PEGASUS_HOME", None)
    WithStandIn.tool = known.tool
    WithStandIn.client = known.client
    LIBRARIES = known.libraries
    unittest.main(argv=[sys.argv[0], *rest])
