"""The questions of the wire suite: every operation, from every source, with every filter, and what
is no proper question.

The questions follow from the classes below and from the objects that the server names, so that two
servers with the same content are asked the same: all of them, or as many as have every pair of their
parts (namespace, operation, source, filter, flag...) in one of them (Pairs). A question is (id, Request, concurrent); the id
says it in words. `concurrent` tells that only the answer's content is fixed and not its order: the
server asks several providers at once and joins what they say as it comes (OpenPegasus does), or the
source is a class and the answers are classes, in the order of its files.
"""

import itertools
import xml.etree.ElementTree as ElementTree
from typing import NamedTuple

import listed
import mof
import request
from request import value

INTEROP = "root/PG_InterOp"  # OpenPegasus's own
NAMESPACES = ("root/cimv2", INTEROP, "interop")

# What the module publishes, and what it reads back from others.
PROFILES = ("CIM_RegisteredProfile", "CIM_RegisteredSubProfile")
OWN = PROFILES + ("ORVEX_ObjectManagerHost", "ORVEX_SoftwareIdentity")
ASSOCIATIONS = (
    "CIM_ReferencedProfile", "CIM_SubProfileRequiresProfile", "CIM_ElementConformsToProfile",
    "CIM_HostedService", "CIM_HostedAccessPoint", "CIM_NamespaceInManager",
    "CIM_CommMechanismForManager", "ORVEX_ElementSoftwareIdentity")
# Those of which GetInstance echoes whatever ends it is asked for.
ECHOED = ASSOCIATIONS[3:]
SERVER = ("CIM_ObjectManager", "CIM_CIMXMLCommunicationMechanism", "CIM_Namespace")
SWITCH = ("ORVEX_Vsan", "ORVEX_ComputerSystem", "ORVEX_PhysicalComputerSystem")
OF_SERVER = ("PG_ObjectManager", "PG_CIMXMLCommunicationMechanism", "PG_Namespace")
NAMESPACE_CLASSES = ("CIM_Namespace", "PG_Namespace")
CLASSES = OWN + ASSOCIATIONS + SERVER + OF_SERVER + SWITCH
SUPERCLASSES = ("CIM_RegisteredSpecification", "CIM_SoftwareIdentity", "CIM_ServiceAccessBySAP",
                "CIM_ReferencedSpecification", "CIM_WBEMService", "CIM_HostedDependency")
KEYS = {name: "InstanceID" for name in PROFILES + ("ORVEX_SoftwareIdentity",)}

ASSOCIATION_FILTERS = ASSOCIATIONS + (
    "CIM_ElementSoftwareIdentity", "CIM_Dependency", "cim_elementconformstoprofile",
    "PG_ElementConformsToProfile", "ORVEX_Vsan", "CIM_NoSuch")
RESULT_FILTERS = (
    "CIM_RegisteredProfile", "CIM_RegisteredSubProfile", "CIM_ManagedElement", "ORVEX_Vsan",
    "ORVEX_SoftwareIdentity", "CIM_Namespace", "PG_ObjectManager", "cim_registeredsubprofile",
    "CIM_NoSuch")
ROLES = (("Antecedent", None), (None, "Dependent"), ("ManagedElement", "ConformantStandard"),
         ("Bogus", None), (None, "no name"))
PROPERTY_LISTS = ((), ("InstanceID",), ("RegisteredName", "InstanceID", "NoSuch"),
                  ("ElementName", "Dependent", "Name"))
BOTH = (False, True)
PAIRS_HELP = "ask as many questions as have every pair of their parts, instead of all"


class Question(NamedTuple):
    id: str
    request: request.Request
    concurrent: bool


class Suite:
    """The questions to a server in one namespace. `connection` is used to see what is there."""

    def __init__(self, connection, namespace):
        self._connection = connection
        self._namespace = namespace

    def questions(self):
        yield from self._classes()
        for name in CLASSES + SUPERCLASSES + ("CIM_NoSuch",):
            yield from self._enumerations(name)
        for name, keys in self._objects():
            yield from self._gets(name, keys)
        for name, keys in self._sources():
            yield from self._traversals(name, keys)
        for name in OWN + SERVER:
            yield from self._class_traversals(f"class {name}", request.of_class(name))
        yield from self._refused()
        yield from self._wrong()

    def _question(self, words, method, *parameters, concurrent=False):
        return Question(f"{self._namespace} {method} {words}".strip(),
                        request.Request(self._namespace, method, parameters), concurrent)

    # What there is

    def _named(self, name):
        """(class, INSTANCENAME text, keys) of the objects of a class and its subclasses."""
        try:
            found = self._connection.ask(self._namespace, "EnumerateInstanceNames",
                                         ("ClassName", request.of_class(name)))
        except request.CimError:
            return []
        return sorted((e.get("CLASSNAME"), mof.path(e), e) for e in found)

    def _objects(self):
        """What can be got: (words, INSTANCENAME), each object once."""
        seen = set()
        # A stock OpenPegasus never answers a GetInstance of a namespace outside of its own interop
        # namespace, and cannot stop any more then. In root/cimv2 the class that it names is missing.
        gone = NAMESPACE_CLASSES if self._namespace == "interop" else ()
        for name in (one for one in CLASSES if one not in gone):
            for _, words, element in self._named(name):
                if words not in seen:
                    seen.add(words)
                    yield words, serialised(element)

    def _sources(self):
        """What can be traversed from: the objects, under other names too, and what is not there."""
        seen = set()
        for name in OWN + SERVER + SWITCH:
            for found, words, element in self._named(name):
                if words not in seen:
                    seen.add(words)
                    yield words, serialised(element)
                if name in SERVER and found != name:
                    yield f"{name} as {words}", serialised(element, name)
        for name in OWN + SERVER + OF_SERVER:
            key = KEYS.get(name, "Name")
            for keys in ((), ((key, "no such"),), (("Bogus", "Orvex1"),), ((key.lower(), "Orvex1"),),
                         ((key, "orvex6"), ("Bogus", "x"))):
                words = name + "".join(f" {k}={v}" for k, v in keys) if keys else (
                    f"{name} without keys")
                yield words, request.name(name, **dict(keys))

    # Questions

    def _classes(self):
        for name in CLASSES + SUPERCLASSES + ("CIM_NoSuch",):
            for options in ((), ("IncludeQualifiers",), ("IncludeClassOrigin",), ("LocalOnly",)):
                given = [value(o, o in options) for o in
                         ("IncludeQualifiers", "IncludeClassOrigin", "LocalOnly")]
                yield self._question(f"{name} {' '.join(options)}", "GetClass",
                                     ("ClassName", request.of_class(name)), *given)
            for deep in BOTH:
                yield self._question(f"{name} deep={deep}", "EnumerateClassNames",
                                     ("ClassName", request.of_class(name)),
                                     value("DeepInheritance", deep))

    def _enumerations(self, name):
        asked = ("ClassName", request.of_class(name))
        yield self._question(name, "EnumerateInstanceNames", asked, concurrent=True)
        yield self._question(name, "EnumerateInstances", asked, concurrent=True)
        for flags in itertools.product(BOTH, repeat=4):
            given = map(value, ("DeepInheritance", "LocalOnly", "IncludeQualifiers",
                                "IncludeClassOrigin"), flags)
            yield self._question(f"{name} {flags}", "EnumerateInstances", asked, *given,
                                 concurrent=True)
        for names in PROPERTY_LISTS:
            yield self._question(f"{name} of {names}", "EnumerateInstances", asked,
                                 request.array("PropertyList", *names), concurrent=True)

    def _gets(self, words, element):
        asked = ("InstanceName", element)
        yield self._question(words, "GetInstance", asked)
        for flags in itertools.product(BOTH, repeat=3):
            given = map(value, ("LocalOnly", "IncludeQualifiers", "IncludeClassOrigin"), flags)
            yield self._question(f"{words} {flags}", "GetInstance", asked, *given)
        for names in PROPERTY_LISTS:
            yield self._question(f"{words} of {names}", "GetInstance", asked,
                                 request.array("PropertyList", *names))
        yield self._question(f"{words} ElementName", "GetProperty", asked,
                             value("PropertyName", "ElementName"))

    def _traversals(self, words, source):
        for association in (None,) + ASSOCIATION_FILTERS:
            yield from self._associators(words, source, AssocClass=association)
            yield from self._references(words, source, ResultClass=association)
        for result in RESULT_FILTERS:
            yield from self._associators(words, source, ResultClass=result)
            yield from self._associators(words, source, ResultClass=result,
                                         AssocClass="CIM_ElementConformsToProfile")
        for role, result_role in ROLES:
            yield from self._associators(words, source, Role=role, ResultRole=result_role)
            if role:
                yield from self._references(words, source, Role=role)
        for flags in itertools.product(BOTH, repeat=2):
            yield from self._associators(words, source, flags, names=("InstanceID", "Name"))
            yield from self._references(words, source, flags, names=("Dependent", "NoSuch"))

    def _class_traversals(self, words, source):
        for association in ASSOCIATIONS:
            yield from self._associators(words, source, AssocClass=association)
            yield from self._references(words, source, ResultClass=association)
            for flags in itertools.product(BOTH, repeat=2):
                for names in (None, (), ("NoSuch", "Name", "instanceid", "Dependent")):
                    yield from self._associators(words, source, flags, names,
                                                 AssocClass=association)
                    yield from self._references(words, source, flags, names,
                                                ResultClass=association)

    def _associators(self, words, source, flags=None, names=None, **filters):
        yield from self._traversal("Associators", words, source, flags, names, filters)

    def _references(self, words, source, flags=None, names=None, **filters):
        yield from self._traversal("References", words, source, flags, names, filters)

    def _traversal(self, method, words, source, flags, names, filters):
        filters = {name: value for name, value in filters.items() if value is not None}
        given = [("ObjectName", source)] + [
            (name, request.of_class(one)) if name.endswith("Class") else value(name, one)
            for name, one in filters.items()]
        words = f"{words} {' '.join(f'{n}={v}' for n, v in filters.items())}"
        concurrent = "<KEYBINDING" not in source or not self._one_association(filters.get(
            "AssocClass" if method == "Associators" else "ResultClass"))
        if flags is None:
            yield self._question(words, method.rstrip("s") + "Names", *given, concurrent=concurrent)
            yield self._question(words, method, *given, concurrent=concurrent)
            return
        options = list(map(value, ("IncludeQualifiers", "IncludeClassOrigin"), flags))
        if names is not None:
            options.append(request.array("PropertyList", *names))
        yield self._question(f"{words} {flags} of {names}", method, *given, *options,
                             concurrent=concurrent)

    def _one_association(self, name):
        """Whether a filter leaves one association class, and so one provider to ask."""
        leaves = ("cim_subprofilerequiresprofile", "orvex_elementsoftwareidentity")
        if self._namespace != INTEROP:  # there, the server has subclasses of its own
            leaves += tuple(a.lower() for a in ASSOCIATIONS if a != "CIM_ReferencedProfile")
        return (name or "").lower() in leaves

    def _refused(self):
        for name in OWN + ASSOCIATIONS:
            key = KEYS.get(name, "Name")
            path = request.name(name, **{key: "Orvex1"})
            instance = (f'<INSTANCE CLASSNAME="{name}"><PROPERTY NAME="{key}" TYPE="string">'
                        "<VALUE>new</VALUE></PROPERTY></INSTANCE>")
            yield self._question(name, "CreateInstance", ("NewInstance", instance))
            yield self._question(name, "ModifyInstance", (
                "ModifiedInstance", f"<VALUE.NAMEDINSTANCE>{path}{instance}</VALUE.NAMEDINSTANCE>"))
            yield self._question(name, "DeleteInstance", ("InstanceName", path))

    def _wrong(self):
        for name in OWN:
            key = KEYS.get(name, "Name")
            for keys in ((), ((key, "no such"),), (("Bogus", "Orvex1"),), ((key, ""),),
                         ((key.lower(), "ORVEX1"),), ((key, "Orvex1"), ("Bogus", "x"))):
                words = name + "".join(f" {k}={v}" for k, v in keys)
                yield self._question(words, "GetInstance",
                                     ("InstanceName", request.name(name, **dict(keys))))
            number = f'<INSTANCENAME CLASSNAME="{name}"><KEYVALUE VALUETYPE="numeric">5</KEYVALUE>' \
                     "</INSTANCENAME>"
            yield self._question(f"{name} of a nameless number", "GetInstance",
                                 ("InstanceName", number))
        for name in ECHOED:
            for path in ("", "no path"):
                yield self._question(f"{name} Antecedent={path}", "GetInstance", (
                    "InstanceName", request.name(name, Antecedent=path)))
        profile = request.name("CIM_RegisteredProfile", InstanceID="Orvex1")
        asked = ("ClassName", request.of_class("CIM_RegisteredProfile"))
        yield self._question("nothing", "EnumerateInstances")
        yield self._question("of two classes", "EnumerateInstances", asked, asked)
        yield self._question("with more", "EnumerateInstances", asked, value("Zip", "zap"))
        yield self._question("of a class", "GetInstance", ("ClassName", asked[1]))
        yield self._question("nothing", "GetInstance")
        yield self._question("nothing", "Associators")
        yield self._question("of a number", "EnumerateInstances", asked,
                             value("LocalOnly", "maybe"))
        yield self._question("", "NoSuchOperation")
        yield self._question("", "ExecQuery", value("QueryLanguage", "WQL"),
                             value("Query", "select * from CIM_RegisteredProfile"))
        yield self._question("NoSuch", "GetProperty", ("InstanceName", profile),
                             value("PropertyName", "NoSuch"))
        nowhere = request.Request("root/nowhere", "EnumerateInstances", (asked,))
        yield Question(f"{self._namespace} elsewhere: root/nowhere", nowhere, False)


def serialised(element, name=None):
    """An INSTANCENAME as a parameter, of another class if one is named."""
    copy = ElementTree.fromstring(ElementTree.tostring(element))
    if name:
        copy.set("CLASSNAME", name)
    return ElementTree.tostring(copy, encoding="unicode")


def served(connection):
    """Those of the namespaces that can have the profile: an OpenPegasus without its own Server profile
    has no such classes in its interop namespace."""
    def has_profile(namespace):
        try:
            return connection.ask(namespace, "GetClass", ("ClassName", request.of_class(PROFILES[0])))
        except request.CimError:
            return False
    return [namespace for namespace in NAMESPACES if has_profile(namespace)]


class Pairs:
    """Chooses from questions those that have a pair of parts that none before had, and all that ask
    for classes: each namespace has its own."""

    def __init__(self):
        self._seen = set()

    def has_new(self, question):
        namespace, method, parameters = question.request
        parts = namespace, method, *((name, listed.spelt(value)) for name, value in parameters)
        pairs = {*itertools.combinations(parts, 2)} - self._seen
        self._seen |= pairs
        return bool(pairs) or "Class" in method


def questions(address, pairs=False):
    """All questions to the server at `address`, by namespace, or those that `pairs` takes."""
    connection = request.Connection(address)
    chosen = Pairs()
    for namespace in served(connection):
        for question in Suite(connection, namespace).questions():
            if not pairs or chosen.has_new(question):
                yield question
    connection.close()
