"""What is asked over the wire, and one answer to it, whole and timed."""

import pathlib
import socket
import sys
import time
from typing import NamedTuple

SOURCE = pathlib.Path(__file__).resolve().parent.parent
sys.path.insert(0, str(SOURCE / "tests" / "kit"))

from request import asking, call, name, of_class

NAMESPACE = "interop"
PATIENCE = 600  # seconds for an answer
PROFILE = name("CIM_RegisteredProfile", InstanceID="Orvex1")


class WrongAnswer(Exception):
    """The server answered something else than what the measurement is about."""


class Question(NamedTuple):
    """`least` is the number of objects that a right answer has at least."""

    title: str
    method: str
    parameters: tuple
    element: str  # of an object in the answer
    least: int

    def bytes(self, target="/cimom"):
        return asking(call(self.method, *self.parameters), NAMESPACE, line=f"POST {target} HTTP/1.1")

    def check(self, reply):
        found = reply.count(f"<{self.element} ".encode())
        if not reply.startswith(b"HTTP/1.1 200 ") or found < self.least:
            raise WrongAnswer(f"{self.title}: {found} objects instead of {self.least}; the answer "
                              f"begins {reply[:600]!r}")


def vsan(number):
    return f"200100{number:08X}05"


NAMES = Question("names from the repository", "EnumerateInstanceNames",
                 (("ClassName", of_class("ORVEX_Vsan")),), "INSTANCENAME", 2)
INSTANCES = Question("instances from the repository", "EnumerateInstances",
                     (("ClassName", of_class("ORVEX_Vsan")),
                      ("LocalOnly", "<VALUE>FALSE</VALUE>")), "INSTANCENAME", 2)
GET_MODULE = Question("GetInstance from the module", "GetInstance", (("InstanceName", PROFILE),),
                      "INSTANCE", 1)
ASSOCIATORS = Question("AssociatorNames through the module", "AssociatorNames",
                       (("ObjectName", PROFILE),
                        ("AssocClass", of_class("CIM_ElementConformsToProfile"))),
                       "INSTANCENAME", 2)
QUESTIONS = (
    NAMES,
    Question("GetInstance from the repository", "GetInstance", (("InstanceName", name(
        "ORVEX_Vsan", CreationClassName="ORVEX_Vsan", Name="20010005AD000001")),), "INSTANCE", 1),
    Question("GetClass", "GetClass", (("ClassName", of_class("CIM_RegisteredProfile")),
                                      ("LocalOnly", "<VALUE>FALSE</VALUE>")), "CLASS", 1),
    GET_MODULE,
    Question("EnumerateInstances from the module", "EnumerateInstances",
             (("ClassName", of_class("CIM_RegisteredProfile")),), "INSTANCENAME", 6),
    ASSOCIATORS,
)


class Answer(NamedTuple):
    """An answer as it came, and when, in seconds from the moment at which it was asked."""

    bytes: bytes
    first_byte: float
    whole: float


def is_whole(reply):
    """An error without a body has no length."""
    end = reply.find(b"\r\n\r\n", 0, 65536)
    if end < 0:
        return False
    header = bytes(reply[:end]).lower()
    if b"transfer-encoding: chunked" in header:
        return reply.endswith(b"\r\n0\r\n\r\n")
    _, found, length = header.rpartition(b"content-length:")
    return not found or len(reply) >= end + 4 + int(length.split()[0])


def ask_on(connection, question):
    reply = bytearray()
    buffer = bytearray(1 << 20)
    view = memoryview(buffer)
    start = time.monotonic()
    connection.sendall(question.bytes())
    first = None
    while not is_whole(reply):
        size = connection.recv_into(buffer)
        if size == 0:
            raise WrongAnswer(f"{question.title}: the connection ended within the answer")
        first = first or time.monotonic()
        reply += view[:size]
    return Answer(bytes(reply), first - start, time.monotonic() - start)


def connect(port):
    return socket.create_connection(("127.0.0.1", port), PATIENCE)


def ask(port, question):
    """Asks once, on a connection of its own, and checks the answer."""
    with connect(port) as connection:
        answer = ask_on(connection, question)
    question.check(answer.bytes)
    return answer
