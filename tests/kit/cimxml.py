"""A CIM-XML client (DSP0200, DSP0201) that shows paths as they went over the wire: where each
reference says that it is, and what it lacks. For tests; it asks, and changes nothing."""

import xml.etree.ElementTree as ElementTree
from typing import NamedTuple, Optional

from request import Connection


class Path(NamedTuple):
    """An object path; None for a part that was not sent. Keys are (name, text or Path)."""

    host: Optional[str]
    namespace: Optional[str]
    name: str
    keys: tuple

    def key(self, name):
        return dict(self.keys).get(name)

    def __str__(self):
        place = f"//{self.host}/" if self.host else ""
        place += f"{self.namespace}:" if self.namespace else ""
        keys = ",".join(f"{name}=({value})" if isinstance(value, Path) else f'{name}="{value}"'
                        for name, value in self.keys)
        return f"{place}{self.name}.{keys}"


class Object(NamedTuple):
    """An instance with its path, if one was sent; references as (class declared, Path)."""

    path: Optional[Path]
    name: str
    references: dict


def path(text):
    """CLASS.KEY="VALUE",... of which no value has a comma or a quote, in no place."""
    name, keys = text.split(".", 1)
    return Path(None, None, name, tuple(
        (key, value.strip('"')) for key, value in (k.split("=", 1) for k in keys.split(","))))


def _keys(element):
    keys = []
    for binding in element.findall("KEYBINDING"):
        reference = binding.find("VALUE.REFERENCE")
        keys.append((binding.get("NAME"), read_path(reference[0]) if reference is not None
                     else binding.find("KEYVALUE").text or ""))
    return tuple(keys)


def _namespace(element):
    return "/".join(part.get("NAME") for part in element.findall("NAMESPACE"))


def read_path(element):
    """The path that an element of any of the path elements says."""
    if element.tag == "OBJECTPATH":
        return read_path(element[0])
    if element.tag == "INSTANCENAME":
        return Path(None, None, element.get("CLASSNAME"), _keys(element))
    whole = read_path(element.find("INSTANCENAME"))
    place = element.find("NAMESPACEPATH")
    local = element.find("LOCALNAMESPACEPATH") if place is None else place.find(
        "LOCALNAMESPACEPATH")
    return whole._replace(host=None if place is None else place.find("HOST").text,
                          namespace=_namespace(local))


def _object(element):
    """The object of VALUE.NAMEDINSTANCE, VALUE.OBJECTWITHPATH or INSTANCE."""
    instance = element if element.tag == "INSTANCE" else element.find("INSTANCE")
    references = {}
    for reference in instance.findall("PROPERTY.REFERENCE"):
        value = reference.find("VALUE.REFERENCE")
        references[reference.get("NAME")] = (
            reference.get("REFERENCECLASS"), None if value is None else read_path(value[0]))
    return Object(None if instance is element else read_path(element[0]),
                  instance.get("CLASSNAME"), references)


def _namespace_element(namespace):
    element = ElementTree.Element("LOCALNAMESPACEPATH")
    for part in namespace.split("/"):
        ElementTree.SubElement(element, "NAMESPACE", NAME=part)
    return element


def _path_element(asked):
    """With its place where it has one."""
    name = ElementTree.Element("INSTANCENAME", CLASSNAME=asked.name)
    for key, value in asked.keys:
        binding = ElementTree.SubElement(name, "KEYBINDING", NAME=key)
        if isinstance(value, Path):
            ElementTree.SubElement(binding, "VALUE.REFERENCE").append(_path_element(value))
        else:
            ElementTree.SubElement(binding, "KEYVALUE", VALUETYPE="string").text = value
    if not asked.namespace:
        return name
    place = _namespace_element(asked.namespace)
    if asked.host:
        whole = ElementTree.Element("INSTANCEPATH")
        outer = ElementTree.SubElement(whole, "NAMESPACEPATH")
        ElementTree.SubElement(outer, "HOST").text = asked.host
        outer.append(place)
    else:
        whole = ElementTree.Element("LOCALINSTANCEPATH")
        whole.append(place)
    whole.append(name)
    return whole


class Client:
    """Asks the server at `address`, "HOST:PORT", in `namespace`. A connection for each question."""

    def __init__(self, address, namespace):
        self._address = address
        self._namespace = namespace

    def enumerate_names(self, name):
        return [read_path(e) for e in self._call(
            "EnumerateInstanceNames", ClassName=self._class(name))]

    def enumerate(self, name):
        return [_object(e) for e in self._call(
            "EnumerateInstances", ClassName=self._class(name))]

    def get(self, instance):
        return _object(self._call("GetInstance", InstanceName=self._local(instance))[0])

    def associator_names(self, source, association=None):
        return [read_path(e) for e in self._call(
            "AssociatorNames", ObjectName=self._local(source), AssocClass=association)]

    def associators(self, source, association=None):
        return [_object(e) for e in self._call(
            "Associators", ObjectName=self._local(source), AssocClass=association)]

    def reference_names(self, source, association=None):
        return [read_path(e) for e in self._call(
            "ReferenceNames", ObjectName=self._local(source), ResultClass=association)]

    def references(self, source, association=None):
        return [_object(e) for e in self._call(
            "References", ObjectName=self._local(source), ResultClass=association)]

    @staticmethod
    def _class(name):
        return ElementTree.Element("CLASSNAME", NAME=name)

    @staticmethod
    def _local(asked):
        return _path_element(asked._replace(host=None, namespace=None))

    def _call(self, method, **parameters):
        """The elements of the answer's IRETURNVALUE; parameters are elements or class names."""
        given = [(name, ElementTree.tostring(self._class(value) if isinstance(value, str) else value, "unicode"))
                 for name, value in parameters.items() if value is not None]
        connection = Connection(self._address)
        try:
            return connection.ask(self._namespace, method, *given)
        finally:
            connection.close()
