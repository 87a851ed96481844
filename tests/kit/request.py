"""CIM-XML requests as text and as bytes (DSP0200, DSP0201), asked as often as one likes on one connection. For
tests that compare whole answers; cimxml.py is for those that read them."""

import http.client
from typing import NamedTuple
from xml.etree import ElementTree
from xml.sax.saxutils import escape

NAMESPACE = "interop"
PATIENCE = 120  # seconds for an answer; a server under a sanitizer is slow


class CimError(Exception):
    def __init__(self, code, description):
        super().__init__(f"{code}: {description}")
        self.code = int(code)


def name(class_name, **keys):
    bindings = "".join(
        f'<KEYBINDING NAME="{key}"><KEYVALUE VALUETYPE="string">{escape(str(value))}</KEYVALUE></KEYBINDING>'
        for key, value in keys.items())
    return f'<INSTANCENAME CLASSNAME="{class_name}">{bindings}</INSTANCENAME>'


def of_class(class_name):
    return f'<CLASSNAME NAME="{class_name}"/>'


def value(key, content):
    """A parameter that is a plain value: a text or a boolean."""
    return key, f"<VALUE>{str(content).upper() if isinstance(content, bool) else content}</VALUE>"


def array(key, *texts):
    """A parameter that is an array of texts."""
    return key, "<VALUE.ARRAY>" + "".join(f"<VALUE>{text}</VALUE>" for text in texts) + "</VALUE.ARRAY>"


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


def post(body, line="POST /cimom HTTP/1.1", **fields):
    """The bytes of a request for GetClass with this body, a text or bytes. `fields` of the header come besides
    the usual ones or in their place, with _ for -; None takes one away."""
    body = body.encode() if isinstance(body, str) else body
    fields = {"Host": "h", "Content_Type": "application/xml; charset=utf-8", "CIMOperation": "MethodCall",
              "CIMMethod": "GetClass", "CIMObject": NAMESPACE, "Content_Length": len(body), **fields}
    lines = [line, *(f"{key.replace('_', '-')}: {value}"
                     for key, value in fields.items() if value is not None)]
    return "\r\n".join(lines).encode("utf-8", "surrogateescape") + b"\r\n\r\n" + body


def asking(request, namespace=NAMESPACE, size=0, **fields):
    """The bytes of a request, what call() made, with a body of at least `size` bytes."""
    return post(document(namespace, *request).ljust(size), CIMMethod=request[0],
                **{"CIMObject": namespace, **fields})


def ask(connection, namespace, request, message="1", **fields):
    """Status and text of the answer that comes on an http.client.HTTPConnection, asked with `fields` in
    the header besides."""
    method, parameters = request
    connection.request("POST", "/cimom", document(namespace, method, parameters, message), {
        "Content-Type": "application/xml; charset=utf-8", "CIMOperation": "MethodCall",
        "CIMMethod": method, "CIMObject": namespace, **fields})
    reply = connection.getresponse()
    # An error of HTTP: its end is not told.
    if reply.getheader("content-length") is None and not reply.chunked:
        connection.close()
        return reply.status, ""
    return reply.status, reply.read().decode()


def returned(text):
    """The elements of a reply's IRETURNVALUE. Throws CimError."""
    answer = ElementTree.fromstring(text).find(".//IMETHODRESPONSE")
    error = answer.find("ERROR")
    if error is not None:
        raise CimError(error.get("CODE"), error.get("DESCRIPTION"))
    found = answer.find("IRETURNVALUE")
    return [] if found is None else list(found)


class Request(NamedTuple):
    """An operation in a namespace. `parameters` are (name, element)."""

    namespace: str
    method: str
    parameters: tuple = ()


class Connection:
    """A connection to the server at `address`, "HOST:PORT", opened again when it was closed."""

    def __init__(self, address):
        self._connection = http.client.HTTPConnection(address, timeout=PATIENCE)

    def close(self):
        self._connection.close()

    def send(self, request):
        """The status and the text of the reply to a Request."""
        return ask(self._connection, request.namespace, call(request.method, *request.parameters))

    def ask(self, namespace, method, *parameters):
        """The elements of the answer's IRETURNVALUE. Throws CimError."""
        status, text = self.send(Request(namespace, method, parameters))
        if status != 200:
            raise RuntimeError(f"{method} in {namespace}: HTTP {status}")
        return returned(text)
