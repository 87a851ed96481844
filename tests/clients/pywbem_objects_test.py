#!/usr/bin/env python3
"""Asks the served sample switch everything with pywbem, with pulled enumerations forced on and forced
off, and once over TLS in each way, and some of it with pywbemcli, plain; and compares every object with
what the project's own client gets. A warning is a failure.

usage: pywbem_objects_test.py BUILD-DIRECTORY
"""

import pathlib
import subprocess
import sys
import warnings
from xml.etree import ElementTree

sys.path.insert(1, sys.path[0] + "/../kit")

import compared
import pywbem
import ways

PIECE = 2  # objects in one reply
# Whether enumerations are pulled, in each way.
PULLED = {ways.PLAIN: (False, True), ways.TLS: (True,), ways.TLS_AND_USER: (False,)}

ASKS = {
    "EnumerateInstanceNames": lambda client, of, place: client.IterEnumerateInstancePaths(
        of, place, MaxObjectCount=PIECE),
    "EnumerateInstances": lambda client, of, place: client.IterEnumerateInstances(
        of, place, LocalOnly=False, DeepInheritance=True, MaxObjectCount=PIECE),
    "GetInstance": lambda client, of, _: [client.GetInstance(of, LocalOnly=False)],
    "AssociatorNames": lambda client, of, _: client.IterAssociatorInstancePaths(
        of, MaxObjectCount=PIECE),
    "Associators": lambda client, of, _: client.IterAssociatorInstances(of, MaxObjectCount=PIECE),
    "ReferenceNames": lambda client, of, _: client.IterReferenceInstancePaths(
        of, MaxObjectCount=PIECE),
    "References": lambda client, of, _: client.IterReferenceInstances(of, MaxObjectCount=PIECE),
}
COMMANDS = {
    "EnumerateInstanceNames": ("enumerate", "--names-only"),
    "EnumerateInstances": ("enumerate", "--deep-inheritance"),
    "GetInstance": ("get",),
    "AssociatorNames": ("associators", "--names-only"),
    "Associators": ("associators",),
    "ReferenceNames": ("references", "--names-only"),
    "References": ("references",),
}


def to_pywbem(path):
    host, namespace, name, keys = path
    return pywbem.CIMInstanceName(
        name, {key: to_pywbem(value) if isinstance(value, list) else value for key, value in keys},
        host=host, namespace=namespace)


def value_of(value):
    if isinstance(value, pywbem.CIMInstanceName):
        return object_of(value)
    if isinstance(value, list):
        return [value_of(each) for each in value]
    return compared.text(value if value is None or isinstance(value, (str, bool)) else str(value))


def object_of(found):
    if isinstance(found, pywbem.CIMInstanceName):
        return [found.host, found.namespace, found.classname, compared.sorted_pairs(
            [name, value_of(value)] for name, value in found.keybindings.items())]
    return [object_of(found.path), found.classname, compared.sorted_pairs(
        [each.name, each.type, value_of(each.value)] for each in found.properties.values())]


def expected(served, answers, operation, asked, pull):
    # Where no host was sent, pywbem puts the one that it asked.
    return answers.get(operation, asked, pull, served.address)


def with_library(served, answers, questions, pull):
    """Asks all questions; returns how much was wrong."""
    figures = compared.Figures(f"pywbem, {served.way.name}, {'pulled' if pull else 'whole'}")
    with pywbem.WBEMConnection(served.url, use_pull_operations=pull, **served.pywbem()) as client:
        for operation, asked in questions:
            target = to_pywbem(asked) if asked[3] else asked[2]
            try:
                answer = [object_of(each) for each in ASKS[operation](client, target, asked[1])], 0
            except pywbem.CIMError as error:
                answer = [], error.status_code
            figures.count(f"{operation} {asked}", answer, expected(served, answers, operation, asked, pull))
    return figures.report()


def with_command(served, answers, questions, pull):
    """Asks some questions; returns how much was wrong."""
    figures = compared.Figures(f"pywbemcli, {served.way.name}, {'pulled' if pull else 'whole'}")
    general = [pathlib.Path(sys.executable).with_name("pywbemcli"), *served.pywbemcli(), "-o", "xml",
               "--use-pull", "yes" if pull else "no", "--pull-max-cnt", str(PIECE)]
    for operation, asked in questions:
        target = to_pywbem([None, None, *asked[2:]]).to_wbem_uri() if asked[3] else asked[2]
        command, *options = COMMANDS[operation]
        done = subprocess.run([*general, "instance", command, target, "-n", asked[1], *options],
                              capture_output=True, text=True, check=False, timeout=120)
        answer = [], done.stderr
        if done.returncode == 0:
            tree = ElementTree.fromstring(f"<all>{done.stdout}</all>")
            answer = sorted(map(compared.of_element, tree), key=str), 0  # it sorts, too
        objects, status = expected(served, answers, operation, asked, pull)
        figures.count(f"{operation} {asked}", answer, (sorted(objects, key=str), status))
    return figures.report()


def some(questions):
    """One of each operation."""
    return dict(reversed(questions)).items()


def main():
    build, = sys.argv[1:]
    warnings.simplefilter("error")
    wrong = 0
    for way, pulls in PULLED.items():
        with ways.Reached(build, way) as served, compared.Answers(
                served.url, **served.own_client()) as answers:
            # The path of an object that is got is what it was asked by, and pywbem's has no host.
            questions = [(operation, [None, *asked[1:]] if operation == "GetInstance" else asked)
                         for namespace in served.namespaces
                         for operation, asked in answers.questions(namespace)]
            for pull in pulls:
                wrong += with_library(served, answers, questions, pull)
                if way == ways.PLAIN:
                    wrong += with_command(served, answers, some(questions), pull)
    return 1 if wrong else 0


if __name__ == "__main__":
    sys.exit(main())
