#!/usr/bin/env python3
"""TLS handshakes with a cimhost of its own, whole ones and broken ones, and what is left of them.

A whole one gets a reply; a broken one ends somewhere, in each of several ways. First one kind, then the
other: when as many connections have come and gone, the server holds what it held when a quarter had.

exit code: 0 if all was well, 1 if not.
"""

import argparse
import concurrent.futures
import contextlib
import pathlib
import socket
import ssl
import struct
import sys
import threading
import time

sys.path.insert(1, sys.path[0] + "/../kit")

from process import HELD, Process
from served import Served

PATIENCE = 60  # seconds
CLIENTS = 8
GROWTH = 1024  # KiB that the memory may differ by: what the allocator keeps here and there
SAMPLES = 400
REQUEST = b"GET / HTTP/1.1\r\nHost: localhost\r\nConnection: close\r\n\r\n"


def client_hello():
    outgoing = ssl.MemoryBIO()
    shaking = ssl.create_default_context().wrap_bio(ssl.MemoryBIO(), outgoing,
                                                    server_hostname="localhost")
    with contextlib.suppress(ssl.SSLWantReadError):
        shaking.do_handshake()
    return outgoing.read()


HELLO = client_hello()


def reset(client):
    client.setsockopt(socket.SOL_SOCKET, socket.SO_LINGER, struct.pack("ii", 1, 0))


def whole(address, certificate, _):
    trusting = ssl.create_default_context(cafile=certificate)
    with socket.create_connection(address, PATIENCE) as plain, \
            trusting.wrap_socket(plain, server_hostname="localhost") as client:
        client.sendall(REQUEST)
        reply = b""
        while piece := client.recv(65536):
            reply += piece
    return reply.startswith(b"HTTP/1.1 404 ") and reply.endswith(b"sent with POST.\n")


# How a handshake breaks off, by what is sent; then whether an answer is awaited, and a reset sent.
WAYS = [(bytes_, awaits, resets)
        for bytes_ in (b"", HELLO[:1], HELLO[:100], HELLO, HELLO + b"\x14\x03\x03\x00\x01\x01",
                       HELLO[:9] + bytes(len(HELLO) - 9), b"\xff" * 600, REQUEST)
        for awaits in (False, True) for resets in (False, True)
        if not awaits or len(bytes_) > 200]


def broken(address, _, number):
    bytes_, awaits, resets = WAYS[number % len(WAYS)]
    with socket.create_connection(address, PATIENCE) as client:
        with contextlib.suppress(ConnectionError):
            client.sendall(bytes_)
            if awaits:
                client.recv(65536)
        if resets:
            reset(client)
    return True


def drive(name, one, count, served):
    """Makes `count` of a kind; what is wrong, in lines."""
    address = ("localhost", served.secure_port)
    process = Process(served.pid)
    numbers = iter(range(count))
    lock = threading.Lock()
    wrong = []

    def work():
        while True:
            with lock:
                number = next(numbers, None)
                if number is None:
                    return
                if number % max(1, count // SAMPLES) == 0:
                    process.look(number / count, number)
            try:
                if not one(address, served.certificate, number):
                    wrong.append(f"{name} {number}: not the answer")
            except OSError as error:
                wrong.append(f"{name} {number}: {error}")

    process.look(0, 0)
    begin = time.monotonic()
    with concurrent.futures.ThreadPoolExecutor(CLIENTS) as clients:
        for done in [clients.submit(work) for _ in range(CLIENTS)]:
            done.result()
    took = time.monotonic() - begin
    if not process.settles(PATIENCE):
        wrong.append(f"{name}: descriptors or threads are left")
    early, late = process.quarters()
    print(f"{count} {name} handshakes in {took:.0f} s, {count / took:.0f} a second: {len(wrong)} wrong")
    for field in HELD:
        print(f"  {field}: {getattr(process.samples[0], field)} before, {getattr(early, field)} in the "
              f"second quarter, {getattr(late, field)} in the last, "
              f"{getattr(process.samples[-1], field)} after")
    if late.memory - early.memory > GROWTH:
        wrong.append(f"{name}: the memory grows")
    return wrong


def main():
    parser = argparse.ArgumentParser(description=__doc__,
                                     formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("build", type=pathlib.Path, help="the build directory")
    parser.add_argument("--count", type=int, default=10000, metavar="N", help="of each kind")
    chosen = parser.parse_args()
    with Served(chosen.build, ["--namespace=root/one"], content=False, https=True) as served:
        wrong = [line for name, one in (("whole", whole), ("broken", broken))
                 for line in drive(name, one, chosen.count, served)]
        if not whole(("localhost", served.secure_port), served.certificate, 0):
            wrong.append("nobody is served afterwards")
    print("\n".join(wrong[:20]) or "all well")
    return 1 if wrong else 0


if __name__ == "__main__":
    sys.exit(main())
