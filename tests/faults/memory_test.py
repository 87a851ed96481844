#!/usr/bin/env python3
"""A server that runs out of memory: what it cannot serve it refuses, what it serves is right, and it
goes on. Allocations fail one at a time, each in turn, and then one of so many.

What is not asked for takes none: links of an object that a filter leaves out are not looked at.

usage: memory_test.py BUILD LIBRARY [--all] [unittest arguments]

LIBRARY is the one made of failing.cpp. With --all every single allocation fails, on a server that has
answered before and on a fresh one, which takes minutes. Without, a sample of them.
"""

import base64
import http.client
import os
import pathlib
import ssl
import sys
import tempfile
import time
import unittest

sys.path.insert(1, sys.path[0] + "/../kit")

from faults import Counting, Switches, rest
import hashes
from request import ask, call, name, of_class
from served import Served

ALL = "--all" in sys.argv
BUILD, LIBRARY = [argument for argument in sys.argv[1:] if argument != "--all"][:2]
PATIENCE = 20
SAMPLE = 40  # allocations of one request that fail, without --all
FRESH = 10

LONG = "<!-- " + 40000 * "x" + " -->"  # so long that a worker reads the request


def thing(text):
    return (f'<INSTANCE CLASSNAME="TST_Thing"><PROPERTY NAME="Id" TYPE="string"><VALUE>one</VALUE>'
            f'</PROPERTY><PROPERTY NAME="Text" TYPE="string"><VALUE>{text}</VALUE></PROPERTY>'
            f"</INSTANCE>")


THING = name("TST_Thing", Id="one")
REQUESTS = {
    "a class": call("GetClass", ("ClassName", of_class("CIM_RegisteredProfile"))),
    "classes, in pieces": call("EnumerateClasses", ("DeepInheritance", "<VALUE>TRUE</VALUE>")),
    "names of a module": call(
        "EnumerateInstanceNames", ("ClassName", of_class("CIM_RegisteredProfile"))),
    "an instance of a module": call(
        "GetInstance", ("InstanceName", name("CIM_RegisteredProfile", InstanceID="Orvex1"))),
    "instances of all modules": call(
        "EnumerateInstances", ("ClassName", of_class("CIM_ManagedElement"))),
    "associators, with read-backs": call(
        "Associators", ("ObjectName", name("CIM_RegisteredProfile", InstanceID="Orvex1"))),
    "an enumeration that ends at once": call(
        "OpenEnumerateInstances", ("ClassName", of_class("CIM_RegisteredProfile")),
        ("MaxObjectCount", "<VALUE>1000</VALUE>")),
    "what is not there": call(
        "GetInstance", ("InstanceName", name("CIM_RegisteredProfile", InstanceID="none"))),
    "a class that is not there": call("GetClass", ("ClassName", of_class("CIM_None"))),
    "a long request": ("GetClass", call(
        "GetClass", ("ClassName", of_class("CIM_RegisteredProfile")))[1] + LONG),
    "no request": ("GetClass", "<nonsense"),
    "a new instance": call("CreateInstance", ("NewInstance", thing("new"))),
    "another value": call("ModifyInstance", (
        "ModifiedInstance", f"<VALUE.NAMEDINSTANCE>{THING}{thing('other')}</VALUE.NAMEDINSTANCE>")),
    "an instance": call("GetInstance", ("InstanceName", THING)),
    "an instance less": call("DeleteInstance", ("InstanceName", THING)),
}
# What is asked before, so that a request meets the same state each time.
BEFORE = {
    "a new instance": ("an instance less",),
    "another value": ("an instance less", "a new instance"),
    "an instance": ("an instance less", "a new instance"),
    "an instance less": ("a new instance",),
}
NAMESPACE = "interop"
OWN = "root/test"  # where the instance is
MODULES = ("names of a module", "an enumeration that ends at once", "associators, with read-backs")


class Client:
    """Asks on a connection of its own each time; over HTTPS, if there is a context for it."""

    def __init__(self, port, patience=PATIENCE, tls=None):
        self._port = port
        self._patience = patience
        self._tls = tls
        self.fields = {}  # of the header, besides

    def prepare(self, what):
        for other in BEFORE.get(what, ()):
            self.answer(other)

    def prepared(self, what):
        self.prepare(what)
        return self.answer(what)

    def answer(self, what):
        """Status and text; or "closed" and how, or "waits"."""
        connection = http.client.HTTPConnection("127.0.0.1", self._port, timeout=self._patience)
        if self._tls:
            connection = http.client.HTTPSConnection("127.0.0.1", self._port, context=self._tls,
                                                     timeout=self._patience)
        try:
            return ask(connection, OWN if what in BEFORE else NAMESPACE, REQUESTS[what],
                       **self.fields)
        except TimeoutError:
            return "waits", ""
        except (OSError, http.client.HTTPException) as error:
            return "closed", type(error).__name__
        finally:
            connection.close()


class Memory(Counting):
    def setUp(self):
        super().setUp()
        self.switches = self.enterContext(Switches(LIBRARY))
        folder = self.enterContext(tempfile.TemporaryDirectory())
        mof = pathlib.Path(folder) / "thing.mof"
        mof.write_text("Qualifier Key : boolean = false, Scope(property, reference);\n"
                       "class TST_Thing { [Key] string Id; string Text; };\n")
        self.options = (f"--mof={OWN}={mof}", "--writable", "--patience=2", "--grace=5")

    def served(self, https=False):
        return Served(BUILD, self.options, environment=self.switches.environment,
                      keep=False, https=https)

    def judge(self, what, right, answer, more=()):
        """Counts what came of a fault. `more`: texts of errors that are right, too."""
        status, text = answer
        if answer == right:
            outcome = "answered"
        elif status in (503, "closed"):
            outcome = str(status)
        elif any(one in text for one in more):
            outcome = "failed as told"
        else:
            self.fail(f"{what}: {answer}")
        self.outcomes[outcome] += 1

    def test_that_lacks_once_while_a_password_is_verified(self):
        """Whoever gave the right one is not told that it is wrong, and is not slowed for it."""
        count = 400 if ALL else 60
        users = pathlib.Path(self.enterContext(tempfile.TemporaryDirectory())) / "users"
        users.touch(0o600)
        users.write_text("".join(f"user{n}:read:{hashes.quick('x')}\n" for n in range(count)))
        self.options += ("--users", str(users))
        with self.served() as served:
            def answer(user):
                client = Client(served.port)
                client.fields = {"Authorization": "Basic " + base64.b64encode(
                    f"{user}:x".encode()).decode()}
                return client.answer("a class")
            good = answer("user0")
            self.assertEqual(good[0], 200)
            before = self.switches.allocations
            self.assertEqual(answer("user1"), good)
            needed = self.switches.allocations - before
            for n in range(2, count):
                self.switches.nth = 1 + (n - 2) * needed // (count - 2)
                self.judge(f"allocation {n}", good, answer(f"user{n}"))
                self.switches.clear()
                self.assertEqual(answer(f"user{n}"), good)

    def test_that_lacks_once_on_a_server_that_has_answered_before(self):
        with self.served() as served:
            client = Client(served.port)
            for _ in range(2):
                good = {what: client.prepared(what) for what in REQUESTS}
            for what in REQUESTS:
                client.prepare(what)
                before = self.switches.allocations
                client.answer(what)
                count = self.switches.allocations - before
                self.assertGreater(count, 10)
                step = 1 if ALL else max(1, count // SAMPLE)
                for number in range(1, count + 1, step):
                    client.prepare(what)
                    self.switches.nth = number
                    answer = client.answer(what)
                    self.switches.clear()
                    self.judge(f"{what}, allocation {number}", good[what], answer)
                    for other in ("a class", "names of a module"):
                        self.assertEqual(client.answer(other), good[other])
            for what in REQUESTS:
                self.assertEqual(client.prepared(what), good[what])

    def test_that_lacks_once_on_a_fresh_server(self):
        with self.served() as served:
            client = Client(served.port)
            good = {what: client.answer(what) for what in (*MODULES, "a class")}
        for what in MODULES:
            with self.served() as served:
                before = self.switches.allocations
                Client(served.port).answer(what)
                count = self.switches.allocations - before
            step = 1 if ALL else max(1, count // FRESH)
            for number in range(1, count + 1, step):
                with self.subTest(f"{what}, allocation {number}"), self.served() as served:
                    rest(served.pid)  # what fails is the request's memory, not the start's
                    client = Client(served.port, patience=3)
                    self.switches.nth = number
                    answer = client.answer(what)
                    self.switches.clear()
                    failed = ("ProviderLoadFailure", "provider initialization failed")
                    # A module whose initialize() has failed may wait for ever, by its contract:
                    # that takes its own requests and its terminate() with it, and nothing else.
                    served.codes = (0, 6)
                    if answer[0] != "waits":
                        self.judge(f"{what}, allocation {number}", good[what], answer, failed)
                        answer = client.answer(what)
                    if answer[0] == "waits":
                        self.outcomes["waits"] += 1
                    else:
                        self.assertEqual(answer, good[what])
                    self.assertEqual(client.answer("a class"), good["a class"])

    def test_that_lacks_in_a_tls_handshake_and_behind_it(self):
        what = "a class"
        with self.served(https=True) as served:
            tls = ssl.create_default_context(cafile=served.certificate)
            client, plain = Client(served.secure_port, tls=tls), Client(served.port)
            rest(served.pid)
            descriptors = len(os.listdir(f"/proc/{served.pid}/fd"))
            good = [client.answer(what) for _ in range(2)][1]
            before = self.switches.allocations
            client.answer(what)
            count = self.switches.allocations - before
            self.assertGreater(count, 40)  # more without a sanitizer, which has a malloc of its own
            for number in range(1, count + 1, 1 if ALL else max(1, count // (4 * SAMPLE))):
                self.switches.nth = number
                answer = client.answer(what)
                self.switches.clear()
                self.judge(f"{what}, allocation {number}", good, answer)
                self.assertEqual(client.answer(what), good)
            for every in (2, 7, 23, 101, 499):
                for _ in range(100 if ALL else 10):
                    self.switches.every = every
                    answer = client.answer(what)
                    self.switches.clear()
                    self.judge(f"{what}, every {every}th", good, answer)
                self.assertEqual(client.answer(what), good)
            self.assertEqual(plain.answer(what), good)
            # What was lost on the way is no connection that stays.
            end = time.monotonic() + PATIENCE
            while len(os.listdir(f"/proc/{served.pid}/fd")) > descriptors:
                self.assertLess(time.monotonic(), end, "connections are left")
                time.sleep(0.05)

    def test_that_lacks_again_and_again(self):
        with self.served() as served:
            client = Client(served.port)
            for _ in range(2):
                good = {what: client.prepared(what) for what in REQUESTS}
            for every in (2, 3, 7, 23, 101, 499):
                for _ in range(100 if ALL else 5):
                    for what in REQUESTS:
                        client.prepare(what)
                        self.switches.every = every
                        answer = client.answer(what)
                        self.switches.clear()
                        self.judge(f"{what}, every {every}th", good[what], answer)
                for what in REQUESTS:
                    self.assertEqual(client.prepared(what), good[what])
            self.switches.every = 7  # and the stop is one in order
        self.assertGreater(self.switches.failed, 0)


def links(name, count):
    """MOF of a thing that is at the end From of so many links to others."""
    return "".join(f'instance of TST_Link {{ From = "TST_Thing.Id=\\"{name}\\""; '
                   f'To = "TST_Thing.Id=\\"{number}\\""; }};\n' for number in range(count))


class Links(unittest.TestCase):
    FEW, MANY = 10, 1000
    NONE = {  # none of the links leads there
        "a class": ("AssociatorNames", ("ResultClass", of_class("TST_Other"))),
        "a class, as objects": ("Associators", ("ResultClass", of_class("TST_Other"))),
        "a role": ("AssociatorNames", ("Role", "<VALUE>To</VALUE>")),
        "a far role": ("AssociatorNames", ("ResultRole", "<VALUE>From</VALUE>")),
        "references in a role": ("ReferenceNames", ("Role", "<VALUE>To</VALUE>")),
    }

    def setUp(self):
        self.switches = self.enterContext(Switches(LIBRARY))
        folder = self.enterContext(tempfile.TemporaryDirectory())
        mof = pathlib.Path(folder) / "links.mof"
        mof.write_text("Qualifier Key : boolean = false, Scope(property, reference);\n"
                       "Qualifier Association : boolean = false, Scope(association);\n"
                       "class TST_Thing { [Key] string Id; };\n"
                       "class TST_Other : TST_Thing { };\n"
                       "[Association] class TST_Link {"
                       " [Key] TST_Thing REF From; [Key] TST_Thing REF To; };\n"
                       + links("few", self.FEW) + links("many", self.MANY))
        served = self.enterContext(Served(BUILD, (f"--mof={OWN}={mof}",),
                                          environment=self.switches.environment, keep=False))
        self.connection = http.client.HTTPConnection("127.0.0.1", served.port, timeout=PATIENCE)
        self.addCleanup(self.connection.close)

    def asked(self, thing, method, *filters):
        """The answer, and the allocations that it took."""
        before = self.switches.allocations
        status, text = ask(self.connection, OWN, call(
            method, ("ObjectName", name("TST_Thing", Id=thing)), *filters))
        self.assertEqual(status, 200, text)
        self.assertNotIn("<ERROR", text)
        return text, self.switches.allocations - before

    def test_that_a_filter_leaves_out_are_not_looked_at(self):
        for _ in range(2):  # the first time fills what is kept
            text, taken = self.asked("many", "AssociatorNames")
            self.assertEqual(text.count("<OBJECTPATH>"), self.MANY)
            self.assertGreater(taken, self.MANY)
        for what, (method, one) in self.NONE.items():
            with self.subTest(what):
                taken = {}
                for thing in ("few", "many", "few", "many"):
                    text, taken[thing] = self.asked(thing, method, one)
                    self.assertNotIn("INSTANCENAME", text)
                self.assertLess(taken["many"], taken["few"] + self.MANY // 10)


if __name__ == "__main__":
    unittest.main(argv=[sys.argv[0], *[a for a in sys.argv[3:] if a != "--all"]])
