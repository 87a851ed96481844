"""The walk as plain text: a line for each step, what is wrong below it."""

from .client import NoAnswer
from .command import command
from .walk import Outward, Section

SHOWN = 20  # objects of an answer
LONGEST = 2000  # characters of one


def printable(text):
    """On one line, with nothing in it that a terminal obeys."""
    return "".join(each if each.isprintable() else each.encode("unicode_escape").decode()
                   for each in text)


def came(asked):
    """What came, in a few words."""
    if asked.error is not None:
        return _short(str(asked.error))
    texts = [_short(each) for each in asked.came]
    more = f"; ... {len(texts)} in all" if len(texts) > SHOWN else ""
    return "; ".join(texts[:SHOWN]) + more if texts else "nothing"


def _short(words):
    return printable(words if len(words) <= LONGEST else words[:LONGEST] + "...")


def verdict(walk):
    """The last line."""
    count = f"{len(walk.asked)} questions, {len(walk.wrong)} wrong"
    names = ", ".join(section.namespace for section in walk.sections)
    if walk.gave_up:
        return f"The server stopped answering; the walk ended there: {count}"
    if not walk.sections:
        return f"Found no namespace to walk: {count}"
    return f"The walk is {'whole' if walk.whole else 'not whole'} in {names}: {count}"


class Writer:
    """Prints a walk while it goes on: pass `report` to it. With `verbose`, each question is shown."""

    def __init__(self, at, say, verbose=False, password_file=None):
        self._at = at
        self._say = say
        self._verbose = verbose
        self._password_file = password_file
        self._heading = None
        self._namespace = ""
        self._advised = set()
        self._told = set()

    def report(self, what):
        if isinstance(what, (Section, Outward)):
            title = printable(what.namespace) or "Where to walk"
            if isinstance(what, Outward):
                title = f"where paths in {title} lead to elsewhere"
            self._heading = title
            self._namespace = what.namespace
        elif self._verbose or what.wrong or not what.minor:
            self._step(what)

    def _step(self, step):
        if self._heading:
            self._say(f"\n== {self._heading}")
            self._heading = None
        place = ""
        if self._namespace and step.namespace.lower() != self._namespace.lower():
            place = f" (in {printable(step.namespace)})"
        if step.wrong:
            self._say(f"WRONG  {printable(step.title)}{place}")
        else:
            self._say(f"ok     {printable(step.title)}{place}: {printable(step.found)}")
        if self._verbose:
            for oddity in step.oddities:
                self._say(f"         (on purpose: {oddity.text})")
        for asked in step.asked:
            if asked.number in self._told:
                continue
            if asked.problems or self._verbose:
                self._told.add(asked.number)
                self._question(asked)

    def _question(self, asked):
        say = self._say
        say(f"       $ {command(self._at, asked.question, self._password_file)}")
        say(f"         came:     {came(asked)}")
        if asked.problems:
            if asked.expected is not None:
                say(f"         expected: {printable('; '.join(asked.expected)) or 'nothing'}")
            for text, advice in asked.problems:
                say(f"         WRONG:    {_short(text)}")
                if advice and advice not in self._advised:
                    self._advised.add(advice)
                    say(f"         do:       {printable(advice)}")
            if self._verbose and isinstance(asked.error, NoAnswer) and asked.error.received:
                say(f"         bytes:    {asked.error.received[:2000]!r}")

    def end(self, walk):
        for note in walk.notes:
            self._say(f"\nLet pass: {note.text}")
        if walk.left_out:
            self._say(f"\nNot walked: {printable(', '.join(walk.left_out))} "
                      "(--namespace names what to walk, --all walks all where the profile is served)")
        self._say(f"\n{printable(verdict(walk))}")
