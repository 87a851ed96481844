"""The client of the walk, with a method for each operation of one namespace. It keeps paths as they went over
the wire: where each reference says that it is, and what it lacks."""

import sys

from served import SOURCE

sys.path.insert(0, str(SOURCE / "walk"))
from serverprofile_walk import client, connection
from serverprofile_walk.client import CimError  # for those who ask
from serverprofile_walk.objects import Key, Path

PATIENCE = 120  # seconds for an answer


def to(class_name, **keys):
    """A path in no place; values are texts or paths."""
    return Path(class_name, tuple(Key(name, value, "reference" if isinstance(value, Path) else "string")
                                  for name, value in keys.items()))


def path(text):
    """CLASS.KEY="VALUE",... of which no value has a comma or a quote, in no place."""
    name, keys = text.split(".", 1)
    return to(name, **{key: value.strip('"') for key, value in (k.split("=", 1) for k in keys.split(","))})


def references(instance):
    """The references of an instance by name: (class declared, Path)."""
    return {each.name: (each.reference_class, each.value) for each in instance.properties
            if each.type == "reference"}


class Client:
    """Asks the server at `address`, "HOST:PORT", in `namespace`. A connection for each question, so several
    threads may ask."""

    def __init__(self, address, namespace):
        self._at = connection.server(f"http://{address}", patience=PATIENCE)
        self._namespace = namespace

    def enumerate_names(self, name):
        return self._ask("EnumerateInstanceNames", Path(name))

    def enumerate(self, name):
        return self._ask("EnumerateInstances", Path(name))

    def get(self, instance):
        return self._ask("GetInstance", instance)

    def associator_names(self, source, association=None):
        return self._ask("AssociatorNames", source, association)

    def associators(self, source, association=None):
        return self._ask("Associators", source, association)

    def reference_names(self, source, association=None):
        return self._ask("ReferenceNames", source, association)

    def references(self, source, association=None):
        return self._ask("References", source, association)

    def _ask(self, operation, target, association=None):
        with client.Client(self._at) as asking:
            return asking.ask(client.Question(operation, self._namespace, target.local, association))
