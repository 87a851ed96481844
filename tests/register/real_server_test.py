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

from scenarios import HERE, MODULE, SCHEMA, Scenarios, installed

sys.path.insert(1, sys.path[0] + "/../kit")
from openpegasus import RealServer

LIBRARY = "libServerProfileProvider.so"
SOURCE = HERE.parent.parent
# Where the server has the say. What the tool does by itself (settings, record, signals, commands that
# fail one by one) the stand-in shows.
BY_THE_SERVER = (
    "installed_is_well", "second_install", "may_have_instances", "upgrade_brings",
    "earlier_version_adds", "interop_of_others", "server_puts", "qualifiers_of_others",
    "disabled_module", "was_deleted", "another_module", "busy_module", "missing_or_damaged",
    "instance_that_others", "server_that_hangs", "whatever_fails_an_install",
    "is_whole_in_each_namespace")
CLASSES = ("ORVEX_ObjectManagerHost", "ORVEX_SoftwareIdentity", "ORVEX_ElementSoftwareIdentity")
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
        commands = ["cimprovider -l -s", "cimcli ns", "cimcli ec -di -n interop",
                    *(f"cimcli ei {name} -n root/PG_InterOp" for name in REGISTRATION)]
        for namespace in self.namespaces:
            commands += [f"cimcli eq -n {namespace}", f"cimcli nc -di -n {namespace}",
                         *(f"cimcli gc {name} -n {namespace}" for name in CLASSES)]
        said = self.run(["sh", "-c", "; echo ---; ".join(commands) + " 2>&1"]).stdout.split("---\n")
        # Lists of lines, of instances or of classes.
        return {command: sorted(re.split("\n// " if "// " in text else " *\n", text))
                for command, text in zip(commands, said)}

    def stopped(self, stop):
        """Lets the server stand still, or go on."""
        self._process.send_signal(signal.SIGSTOP if stop else signal.SIGCONT)


class WithRealServer(Scenarios, unittest.TestCase):
    maxDiff = None
    home = ""
    modules = ()
    thorough = False
    asking = False

    @classmethod
    def locate(cls):
        cls.settings = cls.server.etc / "serverobjects" / "ServerObjectsProvider.conf"
        cls.record = cls.server.var_lib / "serverprofile-provider" / "record"
        return []

    @classmethod
    def setUpClass(cls):
        directory = tempfile.TemporaryDirectory()
        cls.addClassCleanup(directory.cleanup)
        build = pathlib.Path(cls.tool).resolve().parent.parent
        server = Server(cls.home, [directory.name, SOURCE, build])
        server.__enter__()
        cls.addClassCleanup(server.__exit__, None, None, None)
        cls.direct = server.home / "bin"
        for module in cls.modules:
            shutil.copy(module, server.providers)
        cls.furnish(server, directory.name)

    def stand(self, installed):
        if installed and not self.there:
            self.tool_says(["install"], 0)
            type(self).whole = self.whole or self.state()
        elif self.there and not installed:
            self.back_to(self.pristine)

    def back_to(self, before):
        self.tool_says(["remove"], 0)
        self.assertStateIs(before)

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

    @installed
    def test_an_instance_that_others_made_keeps_its_class(self):
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
            said = self.tool_says(["status", "--timeout", "1"], 1)
        finally:
            self.server.stopped(False)
        self.assertIn("did not end in time and was killed", said)

    @installed
    def test_a_clients_walk_is_whole_in_each_namespace_beside_a_switchs_own_providers(self):
        for namespace in ("interop", "root/cimv2"):
            for file in (SCHEMA / "orvex_switch.mof", SOURCE / "samples" / "sample_switch.mof"):
                self.by_hand("cimmof", "-uc", "-aEV", "-n", namespace, file)
        path = f"PATH={SOURCE / 'walk'}:{self.server.environment['PATH']}"
        done = self.server.run(["env", path, *self.command(["status"])])
        self.assertEqual(done.returncode, 0, done.stdout + done.stderr)
        for namespace in ("interop", "root/cimv2"):
            self.assertRegex(done.stdout,
                             rf"ok     a client's walk is whole in {namespace}: [1-9]\d\d+ ")
        self.assertIn("kept the namespace interop", self.tool_says(["remove"], 0))
        self.take_out_the_switch()

    def take_out_the_switch(self):
        text = (SCHEMA / "orvex_switch.mof").read_text()
        for namespace in ("interop", "root/cimv2"):
            for name in reversed(re.findall(r"^class (\w+)", text, re.M)):
                for path in self.by_hand("cimcli", "ni", name, "-n", namespace).split("\n"):
                    if path.strip():
                        self.by_hand("cimcli", "di", path.strip(), "-n", namespace)
                self.by_hand("cimcli", "dc", name, "-n", namespace)


def chosen(words):
    """The -k options for the tests with these words in their names, of which each has to have one."""
    names = [name for name in dir(WithRealServer) if name.startswith("test_")]
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
    unittest.main(argv=[sys.argv[0], *(chosen(BY_THE_SERVER) if known.brief else []), *rest])
