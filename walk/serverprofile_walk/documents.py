"""CIM-XML documents (DSP0201): requests written, replies read into objects.

Replies are not trusted: no document type is accepted, so no entity is ever expanded; how deep elements
may nest is bounded; what does not fit is an error that says what and where.
"""

import re
import xml.etree.ElementTree as ElementTree
from xml.parsers import expat

from .objects import Class, Instance, Key, Path, Property, Qualifier

DEEPEST = 64  # levels of elements; a path inside a path inside an association takes 20

# Integer types with their lowest and highest values, and how numbers are written; 64 bits take no more
# digits than that.
INTEGERS = {**{f"uint{bits}": (0, 2 ** bits - 1) for bits in (8, 16, 32, 64)},
            **{f"sint{bits}": (-2 ** (bits - 1), 2 ** (bits - 1) - 1) for bits in (8, 16, 32, 64)}}
INTEGER = re.compile(r"[+-]?([0-9]{1,40}|0x[0-9a-f]{1,40})")
REAL = re.compile(r"[+-]?([0-9]{1,40}(\.[0-9]{0,400})?|\.[0-9]{1,400})(e[+-]?[0-9]{1,4})?"
                  r"|[+-]?(inf|nan)")
TEXTS = ("string", "char16", "datetime")


class Malformed(Exception):
    """A reply that is no reply of the operation; says what and where."""


class CimError(Exception):
    """The server's answer is an error: `code` (DSP0200, CIM status codes) and `description`."""

    def __init__(self, code, description):
        self.code = code
        self.description = description
        super().__init__(f"status {code}, {STATUS.get(code, 'not in the standard')}"
                         + (f": {description}" if description else ""))


STATUS = {1: "CIM_ERR_FAILED", 2: "CIM_ERR_ACCESS_DENIED", 3: "CIM_ERR_INVALID_NAMESPACE",
          4: "CIM_ERR_INVALID_PARAMETER", 5: "CIM_ERR_INVALID_CLASS", 6: "CIM_ERR_NOT_FOUND",
          7: "CIM_ERR_NOT_SUPPORTED", 8: "CIM_ERR_CLASS_HAS_CHILDREN",
          9: "CIM_ERR_CLASS_HAS_INSTANCES", 10: "CIM_ERR_INVALID_SUPERCLASS",
          11: "CIM_ERR_ALREADY_EXISTS", 12: "CIM_ERR_NO_SUCH_PROPERTY",
          13: "CIM_ERR_TYPE_MISMATCH", 14: "CIM_ERR_QUERY_LANGUAGE_NOT_SUPPORTED",
          15: "CIM_ERR_INVALID_QUERY", 16: "CIM_ERR_METHOD_NOT_AVAILABLE",
          17: "CIM_ERR_METHOD_NOT_FOUND"}


# --- requests


def request(method, namespace, parameters, message="1"):
    """The bytes of a request. `parameters` are (name, value): a Path (sent with its place where it
    has one), a class name as Path without keys, a bool, a str, or a tuple of str."""
    document = ElementTree.Element("CIM", CIMVERSION="2.0", DTDVERSION="2.0")
    envelope = ElementTree.SubElement(document, "MESSAGE", ID=message, PROTOCOLVERSION="1.0")
    simple = ElementTree.SubElement(envelope, "SIMPLEREQ")
    call = ElementTree.SubElement(simple, "IMETHODCALL", NAME=method)
    call.append(_namespace("LOCALNAMESPACEPATH", namespace))
    for name, value in parameters:
        parameter = ElementTree.SubElement(call, "IPARAMVALUE", NAME=name)
        if isinstance(value, Path):
            parameter.append(_path(value))
        elif isinstance(value, tuple):
            array = ElementTree.SubElement(parameter, "VALUE.ARRAY")
            for text in value:
                ElementTree.SubElement(array, "VALUE").text = text
        else:
            text = ("TRUE" if value else "FALSE") if isinstance(value, bool) else value
            ElementTree.SubElement(parameter, "VALUE").text = text
    # Characters beyond ASCII as references, so that no reader has to know the encoding.
    return b'<?xml version="1.0" encoding="utf-8"?>\n' + ElementTree.tostring(document)


def _namespace(tag, namespace):
    element = ElementTree.Element(tag)
    for part in namespace.split("/"):
        ElementTree.SubElement(element, "NAMESPACE", NAME=part)
    return element


def _path(path):
    kind = "CLASS" if path.keys is None else "INSTANCE"
    if path.keys is None:
        name = ElementTree.Element("CLASSNAME", NAME=path.class_name)
    else:
        name = ElementTree.Element("INSTANCENAME", CLASSNAME=path.class_name)
        for key in path.keys:
            _key(name, key)
    if path.namespace is None:
        return name
    whole = ElementTree.Element(f"{kind}PATH" if path.host else f"LOCAL{kind}PATH")
    place = whole
    if path.host:
        place = ElementTree.SubElement(whole, "NAMESPACEPATH")
        ElementTree.SubElement(place, "HOST").text = path.host
    place.append(_namespace("LOCALNAMESPACEPATH", path.namespace))
    whole.append(name)
    return whole


def _key(name, key):
    if key.name:
        name = ElementTree.SubElement(name, "KEYBINDING", NAME=key.name)
    if isinstance(key.value, Path):
        ElementTree.SubElement(name, "VALUE.REFERENCE").append(_path(key.value))
        return
    value = ElementTree.SubElement(name, "KEYVALUE", VALUETYPE=key.type)
    if key.cim_type is not None:
        value.set("TYPE", key.cim_type)
    value.text = key.value


# --- replies


def parse(text):
    """The element tree of a document. Throws Malformed."""
    parser = expat.ParserCreate()
    parser.buffer_text = True
    builder = ElementTree.TreeBuilder()
    depth = 0

    def start(tag, attributes):
        nonlocal depth
        depth += 1
        if depth > DEEPEST:
            raise Malformed(f"line {parser.CurrentLineNumber}: elements nest deeper than {DEEPEST}")
        builder.start(tag, attributes)

    def end(tag):
        nonlocal depth
        depth -= 1
        builder.end(tag)

    def no_document_type(*_):
        raise Malformed(f"line {parser.CurrentLineNumber}: a document type (<!DOCTYPE>), which no "
                        "reply needs and which is not read")

    parser.StartElementHandler = start
    parser.EndElementHandler = end
    parser.CharacterDataHandler = builder.data
    parser.StartDoctypeDeclHandler = no_document_type
    try:
        parser.Parse(text, True)
    except expat.ExpatError as error:
        raise Malformed(f"line {error.lineno}, column {error.offset + 1}: no XML: "
                        f"{expat.ErrorString(error.code)}") from error
    except (LookupError, ValueError) as error:  # an encoding that Python does not know, or not so
        raise Malformed(f"no XML: {error}") from error
    return builder.close()


def answer(text, method, message="1"):
    """The elements in the IRETURNVALUE of the reply to `request`. Throws CimError, Malformed."""
    document = parse(text)
    envelope = _within(document, "CIM", "MESSAGE")
    if envelope.get("ID") != message:
        raise Malformed(f"the message has the ID {envelope.get('ID')!r}, the request had {message!r}")
    response = _within(_only(envelope), "SIMPLERSP", "IMETHODRESPONSE")
    if _attribute(response, "NAME").lower() != method.lower():
        raise Malformed(f"a response to {response.get('NAME')}, asked was {method}")
    error = response.find("ERROR")
    if error is not None:
        code = _attribute(error, "CODE")
        if not (code.isascii() and code.isdigit() and len(code) < 10):
            raise Malformed(f"an ERROR whose CODE is {code!r}, no number")
        raise CimError(int(code), error.get("DESCRIPTION", ""))
    value = response.find("IRETURNVALUE")
    return [] if value is None else list(value)


def names(elements):
    """Instance names, as EnumerateInstanceNames returns them."""
    return [_read_path(_expect(each, "INSTANCENAME")) for each in elements]


def object_paths(elements):
    """Object paths, as AssociatorNames and ReferenceNames return them."""
    return [_read_path(_expect(each, "OBJECTPATH")) for each in elements]


def _with_paths(elements, pair, path):
    """Instances that come in pairs with their paths."""
    found = []
    for each in elements:
        name, instance = _inside(_expect(each, pair), 2)
        found.append(_read_instance(instance, _read_path(_expect(name, path))))
    return found


def named_instances(elements):
    """Instances with names, as EnumerateInstances returns them."""
    return _with_paths(elements, "VALUE.NAMEDINSTANCE", "INSTANCENAME")


def objects_with_path(elements):
    """Instances with their whole paths, as Associators and References return them."""
    return _with_paths(elements, "VALUE.OBJECTWITHPATH", "INSTANCEPATH")


def instance(elements):
    """The only instance, as GetInstance returns it."""
    return _read_instance(_single(elements, "INSTANCE"))


def class_definition(elements):
    """The only class, as GetClass returns it."""
    element = _single(elements, "CLASS")
    return Class(_attribute(element, "NAME"), element.get("SUPERCLASS"), _qualifiers(element),
                 _properties(element),
                 tuple(_attribute(each, "NAME") for each in element.findall("METHOD")))


def class_names(elements):
    """Class names, as EnumerateClassNames returns them."""
    return [_attribute(_expect(each, "CLASSNAME"), "NAME") for each in elements]


def _expect(element, *tags):
    if element.tag not in tags:
        raise Malformed(f"<{element.tag}> where <{'> or <'.join(tags)}> belongs")
    return element


def _inside(element, count):
    """The elements in `element`, which has to have so many."""
    if len(element) != count:
        raise Malformed(f"<{element.tag}> with {len(element)} elements in it instead of "
                        f"{('one', 'two')[count - 1]}")
    return element


def _only(element):
    return _inside(element, 1)[0]


def _within(element, tag, inner):
    return _expect(_only(_expect(element, tag)), inner)


def _single(elements, tag):
    if len(elements) != 1:
        raise Malformed(f"{len(elements)} elements are returned where one <{tag}> belongs")
    return _expect(elements[0], tag)


def _attribute(element, name):
    value = element.get(name)
    if value is None:
        raise Malformed(f"<{element.tag}> without {name}")
    return value


def _child(element, tag):
    child = element.find(tag)
    if child is None:
        raise Malformed(f"<{element.tag}> without <{tag}>")
    return child


def _text(element):
    if len(element):
        raise Malformed(f"<{element.tag}> with <{element[0].tag}> in it instead of a text")
    return element.text or ""


def _read_path(element):
    """The path of any of the elements that hold one."""
    _expect(element, "OBJECTPATH", "INSTANCENAME", "CLASSNAME", "INSTANCEPATH", "LOCALINSTANCEPATH",
            "CLASSPATH", "LOCALCLASSPATH")
    if element.tag == "OBJECTPATH":
        return _read_path(_expect(_only(element), "INSTANCEPATH", "CLASSPATH"))
    if element.tag == "CLASSNAME":
        return Path(_attribute(element, "NAME"))
    if element.tag == "INSTANCENAME":
        return Path(_attribute(element, "CLASSNAME"), tuple(map(_read_key, element)))
    name = _read_path(_child(element, "INSTANCENAME" if "INSTANCE" in element.tag else "CLASSNAME"))
    host = None
    if not element.tag.startswith("LOCAL"):
        element = _child(element, "NAMESPACEPATH")
        host = _text(_child(element, "HOST"))
    local = _child(element, "LOCALNAMESPACEPATH")
    return name._replace(host=host, namespace="/".join(
        _attribute(_expect(part, "NAMESPACE"), "NAME") for part in local))


def _read_key(element):
    name = ""
    if element.tag == "KEYBINDING":
        name, element = _attribute(element, "NAME"), _only(element)
    if _expect(element, "KEYVALUE", "VALUE.REFERENCE").tag == "VALUE.REFERENCE":
        return Key(name, _read_path(_only(element)), "reference")
    return Key(name, _text(element), element.get("VALUETYPE", "string"), element.get("TYPE"))


def _read_instance(element, path=None):
    return Instance(_attribute(_expect(element, "INSTANCE"), "CLASSNAME"), _properties(element), path,
                    _qualifiers(element))


def _qualifiers(element):
    return tuple(Qualifier(_attribute(each, "NAME"), _attribute(each, "TYPE"), _value(each))
                 for each in element.findall("QUALIFIER"))


def _properties(element):
    found = []
    for each in element:
        if each.tag in ("PROPERTY", "PROPERTY.ARRAY"):
            found.append(Property(_attribute(each, "NAME"), _attribute(each, "TYPE"), _value(each),
                                  each.tag == "PROPERTY.ARRAY", None, _qualifiers(each)))
        elif each.tag == "PROPERTY.REFERENCE":
            value = each.find("VALUE.REFERENCE")
            found.append(Property(_attribute(each, "NAME"), "reference",
                                  None if value is None else _read_path(_only(value)), False,
                                  each.get("REFERENCECLASS"), _qualifiers(each)))
        else:
            _expect(each, "QUALIFIER", "METHOD")
    return tuple(found)


def _value(element):
    """The value of a property or qualifier, by its TYPE; None without one."""
    cim_type = element.get("TYPE")
    where = f"{element.tag} {element.get('NAME')}"
    value = element.find("VALUE")
    if value is not None:
        return _typed(_text(value), cim_type, where)
    array = element.find("VALUE.ARRAY")
    if array is None:
        return None
    return tuple(None if each.tag == "VALUE.NULL" else
                 _typed(_text(_expect(each, "VALUE")), cim_type, where) for each in array)


def _typed(text, cim_type, where):
    if cim_type in TEXTS:
        return text
    word = text.strip().lower()
    value = None
    if cim_type == "boolean":
        value = {"true": True, "false": False}.get(word)
    elif cim_type in INTEGERS:
        value = _integer(word, INTEGERS[cim_type])
    elif cim_type in ("real32", "real64"):
        value = float(word) if REAL.fullmatch(word) else None
    else:
        raise Malformed(f"{where}: {cim_type!r} is no type of CIM")
    if value is None:
        raise Malformed(f"{where}: {text[:80]!r} is no {cim_type}")
    return value


def _integer(word, bounds):
    """The number, or None where there is none or it is out of bounds."""
    if not INTEGER.fullmatch(word):
        return None
    value = int(word, 16 if "x" in word else 10)
    lowest, highest = bounds
    return value if lowest <= value <= highest else None
