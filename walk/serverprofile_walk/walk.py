"""The walk: what is asked, in which order, following the paths as they were given."""

import collections
import contextlib
from typing import NamedTuple

from . import judge, profile
from .client import CimError, NoAnswer, Question
from .connection import Unreachable
from .judge import Asked
from .objects import Path
from .world import Thing, Tie, World, listed, shown, touching

TRAVERSALS = ("AssociatorNames", "Associators", "ReferenceNames", "References")

# So many questions without an answer, one after the other, end the walk: a server that is gone answers
# no other, and one that hangs would take a day for all.
PATIENCE = 3


class GaveUp(Exception):
    """The server answers no longer."""


class Form(NamedTuple):
    """A path that an answer gave: where it leads, the path as it was given there, and the Thing or Tie
    that it names."""

    namespace: str
    path: Path
    what: object

    @property
    def key(self):
        return self.namespace.lower(), self.path


class _Asking:
    """What has `asked` questions."""

    @property
    def wrong(self):
        return [asked for asked in self.asked if asked.problems]


class Step(_Asking):
    """Some questions that belong together. `title` says what is looked at, `found` what came. `used`
    are the steps that it stands on. A `minor` step is of interest only when it is wrong."""

    def __init__(self, namespace, title, minor=False):
        self.namespace = namespace
        self.title = title
        self.minor = minor
        self.found = ""
        self.asked = []
        self.used = []
        self.met = []
        self.oddities = []
        self.ties = []  # Ties that came
        self.ways = []  # (association class, Thing, Thing): far ends that came


class Outward(NamedTuple):
    """The heading of what the paths in a namespace lead to in others."""

    namespace: str


class Section(_Asking):
    """The walk in one namespace; without a name, the search for namespaces. `steps` are all on which
    its verdict stands; those that an earlier section had taken are among them."""

    def __init__(self, namespace):
        self.namespace = namespace
        self.steps = {}  # as a set that keeps its order

    @property
    def asked(self):
        return list(dict.fromkeys(asked for step in self.steps for asked in step.asked))


class Walk(_Asking):
    """Asks with `ask`, which takes a Question and returns the answer or throws CimError or NoAnswer;
    tells `report` each Section when it begins and each Step when it is done.

    `asked` are the questions in their order, each asked once; `interop` is the namespace that was
    found, `left_out` those that the server lists and that are not walked, `gave_up` whether the
    server stopped answering, `notes` for what reasons something was let pass."""

    def __init__(self, ask, report=lambda what: None):
        self.asked = []
        self.sections = []
        self.interop = None
        self.left_out = []
        self.gave_up = False
        self.notes = {}  # Oddities for which something was let pass, as a set that keeps its order
        self._ask = ask
        self._report = report
        self._answers = {}  # Question -> Asked
        self._steps = {}  # what a step is about -> Step
        self._open = []  # steps that are being taken
        self._worlds = {}
        self._silent = 0

    @property
    def whole(self):
        return bool(self.sections) and not self.gave_up and not self.wrong

    def run(self, namespaces=(), everywhere=False):
        """Walks those namespaces, or else the interop namespace and OWN_NAMESPACE where the profile is
        served, or, `everywhere`, every namespace where it is. Throws Unreachable when the first
        question does not come through."""
        try:
            self.sections = [Section(namespace) for namespace in
                             list(dict.fromkeys(namespaces)) or self._choose(everywhere)]
            outward = {}
            for section in self.sections:
                with self._taking(section):
                    outward[section] = self._walk(section)
            # What a path leads to elsewhere is asked there, and no further: that namespace is
            # walked itself, or is not to be walked.
            for section, forms in outward.items():
                if forms:
                    with self._taking(section, Outward(section.namespace)):
                        for form in forms:
                            self._stand_at(form)
        except GaveUp:
            self.gave_up = True

    @contextlib.contextmanager
    def _taking(self, section, heading=None):
        """Whatever step is taken, or was taken before and is used, belongs to the section."""
        self._report(heading or section)
        self._open.append(Step(section.namespace, ""))
        try:
            yield
        finally:
            pending = collections.deque(self._open.pop().used)
            while pending:
                step = pending.popleft()
                if step not in section.steps:
                    section.steps[step] = None
                    pending += step.used

    # --- which namespaces

    def _choose(self, everywhere):
        with self._taking(Section("")):
            return self._find(everywhere)

    def _find(self, everywhere):
        step = self._step(("interop",), Step("", "the interop namespace"), self._find_interop)
        listed = step.met
        others = listed if everywhere else [each for each in listed
                                            if each.lower() == profile.OWN_NAMESPACE.lower()]
        if not any(each.lower() == profile.OWN_NAMESPACE.lower() for each in others):
            others = [*others, profile.OWN_NAMESPACE]
        chosen = [self.interop] if self.interop else []
        for namespace in others:
            if namespace.lower() not in [each.lower() for each in chosen] and self._serves(namespace):
                chosen.append(namespace)
        self.left_out = [each for each in listed
                         if each.lower() not in [one.lower() for one in chosen]]
        return chosen

    def _find_interop(self, step):
        """As clients do: status 3 means that the next is tried; every other answer, that it is
        there."""
        for name in (*profile.INTEROP_NAMES, *profile.SERVERS_NAMES):
            asked = self._question(step, "EnumerateInstanceNames", name, Path("CIM_Namespace"))
            code = getattr(asked.error, "code", None)
            if code != 3 and not isinstance(asked.error, NoAnswer):
                self.interop = name
                break
        standard = step.asked[:len(profile.INTEROP_NAMES)]
        if self.interop is None or self.interop in profile.SERVERS_NAMES:
            standard[-1].wrong(
                f"no namespace {' or '.join(profile.INTEROP_NAMES)}: clients that look for the "
                "standard's names find nothing on this server",
                "make one and serve the profile there; on an OpenPegasus, "
                "'serverprofile-register install' does")
        elif step.asked[-1].error is not None and step.asked[-1].error.code not in (5, 6):
            step.asked[-1].wrong("clients that look for the interop namespace stop at this error")
        for asked in step.asked:
            if isinstance(asked.error, NoAnswer):
                asked.wrong("no answer")
        step.found = self.interop or "none"
        paths = judge.paths_of(step.asked[-1]) if self.interop else []
        step.met = sorted({str(path.key("Name")) for path in paths if path.key("Name")},
                          key=lambda name: (name.lower() != profile.OWN_NAMESPACE.lower(), name))

    def _serves(self, namespace):
        """Whether one of the profile's own is listed there."""
        def look(step):
            asked = self._question(step, "EnumerateInstanceNames", namespace,
                                   Path("CIM_RegisteredProfile"))
            if asked.error is not None and getattr(asked.error, "code", None) not in (3, 5, 7):
                asked.wrong("whether the profile is served there cannot be told")
            there = {judge.identity(path) for path in judge.paths_of(asked)}
            mine = {thing.identity for thing in World("", None).things("registered profile")}
            step.found = "is served" if there & mine else "is not served"
            step.met = list(there & mine)
        return bool(self._step(("serves", namespace.lower()),
                               Step(namespace, f"the profile in {namespace}"), look).met)

    # --- one namespace

    def _walk(self, section):
        """Walks the namespace of the section. Returns the paths that lead to other namespaces."""
        world = self._world(section.namespace)
        first = [self._class_definition(section.namespace)]
        if any(getattr(asked.error, "code", None) == 3 for asked in first[0].asked):
            return []  # no such namespace: every other answer would say so again
        first += [self._enumeration(world, kind) for kind in profile.KINDS]
        first += [self._association(world, each) for each in profile.ASSOCIATIONS]
        forms = collections.deque(form for step in first for form in step.met)
        seen = {}
        while forms:
            form = forms.popleft()
            if form.key not in seen:
                seen[form.key] = form
                if form.namespace.lower() == section.namespace.lower():
                    forms += self._stand_at(form)
        return [form for form in seen.values()
                if form.namespace.lower() != section.namespace.lower()]

    def told(self, namespace, thing):
        """What is known of an object in a namespace: its properties by their names in small letters."""
        world = self._worlds.get(namespace.lower())
        return world.told.get(thing.identity, ({}, None))[0] if world else {}

    def _world(self, namespace):
        if namespace.lower() not in self._worlds:
            world = World(namespace, None)
            world.list_objects = lambda kind: self._enumeration(world, kind).things
            self._worlds[namespace.lower()] = world
        return self._worlds[namespace.lower()]

    # --- steps

    def _step(self, key, step, take):
        """The step of that key: taken before, or taken now with `take`."""
        taken = key in self._steps
        step = self._steps.setdefault(key, step)
        self._open[-1].used.append(step)
        if taken:
            return step
        self._open.append(step)
        try:
            take(step)
        except GaveUp:
            self._report(step)
            raise
        finally:
            self._open.pop()
        self._report(step)
        return step

    def _question(self, step, operation, namespace, target, association=None):
        question = Question(operation, namespace, target, association)
        if question not in self._answers:
            asked = self._answers[question] = Asked(len(self.asked) + 1, question)
            try:
                asked.answer = self._ask(question)
                self._silent = 0
            except CimError as error:
                asked.error = error
                self._silent = 0
            except NoAnswer as error:
                if not self.asked and isinstance(error, Unreachable):
                    raise
                asked.error = error
                self._silent += 1
            self.asked.append(asked)
            step.asked.append(asked)
            if self._silent >= PATIENCE:
                asked.wrong(f"no answer to {PATIENCE} questions, one after the other: gave up")
                raise GaveUp
        asked = self._answers[question]
        if asked not in step.asked:
            step.asked.append(asked)
        return asked

    def _asked_for(self, step, operation, namespace, target, association=None):
        """As _question; an error is wrong."""
        asked = self._question(step, operation, namespace, target, association)
        if isinstance(asked.error, CimError):
            asked.wrong("an error came", _advice(asked.error, namespace))
        elif asked.error is not None:
            asked.wrong("no answer")
        return asked

    def _meet(self, step, path, namespace, what):
        if not path.keys:
            return  # named by its class alone: nothing to follow
        step.met.append(Form(path.namespace or namespace, path.local, what))
        if isinstance(what, Tie):
            ends = {role.lower(): end for role, end in zip(what.association.roles, what.ends)}
            for key in path.keys:
                self._meet(step, key.value, namespace, ends[key.name.lower()])

    def _class_definition(self, namespace):
        name, value, words = profile.ORGANIZATION

        def look(step):
            asked = self._asked_for(step, "GetClass", namespace, Path(profile.ORGANIZATION_CLASS))
            definition = asked.answer
            if definition is None:
                return
            if definition.name.lower() != profile.ORGANIZATION_CLASS.lower():
                asked.wrong(f"the class that came is {definition.name}")
            found = definition.property(name)
            lists = {each.name.lower(): each.value for each in found.qualifiers} if found else {}
            words_by_value = dict(zip(lists.get("valuemap") or (), lists.get("values") or ()))
            if words_by_value.get(value) != words:
                asked.wrong(f"{name} says no {words} for {value} (qualifiers ValueMap and Values), "
                            "so clients cannot name the organisation of the profiles")
            step.found = f"{name} {value} is {words_by_value.get(value)}"
        return self._step(("class", namespace.lower()),
                          Step(namespace, f"the class {profile.ORGANIZATION_CLASS}"), look)

    def _enumeration(self, world, kind):
        """Which objects of a kind there are; the step has them as `things`."""
        step = Step(world.namespace, f"each {kind.name}")
        step.things = ()
        return self._step(("each", world.namespace.lower(), kind.name), step,
                          lambda step: self._enumerate(step, world, kind))

    def _enumerate(self, step, world, kind):
        namespace = world.namespace
        names = self._asked_for(step, "EnumerateInstanceNames", namespace, Path(kind.enumerated))
        objects = self._asked_for(step, "EnumerateInstances", namespace, Path(kind.enumerated))
        if kind.members:
            step.things = world.things(kind.name)
        else:
            truth = [path for path in judge.paths_of(objects if names.error else names)
                     if not _leaves_out(kind, path)]
            step.things = tuple({judge.identity(path): listed(kind, path) for path in truth}.values())
            if names.error is not None and objects.error is not None:
                return
        if names.error is None:
            _judge_count(names, kind, step.things, namespace)
        expected = [thing for name in (kind.name, *profile.ALSO_LISTED.get(kind.name, ()))
                    for thing in (step.things if name == kind.name else world.things(name))]
        for asked in (names, objects):
            for path, thing, instance in judge.judge_paths(
                    asked, expected, lambda path: _leaves_out(kind, path)):
                if kind.published and thing.kind is kind \
                        and path.class_name.lower() != kind.published.lower():
                    asked.wrong(f"{shown(path)} is published as {path.class_name}, not as "
                                f"{kind.published}", kind.advice)
                if instance is not None:
                    judge.judge_object(asked, instance, path, thing, world)
                self._meet(step, path, namespace, thing)
        if kind.name == "namespace":
            _judge_namespaces(names, namespace)
        for name, pairs in profile.AGREEMENTS:
            if name == kind.name:
                self._judge_agreement(objects, world, pairs)
        step.found = _labels(step.things)

    def _judge_agreement(self, objects, world, pairs):
        _, managers = self._enumeration(world, profile.KIND["object manager"]).asked
        for manager in managers.answer or ():
            for each in objects.answer or ():
                for name, managers_name in pairs:
                    if each.value(name) != manager.value(managers_name):
                        objects.wrong(
                            f"{name} of {shown(each.path)} is {judge.text_of(each.value(name))}, but "
                            f"{managers_name} of the object manager is "
                            f"{judge.text_of(manager.value(managers_name))}",
                            "whoever finds the object manager by this finds none")

    def _association(self, world, association):
        namespace = world.namespace

        def enumerate_ties(step):
            ties = world.all_ties(association)
            for operation in ("EnumerateInstanceNames", "EnumerateInstances"):
                asked = self._asked_for(step, operation, namespace, Path(association.name))
                self._judge_ties(step, asked, ties)
            step.found = "; ".join(" - ".join(end.label for end in tie.ends) for tie in ties)
        return self._step(("ties", namespace.lower(), association.name),
                          Step(namespace, f"each {association.name}"), enumerate_ties)

    def _judge_ties(self, step, asked, ties):
        for path, tie, instance in judge.judge_paths(asked, ties):
            if instance is not None:
                judge.judge_tie(asked, instance, path, tie)
            step.ties.append(tie)
            self._meet(step, path, asked.question.namespace, tie)

    # --- from an object

    def _stand_at(self, form):
        """Gets what the path names, and follows each association from it. Returns the paths met."""
        steps = [self._get(form)]
        if isinstance(form.what, Thing) and form.what.kind.source:
            for association in touching(form.what.kind):
                for name in (association.name, *association.asked_as):
                    steps.append(self._follow(form, name, [association]))
            steps.append(self._follow(form, None, touching(form.what.kind)))
        return [met for step in steps for met in step.met]

    def _get(self, form):
        thing = isinstance(form.what, Thing)

        def get(step):
            step.oddities += [why for kind, key, value, why in profile.NOT_GOT
                              if thing and form.what.kind.name == kind
                              and form.path.key(key) == value]
            if step.oddities:
                self.notes.update(dict.fromkeys(step.oddities))
                step.found = f"{form.path.class_name}, not asked for by its path"
                return
            asked = self._asked_for(step, "GetInstance", form.namespace, form.path)
            asked.expected = [str(form.what)]
            if asked.answer is not None and thing:
                judge.judge_object(asked, asked.answer, form.path, form.what,
                                   self._world(form.namespace))
            elif asked.answer is not None:
                judge.judge_tie(asked, asked.answer, form.path, form.what)
            step.found = f"{form.path.class_name}, got by its path"
        return self._step(("get", *form.key), Step(form.namespace, form.what.label, not thing), get)

    def _follow(self, form, name, associations):
        world, thing = self._world(form.namespace), form.what

        def follow(step):
            ties = world.ties(thing, associations)
            far, step.oddities = world.far_ends(thing, associations)
            for operation in TRAVERSALS:
                asked = self._asked_for(step, operation, form.namespace, form.path, name)
                if operation.startswith("Reference"):
                    self._judge_ties(step, asked, ties)
                    continue
                for path, what, instance in judge.judge_paths(asked, far):
                    if instance is not None:
                        # An associator's instance is told in the namespace in which its path is.
                        judge.judge_object(asked, instance, path, what, self._world(
                            path.namespace or form.namespace))
                    if name:
                        step.ways.append((name, thing, what))
                    self._meet(step, path, form.namespace, what)
            step.found = _labels(far)
            passed = dict.fromkeys(oddity for asked in step.asked for oddity in asked.oddities)
            self.notes.update(passed)
            step.oddities += passed
        title = f"{thing.label} along {name or 'every association'}"
        return self._step(("follow", *form.key, name), Step(form.namespace, title), follow)


def _leaves_out(kind, path):
    """Whether it is one of the kind's class that does not count."""
    return kind.only is not None and path.class_name.lower() == kind.enumerated.lower() \
        and path.key(kind.only[0]) not in (None, kind.only[1])


def _judge_count(asked, kind, things, namespace):
    if len(things) < kind.least:
        asked.wrong(f"no {kind.name} in {namespace}"
                    + (f" with {kind.only[0]} {kind.only[1]}" if kind.only else "")
                    + ": a client cannot follow the profile to one")
    if kind.most is not None and len(things) > kind.most:
        asked.wrong(f"{len(things)} of {kind.name} in {namespace}: there has to be {kind.most}")


def _judge_namespaces(asked, namespace):
    if asked.error is not None:
        return
    names = [str(path.key("Name")) for path in judge.paths_of(asked)]
    for name in names:
        if name.startswith("/"):
            asked.wrong(f"the namespace {name} is listed with a slash before it, and clients that take "
                        "it so find nothing there")
    if namespace.lower() not in [name.lower().lstrip("/") for name in names]:
        asked.wrong(f"{namespace} is not in the list of the server's namespaces, though it is there")


def _labels(things):
    return "; ".join(thing.label for thing in things) or "nothing"


def _advice(error, namespace):
    """What to do about a status, for the administrator of the server."""
    words = error.description.lower()
    if "interop provider" in words:
        return ("this server answers for that namespace itself, and refuses what is not its own; serve "
                "the profile in a namespace of its own, interop: 'serverprofile-register install'")
    if "provider blocked" in words:
        return "the module is disabled: 'cimprovider -e -m ServerProfileProviderModule'"
    if error.code == 3:
        return f"there is no namespace {namespace} on this server"
    if error.code == 5:
        return (f"the class is missing in {namespace}: load the profile's schema there; "
                "'serverprofile-register status' says what is missing")
    return ""
