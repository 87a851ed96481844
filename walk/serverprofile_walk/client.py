"""The operations of a CIM server (DSP0200), as questions that are values, and a client that asks them.

    client = Client(connection.server("http://127.0.0.1:5988"))
    for path in client.ask(Question("EnumerateInstanceNames", "interop", Path("CIM_Namespace"))):
        print(path)
"""

import urllib.parse
from typing import NamedTuple, Optional

from . import documents
from .connection import Connection, NoAnswer
from .documents import CimError, Malformed
from .objects import Path

__all__ = ("CimError", "Client", "NoAnswer", "OPERATIONS", "Question")


class Operation(NamedTuple):
    """How an operation is asked: the parameter that takes the question's target, those that take its
    association class and result class, what else is sent; and how the elements of a reply are read."""

    target: str
    association: Optional[str]
    result: Optional[str]
    more: tuple
    read: object


WHOLE = (("IncludeQualifiers", False), ("IncludeClassOrigin", False))

# Every property is asked for, inherited ones too. DeepInheritance: those of subclasses as well.
OPERATIONS = {
    "EnumerateInstanceNames": Operation("ClassName", None, None, (), documents.names),
    "EnumerateInstances": Operation("ClassName", None, None, (
        ("LocalOnly", False), ("DeepInheritance", True), *WHOLE), documents.named_instances),
    "GetInstance": Operation("InstanceName", None, None, (("LocalOnly", False), *WHOLE),
                             documents.instance),
    "GetClass": Operation("ClassName", None, None, (
        ("LocalOnly", False), ("IncludeQualifiers", True)), documents.class_definition),
    "EnumerateClassNames": Operation("ClassName", None, None, (("DeepInheritance", True),),
                                     documents.class_names),
    "AssociatorNames": Operation("ObjectName", "AssocClass", "ResultClass", (),
                                 documents.object_paths),
    "Associators": Operation("ObjectName", "AssocClass", "ResultClass", WHOLE,
                             documents.objects_with_path),
    "ReferenceNames": Operation("ObjectName", "ResultClass", None, (), documents.object_paths),
    "References": Operation("ObjectName", "ResultClass", None, WHOLE, documents.objects_with_path),
}


class Question(NamedTuple):
    """What is asked of a server. `target` is a Path: of a class (without keys), or of an instance; it
    is named in the request without its place, which is `namespace`. `association` filters
    traversals by association class, `result` associators by the class at the far end."""

    operation: str
    namespace: str
    target: Optional[Path] = None
    association: Optional[str] = None
    result: Optional[str] = None


class Client:
    """Asks a Server. For one thread."""

    def __init__(self, at):
        self.at = at
        self._connection = Connection(at)
        self._received = 0

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self._connection.close()

    def ask(self, question):
        """What the operation returns: a list of Path for names, a list of Instance, one Instance for
        GetInstance, one Class for GetClass, a list of str for EnumerateClassNames. Throws CimError
        where the server answers with an error, NoAnswer where there is no answer."""
        if self._received > self.at.in_all:
            raise NoAnswer(f"{self.at.url}: the server has sent more than {self.at.in_all} bytes in all, "
                           "and is not asked any more")
        operation = OPERATIONS[question.operation]
        named = ((operation.target, question.target and question.target.local),
                 *((name, value and Path(value)) for name, value in (
                     (operation.association, question.association),
                     (operation.result, question.result)) if name))
        sent = documents.request(question.operation, question.namespace, [
            *((name, value) for name, value in named if value is not None), *operation.more])
        received = self._connection.post(sent, {
            "Content-Type": 'application/xml; charset="utf-8"',
            "CIMProtocolVersion": "1.0", "CIMOperation": "MethodCall",
            "CIMMethod": question.operation,
            "CIMObject": urllib.parse.quote(question.namespace, safe="")})
        self._received += len(received)
        try:
            return operation.read(documents.answer(received, question.operation))
        except Malformed as error:
            raise NoAnswer(f"{self.at.url}: the reply is not what {question.operation} returns: "
                           f"{error}", sent, received) from error
