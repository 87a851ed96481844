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


def check_methods(calls, folder):
    """Whether each method is what went over the wire: the library falls back to POST where M-POST fails."""
    sent, told = ([path.read_bytes() for path in pathlib.Path(folder).glob(kind)]
                  for kind in ("*-request", "*-reply"))
    methods = collections.Counter(request.split(b" ", 1)[0].decode() for request in sent)
    wanted = collections.Counter(mode.split(",")[1] for mode, *_ in calls)
    failed = [reply[:100] for reply in told if not reply.startswith(b"HTTP/1.1 200 ")]
    if failed or set(methods) != set(wanted) or any(methods[one] < wanted[one] for one in wanted):
        print(f"  WRONG calls {wanted} were {methods}, {failed[:3]} the replies to some")
        return 1
    return 0


def check_way(program, build, way):
    modes = MODES if way == ways.PLAIN else MODES[1::2]  # each parser
    with tempfile.TemporaryDirectory() as folder, tempfile.TemporaryDirectory() as trace, ways.Reached(
            build, way, options=["--trace-wire", trace]) as served:
        user = ["--user", f"{served.user}:{served.password}"] if served.user else []
        calls = walk(program, trust(served, folder), served.url, served.namespaces, *user,
                     *(word for mode in modes for word in ("--mode", mode)))
        wrong = check_methods(calls, trace) if way == ways.PLAIN else 0
        with compared.Answers(served.url, **served.own_client()) as answers:
            return wrong + check(way.name, calls, answers, served.namespaces, modes)


def main():
    library, build = sys.argv[1:]
    with tempfile.TemporaryDirectory() as folder:
        program = compiled(library, folder)
        wrong = sum(check_way(program, build, way) for way in ways.WAYS)
    return 1 if wrong else 0


if __name__ == "__main__":
    sys.exit(main())
