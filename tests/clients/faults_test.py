#!/usr/bin/env python3
"""What clients are told while the module's read-backs fail, come back empty or hang.

The tables say it for each question, part by part: what the part is when all is well, and what it
becomes when the objects that it reads back cannot be had. Nothing is read from the module.

usage: faults_test.py BUILD-DIRECTORY [unittest arguments]
"""

import concurrent.futures
import itertools
import sys
import time
import unittest

sys.path.insert(1, sys.path[0] + "/../kit")

from cimxml import CimError, Client, path, references, to
from letters import ENDS, label
from served import NAMESPACES, Served

BUILD = None

# What the module reads back, by the letter that stands for it below.
READ_BACK = {
    "M": "CIM_ObjectManager",
    "N": "CIM_Namespace",
    "X": "CIM_CIMXMLCommunicationMechanism",
    "V": "ORVEX_Vsan",
    "S": "ORVEX_ComputerSystem",
    "L": "ORVEX_PhysicalComputerSystem",
    # The class definitions of the module's own objects.
    "h": "ORVEX_ObjectManagerHost",
    "f": "ORVEX_SoftwareIdentity",
}
# How: all others by the names of their instances, or as whole instances for associators.
READ_BY = {"L": "getInstance", "h": "getClass", "f": "getClass"}


class Part:
    """A part of an answer: when all is well, and by the letters that fail, or are empty.

    A part is made by one call of the module, so what one part has lost is none of another's
    business. `empty` says only where empty differs from failing.
    """

    def __init__(self, well, failing=None, empty=None):
        self.well = well
        self.failing = failing or {}
        self.empty = {**self.failing, **(empty or {})}

    def expected(self, kind, letters):
        rows = self.empty if kind == "empty" else self.failing
        known = "".join(letter for letter in letters if any(letter in row for row in rows))
        return rows[known] if known else self.well


def gone(letter):
    """Nothing is left without it."""
    return {letter: ""}


# When the second read-back fails the first one's objects are still in the list, and the manager
# stands at both ends. Without a manager there is nothing; an empty list of them leaves its end
# empty.
NAMESPACES_OF_MANAGER = Part(
    "NM:M>N1 NM:M>N2 NM:M>N3", {"M": "", "N": "NM:M>M", "MN": ""},
    {"M": "NM:->N1 NM:->N2 NM:->N3", "N": "", "MN": ""})
MECHANISMS_OF_MANAGER = Part(
    "CM:M>X", {"M": "", "X": "CM:M>M", "MX": ""}, {"M": "CM:->X", "X": "", "MX": ""})

ENUMERATIONS = {
    # There is always one hosted service; its dependent end is empty without a manager.
    "CIM_HostedService": [Part("HS:H>M", {"M": "HS:H>-"})],
    "CIM_HostedAccessPoint": [Part("HA:H>X", gone("X"))],
    "CIM_NamespaceInManager": [NAMESPACES_OF_MANAGER],
    "CIM_CommMechanismForManager": [MECHANISMS_OF_MANAGER],
    "CIM_ElementConformsToProfile": [
        Part("EC:P1>V1 EC:P1>V2", gone("V")), Part("EC:P2>S", gone("S")),
        Part("EC:P6>M", gone("M"))],
    "CIM_SubProfileRequiresProfile": [Part("SR:P1>P3 SR:P1>P4 SR:P2>P5")],
    "ORVEX_ElementSoftwareIdentity": [
        Part("SI:F>P1 SI:F>P2 SI:F>P6 SI:F>P3 SI:F>P4 SI:F>P5")],
    "CIM_RegisteredProfile": [Part("P1 P2 P6"), Part("P3 P4 P5")],  # the subclass, too
}
# Names need no class definition, instances do.
OWN = {"ORVEX_ObjectManagerHost": ("H", "h"), "ORVEX_SoftwareIdentity": ("F", "f")}

HOST = "ORVEX_ObjectManagerHost"
# By source: the far ends, in the server's order of association classes, and the associations. A
# bare "F" or "H" is the module's own object, which as a whole needs its class definition.
TRAVERSALS = {
    'CIM_RegisteredProfile.InstanceID="Orvex1"': (
        [Part("P3 P4"), Part("V1 V2", gone("V")), "F"],
        [Part("SR:P1>P3 SR:P1>P4"), Part("EC:P1>V1 EC:P1>V2", gone("V")), Part("SI:F>P1")]),
    # The far end is the box, read by its path; a box that cannot be read ends the operation. The
    # associations name the switch.
    'CIM_RegisteredProfile.InstanceID="Orvex2"': (
        [Part("P5"), Part("L", gone("L")), "F"],
        [Part("SR:P2>P5"), Part("EC:P2>S", gone("S")), Part("SI:F>P2")]),
    'CIM_RegisteredProfile.InstanceID="Orvex6"': (
        [Part("M", gone("M")), "F"],
        [Part("EC:P6>M", gone("M")), Part("SI:F>P6")]),
    'CIM_RegisteredSubProfile.InstanceID="Orvex4"': (
        [Part("P1"), "F"], [Part("SR:P1>P4"), Part("SI:F>P4")]),
    HOST: (
        [Part("M", gone("M")), Part("X", gone("X"))],
        [Part("HS:H>M", gone("M")), Part("HA:H>X", gone("X"))]),
    # The far ends do not need the manager itself, the associations do.
    'CIM_ObjectManager.Name="any"': (
        ["H", Part("N1 N2 N3", gone("N")), Part("X", gone("X")), Part("P6")],
        [Part("HS:H>M", gone("M"), {"M": "HS:H>-"}), NAMESPACES_OF_MANAGER, MECHANISMS_OF_MANAGER,
         Part("EC:P6>M", gone("M"), {"M": "EC:P6>-"})]),
    'PG_CIMXMLCommunicationMechanism.Name="any"': (
        ["H", Part("M", gone("M"))],
        [Part("HA:H>X"), Part("CM:M>X", gone("M"))]),
    'PG_Namespace.Name="root/cimv2"': (
        [Part("M", gone("M"))], [Part("NM:M>N2", gone("M"))]),
    'ORVEX_SoftwareIdentity.InstanceID="OrvexSI1"': (
        [Part("P1 P2 P6 P3 P4 P5")],
        [Part("SI:F>P1 SI:F>P2 SI:F>P6 SI:F>P3 SI:F>P4 SI:F>P5")]),
}


class Question:
    def __init__(self, text, ask, parts, by):
        self.text = text
        self.ask = ask
        self.parts = parts
        self.by = by  # how it reads instances back

    def read_by(self, letter):
        return READ_BY.get(letter, self.by)

    def expected(self, kind, operation, letters):
        """While the read-backs of these letters by `operation`, or any, are not what they were."""
        reached = [letter for letter in letters if operation in ("*", self.read_by(letter))]
        return " ".join(
            filter(None, (part.expected(kind, "".join(reached)) for part in self.parts)))


def questions(address, namespace, host):
    client = Client(address, namespace)
    names, whole = "enumerateInstanceNames", "enumerateInstances"
    result = []

    def add(verb, ask, argument, parts, by):
        result.append(Question(f"{verb} {argument}", lambda: ask(argument), parts, by))

    # Association classes are read back by name whatever is asked for.
    for name, parts in ENUMERATIONS.items():
        add("enumerate names", client.enumerate_names, name, parts, names)
        add("enumerate", client.enumerate, name, parts, names)
    for name, (letter, definition) in OWN.items():
        add("enumerate names", client.enumerate_names, name, [Part(letter)], names)
        add("enumerate", client.enumerate, name, [Part(letter, gone(definition))], names)
    for name, (far, ties) in TRAVERSALS.items():
        source = to(HOST, CreationClassName=HOST, Name=host) \
            if name == HOST else path(name)
        plain = [Part(part) if isinstance(part, str) else part for part in far]
        with_definitions = [Part(part, gone(part.lower())) if isinstance(part, str) else part
                            for part in far]
        add("associator names", client.associator_names, source, plain, names)
        add("associators", client.associators, source, with_definitions, whole)
        add("reference names", client.reference_names, source, ties, names)
        add("references", client.references, source, ties, names)
    return result


def serving(*faults):
    return Served(BUILD, [word for fault in faults for word in ("--fault", fault)])


def host_of(served):
    return Client(served.address, NAMESPACES[0]).enumerate_names(HOST)[0].key("Name")


def declared(association):
    """The classes that its references declare."""
    return [name for name, _ in references(association).values()]


FAILURES = ("CIM_ERR_FAILED", "CIM_ERR_NOT_FOUND:gone")
LETTERS = "".join(READ_BACK)


class Faults(unittest.TestCase):
    maxDiff = None
    turn = 0

    def check(self, kind, operation, letters, faults):
        """The questions to a server with these faults, in one namespace, of the next server in the next."""
        Faults.turn += 1
        namespace = NAMESPACES[self.turn % len(NAMESPACES)]
        with serving(*faults) as served:
            asked = questions(served.address, namespace, host_of(served))
            # And backwards, so that each question comes after others that met a fault.
            for question in (*asked, *reversed(asked)):
                with self.subTest(question=question.text, faults=faults, namespace=namespace):
                    self.assertEqual(" ".join(map(label, question.ask())),
                                     question.expected(kind, operation, letters))

    def test_without_faults_all_is_well(self):
        for _ in NAMESPACES:
            self.check("failing", "*", "", [])

    def test_each_read_back_failing_or_empty(self):
        for letter in LETTERS:
            for what in (*FAILURES, "empty"):
                self.check(what, "*", letter, [f"*:{READ_BACK[letter]}={what}"])

    def test_two_read_backs_failing_or_empty(self):
        for pair in itertools.combinations(LETTERS, 2):
            for what in (FAILURES[0], "empty"):
                self.check(what, "*", "".join(pair),
                           [f"*:{READ_BACK[letter]}={what}" for letter in pair])

    def test_each_operation_failing_or_empty(self):
        for operation in ("enumerateInstances", "enumerateInstanceNames", "getInstance"):
            for what in (FAILURES[0], "empty"):
                self.check(what, operation, LETTERS, [f"{operation}:*={what}"])

    def test_getting_an_object_whose_class_cannot_be_read_finds_nothing(self):
        firmware = path('ORVEX_SoftwareIdentity.InstanceID="OrvexSI1"')
        with serving("getClass:ORVEX_SoftwareIdentity=1") as served:
            for _ in range(2):
                with self.assertRaises(CimError) as caught:
                    Client(served.address, NAMESPACES[0]).get(firmware)
                self.assertEqual(int(caught.exception.code), 6)

    def test_getting_an_association_reads_nothing_back(self):
        faults = [f"*:{READ_BACK[letter]}=1" for letter in LETTERS]
        association = to("CIM_HostedService", Antecedent=path('ORVEX_ObjectManagerHost.Name="a"'),
                         Dependent=path('CIM_ObjectManager.Name="b"'))
        with serving(*faults) as served:
            got = Client(served.address, NAMESPACES[0]).get(association)
        self.assertEqual(label(got), "HS:H>M")

    def test_what_is_enumerated_without_a_manager_can_be_got(self):
        expected = {"CIM_HostedService": ["HS:H>-"], "CIM_HostedAccessPoint": ["HA:H>X"],
                    "CIM_NamespaceInManager": ["NM:->N1", "NM:->N2", "NM:->N3"],
                    "CIM_CommMechanismForManager": ["CM:->X"]}
        with serving("*:CIM_ObjectManager=empty") as served:
            for namespace, (name, ends) in itertools.product(NAMESPACES, expected.items()):
                client = Client(served.address, namespace)
                names = client.enumerate_names(name)
                objects = client.enumerate(name)
                with self.subTest(name=name, namespace=namespace):
                    self.assertEqual([label(one) for one in names], ends)
                    self.assertEqual([one.path for one in objects], names)
                    got = [client.get(one) for one in names]
                    self.assertEqual([label(one) for one in got], ends)
                    self.assertEqual([declared(one) for one in got],
                                     [declared(one) for one in objects])

    def test_a_failing_manager_is_got_as_an_empty_one(self):
        for what in FAILURES:
            with serving(f"*:CIM_ObjectManager={what}") as served:
                client = Client(served.address, NAMESPACES[0])
                [name] = client.enumerate_names("CIM_HostedService")
                self.assertEqual(label(client.get(name)), "HS:H>-")

    def test_an_end_that_is_no_path_is_got_empty(self):
        firmware = path('ORVEX_SoftwareIdentity.InstanceID="OrvexSI1"')
        with serving() as served:
            client = Client(served.address, NAMESPACES[0])
            for dependent in ("", "no path", "5"):
                got = client.get(to("ORVEX_ElementSoftwareIdentity", Antecedent=firmware,
                                    Dependent=dependent))
                with self.subTest(dependent=dependent):
                    self.assertEqual(label(got), "SI:F>-")
                    # No class is declared for what is not there.
                    self.assertEqual(declared(got), ["ORVEX_SoftwareIdentity", None])
            for name, (kind, first, second) in ENDS.items():
                wanted = to(name, **{first: "no path", second: ""})
                with self.subTest(name=name):
                    if kind in ("SR", "EC"):
                        with self.assertRaises(CimError) as caught:
                            client.get(wanted)
                        self.assertEqual(int(caught.exception.code), 6)
                    else:
                        self.assertEqual(label(client.get(wanted)), f"{kind}:->-")


class Hanging(unittest.TestCase):
    def test_holds_up_what_asks_the_module_and_nothing_else(self):
        with serving("enumerateInstanceNames:CIM_ObjectManager=hang:4") as served, \
                concurrent.futures.ThreadPoolExecutor() as threads:
            client = Client(served.address, NAMESPACES[0])
            client.enumerate_names("CIM_RegisteredSubProfile")  # the module is loaded

            def ask(name):
                return [label(found) for found in client.enumerate_names(name)]

            hanging = threads.submit(ask, "CIM_HostedService")
            served.says("OrvexSPHostedServiceHelper - Start")
            waiting = threads.submit(ask, "ORVEX_SoftwareIdentity")
            served.says("BEFoRE MUTEX", 3)
            for name, answer in (("CIM_ObjectManager", ["M"]), ("ORVEX_Vsan", ["V1", "V2"])):
                self.assertEqual(ask(name), answer)
                self.assertFalse(hanging.done(), f"{name} waited for the read-back")
            self.assertEqual(hanging.result(), ["HS:H>M"])
            self.assertEqual(waiting.result(), ["F"])
            said = served.said()
            self.assertLess(said.rindex("OrvexOMHost - destructor()"), said.index("orvexSIInstNames() Start"),
                            "two requests were in the module at once")
            self.assertEqual(ask("CIM_RegisteredSubProfile"), ["P3", "P4", "P5"])

    def test_and_then_failing_is_as_failing(self):
        with serving("*:CIM_Namespace=hang:0.3", "*:CIM_Namespace=1") as served:
            client = Client(served.address, NAMESPACES[0])
            start = time.monotonic()
            found = client.enumerate_names("CIM_NamespaceInManager")
            self.assertGreaterEqual(time.monotonic() - start, 0.3)
            self.assertEqual([label(one) for one in found], ["NM:M>M"])


class Start(unittest.TestCase):
    def test_without_the_profiles_classes_the_module_never_answers_and_others_do(self):
        """The module waits, for ever, for its start to have ended well; the server says at its end
        that a request is in it."""
        served = Served(
            BUILD, ["--grace=1", "--fault", "getClass:CIM_RegisteredProfile=1"]).__enter__()
        client = Client(served.address, NAMESPACES[0])
        with concurrent.futures.ThreadPoolExecutor() as threads:
            waiting = threads.submit(client.enumerate_names, "ORVEX_SoftwareIdentity")
            served.says("Quil - enum Test waiting init is 1")
            answer = client.enumerate_names("CIM_ObjectManager")
            answered = waiting.done()
            with self.assertRaisesRegex(RuntimeError, "cimhost ended with 6"):
                served.__exit__(None, None, None)
            self.assertIsNotNone(waiting.exception())
        self.assertEqual([label(one) for one in answer], ["M"])
        self.assertFalse(answered)


if __name__ == "__main__":
    BUILD = sys.argv.pop(1)
    unittest.main()
