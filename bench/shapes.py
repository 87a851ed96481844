"""Requests that are meant to cost the server more than their bytes are worth. Each shape grows with a
number; most of them are as large as the server takes them."""

from typing import Callable, NamedTuple

from questions import PROFILE, QUESTIONS

from request import call, document, name, of_class  # tests/kit

NAMESPACE = "interop"
THINGS = 10000  # instances of BENCH_Thing, each linked to the first


def http(body, method="GetInstance", target=NAMESPACE, fields=(), verb="POST"):
    """`fields` come beside the usual ones, or without them if they are bytes."""
    usual = (f'Host: 127.0.0.1\r\nContent-Type: application/xml; charset="utf-8"\r\n'
             f"CIMOperation: MethodCall\r\nCIMMethod: {method}\r\nCIMObject: {target}\r\n").encode()
    if isinstance(fields, bytes):
        usual, more = b"", fields
    else:
        more = "".join(f"{key}: {value}\r\n" for key, value in fields).encode()
    body = body if isinstance(body, bytes) else body.encode()
    return (f"{verb} /cimom HTTP/1.1\r\n".encode() + usual + more +
            f"Content-Length: {len(body)}\r\n\r\n".encode() + body)


def asking(method, *parameters, **how):
    return http(document(NAMESPACE, *call(method, *parameters)), method, **how)


def getting(instance_name):
    return asking("GetInstance", ("InstanceName", instance_name))


def path(class_name, bindings):
    return f'<INSTANCENAME CLASSNAME="{class_name}">{bindings}</INSTANCENAME>'


def key(name_, value):
    return f'<KEYBINDING NAME="{name_}">{value}</KEYBINDING>'


def text_key(name_, value, kind="string"):
    return key(name_, f'<KEYVALUE VALUETYPE="{kind}">{value}</KEYVALUE>')


def reference(class_name, bindings):
    return f"<VALUE.REFERENCE>{path(class_name, bindings)}</VALUE.REFERENCE>"


def thing(number):
    return name("BENCH_Thing", Name=f"{number:08}")


def prop(name_, value, kind="string", qualifiers=""):
    return f'<PROPERTY NAME="{name_}" TYPE="{kind}">{qualifiers}{value}</PROPERTY>'


def array(name_, kind, values):
    return (f'<PROPERTY.ARRAY NAME="{name_}" TYPE="{kind}"><VALUE.ARRAY>{values}</VALUE.ARRAY>'
            f"</PROPERTY.ARRAY>")


def creating(members, class_name="BENCH_Thing"):
    return asking("CreateInstance",
                  ("NewInstance", f'<INSTANCE CLASSNAME="{class_name}">{members}</INSTANCE>'))


def unwritten(members):
    """Is read as a whole, and refused then, so that it can be asked again: there is one of that name."""
    return creating(prop("Name", f"<VALUE>{1:08}</VALUE>") + members)


def many(count, text):
    """`text` with the number put in."""
    return "".join(text.replace("#", str(number)) for number in range(count))


# Plain requests, which the others are held against


def plain_create(_):
    return unwritten(array("Texts", "string", "<VALUE>some text of an ordinary length</VALUE>" * 200))


# Keys and references


def reference_keys(count, value):
    return getting(path("BENCH_Thing", "".join(
        key(f"K{number}", reference("BENCH_Thing", text_key("Name", value)))
        for number in range(count))))


def nested_references(count, value):
    """As deep as it goes."""
    nested = text_key("Name", value)
    for _ in range(3):
        nested = key("R", reference("BENCH_Thing", nested))
    return getting(path("BENCH_Thing", "".join(
        nested.replace('"R"', f'"K{number}"', 1) for number in range(count))))


def wide_references(count):
    """References with as many keys as it goes."""
    keys = many(100, text_key("N#", "v"))
    return getting(path("BENCH_Thing", "".join(
        key(f"K{number}", reference("BENCH_Thing", keys)) for number in range(count))))


def doubtful_references(count, depth=1):
    """Strings that might be paths, as far as their text goes."""
    nested = many(200, text_key("N#", "="))
    for _ in range(depth - 1):
        nested = key("R", reference("BENCH_Thing", nested))
    return getting(path("BENCH_Thing", "".join(
        key(f"K{number}", reference("BENCH_Thing", nested)) for number in range(count))))


def sole_keys(count):
    """Each key without its name, which the class has to tell."""
    value = ("<VALUE.REFERENCE><INSTANCENAME CLASSNAME=\"BENCH_Wide\"><KEYVALUE>v</KEYVALUE>"
             "</INSTANCENAME></VALUE.REFERENCE>")
    return getting(path("BENCH_Thing", many(count, key("K#", value))))


def property_references(count):
    return unwritten("".join(
        f'<PROPERTY.REFERENCE NAME="P{number}">'
        f'{reference("BENCH_Thing", text_key("Name", "v" * 7000))}</PROPERTY.REFERENCE>'
        for number in range(count)))


# Names


def namespaces(count):
    body = document("/".join(["a"] * count), *call("EnumerateClassNames"))
    return http(body, "EnumerateClassNames", "a")


def host_namespaces(count):
    """A reference with many parts in its namespace, so that the header has not to repeat them."""
    parts = '<NAMESPACE NAME="a"/>' * count
    return getting(path("BENCH_Thing", key("Name", (
        f"<VALUE.REFERENCE><LOCALINSTANCEPATH><LOCALNAMESPACEPATH>{parts}</LOCALNAMESPACEPATH>"
        f'{path("BENCH_Thing", text_key("Name", "v"))}</LOCALINSTANCEPATH></VALUE.REFERENCE>'))))


def property_list(count, method="EnumerateInstances", target=None, names="P#"):
    target = target or ("ClassName", of_class("ORVEX_Vsan"))
    values = many(count, f"<VALUE>{names}</VALUE>")
    return asking(method, target, ("PropertyList", f"<VALUE.ARRAY>{values}</VALUE.ARRAY>"))


def colliding(length):
    """Names that FNV-1a and the like have no trouble with, but that differ only at their ends."""
    return lambda count: property_list(count, names="P" + "x" * length + "#")


# Instances


def qualified(properties, qualifiers):
    return unwritten("".join(
        prop(f"P{number}", "", qualifiers=many(qualifiers, '<QUALIFIER NAME="Q#" TYPE="string"/>'))
        for number in range(properties)))


def instance_qualifiers(count):
    return unwritten(many(count, '<QUALIFIER NAME="Q#" TYPE="string"/>'))


def wide_instance(count):
    """Properties that the class has, of one that there is."""
    return creating(prop("Name", "<VALUE>there</VALUE>") +
                    many(count, prop("P#", "<VALUE>v</VALUE>")), "BENCH_Wide")


def wide_modify(count):
    """Properties that the class has not."""
    return asking("ModifyInstance", ("ModifiedInstance", (
        f'<VALUE.NAMEDINSTANCE>{name("BENCH_Wide", Name="there")}<INSTANCE CLASSNAME="BENCH_Wide">'
        f'{many(count, prop("P#", "<VALUE>v</VALUE>"))}</INSTANCE></VALUE.NAMEDINSTANCE>')))


def values(kind, property_, value):
    return lambda count: unwritten(array(property_, kind, f"<VALUE>{value}</VALUE>" * count))


def text(piece):
    """A property's value made of many of that piece."""
    return lambda count: unwritten(prop("Text", f"<VALUE>{piece * count}</VALUE>"))


# XML


def misplaced(element):
    return lambda count: http(
        '<?xml version="1.0" encoding="utf-8"?><CIM CIMVERSION="2.0" DTDVERSION="2.0">'
        '<MESSAGE ID="1" PROTOCOLVERSION="1.0"><SIMPLEREQ><IMETHODCALL NAME="GetInstance">' +
        element * count + "</IMETHODCALL></SIMPLEREQ></MESSAGE></CIM>")


def between(piece):
    """Something that does not count, many times, in an ordinary request."""
    body = document(NAMESPACE, *call("GetInstance", ("InstanceName", thing(1))))
    return lambda count: http(body.replace("<SIMPLEREQ>", "<SIMPLEREQ>" + piece * count))


def attributes(count):
    return http('<?xml version="1.0" encoding="utf-8"?><CIM' + many(count, ' a#=""') + "/>")


def doctype_references(count):
    body = document(NAMESPACE, *call("GetInstance", ("InstanceName", name(
        "BENCH_Thing", Name="&lt;" * count))))
    return http(body.replace("<CIM ", '<!DOCTYPE CIM SYSTEM "cim.dtd"><CIM '))


def message_id(piece):
    return lambda count: http(document(NAMESPACE, *call("GetInstance", (
        "InstanceName", thing(1))), piece * count))


def multiple_requests(count):
    one = document(NAMESPACE, *call("GetInstance", ("InstanceName", thing(1))))
    simple = one[one.index("<SIMPLEREQ>"):one.index("</MESSAGE>")]
    return http(one.replace(simple, "<MULTIREQ>" + simple * count + "</MULTIREQ>"))


def parameters(element):
    return lambda count: asking("GetInstance", ("InstanceName", thing(1)),
                                *[("X", element)] * count)


# Associations


def linked(method, *filters):
    """All that is linked to one thing, or to that many of them."""
    return lambda _: asking(method, ("ObjectName", thing(0)), *filters)


def of_class_level(method):
    return lambda _: asking(method, ("ObjectName", of_class("CIM_ManagedElement")))


# HTTP


def header_fields(line):
    return lambda count: getting_with(many(count, line + "\r\n").encode())


def getting_with(lines):
    body = document(NAMESPACE, *call("GetInstance", ("InstanceName", thing(1))))
    whole = http(body)
    return whole.replace(b"\r\n\r\n", b"\r\n" + lines + b"\r\n", 1)


def long_field(before, piece, after="", verb="POST"):
    body = document(NAMESPACE, *call("GetInstance", ("InstanceName", thing(1))))

    def make(count):
        line = (before + piece * count + after + "\r\n").encode()
        field = before.split(":")[0].encode() + b":"
        lines = [one for one in http(body, verb=verb).split(b"\r\n\r\n", 1)[0].split(b"\r\n")
                 if not one.startswith(field)]
        return b"\r\n".join(lines) + b"\r\n" + line + b"\r\n" + body.encode()
    return make


def chunked(size):
    body = document(NAMESPACE, *call("GetInstance", ("InstanceName", thing(1))))

    def make(count):
        whole = body.replace("<SIMPLEREQ>", "<SIMPLEREQ>" + " " * count).encode()
        head = http("").replace(b"Content-Length: 0", b"Transfer-Encoding: chunked")
        pieces = (whole[at:at + size] for at in range(0, len(whole), size))
        return head + b"".join(b"%x\r\n%b\r\n" % (len(one), one) for one in pieces) + b"0\r\n\r\n"
    return make


class Shape(NamedTuple):
    title: str
    make: Callable[[int], bytes]  # a request
    size: int  # the larger number; the other is a quarter of it
    by_store: bool = False  # it costs by what is stored and is not written: links, a wide class


PLAIN = (
    Shape("GetInstance from the repository", lambda _: QUESTIONS[1].bytes(), 4),
    Shape("CreateInstance of 10 kB", plain_create, 4),
    Shape("EnumerateInstances of 10,000", lambda _: asking(
        "EnumerateInstances", ("ClassName", of_class("BENCH_Thing"))), 4),
)

SHAPES = (
    Shape("reference keys of 7 kB", lambda n: reference_keys(n, "v" * 7000), 1000),
    Shape("reference keys of 7 kB with an equal sign",
          lambda n: reference_keys(n, "v" * 3500 + "=" + "v" * 3500), 1000),
    Shape("reference keys of 2.7 kB of quotes", lambda n: reference_keys(n, '"' * 2700), 1000),
    Shape("nested references of 500 B of quotes", lambda n: nested_references(n, '"' * 500), 1000),
    Shape("nested references of 7 kB with equal signs",
          lambda n: nested_references(n, "a.b=" * 1750), 1000),
    Shape("references with 100 keys", wide_references, 1000),
    Shape("references with 200 keys that might be references", doubtful_references, 500),
    Shape("the same in references in references", lambda n: doubtful_references(n, 3), 480),
    Shape("reference keys whose names the class tells", sole_keys, 1000),
    Shape("keys", lambda n: getting(path("BENCH_Thing", many(n, text_key("K#", "v")))), 1000),
    Shape("a key of one long text", lambda n: getting(thing(1).replace("0", "v" * n, 1)), 6000000),
    Shape("a key of many equal signs", lambda n: getting(
        path("BENCH_Thing", text_key("Name", "a=" * n))), 3000000),
    Shape("a key of a long number", lambda n: getting(
        path("BENCH_Thing", text_key("Name", "7" * n, "numeric"))), 6000000),
    Shape("numeric keys of 7 kB", lambda n: getting(
        path("BENCH_Thing", many(n, text_key("K#", "0" * 7000 + "1", "numeric")))), 1000),
    Shape("reference keys with a number of 7 kB", lambda n: getting(path("BENCH_Thing", many(
        n, key("K#", reference("BENCH_Thing", text_key("Name", "7" * 7000, "numeric")))))), 1000),
    Shape("a key that differs at its end", lambda n: getting(thing(9999)), 4),
    Shape("properties that are references of 7 kB", property_references, 990),
    Shape("parts of a namespace", namespaces, 240000),
    Shape("parts of a reference's namespace", host_namespaces, 240000),
    Shape("names in a property list", property_list, 200000),
    Shape("names in a property list of 40 characters", colliding(36), 100000),
    Shape("names in a property list of 10,000 instances", lambda n: property_list(
        n, target=("ClassName", of_class("BENCH_Thing"))), 2000),
    Shape("one name many times in a property list", lambda n: property_list(n, names="Name"),
          300000),
    Shape("names in a property list of GetInstance", lambda n: property_list(
        n, "GetInstance", ("InstanceName", thing(1))), 200000),
    Shape("names in a property list of GetClass", lambda n: property_list(
        n, "GetClass", ("ClassName", of_class("BENCH_Wide"))), 200000),
    Shape("names in a property list of Associators", lambda n: property_list(
        n, "Associators", ("ObjectName", PROFILE)),
        200000),
    Shape("names in a property list of a module", lambda n: property_list(
        n, "EnumerateInstances", ("ClassName", of_class("CIM_RegisteredProfile"))), 200000),
    Shape("properties with 990 qualifiers", lambda n: qualified(n, 990), 180),
    Shape("980 properties with qualifiers", lambda n: qualified(980, n), 180),
    Shape("qualifiers of an instance", instance_qualifiers, 996),
    Shape("properties of a wide class", wide_instance, 900),
    Shape("properties modified of a wide class", wide_modify, 900),
    Shape("values in an array of uint8", values("uint8", "Bytes", "1"), 320000),
    Shape("values in an array of boolean", values("boolean", "Flags", "true"), 300000),
    Shape("values in an array of string", values("string", "Texts", "v"), 320000),
    Shape("empty values in an array of string", values("string", "Texts", ""), 400000),
    Shape("values in an array of datetime", values("datetime", "Times",
                                                   "20260101000000.000000+000"), 180000),
    Shape("values in an array of real64", values("real64", "Reals", "1.25e10"), 280000),
    Shape("values in an array of char16", values("char16", "Letters", "a"), 320000),
    Shape("digits of a uint64", lambda n: unwritten(prop("Number", f"<VALUE>{'0' * n}1</VALUE>",
                                                         "uint64")), 6000000),
    Shape("digits of a real64", lambda n: unwritten(prop("Real", f"<VALUE>1.{'7' * n}</VALUE>",
                                                         "real64")), 6000000),
    Shape("characters of a text", text("v"), 7000000),
    Shape("characters of a text, each a reference", text("&#65;"), 1500000),
    Shape("characters of a text, each an entity", text("&lt;"), 1800000),
    Shape("characters of a text, each a line feed", text("\n"), 7000000),
    Shape("characters of a text, each CR LF", text("\r\n"), 3500000),
    Shape("characters of a text, each in CDATA", text("<![CDATA[a]]>"), 600000),
    Shape("characters of a text, each after a comment", text("a<!---->"), 900000),
    Shape("characters of a text, of two bytes", text("\u00e4"), 3500000),
    Shape("characters of a text, of three bytes", text("\u20ac"), 2300000),
    Shape("characters of a text, of four bytes", text("\U0001F600"), 1700000),
    Shape("characters of a text, ASCII and others in turn", text("a\u00e4"), 2300000),
    Shape("elements that are unknown", misplaced("<a/>"), 1900000),
    Shape("elements that are misplaced", misplaced("<VALUE/>"), 900000),
    Shape("elements with 16 attributes", misplaced("<VALUE " + " ".join(
        f'xml{letter}=""' for letter in "abcdefghijklmnop") + "/>"), 50000),
    Shape("attributes of an element", attributes, 700000),
    Shape("comments", between("<!---->"), 1000000),
    Shape("a long comment", lambda n: between("<!--" + "a" * n + "-->")(1), 7000000),
    Shape("processing instructions", between("<?a?>"), 1400000),
    Shape("blanks between elements", between(" "), 7000000),
    Shape("correlators", between('<CORRELATOR NAME="a" TYPE="string"><VALUE>v</VALUE></CORRELATOR>'),
          110000),
    Shape("entities with a document type elsewhere", doctype_references, 1500000),
    Shape("characters of a message's ID", message_id("a"), 7000000),
    Shape("quotes of a message's ID", message_id("&quot;"), 1100000),
    Shape("requests in a message", multiple_requests, 16000),
    Shape("parameters", parameters("<VALUE>v</VALUE>"), 150000),
    Shape("null parameters", parameters(""), 150000),
    Shape("elements with names of their own", lambda n: http(
        '<?xml version="1.0" encoding="utf-8"?><CIM>' + many(n, "<a#/>") + "</CIM>"), 800000),
    Shape("characters of a class's name", lambda n: asking(
        "EnumerateInstances", ("ClassName", of_class("a" * n))), 7000000),
    Shape("characters of a key's name", lambda n: getting(
        path("BENCH_Thing", text_key("a" * n, "v"))), 7000000),
    Shape("keys with names of 7 kB", lambda n: getting(
        path("BENCH_Thing", many(n, text_key("a" * 7000 + "#", "v")))), 1000),
    Shape("characters of a role", lambda n: asking(
        "AssociatorNames", ("ObjectName", thing(1)), ("Role", f"<VALUE>{'a' * n}</VALUE>")),
        7000000),
    Shape("a text that is no XML", lambda n: http("a" * n), 7000000),
    Shape("blanks that are no XML", lambda n: http("\n" * n), 7000000),
    Shape("a text that is not UTF-8", lambda n: http("\u20ac".encode() * n + b"\xff"), 2300000),
    Shape("keys to a module", lambda n: getting(
        path("CIM_RegisteredProfile", many(n, text_key("K#", "v" * 7000)))), 1000),
    Shape("a long key to a module", lambda n: getting(
        name("CIM_RegisteredProfile", InstanceID="v" * n)), 7000000),
    Shape("reference keys to a module", lambda n: asking("AssociatorNames", ("ObjectName", path(
        "CIM_RegisteredProfile", many(n, key("K#", reference("BENCH_Thing", text_key(
            "Name", "v" * 7000))))))), 1000),
    Shape("a long role to a module", lambda n: asking(
        "AssociatorNames", ("ObjectName", PROFILE), ("Role", f"<VALUE>{'a' * n}</VALUE>")),
        7000000),
    Shape("an instance of a wide class with one property", lambda n: creating(
        prop("Name", "<VALUE>there</VALUE>") + prop(f"P{n}", ""), "BENCH_Wide"), 4),
    Shape("associators of one with 10,000", linked("AssociatorNames"), 4),
    Shape("associators of one with 10,000, another result class", linked(
        "AssociatorNames", ("ResultClass", of_class("BENCH_Wide"))), 4, True),
    Shape("associators of one with 10,000, another role", linked(
        "AssociatorNames", ("Role", "<VALUE>Nobody</VALUE>")), 4),
    Shape("associators of one with 10,000, the other role", linked(
        "AssociatorNames", ("Role", "<VALUE>Dependent</VALUE>")), 4),
    Shape("associators of one with 10,000, another far role", linked(
        "AssociatorNames", ("ResultRole", "<VALUE>Nobody</VALUE>")), 4),
    Shape("associator objects of one with 10,000", linked("Associators"), 4),
    Shape("references of one with 10,000", linked("ReferenceNames"), 4),
    Shape("references of one with 10,000, another role", linked(
        "ReferenceNames", ("Role", "<VALUE>Nobody</VALUE>")), 4),
    Shape("classes that a class is associated with", of_class_level("AssociatorNames"), 4),
    Shape("associations of a class", of_class_level("ReferenceNames"), 4),
    Shape("a method that a class has not", lambda _: http(
        '<?xml version="1.0" encoding="utf-8"?><CIM CIMVERSION="2.0" DTDVERSION="2.0">'
        '<MESSAGE ID="1" PROTOCOLVERSION="1.0"><SIMPLEREQ><METHODCALL NAME="M"><LOCALCLASSPATH>'
        f'<LOCALNAMESPACEPATH><NAMESPACE NAME="{NAMESPACE}"/></LOCALNAMESPACEPATH>'
        '<CLASSNAME NAME="BENCH_Wide"/></LOCALCLASSPATH></METHODCALL></SIMPLEREQ></MESSAGE></CIM>',
        "M", f"{NAMESPACE}:BENCH_Wide"), 4),
    Shape("an enumeration of nothing", lambda _: asking(
        "EnumerateInstances", ("ClassName", of_class("BENCH_Empty")),
        ("DeepInheritance", "<VALUE>FALSE</VALUE>")), 4),
    Shape("GetProperty of a wide class", lambda _: asking(
        "GetProperty", ("InstanceName", name("BENCH_Wide", Name="there")),
        ("PropertyName", "<VALUE>Name</VALUE>")), 4),
    Shape("GetInstance of a wide class without properties", lambda _: asking(
        "GetInstance", ("InstanceName", name("BENCH_Wide", Name="there")),
        ("PropertyList", "<VALUE.ARRAY></VALUE.ARRAY>")), 4, True),
    Shape("10,000 instances without properties", lambda _: asking(
        "EnumerateInstances", ("ClassName", of_class("BENCH_Thing")),
        ("PropertyList", "<VALUE.ARRAY></VALUE.ARRAY>")), 4),
    Shape("header fields", header_fields("a:b"), 9000),
    Shape("header fields of one name", header_fields("CIMMethods:"), 4000),
    Shape("a long header field", header_fields("a: " + "b" * 200), 300),
    Shape("escapes in CIMObject", long_field("CIMObject: ", "%41"), 20000),
    Shape("parameters of Content-Type", long_field("Content-Type: application/xml", ";a=b"), 15000),
    Shape("parameters of Man", long_field("Man: x", ";a=b", verb="M-POST"), 15000),
    Shape("chunks of one byte", chunked(1), 200000),
    Shape("chunks of 100 bytes", chunked(100), 4000000),
    Shape("a smallest request", lambda _: b"GET / HTTP/1.1\r\nHost: a\r\n\r\n", 4),
)
