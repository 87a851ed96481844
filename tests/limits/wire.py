"""What a limit is met with over the wire: requests as bytes, replies as text."""

import contextlib
import socket

from request import asking, call, of_class, post

PATIENCE = 60  # seconds
CLOSING = {"Connection": "close", "X": ""}  # and a field that can be made longer


def http(body):
    """A request with which the connection ends."""
    return post(body, **CLOSING)


def operation(method, *parameters):
    return asking(call(method, *parameters), **CLOSING)


def getting_class(size=0):
    """A request that is answered by itself, with a body of at least `size` bytes."""
    return asking(call("GetClass", ("ClassName", of_class("CIM_Dependency"))), size=size, **CLOSING)


def enumerating(namespace, class_name, size=0):
    """A request that enters a module, with a body of at least `size` bytes."""
    return asking(call("EnumerateInstanceNames", ("ClassName", of_class(class_name))), namespace, size,
                  **CLOSING)


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
