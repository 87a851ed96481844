#!/usr/bin/env python3
"""Meets a server that serves the sample switch as an SMI-S script does: finds it with pywbem's
discovery, and follows the profile "Server" by the very paths that it is given. A warning is a failure.

usage: pywbem_walk.py HOST:PORT NAMESPACE...

The server may be any that serves the module; the namespaces are those in which it is whole.
"""

import collections
import sys
import unittest
import warnings

import pywbem

URL = None
HOW = {}  # what WBEMConnection takes besides
NAMESPACES = ()

PROFILES = ("Fabric", "Switch", "Server", "Zone Control",
            "Enhanced Zoning and Enhanced Zoning Control", "Blades")

# What is enumerated where it is asked for: the objects of a kind, and how many there are.
KINDS = {
    "profile": ("CIM_RegisteredProfile", len(PROFILES)),
    "manager": ("CIM_ObjectManager", 1),
    "namespace": ("CIM_Namespace", None),
    "mechanism": ("CIM_ObjectManagerCommunicationMechanism", None),
    "host": ("ORVEX_ObjectManagerHost", 1),
    "firmware": ("ORVEX_SoftwareIdentity", 1),
}
# Whose objects each kind leads to, all of them, by association class.
HOPS = {
    "Server": {"CIM_ElementConformsToProfile": "manager",
               "ORVEX_ElementSoftwareIdentity": "firmware"},
    "profile": {"ORVEX_ElementSoftwareIdentity": "firmware"},
    "manager": {"CIM_ElementConformsToProfile": "Server", "CIM_NamespaceInManager": "namespace",
                "CIM_CommMechanismForManager": "mechanism", "CIM_HostedService": "host"},
    "namespace": {"CIM_NamespaceInManager": "manager"},
    "mechanism": {"CIM_CommMechanismForManager": "manager", "CIM_HostedAccessPoint": "host"},
    "host": {"CIM_HostedService": "manager", "CIM_HostedAccessPoint": "mechanism"},
    "firmware": {"ORVEX_ElementSoftwareIdentity": "profile"},
}
# Kinds of which nothing else is tied to an object, so that a question without a filter adds nothing.
WHOLE = set(HOPS) - {"profile"}
# Kinds whose paths say root/cimv2 wherever they are asked for: always, or as whole objects.
FIXED = {"host", "firmware"}
FIXED_WHOLE = FIXED | {"profile", "Server"}


def use(url, namespaces, **how):
    """Says which server is walked, how it is reached, and where."""
    global URL, HOW, NAMESPACES  # pylint: disable=global-statement
    URL, HOW, NAMESPACES = url, how, tuple(namespaces)


def connection(namespace=None):
    return pywbem.WBEMConnection(URL, default_namespace=namespace, **HOW)


def identity(path):
    """What an object is by its class and keys, wherever its path says that it is."""
    keys = {name.lower(): identity(value) if isinstance(value, pywbem.CIMInstanceName) else value
            for name, value in path.keybindings.items()}
    return path.classname.lower(), frozenset(keys.items())


class Discovery(unittest.TestCase):
    def setUp(self):
        warnings.simplefilter("error")
        self.server = pywbem.WBEMServer(connection())

    def test_finds_the_interop_namespace(self):
        self.assertEqual(self.server.interop_ns, "interop")

    def test_finds_the_namespaces_of_the_profile(self):
        self.assertLessEqual(set(NAMESPACES), set(self.server.namespaces))

    def test_lists_the_profiles_of_the_switch(self):
        self.assertEqual(
            sorted((p["RegisteredName"], p["RegisteredVersion"]) for p in self.server.profiles),
            sorted((name, "1.1.0") for name in PROFILES))

    def test_reads_the_registered_organization_from_the_schema(self):
        found = self.server.get_selected_profiles(registered_org="SNIA", registered_name="Server")
        self.assertEqual([p.path["InstanceID"] for p in found], ["Orvex6"])

    def test_finds_what_conforms_to_each_profile(self):
        # The switch is conformed to by the box.
        expected = {"Fabric": ("ORVEX_Vsan", 2), "Switch": ("ORVEX_PhysicalComputerSystem", 1),
                    "Server": ("CIM_ObjectManager", 1)}
        for name, (class_name, count) in expected.items():
            with self.subTest(profile=name):
                published = connection("interop").EnumerateInstanceNames(class_name)
                self.assertEqual(len(published), count)
                if name == "Switch" and self.server.brand == "OpenPegasus":
                    self.check_box_of_a_repository(published)
                    continue
                central = self.central(name)
                self.assertEqual(collections.Counter(map(identity, central)),
                                 collections.Counter(map(identity, published)))
                for path in central:
                    # Each can be got from where its path says that it is.
                    found = connection(path.namespace).GetInstance(path)
                    self.assertEqual(found.classname, path.classname)

    def central(self, name):
        profile, = self.server.get_selected_profiles(registered_org="SNIA", registered_name=name)
        return self.server.get_central_instances(profile.path)

    def check_box_of_a_repository(self, published):
        """To the module OpenPegasus gives an object of its repository, where the sample's box lies,
        without the keys of its path. A box with a provider has them."""
        with self.assertWarns(pywbem.MissingKeybindingsWarning):
            path, = self.central("Switch")
        self.assertEqual((path.classname, len(path.keybindings)), (published[0].classname, 0))


class Published:
    """The identities of the objects that are enumerated in a namespace, by kind."""

    def __init__(self, namespace):
        client = connection(namespace)
        self.namespace = namespace
        self.paths = {kind: client.EnumerateInstanceNames(class_name)
                      for kind, (class_name, _) in KINDS.items()}
        server, = (p.path for p in client.EnumerateInstances("CIM_RegisteredProfile")
                   if p["RegisteredName"] == "Server")
        self.server = next(p for p in self.paths["profile"] if identity(p) == identity(server))
        self.identities = {kind: set(map(identity, paths)) for kind, paths in self.paths.items()}
        self.identities["Server"] = {identity(self.server)}

    def kind(self, path):
        """The kind of an object that is enumerated."""
        return next(kind for kind in HOPS if identity(path) in self.identities[kind])


class Follows(unittest.TestCase):
    """From the profile "Server" on, with all four operations, by each path that comes back."""

    questions = 0
    followed = 0

    @classmethod
    def setUpClass(cls):
        warnings.simplefilter("error")
        cls.published = {namespace: Published(namespace) for namespace in NAMESPACES}

    def test_each_kind_is_published(self):
        for published in self.published.values():
            for kind, (_, count) in KINDS.items():
                with self.subTest(kind=kind, namespace=published.namespace):
                    found = published.paths[kind]
                    self.assertEqual(len(found), count or max(len(found), 1))
            names = {path["Name"] for path in published.paths["namespace"]}
            self.assertLessEqual(set(NAMESPACES), names)

    def test_every_path_that_comes_back_leads_on(self):
        for namespace, start in self.published.items():
            with self.subTest(namespace=namespace):
                client = connection(namespace)
                waiting, seen, reached = [start.server], {str(start.server)}, set()
                while waiting:
                    path = waiting.pop()
                    reached.add(identity(path))
                    for found in self.hops(client, path, path.namespace or namespace):
                        if str(found) not in seen:
                            seen.add(str(found))
                            waiting.append(found)
                self.assertEqual(reached, set.union(*start.identities.values()))
                Follows.followed += len(seen)

    def hops(self, client, path, namespace):
        """All paths that come back from `path`, which is asked in `namespace`."""
        published = self.published[namespace]
        kind = published.kind(path)
        questions = {association: (far,) for association, far in HOPS[kind].items()}
        if kind in WHOLE:
            questions[None] = HOPS[kind].values()
        back = []
        for association, kinds in questions.items():
            expected = collections.Counter(
                end for far in kinds for end in published.identities[far])
            for ask in (self.far_ends, self.ties):
                with self.subTest(path=str(path), association=association):
                    back += ask(client, path, published, association, expected)
        return back

    def ask(self, operation, path, **wanted):
        Follows.questions += 1
        return operation(path, **wanted)

    def far_ends(self, client, path, published, association, expected):
        names = self.ask(client.AssociatorNames, path, AssocClass=association)
        self.check(names, published, expected, FIXED)
        objects = self.ask(client.Associators, path, AssocClass=association)
        self.check([found.path for found in objects], published, expected, FIXED_WHOLE)
        for found in objects:
            keys = found.path.keybindings
            self.assertEqual({name: found[name] for name in keys}, dict(keys.items()))
        return [*names, *(found.path for found in objects)]

    def ties(self, client, path, published, association, expected):
        names = self.ask(client.ReferenceNames, path, ResultClass=association)
        objects = self.ask(client.References, path, ResultClass=association)
        self.assertEqual(collections.Counter(map(identity, names)),
                         collections.Counter(identity(found.path) for found in objects))
        ends = []
        for tie in (*(name.keybindings for name in names), *objects):
            first, second = (value for value in tie.values()
                             if isinstance(value, pywbem.CIMInstanceName))
            if identity(first) != identity(path):
                first, second = second, first
            self.assertEqual(identity(first), identity(path))
            ends.append((first, second))
        for half in (ends[:len(names)], ends[len(names):]):
            self.check([second for _, second in half], published, expected, FIXED)
        return [end for both in ends for end in both]

    def check(self, paths, published, expected, fixed):
        self.assertEqual(collections.Counter(map(identity, paths)), expected)
        for path in paths:
            self.assertEqual(
                path.namespace,
                "root/cimv2" if published.kind(path) in fixed else published.namespace, path)


if __name__ == "__main__":
    if len(sys.argv) < 3 or sys.argv[1].startswith("-"):
        sys.exit(__doc__)
    use(f"http://{sys.argv[1]}", sys.argv[2:])
    program = unittest.main(argv=sys.argv[:1], exit=False)
    print(f"{Follows.questions} questions, {Follows.followed} paths followed")
    sys.exit(not program.result.wasSuccessful())
