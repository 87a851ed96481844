#!/usr/bin/env python3
"""serverprofile-register with a stand-in of the server."""

import argparse
import copy
import json
import os
import pathlib
import re
import shutil
import subprocess
import sys
import unittest

import stand_in
from scenarios import SCHEMA, Scenarios, installed

LIBRARIES = pathlib.Path()
# Stands for serverprofile-walk: writes down what it was asked, and says what the test has put there.
WALK = """#!{}
import json, pathlib, sys
here = pathlib.Path(__file__).parent
with open(here / "asked", "a") as file:
    print(*sys.argv[1:], file=file)
name = sys.argv[sys.argv.index("--namespace") + 1].split("/")[-1]
code, text = json.loads((here / "verdicts").read_text())[name]
print(text)
sys.exit(code)
"""


class StandIn:
    """A server that is a dictionary; see stand_in.py."""

    def __init__(self):
        self.state = {
            "namespaces": {}, "qualifiers": {}, "registered": [], "stored": [],
            "configured": {"providerDir": f"lib:{LIBRARIES / 'good'}"}}
        self.fill("root/cimv2")
        self.fill("root/PG_InterOp", "pg_registration", "pg_server")
        for name in ("PG_RegisteredProfile", "PG_ElementConformsToProfile"):
            self.state["namespaces"]["root/PG_InterOp"][name] = {
                "super": "CIM" + name[2:], "version": "", "refs": [], "keys": []}

    def call(self, name, arguments):
        return stand_in.call(self.state, name, arguments)

    def fill(self, namespace, *more):
        for name in ("cim_schema", *more):
            stand_in.Cimmof(self.state, ["-n", namespace, str(SCHEMA / f"{name}.mof")]).run()

    def clear(self, namespace):
        del self.state["namespaces"][namespace], self.state["qualifiers"][namespace]

    def snapshot(self):
        state = copy.deepcopy(self.state)
        state["registered"].sort(key=str)
        for names in state["qualifiers"].values():
            names.sort()
        return state

    def run(self, command):
        return subprocess.run(command, stdin=subprocess.DEVNULL, capture_output=True, text=True,
                              check=False)

    def popen(self, command):
        return subprocess.Popen(command, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                                stderr=subprocess.PIPE, text=True)


class WithStandIn(Scenarios, unittest.TestCase):
    maxDiff = None

    @classmethod
    def setUpClass(cls):
        cls.furnish(StandIn())
        # Of the many qualifiers, which are deleted one by one, the stand-in asks for Version alone.
        cls.schema = shutil.copytree(SCHEMA, cls.parent / "schema")
        qualifiers = cls.schema / "qualifiers.mof"
        qualifiers.write_text(re.sub(r"^Qualifier (?!Association|Key|Version).*?;\n", "",
                                     qualifiers.read_text(), flags=re.M | re.S))

    @classmethod
    def locate(cls):
        cls.settings = cls.parent / "etc" / "ServerObjectsProvider.conf"
        cls.record = cls.parent / "var" / "record"
        return ["--settings-dir", cls.settings.parent, "--record", cls.record]

    def stand(self, installed):
        self.back_to(self.pristine)
        if installed and not self.whole:
            self.tool_says(["install"], 0)
            type(self).whole = self.state()
        elif installed:
            self.back_to(self.whole)

    def back_to(self, before):
        self.server.state = copy.deepcopy(before)
        for directory in (self.settings.parent, self.record.parent):
            shutil.rmtree(directory, ignore_errors=True)
        for name, (mode, text) in self.server.state.pop("files").items():
            path = pathlib.Path(name)
            if text is None:
                path.mkdir()
            else:
                path.write_text(text)
            path.chmod(int(mode, 8) & 0o7777)

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
                self.server.state["configured"]["providerDir"] = str(library)
                before = self.state()
                for command in ("install", "status"):
                    self.assertRegex(self.tool_says([command], 1), f"WRONG  .*{problem}")
                self.assertStateIs(before)
        self.server.state["configured"] = self.pristine["configured"]

    @installed
    def test_status_asks_for_nothing_that_loads_a_wrong_library(self):
        self.server.state["configured"]["providerDir"] = str(LIBRARIES / "embedded")
        said = self.tool_says(["status"], 1)
        self.assertIn("no requests are tried, as the server would load that library", said)
        self.assertNotIn("from the module", said)
        self.server.state["configured"] = self.pristine["configured"]

    def test_a_library_that_the_server_would_not_load_is_said(self):
        other = LIBRARIES / "undefined" / "libServerProfileProvider.so"
        said = self.tool_says(["install", "--library", other], 1)
        self.assertIn(f"WRONG  {other} is not what the server loads; that is "
                      f"{LIBRARIES}/good/libServerProfileProvider.so", said)
        self.tool_says(["status", "--library", LIBRARIES / "good/libServerProfileProvider.so"], 1)

    # --- a client's walk

    def walk(self, **verdicts):
        """Puts a serverprofile-walk beside a copy of the tool. `verdicts` are (exit code, output) by
        the last part of the namespace's name."""
        directory = self.place / "bin"
        if not directory.exists():
            directory.mkdir()
            self.tool = shutil.copy(self.tool, directory)
            (directory / "serverprofile-walk").write_text(WALK.format(sys.executable))
            (directory / "serverprofile-walk").chmod(0o755)
        (directory / "verdicts").write_text(json.dumps(verdicts))
        return directory / "asked"

    @staticmethod
    def verdict(*problems, error=None):
        return json.dumps({
            "format": 1, "whole": not problems and not error, "questions": 418, "error": error,
            "wrongs": [{"command": f"wbemcli ein 'http://x:{number}'",
                        "problems": [{"text": text, "advice": None}]}
                       for number, text in enumerate(problems)]})

    @installed
    def test_status_says_whether_a_clients_walk_is_whole(self):
        asked = self.walk(interop=(0, self.verdict()), cimv2=(0, self.verdict()))
        url = "http://127.0.0.1:15988"
        said = self.tool_says(["status", "--url", url], 0)
        for namespace in ("interop", "root/cimv2"):
            self.assertIn(f"ok     a client's walk is whole in {namespace}: 418 questions", said)
        self.assertEqual(asked.read_text().splitlines(), [
            f"--json --timeout 60 --namespace {namespace} {url}"
            for namespace in ("interop", "root/cimv2")])

    @installed
    def test_status_names_what_breaks_a_clients_walk_and_not_without_end(self):
        self.walk(interop=(1, self.verdict("CIM_Namespace is\nmissing")),
                  cimv2=(1, self.verdict(*(f"no {number}" for number in range(20)))))
        said = self.tool_says(["status", "--url", "http://x"], 1)
        self.assertIn("WRONG  a client's walk in interop: wbemcli ein 'http://x:0': CIM_Namespace is "
                      "missing", said)
        self.assertEqual(len(re.findall("WRONG  a client's walk in root/cimv2", said)), 5)
        self.assertIn("15 more are wrong in root/cimv2: serverprofile-walk --namespace root/cimv2 "
                      "http://x", said)
        self.assertIn("6 WRONG", said)
        self.walk(interop=(1, self.verdict(error="the server stopped answering")),
                  cimv2=(0, self.verdict()))
        self.assertIn("WRONG  a client's walk in interop: the server stopped answering",
                      self.tool_says(["status", "--url", "http://x"], 1))

    @installed
    def test_status_says_why_it_did_not_walk_and_how_to(self):
        self.walk(interop=(3, self.verdict(error="http://x: Connection refused")),
                  cimv2=(1, "no verdict"))
        said = self.tool_says(["status", "--url", "http://x"], 0)
        self.assertRegex(said, "note   .* in interop was not found out: http://x: Connection "
                               "refused; .*--url.* serverprofile-walk --namespace interop http://x")
        self.assertRegex(said, "note   .* in root/cimv2 was not found out: .* is not understood")
        self.assertRegex(self.tool_says(["status"], 0), "note   .* say it with --url")
        (self.place / "bin" / "serverprofile-walk").unlink()
        self.assertRegex(self.tool_says(["status"], 0),
                         "note   .* there is no serverprofile-walk .*; install it")

    @installed
    def test_the_walk_goes_where_the_servers_configuration_says(self):
        asked = self.walk(interop=(0, self.verdict()), cimv2=(0, self.verdict()))
        for configured, url in (
                ({"enableHttpConnection": "true", "httpPort": "15988"}, "http://127.0.0.1:15988"),
                ({"enableHttpConnection": "true"}, "http://127.0.0.1:5988"),
                ({"enableHttpConnection": "false", "httpPort": "5988", "httpsPort": "15989",
                  "enableHttpsConnection": "true"}, "https://127.0.0.1:15989")):
            with self.subTest(url=url):
                self.server.state["configured"] = {**self.pristine["configured"], **configured}
                asked.unlink(missing_ok=True)
                self.tool_says(["status"], 0)
                self.assertEqual({line.split()[-1] for line in asked.read_text().splitlines()},
                                 {url})
        self.server.state["configured"] = self.pristine["configured"]

    def test_the_cim_schema_of_others_is_not_completed(self):
        del self.server.state["namespaces"]["root/cimv2"]["CIM_CommMechanismForManager"]
        self.pristine = self.state()
        self.assertIn("WRONG  root/cimv2 has no class CIM_CommMechanismForManager\n"
                      "         load the CIM schema into it", self.tool_says(["install"], 1))
        self.assertStateIs(self.pristine)

    @installed
    def test_classes_with_instances_of_others_are_kept(self):
        self.server.state["stored"].append(["root/cimv2", "ORVEX_ObjectManagerHost"])
        self.assertIn("kept root/cimv2:ORVEX_ObjectManagerHost: others have instances of it",
                      self.tool_says(["remove"], 0))
        self.server.state["stored"].clear()

    def test_mof_that_cannot_be_read_is_said(self):
        (self.mof / "serverprofile_registration.mof").write_text("instance PG_Provider")
        self.assertIn("serverprofile_registration.mof:1:10: unexpected 'PG_Provider', expected 'of'",
                      self.tool_says(["install"], 1))
        (self.mof / "serverprofile_registration.mof").unlink()
        said = self.tool_says(["install"], 1)
        self.assertIn("serverprofile_registration.mof:1:1: cannot be read: no such file", said)
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
    parser.add_argument("--mof-reader", required=True)
    parser.add_argument("--libraries", required=True, type=pathlib.Path)
    parser.add_argument("--brief", action="store_true", help="fewer failures of each kind")
    known, rest = parser.parse_known_args()
    os.environ.pop("PEGASUS_HOME", None)
    WithStandIn.tool = known.tool
    WithStandIn.client = known.client
    WithStandIn.thorough = not known.brief
    LIBRARIES = known.libraries
    stand_in.READER = known.mof_reader
    unittest.main(argv=[sys.argv[0], *rest])
