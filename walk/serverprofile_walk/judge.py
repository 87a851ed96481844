"""Whether an answer is right: compared with what there has to be, and with what was told before."""

import collections

from .objects import Instance, Path, identity, quoted, reference_identity
from .world import Thing, shown


class Asked:
    """A question that was asked, with its answer or the error instead, and what is wrong with it:
    `problems` as (text, advice). `expected` are the texts of what there has to be, None where there
    was no telling."""

    def __init__(self, number, question):
        self.number = number
        self.question = question
        self.answer = None
        self.error = None
        self.expected = None
        self.problems = []
        self.oddities = []

    def wrong(self, text, advice=""):
        if (text, advice) not in self.problems:
            self.problems.append((text, advice))

    @property
    def came(self):
        """What came, as texts."""
        if self.error is not None:
            return [str(self.error)]
        answer = self.answer if isinstance(self.answer, list) else [self.answer]
        return [str(each if isinstance(each, Path) else
                    each.path if isinstance(each, Instance) and each.path else
                    each.class_name if isinstance(each, Instance) else each.name) for each in answer]


def paths_of(asked):
    """The paths in an answer, of names or of instances."""
    return [each.path if isinstance(each, Instance) else each for each in asked.answer or ()]


def judge_paths(asked, expected, ignored=lambda path: False):
    """Compares the objects or associations of an answer with the Things or Ties `expected`. Returns those
    that are right, as (path, Thing or Tie, Instance or None). Notes in `asked.oddities` what was let pass
    for a reason."""
    asked.expected = [str(each) for each in expected]
    if asked.error is not None:
        return []
    wanted = {each.identity: each for each in expected}
    found = collections.Counter()
    right = []
    for path, each in zip(paths_of(asked), asked.answer):
        key = identity(path)
        if path.keys == ():
            key = _keyless(asked, path, expected) or key
        if key not in wanted:
            if not ignored(path):
                asked.wrong(f"{_shown(path)} is too much")
            continue
        found[key] += 1
        if found[key] > 1:
            asked.wrong(f"{_shown(path)} is too much: it came {found[key]} times")
        elif _in_place(asked, path, wanted[key]):
            right.append((path, wanted[key], each if isinstance(each, Instance) else None))
    for key, each in wanted.items():
        if not found[key]:
            asked.wrong(f"{each} is missing")
    return right


def _keyless(asked, path, expected):
    """The identity of the object that may be named by its class alone, and is; None without one."""
    for thing in expected:
        if isinstance(thing, Thing) and thing.kind.keyless \
                and thing.kind.enumerated.lower() == path.class_name.lower():
            asked.oddities.append(thing.kind.keyless)
            return thing.identity
    return None


def _shown(path):
    if path.keys and all(isinstance(key.value, Path) for key in path.keys):
        return (f"{path.class_name} between "
                + " and ".join(_shown(key.value) for key in path.keys))
    return shown(path)


def _in_place(asked, path, what):
    namespace = asked.question.namespace
    in_place = path.namespace is None or path.namespace.lower() == namespace.lower() \
        or isinstance(what, Thing) and what.is_in(path.namespace, namespace)
    if not in_place:
        asked.wrong(f"{_shown(path)} is in the namespace {path.namespace}, not in {namespace}")
    elif not isinstance(what, Thing):
        ends = {role.lower(): end for role, end in zip(what.association.roles, what.ends)}
        in_place = all([_in_place(asked, key.value, ends[key.name.lower()]) for key in path.keys])
    return in_place


# --- whole objects


def judge_object(asked, instance, path, thing, world):
    """Compares an instance with the path under which it came, with the table, and with what was told
    of it before."""
    name = shown(path)
    if instance.class_name.lower() != path.class_name.lower():
        asked.wrong(f"{name} came as an instance of {instance.class_name}")
    for key in path.keys:
        if not _agrees(instance.property(key.name), key):
            asked.wrong(f"{key.name} of {name} is {text_of(instance.value(key.name))}: not what its "
                        "path says")
    kind = thing.kind
    for wanted, value in (*kind.properties, *_of_member(thing)):
        if instance.value(wanted) != value or isinstance(instance.value(wanted), bool):
            asked.wrong(f"{wanted} of {name} is {text_of(instance.value(wanted))}, "
                        f"not {text_of(value)}")
    for wanted in kind.required:
        if instance.value(wanted) is None:
            asked.wrong(f"{wanted} of {name} is NULL, which clients do not expect")
    _judge_story(asked, instance, name, thing, world)


def _of_member(thing):
    for label, keys, properties in thing.kind.members:
        if thing.label == label:
            return (*keys, *properties)
    return ()


def _agrees(found, key):
    if found is None or found.value is None or found.is_array:
        return False
    if isinstance(found.value, Path):
        return isinstance(key.value, Path) and identity(found.value) == identity(key.value)
    if isinstance(found.value, bool):
        return key.value.lower() == str(found.value).lower()
    return str(found.value) == key.value


def properties_of(instance):
    """What an instance tells, by the names of its properties; what is NULL it does not tell."""
    return {each.name.lower(): each for each in instance.properties if each.value is not None}


def _judge_story(asked, instance, name, thing, world):
    """The same object has the same properties in every answer."""
    told = properties_of(instance)
    before, by = world.told.setdefault(thing.identity, (told, asked))
    if not thing.kind.settled or by is asked and before is told:
        return
    for each in sorted(told.keys() | before.keys()):
        one, other = told.get(each), before.get(each)
        if _content(one) != _content(other):
            asked.wrong(f"{(one or other).name} of {name} is {text_of(one and one.value)}, but "
                        f"{text_of(other and other.value)} in the answer to question {by.number}")


def _content(each):
    if each is None:
        return None
    value = each.value
    return each.type, each.is_array, identity(value) if isinstance(value, Path) else value


def judge_tie(asked, instance, path, tie):
    """Compares an association with the path under which it came; `tie` is what it has to be."""
    name = _shown(path)
    if instance.class_name.lower() != path.class_name.lower():
        asked.wrong(f"{name} came as an instance of {instance.class_name}")
    references = [each for each in instance.properties if each.type == "reference"]
    ends = reference_identity(path.class_name, (
        (each.name, identity(each.value)) for each in references))
    if ends != tie.identity:
        named = ", ".join(f"{each.name} {_shown(each.value) if each.value else 'NULL'}"
                          for each in references)
        asked.wrong(f"{name} has other ends in its properties: {named or 'none'}")
        return
    roles = {role.lower(): end for role, end in zip(tie.association.roles, tie.ends)}
    for each in references:
        _in_place(asked, each.value, roles[each.name.lower()])


def text_of(value):
    """A value of a property as people write it."""
    if value is None:
        return "NULL"
    if isinstance(value, tuple):
        return "{" + ", ".join(map(text_of, value)) + "}"
    if isinstance(value, bool):
        return "TRUE" if value else "FALSE"
    if isinstance(value, str):
        return quoted(value)
    return str(value)
