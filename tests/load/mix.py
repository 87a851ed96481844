"""The requests that the load is made of: every read operation on every class that the module
serves and from every source, in both namespaces, with filters, unknown keys and errors; refused
writes; and what the server answers without the module."""

from typing import NamedTuple, Optional
from xml.etree import ElementTree

from request import array, call, name, of_class, value

OBJECT_OPERATIONS = ("Associators", "References")
ASSOCIATION_OPERATIONS = (*OBJECT_OPERATIONS, "AssociatorNames", "ReferenceNames")


class Request(NamedTuple):
    """One request. `selector` is the parameter whose class says which classes the server asks: it
    and its subclasses, and all if there is none; None where the server asks `single` alone, or,
    if that is None too, no class at all."""

    namespace: str
    method: str
    parameters: tuple  # (name, element as text)
    selector: Optional[str] = None
    selected: Optional[str] = None
    single: Optional[str] = None

    def under(self, class_name):
        """The same request for the classes from `class_name` down."""
        return self._replace(selected=class_name)

    def call(self):
        more = () if self.selected is None else ((self.selector, of_class(self.selected)),)
        return call(self.method, *more, *self.parameters)

    def __str__(self):
        method, parameters = self.call()
        return f"{method} in {self.namespace}: {parameters}"


RICH = (value("IncludeQualifiers", "TRUE"), value("IncludeClassOrigin", "TRUE"))
SHALLOW = (value("DeepInheritance", "FALSE"), value("LocalOnly", "FALSE"))

# What is asked of associations: the module's own objects, peers as it knows them, objects that are
# not there, and one that leads nowhere. The host is added; its name is the machine's.
SOURCES = (
    *(name("CIM_RegisteredProfile", InstanceID=f"Orvex{n}") for n in (1, 2, 6, 9)),
    *(name("CIM_RegisteredSubProfile", InstanceID=f"Orvex{n}") for n in (3, 4, 5, 9)),
    name("ORVEX_ObjectManagerHost", CreationClassName="ORVEX_ObjectManagerHost", Name="elsewhere"),
    name("CIM_ObjectManager", Name="any"),
    name("PG_CIMXMLCommunicationMechanism", Name="any"),
    name("PG_Namespace", Name="any"),
    name("ORVEX_SoftwareIdentity", InstanceID="OrvexSI1"),
    name("ORVEX_Vsan", CreationClassName="ORVEX_Vsan", Name="20010005AD000001"),
)

# Further arguments of the association operations: how much of an object (not for names), and which.
CONTENT = (RICH, (array("PropertyList", "Name", "Antecedent"),))
NARROWER = (
    *CONTENT,
    (value("Role", "Dependent"),),
    (("ResultClass", of_class("CIM_RegisteredSubProfile")), value("Role", "Antecedent")),
    (("ResultClass", of_class("CIM_NoSuch")),),
)
NARROWED = ("Orvex1", "OrvexSI1", "any")  # of the sources: these are asked with them


def enumerations(namespace, class_name):
    for method in ("EnumerateInstances", "EnumerateInstanceNames"):
        yield Request(namespace, method, (), "ClassName", class_name)
    for more in (RICH, SHALLOW, (array("PropertyList", "Name", "InstanceID", "Nonsense"),)):
        yield Request(namespace, "EnumerateInstances", more, "ClassName", class_name)


def gets(namespace, class_name, path):
    for more in ((), RICH, (array("PropertyList", "Name", "Antecedent"),)):
        yield Request(namespace, "GetInstance", (("InstanceName", path), *more), single=class_name)


def writes(namespace, class_name, path):
    instance = f'<INSTANCE CLASSNAME="{class_name}"></INSTANCE>'
    yield Request(namespace, "DeleteInstance", (("InstanceName", path),), single=class_name)
    yield Request(namespace, "CreateInstance", (("NewInstance", instance),), single=class_name)


def traversals(namespace, source, filters, narrower=()):
    """All four operations from `source` under each filter, and with each of `narrower`, too."""
    for method in ASSOCIATION_OPERATIONS:
        selector = "AssocClass" if method.startswith("Associator") else "ResultClass"
        asked = (("ObjectName", source),)
        for association in (None, *filters, "CIM_Dependency", "CIM_NoSuch"):
            yield Request(namespace, method, asked, selector, association)
        for more in narrower:
            if selector not in dict(more) and (method in OBJECT_OPERATIONS or more not in CONTENT):
                for association in (None, *filters):
                    yield Request(namespace, method, (*asked, *more), selector, association)


def without_module(namespace):
    """What the server answers alone, whether or not it has the module; errors, too."""
    for class_name in ("ORVEX_Vsan", "ORVEX_ComputerSystem", "CIM_ObjectManager", "CIM_NoSuch"):
        yield from enumerations(namespace, class_name)
    for vsan in ("20010005AD000001", "20020005AD000001", "none"):
        yield from gets(namespace, "ORVEX_Vsan",
                        name("ORVEX_Vsan", CreationClassName="ORVEX_Vsan", Name=vsan))
    for class_name in ("CIM_RegisteredProfile", "ORVEX_SoftwareIdentity", "CIM_NoSuch"):
        yield Request(namespace, "GetClass", (("ClassName", of_class(class_name)),))
        yield Request(namespace, "EnumerateClassNames", (("ClassName", of_class(class_name)),))
    yield Request("root/none", "EnumerateInstances", (("ClassName", of_class("CIM_Dependency")),))
    yield Request(namespace, "NoSuchMethod", ())
    yield Request(namespace, "GetInstance", ())
    yield Request(namespace, "Associators", (("ObjectName", name("CIM_NoSuch", Key="x")),))


def registrations(asker):
    """(module, namespace, class, whether it is an association) of all that modules are registered
    for."""
    for capability in asker.elements(Request("root/PG_InterOp", "EnumerateInstances", (),
                                             "ClassName", "PG_ProviderCapabilities")):
        values = {p.get("NAME"): [v.text for v in p.iter("VALUE")] for p in
                  capability.find("INSTANCE") if p.tag.startswith("PROPERTY")}
        for namespace in values["Namespaces"]:
            yield (values["ProviderModuleName"][0], namespace, values["ClassName"][0],
                   "3" in values["ProviderType"])


def registered(asker, module):
    """{namespace: {class: whether it is an association}} that `module` is registered for."""
    found = {}
    for owner, namespace, class_name, association in registrations(asker):
        if owner == module:
            found.setdefault(namespace, {})[class_name] = association
    return found


def mix(asker, served):
    """All requests, each once. `served` is what registered() says."""
    requests = []
    for namespace, classes in served.items():
        filters = [one for one, association in classes.items() if association]
        sources = [*SOURCES, *(ElementTree.tostring(path, "unicode") for path in asker.elements(
            Request(namespace, "EnumerateInstanceNames", (), "ClassName",
                    "ORVEX_ObjectManagerHost")))]
        for one in classes:
            requests += enumerations(namespace, one)
            unknown = name(one, InstanceID="none")
            requests += [*gets(namespace, one, unknown), *writes(namespace, one, unknown)]
            for path in asker.elements(
                    Request(namespace, "EnumerateInstanceNames", (), "ClassName", one)):
                text = ElementTree.tostring(path, "unicode")
                requests += gets(namespace, path.get("CLASSNAME"), text)
                requests += writes(namespace, path.get("CLASSNAME"), text)
        requests += enumerations(namespace, "CIM_SoftwareIdentity")
        for source in sources:
            narrowed = any(f">{key}<" in source for key in NARROWED)
            requests += traversals(namespace, source, filters, NARROWER if narrowed else ())
        requests += without_module(namespace)
    return list(dict.fromkeys(requests))
