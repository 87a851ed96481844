"""Writes what a server answers to the module's read-backs into a file for the module's benchmark, which
says how it is read (World.cpp)."""

from xml.etree import ElementTree

from questions import ask, Question
from request import of_class  # tests/kit

CLASSES = ("CIM_RegisteredProfile", "CIM_RegisteredSubProfile", "ORVEX_ObjectManagerHost",
           "ORVEX_SoftwareIdentity")
PUBLISHED = ("ORVEX_Vsan", "ORVEX_ComputerSystem", "ORVEX_PhysicalComputerSystem",
             "CIM_ObjectManager", "CIM_CIMXMLCommunicationMechanism", "CIM_Namespace")
WHOLE = tuple((flag, f"<VALUE>{value}</VALUE>") for flag, value in (
    ("LocalOnly", "FALSE"), ("IncludeQualifiers", "TRUE"), ("IncludeClassOrigin", "TRUE")))


def returned(port, method, class_name, parameters, element):
    question = Question(f"{method} {class_name}", method,
                        (("ClassName", of_class(class_name)), *parameters), element, 1)
    _, _, body = ask(port, question).bytes.partition(b"<?xml")
    return list(ElementTree.fromstring(b"<?xml" + body).find(".//IRETURNVALUE"))


def values(element):
    """array|scalar null|value VALUE..."""
    value, array = element.find("VALUE"), element.find("VALUE.ARRAY")
    if array is not None:
        return "array", ["value", *((one.text or "") for one in array)]
    is_array = element.tag == "PROPERTY.ARRAY"
    if value is None:
        return "array" if is_array else "scalar", ["null"]
    return "scalar", ["value", value.text or ""]


def qualifier(element):
    shape, given = values(element)
    return ["qualifier", element.get("NAME"), element.get("TYPE"), shape, *given]


def described(element):
    """The lines of the qualifiers and properties of a class or an instance."""
    yield from map(qualifier, element.findall("QUALIFIER"))
    for one in element:
        if one.tag in ("PROPERTY", "PROPERTY.ARRAY"):
            shape, given = values(one)
            yield ["property", one.get("NAME"), one.get("TYPE"), shape, "",
                   one.get("CLASSORIGIN") or "", *given]
            yield from map(qualifier, one.findall("QUALIFIER"))


def path(name):
    keys = ",".join(f'{key.get("NAME")}="{key.find("KEYVALUE").text}"'
                    for key in name.findall("KEYBINDING"))
    return f'interop:{name.get("CLASSNAME")}.{keys}'


def lines(port):
    for name in CLASSES:
        for element in returned(port, "GetClass", name, WHOLE, "CLASS"):
            yield ["class", name]
            yield from described(element)
    for name in PUBLISHED:
        yield ["published", name]
        for element in returned(port, "EnumerateInstances", name, WHOLE, "INSTANCE"):
            instance = element.find("INSTANCE")
            yield ["instance", instance.get("CLASSNAME"), path(element.find("INSTANCENAME"))]
            yield from described(instance)


def write(port, file):
    with open(file, "w") as out:
        for words in lines(port):
            out.write("\t".join(words) + "\n")
