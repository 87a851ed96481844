"""What there has to be in one namespace: the objects of the table and those that the server lists, and
what ties them."""

from typing import NamedTuple

from . import profile
from .objects import Key, Path, identity, reference_identity
from .profile import ASSOCIATIONS, KIND


class Thing(NamedTuple):
    """An object that there has to be. People know it by `label`; `shown` is its class and telling
    key."""

    kind: profile.Kind
    label: str
    shown: str
    identity: tuple

    def __eq__(self, other):
        return isinstance(other, Thing) and self.identity == other.identity

    def __hash__(self):
        return hash(self.identity)

    def is_in(self, place, namespace):
        """Whether its path may say that it is in the namespace `place` when `namespace` was asked."""
        place = place.lower()
        return place == namespace.lower() \
            or self.kind.own and place == profile.OWN_NAMESPACE.lower()

    def __str__(self):
        return self.shown if self.label == self.shown else f"{self.label}, {self.shown}"


class Tie(NamedTuple):
    """An association that there has to be between two Things; `tie` makes one."""

    association: profile.Association
    ends: tuple
    identity: tuple

    @property
    def label(self):
        return f"{self.association.name}, {' - '.join(end.label for end in self.ends)}"

    def other(self, thing):
        return self.ends[0 if thing == self.ends[1] else 1]

    def __str__(self):
        return f"{self.association.name} between {self.ends[0]} and {self.ends[1]}"


def tie(association, ends):
    return Tie(association, ends, reference_identity(association.name, zip(
        association.roles, (end.identity for end in ends))))


def telling(path):
    """The key by which people know the object from its like, as (name, value)."""
    for wanted in ("InstanceID", "Name"):
        value = path.key(wanted)
        if value is not None:
            return wanted, str(value)
    return next(((key.name, str(key.value)) for key in path.keys or ()), ("", ""))


def shown(path):
    """Class and telling key."""
    return f'{path.class_name} "{telling(path)[1]}"'


def listed(kind, path):
    """The Thing that the server names by a path."""
    return Thing(kind, shown(path), shown(path), identity(path))


def member(kind, label, keys):
    path = Path(kind.enumerated, tuple(Key(name, value) for name, value in keys))
    return Thing(kind, label, shown(path), identity(path))


MEMBERS = {kind.name: tuple(member(kind, label, keys) for label, keys, _ in kind.members)
           for kind in profile.KINDS if kind.members}
LABELLED = {label: thing for kind in profile.KINDS if kind.members
            for (label, *_), thing in zip(kind.members, MEMBERS[kind.name])}


def kind_at(selector):
    """The kind of what an end of a row of the table names."""
    return LABELLED[selector].kind if selector in LABELLED else KIND[selector]


def touching(kind):
    """The associations in which objects of that kind take part, as the table has them."""
    return [association for association in ASSOCIATIONS
            if any(kind_at(end) is kind for row in association.rows for end in row)]


class World:
    """What there has to be in a namespace. `list_objects` is called with a kind when the server has to
    say which objects of it there are, and returns their Things."""

    def __init__(self, namespace, list_objects):
        self.namespace = namespace
        self.told = {}  # identity -> (the properties that were told first, by whom)
        self.list_objects = list_objects
        self._listed = {}
        self._ties = {}

    def things(self, selector):
        """The Things of a kind, or the one with a label."""
        if selector in LABELLED:
            return (LABELLED[selector],)
        if selector in MEMBERS:
            return MEMBERS[selector]
        if selector not in self._listed:
            self._listed[selector] = ()  # what asks for itself while it is listed finds nothing
            self._listed[selector] = tuple(self.list_objects(KIND[selector]))
        return self._listed[selector]

    def all_ties(self, association):
        return self._tied(association)[0]

    def _tied(self, association):
        """All associations of a class, and those of each Thing."""
        rows = [(self.things(first), self.things(second)) for first, second in association.rows]
        made, ties, by_end = self._ties.get(association.name, (None, None, None))
        if made != rows:
            ties = [tie(association, (first, second)) for firsts, seconds in rows
                    for first in firsts for second in seconds]
            by_end = {}
            for each in ties:
                for end in each.ends:
                    by_end.setdefault(end, []).append(each)
            self._ties[association.name] = rows, ties, by_end
        return ties, by_end

    def ties(self, thing, associations):
        """The associations that `thing` is in."""
        return [each for association in associations
                for each in self._tied(association)[1].get(thing, ())]

    def far_ends(self, thing, associations):
        """The Things at the far ends for who follows associations from `thing`, and the oddities by
        which they are not those that the associations name."""
        found, oddities = [], []
        for association in associations:
            instead = profile.FAR_END_INSTEAD.get((association.name, thing.label))
            if instead is None:
                found += [each.other(thing) for each in self.ties(thing, [association])]
            else:
                found += self.things(instead[0])
                oddities.append(instead[1])
        return found, oddities
