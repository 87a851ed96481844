"""The scripts of the packages: when they call serverprofile-register, and what they make of what it
does."""

import os
import pathlib

import kinds
from installation import HIGHER, PACKED, Installation

TOOL = pathlib.Path("/usr/local/sbin/serverprofile-register")  # before /usr/sbin
CALLS = pathlib.Path("/tmp/calls")


def stand_in(*lines):
    """Puts a program where the scripts look for the tool first; what it is asked for is noted."""
    TOOL.write_text("\n".join(["#!/bin/sh", f'echo "$*" >>{CALLS}', *lines]) + "\n")
    TOOL.chmod(0o755)
    CALLS.write_text("")


def calls():
    return CALLS.read_text().split()


class Scripts(Installation):
    def setUp(self):
        super().setUp()
        self.addCleanup(TOOL.unlink, missing_ok=True)

    def test_installation_registers_and_removal_unregisters(self):
        for purge in (False, True):
            with self.subTest(purge=purge):
                stand_in("exit 0")
                self.assertEqual(self.told(PACKED.install(*kinds.NAMES)),
                                 "registered with the CIM server")
                self.assertEqual(calls(), ["install"])
                self.assertEqual(self.told(PACKED.remove(*kinds.NAMES, purge=purge)),
                                 "not registered with a CIM server any more")
                self.assertEqual(calls(), ["install", "remove"])

    def test_an_upgrade_never_unregisters_even_if_it_has_trouble(self):
        stand_in("exit 3")
        self.installed()
        self.told(HIGHER.upgrade(*kinds.NAMES))
        for name in kinds.NAMES:
            self.assertTrue(PACKED.version(name) < HIGHER.version(name) <=
                            HIGHER.installed_version(name))
        self.assertEqual(calls(), ["install", "install"])

    # What the tool may do, and what the package then says of it.
    TROUBLES = {
        "it finds no server": (["echo 'checking:'", "echo '  ok     this'", "echo '  WRONG  no that'",
                                "echo '         install it'", "exit 1"], "no that"),
        "it rolls back": (["echo '  loading'", "echo 'serverprofile-register: no loading' >&2",
                           "echo 'serverprofile-register: all is as it was before' >&2", "exit 3"],
                          "no loading"),
        "it fails and says nothing": (["exit 3"], "it ended with 3"),
        "it crashes": (["kill -SEGV $$"], "it ended with 139"),
        "it hangs": (["sleep 1000"], "no answer within 1 seconds"),
        "it cannot be ended": (["trap '' TERM", "while :; do sleep 1; done"],
                               "no answer within 1 seconds"),
        "it wants an answer": (["read -r answer || exit 5"], "it ended with 5"),
        "it takes its time": (["sleep 0.5", "exit 0"], None),
    }

    def test_trouble_with_the_server_never_fails_the_transaction(self):
        os.environ["SERVERPROFILE_PATIENCE"] = "1"
        self.addCleanup(os.environ.pop, "SERVERPROFILE_PATIENCE")
        for what, (lines, reason) in self.TROUBLES.items():
            with self.subTest(what):
                stand_in(*lines)
                self.assertEqual(self.told(PACKED.install(*kinds.NAMES)), (
                    "registered with the CIM server" if reason is None else
                    f"not registered with a CIM server ({reason}); "
                    "to try again, run 'serverprofile-register install'"))
                text = self.told(PACKED.remove(*kinds.NAMES))
                if reason is not None:
                    self.assertIn(f"could not be unregistered ({reason}); ", text)
                self.assertEqual(calls(), ["install", "remove"])
