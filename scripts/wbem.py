"""Asks a CIM server with wbemcli, and reads what it prints: the paths of objects and associations,
and their properties. For the programs beside this file."""

import dataclasses
import re
import subprocess

NAMESPACES = ("root/cimv2", "interop", "root/PG_InterOp")
PATIENCE = 120  # seconds for an answer; a server under a sanitizer is slow

# A reference inside a path is printed with no colon after its namespace, so what follows the
# namespace can only be told apart by knowing the namespaces.
PLACE = re.compile(r"(?P<host>[^/\"]+)/(?P<namespace>" + "|".join(NAMESPACES) + r"):?")
KEY = re.compile(r'(\w+)="((?:[^"\\]|\\.)*)"')
REFERENCE = re.compile(r',?(\w+)=(?!")')


@dataclasses.dataclass(frozen=True)
class Path:
    """The path of an object. `host` and `namespace` are empty where the path names none; `keys` are
    (name, value) with values without quotes."""

    host: str
    namespace: str
    class_name: str
    keys: tuple

    @property
    def telling(self):
        """The key that tells the object from its like, with its value."""
        for wanted in ("InstanceID", "Name"):
            for name, value in self.keys:
                if name == wanted:
                    return name, value
        return "", ""

    def __str__(self):
        """Class and telling key, for people."""
        return f'{self.class_name} "{self.telling[1]}"'

    def text(self, class_name=""):
        """The path as a client writes it behind the namespace; of another class if one is named."""
        keys = ",".join(f'{name}="{value}"' for name, value in self.keys)
        return f"{class_name or self.class_name}.{keys}"


@dataclasses.dataclass(frozen=True)
class Association:
    """An association: its class and (role, Path) of its ends, in the order in which they came."""

    class_name: str
    ends: tuple

    def __str__(self):
        return f"{self.class_name} ({', '.join(f'{role} {path}' for role, path in self.ends)})"


@dataclasses.dataclass(frozen=True)
class Found:
    """A path or an association in an answer, with the properties that came with it, as printed."""

    what: object
    properties: dict


def path(text):
    place = PLACE.match(text)
    rest = text[place.end():] if place else text
    class_name, _, keys = rest.partition(".")
    return Path(place["host"] if place else "", place["namespace"] if place else "", class_name,
                tuple(KEY.findall(keys)))


def object_or_association(line):
    """Reads a line that names an object or an association."""
    place = PLACE.match(line)
    class_name, _, keys = line[place.end() if place else 0:].partition(".")
    roles = list(REFERENCE.finditer(keys))
    if not roles:
        return path(line)
    stops = [role.start() for role in roles[1:]] + [len(keys)]
    return Association(class_name, tuple(
        (role[1], path(keys[role.end():stop])) for role, stop in zip(roles, stops)))


def read(lines):
    """The Found objects of an answer that was printed with -nl."""
    found = []
    for line in lines:
        if line.startswith("-") and found:
            name, _, value = line[1:].partition("=")
            found[-1].properties[name] = value
        elif line:
            found.append(Found(object_or_association(line), {}))
    return found


class Refused(Exception):
    """wbemcli did not get an answer; what it said."""


def run(arguments):
    """What wbemcli prints for these arguments, by lines."""
    try:
        answer = subprocess.run(["wbemcli", *arguments], capture_output=True, text=True,
                                timeout=PATIENCE, check=False)
    except OSError as error:
        raise Refused(f"wbemcli cannot be run: {error.strerror}") from error
    except subprocess.TimeoutExpired as error:
        raise Refused(f"no answer for {PATIENCE} seconds") from error
    if answer.returncode != 0:
        said = [line.strip("* ") for line in (answer.stdout + answer.stderr).splitlines()]
        raise Refused(" ".join(line for line in said if line))
    return answer.stdout.splitlines()
