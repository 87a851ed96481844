#!/usr/bin/env python3
"""Asks the served sample switch everything with the cimcli of an installed OpenPegasus, whole and by
pulled enumerations, and compares every object with what the project's own client gets.

usage: cimcli_test.py BUILD-DIRECTORY --home PEGASUS_HOME

Without TLS, which only some builds of cimcli have.
"""

import os
import pathlib
import re
import subprocess
import sys
from xml.etree import ElementTree

sys.path.insert(1, sys.path[0] + "/../kit")

import compared
import ways

COMMANDS = {  # whole and pulled
    "EnumerateInstanceNames": ("ni", "pni"),
    "EnumerateInstances": ("ei", "pei"),
    "GetInstance": ("gi", None),
    "AssociatorNames": ("an", "pan"),
    "Associators": ("a", "pa"),
    "ReferenceNames": ("rn", "prn"),
    "References": ("r", "pr"),
}
PIECE = "2"  # objects in one reply


def quoted(text):
    return '"' + text.replace("\\", "\\\\").replace('"', '\\"') + '"'


def shown(path):
    """A path as cimcli prints it, and takes it."""
    host, namespace, name, keys = path
    place = (f"//{host}/" if host else "") + (f"{namespace}:" if namespace else "")
    bindings = ",".join(f"{key}={quoted(shown(value) if isinstance(value, list) else value)}"
                        for key, value in keys)
    return f"{place}{name}.{bindings}" if keys else place + name


def read(printed):
    """The paths that were printed, as text, or the instances, with such paths."""
    if "<INSTANCE " not in printed:
        return [line for line in printed.splitlines()
                if line and not re.fullmatch(r"\d+ [\w ]+", line)]
    found = []
    for path, instance in re.findall(r"(?:^path= ([^\n]*)\n)?(<INSTANCE .*?^</INSTANCE>)", printed,
                                     re.MULTILINE | re.DOTALL):
        found.append([path or None, *compared.of_element(ElementTree.fromstring(instance))[1:]])
    return found


def as_printed(operation, objects, pull):
    if operation.startswith("Enumerate") and not pull:  # as it was sent, without a place
        objects = [[None, None, *each[2:]] if operation.endswith("Names") else
                   [[None, None, *each[0][2:]], *each[1:]] for each in objects]
    if operation.endswith("Names"):
        return [shown(each) for each in objects]
    return [[rest[0] if operation == "GetInstance" else shown(path), *rest]
            for path, *rest in objects]


def check(home, served, answers, pull):
    """Asks all questions; returns how much was wrong."""
    figures = compared.Figures(f"cimcli, {served.way.name}, {'pulled' if pull else 'whole'}")
    general = ["-l", served.address, "-o", "xml", "-nlo", "-di"]
    if served.user:
        general += ["-u", served.user, "-p", served.password]
    environment = {**os.environ, "PEGASUS_HOME": str(home), "LD_LIBRARY_PATH": str(home / "lib")}
    questions = [each for namespace in served.namespaces for each in answers.questions(namespace)]
    for operation, asked in questions:
        command = COMMANDS[operation][pull]
        if command is None:
            continue
        done = subprocess.run(
            [home / "bin" / "cimcli", command, shown([None, None, *asked[2:]]), "-n", asked[1],
             *general, *(["-mo", PIECE] if pull else [])],
            capture_output=True, text=True, check=False, timeout=120, env=environment)
        answer = ([], done.stderr) if done.returncode else (read(done.stdout), 0)
        expected, status = answers.get(operation, asked, pull)
        figures.count(f"{operation} {asked}", answer, (as_printed(operation, expected, pull), status))
    return figures.report()


def main():
    build, option, home = sys.argv[1:]
    if option != "--home":
        sys.exit(__doc__)
    home = pathlib.Path(home)
    wrong = 0
    for way in (ways.PLAIN, ways.PLAIN_AND_USER):
        with ways.Reached(build, way) as served:
            with compared.Answers(served.url, **served.own_client()) as answers:
                for pull in (False, True):
                    wrong += check(home, served, answers, pull)
    return 1 if wrong else 0


if __name__ == "__main__":
    sys.exit(main())
