#!/usr/bin/env python3
"""A server whose modules are bad, each in its way. After each the next good request is answered as
before: to the repository, to another module, and to the bad module itself where that may live.

usage: modules_test.py BUILD MODULES MORE-MODULES [--all] [unittest arguments]

MODULES has libmanners.so, MORE-MODULES the libraries that are no modules. What a module suffers that
does not return, or that writes to a standard output that nobody reads, is in tests/embedded/cimhost;
each answer to a provider, for all operations, in tests/embedded/routing.
"""

import contextlib
import http.client
import pathlib
import random
import re
import sys
import tempfile
import threading
import unittest
from xml.etree import ElementTree

sys.path.insert(1, sys.path[0] + "/../kit")

from faults import Counting
from modules import REGISTRATION_CLASSES, registered
from request import ask, call, name, of_class
from served import Served

ALL = "--all" in sys.argv
BUILD, MODULES, MORE = [argument for argument in sys.argv[1:] if argument != "--all"][:3]
PATIENCE = 60
NAMESPACE = "root/test"
ROUNDS = 50 if ALL else 2

NAMED = "names", "instances", "one instance"


def operations(class_name):
    return (call("EnumerateInstanceNames", ("ClassName", of_class(class_name))),
            call("EnumerateInstances", ("ClassName", of_class(class_name))),
            call("GetInstance", ("InstanceName", name(class_name, Id="one"))))


def failed(text, code=1):
    return 3 * (f"{code}: {text}",)


# What a client is told of what is thrown. The longest text that is shown has 65,536 characters.
THROWN = {
    "Cim": "2: CIM_ERR_ACCESS_DENIED: not you",
    "Success": "0: CIM_ERR_SUCCESS: all is well",
    "Pegasus": "1: CIM_ERR_FAILED: of the provider interface",
    "Standard": "1: CIM_ERR_FAILED: of the standard library",
    "Long": "1: CIM_ERR_FAILED: x{65000,65536}[^x]{0,9}",
    "Bytes": r"1: CIM_ERR_FAILED: no UTF-8: \\xFF, no XML: \\x01",
    "BadAlloc": "503",
    "Null": "1: CIM_ERR_FAILED: Unknown error.",
    "Number": "1: CIM_ERR_FAILED: Unknown error.",
}
# And that asks for names, for instances and for one: how many come, or the error.
IN_A_REQUEST = {
    **{f"Throws{kind}": 3 * (text,) for kind, text in THROWN.items()},
    "ThrowsSuccess": ("0", "0", "6: .*"),
    "ThrowsLate": 3 * (THROWN["Cim"],),
    "Nothing": ("0", "0", "6: .*"),
    "Incomplete": ("0", "0", "6: .*"),
    "DeliversNone": ("0", "0", "1: CIM_ERR_FAILED: Too few objects delivered."),
    "CompletesTwice": ("1", "1", "1"),
    "DeliversLate": ("1", "1", "1: CIM_ERR_FAILED: Too many objects delivered."),
    "Floods": ("100000", "100000", "1: CIM_ERR_FAILED: Too many objects delivered."),
    "FloodsIncomplete": ("100000", "100000", "1: CIM_ERR_FAILED: Too many objects delivered."),
    "FloodsAndThrows": failed("CIM_ERR_FAILED: of the standard library")[:2] + (
        "1: CIM_ERR_FAILED: Too many objects delivered.",),
    "Huge": ("1", "1", "1"),
    "OtherClass": ("1", "1", "1"),
    "UnknownClass": ("1", "1", "1"),
    "NoPath": ("1", "1", "1"),
    "Uninitialized": failed("CIM_ERR_FAILED: The object is not initialized."),
    "Controls": 3 * ("no XML",),  # that has no form for control characters
    "HalfACharacter": ("1", "1", "1"),
    "AsksForItself": failed("CIM_ERR_FAILED: Provider module .* waits for this request itself .*"),
    "AsksTheOther": failed("CIM_ERR_FAILED: Provider module .* waits for this request itself .*"),
    "AsksForNothing": failed("CIM_ERR_INVALID_CLASS: TST_None", 5),
}

# By the names of providers, and of libraries: what a client is told that asks for names.
AT_ITS_LOAD = {
    "Null": "1: CIM_ERR_FAILED: ProviderLoadFailure .*:provider is not a CIMProvider.",
    **{f"Creating{kind}": text for kind, text in THROWN.items()},
    **{f"Initializing{kind}": "1: CIM_ERR_FAILED: provider initialization failed"
       for kind in THROWN},
    **{f"Terminating{kind}": "1" for kind in THROWN},
}
CUTS = 1000, 4096, 20000  # bytes of a library; behind what is loaded of it stands more
LIBRARIES = {
    "none": '1: CIM_ERR_FAILED: File "libnone.so" was not found .*',
    "noentry": "1: CIM_ERR_FAILED: ProviderLoadFailure .*:entry point not found.",
    "unresolved": "1: CIM_ERR_FAILED: ProviderLoadFailure .*:Cannot load library, error: .*",
    "text": "1: CIM_ERR_FAILED: ProviderLoadFailure .*:Cannot load library, error: .*",
    "empty": "1: CIM_ERR_FAILED: ProviderLoadFailure .*:Cannot load library, error: .*",
    "short": "1: CIM_ERR_FAILED: ProviderLoadFailure .*:Cannot load library, error: .*",
    **{f"cut{size}": "1: CIM_ERR_FAILED: ProviderLoadFailure .*: file is cut off"
       for size in CUTS},
    "folder": "1: CIM_ERR_FAILED: ProviderLoadFailure .*:Cannot load library, error: .*",
}

def told(answer):
    """How many objects, or the error, or the status, or that it cannot be read."""
    status, text = answer
    if status != 200:
        return str(status)
    try:
        tree = ElementTree.fromstring(text)
    except ElementTree.ParseError:
        return "no XML"
    error = tree.find(".//ERROR")
    if error is not None:
        return f"{error.get('CODE')}: {error.get('DESCRIPTION')}"
    return str(len(tree.find(".//IRETURNVALUE") or ()))


class Modules(Counting):
    def setUp(self):
        super().setUp()
        self.folder = pathlib.Path(self.enterContext(tempfile.TemporaryDirectory()))

    def served(self, classes, *registrations):
        """A server with these classes, of which TST_Other is a good module's."""
        schema = self.folder / "schema.mof"
        schema.write_text(REGISTRATION_CLASSES + "".join(
            f"class {each} {{ [Key] string Id; }};\n" for each in (*classes, "TST_Other")))
        registration = self.folder / "registration.mof"
        registration.write_text("".join((*registrations, registered(
            "other", "Quiet", ["TST_Other", "TST_AsksBack"], NAMESPACE))))
        return Served(BUILD, [
            f"--mof={NAMESPACE}={schema}", f"--mof=root/PG_InterOp={schema}",
            f"--mof=root/PG_InterOp={registration}", "--grace=5", "--patience=5",
            *(f"--provider-dir={place}" for place in (MODULES, MORE, self.folder))],
            content=False, keep=False)

    @staticmethod
    def client(served):
        connection = http.client.HTTPConnection("127.0.0.1", served.port, timeout=PATIENCE)
        return contextlib.closing(connection)

    def judge(self, what, connection, good, alive=True):
        """A fault is over: this is what good requests are told, on the same connection."""
        self.assertEqual(self.answers(connection, alive), good, what)
        self.outcomes["answered" if alive else "others answered"] += 1

    @staticmethod
    def answers(connection, alive=True):
        return [ask(connection, NAMESPACE, request) for request in (
            call("GetClass", ("ClassName", of_class("TST_Other"))),
            *operations("TST_Other"), *(operations("TST_Thing") if alive else ()))]

    def by_class(self):
        classes = ["TST_Thing", *(f"TST_{manner}" for manner in IN_A_REQUEST)]
        return self.served([*classes, "TST_AsksBack"], registered("bad", "Quiet", classes, NAMESPACE))

    def test_that_are_bad_in_a_request(self):
        with self.by_class() as served, self.client(served) as connection:
            good = self.answers(connection)
            self.assertEqual([told(answer) for answer in good[1:]], 6 * ["1"])
            for manner, expected in IN_A_REQUEST.items():
                for kind, request, text in zip(NAMED, operations(f"TST_{manner}"), expected):
                    with self.subTest(f"{manner}, {kind}"):
                        answer = told(ask(connection, NAMESPACE, request))
                        self.assertRegex(answer, f"(?s)^{text}$")
                        self.judge(manner, connection, good)

    def test_that_are_bad_in_many_requests_at_once(self):
        requests = [request for manner in IN_A_REQUEST if not re.match("Flood|Huge", manner)
                    for request in operations(f"TST_{manner}")]
        with self.by_class() as served, self.client(served) as connection:
            good = self.answers(connection)
            expected = [told(ask(connection, NAMESPACE, request)) for request in requests]
            wrong = []

            def work(number):
                order = list(zip(requests, expected)) * ROUNDS
                random.Random(number).shuffle(order)
                with self.client(served) as own:
                    wrong.extend((request, answer, right) for request, right in order
                                 if (answer := told(ask(own, NAMESPACE, request))) != right)

            threads = [threading.Thread(target=work, args=(number,)) for number in range(4)]
            for thread in threads:
                thread.start()
            while any(thread.is_alive() for thread in threads):
                self.assertEqual(self.answers(connection), good)
            for thread in threads:
                thread.join()
            self.assertEqual(wrong, [])
            self.outcomes["told"] += len(threads) * ROUNDS * len(requests)

    def test_that_are_bad_when_they_are_loaded_or_end(self):
        self.try_loads((provider, "manners", text) for provider, text in AT_ITS_LOAD.items())

    def test_whose_libraries_are_none(self):
        (self.folder / "libtext.so").write_text("no library\n")
        (self.folder / "libempty.so").touch()
        whole = (pathlib.Path(MODULES) / "libmanners.so").read_bytes()
        self.assertGreater(len(whole), CUTS[-1])
        for name, size in (("short", 10), *((f"cut{size}", size) for size in CUTS)):
            (self.folder / f"lib{name}.so").write_bytes(whole[:size])
        (self.folder / "libfolder.so").mkdir()
        self.try_loads(("Good", location, text) for location, text in LIBRARIES.items())

    def try_loads(self, cases):
        for provider, location, text in cases:
            with self.subTest(provider=provider, location=location):
                served = self.served(
                    ["TST_Thing"], registered("bad", provider, ["TST_Thing"], NAMESPACE, location))
                with served, self.client(served) as connection:
                    good = self.answers(connection, alive=False)
                    for _ in range(2):  # it is tried anew
                        answer = told(ask(connection, NAMESPACE, operations("TST_Thing")[0]))
                        self.assertRegex(answer, f"(?s)^{text}$")
                        self.judge(provider, connection, good, alive=False)


if __name__ == "__main__":
    unittest.main(argv=[sys.argv[0], *[a for a in sys.argv[4:] if a != "--all"]])
