"""The packages on a machine with a CIM server: a stand-in, which serverprofile-register, as it was
packed, meets through stand-ins of the server's tools."""

import os
import pathlib
import subprocess
import sys
import tempfile

import kinds
from installation import HIGHER, KIND, PACKED, SOURCE, Installation

REGISTER_TESTS = SOURCE / "tests" / "register"
BUILT = SOURCE / "build" / "package"  # by scripts/package.sh
RECORD = pathlib.Path("/var/lib/serverprofile-provider/record")
SETTINGS = pathlib.Path("/etc/serverobjects/ServerObjectsProvider.conf")
sys.path.append(str(REGISTER_TESTS))
import stand_in_test
import tools


def build(folder):
    """The programs and libraries with which the tests of serverprofile-register stand in for the
    server's."""
    server, good = folder / "server", folder / "good"
    server.mkdir()
    good.mkdir()
    library = server / "libpegcommon.so.1"
    shared = ("-shared", "-fPIC", "-o")
    for arguments in (
            (*shared, library, "-Wl,-soname,libpegcommon.so.1", REGISTER_TESTS / "StandInCommon.cpp"),
            (*shared, good / "libServerProfileProvider.so", f"-Wl,-rpath,{server}",
             REGISTER_TESTS / "StandInModule.cpp", library),
            ("-std=c++17", "-o", folder / "client", REGISTER_TESTS / "ToolClient.cpp"),
            ("-std=c++17", f"-I{SOURCE}", f"-I{SOURCE}/embedded", "-o", folder / "mof-reader",
             REGISTER_TESTS / "MofReader.cpp", *(BUILT / library for library in (
                 "register/libserverprofile_register.a", "embedded/mof/libembedded_mof.a",
                 "embedded/text/libembedded_text.a")))):
        subprocess.run(["c++", *arguments], check=True)
    (good / "libServerObjectsProvider.so").symlink_to("libServerProfileProvider.so")


class Server(Installation):
    @classmethod
    def setUpClass(cls):
        folder = tempfile.TemporaryDirectory()
        cls.addClassCleanup(folder.cleanup)
        cls.folder = pathlib.Path(folder.name)
        build(cls.folder)
        stand_in_test.LIBRARIES = cls.folder
        stand_in_test.stand_in.READER = cls.folder / "mof-reader"

    def setUp(self):
        super().setUp()
        self.server = stand_in_test.StandIn()
        self.pristine = self.server.snapshot()
        place = tempfile.TemporaryDirectory()
        self.addCleanup(place.cleanup)
        self.tools = tools.Tools(place.name, self.folder / "client", self.server.call)
        self.addCleanup(self.tools.close)
        self.change_environment("PATH", f"{place.name}:{os.environ['PATH']}")
        self.change_environment("REGISTER_TEST_SOCKET", self.tools.socket)

    def change_environment(self, name, value):
        before = os.environ.get(name)
        os.environ[name] = value
        if before is None:
            self.addCleanup(os.environ.pop, name)
        else:
            self.addCleanup(os.environ.__setitem__, name, before)

    def test_the_module_is_registered_while_it_is_installed_and_no_longer(self):
        for purge in (False, True):
            with self.subTest(purge=purge):
                self.assertEqual(self.told(PACKED.install(*kinds.NAMES)),
                                 "registered with the CIM server")
                served = self.server.snapshot()
                self.assertEqual(len([instance for instance in served["registered"]
                                      if instance["class"] == "PG_ProviderModule"]), 2)
                for namespace in ("interop", "root/cimv2"):
                    self.assertIn("ORVEX_SoftwareIdentity", served["namespaces"][namespace])
                self.assertTrue(RECORD.exists())
                self.told(PACKED.remove(*kinds.NAMES, purge=purge))
                self.assertEqual(self.server.snapshot(), self.pristine)

    def test_an_upgrade_keeps_the_registration_as_it_is_and_reloads_the_module(self):
        self.server.fill("root/other")
        self.installed()
        subprocess.run(["serverprofile-register", "install", "--namespace", "root/other"],
                       check=True, stdout=subprocess.DEVNULL)
        chosen = self.server.snapshot()
        self.tools.plan()
        self.assertEqual(self.told(HIGHER.upgrade(*kinds.NAMES)), "registered with the CIM server")
        self.assertEqual(self.server.snapshot(), chosen)
        calls = [call.split()[:2] for call in self.tools.calls]
        self.assertNotIn(["cimprovider", "-r"], calls)
        self.assertLess(calls.index(["cimprovider", "-d"]), calls.index(["cimprovider", "-e"]))

    def test_a_server_that_goes_wrong_never_fails_the_transaction_nor_keeps_a_half(self):
        # Enough for the tool to give up a call that hangs, and to put everything back.
        self.change_environment("SERVERPROFILE_PATIENCE", "8")
        for fault in ({"mode": "down"}, {"match": "cimmof.*ProviderModule", "mode": "half"},
                      {"match": "cimmof.*ProviderModule", "mode": "wait"}):
            with self.subTest(fault):
                self.tools.plan(fault)
                self.assertRegex(self.told(PACKED.install(*kinds.NAMES)),
                                 r"^not registered with a CIM server \(.+\); ")
                self.assertEqual(self.server.snapshot(), self.pristine)
                self.told(PACKED.remove(*kinds.NAMES))
                self.assertEqual(self.server.snapshot(), self.pristine)

    def test_a_server_that_is_gone_never_fails_the_removal(self):
        PACKED.install(*kinds.NAMES)
        self.tools.plan({"mode": "down"})
        self.assertRegex(self.told(PACKED.remove(*kinds.NAMES)),
                         r"^could not be unregistered \(.+\); if a CIM server still lists them, ")
        # A later installation can take back what is left. Who wants no trace says so.
        self.assertTrue(RECORD.exists())
        if KIND is kinds.Deb:
            PACKED.remove(*kinds.NAMES, purge=True)
        else:
            for file in (RECORD, SETTINGS):
                file.unlink()
                file.parent.rmdir()
