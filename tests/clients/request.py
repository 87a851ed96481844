"""CIM-XML requests as text (DSP0200, DSP0201), asked as often as one likes on one connection. For
tests that compare whole answers; cimxml.py is for those that read them."""


def name(class_name, **keys):
    bindings = "".join(
        f'<KEYBINDING NAME="{key}"><KEYVALUE VALUETYPE="string">{value}</KEYVALUE></KEYBINDING>'
        for key, value in keys.items())
    return f'<INSTANCENAME CLASSNAME="{class_name}">{bindings}</INSTANCENAME>'


def of_class(class_name):
    return f'<CLASSNAME NAME="{class_name}"/>'


def value(key, text):
    """A parameter that is a plain value."""
    return key, f"<VALUE>{text}</VALUE>"


def call(method, *parameters):
    """The method and its parameters, (name, element) each."""
    return method, "".join(f'<IPARAMVALUE NAME="{key}">{value}</IPARAMVALUE>'
                           for key, value in parameters)


def document(namespace, method, parameters, message="1"):
    place = "".join(f'<NAMESPACE NAME="{part}"/>' for part in namespace.split("/"))
    return (f'<?xml version="1.0" encoding="utf-8"?><CIM CIMVERSION="2.0" DTDVERSION="2.0">'
            f'<MESSAGE ID="{message}" PROTOCOLVERSION="1.0"><SIMPLEREQ>'
            f'<IMETHODCALL NAME="{method}">'
            f'<LOCALNAMESPACEPATH>{place}</LOCALNAMESPACEPATH>{parameters}'
            f'</IMETHODCALL></SIMPLEREQ></MESSAGE></CIM>')


def ask(connection, namespace, request, message="1", **fields):
    """Status and text of the answer that comes on an http.client.HTTPConnection, asked with `fields` in
    the header besides."""
    method, parameters = request
    connection.request("POST", "/cimom", document(namespace, method, parameters, message), {
        "Content-Type": "application/xml; charset=utf-8", "CIMOperation": "MethodCall",
        "CIMMethod": method, "CIMObject": namespace, **fields})
    reply = connection.getresponse()
    return reply.status, reply.read().decode()
