"""What users cost: the rate of one whose password is remembered against that without users, also while
others try passwords; and what an attempt costs, by whether there is such a user."""

import base64
import contextlib
import pathlib
import socket
import subprocess
import tempfile
import threading
import time

from measure_costs import used
from measure_wire import CONNECTIONS, load
from questions import GET_MODULE, NAMES
from results import progress
from servers import Cimhost, processor_time

USER, PASSWORD = "user0", "Geheim:4711"
ATTEMPTS, QUICK_ATTEMPTS = 100, 10
ATTEMPTS_A_SECOND = 200
WRONG, UNKNOWN = "wrong password", "unknown user"


class Asked:
    """A question of a user."""

    def __init__(self, question, user, password=PASSWORD):
        self.title = question.title
        self._question = question
        self._field = "Authorization: Basic " + base64.b64encode(
            f"{user}:{password}".encode()).decode()

    def bytes(self, target="/cimom"):
        return self._question.bytes(target).replace(b"\r\n\r\n", f"\r\n{self._field}\r\n\r\n".encode(), 1)


def make_users(build, place, count):
    """A file of so many users with the same hash."""
    file = pathlib.Path(place) / "users"
    subprocess.run([pathlib.Path(build) / "bin" / "cimhost", "passwd", file, USER],
                   input=PASSWORD + "\n", text=True, check=True)
    line = file.read_text()
    file.write_text("".join(line.replace(USER, f"user{n}", 1) for n in range(count)))
    return file


def attempt(server, user, password, number):
    """The beginning of the answer to an attempt from an address of its own, which is not slowed."""
    address = f"127.{1 + number // 250 // 250 % 250}.{number // 250 % 250}.{1 + number % 250}"
    with contextlib.closing(socket.create_connection(("127.0.0.1", server.port), 60,
                                                     (address, 0))) as connection:
        connection.sendall(Asked(NAMES, user, password).bytes())
        return connection.recv(65536)


def measure_attempts(server, count, add):
    for number in range(count):
        for kind, user in ((WRONG, f"user{1 + number}"), (UNKNOWN, f"nobody{number}")):
            before = used(server.pid)
            start = time.monotonic()
            reply = attempt(server, user, "wrong", 2 * number + (kind == WRONG))
            add(kind, "processor", used(server.pid) - before)
            add(kind, "whole", time.monotonic() - start)
            if not reply.startswith(b"HTTP/1.1 401 "):
                raise RuntimeError(f"{kind}: {reply[:80]!r}")


@contextlib.contextmanager
def attacked(server):
    """Somebody tries passwords, the user's among them, all the time."""
    ended = threading.Event()

    def work():
        number = 100_000
        while not ended.wait(1 / ATTEMPTS_A_SECOND):
            number += 1
            attempt(server, USER if number % 2 else f"nobody{number}", "wrong", number)

    thread = threading.Thread(target=work)
    thread.start()
    try:
        yield
    finally:
        ended.set()
        thread.join()


def measure(setup, results):
    rounds = 1 if setup.quick else setup.rounds
    attempts = QUICK_ATTEMPTS if setup.quick else ATTEMPTS
    with contextlib.ExitStack() as stack:
        place = stack.enter_context(tempfile.TemporaryDirectory(prefix="bench."))
        progress("users: starting the servers")
        users = make_users(setup.build, place, attempts + 1)
        without = stack.enter_context(Cimhost(setup.build))
        served = stack.enter_context(Cimhost(setup.build, options=["--users", users]))
        measure_attempts(served, attempts, lambda kind, what, value: results.add(
            "users", kind, None, "now", what, value))
        for turn in range(rounds):
            progress(f"users: round {turn + 1} of {rounds}")
            for connections in CONNECTIONS:
                for question in (NAMES, GET_MODULE):
                    asked = Asked(question, USER)
                    for side, server, around in (
                            ("without users", without, contextlib.nullcontext()),
                            ("with users", served, contextlib.nullcontext()),
                            ("attacked", served, attacked(served))):
                        with around:
                            before = processor_time(server.pid)
                            told = load(server.port, asked, connections, place)
                        told["processor"] = (
                            processor_time(server.pid) - before) / told["requests"]
                        for what in ("rate", "p50", "p99", "processor"):
                            results.add("users", question.title, connections, side, what, told[what])
