#!/usr/bin/env python3
"""A server whose clients are bad, each in its way. After each the next good request is answered as
before, byte by byte: on a connection that was there before, on a new one, and on the bad client's own
if the server has left it open.

usage: clients_test.py BUILD [--all] [unittest arguments]

With --all a request is cut off at each of its bytes, and there is more of all that is random. What a
client sees that waits until its time is over is in tests/embedded/http.
"""

import contextlib
import pathlib
import random
import re
import resource
import socket
import struct
import sys
import tempfile
import unittest

sys.path.insert(1, sys.path[0] + "/../kit")

from faults import Counting
from request import asking, call, name, of_class, post
from served import Served

ALL = "--all" in sys.argv
BUILD = sys.argv[1]
SANITIZED = re.search(r"(?m)^SANITIZE:\w+=.", pathlib.Path(BUILD, "CMakeCache.txt").read_text())
PATIENCE = 30
NAMESPACE = "interop"
IDLE = 600  # connections, more than the server keeps


CLASS = asking(call("GetClass", ("ClassName", of_class("CIM_RegisteredProfile"))))
CLASSES = asking(call("EnumerateClasses", ("DeepInheritance", "<VALUE>TRUE</VALUE>")))
LARGE = asking(call("EnumerateInstances", ("ClassName", of_class("TST_Large"))), "root/large")
GOOD = (
    CLASS,
    asking(call("EnumerateInstanceNames", ("ClassName", of_class("CIM_RegisteredProfile")))),
    asking(call("Associators", ("ObjectName", name("CIM_RegisteredProfile", InstanceID="Orvex1")))),
    CLASSES,  # in chunks
)


class Client:
    """A connection as bytes. A small `window` has the server's replies wait for whoever reads."""

    def __init__(self, port, window=0):
        self._socket = socket.socket()
        if window:
            self._socket.setsockopt(socket.SOL_SOCKET, socket.SO_RCVBUF, window)
        self._socket.settimeout(PATIENCE)
        self._socket.connect(("127.0.0.1", port))
        self._socket.setsockopt(socket.IPPROTO_TCP, socket.TCP_NODELAY, 1)
        self._in = self._socket.makefile("rb", buffering=1 if window else -1)

    def send(self, data):
        with contextlib.suppress(ConnectionError):  # a server need not take all of it
            self._socket.sendall(data)

    def reply(self):
        """The next reply without its Date; None at the end of the connection."""
        lines = []
        while (line := self._in.readline()) not in (b"\r\n", b""):
            lines.append(line)
        if not lines:
            return None
        head = b"".join(line for line in lines if not line.lower().startswith(b"date:"))
        body = b""
        if b"transfer-encoding: chunked" in head.lower():
            while (size := int(self._in.readline(), 16)) != 0:
                body += self._in.read(size)
                self._in.readline()
            self._in.readline()
        else:
            body = self._in.read(int(re.search(rb"(?i)content-length: *(\d+)", head)[1]))
        return head + b"\r\n" + body

    def ask(self, request):
        self.send(request)
        return self.reply()

    def read(self, size):
        return self._in.read(size)

    def end(self):
        """As the server sees it: no more is sent."""
        self._socket.shutdown(socket.SHUT_WR)

    def reset(self):
        self._socket.setsockopt(socket.SOL_SOCKET, socket.SO_LINGER, struct.pack("ii", 1, 0))
        self.close()

    def close(self):
        self._in.close()
        self._socket.close()


def words(reply):
    """What a reply is, in a word or two, as the tables have it."""
    if reply is None:
        return "closed"
    status = reply[9:12].decode()
    error = re.search(rb'<ERROR CODE="(\d+)"', reply)
    cim = re.search(rb"(?i)\r\nCIMError: (\S+)", reply)
    return " ".join([status, *(["error " + error[1].decode()] if error else []),
                     *([cim[1].decode()] if cim else [])])


def chunked(text):
    return post("", Transfer_Encoding="chunked", Content_Length=None) + text


def nested(depth, key="x"):
    """A path in a key of a path, and so on."""
    path = name("CIM_RegisteredProfile", InstanceID=key)
    for _ in range(depth):
        path = (f'<INSTANCENAME CLASSNAME="CIM_ElementConformsToProfile"><KEYBINDING NAME="A">'
                f"<VALUE.REFERENCE>{path}</VALUE.REFERENCE></KEYBINDING></INSTANCENAME>")
    return path


def entities(count):
    declared = "".join(f'<!ENTITY e{i} "{10 * f"&e{i - 1};"}">' for i in range(1, count))
    return (f'<?xml version="1.0"?><!DOCTYPE CIM [<!ENTITY e0 "x">{declared}]>'
            f"<CIM>&e{count - 1};</CIM>")


def get(path):
    return asking(call("GetInstance", ("InstanceName", path)))


HEAD, _, BODY = CLASS.partition(b"\r\n\r\n")
GET_CLASS = BODY.decode()
ANY = call("GetClass", ("ClassName", of_class("CIM_None")))
WELL = "400 request-not-well-formed"
VALID = "400 request-not-valid"
MISMATCH = "400 header-mismatch"

# By what is bad about it: what is sent, and what comes back; more than one reply with a comma between.
# What the wire cases and the limits have is left to them.
SENT = {
    # Not HTTP, or not quite.
    "a TLS hello": (b"\x16\x03\x01\x02\x00\x01\x00\x01\xfc\x03\x03" + 64 * b"\x07", "closed"),
    "HTTP/2": (b"PRI * HTTP/2.0\r\n\r\nSM\r\n\r\n", "400"),
    "HTTP/0.9": (b"GET /\r\n\r\n", "400"),
    "zeros": (1000 * b"\0" + b"\r\n\r\n", "400"),
    "another protocol": (b"SSH-2.0-client\r\n\r\n", "400"),
    "a field's name without end": (b"POST / HTTP/1.1\r\n" + 100000 * b"a", "431"),
    "a field without end": (b"POST / HTTP/1.1\r\nA: " + 100000 * b"a", "431"),
    "a target without end": (b"POST /" + 100000 * b"a", "431"),
    "fields without end": (b"POST / HTTP/1.1\r\n" + 50000 * b"a:b\r\n", "431"),
    "no colon": (HEAD + b"\r\ncolonless\r\n\r\n" + BODY, "400"),
    "a blank before a colon": (HEAD + b"\r\nA : b\r\n\r\n" + BODY, "400"),
    "a zero in a field": (HEAD + b"\r\nA: b\0c\r\n\r\n" + BODY, "400"),
    # Where a request ends.
    "a length that is none": (post("", Content_Length="ten"), "400"),
    "a negative length": (post("", Content_Length="-1"), "400"),
    "a length beyond all": (post("", Content_Length=10 ** 30), "400"),
    "a length beyond the limit": (post("", Content_Length=9 * 2 ** 20), "413"),
    "two lengths": (HEAD + b"\r\nContent-Length: 1\r\n\r\n" + BODY, "400"),
    "a length and chunks": (post("0\r\n\r\n", Transfer_Encoding="chunked"), "400"),
    "a length that is too small": (post(GET_CLASS, Content_Length=len(GET_CLASS) - 1),
                                WELL + ", 400"),
    "chunked, identity": (post("", Transfer_Encoding="chunked, identity", Content_Length=None),
                          "400"),
    "xchunked": (post("", Transfer_Encoding="xchunked", Content_Length=None), "400"),
    "xchunked with a length": (post(GET_CLASS, Transfer_Encoding="xchunked"), "400"),
    "chunked with a parameter": (post("", Transfer_Encoding="chunked;q=1", Content_Length=None),
                                 "400"),
    "chunked twice": (post("", Transfer_Encoding="chunked, chunked", Content_Length=None), "400"),
    "gzip, chunked": (post("", Transfer_Encoding="gzip, chunked", Content_Length=None), "501"),
    "no coding": (post("", Transfer_Encoding="", Content_Length=None), "400"),
    "chunks in HTTP/1.0": (post("0\r\n\r\n", "POST / HTTP/1.0", Transfer_Encoding="chunked",
                                Content_Length=None), "400"),
    "two hosts": (HEAD + b"\r\nHost: other\r\n\r\n" + BODY, "400"),
    "a chunk's size that is none": (chunked(b"xyz\r\n"), "400"),
    "a negative chunk": (chunked(b"-1\r\n"), "400"),
    "a chunk of 2^64 and more": (chunked(b"fffffffffffffffff\r\n"), "400"),
    "a chunk of 2^63": (chunked(b"8000000000000000\r\n"), "413"),
    "a chunk with 0x": (chunked(b"0x5\r\nabcde\r\n0\r\n\r\n"), "400"),
    "a chunk that says less than it is": (chunked(b"2\r\nabcd\r\n0\r\n\r\n"), "400"),
    "a chunk that says more than it is": (chunked(b"7\r\nabcd\r\n0\r\n\r\n"), "400"),
    "chunks of a byte without end": (chunked(3000000 * b"1\r\nx\r\n"), "413"),
    "a chunk's line without end": (chunked(b"1;" + 100000 * b"a"), "431"),
    "trailers without end": (chunked(b"0\r\n" + 100000 * b"a:\r\n"), "431"),
    "a trailer that says where to": (
        post("", Transfer_Encoding="chunked", Content_Length=None, CIMObject=None) +
        b"%x\r\n" % len(BODY) + BODY + b"\r\n0\r\nCIMObject: interop\r\n\r\n", MISMATCH),
    "a miracle": (post("", Expect="a-miracle"), "417"),
    # Fields that CIM-XML has.
    "a method of 60 kB": (post(GET_CLASS, CIMMethod=60000 * "x"), MISMATCH),
    "a method that is no UTF-8": (post(GET_CLASS, CIMMethod="Get\udcc3("), MISMATCH),
    "a protocol to come": (post(GET_CLASS, CIMProtocolVersion="2.0"), MISMATCH),
    # Documents.
    "blanks": (post(1000000 * " "), VALID),
    "bytes": (post(bytes(range(256))), WELL),
    "UTF-16": (post(GET_CLASS.encode("utf-16")), VALID),
    "no UTF-8": (post(GET_CLASS.replace("Profile", "Pr\udcfffile").encode(
        errors="surrogateescape")), VALID),
    "text after the end": (post(GET_CLASS + "x"), WELL),
    "two documents": (post(GET_CLASS + GET_CLASS), WELL),
    "tags crossed": (post('<?xml version="1.0"?><CIM><A></CIM></A>'), WELL),
    "an attribute twice": (post(GET_CLASS.replace('ID="1"', 'ID="1" ID="2"')), WELL),
    "entities of entities": (post(entities(12)), VALID),
    "an unknown element": (post(GET_CLASS.replace("CLASSNAME", "KLASSNAME")), VALID),
    "an unknown attribute": (post(GET_CLASS.replace(' ID="1"', ' ID="1" COLOR="red"')), VALID),
    "a million elements deep": (post('<?xml version="1.0"?>' + 1000000 * "<CIM>"), VALID),
    "a million elements": (post(GET_CLASS.replace("<SIMPLEREQ>", "<SIMPLEREQ>" + 999999 * "<A/>")),
                           VALID),
    "500,000 attributes": (post('<?xml version="1.0"?><CIM ' + " ".join(
        f'a{i:x}=""' for i in range(500000)) + "/>"), VALID),
    "an attribute of 8 MB": (post(f'<?xml version="1.0"?><CIM CIMVERSION="{8000000 * "x"}"/>'),
                             "501 unsupported-cim-version"),
    "a comment of 8 MB": (post(f'<?xml version="1.0"?><!--{8000000 * "x"}--><CIM/>'), VALID),
    "a name that is none": (post(GET_CLASS.replace("CIM_Reg", "1CIM_Reg")), VALID),
    # Operations.
    "a namespace of 5,000 parts": (asking(ANY, "/".join(5000 * ["a"])), "200 error 3"),
    "a class of 1 MB": (asking(call("GetClass", ("ClassName", of_class(1000000 * "C")))),
                        "200 error 6"),
    "100,000 parameters": (asking(call("GetClass", *100000 * [("P", "<VALUE>x</VALUE>")])),
                           "200 error 7"),
    "a flag that is none": (asking(call(
        "GetClass", ("ClassName", of_class("CIM_None")), ("LocalOnly", "<VALUE>maybe</VALUE>"))), VALID),
    "a context of 1 MB": (asking(call(
        "CloseEnumeration", ("EnumerationContext", f"<VALUE>{1000000 * 'x'}</VALUE>"))), "200 error 21"),
    "an instance without its key": (get(name("CIM_RegisteredProfile")), "200 error 6"),
    "a key of 5 MB": (get(name("CIM_RegisteredProfile", InstanceID=5000000 * "x")), "200 error 6"),
    "a path 20 paths deep": (get(nested(20)), VALID),
    "a path of 20,000 characters in a key": (get(nested(1, 20000 * "x")), "200 error 4"),
    "an association class that is none": (asking(call(
        "Associators", ("ObjectName", name("CIM_RegisteredProfile", InstanceID="Orvex1")),
        ("AssocClass", of_class("CIM_RegisteredProfile")))), "200"),
    "200,000 properties wanted": (asking(call(
        "GetInstance", ("InstanceName", name("CIM_RegisteredProfile", InstanceID="Orvex1")),
        ("PropertyList", "<VALUE.ARRAY>" + "".join(
            f"<VALUE>P{i}</VALUE>" for i in range(200000)) + "</VALUE.ARRAY>"))), "200"),
    "something written": (asking(call("CreateInstance", (
        "NewInstance", '<INSTANCE CLASSNAME="TST_Large"><PROPERTY NAME="Id" TYPE="string">'
        "<VALUE>new</VALUE></PROPERTY></INSTANCE>")), "root/large"), "200 error 2"),
    "something removed": (asking(call("DeleteInstance", ("InstanceName", name(
        "TST_Large", Id="1"))), "root/large"), "200 error 2"),
}


class Clients(Counting):
    def setUp(self):
        super().setUp()
        folder = self.enterContext(tempfile.TemporaryDirectory())
        mof = pathlib.Path(folder) / "large.mof"  # a reply that no socket takes at once
        text = 2000 * "x"
        mof.write_text(
            "Qualifier Key : boolean = false, Scope(property, reference);\n"
            "class TST_Large { [Key] string Id; string Text; };\n" + "".join(
                f'instance of TST_Large {{ Id = "{i}"; Text = "{text}"; }};\n'
                for i in range(4000)))
        served = Served(BUILD, ["--patience=5", "--grace=5", f"--mof=root/large={mof}"])
        self.served = self.enterContext(served)
        self.port = self.served.port
        self.kept = self.client()
        self.good = [self.kept.ask(request) for request in GOOD]
        self.assertEqual([words(reply) for reply in self.good], len(GOOD) * ["200"])

    def client(self, window=0):
        client = Client(self.port, window)
        self.addCleanup(client.close)
        return client

    def resident(self):
        """Bytes of memory that the server has."""
        status = pathlib.Path(f"/proc/{self.served.pid}/status").read_text()
        return int(re.search(r"VmRSS:\s+(\d+) kB", status)[1]) * 1024

    def judge(self, what, outcome, *lives):
        """A fault is over: good requests are answered as before, here and on connections that live."""
        with contextlib.closing(Client(self.port)) as new:
            for client in (self.kept, new, *lives):
                for request, reply in zip(GOOD, self.good):
                    self.assertEqual(client.ask(request), reply, what)
        self.outcomes[outcome] += 1

    def judge_end(self, what, client):
        """The same, of one whose connection the server closes."""
        self.assertIsNone(client.reply(), what)
        client.close()
        self.judge(what, "closed")

    def test_that_send_what_is_wrong(self):
        for what, (data, expected) in SENT.items():
            with self.subTest(what):
                client = self.client()
                client.send(data)
                replies = [client.reply() for _ in expected.split(", ")]
                self.assertEqual(", ".join(map(words, replies)), expected)
                reply = replies[-1]
                if reply is None or b"\r\nConnection: close\r\n" in reply:
                    if reply is not None:
                        client.end()
                        self.assertIsNone(client.reply())
                    self.judge(what, expected)
                else:
                    self.judge(what, expected, client)
                client.close()

    def test_that_send_anything(self):
        chance = random.Random(1)
        for number in range(1000 if ALL else 50):
            client = self.client()
            client.send(b"\x80" + chance.randbytes(chance.randrange(3000)) + b"\r\n\r\n")
            client.end()
            reply = client.reply()
            self.assertEqual(words(reply), "400", f"number {number}")
            self.judge_end(f"bytes, number {number}", client)

    def test_whose_requests_are_damaged(self):
        chance = random.Random(2)
        for number in range(2000 if ALL else 100):
            data = bytearray(chance.choice(GOOD[:3]))
            for _ in range(chance.randrange(1, 4)):
                data[chance.randrange(len(data))] = chance.choice(chance.choice(
                    (b"<>&;\"'/=: \r\n\t", b"0aZ-.", bytes(range(256)))))
            client = self.client()
            client.send(bytes(data))
            client.end()
            reply = client.reply()
            self.assertIn(words(reply)[:3], ("200", "400", "404", "405", "413", "417", "501", "clo"),
                          bytes(data))
            while client.reply() is not None:  # what is behind an end that has been moved
                pass
            client.close()
            self.judge(f"damage, number {number}", words(reply)[:3])

    def test_that_stop_in_the_middle_of_a_request(self):
        for size in range(1, len(CLASS), 1 if ALL else 29):
            for manner in ("stays", "closes", "resets", "ends"):
                what = f"{manner} after {size} bytes"
                client = self.client()
                client.send(CLASS[:size])
                if manner == "stays":
                    self.judge(what, "waits")
                    client.send(CLASS[size:])  # and then goes on
                    self.assertEqual(client.reply(), self.good[0], what)
                elif manner == "ends":
                    client.end()
                    self.assertEqual(words(client.reply()), "400", what)
                    self.judge_end(what, client)
                    continue
                elif manner == "resets":
                    client.reset()
                else:
                    client.close()
                self.judge(what, manner)
                client.close()

    def test_that_send_a_byte_at_a_time(self):
        for request, good in zip(GOOD, self.good):
            client = self.client()
            for byte in request:
                client.send(bytes([byte]))
            self.assertEqual(client.reply(), good)
            self.judge("a byte at a time", "answered", client)

    def test_that_end_after_a_request(self):
        for request, good in zip(GOOD, self.good):
            client = self.client()
            client.send(request)
            client.end()
            self.assertEqual(client.reply().replace(b"Connection: close\r\n", b""), good)
            self.judge_end("an end", client)

    def test_that_leave_before_their_reply_or_in_its_middle(self):
        for request in (*GOOD, LARGE):
            for size in (0, 1, 20, 200, *((4000, 60000) if request in (CLASSES, LARGE) else ())):
                for manner in (Client.close, Client.reset):
                    client = self.client(window=2048)
                    client.send(request)
                    self.assertEqual(len(client.read(size)), size)
                    manner(client)
                    self.judge(f"{size} bytes read, then {manner.__name__}", manner.__name__)

    def test_that_never_read(self):
        clients = [self.client(window=2048) for _ in range(60)]
        for client in clients:
            client.send(LARGE)
            self.judge("nothing read", "stays")
        for client in clients:
            client.reset()
            self.judge("nothing read, then reset", "reset")

    def test_that_read_a_byte_now_and_then(self):
        client = self.client()
        large = client.ask(LARGE)
        for request, good in ((LARGE, large), (CLASSES, self.good[3])):
            client = self.client(window=2048)
            client.send(request)
            for _ in range(40):
                self.assertEqual(len(client.read(1)), 1)
                self.judge("a byte read", "waits")
            client.reply()  # the rest of it
            self.judge("all read", "answered", client)
            self.assertEqual(client.ask(request), good)

    def test_that_ask_on_without_reading(self):
        before = self.resident()
        for manner in ("reads", "closes", "resets"):
            client = self.client(window=2048)
            client.send(300 * CLASSES)
            self.judge("replies not read", "waits")
            if not SANITIZED:  # which keeps what is freed
                self.assertLess(self.resident() - before, 8 * 2 ** 20)  # they are not made
            if manner == "reads":
                for _ in range(300):
                    self.assertEqual(client.reply(), self.good[3])
                self.judge(manner, "answered", client)
                continue
            if manner == "resets":
                client.reset()
            client.close()
            self.judge(manner, manner)

    def test_that_connect_and_wait(self):
        soft, hard = resource.getrlimit(resource.RLIMIT_NOFILE)
        resource.setrlimit(resource.RLIMIT_NOFILE, (min(hard, soft + 2 * IDLE), hard))
        clients = []
        for number in range(IDLE):
            clients.append(self.client())
            if number % 20 == 0:
                self.judge("idle", "waits")
            else:
                self.assertEqual(self.kept.ask(CLASS), self.good[0])
                self.outcomes["waits"] += 1
        # Those that had waited longest gave way; the others are served.
        self.assertIsNone(clients[0].reply())
        self.judge("idle, then asking", "answered", clients[-1])
        for client in clients:
            client.close()
        self.judge("idle, then closed", "closed")


if __name__ == "__main__":
    unittest.main(argv=[sys.argv[0], *[a for a in sys.argv[2:] if a != "--all"]])
