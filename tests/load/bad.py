"""Clients that behave badly, and clients of providers that do: each way of it again and again, beside
the good ones."""

import collections
import concurrent.futures
import random
import re
import socket
import struct
import threading

import judge
from clients import PATIENCE, Asker, Unanswered
from request import asking, call, name, of_class

TOGETHER = 6  # that ask a peer at once: more than a module has places
CROWD = 20  # connections that one client leaves idle
PAUSE = 0.2  # seconds between two ways of a client, at most
STEP = 0.05  # seconds between two reads of one that reads slowly
MIB = 1024 * 1024
HEAD = b"POST /cimom HTTP/1.1\r\nHost: h\r\n"


SMALL = asking(call("GetClass", ("ClassName", of_class("CIM_Dependency"))))
# More than the sockets keep: 8 MB of replies.
MUCH = 100 * asking(call("EnumerateClasses", *(
    (flag, "<VALUE>TRUE</VALUE>") for flag in ("DeepInheritance", "IncludeQualifiers"))))
# Of a class that no module publishes: the module's places are the good clients'.
DEAR = asking(call("GetInstance", ("InstanceName", name(
    "ORVEX_Vsan", **{f"k{n}": 1000 * "x" for n in range(999)}))))


# What providers have delivered for it is kept for a while, and there may be too many.
OPENING = asking(call("OpenEnumerateInstances", (
    "ClassName", of_class("CIM_ElementConformsToProfile"))))


class Client:
    """A connection for one way of being bad, which `chance` may vary; a context manager. `hold` is
    how long it may wait, in seconds."""

    def __init__(self, address, chance, hold):
        self.address = address
        self.chance = chance
        self.hold = hold
        self._sockets = []
        self.open()

    def __enter__(self):
        return self

    def __exit__(self, *_):
        for one in self._sockets:
            one.close()

    def open(self):
        host, _, port = self.address.rpartition(":")
        self.socket = socket.create_connection((host, int(port)), PATIENCE)
        self._sockets.append(self.socket)

    def send(self, data):
        """Less than all, if the server does not take it."""
        try:
            self.socket.sendall(data)
        except OSError:
            pass

    def take(self, most):
        """What comes; nothing at the end, or when nothing comes in time."""
        try:
            return self.socket.recv(most)
        except OSError:
            return b""

    def status(self):
        """Of the reply that comes; None if none does."""
        line = b""
        while not line.endswith(b"\n"):
            byte = self.take(1)
            if not byte:
                return None
            line += byte
        return int(re.match(rb"HTTP/1\.1 (\d{3}) ", line)[1])

    def status_of(self, *parts):
        for part in parts:
            self.send(part)
        return self.status()

    def part(self):
        """Some of a request, but not all."""
        return SMALL[:self.chance.randrange(1, len(SMALL))]

    def wait(self):
        """For the server to say something, or else for the time of one that waits."""
        self.socket.settimeout(self.hold)
        return self.status()

    def reset(self):
        self.socket.setsockopt(socket.SOL_SOCKET, socket.SO_LINGER, struct.pack("ii", 1, 0))
        self.socket.close()


def leaves_in_the_middle(client):
    client.send(client.part())


def resets_in_the_middle(client):
    client.send(client.part())
    client.reset()


def ends_its_side_in_the_middle(client):
    client.send(client.part())
    client.socket.shutdown(socket.SHUT_WR)
    return client.status()


def sends_byte_by_byte(client):
    return client.status_of(*(SMALL[n:n + 1] for n in range(len(SMALL))))


def never_ends_its_request(client):
    client.send(client.part())
    return client.wait()


def only_connects(client):
    for _ in range(CROWD):
        client.open()
    return client.wait()


def never_reads(client):
    client.send(MUCH)
    threading.Event().wait(client.hold)


def reads_slowly(client):
    status = client.status_of(MUCH)
    client.socket.settimeout(STEP)
    for _ in range(int(client.hold / STEP)):
        client.take(4096)
        threading.Event().wait(STEP)
    return status


def resets_in_the_reply(client):
    status = client.status_of(MUCH)
    client.reset()
    return status


def sends_anything(client):
    client.send(client.chance.randbytes(client.chance.randrange(1, 4096)) + b"\r\n\r\n")
    client.socket.shutdown(socket.SHUT_WR)
    return client.status()


def damages_a_request(client):
    damaged = bytearray(SMALL)
    for _ in range(3):
        damaged[client.chance.randrange(len(damaged))] = client.chance.randrange(256)
    client.send(damaged)
    client.socket.shutdown(socket.SHUT_WR)
    return client.status()


def sends(*parts):
    return lambda client: client.status_of(*parts)


CHUNKED = HEAD + b"Transfer-Encoding: chunked\r\n\r\n"
# The statuses of the reply that each may have, None for no reply.
WAYS = {
    "leaves in the middle of a request": (leaves_in_the_middle, {None}),
    "resets in the middle of a request": (resets_in_the_middle, {None}),
    "ends its side in the middle of a request": (ends_its_side_in_the_middle, {400}),
    "sends byte by byte": (sends_byte_by_byte, {200}),
    "never ends its request": (never_ends_its_request, {None, 408}),
    "only connects": (only_connects, {None}),
    "never reads": (never_reads, {None}),
    "reads slowly": (reads_slowly, {200}),
    "resets in the middle of the reply": (resets_in_the_reply, {200}),
    "sends anything": (sends_anything, {None, 400}),
    "damages a request": (damages_a_request, {None, *range(200, 600)}),
    "speaks TLS": (sends(b"\x16\x03\x01\x02\x00\x01\x00\x01\xfc\x03\x03"), {None}),
    "says two lengths": (sends(HEAD + b"Content-Length: 4\r\nContent-Length: 5\r\n\r\n"), {400}),
    "says length and chunks": (
        sends(HEAD + b"Content-Length: 4\r\nTransfer-Encoding: chunked\r\n\r\n0\r\n\r\n"), {400}),
    "hides chunks": (sends(HEAD + b"Transfer-Encoding: chunked, identity\r\n\r\n" + SMALL), {400}),
    "sends a chunk that is none": (sends(CHUNKED + b"-1\r\n"), {400}),
    "sends trailers without end": (sends(CHUNKED + b"0\r\n", *16 * [1000 * b"a: b\r\n"]), {431}),
    "sends too long a header": (sends(HEAD + b"A: " + 70000 * b"a" + b"\r\n\r\n"), {431}),
    "says too long a body": (sends(HEAD + b"Content-Length: 8388609\r\n\r\n"), {413}),
    "sends too long a body": (
        sends(CHUNKED, *9 * [b"100000\r\n" + MIB * b" " + b"\r\n"]), {413}),
    "sends no document": (sends(SMALL.replace(b"<?xml", b"<?lmx")), {400}),
    "sends elements in elements": (
        sends(HEAD + b"Content-Type: application/xml\r\nCIMOperation: MethodCall\r\n"
              b"Content-Length: 3000\r\n\r\n" + 1000 * b"<a>"), {400}),
    "asks what costs much": (sends(DEAR), {200}),
    "leaves an enumeration open": (sends(OPENING), {200}),
}


def telling(way, allowed):
    """The way as what tells what is wrong, if anything is."""
    def tell(client):
        status = way(client)
        return None if status in allowed else f"answered {status or 'nothing'}"
    return tell


def asking_peer(asked, expected, module):
    """The way in which a peer is asked by several at once. Its module may be busy."""
    busy = (judge.Answer.read(expected.text).method,
            ("1", f"CIM_ERR_FAILED: Provider module {module} is not answering."), (), ())

    def ask_once(address):
        asker = Asker(address)
        try:
            text = asker.text(asked)
        except Unanswered as error:
            return str(error)
        finally:
            asker.close()
        right = expected.judge(text, False) == judge.RIGHT or judge.Answer.read(text) == busy
        return None if right else f"answered {text}"

    def ask_together(client):
        with concurrent.futures.ThreadPoolExecutor(TOGETHER) as pool:
            return next(filter(None, pool.map(ask_once, TOGETHER * [client.address])), None)
    return ask_together


class Bad:
    """`clients` clients, each of which takes all of `ways` in an order of its own, and then anew,
    from when this context is entered until it is left. None waits longer than `longest` seconds."""

    def __init__(self, address, ways, clients, seed, longest):
        self._address = address
        self._ways = ways
        self._longest = longest
        self._over = threading.Event()
        self._lock = threading.Lock()
        self._threads = [threading.Thread(target=self._client, args=(random.Random(f"{seed} bad {n}"),))
                         for n in range(clients)]
        self.taken = collections.Counter()
        self.wrong = collections.Counter()

    def __enter__(self):
        for thread in self._threads:
            thread.start()
        return self

    def __exit__(self, *_):
        self._over.set()
        for thread in self._threads:
            thread.join()

    def _client(self, chance):
        order = []
        while not self._over.wait(chance.uniform(0, PAUSE)):
            order = order or chance.sample(list(self._ways), len(self._ways))
            way = order.pop()
            try:
                with Client(self._address, chance, chance.uniform(0, self._longest)) as client:
                    wrong = self._ways[way](client)
            except OSError as error:
                wrong = f"{type(error).__name__}: {error}"
            with self._lock:
                self.taken[way] += 1
                if wrong:
                    self.wrong[f"one that {way}: {wrong}"] += 1
