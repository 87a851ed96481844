"""The walk as one HTML page that needs nothing else: no script, no other file, no server."""

import html
import time

from . import VERSION, graph
from .command import command
from .judge import properties_of, text_of
from .objects import Class, Instance
from .profile import ODDITIES
from .text import printable, verdict
from .walk import Form
from .world import Thing, telling

LONGEST = 400  # characters of a value
MOST = 200  # objects of an answer, rows of a table

# The browser itself is told to load nothing, and to run nothing.
HEAD = """<!DOCTYPE html>
<html lang="en">
<head>
<meta charset="utf-8">
<meta http-equiv="Content-Security-Policy" content="default-src 'none'; style-src 'unsafe-inline'">
<meta name="viewport" content="width=device-width, initial-scale=1">
<meta name="color-scheme" content="light dark">
<title>%(title)s</title>
<style>
:root { --ground: #fff; --text: #1d2430; --soft: #5b6675; --line: #d9dee6; --panel: #f5f7fa;
  --good: #1a7f37; --good-ground: #e9f7ec; --bad: #b42318; --bad-ground: #fdecea; --link: #1f5fa8; }
@media (prefers-color-scheme: dark) { :root { --ground: #14181f; --text: #e3e8ef; --soft: #98a4b5;
  --line: #303947; --panel: #1c222c; --good: #57c26f; --good-ground: #14301c; --bad: #ff8a80;
  --bad-ground: #3a1715; --link: #7fb3f0; } }
* { box-sizing: border-box; }
body { margin: 0 auto; max-width: 76rem; padding: 2rem 1.5rem 4rem; background: var(--ground);
  color: var(--text); font: 15px/1.5 system-ui, "DejaVu Sans", sans-serif; }
h1 { font-size: 1.6rem; margin: 0 0 .2rem; } h2 { margin: 2.5rem 0 .8rem; font-size: 1.25rem; }
h3 { margin: 1.4rem 0 .5rem; font-size: 1rem; } p { margin: .4rem 0; }
a { color: var(--link); } .soft { color: var(--soft); } .right { color: var(--good); } .wrong { color: var(--bad); }
.verdict { margin: 1.2rem 0; padding: .9rem 1.2rem; border-radius: .5rem; font-size: 1.1rem;
  border-left: .4rem solid; }
.verdict.right { background: var(--good-ground); } .verdict.wrong { background: var(--bad-ground); }
nav { margin: 1rem 0; } nav a { margin-right: 1.1rem; }
table { border-collapse: collapse; width: 100%%; } th { font-weight: 600; color: var(--soft); }
td, th { text-align: left; vertical-align: top; padding: .25rem .9rem .25rem 0;
  border-bottom: 1px solid var(--line); overflow-wrap: anywhere; }
code, pre { font: 13px/1.45 "DejaVu Sans Mono", ui-monospace, monospace; overflow-wrap: anywhere; }
pre { margin: .3rem 0; padding: .5rem .7rem; background: var(--panel); border-radius: .3rem;
  white-space: pre-wrap; }
details { border: 1px solid var(--line); border-radius: .4rem; margin: .35rem 0; padding: 0 .8rem; }
details[open] { padding-bottom: .7rem; } summary { cursor: pointer; padding: .4rem 0;
  overflow-wrap: anywhere; }
.mark { display: inline-block; min-width: 4rem; font-weight: 600; }
.question { border-top: 1px solid var(--line); padding: .5rem 0; }
.question:first-of-type { border: 0; }
.problem { margin: .25rem 0; padding: .35rem .7rem; border-left: .25rem solid var(--bad);
  background: var(--bad-ground); overflow-wrap: anywhere; }
.picture { background: #fff; border: 1px solid var(--line); border-radius: .4rem; padding: .6rem;
  overflow-x: auto; } .picture svg { display: block; max-width: 100%%; height: auto; }
.objects { display: grid; gap: .4rem; grid-template-columns: repeat(auto-fill, minmax(22rem, 1fr));
  align-items: start; } .objects td:first-child { color: var(--soft); white-space: nowrap; }
ul { margin: .3rem 0; padding-left: 1.3rem; }
</style>
</head>
<body>
"""


def _text(text):
    """A text for the page, in which nothing is markup."""
    return html.escape(printable(str(text)))


def _value(value):
    text = text_of(value)
    return _text(text if len(text) <= LONGEST else text[:LONGEST] + "...")


def page(at, walk, password_file=None):
    """The page, and why there is a picture less, or None."""
    return _Page(at, walk, password_file).text()


class _Page:
    def __init__(self, at, walk, password_file):
        self._at = at
        self._walk = walk
        self._password_file = password_file
        self._no_picture = None
        self._lines = []

    def _add(self, *lines):
        self._lines += lines

    def text(self):
        walk = self._walk
        title = f"Server profile on {self._at.url}"
        self._add(HEAD % {"title": _text(title)}, f"<h1>{_text(title)}</h1>",
                  f'<p class="soft">{_text(time.strftime("%Y-%m-%d %H:%M:%S %z"))}, '
                  f"serverprofile-walk {VERSION}</p>",
                  f'<p class="verdict {_mark(walk.whole)}">{_text(verdict(walk))}</p>',
                  '<nav><a href="#picture">Picture</a><a href="#wrong">Wrong answers</a>'
                  '<a href="#objects">Objects</a><a href="#questions">Questions</a>'
                  '<a href="#oddities">Odd on purpose</a></nav>')
        self._namespaces()
        self._picture()
        self._wrong()
        self._objects()
        self._questions()
        self._add('<h2 id="oddities">Odd on purpose</h2>', "<table>")
        for oddity in ODDITIES:
            self._add(f"<tr><td>{_text(oddity.name)}</td><td>{_text(oddity.text)}</td></tr>")
        self._add("</table>", "</body>", "</html>", "")
        return "\n".join(self._lines), self._no_picture

    def _namespaces(self):
        self._add("<table>", "<tr><th>namespace</th><th>verdict</th><th>questions</th>"
                  "<th>wrong</th></tr>")
        for section in self._walk.sections:
            whole = not section.wrong
            self._add(f"<tr><td>{_text(section.namespace)}</td>"
                      f'<td class="{_mark(whole)}">{"whole" if whole else "not whole"}</td>'
                      f"<td>{len(section.asked)}</td><td>{len(section.wrong)}</td></tr>")
        self._add("</table>")
        if self._walk.left_out:
            self._add(f'<p class="soft">Listed by the server, and not walked: '
                      f'{_text(", ".join(self._walk.left_out))}</p>')
        for note in self._walk.notes:
            self._add(f'<p class="soft">Let pass: {_text(note.text)}</p>')

    def _picture(self):
        self._add('<h2 id="picture">What was found</h2>')
        for section in self._walk.sections[:1]:
            self._add(f'<p class="soft">In {_text(section.namespace)}</p>')
            try:
                picture = graph.inlined(graph.svg(graph.Graph(self._walk, section).dot()))
                self._add(f'<div class="picture">{picture}</div>')
            except graph.CannotDraw as error:
                self._no_picture = str(error)
                self._add(f'<p class="wrong">No picture: {_text(error)}</p>')

    def _wrong(self):
        self._add('<h2 id="wrong">Wrong answers</h2>')
        if not self._walk.wrong:
            self._add('<p class="right">None.</p>')
        for asked in self._walk.wrong:
            self._add(f'<p><a href="#q{asked.number}">Question {asked.number}</a> in '
                      f"{_text(asked.question.namespace)}</p>")
            self._question(asked, "")

    def _objects(self):
        self._add('<h2 id="objects">Objects</h2>')
        for section in self._walk.sections:
            self._add(f"<h3>{_text(section.namespace)}</h3>", '<div class="objects">')
            met = {}
            for step in section.steps:
                for form in step.met:
                    if isinstance(form, Form) and isinstance(form.what, Thing) \
                            and form.namespace.lower() == section.namespace.lower():
                        met.setdefault(form.what, form.path)
            for thing, path in list(met.items())[:MOST]:
                told = self._walk.told(section.namespace, thing)
                name = telling(path)[1] if thing.label == thing.shown else thing.label
                self._add(f"<details><summary>{_text(thing.kind.name)}: <b>{_text(name)}</b></summary>",
                          f"<p><code>{_text(path)}</code></p>", "<table>")
                for each in list(told.values())[:MOST]:
                    self._add(f"<tr><td>{_text(each.name)}</td><td>{_value(each.value)}</td></tr>")
                self._add("</table>", "</details>")
            self._add("</div>")

    def _questions(self):
        self._add('<h2 id="questions">Questions</h2>')
        seen = set()
        for section in self._walk.sections:
            self._add(f"<h3>{_text(section.namespace)}</h3>")
            for step in section.steps:
                asked = [each for each in step.asked if each.number not in seen]
                seen.update(each.number for each in asked)
                if asked:
                    self._step(section, step, asked)

    def _step(self, section, step, asked):
        right = not any(each.problems for each in asked)
        place = "" if step.namespace.lower() == section.namespace.lower() else \
            f" (in {_text(step.namespace)})"
        found = f": {_text(step.found)}" if right else ""
        self._add(f'<details><summary><span class="mark {_mark(right)}">'
                  f'{"ok" if right else "WRONG"}</span>{_text(step.title)}{place}{found}</summary>')
        for oddity in step.oddities:
            self._add(f'<p class="soft">{_text(oddity.text)}</p>')
        for each in asked:
            self._question(each, f' id="q{each.number}"')
        self._add("</details>")

    def _question(self, asked, anchor):
        self._add(f'<div class="question"{anchor}>',
                  f"<pre>{_text(command(self._at, asked.question, self._password_file))}</pre>")
        for text, advice in asked.problems:
            self._add(f'<p class="problem">{_text(text)}'
                      + (f"<br>{_text(advice)}" if advice else "") + "</p>")
        if asked.problems and asked.expected is not None:
            self._add(f'<p class="soft">Expected: {_text("; ".join(asked.expected) or "nothing")}</p>')
        self._answer(asked)
        self._add("</div>")

    def _answer(self, asked):
        if asked.error is not None:
            self._add(f'<p class="wrong">{_text(asked.error)}</p>')
            return
        answer = asked.answer if isinstance(asked.answer, list) else [asked.answer]
        if not answer:
            self._add('<p class="soft">nothing</p>')
        self._add("<ul>")
        for each in answer[:MOST]:
            self._add(f"<li>{_item(each)}</li>")
        self._add("</ul>")
        if len(answer) > MOST:
            self._add(f"<p>... {len(answer)} in all</p>")


def _item(each):
    """An object of an answer."""
    if isinstance(each, Class):
        return f"class <code>{_text(each.name)}</code>, {len(each.properties)} properties"
    if not isinstance(each, Instance):
        return f"<code>{_text(each)}</code>"
    told = "; ".join(f"{_text(one.name)}={_value(one.value)}"
                     for one in list(properties_of(each).values())[:MOST])
    return f'<code>{_text(each.path or each.class_name)}</code><br><span class="soft">{told}</span>'


def _mark(right):
    return "right" if right else "wrong"
