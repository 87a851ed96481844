#!/usr/bin/env python3
"""The load in its short form, against a server that is right and through a proxy that is not.

usage: load_test.py BUILD-DIRECTORY [unittest arguments]
"""

import http.client
import http.server
import itertools
import os
import pathlib
import re
import signal
import subprocess
import sys
import threading
import time
import types
import unittest

PLACE = pathlib.Path(__file__).resolve().parent
sys.path.insert(1, sys.path[0] + "/../kit")

from bad import WAYS, Bad, asking_peer, telling
from clients import Asker
from judge import Expected
from mix import Request
from process import Process
from report import Report
from served import Served

SERVED = None
ALONE = b' ID="0.'  # in the requests that load.py asks alone
REQUESTS = 800
HALF = ("--namespace", "root/PG_InterOp")  # of what is asked alone, where the load is to fail
HOLDER = """
import os, sys, threading
over = threading.Event()
held = None
for order in sys.stdin:
    if order == "a descriptor\\n":
        held = open(os.devnull, "rb")
    elif order == "a thread\\n":
        over.clear()
        threading.Thread(target=over.wait).start()
    elif order == "give back\\n":
        held = None
        over.set()
    print(flush=True)
"""  # a process that takes and gives back what it is told to
HONEST = 200  # answers of the load, after which the proxy lies


class Proxy(http.server.ThreadingHTTPServer):
    """Hands on requests to the server at `address`, and the answers as `lie` makes them of
    (text, the answer before it) after HONEST; None closes the connection. A context manager."""

    daemon_threads = True
    request_queue_size = 128  # all clients connect at once

    def __init__(self, address, lie):
        super().__init__(("127.0.0.1", 0), Hand)
        self.target = address
        self.lie = lie
        self.lock = threading.Lock()
        self.count = 0
        self.before = b""

    def answer(self, request, text):
        with self.lock:
            self.count += ALONE not in request
            before, self.before = self.before, text
            return text if self.count <= HONEST else self.lie(text, before)

    def __enter__(self):
        threading.Thread(target=self.serve_forever, daemon=True).start()
        return self

    def __exit__(self, *_):
        self.shutdown()
        self.server_close()


class Hand(http.server.BaseHTTPRequestHandler):
    protocol_version = "HTTP/1.1"
    disable_nagle_algorithm = True

    def setup(self):
        super().setup()
        self.connection_on = http.client.HTTPConnection(self.server.target, timeout=120)

    def finish(self):
        self.connection_on.close()
        super().finish()

    def do_POST(self):
        body = self.rfile.read(int(self.headers["Content-Length"]))
        try:
            self.connection_on.request("POST", self.path, body, dict(self.headers))
            reply = self.connection_on.getresponse()
            text = self.server.answer(body, reply.read())
        except (OSError, http.client.HTTPException):
            text = None
        if text is None:
            self.close_connection = True
            return
        self.send_response(reply.status)
        self.send_header("Content-Type", reply.headers["Content-Type"])
        self.send_header("Content-Length", str(len(text)))
        self.end_headers()
        self.wfile.write(text)

    def log_message(self, *_):
        pass


def load(address, *options):
    return subprocess.run(
        [sys.executable, "-B", PLACE / "load.py", address, "--requests", str(REQUESTS), *options],
        stdin=subprocess.DEVNULL, capture_output=True, text=True, check=False)


class ShortLoad(unittest.TestCase):
    def assert_ends(self, done, code, *texts):
        self.assertEqual(done.returncode, code, done.stdout + done.stderr)
        for text in texts:
            self.assertIn(text, done.stdout + done.stderr)

    def test_finds_all_well(self):
        done = load(SERVED.address)
        self.assert_ends(done, 0, f"load: {REQUESTS} of {REQUESTS} requests answered",
                         f"load: outside windows {REQUESTS} right; within none", "\nall well\n")

    def assert_found(self, lie, *texts, options=()):
        with Proxy(SERVED.address, lie) as proxy:
            self.assert_ends(load(f"127.0.0.1:{proxy.server_port}", *HALF, *options), 1, *texts)

    def test_finds_an_answer_changed_one_given_to_another_and_one_that_never_comes(self):
        lies = itertools.cycle((lambda text, _: text.replace(b"Orvex1<", b"Orvex7<"),
                                lambda _, before: before, lambda *_: None))
        self.assert_found(lambda *told: next(lies)(*told), " wrong answers; the first:", ">Orvex7<",
                          "not an answer to message", "RemoteDisconnected", "requests were not answered")

    def test_finds_a_server_that_keeps_more_and_more(self):
        kept = []

        def hoard(text, _):
            kept.append((b"x" * 20480, open(os.devnull, "rb") if len(kept) % 5 == 0 else None))
            return text
        self.assert_found(hoard, "PROBLEM: the server's memory grew by ",
                          "PROBLEM: the server's descriptors grew by ",
                          f"load: outside windows {REQUESTS} right",
                          options=("--pid", str(os.getpid())))
        for _, opened in kept:
            if opened:
                opened.close()

    def test_finds_a_server_that_ends(self):
        with self.assertRaisesRegex(RuntimeError, "died with -9"), Served(SERVED.build) as mortal:
            def shoot(text, _):
                os.kill(mortal.pid, signal.SIGKILL)
                return text
            with Proxy(mortal.address, shoot) as proxy:
                self.assert_ends(
                    load(f"127.0.0.1:{proxy.server_port}", *HALF, "--pid", str(mortal.pid)), 1,
                    "PROBLEM: load: the server's process ended", "requests were not answered")

    def test_finds_a_toggle_that_fails_or_does_nothing(self):
        done = load(SERVED.address, *HALF, "--toggle", "false", "true", "--toggles", "1")
        self.assert_ends(done, 1, "PROBLEM: false: exit 1",
                         "with the module disabled it is not blocked",
                         "no request was blocked in window 1")

    def test_goes_on_for_a_time(self):
        done = load(SERVED.address, *HALF, "--minutes", "0.02", "--clients", "2")
        self.assert_ends(done, 0, "\nall well\n")
        self.assertRegex(done.stdout, r"load: \d+ requests answered in 1\.\d s")

    def test_finds_bad_clients_answered_otherwise(self):
        with Proxy(SERVED.address, lambda *_: None) as proxy:
            proxy.count = HONEST + 1
            for address, wrong in ((SERVED.address, []), (f"127.0.0.1:{proxy.server_port}", [
                    "one that sends byte by byte: answered nothing"])):
                way = telling(*WAYS["sends byte by byte"])
                with Bad(address, {"sends byte by byte": way}, 1, 1, 0) as bad:
                    while not bad.taken:
                        time.sleep(0.01)
                self.assertEqual(list(bad.wrong), wrong)
                report = Report()
                report.bad("load", bad)
                self.assertEqual(report.problems, len(wrong))

    def test_knows_the_answers_of_peers(self):
        asked = Request("interop", "EnumerateInstances", (), "ClassName", "CIM_RegisteredProfile")
        asker = Asker(SERVED.address)
        way = asking_peer(asked, Expected(asker.text(asked), False), "M")
        asker.close()

        def said(answer):
            return lambda text, _: re.sub(rb"<IRETURNVALUE>.*</IRETURNVALUE>", answer, text,
                                          flags=re.DOTALL)
        refusal = b'<ERROR CODE="1" DESCRIPTION="CIM_ERR_FAILED: Provider module %s is not answering."/>'
        for lie, wrong in ((lambda text, _: text, None), (said(refusal % b"M"), None),
                           (said(refusal % b"N"), "answered "), (said(b""), "answered "),
                           (lambda *_: None, "RemoteDisconnected")):
            with Proxy(SERVED.address, lie) as proxy:
                proxy.count = HONEST + 1
                found = way(types.SimpleNamespace(address=f"127.0.0.1:{proxy.server_port}"))
                self.assertTrue(found is None if wrong is None else found.startswith(wrong), found)

    def test_finds_what_is_not_given_back(self):
        with subprocess.Popen([sys.executable, "-c", HOLDER], stdin=subprocess.PIPE,
                              stdout=subprocess.PIPE, text=True, bufsize=1) as holder:
            def tell(order):
                print(order, file=holder.stdin)
                holder.stdout.readline()

            tell("start")
            for order in ("a descriptor", "a thread"):
                process = Process(holder.pid)
                process.look(0, 0)
                tell(order)
                self.assertFalse(process.settles(0))
                report = Report()
                report.settled(process, False)
                self.assertEqual(report.problems, 1)
                tell("give back")
                self.assertTrue(process.settles(10))

    def test_judges_at_least_half_of_the_answers_strictly(self):
        toggle = types.SimpleNamespace(windows=[(1.0, 1.2)], problems=[])
        for inside, problems in ((50, 0), (51, 1)):
            report = Report()
            report.windows("load", types.SimpleNamespace(
                done=100, inside={"right": inside - 1, "blocked": 1}, blocked={1: 1}), toggle, 1)
            self.assertEqual(report.problems, problems)

    def test_says_what_it_cannot_do(self):
        self.assert_ends(load("127.0.0.1:1"), 2, "load.py: 127.0.0.1:1: ")
        self.assert_ends(load(SERVED.address, "--module", "Nobody"), 2,
                         "has no module Nobody registered")
        self.assert_ends(load(SERVED.address, "--namespace", "root/none"), 2,
                         "is not registered for root/none, but for interop, root/cimv2, "
                         "root/PG_InterOp")
        self.assert_ends(load(SERVED.address, "--pid", "4194305"), 2, "no process 4194305")
        for options in (("--clients", "0"), ("--minutes", "0"), ("--bad", "-1"), ("--peers", "n")):
            self.assert_ends(load(SERVED.address, *options), 2, options[0])


if __name__ == "__main__":
    build = sys.argv.pop(1)
    with Served(build) as SERVED:
        program = unittest.main(exit=False)
    sys.exit(not program.result.wasSuccessful())
