#!/usr/bin/env python3
"""serverprofile-register with a server of an installed OpenPegasus."""

import argparse
import pathlib
import re
import shutil
import signal
import sys
import tempfile
import unittest

from scenarios import HERE, SCHEMA, Scenarios

sys.path.insert(0, str(HERE.parent / "clients"))
from real_server import RealServer  # pylint: disable=wrong-import-position

LIBRARY = "libServerProfileProvider.so"
REGISTRATION = ("PG_ProviderModule", "PG_Provider", "PG_ProviderCapabilities")


class Server(RealServer):
    """What the scenarios want of a server."""

    namespaces = ["root/cimv2", "root/PG_InterOp"]

    def call(self, name, arguments):
        done = self.run([name, *arguments])
        return done.returncode, done.stdout, done.stderr

    def ask(self, *command):
        done = self.run(command)
        if done.returncode != 0:
            raise RuntimeError(f"{command}: {done.returncode}: {done.stdout}{done.stderr}")
        return done.stdout

    def fill(self, namespace):
        self.ask("cimmof", "-w", "-n", namespace, "-I", str(SCHEMA), str(SCHEMA / "cim_schema.mof"))
        self.namespaces = [*self.namespaces, namespace]

    def snapshot(self):
        state = {"modules": sorted(self.ask("cimprovider", "-l", "-s").split("\n")),
                 "namespaces": sorted(self.ask("cimcli", "ns").split())}
        state["modules"] = [" ".join(line.split()) for line in state["modules"]]
        for name in REGISTRATION:
            listed = self.ask("cimcli", "ei", name, "-n", "root/PG_InterOp")
            state[name] = sorted(listed.split("\n// path= "))
        for namespace in self.namespaces:
            names = sorted(self.ask("cimcli", "nc", "-di", "-n", namespace).split())
            state[namespace] = {name: "" for name in names}
            for name in names:
                if name.startswith("ORVEX_"):
                    state[namespace][name] = self.ask("cimcli", "gc", name, "-n", namespace)
        return state

    def signal(self, process, number):
        process.send_signal(number)

    def stopped(self, stop):
        """Lets the server stand still, or go on."""
        self._process.send_signal(signal.SIGSTOP if stop else signal.SIGCONT)


class WithRealServer(Scenarios, unittest.TestCase):
    maxDiff = None
    home = ""
    module = ""

    @classmethod
    def setUpClass(cls):
        directory = tempfile.TemporaryDirectory()
        cls.addClassCleanup(directory.cleanup)
        cls.parent = directory.name
        source = HERE.parent.parent
        build = pathlib.Path(cls.tool).resolve().parent.parent
        cls.server = Server(cls.home, [directory.name, source, build])
        cls.server.__enter__()
        cls.addClassCleanup(cls.server.__exit__, None, None, None)
        shutil.copy(cls.module, cls.server.providers / LIBRARY)

    def test_the_module_answers_what_it_registers_for(self):
        self.tool_says(["install"], 0)
        for namespace in ("root/cimv2", "root/PG_InterOp"):
            names = self.server.ask("cimcli", "ni", "CIM_RegisteredProfile", "-n", namespace)
            self.assertEqual(len(re.findall(r"^CIM_Registered", names, re.M)), 6, names)
        self.tool_says(["remove"], 0)
        self.assertNotIn("CIM_Registered", self.server.ask(
            "cimcli", "ni", "CIM_RegisteredProfile", "-n", "root/cimv2"))

    def test_a_library_that_is_missing_or_damaged_is_said(self):
        library = self.server.providers / LIBRARY
        try:
            library.unlink()
            said = self.tool_says(["install"], 1)
            self.assertIn(f"WRONG  the server finds no {LIBRARY} in ", said)
            self.assertIn(str(self.server.providers), said)
            library.write_text("no library")
            self.assertRegex(self.tool_says(["status"], 1), "WRONG  .* cannot be loaded: ")
        finally:
            shutil.copy(self.module, library)

    def test_an_instance_that_others_made_keeps_its_class(self):
        self.tool_says(["install"], 0)
        self.by_hand("cimprovider", "-d", "-m", "ServerProfileProviderModule")
        self.by_hand("cimprovider", "-r", "-m", "ServerProfileProviderModule")
        self.by_hand("cimcli", "ci", "ORVEX_SoftwareIdentity", "InstanceID=other", "-n",
                     "root/cimv2")
        self.assertIn("kept root/cimv2:ORVEX_SoftwareIdentity: others have instances of it",
                      self.tool_says(["remove"], 0))
        self.by_hand("cimcli", "di", 'ORVEX_SoftwareIdentity.InstanceID="other"', "-n",
                     "root/cimv2")

    def test_a_server_that_hangs_is_given_up(self):
        self.server.stopped(True)
        try:
            said = self.tool_says(["status", "--timeout", "3"], 1)
        finally:
            self.server.stopped(False)
        self.assertIn("did not end in time and was killed", said)


if __name__ == "__main__":
    parser = argparse.ArgumentParser()
    for name in ("--home", "--tool", "--client", "--module"):
        parser.add_argument(name, required=True)
    known, rest = parser.parse_known_args()
    for name in ("home", "tool", "client", "module"):
        setattr(WithRealServer, name, getattr(known, name))
    unittest.main(argv=[sys.argv[0], *rest])
