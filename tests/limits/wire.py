"""What a limit is met with over the wire: requests as bytes, replies as text."""

import contextlib
import socket

from request import call, document, of_class

PATIENCE = 60  # seconds
NAMESPACE = "interop"


def http(body, method="GetClass", namespace=NAMESPACE):
    """A request with which the connection ends."""
    return (f"POST /cimom HTTP/1.1\r\nHost: h\r\nConnection: close\r\n"
            f"Content-Type: application/xml; charset=utf-8\r\nCIMOperation: MethodCall\r\n"
            f"CIMMethod: {method}\r\nCIMObject: {namespace}\r\n"
            f"Content-Length: {len(body)}\r\nX: \r\n\r\n{body}").encode()


def operation(method, *parameters):
    return http(document(NAMESPACE, *call(method, *parameters)), method)


def getting_class(size=0):
    """A request that is answered by itself, with a body of at least `size` bytes."""
    method, parameters = call("GetClass", ("ClassName", of_class("CIM_Dependency")))
    return http(document(NAMESPACE, method, parameters).ljust(size), method)


def enumerating(namespace, class_name, size=0):
    """A request that enters a module, with a body of at least `size` bytes."""
    method, parameters = call("EnumerateInstanceNames", ("ClassName", of_class(class_name)))
    return http(document(namespace, method, parameters).ljust(size), method, namespace)


def answer(port, request):
    """All of the reply; "" if the server closes the connection instead."""
    with contextlib.closing(socket.create_connection(("127.0.0.1", port), PATIENCE)) as client:
        client.sendall(request)
        return rest(client)


def rest(client, end=None):
    """What comes, up to `end` or to the end of the connection."""
    reply = b""
    with contextlib.suppress(ConnectionResetError):
        while end is None or not reply.endswith(end):
            piece = client.recv(1 << 20)
            if not piece:
                break
            reply += piece
    return reply.decode()
