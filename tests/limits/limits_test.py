#!/usr/bin/env python3
"""Each limit, one below it, at it and one above: over the wire, or, where that would take too long or
too much, in the room that has it.

usage: limits_test.py BUILD-DIRECTORY [unittest arguments]
"""

import base64
import contextlib
import os
import pathlib
import re
import socket
import subprocess
import sys
import tempfile
import time
import unittest
import urllib.parse

sys.path.insert(1, sys.path[0] + "/../kit")

import hashes
import modules
from constants import limits
from request import document, name, of_class, post
from served import Served
from wire import CLOSING, PATIENCE, answer, enumerating, getting_class, http, operation, rest

BUILD = pathlib.Path(sys.argv[1]).resolve()
NAMESPACE = "root/modules"
LIMITS = {one: limit.value for one, limit in limits().items()}
XML = '<?xml version="1.0"?>'
GET = "GetInstance"


# Requests that are as large as is said, or have as much as is said.

def with_header(size):
    plain = getting_class()
    return plain.replace(b"X: ", b"X: " + (size - plain.index(b"<?xml")) * b"x")


def with_body(size):
    return getting_class(size)


def in_all(size):
    """What is more than the body are the lines that begin its chunks."""
    chunks, taken = [], 0
    head, _, body = getting_class().replace(b"Content-Length", b"Y").partition(b"\r\n\r\n")
    head += b"\r\nTransfer-Encoding: chunked\r\n\r\n" + b"%x\r\n%s\r\n" % (len(body), body)
    taken = len(head) + len(b"0\r\n\r\n")
    while taken < size:
        line = min(8000, size - taken - 5)
        line -= 0 < size - taken - line - 5 < 10  # the last one has room, too
        chunks.append(b"1;" + (line - 2) * b"x" + b"\r\n \r\n")
        taken += len(chunks[-1])
    return head + b"".join(chunks) + b"0\r\n\r\n"


def nested(depth):
    return http(XML + depth * "<a>" + depth * "</a>")


def with_attributes(count):
    return http(XML + "<CIM" + "".join(f' a{n}=""' for n in range(count)) + "/>")


def with_unknown_elements(count):
    return http(XML + "<CIM>" + count * "<x/>" + "</MIC>")


def with_keys(count):
    return operation(GET, ("InstanceName", name("ORVEX_Vsan", **{f"k{n}": n for n in range(count)})))


def creating(content):
    return operation("CreateInstance", (
        "NewInstance", f'<INSTANCE CLASSNAME="ORVEX_Vsan">{content}</INSTANCE>'))


def with_properties(count):
    return creating("".join(f'<PROPERTY NAME="p{n}" TYPE="string"/>' for n in range(count)))


def with_qualifiers(count):
    return creating('<PROPERTY NAME="p" TYPE="string">' + "".join(
        f'<QUALIFIER NAME="q{n}" TYPE="string"/>' for n in range(count)) + "</PROPERTY>")


def getting(key):
    return operation(GET, ("InstanceName", f'<INSTANCENAME CLASSNAME="ORVEX_Vsan">{key}'
                           "</INSTANCENAME>"))


def with_references(depth):
    key = '<KEYVALUE VALUETYPE="string">x</KEYVALUE>'
    for _ in range(depth):
        key = ('<VALUE.REFERENCE><INSTANCENAME CLASSNAME="C"><KEYBINDING NAME="k">' + key +
               "</KEYBINDING></INSTANCENAME></VALUE.REFERENCE>")
    return getting(f'<KEYBINDING NAME="k">{key}</KEYBINDING>')


def with_reference(length):
    value = (length - len('C.k=""')) * "x"
    return getting('<KEYBINDING NAME="k"><VALUE.REFERENCE>' + name("C", k=value) +
                   "</VALUE.REFERENCE></KEYBINDING>")


def with_message(length):
    return operation("GetClass", ("ClassName", of_class(length * "x")))


def with_detail(length):
    rest_of_it = 'call of GetClass, CIMMethod ""'
    return post(document("interop", "GetClass", ""), CIMMethod=(length - len(rest_of_it)) * "y", **CLOSING)


# Of each limit, the request that meets it, and what is told up to it and beyond it. A document that is
# no more than too strange is refused for that.
WIRE = (
    ("header", with_header, "200 CLASS", "431"),
    ("body", with_body, "200 CLASS", "413"),
    ("header", in_all, "200 CLASS", "413"),
    ("depth", nested, "400 root element a", "400 elements nested deeper than 32"),
    ("attributes", with_attributes, "400 CIM with unknown attribute a0",
     "400 more than 16 attributes"),
    ("unknownElements", with_unknown_elements, "400 mismatched tag", "400 CIM without attribute"),
    ("members", with_keys, "200 CIM_ERR_NOT_FOUND",
     "200 CIM_ERR_INVALID_PARAMETER: More than 1000 elements in INSTANCENAME."),
    ("members", with_properties, "200 CIM_ERR_ACCESS_DENIED",
     "200 CIM_ERR_INVALID_PARAMETER: More than 1000 elements in INSTANCE."),
    ("members", with_qualifiers, "200 CIM_ERR_ACCESS_DENIED",
     "200 CIM_ERR_INVALID_PARAMETER: More than 1000 elements in PROPERTY."),
    ("referenceDepth", with_references, "200 CIM_ERR_NOT_FOUND",
     "200 CIM_ERR_INVALID_PARAMETER: References in keys are nested deeper than 3."),
    ("referenceLength", with_reference, "200 CIM_ERR_NOT_FOUND",
     "200 CIM_ERR_INVALID_PARAMETER: A reference in a key is longer than 16384 characters."),
)

# What takes too long or too much over the wire, with options of the tests' own.
ROOMS = {
    "allRequests": ("http_test", "ServerLimits.RequestsThatAreTooLargeTogetherAreTurnedAway"),
    "refusals": ("http_test", "ServerLimits.AFewAreToldThatThereAreTooManyConnections"),
    "refusalTime": ("http_test", "ServerLimits.WhatIsSentAfterARefusalIsReadForAWhile"),
    "idleTime": ("http_test", "ServerLimits.AnIdleConnectionIsClosedInSilence"),
    "requestTime": ("http_test", "ServerLimits.ARequestThatDoesNotEndIsToldSo"),
    "clientCertificates": ("http_test", "ServerTls.AClientsCertificatesHaveALimit"),
    "leastTaken": ("http_test",
                   "ServerLimits.AClientThatTakesItsReplySlowlyHasTimeForEachPart"),
    "wholeReply": ("http_test",
                   "ServerPieces.UpToTheLimitAreOneBodyForAClientThatKnowsNoChunks"),
    "enumerations": ("routing_test", "Enumerated.HasBoundsForOneUserAndForAll"),
    "enumerationObjects": ("routing_test", "Enumerated.CountsWhatProvidersHaveDelivered"),
    "enumerationTime": ("cimxml_test", "Pull.HasTheTimeOfTheLimitUnlessTheClientSaysOtherwise"),
    "patience": ("http_test", "LanesTest.GiveUpWhatHasWaitedTooLong"),
    "userName": ("users_test", "UsersFile.IsRefusedWithThePlaceOfItsFirstFault"),
    "password": ("users_test", "Password.IsTakenAsAWhole"),
    "remembered": ("users_test", "AccountsTest.RememberThoseWhoWereSeenLast"),
    "rememberedTime": ("users_test", "AccountsTest.RememberWhoComesBackInTime"),
    "freeFailures": ("users_test", "AccountsTest.SlowAUserAfterSomeFailuresMoreAndMore"),
    "slowestAttempts": ("users_test", "AccountsTest.SlowAUserAfterSomeFailuresMoreAndMore"),
    "failureMemory": ("users_test", "AccountsTest.ForgetFailuresAfterAWhile"),
    "failuresKept": ("users_test", "BackoffTest.KeepsSomeAndForgetsWhoHasNotFailedForLongest"),
    "logLines": ("cimhost_parts_test", "ThrottleTest.LetsAsManyLinesOfAKindThroughInASecond"),
    "logQueue": ("cimhost_parts_test", "LogQueueTest.KeepsAsMuchAsIsTheLimit"),
}

METHODS = set()


def tests(*names):
    """The limits that a test is about."""
    METHODS.update(names)
    return lambda method: method


def told(reply):
    """What a reply tells, in a line."""
    read = re.match(r"HTTP/1\.1 (\d+) ", reply)
    if not read:
        return reply
    error = re.search(r'<ERROR CODE="\d+" DESCRIPTION="([^"]*)', reply)
    detail = re.search(r"PGErrorDetail: (.*)\r\n", reply)
    found = re.search(r"<IRETURNVALUE>\n<(\w+)", reply)
    return " ".join((read[1], *(one[1] for one in (error, found) if one),
                     *([urllib.parse.unquote(detail[1])] if detail else [])))


def around(limit):
    return ((limit - 1, True), (limit, True), (limit + 1, False))


class Wire(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.served = cls.enterClassContext(Served(BUILD))

    def test_all_of_the_table(self):
        for limit, request, within, beyond in WIRE:
            most = LIMITS["header"] + LIMITS["body"] if request is in_all else LIMITS[limit]
            for size, is_within in around(most):
                with self.subTest(limit, request=request.__name__, size=size):
                    answered = told(answer(self.served.port, request(size)))
                    expected = within if is_within else beyond
                    self.assertEqual(answered[:len(expected)], expected)

    def test_requests_are_as_large_as_is_said(self):
        self.assertEqual(with_header(5000).index(b"<?xml"), 5000)
        self.assertEqual(len(with_body(5000).partition(b"\r\n\r\n")[2]), 5000)
        for size in (5000, 50000, 70001):
            self.assertEqual(len(in_all(size)), size)

    @tests("errorLength")
    def test_of_an_errors_message(self):
        for size, is_within in around(LIMITS["errorLength"]):
            shown = min(size, LIMITS["errorLength"]) * "x" + ("" if is_within else "...")
            answered = told(answer(self.served.port, with_message(size)))
            self.assertTrue(answered == f"200 CIM_ERR_NOT_FOUND: {shown}", size)

    @tests("errorDetail")
    def test_of_a_refusals_detail(self):
        for size, is_within in around(LIMITS["errorDetail"]):
            detail = 'call of GetClass, CIMMethod "'
            whole = detail + (size - len(detail) - 1) * "y" + '"'
            shown = whole[:LIMITS["errorDetail"]] + ("" if is_within else "...")
            self.assertEqual(told(answer(self.served.port, with_detail(size))), f"400 {shown}")

    @tests("connections")
    def test_of_connections(self):
        for count, is_within in around(LIMITS["connections"]):
            with contextlib.ExitStack() as stack:
                def client():
                    return stack.enter_context(contextlib.closing(
                        socket.create_connection(("127.0.0.1", self.served.port), PATIENCE)))
                first = client()
                first.sendall(getting_class().replace(b"Connection: close\r\n", b""))
                self.assertEqual(told(rest(first, b"</CIM>\n")), "200 CLASS")
                # It waits for its next request since before the others have come.
                others = [client() for _ in range(count - 1)]
                # When the last one is answered, all have been let in.
                others[-1].sendall(getting_class())
                self.assertEqual(told(rest(others[-1])), "200 CLASS")
                if is_within:
                    first.sendall(getting_class())
                self.assertEqual(told(rest(first)), "200 CLASS" if is_within else "")


    @tests("enumerationsOfOneUser", "enumerationLongest")
    def test_of_open_enumerations(self):
        def opening(*parameters):
            return told(answer(self.served.port, operation(
                "OpenEnumerateInstancePaths", ("ClassName", of_class("CIM_RegisteredProfile")),
                *parameters)))
        for time_out, is_within in around(LIMITS["enumerationLongest"]):
            within = opening(("OperationTimeout", f"<VALUE>{time_out}</VALUE>"))
            self.assertEqual("CIM_ERR_INVALID_OPERATION_TIMEOUT" not in within, is_within, within)
        for count in range(3, LIMITS["enumerationsOfOneUser"] + 2):
            is_within = count <= LIMITS["enumerationsOfOneUser"]
            self.assertEqual("CIM_ERR_SERVER_LIMITS_EXCEEDED" not in opening(), is_within, count)


class Modules(unittest.TestCase):
    """With modules that do not return from a request."""

    # Those that keep the readers of long requests busy.
    READERS = max(1, len(os.sched_getaffinity(0)) // LIMITS["processorsForALongRequest"])
    CLASSES = [f"TST_{n}" for n in range(1 + -(-READERS // LIMITS["placesInModule"]))]

    @classmethod
    def setUpClass(cls):
        folder = cls.enterClassContext(tempfile.TemporaryDirectory())
        cls.served = Served(BUILD, [
            *modules.options({one: ("Stuck", "manners", 2) for one in cls.CLASSES}, NAMESPACE, folder,
                             BUILD), "--patience=1", "--grace=0"])
        cls.served.codes = (6,)
        cls.enterClassContext(cls.served)
        cls.stack = cls.enterClassContext(contextlib.ExitStack())
        cls.inside = 0

    def hold(self, class_name, size=0):
        """Has a request stay inside a module."""
        client = self.stack.enter_context(contextlib.closing(
            socket.create_connection(("127.0.0.1", self.served.port), PATIENCE)))
        client.sendall(enumerating(NAMESPACE, class_name, size))
        type(self).inside += 1
        end = time.monotonic() + PATIENCE
        while self.served.said().count("Stuck enumerateInstanceNames") < self.inside:
            self.assertLess(time.monotonic(), end, "the request does not get inside")
            time.sleep(0.01)

    def told(self, request):
        return told(answer(self.served.port, request))

    @tests("placesInModule")
    def test_of_requests_inside_a_module(self):
        for _ in range(LIMITS["placesInModule"]):
            self.hold(self.CLASSES[0])
        self.assertEqual(self.told(enumerating(NAMESPACE, self.CLASSES[0])),
                         "200 CIM_ERR_FAILED: Provider module TST_0Module is not answering.")

    @tests("shortRequest", "processorsForALongRequest")
    def test_of_long_requests(self):
        short = LIMITS["shortRequest"]
        for n in range(self.READERS):
            self.assertEqual(self.told(getting_class(short + 1)), "200 CLASS")
            self.hold(self.CLASSES[1 + n // LIMITS["placesInModule"]], short + 1)
        for size, is_within in around(short):
            self.assertEqual(self.told(getting_class(size)), "200 CLASS" if is_within else "503")


class Users(unittest.TestCase):
    """With a user whose password takes seconds to verify, and others."""

    OTHERS = LIMITS["waitingToBeVerified"] + 1

    def setUp(self):
        folder = self.enterContext(tempfile.TemporaryDirectory())
        users = pathlib.Path(folder, "users")
        users.touch(0o600)
        users.write_text(f"slow:read:{hashes.slow('x', 2_000_000)}\n" + "".join(
            f"user{n}:read:{hashes.quick('x')}\n" for n in range(self.OTHERS)))
        self.served = self.enterContext(Served(BUILD, ["--users", users]))

    def ask(self, user):
        """A connection on which that has been asked."""
        client = self.enterContext(contextlib.closing(
            socket.create_connection(("127.0.0.1", self.served.port), PATIENCE)))
        credentials = base64.b64encode(f"{user}:x".encode())
        client.sendall(getting_class().replace(b"X: ", b"Authorization: Basic " + credentials))
        return client

    def ticks(self):
        """The processor time that the server has used."""
        stat = pathlib.Path(f"/proc/{self.served.pid}/stat").read_text()
        return sum(map(int, stat.rpartition(")")[2].split()[11:13]))

    def ask_slowly(self, count):
        """Has as many ask with the password that takes long, until it is being verified."""
        before = self.ticks()
        asked = [self.ask("slow") for _ in range(count)]
        end = time.monotonic() + PATIENCE
        while self.ticks() < before + 20:
            self.assertLess(time.monotonic(), end)
            time.sleep(0.01)
        return asked

    @tests("waitingToBeVerified")
    def test_of_passwords_that_wait_to_be_verified(self):
        asked = self.ask_slowly(1)
        asked += [self.ask(f"user{n}") for n in range(self.OTHERS)]
        answers = [told(rest(client)) for client in asked]
        self.assertEqual(answers.count("503"), 1)
        self.assertEqual(answers.count("200 CLASS"), LIMITS["waitingToBeVerified"] + 1)

    @tests("placesToVerify")
    def test_of_passwords_that_are_verified_at_once(self):
        asked = self.ask_slowly(LIMITS["placesToVerify"] + 3)
        self.assertEqual({told(rest(client)) for client in asked}, {"200 CLASS"})
        # The others have waited, and found it remembered.
        self.assertEqual(self.served.logged().count('user "slow" verified'), LIMITS["placesToVerify"])


class Rooms(unittest.TestCase):
    """Whose tests the test run runs by themselves."""

    def test_have_all_of_the_table(self):
        written = ("http_test", "ServerLimits.AreThoseThatAreWrittenDown")
        for limit, (program, test) in {**ROOMS, "all of http": written}.items():
            with self.subTest(limit):
                done = subprocess.run([BUILD / "bin" / program, "--gtest_list_tests", f"--gtest_filter={test}"],
                                      capture_output=True, text=True, check=True, timeout=PATIENCE)
                self.assertEqual("".join(done.stdout.split()[-2:]), test)


class All(unittest.TestCase):
    def test_limits_are_tested(self):
        wire = {limit for limit, *_ in WIRE} | METHODS
        self.assertEqual(wire & set(ROOMS), set())
        self.assertEqual(wire | set(ROOMS), set(LIMITS))
        print(f"{len(LIMITS)} limits: {len(wire)} over the wire, {len(ROOMS)} in their rooms")


if __name__ == "__main__":
    unittest.main(argv=[sys.argv[0], *sys.argv[2:]])
