#!/usr/bin/env python3
"""Walks the served sample switch as a storage management tool does, with wbemcli: from the registered
profiles to what conforms to them, their subprofiles, the object manager, its host and the firmware.

Shows what is asked and answered in root/cimv2, and checks it there and in root/PG_InterOp. Every
wrong answer is named where it comes, and makes the exit code 1.
"""

import argparse
import dataclasses
import pathlib
import re
import shlex
import socket
import subprocess
import sys

import walk_graph
import wbem

PROFILE, SUBPROFILE = "CIM_RegisteredProfile", "CIM_RegisteredSubProfile"
CONFORMS = "CIM_ElementConformsToProfile"
REQUIRES = "CIM_SubProfileRequiresProfile"
NAMESPACE_OF = "CIM_NamespaceInManager"
MECHANISM_OF = "CIM_CommMechanismForManager"
HOSTED_SERVICE = "CIM_HostedService"
HOSTED_ACCESS = "CIM_HostedAccessPoint"
IMPLEMENTS = "ORVEX_ElementSoftwareIdentity"


def registered(class_name, instance_id, name):
    return (class_name, instance_id,
            {"RegisteredName": f'"{name}"', "RegisteredVersion": '"1.1.0"'})


# What there is: class, value of the telling key, properties as wbemcli prints them. A value in
# braces is the server's to choose; the first answer that has it decides for all later ones.
OBJECTS = {
    "Fabric": registered(PROFILE, "Orvex1", "Fabric"),
    "Switch": registered(PROFILE, "Orvex2", "Switch"),
    "Server": registered(PROFILE, "Orvex6", "Server"),
    "Zone Control": registered(SUBPROFILE, "Orvex3", "Zone Control"),
    "Enhanced Zoning": registered(SUBPROFILE, "Orvex4",
                                  "Enhanced Zoning and Enhanced Zoning Control"),
    "Blades": registered(SUBPROFILE, "Orvex5", "Blades"),
    "VSAN 1": ("ORVEX_Vsan", "20010005AD000001", {"ElementName": '"VSAN 1"'}),
    "VSAN 2": ("ORVEX_Vsan", "20020005AD000001", {"ElementName": '"VSAN 2"'}),
    "box": ("ORVEX_PhysicalComputerSystem", "localswitch", {"ElementName": '"sample-switch"'}),
    "switch in fabric": ("ORVEX_ComputerSystem", "10000005AD000001", {}),
    "manager": ("PG_ObjectManager", "{manager}",
                {"ElementName": '"cimhost"', "OperationalStatus": "2", "Started": "TRUE"}),
    "mechanism": ("PG_CIMXMLCommunicationMechanism", "{mechanism}",
                  {"CommunicationMechanism": "2"}),
    "interop": ("PG_Namespace", "root/PG_InterOp", {}),
    "cimv2": ("PG_Namespace", "root/cimv2", {}),
    "host": ("ORVEX_ObjectManagerHost", "{host}", {"OperationalStatus": "2"}),
    "firmware": ("ORVEX_SoftwareIdentity", "OrvexSI1",
                 {"Name": '"Kelmar"', "Manufacturer": '"Orvex Systems"', "VersionString": '"3.0"',
                  "Classifications": "10"}),
}
PROFILES = ("Fabric", "Switch", "Server")
SUBPROFILES = ("Zone Control", "Enhanced Zoning", "Blades")

# Classes under which an object is asked when its path names another, which is not served.
ASKED_AS = {"manager": "CIM_ObjectManager"}


@dataclasses.dataclass(frozen=True)
class Step:
    """A question: from `source` (a class to enumerate, or an object above) along `association`, or
    an enumeration without. `expected` names the objects of the answer; `referenced` those at the
    far ends of the associations themselves, where they are others."""

    source: str
    association: str
    expected: tuple
    properties: str = ""  # those to ask for, separated by commas; none: only names are asked for
    referenced: tuple = None
    shown: bool = True
    note: str = ""


SECTIONS = (
    ("Registered profiles and subprofiles", (
        Step(PROFILE, "", PROFILES + SUBPROFILES, "RegisteredName,RegisteredVersion"),)),
    ("What conforms to each profile", (
        Step("Fabric", CONFORMS, ("VSAN 1", "VSAN 2"), "ElementName"),
        Step("Switch", CONFORMS, ("box",), "ElementName", referenced=("switch in fabric",),
             note="The far end is the switch as a box; the associations themselves name it as a "
                  "member of its fabrics, an ORVEX_ComputerSystem."),
        Step("Server", CONFORMS, ("manager",), "ElementName"))),
    ("The subprofiles of each profile", (
        Step("Fabric", REQUIRES, ("Zone Control", "Enhanced Zoning"), "RegisteredName"),
        Step("Switch", REQUIRES, ("Blades",), "RegisteredName"),
        Step("Server", REQUIRES, (), "RegisteredName"),
        *(Step(subprofile, REQUIRES, (profile,), shown=False) for subprofile, profile in
          (("Zone Control", "Fabric"), ("Enhanced Zoning", "Fabric"), ("Blades", "Switch"))))),
    ("The object manager", (
        Step("CIM_ObjectManager", "", ("manager",),
             "ElementName,Description,OperationalStatus,Started",
             note="The path that the server returns is of its own class PG_ObjectManager. The "
                  "module serves associations from CIM_ObjectManager, so what follows asks from "
                  "that class with the same keys."),
        Step("manager", CONFORMS, ("Server",), shown=False))),
    ("Its namespaces", (
        Step("manager", NAMESPACE_OF, ("interop", "cimv2"), "Name"),
        Step("interop", NAMESPACE_OF, ("manager",), shown=False),
        Step("cimv2", NAMESPACE_OF, ("manager",), shown=False))),
    ("How to talk to it", (
        Step("manager", MECHANISM_OF, ("mechanism",), "CommunicationMechanism,Name"),
        Step("mechanism", MECHANISM_OF, ("manager",), shown=False))),
    ("The host that they run on", (
        Step("manager", HOSTED_SERVICE, ("host",), "Name,OperationalStatus"),
        Step("mechanism", HOSTED_ACCESS, ("host",)),
        Step("ORVEX_ObjectManagerHost", "", ("host",), "CreationClassName,Name,OperationalStatus"),
        Step("host", HOSTED_SERVICE, ("manager",), shown=False),
        Step("host", HOSTED_ACCESS, ("mechanism",), shown=False))),
    ("The firmware, and what it implements", (
        Step("ORVEX_SoftwareIdentity", "", ("firmware",),
             "InstanceID,Name,VersionString,Manufacturer,Classifications"),
        Step("firmware", IMPLEMENTS, PROFILES + SUBPROFILES),
        *(Step(each, IMPLEMENTS, ("firmware",), shown=False) for each in PROFILES + SUBPROFILES))),
)


def typed(command):
    """The command as a person can type it again."""
    return " ".join(f"'{word}'" if word.startswith("http") else shlex.quote(word)
                    for word in command)


class Walk:
    """The walk in one namespace. `learnt` holds the values in braces, shared by all walks."""

    def __init__(self, server, namespace, learnt, shown, run=wbem.run, say=print):
        self.server = server
        self.namespace = namespace
        self.learnt = learnt
        self.shown = shown
        self.run = run
        self.say = say
        self.asked = 0
        self.wrong = 0
        self.met = {}  # object of OBJECTS -> its Path
        self.graph = walk_graph.Graph()

    def step(self, step):
        if step.source in OBJECTS and step.source not in self.met:
            self.is_wrong(f"cannot ask from {step.source} in {self.namespace}: "
                          "no answer has named it")
            return
        if step.association:
            operation = "ai" if step.properties else "ain"
            target, options = self.source(step), ("-ac", step.association)
        else:
            operation, target, options = "ei", step.source, ()
        command = self.command(operation, target, *options, properties=step.properties)
        found = self.ask(command, step.shown)
        if found is not None:
            self.compare(command, [each.what for each in found], self.expect(found, step.expected))
            self.compare_properties(command, found, step)
            if step.association:
                near = self.met[step.source]
                for each in found:
                    self.graph.far_end(step.association, near, each.what)
        if step.note and self.shown:
            self.say(f"  ({step.note})")
        if step.association:
            self.references(step)

    def references(self, step):
        """Checks that the associations themselves tell what following them told."""
        command = self.command("rin", self.source(step), "-arc", step.association)
        found = self.ask(command, False)
        if found is None:
            return
        ends, near = [], self.met[step.source]
        for each in found:
            if not isinstance(each.what, wbem.Association):
                self.is_wrong(f"{typed(command)}: {each.what} is no association")
                continue
            self.graph.association(each.what)
            paths = [end for _, end in each.what.ends]
            far = [end for end in paths if str(end) != str(near)]
            if each.what.class_name != step.association or len(paths) != 2 or len(far) != 1:
                self.is_wrong(f"{typed(command)}: {each.what} is not between {near} and "
                              "another object")
            ends += far
        expected = step.expected if step.referenced is None else step.referenced
        self.compare(command, ends, [self.name(each) for each in expected])

    # What is asked

    def source(self, step):
        return self.met[step.source].text(ASKED_AS.get(step.source, ""))

    def command(self, operation, target, *options, properties=""):
        lines = ("-nl",) if operation == "ei" or properties else ()
        return ["wbemcli", operation, *lines, *options,
                f"http://{self.server}/{self.namespace}:{target}",
                *((properties,) if properties else ())]

    def ask(self, command, shown):
        """The Found objects of the answer, or None if there is no answer."""
        shown = shown and self.shown
        if shown:
            self.say(f"\n$ {typed(command)}")
        self.asked += 1
        try:
            lines = self.run(command[1:])
        except wbem.Refused as refused:
            self.is_wrong(f"{typed(command)}: no answer: {refused}")
            return None
        if shown:
            self.say("\n".join(f"  {line}".rstrip() for line in lines if line) or "  (nothing)")
        return wbem.read(lines)

    # What is expected

    def name(self, label):
        """An object of OBJECTS as a Path's str() has it."""
        class_name, key, _ = OBJECTS[label]
        return f'{class_name} "{self.learnt.get(key, key)}"'

    def expect(self, found, labels):
        """The names of the expected objects; learns what is the server's to choose, and keeps the
        paths of those that came."""
        names = []
        for label in labels:
            class_name, key, _ = OBJECTS[label]
            of_class = [each.what for each in found
                        if isinstance(each.what, wbem.Path) and each.what.class_name == class_name]
            if key.startswith("{") and key not in self.learnt and of_class:
                self.learnt[key] = of_class[0].telling[1]
            names.append(self.name(label))
            for what in of_class:
                if str(what) == names[-1]:
                    self.met.setdefault(label, what)
        return names

    def compare(self, command, found, expected):
        found = [str(what) for what in found]
        for name in sorted(set(found) | set(expected)):
            have, wanted = found.count(name), expected.count(name)
            if have < wanted:
                self.is_wrong(f"{typed(command)}: {name} is missing")
            elif have > wanted:
                self.is_wrong(f"{typed(command)}: {name} is too much")

    def compare_properties(self, command, found, step):
        by_name = {str(each.what): each for each in found}
        for label in step.expected:
            each = by_name.get(self.name(label))
            if each is None:
                continue
            self.graph.title(each.what, each.properties)
            keys = {name: f'"{value}"' for name, value in each.what.keys}
            for name in filter(None, step.properties.split(",")):
                have = each.properties.get(name)
                value = OBJECTS[label][2].get(name, keys.get(name, have))
                if have is None or have != value:
                    self.is_wrong(f"{typed(command)}: {name} of {each.what} is {have}"
                                  + (f", not {value}" if value is not None else ""))

    def is_wrong(self, text):
        self.wrong += 1
        self.say(f"WRONG: {text}")


def canonical_name():
    """This machine's name as its resolver has it; empty, as the host publishes it then, when the
    resolver does not know the machine."""
    try:
        return socket.gethostbyname_ex(socket.gethostname())[0]
    except OSError:
        return ""


def walk(server, run=wbem.run, say=print):
    """Walks both namespaces of the server at HOST:PORT. Returns the walks, the shown one first."""
    learnt = {}
    walks = [Walk(server, namespace, learnt, namespace == wbem.NAMESPACES[0], run, say)
             for namespace in wbem.NAMESPACES]
    for title, steps in SECTIONS:
        say(f"\n== {title}")
        for step in steps:
            for each in walks:
                each.step(step)
        if not any(each.met for each in walks):
            return walks  # nothing to go on from: more of it would only hide why
    host = learnt.get("{host}", "")
    if server.startswith("127.") and host != canonical_name():
        walks[0].is_wrong(f'the host is "{host}", but this machine is "{canonical_name()}"')
    return walks


def stable(server, learnt):
    """A function that replaces in the value of a key what differs from machine to machine."""
    port = server.rpartition(":")[2]

    def replace(value):
        if value == learnt.get("{host}"):
            return "switch"
        return re.sub(f":{port}$", ":5988", value)
    return replace


def draw(arguments, seen):
    replace = stable(arguments.server, seen.learnt) if arguments.stable else str
    try:
        walk_graph.write(seen.graph.dot(replace), arguments.draw)
    except (OSError, subprocess.CalledProcessError) as error:
        print(f"walk: no picture {arguments.draw}.svg: {error} (is Graphviz installed?)",
              file=sys.stderr)
        return False
    print(f"\nThe walk as a picture: {arguments.draw}.svg")
    return True


def main():
    parser = argparse.ArgumentParser(description=__doc__,
                                     formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("server", metavar="HOST:PORT", help="where the sample switch is served")
    parser.add_argument("--draw", metavar="BASE", type=pathlib.Path,
                        help="draw what was seen into BASE.dot and BASE.svg (needs Graphviz)")
    parser.add_argument("--stable", action="store_true",
                        help="draw it with the host name and port that the documentation has")
    arguments = parser.parse_args()

    walks = walk(arguments.server)
    drawn = arguments.draw is None or draw(arguments, walks[0])

    asked, wrong = sum(each.asked for each in walks), sum(each.wrong for each in walks)
    print(f"\n{asked} questions asked in {' and '.join(wbem.NAMESPACES)}: each question above in "
          "both, each\nassociation from both of its ends where it can be, and the associations "
          "themselves.")
    print("Every answer was right." if wrong == 0 else
          f"The walk met wrong answers: {wrong}, see WRONG above.")
    return 0 if drawn and wrong == 0 else 1


if __name__ == "__main__":
    try:
        sys.exit(main())
    except KeyboardInterrupt:
        sys.exit(130)
