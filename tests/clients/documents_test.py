#!/usr/bin/env python3
"""Compares docs/walk.dot and docs/associations.md with what a walk sees and what is answered now.

usage: documents_test.py BUILD-DIRECTORY            compares, and shows what differs
       documents_test.py BUILD-DIRECTORY --update   writes them, and docs/walk.svg, anew
"""

import difflib
import html
import re
import sys

sys.path.insert(1, sys.path[0] + "/../kit")

from served import SOURCE, Served

sys.path.insert(0, str(SOURCE / "walk"))
import association_tables
from serverprofile_walk import connection, graph
from serverprofile_walk.client import Client
from serverprofile_walk.objects import Path
from serverprofile_walk.walk import Walk

DOCS = SOURCE / "docs"
PAGE, DOT, SVG = DOCS / "associations.md", DOCS / "walk.dot", DOCS / "walk.svg"
# Where the tables begin in the page.
MARK = """<!-- Made by tests/clients/documents_test.py BUILD-DIRECTORY --update from a running server. Do not
     edit what follows. -->
"""


def stable(served, host):
    """A function that replaces in the value of a key what differs from machine to machine."""
    def replace(value):
        return "switch" if value == host else re.sub(f":{served.port}$", ":5988", value)
    return replace


def answered(build):
    """What the documents have to say: the dot text and the page, whose prose stays."""
    with Served(build) as served:
        with Client(connection.server(f"http://{served.address}", patience=300)) as client:
            walk = Walk(client.ask)
            walk.run()
        if not walk.whole:
            sys.exit("documents_test: the walk meets wrong answers, see serverprofile-walk")
        host, = (asked.answer[0].key("Name") for asked in walk.sections[0].asked
                 if asked.question.operation == "EnumerateInstanceNames"
                 and asked.question.target == Path("ORVEX_ObjectManagerHost")
                 and asked.question.namespace == walk.sections[0].namespace)
        dot = graph.Graph(walk, walk.sections[0]).dot(stable(served, host))
        prose, mark, _ = PAGE.read_text(encoding="utf-8").partition(MARK)
        return dot, prose + mark + association_tables.tables(served.address)


def differences(path, text):
    committed = path.read_text(encoding="utf-8") if path.exists() else ""
    return list(difflib.unified_diff(committed.splitlines(), text.splitlines(),
                                     f"{path.relative_to(SOURCE)}", "answered now", lineterm=""))


def drawn(svg):
    """The names of the boxes and edges of a picture; how they are laid out differs by version."""
    return sorted(html.unescape(title) for title in re.findall("<title>(.*?)</title>", svg))


def described(dot):
    """The same of a text in the dot language."""
    boxes = re.findall(r"^ +(?!node|edge)(\w+) \[", dot, re.MULTILINE)
    edges = re.findall(r"^ +(\w+) -> (\w+) ", dot, re.MULTILINE)
    graphs = re.findall(r"graph (\w+) \{", dot)
    return sorted(boxes + ["->".join(edge) for edge in edges] + graphs)


def main():
    if len(sys.argv) not in (2, 3) or sys.argv[2:] not in ([], ["--update"]):
        print(__doc__)
        return 2
    dot, page = answered(sys.argv[1])
    if sys.argv[2:]:
        PAGE.write_text(page, encoding="utf-8")
        graph.write(dot, DOCS / "walk")
        return 0

    wrong = differences(DOT, dot) + differences(PAGE, page)
    if described(dot) != drawn(SVG.read_text(encoding="utf-8")):
        wrong.append(f"{SVG.relative_to(SOURCE)} is not the picture of {DOT.relative_to(SOURCE)}")
    if wrong:
        print("\n".join(wrong))
        print("If the new answers are meant: tests/clients/documents_test.py BUILD-DIRECTORY --update")
    return 1 if wrong else 0


if __name__ == "__main__":
    sys.exit(main())
