#!/usr/bin/env python3
"""A server whose calls of the system fail or do less than they might: what can be answered all the same
is answered right, and the server goes on.

usage: io_test.py BUILD LIBRARY [unittest arguments]

LIBRARY is the one made of failing.cpp.
"""

import contextlib
import errno
import http.client
import pathlib
import sys
import tempfile
import unittest

sys.path.insert(1, sys.path[0] + "/../kit")

from faults import Counting, Switches
from request import ask, call, name, of_class
from served import Served

BUILD, LIBRARY = sys.argv[1:3]
PATIENCE = 60
NAMESPACE = "interop"
REQUESTS = (
    call("GetClass", ("ClassName", of_class("CIM_RegisteredProfile"))),
    call("EnumerateClasses", ("DeepInheritance", "<VALUE>TRUE</VALUE>")),  # in pieces
    call("EnumerateInstances", ("ClassName", of_class("CIM_RegisteredProfile"))),
    call("Associators", ("ObjectName", name("CIM_RegisteredProfile", InstanceID="Orvex1"))),
    ("GetClass", call("GetClass", ("ClassName", of_class("CIM_Dependency")))[1] +
     "<!-- " + 40000 * "x" + " -->"),
)


class System(Counting):
    def setUp(self):
        super().setUp()
        self.switches = self.enterContext(Switches(LIBRARY))
        self.served = Served(BUILD, ["--grace=5"], environment=self.switches.environment)

    def answers(self, port):
        """On one connection."""
        connection = http.client.HTTPConnection("127.0.0.1", port, timeout=PATIENCE)
        with contextlib.closing(connection):
            return self.answers_on(connection)

    @staticmethod
    def answers_on(connection):
        return [ask(connection, NAMESPACE, request) for request in REQUESTS]

    def judge(self, answers, good, what=""):
        """Requests are over during which something failed."""
        self.assertEqual(answers, good, what)
        self.outcomes["answered"] += len(good)

    def test_whose_sockets_and_files_take_few_bytes_at_a_time(self):
        with tempfile.TemporaryDirectory() as folder:
            with Served(BUILD, [f"--trace-wire={folder}"],
                        environment=self.switches.environment) as served:
                good = self.answers(served.port)
                self.switches.few = 7
                self.judge(self.answers(served.port), good)
            replies = [path.read_text().partition("\n\n")[2]
                       for path in sorted(pathlib.Path(folder).glob("*-reply"))]
            self.assertEqual(replies, 2 * [text for _, text in good])

    def test_that_is_interrupted_by_signals(self):
        with self.served as served:
            good = self.answers(served.port)
            for every in (2, 3, 5):
                self.switches.interrupt = every
                self.judge(self.answers(served.port), good, f"every {every}th call")
                self.assertGreater(self.switches.interrupted, 0)
            # With that the server also comes to its end.

    def test_that_cannot_accept_a_connection(self):
        for error in (errno.EMFILE, errno.ENFILE, errno.ENOBUFS, errno.ENOMEM, errno.EPERM):
            with self.subTest(errno.errorcode[error]):
                with Served(BUILD, environment=self.switches.environment) as served:
                    good = self.answers(served.port)
                    self.switches.accept = error
                    waiting = http.client.HTTPConnection("127.0.0.1", served.port, timeout=PATIENCE)
                    with contextlib.closing(waiting):
                        before = self.switches.refused
                        waiting.connect()
                        while self.switches.refused == before:
                            pass
                        self.switches.clear()
                        self.judge(self.answers_on(waiting), good)
                self.assertIn("cannot accept a connection", served.log)

    def test_whose_connections_break(self):
        breaks = [("send", error) for error in (
            errno.EPIPE, errno.ECONNRESET, errno.ETIMEDOUT, errno.ENOBUFS, errno.ENETDOWN)]
        breaks += [("receive", error) for error in (
            errno.ECONNRESET, errno.ETIMEDOUT, errno.EHOSTUNREACH, errno.ENOMEM)]
        with self.served as served:
            good = self.answers(served.port)
            for switch, error in breaks:
                for request in REQUESTS:
                    with self.subTest(switch, error=errno.errorcode[error], method=request[0]):
                        before = self.switches.refused
                        setattr(self.switches, switch, error)
                        self.assert_closed(served.port, request)
                        self.switches.clear()
                        self.assertGreater(self.switches.refused, before)
                        self.assertEqual(self.answers(served.port), good)
                        self.outcomes["closed"] += 1

    def assert_closed(self, port, request):
        connection = http.client.HTTPConnection("127.0.0.1", port, timeout=PATIENCE)
        with contextlib.closing(connection), self.assertRaises(
                (ConnectionError, http.client.HTTPException)):
            ask(connection, NAMESPACE, request)

    def test_whose_files_take_nothing(self):
        for error in (errno.ENOSPC, errno.EDQUOT, errno.EIO, errno.EPIPE, errno.EFBIG):
            with self.subTest(errno.errorcode[error]), tempfile.TemporaryDirectory() as folder:
                served = Served(BUILD, [f"--trace-wire={folder}", "--log-level=debug"],
                                environment=self.switches.environment)
                with served:
                    good = self.answers(served.port)
                    self.switches.write = error
                    self.judge(self.answers(served.port), good)
                    self.assertGreater(self.switches.refused, 0)
                    self.switches.clear()
                    self.assertEqual(self.answers(served.port), good)
                self.assertGreaterEqual(
                    len(list(pathlib.Path(folder).iterdir())), 4 * len(REQUESTS))

    def test_whose_clock_jumps(self):
        with self.served as served:
            good = self.answers(served.port)
            for seconds in (3600, 0, 86400 * 365, -7, 0):
                self.switches.clock = seconds
                # Who was waiting when it jumped may have been given up: the time was over.
                self.judge(self.answers(served.port), good, f"ahead by {seconds} s")


if __name__ == "__main__":
    unittest.main(argv=[sys.argv[0], *sys.argv[3:]])
