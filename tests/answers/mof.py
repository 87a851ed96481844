"""Writes what came over the wire (DSP0201) as MOF (DSP0004)."""

import re

# In the order in which scopes are written; the attribute of SCOPE and the word in MOF.
SCOPES = (("CLASS", "class"), ("ASSOCIATION", "association"), ("REFERENCE", "reference"),
          ("PROPERTY", "property"), ("METHOD", "method"), ("PARAMETER", "parameter"),
          ("INDICATION", "indication"))
# Attributes of qualifiers, their defaults (DSP0201), and the flavors that they say.
FLAVORS = (("OVERRIDABLE", "true", "EnableOverride", "DisableOverride"),
           ("TOSUBCLASS", "true", "ToSubclass", "Restricted"),
           ("TRANSLATABLE", "false", "Translatable", None))
ESCAPES = {"\\": "\\\\", '"': '\\"', "\n": "\\n", "\r": "\\r", "\t": "\\t", "\b": "\\b",
           "\f": "\\f"}


def is_true(element, attribute, default="false"):
    return element.get(attribute, default).lower() == "true"


def quoted(text):
    return '"' + re.sub(r'[\\"\n\r\t\b\f]', lambda m: ESCAPES[m[0]], text) + '"'


def literal(text, kind):
    if kind in ("string", "datetime"):
        return quoted(text)
    if kind == "char16":
        return "'" + text.replace("\\", "\\\\").replace("'", "\\'") + "'"
    return text.lower() if kind == "boolean" else text


def value(element, kind):
    """The value in a VALUE or VALUE.ARRAY below `element`, or None."""
    array = element.find("VALUE.ARRAY")
    if array is not None:
        return "{" + ", ".join(literal(v.text or "", kind) for v in array) + "}"
    single = element.find("VALUE")
    return None if single is None else literal(single.text or "", kind)


def flavors(element):
    return [yes if is_true(element, attribute, default) else no
            for attribute, default, yes, no in FLAVORS
            if is_true(element, attribute, default) or no]


def qualifier(element):
    kind = element.get("TYPE")
    text = value(element, kind)
    name = element.get("NAME")
    given = "" if text is None else text if text.startswith("{") else f"({text})"
    if kind == "boolean" and text == "true":
        given = ""
    return name + given


def qualifiers(element, indent=""):
    """The list in brackets, with a line's end behind it, or nothing."""
    listed = [q for q in element.findall("QUALIFIER")]
    # The qualifier that makes an association or indication comes first (DSP0004, A).
    listed.sort(key=lambda q: q.get("NAME").lower() not in ("association", "indication"))
    if not listed:
        return ""
    return f"{indent}[" + f",\n{indent} ".join(qualifier(q) for q in listed) + "]\n"


def declaration(element):
    """A QUALIFIER.DECLARATION."""
    kind = element.get("TYPE")
    array = "[]" if is_true(element, "ISARRAY") else ""
    default = value(element, kind)
    scope = element.find("SCOPE")
    scopes = [word for attribute, word in SCOPES if is_true(scope, attribute)]
    scopes = ["any"] if len(scopes) == len(SCOPES) else scopes
    return (f"Qualifier {element.get('NAME')} : {kind}{array} = {default or 'null'},\n"
            f"    Scope({', '.join(scopes)}), Flavor({', '.join(flavors(element))});\n")


def typed(element, indent, ending):
    """A property or a parameter."""
    tag = element.tag.split(".", 1)[-1]
    text = qualifiers(element, indent)
    if tag.startswith("REF"):
        text += f"{indent}{element.get('REFERENCECLASS')} REF {element.get('NAME')}"
    else:
        text += f"{indent}{element.get('TYPE')} {element.get('NAME')}"
    if tag in ("ARRAY", "REFARRAY"):
        text += f"[{element.get('ARRAYSIZE') or ''}]"
    default = value(element, element.get("TYPE")) if ending == ";" else None
    return text + (f" = {default}" if default is not None else "") + ending


def method(element):
    parameters = [typed(p, "        ", "") for p in element if p.tag.startswith("PARAMETER")]
    return (qualifiers(element, "    ") + f"    {element.get('TYPE')} {element.get('NAME')}(" +
            ("\n" + ",\n".join(parameters) if parameters else "") + ");")


def class_declaration(element):
    """A CLASS with what is local to it."""
    above = element.get("SUPERCLASS")
    members = [typed(p, "    ", ";") for p in element if p.tag.startswith("PROPERTY")]
    members += [method(m) for m in element.findall("METHOD")]
    return (qualifiers(element) + f"class {element.get('NAME')}" +
            (f" : {above}" if above else "") + " {\n" + "".join(m + "\n" for m in members) + "};\n")


def path(element):
    """The text of an object path (DSP0004, 8.2), from any of the elements that hold one."""
    if element.tag == "INSTANCENAME":
        keys = ",".join(f"{key.get('NAME')}={key_text(key[0])}" for key in element)
        return f"{element.get('CLASSNAME')}.{keys}"
    parts = "/".join(part.get("NAME") for part in element.iter("NAMESPACE"))
    host = element.find("NAMESPACEPATH/HOST")
    place = f"//{host.text}/" if host is not None else ""
    return f"{place}{parts}:{path(element.find('INSTANCENAME'))}"


def key_text(element):
    if element.tag == "VALUE.REFERENCE":
        return quoted(path(element[0]))
    text = element.text or ""
    return quoted(text) if element.get("VALUETYPE", "string") == "string" else text


def instance(element, names=()):
    """An INSTANCE, its properties in their order. NULL is said, too, and of those of `names` that
    it lacks, lest the class's defaults take their place."""
    lines = []
    for member in element:
        if not member.tag.startswith("PROPERTY"):
            continue
        reference = member.find("VALUE.REFERENCE")
        text = quoted(path(reference[0])) if reference is not None else value(
            member, member.get("TYPE"))
        lines.append(f"    {member.get('NAME')} = {text or 'null'};\n")
    given = {member.get("NAME").lower() for member in element}
    lines += [f"    {name} = null;\n" for name in names if name.lower() not in given]
    return f"instance of {element.get('CLASSNAME')} {{\n{''.join(lines)}}};\n"
