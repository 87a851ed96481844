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

from scenarios import HERE, MODULE, SCHEMA, Scenarios

sys.path.insert(1, sys.path[0] + "/../kit")
from openpegasus import RealServer

LIBRARY = "libServerProfileProvider.so"
SOURCE = HERE.parent.parent
# Where the server has the say. What the tool does by itself (settings, record, signals, commands that
# fail one by one) the stand-in shows.
BY_THE_SERVER = (
    "installed_is_well", "second_install", "may_have_instances", "upgrade_brings",
    "earlier_version_adds", "interop_of_others", "server_puts", "qualifiers_of_others",
    "disabled_module", "was_deleted", "another_module", "busy_module", "module_answers",
    "missing_or_damaged", "instance_that_others", "server_that_hangs", "whatever_fails_an_install",
    "is_whole_in_each_namespace")
REGISTRATION = ("PG_ProviderModule", "PG_Provider", "PG_ProviderCapabilities")


class Server(RealServer):
    """What the scenarios want of a server."""

    namespaces = ["root/cimv2", "root/PG_InterOp", "interop"]

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
        self.namespaces = list(dict.fromkeys([*self.namespaces, namespace]))

    def clear(self, namespace):
        names = [name for file in ("core", "system", "software", "interop") for name in
                 re.findall(r"^class (\w+)", (SCHEMA / f"cim_{file}.mof").read_text(), re.M)]
        for name in reversed(names):
            self.ask("cimcli", "dc", name, "-n", namespace)
        for name in self.qualifiers(namespace):
            self.ask("cimcli", "dq", name, "-n", namespace)
        self.ask("cimcli", "di", '__Namespace.Name=""', "-n", namespace)

    def qualifiers(self, namespace):
        return re.findall(r"^Qualifier (\w+)", self.ask("cimcli", "eq", "-n", namespace), re.M)

    def snapshot(self):
        state = {"modules": sorted(self.ask("cimprovider", "-l", "-s").split("\n")),
                 "namespaces": sorted(self.ask("cimcli", "ns").split())}
        state["modules"] = [" ".join(line.split()) for line in state["modules"]]
        for name in REGISTRATION:
            listed = self.ask("cimcli", "ei", name, "-n", "root/PG_InterOp")
            state[name] = sorted(listed.split("\n// path= "))
        for namespace in self.namespaces:
            if self.run(["cimcli", "nc", "-n", namespace]).returncode == 3:
                continue  # there is no such namespace
            state["qualifiers of " + namespace] = sorted(self.qualifiers(namespace))
            names = sorted(self.ask("cimcli", "nc", "-di", "-n", namespace).split())
            state[namespace] = {name: "" for name in names}
            for name in names:
                if name.startswith("ORVEX_"):
                    state[namespace][name] = self.ask("cimcli", "gc", name, "-n", namespace)
            if namespace == "interop":
                state[namespace]["all"] = sorted(
                    self.ask("cimcli", "ec", "-di", "-n", namespace).split("// " + "=" * 51))
        return state

    def signal(self, process, number):
        process.send_signal(number)

    def stopped(self, stop):
        """Lets the server stand still, or go on."""
        self._process.send_signal(signal.SIGSTOP if stop else signal.SIGCONT)


class WithRealServer(Scenarios, unittest.TestCase):
    maxDiff = None
    home = ""
    modules = ()
    thorough = False
    asking = False

    def locate(self):
        self.settings = self.server.etc / "serverobjects" / "ServerObjectsProvider.conf"
        self.record = self.server.var_lib / "serverprofile-provider" / "record"
        return []

    @classmethod
    def setUpClass(cls):
        directory = tempfile.TemporaryDirectory()
        cls.addClassCleanup(directory.cleanup)
        cls.parent = directory.name
        build = pathlib.Path(cls.tool).resolve().parent.parent
        cls.server = Server(cls.home, [directory.name, SOURCE, build])
        cls.server.__enter__()
        cls.direct = cls.server.home / "bin"
        cls.addClassCleanup(cls.server.__exit__, None, None, None)
        for module in cls.modules:
            shutil.copy(module, cls.server.providers)

    def test_the_module_answers_what_it_registers_for(self):
        self.tool_says(["install"], 0)
        for namespace in ("root/cimv2", "interop"):
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
            shutil.copy(self.modules[0], library)

    def test_an_instance_that_others_made_keeps_its_class(self):
        self.tool_says(["install"], 0)
        self.by_hand("cimprovider", "-d", "-m", MODULE)
        self.by_hand("cimprovider", "-r", "-m", MODULE)
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


class AClientsWalk(unittest.TestCase):
    """What it is all for: the profile, installed with nothing but the tool beside a switch's own
    providers, is whole for a client."""

    maxDiff = None
    home = ""
    tool = ""
    modules = ()

    def test_is_whole_in_each_namespace_and_nothing_is_left_when_all_is_removed(self):
        build = pathlib.Path(self.tool).resolve().parent.parent
        with Server(self.home, [SOURCE, build]) as server:
            for module in self.modules:
                shutil.copy(module, server.providers)
            before = server.snapshot()

            def says(*arguments):
                done = server.run(["env", f"PATH={SOURCE / 'walk'}:{server.environment['PATH']}",
                                   self.tool, *arguments, "--mof", SCHEMA])
                self.assertEqual(done.returncode, 0, done.stdout + done.stderr)
                return done.stdout

            says("install")
            for namespace in ("interop", "root/cimv2"):
                for file in (SCHEMA / "orvex_switch.mof", SOURCE / "samples" / "sample_switch.mof"):
                    server.ask("cimmof", "-uc", "-aEV", "-n", namespace, str(file))
            said = says("status")
            for namespace in ("interop", "root/cimv2"):
                self.assertRegex(said,
                                 rf"ok     a client's walk is whole in {namespace}: [1-9]\d\d+ ")
            self.assertIn("kept the namespace interop", says("remove"))
            self.take_out_the_switch(server)
            says("remove")
            self.assertEqual(server.snapshot(), before)

    @staticmethod
    def take_out_the_switch(server):
        text = (SCHEMA / "orvex_switch.mof").read_text()
        for namespace in ("interop", "root/cimv2"):
            for name in reversed(re.findall(r"^class (\w+)", text, re.M)):
                for path in server.ask("cimcli", "ni", name, "-n", namespace).split("\n"):
                    if path.strip():
                        server.ask("cimcli", "di", path.strip(), "-n", namespace)
                server.ask("cimcli", "dc", name, "-n", namespace)


def chosen(words):
    """The -k options for the tests with these words in their names, of which each has to have one."""
    names = [name for case in (WithRealServer, AClientsWalk) for name in dir(case)
             if name.startswith("test_")]
    lost = [word for word in words if not any(word in name for name in names)]
    if lost:
        sys.exit(f"real_server_test: no test is called {', '.join(lost)}")
    return [option for word in words for option in ("-k", word)]


if __name__ == "__main__":
    parser = argparse.ArgumentParser()
    parser.add_argument("--brief", action="store_true", help="only where the server has the say")
    for name in ("--home", "--tool", "--client"):
        parser.add_argument(name, required=True)
    parser.add_argument("--modules", nargs=2, required=True,
                        help="the profile's module and that of the server's own objects")
    known, rest = parser.parse_known_args()
    for name in ("home", "tool", "client", "modules"):
        setattr(WithRealServer, name, getattr(known, name))
        setattr(AClientsWalk, name, getattr(known, name))
    unittest.main(argv=[sys.argv[0], *(chosen(BY_THE_SERVER) if known.brief else []), *rest])
