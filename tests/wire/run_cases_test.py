#!/usr/bin/env python3
"""The runner finds what differs: canned replies against small cases."""

import email.utils
import pathlib
import socket
import subprocess
import sys
import tempfile
import threading
import unittest

RUNNER = pathlib.Path(__file__).with_name("run_cases.py")
DATE = b"Date: " + email.utils.formatdate(usegmt=True).encode() + b"\r\n"
OK = b"HTTP/1.1 200 OK\r\n" + DATE + b"X: one\r\ncontent-length: 0003\r\n\r\nabc"
EXPECTED = b"HTTP/1.1 200 OK\nX: one\ncontent-length: {LENGTH}\n\nabc"


class Canned:
    """Answers each request of one connection with the next reply; keeps what it was sent."""

    def __init__(self, replies, close):
        self.listener = socket.create_server(("127.0.0.1", 0))
        self.port = self.listener.getsockname()[1]
        self.received = b""
        self.thread = threading.Thread(target=self.serve, args=(replies, close))
        self.thread.start()

    def serve(self, replies, close):
        connection, _ = self.listener.accept()
        with connection, self.listener:
            for reply in replies:
                self.received += connection.recv(65536)
                connection.sendall(reply)
            if not close:
                connection.recv(1)  # until the other side has closed


def outcome(files, replies, close=False, arguments=()):
    """Exit code and output of the runner, and what the server was sent."""
    with tempfile.TemporaryDirectory() as folder:
        case = pathlib.Path(folder, "a-case")
        case.mkdir()
        for name, text in files.items():
            (case / name).write_bytes(text)
        server = Canned(replies, close)
        done = subprocess.run(
            [sys.executable, RUNNER, "--cases", folder, "--server", f"127.0.0.1:{server.port}"]
            + list(arguments),
            capture_output=True,
            text=True,
            timeout=60,
            check=False,
        )
        server.thread.join()
        left = {path.name: path.read_bytes() for path in case.iterdir()}
        return done.returncode, done.stdout, server.received, left


class RunCases(unittest.TestCase):
    def passes(self, files, replies, **more):
        code, output, received, _ = outcome(files, replies, **more)
        self.assertEqual((code, output.splitlines()[-1]), (0, "1 passed, 0 failed"), output)
        return received

    def fails(self, files, replies, **more):
        code, output, _, _ = outcome(files, replies, **more)
        self.assertEqual((code, output.splitlines()[-1]), (1, "0 passed, 1 failed"), output)
        return output

    def test_same_bytes_pass(self):
        self.passes({"request": b"POST / HTTP/1.1\n\n", "reply": EXPECTED}, [OK])

    def test_header_lines_go_out_with_cr_lf_and_the_body_as_it_is(self):
        text = b"POST / HTTP/1.1\nHost: {HOST}:{PORT}\nContent-Length: {LENGTH}\n\na\nb{HEX ff0a}"
        sent = self.passes({"request": text, "reply": EXPECTED}, [OK])
        self.assertRegex(
            sent, rb"^POST / HTTP/1\.1\r\nHost: 127.0.0.1:\d+\r\nContent-Length: 5\r\n\r\na\nb\xff\n$"
        )

    def test_a_part_goes_out_as_it_is_written_with_its_text(self):
        text = b"{POST GetQualifier}\nX: {POST}\n\n{END_CALL}{NO_PART x}"
        sent = self.passes({"request": text, "reply": EXPECTED}, [OK])
        self.assertRegex(sent, rb"(?s)^POST /cimom HTTP/1\.1\r\nHost: 127.*\r\nContent-Length: 56\r\n.*"
                               rb"\r\nCIMMethod: GetQualifier\r\n.*\r\nX: POST /.*\r\n\r\n"
                               rb"</IMETHODCALL>\n</SIMPLEREQ>\n</MESSAGE>\n</CIM>\{NO_PART x\}$")

    def test_a_different_field_body_or_order_fails_and_is_shown(self):
        request = b"POST / HTTP/1.1\n\n"
        for reply in (
            OK.replace(b"one", b"two"),
            OK.replace(b"X:", b"x:"),
            OK.replace(b"abc", b"abd"),
            OK.replace(b"X: one\r\n", b""),
            b"HTTP/1.1 200 OK\r\n" + DATE + b"content-length: 3\r\nX: one\r\n\r\nabc",
        ):
            output = self.fails({"request": request, "reply": EXPECTED}, [reply])
            self.assertIn("what the server sent", output)

    def test_more_than_the_reply_fails(self):
        self.fails({"request": b"POST / HTTP/1.1\n\n", "reply": EXPECTED}, [OK + b"more"])

    def test_a_wrong_length_fails(self):
        reply = OK.replace(b"0003", b"0004")
        self.fails({"request": b"POST / HTTP/1.1\n\n", "reply": EXPECTED}, [reply], close=True)

    def test_a_reply_without_the_time_or_with_another_fails(self):
        request = b"POST / HTTP/1.1\n\n"
        for date in (b"", DATE + DATE, b"Date: Sun, 06 Nov 1994 08:49:37 GMT\r\n",
                     DATE.replace(b"GMT", b"UTC"), DATE.replace(b", ", b" ")):
            output = self.fails({"request": request, "reply": EXPECTED}, [OK.replace(DATE, date)])
            self.assertIn("a field Date with the time is expected once", output)

    def test_any_stands_for_what_varies_and_for_nothing_else(self):
        expected = EXPECTED.replace(b"abc", b"a{ANY}c")
        request = b"POST / HTTP/1.1\n\n"
        self.passes({"request": request, "reply": expected}, [OK])
        self.fails({"request": request, "reply": expected}, [OK.replace(b"abc", b"abd")])
        self.fails({"request": request, "reply": expected}, [OK.replace(b"abc", b"a\nc")])

    def test_closed_wants_the_connection_closed(self):
        files = {"request": b"POST / HTTP/1.1\n\n", "reply": EXPECTED + b"{CLOSED}"}
        self.passes(files, [OK], close=True)

    def test_a_script_plays_in_order_on_one_connection(self):
        files = {
            "1.request": b"POST / HTTP/1.1\nContent-Length: {LENGTH}\n\n",
            "2.reply": b"HTTP/1.1 100 Continue\n\n",
            "3.body": b"body\n",
            "4.reply": EXPECTED,
        }
        sent = self.passes(files, [b"HTTP/1.1 100 Continue\r\n\r\n", OK])
        self.assertEqual(sent, b"POST / HTTP/1.1\r\nContent-Length: 5\r\n\r\nbody\n")

    def test_write_takes_the_reply_over(self):
        files = {"request": b"POST / HTTP/1.1\n\n", "reply": b"nothing\n"}
        code, _, _, left = outcome(files, [OK], arguments=["--write"])
        self.assertEqual(code, 0)
        self.assertEqual(left["reply"], b"HTTP/1.1 200 OK\nX: one\ncontent-length: 0003\n\nabc")


if __name__ == "__main__":
    unittest.main()
