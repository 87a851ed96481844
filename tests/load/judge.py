"""Which answers to a request are right: kept from asking it alone, and judged by them under load.

The server splits a request into parts, one for each class that it asks, and joins their answers in
the order in which they come. So the order of the parts is free, and that within a part is not. While
the module is disabled, each of its parts is refused with "provider blocked."; the server leaves a
refused part out if another part, its own or one that the module still answered, was not refused. So
around the moment of the change an answer may lack any whole parts of the module, but never single
objects of a part.
"""

import collections
from typing import NamedTuple, Optional
from xml.etree import ElementTree

from mix import Request

RIGHT, REORDERED, BLOCKED, PARTIAL, WRONG = "right", "reordered", "blocked", "partial", "wrong"
BLOCKED_CODE, BLOCKED_TEXT = "7", "CIM_ERR_NOT_SUPPORTED: provider blocked."
REMEMBERED = 24  # verdicts kept for a request, so that texts that come again need not be parsed


class Answer(NamedTuple):
    """An answer taken apart: its objects as texts, or its error."""

    method: Optional[str]
    error: Optional[tuple]  # code, description
    objects: tuple
    classes: tuple  # of the objects

    @classmethod
    def read(cls, text):
        response = ElementTree.fromstring(text).find("MESSAGE/SIMPLERSP/IMETHODRESPONSE")
        error = response.find("ERROR")
        returned = response.find("IRETURNVALUE")
        objects = () if returned is None else tuple(returned)
        for one in objects:
            one.tail = None
        return cls(response.get("NAME"),
                   None if error is None else (error.get("CODE"), error.get("DESCRIPTION")),
                   tuple(ElementTree.tostring(one) for one in objects),
                   tuple(next((e.get("CLASSNAME") for e in one.iter() if e.get("CLASSNAME")), "")
                         for one in objects))

    @property
    def is_blocked(self):
        return self.error == (BLOCKED_CODE, BLOCKED_TEXT)

    def by_class(self):
        """The objects in an order that does not depend on the order of the parts."""
        return sorted(zip(self.classes, self.objects), key=lambda pair: pair[0])

    def without(self, objects):
        """Less `objects`, each once; None if one is not there."""
        left = list(zip(self.objects, self.classes))
        for one in objects:
            found = next((i for i, (other, _) in enumerate(left) if other == one), None)
            if found is None:
                return None
            del left[found]
        return self._replace(objects=tuple(o for o, _ in left), classes=tuple(c for _, c in left))


class Expected:
    """What one request may be answered: `text` alone, `blocked` while the module is disabled, and
    `parts`, {class: objects} of the module, in between."""

    def __init__(self, text, several):
        self.text = text
        self.answer = Answer.read(text)
        self.several = several  # whether the server asks several classes
        self.blocked = None
        self.parts = {}
        self.verdicts = collections.OrderedDict()

    def judge(self, text, in_window):
        if text == self.text:
            return RIGHT
        key = (text, in_window)
        if key not in self.verdicts:
            if len(self.verdicts) >= REMEMBERED:
                self.verdicts.clear()
            self.verdicts[key] = self._judge(text, in_window)
        return self.verdicts[key]

    def _judge(self, text, in_window):
        try:
            answer = Answer.read(text)
        except (ElementTree.ParseError, AttributeError):
            return WRONG
        if answer == self.answer:
            return RIGHT
        if answer.method != self.answer.method:
            return WRONG
        if in_window and self.blocked is not None and (
                answer == self.blocked or self.several and self._is_like(answer, self.blocked)):
            return BLOCKED
        if not self.several or answer.error or self.answer.error:
            return WRONG
        missing = self.missing_parts(answer)
        if missing:
            return PARTIAL if in_window else WRONG
        return WRONG if missing is None else REORDERED

    @staticmethod
    def _is_like(answer, other):
        return answer.error == other.error and answer.by_class() == other.by_class()

    def missing_parts(self, answer):
        """The classes of the module's parts that `answer` lacks; None if it is not made of whole
        parts and all that the server itself has to say."""
        left, missing = answer, []
        full = {name: part for name, part in self.parts.items() if part}
        for name, part in full.items():
            starts = [i for i in range(len(left.objects)) if left.objects[i:i + len(part)] == part]
            if starts:
                cut = slice(starts[0], starts[0] + len(part))
                left = left._replace(
                    objects=left.objects[:cut.start] + left.objects[cut.stop:],
                    classes=left.classes[:cut.start] + left.classes[cut.stop:])
            else:
                missing.append(name)
        if left.by_class() != self.own.by_class():
            return None
        if len(missing) == len(full) == len(self.parts) > 0 and self.blocked.error:
            return None  # all were refused, so the whole is
        return missing

    @property
    def own(self):
        """What the server answers beside the module's parts."""
        if self.blocked is None:
            return self.answer
        return self.blocked._replace(error=None)


class Kept:
    """What every request of a mix was answered alone. `asker` asks and reads; `served` is what
    mix.registered() says."""

    def __init__(self, asker, requests, served):
        self._asker = asker
        self._served = served
        self._below = {}
        self._parts = {}
        self.problems = []  # why a request cannot be judged, in words
        self.expected = {}
        for request in requests:
            self.expected[request] = Expected(asker.text(request), self._is_several(request))

    def check(self, what):
        """Asks each again, alone: the answer must be the one kept."""
        for request, expected in self.expected.items():
            text = self._asker.text(request)
            if expected.judge(text, False) == WRONG:
                self._problem(f"{what}, alone, it is answered otherwise", request, text)

    def keep_blocked(self):
        """Asks each while the module is disabled, and finds out the parts."""
        for request, expected in self.expected.items():
            expected.blocked = Answer.read(self._asker.text(request))
        for request, expected in self.expected.items():
            self._check_blocked(request, expected)
            if request.selector and not expected.answer.error:
                expected.parts = {one: self._part(request, one) for one in self._asked(request)}
                if expected.missing_parts(expected.answer) != []:
                    self._problem("its answer is not that of its parts", request, expected.text)
            expected.verdicts.clear()

    def reaches_module(self, request):
        return bool(self._asked(request))

    def _check_blocked(self, request, expected):
        blocked = expected.blocked
        if not self.reaches_module(request):
            if blocked != expected.answer and not (
                    expected.several and expected._is_like(blocked, expected.answer)):
                self._problem("it never reaches the module, and yet changes with it", request,
                              str(blocked))
        elif request.single and not blocked.is_blocked:
            self._problem("with the module disabled it is not blocked", request, str(blocked))
        elif blocked.error and not blocked.is_blocked and blocked != expected.answer:
            self._problem("with the module disabled it fails otherwise", request, str(blocked))
        elif (not blocked.error and not expected.answer.error
              and expected.answer.without(blocked.objects) is None):
            self._problem("with the module disabled it has other objects", request, str(blocked))

    def _problem(self, what, request, answer):
        self.problems.append(f"{what}: {request}\n{answer}")

    def _below_of(self, namespace, class_name):
        """The subclasses of a class, down to the last."""
        key = namespace, class_name
        if key not in self._below:
            self._below[key] = {one.get("NAME") for one in self._asker.elements(Request(
                namespace, "EnumerateClassNames",
                (("ClassName", f'<CLASSNAME NAME="{class_name}"/>'),
                 ("DeepInheritance", "<VALUE>TRUE</VALUE>"))))}
        return self._below[key]

    def _is_several(self, request):
        if request.selector is None:
            return False
        return request.selected is None or bool(
            self._below_of(request.namespace, request.selected))

    def _asked(self, request):
        """The classes of the module that the server asks for `request`, as far as names say."""
        classes = self._served.get(request.namespace, {})
        if request.selector is None:
            return [request.single] if request.single in classes else []
        any_class = request.selector == "ClassName"
        wanted = classes if request.selected is None else {
            request.selected, *self._below_of(request.namespace, request.selected)}
        return [one for one, association in classes.items()
                if one in wanted and (association or any_class)]

    def _part(self, request, class_name):
        """What the module answers for this class alone; () for an error."""
        asked = request.under(class_name)
        if asked not in self._parts:
            self._parts[asked] = self._find_part(asked)
        return self._parts[asked]

    def _find_part(self, asked):
        expected = self.expected[asked]
        rest = expected.answer
        if rest.error:
            return ()
        taken = () if expected.blocked.error else expected.blocked.objects
        for other in self._asked(asked):
            if other != asked.selected:
                taken += self._part(asked, other)
        left = rest.without(taken)
        return () if left is None else left.objects
