#!/usr/bin/env python3
"""Every association tells one story, however it is walked - but for what is listed here.

What enumerating an association class says is held against its names, its instances got one by one,
and the references and far ends from each end, asked under each class that the end can be asked
under. A difference that is not in the table fails, and so does one that is there and is gone.

usage: one_story_test.py BUILD-DIRECTORY [unittest arguments]
"""

import socket
import sys
import unittest

sys.path.insert(1, sys.path[0] + "/../kit")

from cimxml import Client, references
from letters import ENDS, label
from served import NAMESPACES, Served

SERVED = None

# What enumerating each class must say, so that no two empty stories agree.
TOLD = {
    "CIM_SubProfileRequiresProfile": "P1>P3 P1>P4 P2>P5",
    "CIM_ElementConformsToProfile": "P1>V1 P1>V2 P2>S P6>M",
    "CIM_HostedService": "H>M",
    "CIM_HostedAccessPoint": "H>X",
    "CIM_NamespaceInManager": "M>N1 M>N2 M>N3",
    "CIM_CommMechanismForManager": "M>X",
    "ORVEX_ElementSoftwareIdentity": "F>P1 F>P2 F>P6 F>P3 F>P4 F>P5",
}
# Objects of the server's own classes may be asked under their superclasses, too.
SUPERCLASS = {
    "PG_Namespace": "CIM_Namespace",
    "PG_CIMXMLCommunicationMechanism": "CIM_CIMXMLCommunicationMechanism",
}

FAR = ("associator names", "associators")
TIES = ("reference names", "references", "references' names")


def views(sources, operations):
    return [f"from {source}: {operation}" for source in sources for operation in operations]


# (association classes, views, aspect, what enumerating says, what the view says, why). REQUEST is
# the request's namespace; HOST the machine as the module names it, SERVER as the server does. A
# difference that comes down to none, in a namespace or on a machine, is none there.
DIFFERENCES = [
    # Who can be asked.
    (["CIM_HostedAccessPoint", "CIM_CommMechanismForManager"],
     views(["CIM_CIMXMLCommunicationMechanism"], (*FAR, *TIES)), "answer", "told", "nothing",
     "the mechanism is a source under its own class alone"),
    (["CIM_NamespaceInManager"],
     views(["CIM_Namespace"], (*FAR, *TIES)), "answer", "told", "nothing",
     "a namespace is a source under its own class alone"),
    (["CIM_ElementConformsToProfile"],
     views(["ORVEX_Vsan", "ORVEX_ComputerSystem"], (*FAR, *TIES)), "answer", "told", "nothing",
     "elements of other providers are no sources"),

    # Which objects.
    (["CIM_ElementConformsToProfile"], views(["CIM_RegisteredProfile"], FAR),
     "ends", "P2>S", "P2>L",
     "the far end of the Switch profile is the box, its associations name the fabric member"),

    # Where they are.
    (["CIM_ElementConformsToProfile"], views(["CIM_RegisteredProfile"], FAR),
     "ManagedElement place", "nowhere", "SERVER/REQUEST",
     "the server completes a path that is an answer, but not one inside an answer"),
    (["CIM_SubProfileRequiresProfile"], views(["CIM_RegisteredProfile"], ["associators"]),
     "Dependent place", "HOST/REQUEST", "HOST/root/cimv2",
     "whole profiles stay where the catalogue has them, names follow the request"),
    (["CIM_SubProfileRequiresProfile"], views(["CIM_RegisteredSubProfile"], ["associators"]),
     "Antecedent place", "HOST/REQUEST", "HOST/root/cimv2", "as before"),
    (["CIM_ElementConformsToProfile"], views(["CIM_ObjectManager"], ["associators"]),
     "ConformantStandard place", "HOST/REQUEST", "HOST/root/cimv2", "as before"),
    (["ORVEX_ElementSoftwareIdentity"], views(["ORVEX_SoftwareIdentity"], ["associators"]),
     "Dependent place", "HOST/REQUEST", "HOST/root/cimv2", "as before"),
    (["CIM_HostedService", "CIM_HostedAccessPoint", "ORVEX_ElementSoftwareIdentity"], ["get"],
     "Antecedent place", "HOST/root/cimv2", "HOST/REQUEST",
     "getting echoes the ends that the client names, into the request's namespace"),
    (["CIM_ElementConformsToProfile"], ["get"],
     "ManagedElement place", "nowhere", "HOST/REQUEST", "as before"),
    (["CIM_ElementConformsToProfile"], ["get"],
     "ManagedElement place", "SERVER/REQUEST", "HOST/REQUEST", "as before, and onto the host"),
    (["CIM_HostedService", "CIM_HostedAccessPoint", "CIM_NamespaceInManager",
      "CIM_CommMechanismForManager"], ["get"],
     "Dependent place", "SERVER/REQUEST", "HOST/REQUEST", "as before"),
    (["CIM_NamespaceInManager", "CIM_CommMechanismForManager"], ["get"],
     "Antecedent place", "SERVER/REQUEST", "HOST/REQUEST", "as before"),

    # How they are declared, and in which order.
    (["CIM_ElementConformsToProfile"], views(["CIM_ObjectManager"], ["references"]),
     "property order", "ConformantStandard,ManagedElement", "ManagedElement,ConformantStandard",
     "the source stands first"),
    (["CIM_NamespaceInManager"], views(["PG_Namespace"], ["references"]),
     "property order", "Antecedent,Dependent", "Dependent,Antecedent", "the source stands first"),
    (["CIM_CommMechanismForManager"],
     views(["PG_CIMXMLCommunicationMechanism"], ["references"]),
     "property order", "Antecedent,Dependent", "Dependent,Antecedent", "the source stands first"),
]


class Tie:
    """One association as one way of asking tells it; what that way does not tell is left out."""

    def __init__(self, association, ends, classes=None, **more):
        roles = ENDS[association][1:]
        self.ends = ends
        self.aspects = {"ends": ">".join(map(label, ends)), **more}
        for role, end in zip(roles, ends):
            self.aspects[f"{role} place"] = "/".join(
                part for part in (end.host, end.namespace) if part) or "nowhere"
        for role, name in zip(roles, classes or ()):
            self.aspects[f"{role} class"] = name

    @classmethod
    def of_name(cls, association, name):
        roles = ENDS[association][1:]
        more = {"place": f"{name.host}/{name.namespace}"} if name.host else {}
        return cls(association, [name.key(role) for role in roles],
                   **{"key order": ",".join(key.name for key in name.keys)}, **more)

    @classmethod
    def of_object(cls, association, found):
        roles = ENDS[association][1:]
        ends = references(found)
        return cls(association, [ends[role][1] for role in roles], [ends[role][0] for role in roles],
                   **{"property order": ",".join(ends)})


class Story:
    """Walks one association class in one namespace and collects where the answers differ."""

    def __init__(self, client, association, place):
        self.client = client
        self.association = association
        self.place = place  # of associations
        self.differences = set()

    def compare(self, view, enumerated, told):
        if not told:
            self.differences.add((self.association, view, "answer", "told", "nothing"))
            return
        if len(told) != len(enumerated):
            self.differences.add((self.association, view, "answer",
                                  *(" ".join(tie.aspects["ends"] for tie in ties)
                                    for ties in (enumerated, told))))
            return
        for base, tie in zip(enumerated, told):
            for aspect in base.aspects.keys() & tie.aspects.keys():
                if base.aspects[aspect] != tie.aspects[aspect]:
                    self.differences.add((self.association, view, aspect,
                                          base.aspects[aspect], tie.aspects[aspect]))

    def names(self, found):
        return [Tie.of_name(self.association, name) for name in found]

    def objects(self, found):
        return [Tie.of_object(self.association, one) for one in found]

    def walk(self):
        """The associations as enumerated, after all has been compared with them."""
        found = self.client.enumerate(self.association)
        names = self.client.enumerate_names(self.association)
        enumerated = self.objects(found)
        for tie, one in zip(enumerated, found):
            tie.aspects["key order"] = ",".join(key.name for key in one.path.keys)
            tie.aspects["place"] = self.place
        self.compare("names", enumerated, self.names(names))
        self.compare("instances' names", enumerated, self.names([one.path for one in found]))
        self.compare("get", enumerated, self.objects([self.client.get(name) for name in names]))
        for index in (0, 1):
            for source in {label(tie.ends[index]): tie.ends[index] for tie in enumerated}.values():
                chosen = [tie for tie in enumerated if label(tie.ends[index]) == label(source)]
                for name in filter(None, (source.class_name, SUPERCLASS.get(source.class_name))):
                    self.walk_from(source._replace(class_name=name), index, chosen)
        return enumerated

    def walk_from(self, source, index, enumerated):
        client, association = self.client, self.association

        def far(paths):
            # Each far end in the place of the one enumerated; the near end is the question's.
            return [Tie(association, [path if i != index else enumerated[0].ends[index]
                                      for i in (0, 1)]) for path in paths]

        found = client.references(source, association)
        for operation, told in (
                ("associator names", far(client.associator_names(source, association))),
                ("associators", far([o.path for o in client.associators(source, association)])),
                ("reference names", self.names(client.reference_names(source, association))),
                ("references", self.objects(found)),
                ("references' names", self.names([one.path for one in found]))):
            self.compare(f"from {source.class_name}: {operation}", enumerated, told)


def expected(association, words):
    rows = set()
    for associations, where, aspect, enumerated, told, _ in DIFFERENCES:
        for word, meaning in words.items():
            enumerated, told = enumerated.replace(word, meaning), told.replace(word, meaning)
        if association in associations and enumerated != told:
            rows.update((association, view, aspect, enumerated, told) for view in where)
    return rows


class OneStory(unittest.TestCase):
    maxDiff = None

    def test_is_told_but_for_the_differences_listed(self):
        for namespace in NAMESPACES:
            client = Client(SERVED.address, namespace)
            words = {"REQUEST": namespace,
                     "HOST": client.enumerate_names("ORVEX_ObjectManagerHost")[0].key("Name"),
                     "SERVER": socket.gethostname()}
            for association, told in TOLD.items():
                with self.subTest(association=association, namespace=namespace):
                    story = Story(client, association, f"{words['HOST']}/{namespace}")
                    enumerated = story.walk()
                    self.assertEqual(
                        " ".join(tie.aspects["ends"] for tie in enumerated), told)
                    listed = expected(association, words)
                    self.assertEqual(sorted(story.differences - listed), [], "not in the table")
                    self.assertEqual(sorted(listed - story.differences), [], "gone")


if __name__ == "__main__":
    build = sys.argv.pop(1)
    with Served(build) as SERVED:
        program = unittest.main(exit=False)
    sys.exit(not program.result.wasSuccessful())
