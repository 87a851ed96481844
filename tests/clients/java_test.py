#!/usr/bin/env python3
"""Walks the served sample switch with a Java client (java/Walk.java), whole and by pulled enumerations,
with each of its parsers, as POST and M-POST, each pair of these once, in each namespace, and in each way
(ways.py); and compares every object that it got with what the project's own client gets.

usage: java_test.py LIBRARY.jar BUILD-DIRECTORY
"""

import collections
import json
import pathlib
import subprocess
import sys
import tempfile

sys.path.insert(1, sys.path[0] + "/../kit")

import compared
import ways
from served import NAMESPACES

WALK = pathlib.Path(__file__).resolve().parent / "java" / "Walk.java"
MODES = ("SAX,POST,whole", "SAX,M-POST,pulled", "PULL,POST,pulled", "PULL,M-POST,whole", "DOM,POST,whole",
         "DOM,M-POST,pulled")
WITHOUT_ANSWER = ("CloseEnumeration", "PullAfterClose")


def compiled(library, folder):
    """What java needs to run Walk.java. A warning is an error."""
    subprocess.run(["javac", "-Xlint:all", "-Werror", "-cp", library, "-d", folder, WALK], check=True)
    return ["-cp", f"{library}:{folder}", WALK.stem]


def walk(program, trusting, url, namespaces, *options):
    """The calls of the walk, as Walk.java says with --json."""
    done = subprocess.run(["java", *trusting, *program, "--json", *options, url, *namespaces],
                          capture_output=True, text=True, encoding="utf-8", check=False, timeout=600)
    if done.returncode not in (0, 1) or done.stderr:
        raise RuntimeError(f"Walk.java: {done.returncode}\n{done.stderr}")
    return [json.loads(line) for line in done.stdout.splitlines()]


def as_read(value, host):
    """An object as the library reads it: a reference without a place gets the host of what was asked."""
    if not isinstance(value, list):
        return value
    value = [as_read(each, host) for each in value]
    return [value[0] or host, *value[1:]] if len(value) == 4 else value


def check(name, calls, answers, namespaces, modes):
    """Compares; returns how much was wrong."""
    wrong = 0
    asked = collections.defaultdict(set)
    figures = {}
    for mode, _, operation, target, found, status in calls:
        target = compared.in_order(target)
        counted = figures.setdefault(mode, compared.Figures(f"Java, {name}, {mode}"))
        expected = ([], 0) if operation in WITHOUT_ANSWER else answers.get(
            operation, target, mode.endswith("pulled"))
        expected = [as_read(each, target[0]) for each in expected[0]], expected[1]
        counted.count(f"{operation} {target}", ([compared.in_order(each) for each in found], status),
                      expected)
        asked[mode].add((operation, str(target[1:])))
    for counted in figures.values():
        wrong += counted.report()
    # What the walk would have asked, had it got every path that there is.
    complete = {(operation, str(target[1:])) for namespace in namespaces
                for operation, target in answers.questions(namespace)}
    for mode, done in asked.items():
        if complete - done:
            wrong += 1
            print(f"  WRONG {mode}: did not ask {sorted(complete - done)[:compared.SHOWN]}")
    if sorted(figures) != sorted(modes):
        wrong += 1
        print(f"  WRONG {sorted(figures)} instead of {sorted(modes)}")
    return wrong


def trust(served, folder):
    """The options with which java trusts the server."""
    if not served.certificate:
        return []
    store = pathlib.Path(folder) / "trust.p12"
    subprocess.run(["keytool", "-importcert", "-noprompt", "-file", served.certificate, "-keystore",
                    store, "-storepass", "changeit"], check=True, capture_output=True)
    # The library makes an object of a class of Java that is not for others.
    return ["--add-exports", "java.base/sun.security.ssl=ALL-UNNAMED", f"-Djavax.net.ssl.trustStore={store}",
            "-Djavax.net.ssl.trustStorePassword=changeit"]


def check_methods(program, build):
    """Each method is what goes over the wire: the library falls back to POST where M-POST fails."""
    wrong = 0
    for method in ("POST", "M-POST"):
        with tempfile.TemporaryDirectory() as folder, ways.Reached(
                build, ways.PLAIN, options=["--trace-wire", folder]) as served:
            calls = walk(program, [], served.url, NAMESPACES[:1], "--mode", f"SAX,{method},whole")
            sent = [path.read_bytes().split(b" ", 1)[0].decode()
                    for path in pathlib.Path(folder).glob("*-request")]
        if collections.Counter(sent) != {method: len(calls)} or not calls:
            wrong += 1
            print(f"  WRONG {len(calls)} calls as {method} were {collections.Counter(sent)}")
    return wrong


def check_way(program, build, way):
    modes = MODES if way == ways.PLAIN else MODES[1::2]  # each parser
    with ways.Reached(build, way) as served, tempfile.TemporaryDirectory() as folder:
        user = ["--user", f"{served.user}:{served.password}"] if served.user else []
        calls = walk(program, trust(served, folder), served.url, served.namespaces, *user,
                     *(word for mode in modes for word in ("--mode", mode)))
        with compared.Answers(served.url, **served.own_client()) as answers:
            return check(way.name, calls, answers, served.namespaces, modes)


def main():
    library, build = sys.argv[1:]
    with tempfile.TemporaryDirectory() as folder:
        program = compiled(library, folder)
        wrong = check_methods(program, build)
        for way in ways.WAYS:
            wrong += check_way(program, build, way)
    return 1 if wrong else 0


if __name__ == "__main__":
    sys.exit(main())
