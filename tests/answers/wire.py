"""Sends CIM-XML requests (DSP0200, DSP0201) over one connection and gives back what came, whole."""

import http.client
import pathlib
import sys
from typing import NamedTuple
from xml.sax.saxutils import quoteattr

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent.parent / "clients"))
import cimxml  # noqa: E402
import request  # noqa: E402

PATIENCE = 120  # seconds for an answer; a server under a sanitizer is slow


class Request(NamedTuple):
    """An intrinsic operation. `parameters` are (name, XML of the value)."""

    namespace: str
    method: str
    parameters: tuple = ()

    def document(self):
        return request.document(self.namespace, *request.call(self.method, *self.parameters))


class_name = request.of_class


def boolean(value):
    return f"<VALUE>{'TRUE' if value else 'FALSE'}</VALUE>"


def instance_name(name, keys=()):
    """`keys` are (name, value) of strings."""
    bindings = "".join(
        f"<KEYBINDING NAME={quoteattr(key)}>{key_value(value)}</KEYBINDING>" for key, value in keys)
    return f"<INSTANCENAME CLASSNAME={quoteattr(name)}>{bindings}</INSTANCENAME>"


def key_value(text, kind="string"):
    escaped = text.replace("&", "&amp;").replace("<", "&lt;")
    return f'<KEYVALUE VALUETYPE="{kind}">{escaped}</KEYVALUE>'


class Connection:
    """A connection to the server at `address`, "HOST:PORT", opened again when it was closed."""

    def __init__(self, address):
        self._connection = http.client.HTTPConnection(address, timeout=PATIENCE)

    def close(self):
        self._connection.close()

    def send(self, asked):
        """The status and the text of the reply."""
        headers = {"Content-Type": 'application/xml; charset="utf-8"',
                   "CIMOperation": "MethodCall", "CIMMethod": asked.method,
                   "CIMObject": asked.namespace}
        self._connection.request("POST", "/cimom", asked.document().encode(), headers)
        reply = self._connection.getresponse()
        # An error of HTTP: its end is not told.
        if reply.getheader("content-length") is None and not reply.chunked:
            self._connection.close()
            return reply.status, ""
        return reply.status, reply.read().decode()

    def ask(self, namespace, method, *parameters):
        """The elements of the answer's IRETURNVALUE. Throws cimxml.CimError."""
        status, text = self.send(Request(namespace, method, parameters))
        if status != 200:
            raise RuntimeError(f"{method} in {namespace}: HTTP {status}")
        return cimxml.returned(text)
