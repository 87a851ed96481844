#!/usr/bin/env python3
"""Sends what the wire cases say to a CIM server and compares what comes back, byte by byte.

A case is a folder below cases/, named after the rule that it guards. In it:

    request, reply                  one request on a connection of its own, or
    1.request, 2.reply, 3.request   a script on one connection, in the order of the numbers;
    ... N.body                      bytes alone, with no header before them.

Requests and replies are a header, an empty line, and the body. Header lines end in a plain newline
in the file and in CR LF on the wire; the body is what it is, including a newline at its end.

Placeholders in all files:
    {HOST} {PORT}   of the server
    {LENGTH}        in a request: the length of the body, N.body files up to the next request
                    included; in a reply: the length of the body that came, in any notation
    {HEX 0d0a}      these bytes
In replies also:
    {ANY}           any bytes of one line
    {CLOSED}        at the end: the server closes the connection

What most cases have in common is in parts/, as it goes over the wire: {NAME TEXT} stands for the file
NAME there with TEXT in the place of its {TEXT}.

Every reply but an interim one (1xx) has one field Date with the present time as RFC 9110 (6.6.1)
wants it. It is looked at here, and is not in the files.
"""

import argparse
import contextlib
import difflib
import email.utils
import os
import pathlib
import re
import socket
import ssl
import sys
import time

sys.path.insert(1, str(pathlib.Path(__file__).resolve().parent.parent / "kit"))

from served import Served

PARTS = {path.name.encode(): path.read_bytes().removesuffix(b"\n")
         for path in pathlib.Path(__file__).with_name("parts").iterdir()}
PATIENCE = 20.0  # seconds for a reply
CLOCK = 600  # seconds by which the time in a reply may be wrong
QUIET = 0.3  # seconds after which a reply without a length is taken to be complete


class Failure(Exception):
    """What a case found; the text is for people."""


def split(text):
    """Header (with the empty line) and body."""
    end = text.find(b"\n\n")
    return (text, b"") if end < 0 else (text[: end + 2], text[end + 2 :])


def fill(text, server):
    """`text` with the placeholders resolved that need no reply to look at."""
    text = text.replace(b"{HOST}", server[0].encode()).replace(b"{PORT}", b"%d" % server[1])
    return re.sub(rb"\{HEX ([0-9A-Fa-f ]*)\}", lambda m: bytes.fromhex(m[1].decode()), text)


def whole(text):
    """`text` with the parts that it names."""
    return re.sub(rb"\{(%s)(?: (.+))?\}" % b"|".join(PARTS),
                  lambda m: PARTS[m[1]].replace(b"{TEXT}", m[2] or b""), text)


class Step:
    """One file of a case."""

    def __init__(self, path):
        self.path = path
        self.kind = path.name.rsplit(".", 1)[-1]
        self.number = int(path.name.rsplit(".", 1)[0]) if "." in path.name else 0
        self.text = whole(path.read_bytes())

    def order(self):
        return (self.number, self.kind == "reply")


def steps_of(case):
    """The files of a case in the order in which they are played."""
    files = [path for path in sorted(case.iterdir()) if path.is_file()]
    for path in files:
        if not re.fullmatch(r"request|reply|\d+\.(request|body|reply)", path.name):
            raise Failure(f"{path}: not a name of a case's file; see {pathlib.Path(__file__).name}")
    steps = sorted((Step(path) for path in files), key=Step.order)
    if not steps or steps[0].kind != "request" or steps[-1].kind != "reply":
        raise Failure(f"{case}: a case begins with a request and ends with a reply")
    return steps


def wire_bytes(steps, index, server):
    """The bytes that the request or body at `index` sends."""
    step = steps[index]
    if step.kind == "body":
        return fill(step.text, server)
    header, body = (fill(part, server) for part in split(step.text))
    length = len(body)
    for later in steps[index + 1 :]:
        if later.kind == "request":
            break
        if later.kind == "body":
            length += len(fill(later.text, server))
    header = header.replace(b"{LENGTH}", b"%d" % length)
    return re.sub(rb"(?<!\r)\n", b"\r\n", header) + body


class Connection:
    """A connection that reads replies one at a time; over TLS, if there is a context for it."""

    def __init__(self, server, tls=None):
        self.socket = socket.create_connection(server, timeout=PATIENCE)
        if tls:
            self.socket = tls.wrap_socket(self.socket, server_hostname=server[0])
        self.buffer = b""
        self.ended = False

    def send(self, data):
        try:
            self.socket.sendall(data)
        except OSError as error:
            raise Failure(f"the server does not take the request: {error}") from error

    def more(self, timeout=None):
        """Reads on; false at the end or after the time."""
        if self.ended:
            return False
        self.socket.settimeout(timeout or PATIENCE)
        try:
            data = self.socket.recv(65536)
        except socket.timeout:
            return False
        except ConnectionResetError:
            data = b""
        self.ended = not data
        self.buffer += data
        return bool(data)

    def reply(self, to_head, last):
        """Header and body of the next reply, or what came of it. Of the `last` one a body without a
        length is left to rest()."""
        while b"\r\n\r\n" not in self.buffer and self.more():
            pass
        end = self.buffer.find(b"\r\n\r\n")
        if end < 0:
            return self.take(len(self.buffer))
        header = self.buffer[: end + 4]
        interim = re.match(rb"HTTP/1\.\d 1\d\d ", header)
        length = re.search(rb"(?im)^content-length:\s*(\d+)", header)
        if to_head or interim:
            return self.take(end + 4)
        if length:
            size = end + 4 + int(length[1])
            while len(self.buffer) < size and self.more():
                pass
            return self.take(size)
        while not last and self.more(QUIET):
            pass
        return self.take(len(self.buffer))

    def take(self, size):
        result, self.buffer = self.buffer[:size], self.buffer[size:]
        return result

    def rest(self, closed_by_server):
        """What still comes. Unless the server is to close by itself, it is told to."""
        if not closed_by_server and not self.ended:
            # Over TLS, too, it is the socket that ends: SSLSocket would read no more.
            with contextlib.suppress(OSError), socket.socket(
                    fileno=os.dup(self.socket.fileno())) as beneath:
                beneath.shutdown(socket.SHUT_WR)
        while self.more():
            pass
        if closed_by_server and not self.ended:
            raise Failure("the server leaves the connection open")
        return self.take(len(self.buffer))


def comparable(reply):
    """A reply as it is written in a file: header lines with plain newlines."""
    header, separator, body = reply.partition(b"\r\n\r\n")
    return header.replace(b"\r\n", b"\n") + separator.replace(b"\r\n", b"\n") + body


def with_length(expected, actual):
    """`expected` with {LENGTH} as `actual` writes it, if that is the truth."""
    header, body = split(actual)
    length = re.search(rb"(?im)^content-length:\s*(\d+)", header)
    if length and int(length[1]) == len(body):
        return expected.replace(b"{LENGTH}", length[1])
    return expected


def without_date(path, reply):
    """`reply` without its field Date. Throws Failure if it has not one that says the time."""
    header, body = split(reply)
    if not re.match(rb"HTTP/1\.\d [2-5]", header):
        return reply
    dates = re.findall(rb"(?im)^date: *(.*)\n", header)
    now = time.time()
    if not any(dates == [email.utils.formatdate(now - ago, usegmt=True).encode()]
               for ago in range(-CLOCK, CLOCK)):
        raise Failure(f"{path}: a field Date with the time is expected once, not {dates}")
    return re.sub(rb"(?im)^date:.*\n", b"", header) + body


def pattern(expected):
    return re.compile(b".*".join(re.escape(part) for part in expected.split(b"{ANY}")))


def lines(text):
    return text.decode("utf-8", "backslashreplace").replace("\r", "\\r").split("\n")


def compare(path, expected, actual):
    if pattern(expected).fullmatch(actual):
        return
    difference = difflib.unified_diff(
        lines(expected), lines(actual), str(path), "what the server sent", lineterm=""
    )
    raise Failure("\n".join(difference))


CLOSED = b"{CLOSED}"


def replies(case, server, tls=None):
    """Plays a case, and yields each step that is a reply with what came in its place."""
    steps = steps_of(case)
    connection = Connection(server, tls)
    verb = b""
    with connection.socket:
        for index, step in enumerate(steps):
            if step.kind != "reply":
                data = wire_bytes(steps, index, server)
                verb = data.split(b" ", 1)[0] if step.kind == "request" else verb
                connection.send(data)
                continue
            last = index == len(steps) - 1
            actual = comparable(connection.reply(verb == b"HEAD", last))
            if last:
                actual += connection.rest(step.text.endswith(CLOSED))
            yield step, actual


def play(case, server, write, tls):
    """Runs one case. Throws Failure. With `write`, replies that differ are taken over."""
    for step, actual in replies(case, server, tls):
        actual = without_date(step.path, actual)
        closed = step.text.endswith(CLOSED)
        expected = fill(step.text[: -len(CLOSED)] if closed else step.text, server)
        try:
            compare(step.path, with_length(expected, actual), actual)
        except Failure:
            if not write:
                raise
            step.path.write_bytes(actual + (CLOSED if closed else b""))
            print(f"wrote   {step.path}: review it, and put placeholders back")


def run(cases, server, write, tls=None):
    """Runs all cases and returns how many failed."""
    failed = 0
    for case in cases:
        try:
            play(case, server, write, tls)
            print(f"ok      {case.name}")
        except (Failure, OSError) as error:
            failed += 1
            print(f"FAILED  {case.name}\n{error}\n")
    return failed


def address(text):
    host, _, port = text.rpartition(":")
    if not host or not port.isdigit():
        raise argparse.ArgumentTypeError(f"{text}: HOST:PORT is expected")
    return host, int(port)


def main():
    parser = argparse.ArgumentParser(
        description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter
    )
    where = parser.add_mutually_exclusive_group(required=True)
    where.add_argument("--server", type=address, metavar="HOST:PORT", help="a server that runs")
    where.add_argument("--build", metavar="DIRECTORY", help="the build whose cimhost to start")
    parser.add_argument("--tls", action="store_true", help="with --build: over HTTPS")
    parser.add_argument(
        "--argument",
        action="append",
        default=[],
        metavar="TEXT",
        help="an argument for the cimhost, e.g. --argument=--namespace (repeatable)",
    )
    parser.add_argument(
        "--cases", type=pathlib.Path, default=pathlib.Path(__file__).parent / "cases"
    )
    parser.add_argument("--write", action="store_true", help="take over replies that differ")
    parser.add_argument("names", nargs="*", help="the cases to run; none: all")
    options = parser.parse_args()

    cases = sorted(path for path in options.cases.iterdir() if path.is_dir())
    unknown = set(options.names) - {case.name for case in cases}
    if unknown or not cases:
        parser.error(f"no such case in {options.cases}: {', '.join(sorted(unknown)) or 'any'}")
    if options.names:
        cases = [case for case in cases if case.name in options.names]

    if options.server:
        failed = run(cases, options.server, options.write)
    else:
        with Served(options.build, options.argument, content=False, https=options.tls) as served:
            tls = options.tls and ssl.create_default_context(cafile=served.certificate)
            port = served.secure_port if tls else served.port
            failed = run(cases, ("127.0.0.1", port), options.write, tls)
    print(f"{len(cases) - failed} passed, {failed} failed")
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())
