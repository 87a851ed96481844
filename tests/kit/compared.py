"""What a server answers, object by object, in one form for all clients: what a client made of an
answer is compared with what the project's own client (walk/) got for the same question.

A path is [host, namespace, class, [[key, value]...]], an instance [path, class, [[property, type,
value]...]], keys and properties sorted by name, values as text, paths, lists or None. A part of a
path that was not sent is None.
"""

import socket
import sys

from served import SOURCE

sys.path.insert(0, str(SOURCE / "walk"))
from serverprofile_walk import connection
from serverprofile_walk.client import CimError, Client, Question
from serverprofile_walk.objects import Instance, Key, Path

ROOTS = ("CIM_Namespace", "CIM_RegisteredProfile")
ENUMERATIONS = ("EnumerateInstanceNames", "EnumerateInstances")
TRAVERSALS = ("AssociatorNames", "Associators", "ReferenceNames", "References")
HERE = socket.gethostname()  # as the server names itself
# Whose objects the module says to be in root/cimv2 wherever they are enumerated. Only an enumeration that is
# pulled shows it: the others have no places, and neither have names.
OF_CIMV2 = ("CIM_RegisteredProfile", "CIM_RegisteredSubProfile")
SHOWN = 5  # differences that a report spells out


def sorted_pairs(pairs):
    return sorted(pairs, key=lambda pair: pair[0].lower())


def text(value):
    """A value in the common form."""
    if value is None or isinstance(value, str):
        return value
    if isinstance(value, Path):
        return of_path(value)
    if isinstance(value, tuple):
        return [text(each) for each in value]
    return str(value).lower() if isinstance(value, bool) else str(value)


def of_path(path):
    return [path.host, path.namespace, path.class_name,
            sorted_pairs([key.name, text(key.value)] for key in path.keys)]


def of_instance(instance, path):
    return [path, instance.class_name, sorted_pairs(
        [each.name, each.type, text(each.value)] for each in instance.properties)]


def to_path(path):
    """The Path that a list says; keys are strings, or references."""
    host, namespace, class_name, keys = path
    return Path(class_name, tuple(
        Key(name, to_path(value), "reference") if isinstance(value, list) else Key(name, value)
        for name, value in keys) or None, namespace, host)


def in_order(value):
    """A path or an instance, keys and properties sorted."""
    if len(value) == 4:
        host, namespace, class_name, keys = value
        return [host, namespace, class_name, sorted_pairs(
            [name, in_order(of) if isinstance(of, list) else of] for name, of in keys)]
    path, class_name, properties = value
    return [path and in_order(path), class_name, sorted_pairs(
        [name, kind, in_order(of) if kind == "reference" and of else of]
        for name, kind, of in properties)]


def ends(path):
    """The paths in the keys of a path, which make it one of an association."""
    return [value for _, value in path[3] if isinstance(value, list)]


def askable(path):
    """Whether every reference in the keys of a path says in which namespace it is."""
    return all(end[1] and askable(end) for end in ends(path))


def difference(one, other):
    """The first part in which two values differ, of each."""
    if isinstance(one, (list, tuple)) and isinstance(other, (list, tuple)) and len(one) == len(other):
        for left, right in zip(one, other):
            if left != right:
                return difference(left, right)
    return one, other


def of_element(element):
    """What an element of a document says: a path, or an instance."""
    if element.tag == "INSTANCENAME":
        return [None, None, element.get("CLASSNAME"), sorted_pairs(
            [key.get("NAME"), _key(key[0])] for key in element)]
    if element.tag in ("INSTANCEPATH", "LOCALINSTANCEPATH"):
        host = element.findtext("NAMESPACEPATH/HOST")
        # The first LOCALNAMESPACEPATH is the path's own; those of references come behind it.
        place = next(element.iter("LOCALNAMESPACEPATH"))
        return [host, "/".join(part.get("NAME") for part in place),
                *of_element(element.find("INSTANCENAME"))[2:]]
    if element.tag == "INSTANCE":
        return [None, element.get("CLASSNAME"), sorted_pairs(
            [each.get("NAME"), each.get("TYPE", "reference"), _value(each)]
            for each in element if each.tag.startswith("PROPERTY"))]
    return [of_element(element[0]), *of_element(element[1])[1:]]


def _key(element):
    return of_element(element[0]) if element.tag == "VALUE.REFERENCE" else element.text or ""


def _value(element):
    for value in element:
        if value.tag == "VALUE.ARRAY":
            return [_text(element, each) for each in value]
        if value.tag in ("VALUE", "VALUE.REFERENCE"):
            return _text(element, value)
    return None


def _text(element, value):
    if value.tag != "VALUE":
        return None if value.tag == "VALUE.NULL" else _key(value)
    found = value.text or ""
    return found.lower() if element.get("TYPE") == "boolean" else found


class Answers:
    """What the server at `url` answers, asked once for each question; a context manager. `more` are
    those of connection.server."""

    def __init__(self, url, **more):
        self._client = Client(connection.server(url, patience=120, **more))
        self._known = {}

    def __enter__(self):
        return self

    def __exit__(self, *error):
        self._client.__exit__(*error)

    def get(self, operation, asked, pulled=False, host=None):
        """Objects and status for `asked`, a path (of a class where it has no keys). What is pulled comes
        with a whole path; else, where no place was sent, it is the namespace asked, and `host`."""
        target = to_path(asked)
        key = (operation, asked[1], target.local)
        if key not in self._known:
            try:
                found = self._client.ask(Question(operation, asked[1], target.local))
                self._known[key] = ([found] if isinstance(found, Instance) else found, 0)
            except CimError as error:
                self._known[key] = ([], int(error.code))
        found, status = self._known[key]
        return [self._object(each, asked, pulled, host) for each in found], status

    @staticmethod
    def _object(found, asked, pulled, host):
        path = found.path if isinstance(found, Instance) else found
        if path is None:
            place = in_order(asked)
        else:
            place = of_path(path)
            if pulled and not place[1] and isinstance(found, Instance) and place[2] in OF_CIMV2:
                place[1] = "root/cimv2"
            place[1] = place[1] or asked[1]
            place[0] = place[0] or (HERE if pulled else host)
        return of_instance(found, place) if isinstance(found, Instance) else place

    def questions(self, namespace):
        """Each (operation, asked) of a walk that starts in `namespace` and asks on by the paths that
        come back."""
        waiting, seen, classes = [], set(), set()

        def ask(operation, asked):
            for found in self.get(operation, asked)[0]:
                path = found if len(found) == 4 else found[0]
                if str(path[1:]) not in seen and askable(path):
                    seen.add(str(path[1:]))
                    waiting.append(path)
            return operation, asked

        def enumerate_class(place, name):
            if (place, name) not in classes:
                classes.add((place, name))
                for operation in ENUMERATIONS:
                    yield ask(operation, [None, place, name, []])

        for name in ROOTS:
            yield from enumerate_class(namespace, name)
        while waiting:
            path = waiting.pop()
            yield from enumerate_class(path[1], path[2])
            yield ask("GetInstance", path)
            if not ends(path):
                for operation in TRAVERSALS:
                    yield ask(operation, path)


class Figures:
    """Counts the calls of a client, and those whose answers are right."""

    def __init__(self, name):
        self.name = name
        self.calls = self.objects = self.right = 0
        self.wrong = []

    def count(self, what, answered, expected):
        """One call: (objects, status) as the client has them, and as they have to be."""
        self.calls += 1
        self.objects += len(answered[0])
        if tuple(answered) == tuple(expected):
            self.right += 1
        else:
            found, wanted = difference(answered, expected)
            self.wrong.append(f"{what}\n    answered {found}\n    expected {wanted}")

    def report(self):
        """Prints the figures; the number of wrong answers, and no call at all counts as one."""
        print(f"{self.name}: {self.calls} calls, {self.objects} objects, {self.right} right, "
              f"{len(self.wrong)} wrong")
        for wrong in self.wrong[:SHOWN]:
            print("  WRONG " + wrong)
        return len(self.wrong) or (0 if self.calls else 1)
