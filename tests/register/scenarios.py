"""What serverprofile-register has to do, whatever server it is: a stand-in or a real one.

A test case mixes Scenarios into unittest.TestCase, calls furnish() in setUpClass, and has

server                 the server, see below
locate()               sets `settings` and `record`, the files that the tool writes, and returns the
                       options that say so
stand(installed)       brings the server into the state without the modules, or that after an install
back_to(before)        takes back a change from that state

The server has

call(name, arguments)  how one of its tools works: returns exit code, output and errors
run(command)           runs a command where the server is and returns a CompletedProcess
popen(command)         starts it there
snapshot()             what the server has, in a form that can be compared
fill(namespace)        makes a namespace with the CIM classes that the modules' classes build on
clear(namespace)       takes it away again
"""

import json
import pathlib
import re
import shutil
import signal
import tempfile

from tools import Tools

HERE = pathlib.Path(__file__).resolve().parent
SCHEMA = HERE.parent.parent / "schema"
MODULE = "ServerProfileProviderModule"
OBJECTS = "ServerObjectsProviderModule"
CHANGES = r"^(cimmof|cimprovider -[edr]|cimcli d[ciq])"
PATIENCE = 120.0


def changes(before, after, path=""):
    """What differs between two states, a line each."""
    if not isinstance(before, dict) or not isinstance(after, dict):
        return [] if before == after else [f"{path}: {before!r} became {after!r}"]
    result = []
    for key in {**before, **after}:
        result += changes(before.get(key), after.get(key), f"{path}/{key}")
    return result


def installed(test):
    """The test begins where the modules are installed."""
    test.installed = True
    return test


class Scenarios:
    tool = ""      # the program
    client = ""    # what stands for the server's tools
    schema = SCHEMA
    server = None
    direct = None  # the server's tools, for runs in which no test meddles; None: there are none
    thorough = True  # whether each command fails in each way, and more of what repeats itself
    asking = True    # whether commands fail that only ask
    pristine = None  # the state without the modules
    whole = None     # the state after an install; None: not yet known
    there = False    # whether the test before has left the modules installed

    @classmethod
    def furnish(cls, server, parent=None):
        """Makes what all tests use. Scratch directories go into `parent`; None: where they usually are."""
        directory = tempfile.TemporaryDirectory(dir=parent)
        cls.addClassCleanup(directory.cleanup)
        cls.server = server
        cls.parent = pathlib.Path(directory.name)
        cls.options = cls.locate()
        (cls.parent / "tools").mkdir()
        cls.tools = Tools(cls.parent / "tools", cls.client, server.call)
        cls.addClassCleanup(cls.tools.close)
        cls.pristine = cls.state()

    def setUp(self):
        directory = tempfile.TemporaryDirectory(dir=self.parent)
        self.addCleanup(directory.cleanup)
        self.place = pathlib.Path(directory.name)
        self.mof = self.place / "mof"
        shutil.copytree(self.schema, self.mof)
        self.leave_alone()
        self.left_behind = []  # files that the tool is meant to leave
        self.stand(hasattr(getattr(self, self._testMethodName), "installed"))
        self.addCleanup(self.put_back)

    def put_back(self):
        """Whatever was done, a removal leaves nothing."""
        self.leave_alone()
        state = self.state()
        type(self).there = state == self.whole  # which one test removes for all
        if state not in (self.pristine, self.whole):
            self.tool_says(["remove"], 0, mof=SCHEMA)
            self.assertStateIs(self.pristine)
        self.assertEqual(self.tools.errors, [])
        self.assertEqual(list(self.place.glob("serverprofile-register.*")), self.left_behind)

    # --- what the tests are written with

    def plan(self, *faults):
        """From now on the tool's commands are counted, and have these faults."""
        self.meddling = True
        self.tools.plan(*faults)

    def leave_alone(self):
        self.plan()
        self.meddling = False

    @classmethod
    def state(cls):
        """All that the tool may change, in a form that can be compared."""
        files = {}
        for directory in (cls.settings.parent, cls.record.parent):
            for file in [directory, *directory.glob("**/*")] if directory.exists() else []:
                text = file.read_text() if file.is_file() else None
                files[str(file)] = (oct(file.stat().st_mode), text)
        return {**cls.server.snapshot(), "files": files}

    def calls(self, pattern=""):
        return [call for call in self.tools.calls if re.search(pattern, call)]

    def command(self, arguments, mof=None):
        # Its files go where both it and the test see them.
        tools = self.tools.directory if self.meddling or not self.direct else self.direct
        return ["env", f"REGISTER_TEST_SOCKET={self.tools.socket}", f"TMPDIR={self.place}",
                self.tool, *arguments, "--mof", mof or self.mof, "--tools", tools, *self.options]

    def tool_says(self, arguments, code, mof=None):
        """Runs the tool, which has to end with `code`, unless that is None; returns what it said."""
        done = self.server.run(self.command(arguments, mof))
        if code is not None:
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
        state = self.state()
        if state != expected:
            self.fail("\n".join([message, "the server has changed:", *changes(expected, state)]))

    def kinds_of(self, calls):
        """The numbers of the calls of each kind. If thorough, those that do the same to a namespace's
        many classes or qualifiers are a kind; else all calls of a command are."""
        same = r"^(cimcli \w+) \w+ " if self.thorough else r"^(cimmof|cimcli \w+|cimprovider -\w) .*"
        kinds = {}
        for index, call in enumerate(calls):
            kinds.setdefault(re.sub(same, r"\1 ", call), []).append(index)
        return kinds.values()

    def calls_of(self, arguments):
        """The tool's commands; what they have done is taken back."""
        before = self.state()
        self.plan()
        self.tool_says(arguments, 0)
        calls = self.calls()
        self.leave_alone()
        self.back_to(before)
        return calls

    def each_failure_of(self, arguments, harmless="^cimconfig|^cimserver"):
        """Lets commands of each kind fail in each way, in one place each, or if thorough, the first, the
        middle and the last in all ways; nothing may be left of any of them."""
        before = self.state()
        calls = self.calls_of(arguments)
        self.assertGreater(len([c for c in calls if re.search(CHANGES, c)]), 2, calls)
        for kind in self.kinds_of(calls):
            changing = re.search(CHANGES, calls[kind[0]])
            if re.search(harmless, calls[kind[0]]) or not changing and not self.asking:
                continue
            modes = ["reject", *(["after", "crash"] if changing else [])]
            if calls[kind[0]].startswith("cimmof"):
                modes.append("half")
            if self.thorough:
                tries = [(index, mode) for index in sorted({kind[0], kind[len(kind) // 2], kind[-1]})
                         for mode in modes]
            else:
                tries = [(kind[len(kind) * i // len(modes)], mode) for i, mode in enumerate(modes)]
            for index, mode in tries:
                with self.subTest(call=calls[index], index=index, mode=mode):
                    self.plan({"index": index, "mode": mode})
                    done = self.server.run(self.command(arguments))
                    said = f"{calls[index]}\n{done.stdout}{done.stderr}"
                    self.assertIn(done.returncode, (1, 3), said)
                    self.assertTrue(done.stderr, said)
                    self.assertStateIs(before, said)

    # --- installing and removing

    def test_what_is_installed_is_well_and_removing_it_leaves_nothing(self):
        said = self.tool_says(["install"], 0)
        for module in (MODULE, OBJECTS):
            self.assertIn(f"{module} serves interop and root/cimv2", said)
        said = self.tool_says(["status"], 0)
        self.assertIn("all is well", said)
        self.assertNotIn("WRONG", said)
        for module in (MODULE, OBJECTS):
            self.assertIn(f"ok     {module} is registered, and enabled", said)
        for namespace in ("interop", "root/cimv2"):
            for name in ("CIM_RegisteredProfile", "CIM_ObjectManager"):
                self.assertIn(f"ok     {namespace}:{name}: ", said)
        self.assertNotEqual(self.state(), self.pristine)
        self.tool_says(["remove"], 0)
        self.assertStateIs(self.pristine)
        self.assertIn("nothing to do", self.tool_says(["remove"], 0))
        self.assertStateIs(self.pristine)

    @installed
    def test_a_second_install_changes_nothing_but_loads_the_libraries_anew(self):
        before = self.state()
        self.plan()
        self.assertIn("registered already, and the same", self.tool_says(["install"], 0))
        self.assertEqual(self.calls(CHANGES), [f"cimprovider -{action} -m {module}"
                                               for module in (MODULE, OBJECTS) for action in "de"])
        self.assertStateIs(before)

    def test_a_dry_run_changes_nothing_and_names_the_commands_that_would(self):
        for arguments in (["install"], ["install"], ["remove"]):
            before = self.state()
            self.plan()
            said = self.tool_says([*arguments, "--dry-run"], 0)
            self.assertIn("nothing was changed", said)
            self.assertEqual(self.calls(CHANGES), [])
            self.assertStateIs(before)
            scratch = re.compile(r"\S*serverprofile-register\.\w+/?")
            announced = [scratch.sub("", c).replace("'", "") for c in
                         re.findall(r"^ +\$ \S*/(cim.*)$", said, re.M)]
            self.plan()
            self.tool_says(arguments, 0)
            self.assertEqual(announced, [scratch.sub("", c) for c in self.calls(CHANGES)])

    def test_status_changes_nothing_and_names_what_is_missing(self):
        said = self.tool_says(["status"], 1)
        self.assertStateIs(self.pristine)
        for module in (MODULE, OBJECTS):
            self.assertIn(f"WRONG  {module} is not registered", said)
        self.assertIn("WRONG  there is no namespace interop", said)
        self.assertIn("WRONG  root/cimv2 has no class PG_ObjectManager, PG_Namespace, "
                      "PG_CIMXMLCommunicationMechanism, ORVEX_ObjectManagerHost, "
                      "ORVEX_SoftwareIdentity and ORVEX_ElementSoftwareIdentity", said)

    def test_whatever_fails_an_install_leaves_the_server_as_it_was(self):
        self.each_failure_of(["install"])

    def test_whatever_fails_a_change_of_the_registration_leaves_the_former_one(self):
        self.other_version()
        self.each_failure_of(["install", "--namespace", "root/cimv2"])

    @installed
    def test_whatever_fails_a_removal_leaves_the_modules_as_they_were(self):
        # Who does not know whether there are instances keeps the class, which is no failure.
        self.each_failure_of(["remove"], "^cimconfig|^cimserver|^cimcli ni")

    @installed
    def test_classes_that_may_have_instances_are_kept_and_named(self):
        self.plan({"match": "^cimcli ni ORVEX_ObjectManagerHost -n root/cimv2", "mode": "reject"})
        said = self.tool_says(["remove"], 0)
        self.assertIn("kept root/cimv2:ORVEX_ObjectManagerHost: whether others have instances of "
                      "it could not be found out", said)
        # What is left is known, and goes when it can.
        self.assertEqual(json.loads(self.record.read_text())["classes"],
                         {"root/cimv2": ["ORVEX_ObjectManagerHost"]})
        self.plan()
        self.tool_says(["remove"], 0)
        self.assertStateIs(self.pristine)

    def other_version(self):
        """An older version of the modules, that served only root/cimv2, disabled."""
        kept = {file.name: file.read_text() for file in self.mof.iterdir()}
        self.edit("orvex_serverprofile.mof", r'"1\.0\.0"', '"0.9.0"')
        self.edit("serverprofile_registration.mof", r'Version = "1\.0\.0"', 'Version = "0.9.0"')
        self.edit("serverprofile_registration.mof",
                  r'instance of PG_ProviderCapabilities \{[^{]*"CIM_HostedService".*?\n\};', "")
        self.tool_says(["install", "--namespace", "root/cimv2"], 0)
        for module in (MODULE, OBJECTS):
            self.by_hand("cimprovider", "-d", "-m", module)
        for name, text in kept.items():
            (self.mof / name).write_text(text)

    def test_an_upgrade_brings_classes_registration_and_state_up_to_date(self):
        self.tool_says(["install", "--namespace", "root/cimv2"], 0)
        wanted = self.state()
        self.tool_says(["remove"], 0)
        self.other_version()
        said = self.tool_says(["install"], 0)
        self.assertIn("PG_ProviderModule \"" + MODULE + "\" has Version 0.9.0 instead of 1.0.0",
                      said)
        self.assertIn("the capability CIM_HostedService is missing", said)
        self.assertStateIs(wanted)

    # --- before there were records, a second module and the namespace interop

    def earlier_version(self):
        """The module as it used to be registered, for root/cimv2 and the interop namespace."""
        if "CIM_RegisteredProfile" not in self.by_hand("cimcli", "nc", "-di", "-n",
                                                       "root/PG_InterOp").split():
            self.skipTest("this server's interop namespace has not the classes of the profile")
        for namespace in ("root/cimv2", "root/PG_InterOp"):
            self.by_hand("cimmof", "-uc", "-aEV", "-n", namespace,
                         SCHEMA / "orvex_serverprofile.mof")
        self.load("root/PG_InterOp", re.sub(
            r"Namespaces = \{.*?\}", 'Namespaces = {"root/cimv2", "root/PG_InterOp"}',
            (SCHEMA / "serverprofile_registration.mof").read_text()))

    def test_an_upgrade_of_an_earlier_version_adds_to_it_and_removing_takes_back_all(self):
        self.earlier_version()
        self.tool_says(["install"], 0)
        # In a namespace that the server's own provider is asked in a walk is not whole.
        said = self.tool_says(["status"], None)
        for namespace in ("interop", "root/cimv2", "root/PG_InterOp"):
            self.assertIn(f"ok     {namespace}:CIM_RegisteredProfile: ", said)
        # A server that publishes its own object manager has no need of a second one.
        self.assertIn("CIM_ObjectManager is registered for root/cimv2 and interop", said)
        self.tool_says(["remove"], 0)
        self.assertStateIs(self.pristine)

    def test_an_earlier_version_is_removed_as_it_used_to_be(self):
        self.earlier_version()
        self.tool_says(["remove"], 0)
        self.assertStateIs(self.pristine)

    # --- namespaces

    def test_an_upgrade_keeps_the_namespaces_that_were_chosen(self):
        self.server.fill("root/switch")
        self.pristine = self.state()
        said = self.tool_says(["install", "--namespace", "root/switch"], 0)
        self.assertIn("the module reads their definitions there, though it does not serve it",
                      said)
        for arguments in (["install"], ["status"]):
            said = self.tool_says(arguments, 0)
            self.assertIn("root/switch:CIM_RegisteredProfile:", said)
            self.assertNotIn("root/cimv2:CIM_RegisteredProfile:", said)
            self.assertNotIn("interop:CIM_RegisteredProfile:", said)

    def test_a_namespace_that_is_not_there_is_named_and_not_made(self):
        said = self.tool_says(["install", "--namespace", "root/nowhere"], 1)
        self.assertIn("WRONG  there is no namespace root/nowhere", said)
        said = self.tool_says(["install", "--interop", "root/nowhere"], 1)
        self.assertIn("WRONG  there is no namespace root/nowhere", said)
        said = self.tool_says(["install", "--interop", "root/cimv2"], 1)
        self.assertIn("WRONG  root/cimv2 has no class PG_ProviderModule, PG_Provider and "
                      "PG_ProviderCapabilities", said)
        self.assertStateIs(self.pristine)

    def test_a_namespace_interop_of_others_is_served_and_left_to_them(self):
        self.server.fill("interop")
        self.pristine = self.state()
        self.tool_says(["install"], 0)
        self.assertEqual(json.loads(self.record.read_text())["namespaces"], [])
        self.tool_says(["remove"], 0)
        self.assertStateIs(self.pristine)
        self.server.clear("interop")
        self.pristine = self.state()

    @installed
    def test_a_namespace_that_was_made_stays_while_others_use_it(self):
        self.load("interop", "class XYZ_Fabric : CIM_AdminDomain {\n};\n")
        said = self.tool_says(["remove"], 0)
        self.assertIn("kept interop:CIM_AdminDomain: the class XYZ_Fabric is derived from it", said)
        self.assertIn("kept the namespace interop: classes of it are kept", said)
        self.assertNotIn("kept interop:CIM_System:", said)  # which follows
        left = json.loads(self.record.read_text())
        self.assertEqual(left["namespaces"], ["interop"])
        self.assertEqual(left["classes"]["interop"][-1], "CIM_AdminDomain")
        self.assertIn("CIM_System", left["classes"]["interop"])
        self.assertNotIn("CIM_ComputerSystem", left["classes"]["interop"])
        self.by_hand("cimcli", "dc", "XYZ_Fabric", "-n", "interop")
        self.tool_says(["remove"], 0)
        self.assertStateIs(self.pristine)

    @installed
    def test_classes_that_the_server_puts_into_a_namespace_that_was_made_go_with_it(self):
        self.load("interop", "class PG_RegisteredProfile : CIM_RegisteredProfile {\n};\n"
                             "[Association] class PG_ElementConformsToProfile : "
                             "CIM_ElementConformsToProfile {\n"
                             "  [Override(\"ConformantStandard\")] PG_RegisteredProfile REF "
                             "ConformantStandard;\n};\n")
        if "PG_RegisteredProfile" in self.by_hand("cimcli", "nc", "-di", "-n",
                                                  "root/PG_InterOp").split():
            self.tool_says(["remove"], 0)
            self.assertStateIs(self.pristine)
        else:  # then the server has not done it
            self.assertIn("kept interop:CIM_RegisteredProfile: the class PG_RegisteredProfile is "
                          "derived from it", self.tool_says(["remove"], 0))
            for name in ("PG_ElementConformsToProfile", "PG_RegisteredProfile"):
                self.by_hand("cimcli", "dc", name, "-n", "interop")

    @installed
    def test_a_namespace_that_was_made_and_holds_classes_of_others_stays(self):
        self.load("interop", "class XYZ_Alone {\n  [Key] string Name;\n};\n")
        said = self.tool_says(["remove"], 0)
        self.assertIn("kept the namespace interop: others have classes in it", said)
        self.by_hand("cimcli", "dc", "XYZ_Alone", "-n", "interop")

    @installed
    def test_a_namespace_that_was_made_and_declares_qualifiers_of_others_stays(self):
        self.load("interop", "Qualifier XYZ_Odd : boolean = false, Scope(class);\n")
        said = self.tool_says(["remove"], 0)
        self.assertIn("kept the namespace interop: others declared the qualifier XYZ_Odd in it",
                      said)
        self.by_hand("cimcli", "dq", "XYZ_Odd", "-n", "interop")

    def test_classes_that_the_modules_build_on_are_named_where_they_are_missing(self):
        self.edit("serverprofile_registration.mof", '"CIM_HostedService"', '"CIM_Nowhere"')
        said = self.tool_says(["install"], 1)
        for namespace in ("interop", "root/cimv2"):
            self.assertIn(f"WRONG  {namespace} has no class CIM_Nowhere", said)
        self.assertStateIs(self.pristine)

    # --- the settings of the server's own objects, and the record

    @installed
    def test_the_settings_say_what_server_it_is(self):
        text = self.settings.read_text()
        self.assertEqual([line for line in text.split("\n") if not line.startswith("#")],
                         ["ServerNamespace = root/PG_InterOp",
                          "SystemCreationClassName = ORVEX_ObjectManagerHost",
                          "ElementName = OpenPegasus",
                          "Description = OpenPegasus, version 2.14.4",
                          "FunctionalProfilesSupported = 2, 3, 4, 5, 6, 8, 9",
                          "Namespaces = interop", ""])
        self.assertEqual(self.settings.stat().st_mode & 0o777, 0o644)
        self.assertEqual(self.record.stat().st_mode & 0o777, 0o600)

    @installed
    def test_settings_that_were_changed_by_hand_stay(self):
        self.settings.write_text("ElementName = Ours\n")
        self.assertIn(f"{self.settings.name} was changed by hand, and stays as it is",
                      self.tool_says(["install"], 0))
        self.assertEqual(self.settings.read_text(), "ElementName = Ours\n")
        self.assertIn(f"{self.settings.name}: it was changed by hand",
                      self.tool_says(["remove"], 0))
        self.settings.unlink()
        self.settings.parent.rmdir()

    def test_settings_that_were_there_before_stay(self):
        self.settings.parent.mkdir()
        self.settings.write_text("ElementName = Ours\n")
        self.pristine = self.state()
        self.tool_says(["install"], 0)
        self.tool_says(["remove"], 0)
        self.assertStateIs(self.pristine)
        self.settings.unlink()
        self.settings.parent.rmdir()
        self.pristine = self.state()

    @installed
    def test_settings_of_an_earlier_version_are_brought_up_to_date(self):
        whole = self.state()
        outdated = self.settings.read_text().replace("2.14.4", "2.14.1")
        self.settings.write_text(outdated)
        record = json.loads(self.record.read_text())
        record["files"] = {name: outdated for name in record["files"]}
        self.record.write_text(json.dumps(record))
        self.tool_says(["install"], 0)
        self.assertStateIs(whole)

    def test_a_file_that_cannot_be_written_takes_all_back(self):
        for file in (self.settings, self.record):
            with self.subTest(file=file):
                file.parent.symlink_to("nowhere")
                try:
                    said = self.tool_says(["install"], 3)
                finally:
                    file.parent.unlink()
                self.assertIn("all is as it was before", said)
                self.assertIn(f"{file.parent.name}: File exists", said)
                self.assertStateIs(self.pristine)

    @installed
    def test_a_record_that_is_none_is_said_and_stops_all_but_status(self):
        kept = self.record.read_text()
        for text, problem in (("no record", "is no record of this program"),
                              ('{"format": 2}', "it is of another version"),
                              (kept.replace('"interop"', '"-x"', 1), "'-x' is no name"),
                              (kept + " " * 1024 * 1024, "has more than 1048576 bytes")):
            with self.subTest(problem=problem):
                self.record.write_text(text)
                before = self.state()
                for command in ("install", "remove"):
                    self.assertRegex(self.tool_says([command], 1), f"WRONG  .*{problem}")
                self.assertRegex(self.tool_says(["status"], 0), f"note   .*{problem}")
                self.assertStateIs(before)
        self.record.write_text(kept)
        self.record.chmod(0o666)
        self.assertIn("others may write it", self.tool_says(["remove"], 1))
        self.record.chmod(0o600)

    # --- what others have done

    def registration(self, first, last, name="serverprofile"):
        """Some of a registration's instances, as MOF, for root/cimv2 and interop."""
        text = (SCHEMA / f"{name}_registration.mof").read_text()
        return re.sub(r"Namespaces = \{.*?\}", 'Namespaces = {"interop", "root/cimv2"}', "\n".join(
            re.findall(r"instance of .*?\n\};", text, re.S)[first:last]))

    @installed
    def test_half_a_registration_is_named_and_made_whole(self):
        whole = self.state()
        for count, missing in ((1, 'PG_Provider "ServerProfileProvider"'),
                               (2, "the capability CIM_RegisteredProfile"),
                               (7, "the capability CIM_SubProfileRequiresProfile")):
            with self.subTest(count=count):
                self.by_hand("cimprovider", "-r", "-m", MODULE)
                self.load("root/PG_InterOp", self.registration(0, count))
                said = self.tool_says(["status"], 1)
                self.assertIn(f"WRONG  the registration: {missing} is missing", said)
                self.assertIn(f"{missing} is missing", self.tool_says(["install"], 0))
                self.assertStateIs(whole)

    @installed
    def test_a_disabled_module_is_named_and_enabled(self):
        enabled = self.state()
        for module in (MODULE, OBJECTS):
            self.by_hand("cimprovider", "-d", "-m", module)
            self.assertIn(f"WRONG  {module} is Stopped: it answers nothing",
                          self.tool_says(["status"], 1))
            self.tool_says(["install"], 0)
            self.assertStateIs(enabled)

    @installed
    def test_a_class_that_was_deleted_is_named_and_brought_back(self):
        whole = self.state()
        for namespace, name in (("interop", "ORVEX_ObjectManagerHost"),
                                ("interop", "CIM_NamespaceInManager"),
                                ("root/cimv2", "PG_ObjectManager")):
            with self.subTest(name=name):
                self.by_hand("cimcli", "dc", name, "-n", namespace)
                said = self.tool_says(["status"], 1)
                self.assertIn(f"WRONG  {namespace} has no class {name}", said)
                self.tool_says(["install"], 0)
                self.assertStateIs(whole)

    def test_another_module_that_serves_the_same_classes_is_named(self):
        for name, module, served in (("serverprofile", MODULE, "CIM_RegisteredProfile"),
                                     ("serverobjects", OBJECTS, "CIM_ObjectManager")):
            with self.subTest(served=served):
                self.load("root/PG_InterOp",
                          self.registration(0, 3, name).replace(module, "OtherModule"))
                before = self.state()
                self.assertIn(f"WRONG  the module OtherModule serves {served} in interop and "
                              "root/cimv2 already", self.tool_says(["install"], 1))
                self.assertStateIs(before)
                self.by_hand("cimprovider", "-r", "-m", "OtherModule")

    def test_classes_with_other_keys_are_named(self):
        text = (SCHEMA / "pg_server.mof").read_text()
        self.load("root/cimv2", re.sub(r"\[Deprecated.*?\n     Description\(\"The protocol in",
                                       '[Key, Description("The protocol in', text, flags=re.S))
        before = self.state()
        self.assertIn("WRONG  root/cimv2:PG_CIMXMLCommunicationMechanism has CreationClassName, "
                      "Name, namespaceType, SystemCreationClassName and SystemName where the modules "
                      "expect CreationClassName, Name, SystemCreationClassName and SystemName",
                      self.tool_says(["install"], 1))
        self.assertStateIs(before)
        for name in ("PG_ObjectManager", "PG_Namespace", "PG_CIMXMLCommunicationMechanism"):
            self.by_hand("cimcli", "dc", name, "-n", "root/cimv2")

    @installed
    def test_classes_that_others_hold_on_to_are_kept_and_named(self):
        self.load("root/cimv2", "class XYZ_Firmware : ORVEX_SoftwareIdentity {\n};\n")
        self.load("interop", "[Association] class XYZ_Hosts {\n"
                             "  [Key] ORVEX_ObjectManagerHost REF One;\n"
                             "  [Key] CIM_ManagedElement REF Other;\n};\n")
        self.load("root/PG_InterOp", self.registration(0, 3, "serverobjects").replace(
            OBJECTS, "OtherModule").replace('"CIM_ObjectManager"', '"PG_ObjectManager"'))
        said = self.tool_says(["remove"], 0)
        self.assertIn("kept root/cimv2:ORVEX_SoftwareIdentity: the class XYZ_Firmware is derived "
                      "from it", said)
        self.assertIn("kept interop:ORVEX_ObjectManagerHost: the association XYZ_Hosts "
                      "points to it", said)
        self.assertIn("kept root/cimv2:PG_ObjectManager: the module OtherModule is registered "
                      "for it", said)
        self.assertIn("but for what is kept", said)
        self.assertIn("not registered", self.tool_says(["status"], 1))
        self.by_hand("cimcli", "dc", "XYZ_Firmware", "-n", "root/cimv2")
        self.by_hand("cimcli", "dc", "XYZ_Hosts", "-n", "interop")
        self.by_hand("cimprovider", "-r", "-m", "OtherModule")

    # --- tools that hang, servers that go away

    @installed
    def test_a_busy_module_stays_as_it_is(self):
        before = self.state()
        self.plan({"match": "cimprovider -d", "mode": "reject"})
        for arguments in (["install"], ["remove"]):
            said = self.tool_says(arguments, 3)
            self.assertIn("Provider is busy", said)
            self.assertIn("all is as it was before", said)
            self.assertStateIs(before)

    def test_a_tool_that_hangs_is_given_up(self):
        self.plan({"match": f"^cimmof -.*/{MODULE}", "mode": "wait"})
        said = self.tool_says(["install", "--timeout", "2"], 3)
        self.assertIn("did not end in time and was killed", said)
        self.assertStateIs(self.pristine)

    def interrupted(self, fault, number, release):
        """Sends a signal while a tool waits; everything has to be put back."""
        self.plan(fault)
        process = self.server.popen(self.command(["install"]))
        self.assertTrue(self.tools.waiting.wait(PATIENCE))
        process.send_signal(number)
        if release:
            self.tools.release()
        out, err = process.communicate(timeout=PATIENCE)
        self.assertEqual(process.returncode, 3, out + err)
        self.assertIn("all is as it was before", err)
        self.assertStateIs(self.pristine)
        return err

    def test_a_signal_rolls_back_once_the_command_has_ended(self):
        calls = self.calls_of(["install"])
        for kind in self.kinds_of(calls):
            index = kind[len(kind) // 2]
            if re.search(CHANGES, calls[index]):
                with self.subTest(call=calls[index]):
                    said = self.interrupted({"index": index, "mode": "wait"}, signal.SIGINT, True)
                    self.assertIn("interrupted (Interrupt)", said)

    def killed(self, pattern):
        """Kills an install, at once and for good, while it runs the first command of that kind."""
        self.plan({"match": pattern, "mode": "wait"})
        process = self.server.popen(self.command(["install"]))
        self.assertTrue(self.tools.waiting.wait(PATIENCE))
        process.kill()
        process.communicate(timeout=PATIENCE)
        self.tools.release()
        self.leave_alone()
        self.left_behind = list(self.place.glob("serverprofile-register.*"))

    @installed
    def test_after_a_run_that_was_killed_the_next_completes_it_or_takes_it_back(self):
        wanted = self.state()
        self.tool_says(["remove"], 0)
        for pattern in ("^cimmof .* -n root/cimv2",
                        f"^cimmof .*/{OBJECTS}"):
            with self.subTest(pattern=pattern):
                self.killed(pattern)
                self.tool_says(["install"], 0)
                self.assertStateIs(wanted)
                self.tool_says(["remove"], 0)
                self.killed(pattern)
                self.tool_says(["remove"], 0)
                self.assertStateIs(self.pristine)

    def test_an_upgrade_of_an_earlier_version_that_was_killed_is_completed(self):
        self.earlier_version()
        self.killed("^cimmof .*cim_schema")
        said = self.tool_says(["install"], 0)
        self.assertIn(f"{MODULE} serves root/cimv2, root/PG_InterOp and interop", said)
        self.tool_says(["remove"], 0)
        self.assertStateIs(self.pristine)

    def test_a_signal_does_not_wait_for_a_command_that_hangs(self):
        self.interrupted({"match": f"^cimmof -.*/{MODULE}", "mode": "wait"}, signal.SIGTERM,
                         False)

    def test_a_server_that_does_not_run_is_said(self):
        self.plan({"mode": "down"})
        for command in ("install", "remove", "status"):
            said = self.tool_says([command], 1)
            self.assertIn("WRONG  the server does not answer", said)
            self.assertIn("start cimserver", said)
        self.assertStateIs(self.pristine)

    def test_what_is_left_when_the_server_goes_away_is_said_with_the_way_to_remove_it(self):
        registering = next(i for i, c in enumerate(self.calls_of(["install"]))
                           if re.search(rf"^cimmof .*/{MODULE}", c))
        self.plan({"from": registering + 1, "mode": "down"})
        said = self.tool_says(["install"], 4)
        self.assertIn("left undone: unregistering " + MODULE, said)
        self.assertRegex(said, rf"by hand: \S*cimprovider -r -m {MODULE}")
        self.assertRegex(said,
                         r"by hand: \S*cimcli dc ORVEX_ElementSoftwareIdentity -n root/cimv2, ")
        # What is left can be taken back once the server is there again.
        self.assertIn(f"{self.record.name}, by which 'serverprofile-register remove'", said)
        self.left_behind = list(self.place.glob("serverprofile-register.*"))
        self.assertEqual(len(self.left_behind), 1)

    def test_missing_tools_are_named(self):
        self.plan()
        cimmof = self.tools.directory / "cimmof"
        cimmof.unlink()
        said = self.tool_says(["install"], 1)
        self.assertIn("WRONG  the server's tools: no cimmof in ", said)
        self.assertIn("--tools", said)
        cimmof.symlink_to(self.client)
