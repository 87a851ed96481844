#!/usr/bin/env python3
"""Walks the associations of the served sample switch with wbemcli: all four operations, from every
source class, with each association class, result class and role. Each of these questions is asked in one
namespace, the next one in the next.

What must come is worked out here from tables: the far ends of each source by association class, and
the associations themselves. Nothing is read from the module.

usage: associations_test.py BUILD-DIRECTORY [unittest arguments]
"""

import socket
import subprocess
import sys
import unittest

sys.path.insert(1, sys.path[0] + "/../kit")

from run_wbemcli import module_host, published_name
from served import NAMESPACES, Served

SERVED = None

# The association classes of the module in the order in which the server asks for them.
ASSOCIATIONS = (
    "CIM_HostedService", "CIM_HostedAccessPoint", "CIM_NamespaceInManager",
    "CIM_CommMechanismForManager", "CIM_ReferencedProfile", "CIM_SubProfileRequiresProfile",
    "CIM_ElementConformsToProfile", "ORVEX_ElementSoftwareIdentity")
# Which of them stand below a common superclass: a client's filter selects subclasses, too.
BELOW = {
    "CIM_Dependency": tuple(a for a in ASSOCIATIONS if a != "CIM_ElementConformsToProfile"),
    "CIM_HostedDependency": ("CIM_HostedService", "CIM_HostedAccessPoint",
                             "CIM_NamespaceInManager"),
    "CIM_ReferencedProfile": ("CIM_ReferencedProfile", "CIM_SubProfileRequiresProfile"),
}
FILTERS = ("", *ASSOCIATIONS, "CIM_Dependency", "CIM_HostedDependency")


class End:
    """An object at the end of an association, and where its path says that it is.

    Each place is (host, namespace); None for a part that the path lacks. `named` is the place in
    the names that the module hands out, `whole` that of the whole object.
    """

    def __init__(self, name, named, whole=None):
        self.name = name
        self.named = named
        self.whole = whole or named


class World:
    """The objects of the sample as a request in `namespace` sees them."""

    def __init__(self, namespace, host, host_name, server_host, port):
        self.namespace = namespace
        request = (host, namespace)
        fixed = (host, "root/cimv2")
        server = (server_host, namespace)
        nowhere = (None, None)
        self.completed = server  # where the server puts far ends that are nowhere

        def profile(kind, number):
            return End(f'CIM_Registered{kind}.InstanceID="Orvex{number}"', request, fixed)

        def own(class_name, name, more=""):
            return End(f'{class_name}.CreationClassName="{class_name}",Name="{name}",{more}'
                       f'SystemCreationClassName="ORVEX_ObjectManagerHost",SystemName="{host_name}"',
                       server)

        brand = f"cimhost:{port}"
        manager_keys = f'ObjectManagerCreationClassName="CIM_ObjectManager",ObjectManagerName="{brand}",'
        self.profiles = {n: profile("Profile", n) for n in (1, 2, 6)}
        self.subprofiles = {n: profile("SubProfile", n) for n in (3, 4, 5)}
        self.host = End('ORVEX_ObjectManagerHost.CreationClassName="ORVEX_ObjectManagerHost",'
                        f'Name="{host_name}"', fixed)
        self.firmware = End('ORVEX_SoftwareIdentity.InstanceID="OrvexSI1"', fixed)
        self.manager = own("CIM_ObjectManager", brand)
        self.mechanism = own("PG_CIMXMLCommunicationMechanism",
                             f"http://127.0.0.1:{port}")
        self.namespaces = [own("PG_Namespace", name, manager_keys)
                           for name in ("interop", "root/cimv2", "root/PG_InterOp")]
        self.vsans = [End(f'ORVEX_Vsan.CreationClassName="ORVEX_Vsan",Name="{wwn}"', nowhere)
                      for wwn in ("20010005AD000001", "20020005AD000001")]
        self.switch = End('ORVEX_ComputerSystem.CreationClassName="ORVEX_ComputerSystem",'
                          'Name="10000005AD000001"', nowhere)
        self.local_switch = End('ORVEX_PhysicalComputerSystem.Name="localswitch"', nowhere)

    def asked(self, name):
        """The source as the client named it, which some references hand back."""
        return End(name, self.completed)


class Source:
    """A path to start from; what it leads to, by association class.

    `far` are the far ends, `ties` the associations: (role, end, role, end) in the order of the
    properties. `result` says of a result class and an association class whether its far ends are
    delivered, and which.
    """

    def __init__(self, name, far, ties, result=lambda wanted, association, ends: ends):
        self.name = name
        self.far = far
        self.ties = ties
        self.result = result


REQUIRES = {1: (3, 4), 2: (5,), 6: ()}  # the subprofiles of each profile


def profile_source(world, number):
    me = world.profiles.get(number)
    far_elements = {1: world.vsans, 2: [world.local_switch], 6: [world.manager]}
    # References name the switch as a fabric member, associators as the box: as it is meant to be.
    tied_elements = {1: world.vsans, 2: [world.switch], 6: [world.manager]}

    def result(wanted, association, ends):
        if association == "CIM_SubProfileRequiresProfile":
            return ends if wanted in ("", "cim_registeredsubprofile") else []
        return ends

    far = {
        "CIM_SubProfileRequiresProfile": [world.subprofiles[n] for n in REQUIRES.get(number, ())],
        "CIM_ElementConformsToProfile": far_elements.get(number, []),
        # The firmware is delivered for every source, known or not.
        "ORVEX_ElementSoftwareIdentity": [world.firmware],
    }
    ties = {} if me is None else {
        "CIM_SubProfileRequiresProfile": [
            ("Antecedent", me, "Dependent", world.subprofiles[n]) for n in REQUIRES[number]],
        "CIM_ElementConformsToProfile": [
            ("ConformantStandard", me, "ManagedElement", e) for e in tied_elements[number]],
        "ORVEX_ElementSoftwareIdentity": [("Antecedent", world.firmware, "Dependent", me)],
    }
    return Source(f'CIM_RegisteredProfile.InstanceID="Orvex{number}"', far, ties, result)


def subprofile_source(world, number):
    me = world.subprofiles.get(number)
    required = [world.profiles[p] for p, subs in REQUIRES.items() if number in subs]

    def result(wanted, association, ends):
        if association == "CIM_SubProfileRequiresProfile":
            return ends if wanted in ("", "cim_registeredprofile") else []
        return ends

    far = {"CIM_SubProfileRequiresProfile": required,
           "ORVEX_ElementSoftwareIdentity": [world.firmware]}
    ties = {} if me is None else {
        "CIM_SubProfileRequiresProfile": [
            ("Antecedent", p, "Dependent", me) for p in required],
        "ORVEX_ElementSoftwareIdentity": [("Antecedent", world.firmware, "Dependent", me)],
    }
    return Source(f'CIM_RegisteredSubProfile.InstanceID="Orvex{number}"', far, ties, result)


def host_source(world, name, known=True):
    far = {"CIM_HostedService": [world.manager], "CIM_HostedAccessPoint": [world.mechanism]}
    ties = {association: [("Antecedent", world.host, "Dependent", end) for end in ends]
            for association, ends in far.items()}
    return Source(f'ORVEX_ObjectManagerHost.CreationClassName="ORVEX_ObjectManagerHost",'
                  f'Name="{name}"', far if known else {}, ties if known else {})


def manager_source(world, name):
    far = {"CIM_HostedService": [world.host],
           "CIM_NamespaceInManager": world.namespaces,
           "CIM_CommMechanismForManager": [world.mechanism],
           "CIM_ElementConformsToProfile": [world.profiles[6]]}
    ties = {"CIM_HostedService": [("Antecedent", world.host, "Dependent", world.manager)],
            "CIM_NamespaceInManager": [
                ("Antecedent", world.manager, "Dependent", n) for n in world.namespaces],
            "CIM_CommMechanismForManager": [
                ("Antecedent", world.manager, "Dependent", world.mechanism)],
            "CIM_ElementConformsToProfile": [
                ("ManagedElement", world.manager, "ConformantStandard", world.profiles[6])]}
    return Source(name, far, ties)


def mechanism_source(world, name):
    me = world.asked(name)
    return Source(
        name,
        {"CIM_CommMechanismForManager": [world.manager], "CIM_HostedAccessPoint": [world.host]},
        {"CIM_CommMechanismForManager": [("Dependent", me, "Antecedent", world.manager)],
         "CIM_HostedAccessPoint": [("Antecedent", world.host, "Dependent", me)]})


def namespace_source(world, name):
    return Source(
        name, {"CIM_NamespaceInManager": [world.manager]},
        {"CIM_NamespaceInManager": [
            ("Dependent", world.asked(name), "Antecedent", world.manager)]})


def firmware_source(world):
    profiles = list(world.profiles.values())
    subprofiles = list(world.subprofiles.values())

    def result(wanted, _, __):
        return ((profiles if wanted in ("", "cim_registeredprofile") else []) +
                (subprofiles if wanted in ("", "cim_registeredsubprofile") else []))

    association = "ORVEX_ElementSoftwareIdentity"
    return Source('ORVEX_SoftwareIdentity.InstanceID="OrvexSI1"',
                  {association: profiles + subprofiles},
                  {association: [("Antecedent", world.firmware, "Dependent", end)
                                 for end in profiles + subprofiles]}, result)


def sources(world, host):
    return [
        *(profile_source(world, n) for n in (1, 2, 6, 9)),
        *(subprofile_source(world, n) for n in (3, 4, 5, 9)),
        host_source(world, host), host_source(world, "elsewhere", known=False),
        manager_source(world, 'CIM_ObjectManager.Name="whatever"'),
        manager_source(world, world.manager.name),
        mechanism_source(world, 'PG_CIMXMLCommunicationMechanism.Name="whatever"'),
        mechanism_source(world, world.mechanism.name),
        namespace_source(world, 'PG_Namespace.Name="whatever"'),
        *(namespace_source(world, end.name) for end in world.namespaces),
        firmware_source(world),
        # Served only under their other names as sources, or not at all.
        Source('CIM_Namespace.Name="root/cimv2"', {}, {}),
        Source('CIM_CIMXMLCommunicationMechanism.Name="whatever"', {}, {}),
        Source('PG_ObjectManager.Name="whatever"', {}, {}),
        # The key does not name an object of the class.
        Source('CIM_RegisteredProfile.Name="Orvex1"', {}, {}),
    ]


def selected(association):
    """The association classes that a filter selects, in the order of the server."""
    if not association:
        return ASSOCIATIONS
    for name in (*BELOW, *ASSOCIATIONS):
        if name.lower() == association.lower():
            return BELOW.get(name, (name,))
    return ()


def where(place, colon):
    host, namespace = place
    return f"{host}/{namespace}{colon}" if host else ""


def far_line(end, world, whole):
    place = end.whole if whole else end.named
    return where(place if place[0] else world.completed, ":") + end.name


def tie_line(association, tie, place):
    """As wbemcli prints the path of an association: without a colon in its references."""
    keys = ",".join(f"{role}={where(end.named, '')}{end.name}" for role, end in
                    sorted(((tie[0], tie[1]), (tie[2], tie[3])), key=lambda item: item[0]))
    return f"{where(place, ':')}{association}.{keys}"


def ask(*arguments):
    answer = subprocess.run(["wbemcli", *arguments], capture_output=True, text=True, timeout=120,
                            check=False)
    return answer.returncode, answer.stdout.splitlines(), answer.stderr


def paths_only(lines):
    return [line for line in lines if line and not line.startswith("-")]


class Associations(unittest.TestCase):
    maxDiff = None

    @classmethod
    def setUpClass(cls):
        cls.host = module_host(SERVED.address)
        cls.host_name = published_name(f"http://{SERVED.address}")
        cls.server_host = socket.gethostname()

    def each(self, filters):
        """Each source with each filter, in the next namespace each time."""
        worlds = [World(namespace, self.host, self.host_name, self.server_host, SERVED.port)
                  for namespace in NAMESPACES]
        by_world = [sources(world, self.host_name) for world in worlds]
        for number, one in enumerate(filters):
            for turn in range(len(by_world[0])):
                which = (number + turn) % len(worlds)
                yield worlds[which], by_world[which][turn], one

    def answer(self, operation, world, source, *options):
        code, lines, error = ask(operation, "-nl", f"http://{SERVED.address}/{world.namespace}:"
                                 + source.name, *options)
        self.assertEqual((code, error), (0, ""), (operation, source.name, options))
        return lines

    def check_far(self, world, source, expected_by_association, association, *options):
        ends = [end for name in selected(association)
                for end in expected_by_association(name, source.far.get(name, []))]
        filters = (*(("-ac", association) if association else ()), *options)
        for operation, whole in (("ain", False), ("ai", True)):
            with self.subTest(operation=operation, source=source.name, filters=filters,
                              namespace=world.namespace):
                self.assertEqual(
                    paths_only(self.answer(operation, world, source, *filters)),
                    [far_line(end, world, whole) for end in ends])

    def check_ties(self, world, source, association, *options):
        ties = [(name, tie) for name in selected(association)
                for tie in source.ties.get(name, [])]
        filters = (*(("-arc", association) if association else ()), *options)
        place = (self.host, world.namespace)
        for operation in ("rin", "ri"):
            with self.subTest(operation=operation, source=source.name, filters=filters,
                              namespace=world.namespace):
                lines = self.answer(operation, world, source, *filters)
                self.assertEqual(paths_only(lines),
                                 [tie_line(name, tie, place) for name, tie in ties])
                if operation == "ri":
                    self.assertEqual(
                        [line.split("=")[0].lstrip("-") for line in lines if line.startswith("-")],
                        [role for _, tie in ties for role in (tie[0], tie[2])])

    def test_each_association_class_selects_its_far_ends(self):
        for world, source, association in self.each(FILTERS):
            self.check_far(world, source, lambda _, ends: ends, association)

    def test_each_association_class_selects_its_associations(self):
        for world, source, association in self.each(FILTERS):
            self.check_ties(world, source, association)

    def test_the_paths_that_were_printed_are_asked_letter_for_letter(self):
        for namespace in NAMESPACES:
            world = World(namespace, self.host, self.host_name, self.server_host, SERVED.port)
            by_name = {source.name: source for source in sources(world, self.host_name)}
            for class_name in ("CIM_RegisteredProfile", "CIM_ObjectManager", "CIM_Namespace",
                               "CIM_CIMXMLCommunicationMechanism", "ORVEX_ObjectManagerHost",
                               "ORVEX_SoftwareIdentity"):
                _, printed, _ = ask("ein", f"http://{SERVED.address}/{namespace}:{class_name}")
                self.assertTrue(printed, class_name)
                for path in printed:
                    source = by_name[path.split(f"/{namespace}:", 1)[1]]
                    with self.subTest(path=path):
                        self.assertEqual(
                            ask("ain", "http://" + path),
                            (0, [far_line(end, world, whole=False) for name in ASSOCIATIONS
                                 for end in source.far.get(name, [])], ""))

    def test_filters_are_read_in_any_letter_case(self):
        for world, source, association in self.each(("cim_hostedservice", "orvex_elementsoftwareidentity")):
            self.check_far(world, source, lambda _, ends: ends, association)
            self.check_ties(world, source, association)

    def test_result_classes_narrow_only_what_they_are_meant_to(self):
        for world, source, wanted in self.each((
                "CIM_RegisteredProfile", "CIM_RegisteredSubProfile", "CIM_Namespace",
                "ORVEX_SoftwareIdentity", "cim_registeredsubprofile")):
            self.check_far(
                world, source,
                lambda name, ends, s=source, w=wanted.lower(): s.result(w, name, ends) if ends else ends,
                "", "-arc", wanted)

    def test_roles_never_filter(self):
        for world, source, role in self.each(("Antecedent", "Dependent", "NoSuchRole")):
            self.check_far(world, source, lambda _, ends: ends, "", "-ar", role)
            self.check_ties(world, source, "", "-ar", role)
        for world, source, role in self.each(("Dependent",)):
            self.check_far(world, source, lambda _, ends: ends, "", "-arr", role)

    def test_what_cannot_be_asked_is_refused(self):
        refused = (
            ('CIM_NoSuch.Name="x"', (), "(4) CIM_ERR_INVALID_PARAMETER: CIM_NoSuch"),
            ('CIM_RegisteredProfile.InstanceID="Orvex1"', ("-ac", "CIM_NoSuch"),
             "(4) CIM_ERR_INVALID_PARAMETER: CIM_NoSuch"),
            ('CIM_RegisteredProfile.InstanceID="Orvex1"', ("-arc", "CIM_NoSuch"),
             "(5) CIM_ERR_INVALID_CLASS: CIM_NoSuch"),
            ('CIM_RegisteredProfile.InstanceID="Orvex1"', ("-ar", "no-role"),
             "(4) CIM_ERR_INVALID_PARAMETER: role no-role"),
            ('CIM_RegisteredProfile.InstanceID="Orvex1"', ("-arr", "no-role"),
             "(4) CIM_ERR_INVALID_PARAMETER: resultrole no-role"),
        )
        for name, options, message in refused:
            with self.subTest(source=name, options=options):
                code, _, error = ask(
                    "ain", f"http://{SERVED.address}/root/cimv2:{name}", *options)
                self.assertEqual(code, 16)
                self.assertIn(message, error)


if __name__ == "__main__":
    build = sys.argv.pop(1)
    with Served(build) as SERVED:
        program = unittest.main(exit=False)
    sys.exit(not program.result.wasSuccessful())
