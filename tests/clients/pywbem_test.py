#!/usr/bin/env python3
"""Meets the served sample switch with pywbem as an SMI-S script does, in each way (ways.py). A warning
is a failure.

usage: pywbem_test.py BUILD-DIRECTORY [unittest arguments]
"""

import pathlib
import subprocess
import sys
import unittest
import warnings

import pywbem
import pywbem_walk

sys.path.insert(1, sys.path[0] + "/../kit")

import ways

from pywbem_walk import connection
from served import NAMESPACES

SERVED = None


class Discovery(pywbem_walk.Discovery):
    def test_finds_every_namespace(self):
        self.assertEqual(sorted(self.server.namespaces), sorted(NAMESPACES))

    def test_knows_the_server_by_brand_and_version(self):
        self.assertEqual(self.server.brand, "cimhost")
        self.assertRegex(self.server.version, r"^\d+\.\d+")


class Follows(pywbem_walk.Follows):
    """As any server that serves the module."""


class Operations(unittest.TestCase):
    """Of the objects that the walk does not reach; those that it does are compared by
    pywbem_objects_test.py."""

    def setUp(self):
        warnings.simplefilter("error")

    def test_pulled_is_what_is_asked_for_at_once(self):
        for namespace in NAMESPACES:
            client = connection(namespace)
            for name in client.EnumerateClassNames(DeepInheritance=True):
                opened = client.OpenEnumerateInstancePaths(name, MaxObjectCount=3)
                pulled = list(opened.paths)
                while not opened.eos:
                    opened = client.PullInstancePaths(opened.context, MaxObjectCount=3)
                    pulled += opened.paths
                for path in pulled:  # whole, which the others are not
                    self.assertTrue(path.host and path.namespace)
                    path.host = path.namespace = None
                whole = client.EnumerateInstanceNames(name)
                for path in whole:
                    path.host = path.namespace = None
                self.assertEqual(pulled, whole)


class CommandLine(unittest.TestCase):
    """pywbemcli as it is by default: it tries pull operations first."""

    def ask(self, *arguments):
        answer = subprocess.run(
            [pathlib.Path(sys.executable).with_name("pywbemcli"), *SERVED.pywbemcli(), "-o", "plain",
             *arguments],
            capture_output=True, text=True, check=False, timeout=120)
        self.assertEqual((answer.returncode, answer.stderr), (0, ""))
        return answer.stdout

    def test_lists_profiles(self):
        listed = self.ask("profile", "list")
        for name in ("Fabric", "Switch", "Server", "Zone Control", "Blades"):
            self.assertIn(name, listed)

    def test_counts_the_instances_of_every_class(self):
        self.assertRegex(self.ask("instance", "count"), r"CIM_RegisteredProfile\s+3")

    def test_shows_the_class_tree(self):
        self.assertIn("ORVEX_SoftwareIdentity", self.ask("class", "tree", "-n", "root/cimv2"))


if __name__ == "__main__":
    build = sys.argv.pop(1)
    right = True
    for way in ways.WAYS:
        print(f"{way.name}:", file=sys.stderr)
        with ways.Reached(build, way) as SERVED:
            pywbem_walk.use(SERVED.url, NAMESPACES, **SERVED.pywbem())
            right &= unittest.main(exit=False).result.wasSuccessful()
    sys.exit(not right)
