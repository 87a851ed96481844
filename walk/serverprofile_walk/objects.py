"""What a CIM server tells: paths, instances, classes. All are values that never change.

A path is kept as it was given: host, namespace, the spelling of the class, the order and the types of
the keys, and whether a reference inside it names a place. Whoever asks with it asks with just that.
"""

from typing import NamedTuple, Optional, Union


class Key(NamedTuple):
    """A key binding. `value` is the text as it was sent, or a Path. `type` is "string", "boolean",
    "numeric" or "reference"; `cim_type` the CIM type where one was sent ("uint16"). `name` is empty
    for the only key of a class that was sent without its name (DSP0201, INSTANCENAME)."""

    name: str
    value: Union[str, "Path"]
    type: str = "string"
    cim_type: Optional[str] = None

    def __str__(self):
        if isinstance(self.value, Path):
            text = str(self.value)
        else:
            text = self.value
            if self.type not in ("boolean", "numeric"):
                text = quoted(text)
        return f"{self.name}={text}" if self.name else text


class Path(NamedTuple):
    """The path of an instance, or, where `keys` is None, of a class. `host` and `namespace` are None
    where none was sent."""

    class_name: str
    keys: Optional[tuple] = None
    namespace: Optional[str] = None
    host: Optional[str] = None

    def key(self, name):
        """The value of the key of that name, in any letter case; None without one."""
        for key in self.keys or ():
            if key.name.lower() == name.lower():
                return key.value
        return None

    @property
    def local(self):
        """The path without its place, as a request to the namespace in it names it."""
        return self._replace(namespace=None, host=None)

    def __str__(self):
        """As people write it, and as wbemcli shows it but for a colon that it leaves out."""
        place = ""
        if self.namespace is not None:
            place = f"{self.host}/{self.namespace}:" if self.host else f"{self.namespace}:"
        if self.keys is None:
            return place + self.class_name
        return f"{place}{self.class_name}.{','.join(map(str, self.keys))}"


class Qualifier(NamedTuple):
    """`value` as in Property."""

    name: str
    type: str
    value: object


class Property(NamedTuple):
    """`value` is None, a bool, an int, a float, a str (for string, char16 and datetime), a Path, or a
    tuple of these (None within one for a null entry). `type` is the CIM type, or "reference"."""

    name: str
    type: str
    value: object = None
    is_array: bool = False
    reference_class: Optional[str] = None
    qualifiers: tuple = ()


class _WithProperties:
    __slots__ = ()

    def property(self, name):
        """The Property of that name, in any letter case; None without one."""
        for each in self.properties:
            if each.name.lower() == name.lower():
                return each
        return None

    def value(self, name):
        """The value of the property of that name; None for a null and for none."""
        found = self.property(name)
        return None if found is None else found.value


class _Instance(NamedTuple):
    class_name: str
    properties: tuple = ()
    path: Optional[Path] = None
    qualifiers: tuple = ()


class Instance(_Instance, _WithProperties):
    """An instance, with its path where one was sent."""

    __slots__ = ()


class _Class(NamedTuple):
    name: str
    superclass: Optional[str] = None
    qualifiers: tuple = ()
    properties: tuple = ()
    methods: tuple = ()  # their names


class Class(_Class, _WithProperties):
    """A class definition."""

    __slots__ = ()


def quoted(text):
    r"""In double quotes, with \ before each quote and \ in it (DSP0004, object paths)."""
    return '"' + text.replace("\\", "\\\\").replace('"', '\\"') + '"'


def identity(path):
    """What makes two paths name one object, wherever they say that it is: class and names of keys in
    any letter case, values of keys, in any order. To be compared and looked up by; None for no path."""
    if path is None or path.keys is None:
        return path and (path.class_name.lower(), None)
    keys = [(key.name.lower(), _key_identity(key)) for key in path.keys]
    return path.class_name.lower(), tuple(sorted(keys, key=lambda key: key[0]))


def reference_identity(class_name, ends):
    """The `identity` of an association of that class, of whose ends (role, identity) are given."""
    return class_name.lower(), tuple(sorted(
        ((role.lower(), ("reference", end)) for role, end in ends), key=lambda key: key[0]))


def _key_identity(key):
    if isinstance(key.value, Path):
        return "reference", identity(key.value)
    if key.type == "numeric":
        try:
            return key.type, int(key.value)
        except ValueError:
            pass
    return key.type, key.value.lower() if key.type == "boolean" else key.value
