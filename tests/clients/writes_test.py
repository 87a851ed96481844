#!/usr/bin/env python3
"""What becomes of a client's writes: none takes in a server that was not started with --writable,
and with it none that would appear among what a module or the server itself publishes.

usage: writes_test.py BUILD-DIRECTORY [unittest arguments]
"""

import http.client
import sys
import unittest

sys.path.insert(1, sys.path[0] + "/../kit")

from request import CimError, ask, call, name, of_class, returned
from served import NAMESPACES, Served

BUILD = ""
DENIED, NOT_SUPPORTED = 2, 7

VSAN = {"CreationClassName": "ORVEX_Vsan", "Name": "20010005AD000001"}
SYSTEM = {"CreationClassName": "X", "Name": "forged"}
SERVICE = {"SystemCreationClassName": "X", "SystemName": "x", **SYSTEM}
NAMESPACE = {"ObjectManagerCreationClassName": "X", "ObjectManagerName": "x", **SERVICE}
# Whose instances only the repository has.
STORED = (("ORVEX_Vsan", VSAN), ("ORVEX_ComputerSystem", SYSTEM),
          ("ORVEX_PhysicalComputerSystem", {"Name": "localswitch"}))
# Superclasses by which the module's and the server's own objects are enumerated.
ABOVE = (("CIM_ComputerSystem", SYSTEM, "ORVEX_ObjectManagerHost"),
         ("CIM_SoftwareIdentity", {"InstanceID": "forged"}, "ORVEX_SoftwareIdentity"))
# What the module publishes, and what the server does.
PUBLISHED = (("CIM_RegisteredProfile", {"InstanceID": "Orvex1"}),
             ("ORVEX_ObjectManagerHost", SYSTEM),
             ("PG_Namespace", NAMESPACE))
# Refused, whoever answers for it.
MANAGER = (("CIM_ObjectManager", SERVICE), ("CIM_CIMXMLCommunicationMechanism", SERVICE))
INTEROP = "root/PG_InterOp"  # where modules are registered
REGISTRATION = ("PG_ProviderModule", {"Name": "ForgedModule"})


def instance(class_name, properties):
    return f'<INSTANCE CLASSNAME="{class_name}">' + "".join(
        f'<PROPERTY NAME="{key}" TYPE="string"><VALUE>{value}</VALUE></PROPERTY>'
        for key, value in properties.items()) + "</INSTANCE>"


def create(class_name, keys):
    return call("CreateInstance", ("NewInstance", instance(class_name, keys)))


def modify(class_name, keys, **properties):
    named = name(class_name, **keys) + instance(
        class_name, {**keys, **(properties or {"ElementName": "forged"})})
    return call("ModifyInstance",
                ("ModifiedInstance", f"<VALUE.NAMEDINSTANCE>{named}</VALUE.NAMEDINSTANCE>"))


def delete(class_name, keys):
    return call("DeleteInstance", ("InstanceName", name(class_name, **keys)))


def writes(class_name, keys):
    return [write(class_name, keys) for write in (create, modify, delete)]


class Writes(unittest.TestCase):
    def serve(self, *options):
        served = self.enterContext(Served(BUILD, options))
        self.connection = http.client.HTTPConnection("127.0.0.1", served.port, timeout=120)
        self.addCleanup(self.connection.close)

    def enterContext(self, context):  # unittest has it from Python 3.11 on
        entered = context.__enter__()
        self.addCleanup(context.__exit__, None, None, None)
        return entered

    def answer(self, namespace, request):
        status, text = ask(self.connection, namespace, request)
        self.assertEqual(status, 200)
        return returned(text)

    def refusal(self, namespace, request):
        """Code and text."""
        with self.assertRaises(CimError, msg=str(request)) as refused:
            self.answer(namespace, request)
        return refused.exception.code, str(refused.exception)

    def state(self):
        """Everything that the server says, in all namespaces: names and instances of each class."""
        said = {}
        for namespace in NAMESPACES:
            classes = self.answer(namespace, call(
                "EnumerateClassNames", ("DeepInheritance", "<VALUE>TRUE</VALUE>")))
            for class_name in (c.get("NAME") for c in classes):
                for method in ("EnumerateInstances", "EnumerateInstanceNames"):
                    request = call(method, ("ClassName", of_class(class_name)))
                    said[namespace, class_name, method] = ask(self.connection, namespace, request)
        self.assertGreater(len(said), 150)
        return said

    def vsans(self, namespace):
        named = self.answer(namespace, call("EnumerateInstances",
                                            ("ClassName", of_class("ORVEX_Vsan"))))
        return {n.find(".//PROPERTY[@NAME='Name']/VALUE").text:
                n.findtext(".//PROPERTY[@NAME='ElementName']/VALUE") for n in named}

    def test_none_takes_unless_the_server_is_writable(self):
        self.serve()
        before = self.state()
        tried = 0
        for namespace in NAMESPACES:
            stored = [*STORED, *((c, keys) for c, keys, _ in ABOVE)]
            if namespace == INTEROP:
                stored.append(REGISTRATION)
            for request in (r for pair in stored for r in writes(*pair)):
                code, text = self.refusal(namespace, request)
                self.assertEqual(DENIED, code, request)
                self.assertRegex(text, r"read-only; start cimhost with --writable\b")
                tried += 1
            for request in (r for pair in PUBLISHED for r in writes(*pair)):
                self.assertEqual(NOT_SUPPORTED, self.refusal(namespace, request)[0], request)
                tried += 1
            for request in (r for pair in MANAGER for r in writes(*pair)):
                self.assertIn(self.refusal(namespace, request)[0], (DENIED, NOT_SUPPORTED))
                tried += 1
        self.assertGreaterEqual(tried, 60)
        self.assertEqual(before, self.state())

    def test_those_of_classes_that_nobody_publishes_take_in_a_writable_one(self):
        self.serve("--writable")
        new = {**VSAN, "Name": "new"}
        for namespace in NAMESPACES:
            before = self.vsans(namespace)
            self.answer(namespace, create("ORVEX_Vsan", new))
            self.assertEqual({**before, "new": None}, self.vsans(namespace))
            self.answer(namespace, modify("ORVEX_Vsan", new, ElementName="changed"))
            self.assertEqual({**before, "new": "changed"}, self.vsans(namespace))
            self.answer(namespace, delete("ORVEX_Vsan", new))
            self.assertEqual(before, self.vsans(namespace))

    def test_those_that_would_appear_among_published_objects_take_nowhere(self):
        self.serve("--writable")
        before = self.state()
        for namespace in NAMESPACES:
            for class_name, keys, published in ABOVE:
                for request in writes(class_name, keys):
                    code, text = self.refusal(namespace, request)
                    self.assertEqual(DENIED, code, request)
                    self.assertIn(f"Instances of {class_name} cannot be changed: they appear among "
                                  f"those of {published}, which provider ServerProfile", text)
            for request in (r for pair in PUBLISHED for r in writes(*pair)):
                self.assertEqual(NOT_SUPPORTED, self.refusal(namespace, request)[0], request)
            for request in (r for pair in MANAGER for r in writes(*pair)):
                self.assertIn(self.refusal(namespace, request)[0], (DENIED, NOT_SUPPORTED))
        self.assertEqual(before, self.state())

    def test_namespaces_are_not_created(self):
        for options in ((), ("--writable",)):
            self.serve(*options)
            for namespace in NAMESPACES:
                for class_name in ("CIM_Namespace", "PG_Namespace", "__Namespace"):
                    code, text = self.refusal(
                        namespace, create(class_name, {**NAMESPACE, "Name": "root/new"}))
                    self.assertEqual(NOT_SUPPORTED, code, text)
                    self.assertRegex(text, r": \w+: .*\w")  # code: name: text
                self.assertEqual(3, self.refusal("root/new", call("EnumerateClassNames"))[0])


if __name__ == "__main__":
    BUILD = sys.argv.pop(1)
    unittest.main()
