#!/usr/bin/env python3
"""The provider library exports its public classes, their functions, and what embedding/ declares."""

import argparse
import pathlib
import re
import subprocess
import sys
import unittest

DECLARED = re.compile(
    r"PEGASUS_(?:COMMON|PROVIDER)_LINKAGE\s+"
    r"[^;{()]*?(?P<name>operator[^\s(]+|\w+)\("
)
CLASS = re.compile(r"(?:class|struct) PEGASUS_(?:COMMON|PROVIDER)_LINKAGE (?P<name>\w+)")
ABOUT = re.compile(
    r"(?:(?:vtable|VTT|typeinfo|typeinfo name|guard variable) for |(?:non-)?(?:virtual )?thunk to )"
)


def declared(folder):
    """The names that the headers below `folder` declare for others, as written after Pegasus::."""
    names = set()
    for header in sorted(folder.rglob("*.h")):
        text = header.read_text(encoding="utf-8")
        for match in [*CLASS.finditer(text), *DECLARED.finditer(text)]:
            inside = "embedding::" if "embedding {" in text[: match.start()] else ""
            names.add(inside + match["name"])
    return names


def exported(library):
    """The demangled names that `library` defines for others."""
    listed = subprocess.run(
        ["nm", "-D", "--defined-only", "-C", library], check=True, capture_output=True, text=True
    ).stdout
    # address, kind, name
    return [line.split(maxsplit=2)[2] for line in listed.splitlines()]


NAME = re.compile(r"Pegasus::((?:embedding::)?(?:operator[^\s(]+|\w+))")


def owner(symbol):
    """What a header would have declared for `symbol`: a class, a function, or None."""
    match = NAME.match(ABOUT.sub("", symbol, count=1))
    return match and match[1]


def is_public(symbol, allowed):
    """Templates of std are in each library that uses them: they say what they are made of."""
    if re.match(r"(?:[\w:<>*&, ]+ )?std::", symbol):
        return set(NAME.findall(symbol)) <= allowed
    return owner(symbol) in allowed


class ExportedSymbols(unittest.TestCase):
    library = headers = embedding = ""

    def test_nothing_else_is_exported(self):
        allowed = declared(pathlib.Path(self.headers)) | declared(pathlib.Path(self.embedding))
        more = [symbol for symbol in exported(self.library) if not is_public(symbol, allowed)]
        self.assertEqual(more, [])

    def test_what_is_declared_is_exported(self):
        there = {owner(symbol) for symbol in exported(self.library)}
        for wanted in ("CIMObjectPath", "Array", "operator==", "embedding::appendInstance"):
            self.assertIn(wanted, there)


if __name__ == "__main__":
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--library", required=True, help="the library to look at")
    parser.add_argument("--headers", required=True, help="the folder of its public headers")
    parser.add_argument("--embedding", required=True, help="the folder of its headers for programs that embed it")
    given, rest = parser.parse_known_args()
    ExportedSymbols.library = given.library
    ExportedSymbols.headers = given.headers
    ExportedSymbols.embedding = given.embedding
    unittest.main(argv=[sys.argv[0], *rest])
