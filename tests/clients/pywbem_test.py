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


def ids(paths):
    return [path["InstanceID"] for path in paths]


class Discovery(pywbem_walk.Discovery):
    def test_finds_every_namespace(self):
        self.assertEqual(sorted(self.server.namespaces), sorted(NAMESPACES))

    def test_knows_the_server_by_brand_and_version(self):
        self.assertEqual(self.server.brand, "cimhost")
        self.assertRegex(self.server.version, r"^\d+\.\d+")


class Follows(pywbem_walk.Follows):
    """As any server that serves the module."""


class Operations(unittest.TestCase):
    def setUp(self):
        warnings.simplefilter("error")

    def in_each(self):
        for namespace in NAMESPACES:
            with self.subTest(namespace=namespace):
                yield connection(namespace)

    def test_enumerates_profiles_in_the_order_of_the_catalogue(self):
        for client in self.in_each():
            self.assertEqual(ids(client.EnumerateInstanceNames("CIM_RegisteredProfile")),
                             ["Orvex1", "Orvex2", "Orvex6", "Orvex3", "Orvex4", "Orvex5"])

    def test_gets_the_host_by_its_name(self):
        for client in self.in_each():
            name, = client.EnumerateInstanceNames("ORVEX_ObjectManagerHost")
            host = client.GetInstance(name)
            self.assertEqual(host["Name"], name["Name"])
            # "IP" where the machine's name cannot be resolved, and then there is no name.
            self.assertEqual(host["NameFormat"], "Other" if name["Name"] else "IP")
            self.assertEqual(host["OperationalStatus"], [2])
            self.assertEqual((host["Description"], host["ElementName"]), ("", ""))

    def test_gets_the_firmware(self):
        for client in self.in_each():
            firmware = client.GetInstance(
                pywbem.CIMInstanceName("ORVEX_SoftwareIdentity", {"InstanceID": "orvexsi1"}))
            self.assertEqual(
                {name: firmware[name] for name in (
                    "InstanceID", "Name", "Manufacturer", "VersionString", "Classifications")},
                {"InstanceID": "OrvexSI1", "Name": "Kelmar", "Manufacturer": "Orvex Systems",
                 "VersionString": "3.0", "Classifications": [10]})

    def test_applies_a_property_list(self):
        for client in self.in_each():
            for profile in client.EnumerateInstances(
                    "CIM_RegisteredProfile", PropertyList=["RegisteredName"]):
                self.assertEqual(list(profile.keys()), ["RegisteredName"])

    def test_a_missing_object_is_not_found(self):
        for client in self.in_each():
            with self.assertRaises(pywbem.CIMError) as caught:
                client.GetInstance(pywbem.CIMInstanceName(
                    "CIM_RegisteredProfile", {"InstanceID": "Orvex3"}))
            self.assertEqual(caught.exception.status_code, pywbem.CIM_ERR_NOT_FOUND)

    def test_every_class_of_every_namespace_can_be_enumerated(self):
        for client in self.in_each():
            for name in client.EnumerateClassNames(DeepInheritance=True):
                client.EnumerateInstanceNames(name)

    def test_pulled_is_what_is_asked_for_at_once(self):
        for client in self.in_each():
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

    def test_write_operations_are_not_supported(self):
        client = connection("root/cimv2")
        firmware, = client.EnumerateInstances("ORVEX_SoftwareIdentity")
        for write in (lambda: client.CreateInstance(firmware),
                      lambda: client.ModifyInstance(firmware),
                      lambda: client.DeleteInstance(firmware.path)):
            with self.assertRaises(pywbem.CIMError) as caught:
                write()
            self.assertEqual(caught.exception.status_code, pywbem.CIM_ERR_NOT_SUPPORTED)

    def test_an_unknown_method_is_not_found(self):
        with self.assertRaises(pywbem.CIMError) as caught:
            connection("root/cimv2").InvokeMethod("Reset", "ORVEX_SoftwareIdentity")
        self.assertEqual(caught.exception.status_code, pywbem.CIM_ERR_METHOD_NOT_FOUND)


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
