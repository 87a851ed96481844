"""What serverprofile-register has to do, whatever server it is: a stand-in or a real one.

A test case mixes Scenarios into unittest.TestCase and gives it `server`, with

call(name, arguments)  how one of the server's tools works: returns exit code, output and errors
run(command)           runs a command where the server is and returns a CompletedProcess
popen(command)         starts it there
signal(process, n)     sends a signal to what popen started
snapshot()             all that the tool may change, in a form that can be compared
fill(namespace)        makes a namespace with the CIM classes that the module's classes build on
"""

import pathlib
import re
import shutil
import signal
import tempfile
import time

from tools import Tools

HERE = pathlib.Path(__file__).resolve().parent
SCHEMA = HERE.parent.parent / "schema"
MODULE = "ServerProfileProviderModule"
CHANGES = r"^(cimmof|cimprovider -[edr]|cimcli dc)"
PATIENCE = 120.0


def changes(before, after, path=""):
    """What differs between two states, a line each."""
    if not isinstance(before, dict) or not isinstance(after, dict):
        return [] if before == after else [f"{path}: {before!r} became {after!r}"]
    result = []
    for key in {**before, **after}:
        result += changes(before.get(key), after.get(key), f"{path}/{key}")
    return result


class Scenarios:
    tool = ""      # the program
    client = ""    # what stands for the server's tools
    server = None
    parent = None  # where scratch directories go; None: where they usually are

    def setUp(self):
        directory = tempfile.TemporaryDirectory(dir=self.parent)
        self.addCleanup(directory.cleanup)
        self.place = pathlib.Path(directory.name)
        self.mof = self.place / "mof"
        self.mof.mkdir()
        for name in ("orvex_serverprofile.mof", "serverprofile_registration.mof"):
            shutil.copy(SCHEMA / name, self.mof)
        (self.place / "tools").mkdir()
        self.tools = Tools(self.place / "tools", self.client, self.server.call)
        self.addCleanup(self.tools.close)
        self.pristine = self.server.snapshot()
        self.left_behind = []  # files that the tool is meant to leave
        self.addCleanup(self.put_back)

    def put_back(self):
        """Leaves the server as the next test expects it."""
        self.plan()
        self.tool_says(["remove"], 0, mof=SCHEMA)
        self.assertStateIs(self.pristine)
        self.assertEqual(self.tools.errors, [])
        self.assertEqual(list(self.place.glob("serverprofile-register.*")), self.left_behind)

    # --- what the tests are written with

    def plan(self, *faults):
        self.tools.plan(*faults)

    def calls(self, pattern=""):
        return [call for call in self.tools.calls if re.search(pattern, call)]

    def command(self, arguments, mof=None):
        # Its files go where both it and the test see them.
        return ["env", f"REGISTER_TEST_SOCKET={self.tools.socket}", f"TMPDIR={self.place}",
                self.tool, *arguments, "--mof", mof or self.mof, "--tools", self.place / "tools"]

    def tool_says(self, arguments, code, mof=None):
        """Runs the tool, which has to end with `code`; returns what it said."""
        done = self.server.run(self.command(arguments, mof))
        self.assertEqual(done.returncode, code, f"{arguments}\n{done.stdout}{done.stderr}")
        return done.stdout + done.stderr

    def by_hand(self, name, *arguments):
        """Runs one of the server's tools, past the plan."""
        code, out, err = self.server.call(name, list(map(str, arguments)))
        self.assertEqual(code, 0, out + err)
        return out

    def load(self, namespace, text):
        file = self.place / "by_hand.mof"
        file.write_text(text)
        self.by_hand("cimmof", "-n", namespace, file)

    def edit(self, name, pattern, replacement):
        file = self.mof / name
        text, count = re.subn(pattern, replacement, file.read_text(), flags=re.S)
        self.assertGreater(count, 0)
        file.write_text(text)

    def assertStateIs(self, expected, message=""):
        state = self.server.snapshot()
        if state != expected:
            self.fail("\n".join([message, "the server has changed:", *changes(expected, state)]))

    def each_failure_of(self, arguments, prepare=lambda: None, harmless="^cimconfig"):
        """Lets each command of a run fail, in each way; nothing may be left of any of them."""
        prepare()
        before = self.server.snapshot()
        self.plan()
        self.tool_says(arguments, 0)
        calls = self.calls()
        self.assertGreater(len([c for c in calls if re.search(CHANGES, c)]), 2, calls)
        self.tool_says(["remove"], 0)
        prepare()
        for index, call in enumerate(calls):
            changes = bool(re.search(CHANGES, call))
            for mode in ("reject", "half", "after", "crash") if changes else ("reject",):
                if re.search(harmless, call) or (mode == "half" and "cimmof" not in call):
                    continue
                with self.subTest(call=call, index=index, mode=mode):
                    self.assertStateIs(before)
                    self.plan({"index": index, "mode": mode})
                    done = self.server.run(self.command(arguments))
                    said = f"{call}\n{done.stdout}{done.stderr}"
                    self.assertIn(done.returncode, (1, 3), said)
                    self.assertTrue(done.stderr, said)
                    self.assertStateIs(before, said)

    # --- installing and removing

    def test_what_is_installed_is_well_and_removing_it_leaves_nothing(self):
        self.assertIn(f"{MODULE} serves root/cimv2 and root/PG_InterOp",
                      self.tool_says(["install"], 0))
        said = self.tool_says(["status"], 0)
        self.assertIn("all is well", said)
        self.assertNotIn("WRONG", said)
        self.assertIn(f"ok     {MODULE} is registered, and enabled", said)
        self.assertIn("root/PG_InterOp:CIM_RegisteredProfile:", said)
        self.assertNotEqual(self.server.snapshot(), self.pristine)
        self.tool_says(["remove"], 0)
        self.assertStateIs(self.pristine)
        self.assertIn("nothing to do", self.tool_says(["remove"], 0))
        self.assertStateIs(self.pristine)

    def test_a_second_install_changes_nothing_but_loads_the_library_anew(self):
        self.tool_says(["install"], 0)
        before = self.server.snapshot()
        self.plan()
        self.assertIn("registered already, and the same", self.tool_says(["install"], 0))
        self.assertEqual(self.calls(CHANGES),
                         [f"cimprovider -d -m {MODULE}", f"cimprovider -e -m {MODULE}"])
        self.assertStateIs(before)

    def test_a_dry_run_changes_nothing_and_names_the_commands_that_would(self):
        for arguments in (["install"], ["install"], ["remove"]):
            before = self.server.snapshot()
            self.plan()
            said = self.tool_says([*arguments, "--dry-run"], 0)
            self.assertIn("nothing was changed", said)
            self.assertEqual(self.calls(CHANGES), [])
            self.assertStateIs(before)
            scratch = re.compile(r"\S*serverprofile-register\.\w+/")
            announced = [scratch.sub("", c) for c in
                         re.findall(r"^ +\$ \S*/(cim.*)$", said, re.M)]
            self.plan()
            self.tool_says(arguments, 0)
            self.assertEqual(announced, [scratch.sub("", c) for c in self.calls(CHANGES)])

    def test_status_changes_nothing_and_names_what_is_missing(self):
        said = self.tool_says(["status"], 1)
        self.assertStateIs(self.pristine)
        self.assertIn(f"WRONG  {MODULE} is not registered", said)
        for namespace in ("root/cimv2", "root/PG_InterOp"):
            self.assertIn(f"WRONG  {namespace} has no class ORVEX_ObjectManagerHost, "
                          "ORVEX_SoftwareIdentity and ORVEX_ElementSoftwareIdentity", said)

    def test_whatever_fails_an_install_leaves_the_server_as_it_was(self):
        self.each_failure_of(["install"])

    def test_whatever_fails_a_change_of_the_registration_leaves_the_former_one(self):
        self.each_failure_of(["install", "--namespace", "root/cimv2"], self.other_version)

    def test_whatever_fails_a_removal_leaves_the_module_as_it_was(self):
        # Who does not know whether there are instances keeps the class, which is no failure.
        self.each_failure_of(["remove"], lambda: self.tool_says(["install"], 0),
                             "^cimconfig|^cimcli ni")

    def test_classes_that_may_have_instances_are_kept_and_named(self):
        self.tool_says(["install"], 0)
        self.plan({"match": "^cimcli ni ORVEX_ObjectManagerHost -n root/cimv2", "mode": "reject"})
        said = self.tool_says(["remove"], 0)
        self.assertIn("kept root/cimv2:ORVEX_ObjectManagerHost: whether others have instances of "
                      "it could not be found out", said)

    def other_version(self):
        """An older version of the module, that served only the interop namespace, disabled."""
        kept = {file.name: file.read_text() for file in self.mof.iterdir()}
        self.edit("orvex_serverprofile.mof", r'"1\.0\.0"', '"0.9.0"')
        self.edit("serverprofile_registration.mof", r'Version = "1\.0\.0"', 'Version = "0.9.0"')
        self.edit("serverprofile_registration.mof",
                  r'instance of PG_ProviderCapabilities \{[^{]*"CIM_HostedService".*?\n\};', "")
        self.tool_says(["install"], 0)
        self.by_hand("cimprovider", "-d", "-m", MODULE)
        for name, text in kept.items():
            (self.mof / name).write_text(text)

    def test_an_upgrade_brings_classes_registration_and_state_up_to_date(self):
        self.tool_says(["install"], 0)
        wanted = self.server.snapshot()
        self.tool_says(["remove"], 0)
        self.other_version()
        said = self.tool_says(["install"], 0)
        self.assertIn("PG_ProviderModule \"" + MODULE + "\" has Version 0.9.0 instead of 1.0.0",
                      said)
        self.assertIn("the capability CIM_HostedService is missing", said)
        self.assertStateIs(wanted)

    # --- namespaces

    def test_an_upgrade_keeps_the_namespaces_that_were_chosen(self):
        self.server.fill("root/switch")
        self.pristine = self.server.snapshot()
        said = self.tool_says(["install", "--namespace", "root/switch"], 0)
        self.assertIn("the module reads their definitions there, though it does not serve it",
                      said)
        for arguments in (["install"], ["status"]):
            said = self.tool_says(arguments, 0)
            self.assertIn("root/switch:CIM_RegisteredProfile:", said)
            self.assertNotIn("root/cimv2:CIM_RegisteredProfile:", said)

    def test_a_namespace_that_is_not_there_is_named_and_not_made(self):
        said = self.tool_says(["install", "--namespace", "root/nowhere"], 1)
        self.assertIn("WRONG  there is no namespace root/nowhere", said)
        said = self.tool_says(["install", "--interop", "root/nowhere"], 1)
        self.assertIn("WRONG  there is no namespace root/nowhere", said)
        said = self.tool_says(["install", "--interop", "root/cimv2"], 1)
        self.assertIn("WRONG  root/cimv2 has no class PG_ProviderModule, PG_Provider and "
                      "PG_ProviderCapabilities", said)
        self.assertStateIs(self.pristine)

    def test_classes_that_the_module_builds_on_are_named_where_they_are_missing(self):
        self.edit("serverprofile_registration.mof", '"CIM_HostedService"', '"CIM_Nowhere"')
        said = self.tool_says(["install"], 1)
        for namespace in ("root/cimv2", "root/PG_InterOp"):
            self.assertIn(f"WRONG  {namespace} has no class CIM_Nowhere", said)
        self.assertStateIs(self.pristine)

    # --- what others have done

    def registration(self, first, last):
        """Some of the registration's instances, as MOF."""
        text = (SCHEMA / "serverprofile_registration.mof").read_text()
        return "\n".join(re.findall(r"instance of .*?\n\};", text, re.S)[first:last])

    def test_half_a_registration_is_named_and_made_whole(self):
        self.tool_says(["install"], 0)
        whole = self.server.snapshot()
        for count, missing in ((1, 'PG_Provider "ServerProfileProvider"'),
                               (2, "the capability CIM_RegisteredProfile"),
                               (7, "the capability CIM_SubProfileRequiresProfile")):
            with self.subTest(count=count):
                self.by_hand("cimprovider", "-r", "-m", MODULE)
                self.load("root/PG_InterOp", self.registration(0, count))
                said = self.tool_says(["status", "--namespace", "root/cimv2"], 1)
                self.assertIn(f"WRONG  the registration: {missing} is missing", said)
                self.assertIn(f"{missing} is missing",
                              self.tool_says(["install", "--namespace", "root/cimv2"], 0))
                self.assertStateIs(whole)

    def test_a_disabled_module_is_named_and_enabled(self):
        self.tool_says(["install"], 0)
        enabled = self.server.snapshot()
        self.by_hand("cimprovider", "-d", "-m", MODULE)
        self.assertIn(f"WRONG  {MODULE} is Stopped: it answers nothing",
                      self.tool_says(["status"], 1))
        self.tool_says(["install"], 0)
        self.assertStateIs(enabled)

    def test_a_class_that_was_deleted_is_named_and_brought_back(self):
        self.tool_says(["install"], 0)
        whole = self.server.snapshot()
        self.by_hand("cimcli", "dc", "ORVEX_ObjectManagerHost", "-n", "root/PG_InterOp")
        said = self.tool_says(["status"], 1)
        self.assertIn("WRONG  root/PG_InterOp has no class ORVEX_ObjectManagerHost", said)
        self.tool_says(["install"], 0)
        self.assertStateIs(whole)

    def test_another_module_that_serves_the_same_classes_is_named(self):
        self.load("root/PG_InterOp", self.registration(0, 3).replace(MODULE, "OtherModule"))
        before = self.server.snapshot()
        self.assertIn("WRONG  the module OtherModule serves CIM_RegisteredProfile in root/cimv2 "
                      "and root/PG_InterOp already", self.tool_says(["install"], 1))
        self.assertStateIs(before)
        self.by_hand("cimprovider", "-r", "-m", "OtherModule")

    def test_classes_that_others_hold_on_to_are_kept_and_named(self):
        self.tool_says(["install"], 0)
        self.load("root/cimv2", "class XYZ_Firmware : ORVEX_SoftwareIdentity {\n};\n")
        self.load("root/PG_InterOp", "[Association] class XYZ_Hosts {\n"
                                     "  [Key] ORVEX_ObjectManagerHost REF One;\n"
                                     "  [Key] CIM_ManagedElement REF Other;\n};\n")
        said = self.tool_says(["remove"], 0)
        self.assertIn("kept root/cimv2:ORVEX_SoftwareIdentity: the class XYZ_Firmware is derived "
                      "from it", said)
        self.assertIn("kept root/PG_InterOp:ORVEX_ObjectManagerHost: the association XYZ_Hosts "
                      "points to it", said)
        self.assertIn("but for the classes that are kept", said)
        self.assertIn("not registered", self.tool_says(["status"], 1))
        self.by_hand("cimcli", "dc", "XYZ_Firmware", "-n", "root/cimv2")
        self.by_hand("cimcli", "dc", "XYZ_Hosts", "-n", "root/PG_InterOp")

    # --- tools that hang, servers that go away

    def test_a_busy_module_stays_as_it_is(self):
        self.tool_says(["install"], 0)
        before = self.server.snapshot()
        self.plan({"match": "cimprovider -d", "mode": "reject"})
        for arguments in (["install"], ["remove"]):
            said = self.tool_says(arguments, 3)
            self.assertIn("Provider is busy", said)
            self.assertIn("all is as it was before", said)
            self.assertStateIs(before)

    def test_a_tool_that_hangs_is_given_up(self):
        self.plan({"match": "^cimmof -.*registration", "mode": "hang"})
        said = self.tool_says(["install", "--timeout", "3"], 3)
        self.assertIn("did not end in time and was killed", said)
        self.assertStateIs(self.pristine)

    def interrupted(self, fault, number, release):
        """Sends a signal while a tool waits; everything has to be put back."""
        self.plan(fault)
        process = self.server.popen(self.command(["install"]))
        self.assertTrue(self.tools.waiting.wait(PATIENCE))
        self.server.signal(process, number)
        if release:
            time.sleep(0.2)  # so that the signal comes first
            self.tools.release()
        out, err = process.communicate(timeout=PATIENCE)
        self.assertEqual(process.returncode, 3, out + err)
        self.assertIn("all is as it was before", err)
        self.assertStateIs(self.pristine)
        return err

    def test_a_signal_rolls_back_once_the_command_has_ended(self):
        self.plan()
        self.tool_says(["install"], 0)
        calls = self.calls()
        self.tool_says(["remove"], 0)
        for index, call in enumerate(calls):
            if re.search(CHANGES, call):
                with self.subTest(call=call):
                    said = self.interrupted({"index": index, "mode": "pause"}, signal.SIGINT, True)
                    self.assertIn("interrupted (Interrupt)", said)

    def test_a_signal_does_not_wait_for_a_command_that_hangs(self):
        self.interrupted({"match": "^cimmof -.*registration", "mode": "hang"}, signal.SIGTERM,
                         False)

    def test_a_server_that_does_not_run_is_said(self):
        self.plan({"mode": "down"})
        for command in ("install", "remove", "status"):
            said = self.tool_says([command], 1)
            self.assertIn("WRONG  the server does not answer", said)
            self.assertIn("start cimserver", said)
        self.assertStateIs(self.pristine)

    def test_what_is_left_when_the_server_goes_away_is_said_with_the_way_to_remove_it(self):
        self.plan()
        self.tool_says(["install"], 0)
        registering = next(i for i, c in enumerate(self.calls())
                           if re.search(r"^cimmof .*registration", c))
        self.tool_says(["remove"], 0)
        self.plan({"from": registering + 1, "mode": "down"})
        said = self.tool_says(["install"], 4)
        self.assertIn("left undone: unregistering " + MODULE, said)
        self.assertRegex(said, rf"by hand: \S*cimprovider -r -m {MODULE}")
        self.assertRegex(said,
                         r"by hand: \S*cimcli dc ORVEX_ElementSoftwareIdentity -n root/cimv2, ")
        self.left_behind = list(self.place.glob("serverprofile-register.*"))
        self.assertEqual(len(self.left_behind), 1)

    def test_missing_tools_are_named(self):
        cimmof = self.place / "tools" / "cimmof"
        cimmof.unlink()
        said = self.tool_says(["install"], 1)
        self.assertIn("WRONG  the server's tools: no cimmof in ", said)
        self.assertIn("--tools", said)
        cimmof.symlink_to(self.client)
