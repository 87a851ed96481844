#!/usr/bin/env python3
"""Who may ask a server with users, by the clients of the field and by hand: passwords, roles, what happens
to who fails, and that no password is written down anywhere.

usage: users_test.py BUILD-DIRECTORY [unittest arguments]
"""

import base64
import concurrent.futures
import contextlib
import http.client
import os
import pathlib
import pty
import re
import signal
import ssl
import subprocess
import sys
import tempfile
import termios
import time
import unittest

sys.path.insert(1, sys.path[0] + "/../kit")

import hashes
import modules
from request import CimError, call, document, of_class, returned, value
from served import SOURCE, Served
from writes_test import VSAN, PUBLISHED, create, writes

try:
    import pywbem
except ImportError:
    pywbem = None

BUILD = pathlib.Path()
NAMESPACE = "root/cimv2"
MODULES = "root/modules"
CLASS = "ORVEX_Vsan"
NAMES = call("EnumerateInstanceNames", ("ClassName", of_class(CLASS)))
PATIENCE = 60
READER, WRITER, UMLAUT = ("reader", "Geheim:4711"), ("writer", "Schreib-4712"), ("jörg b", "pä ß€4713")
USERS = {READER: "read", WRITER: "write", UMLAUT: "read"}


def basic(user):
    return "Basic " + base64.b64encode(":".join(user).encode()).decode()


class Case(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)
        self.users = self.folder / "users"

    def passwd(self, *arguments, given="", code=0):
        done = subprocess.run([BUILD / "bin/cimhost", "passwd", *arguments], input=given, text=True,
                              capture_output=True, timeout=PATIENCE, check=False)
        self.assertEqual((done.returncode, done.stdout), (code, ""), done.stderr)
        return done.stderr

    def make_users(self, users=None):
        for (name, password), role in (users or USERS).items():
            self.passwd(self.users, name, "--role", role, given=password + "\n")

    def serve(self, *options, https=False):
        """A server with the users of the file."""
        served = Served(BUILD, ["--users", self.users, *options], https=https)
        served.__enter__()
        self.addCleanup(self.end)
        self.served = served
        return served

    def end(self):
        """What it has logged."""
        if self.served:
            served, self.served = self.served, None
            served.__exit__(None, None, None)
            self.log = served.log
        return self.log

    def ask(self, request=NAMES, user=None, source=None, namespace=NAMESPACE, **fields):
        """Status, header fields and text of the reply."""
        method, parameters = request
        with contextlib.closing(self.connection((source, 0) if source else None)) as connection:
            if user:
                fields["Authorization"] = basic(user)
            connection.request("POST", "/cimom", document(namespace, method, parameters), {
                "Content-Type": "application/xml; charset=utf-8", "CIMOperation": "MethodCall",
                "CIMMethod": method, "CIMObject": namespace, **fields})
            reply = connection.getresponse()
            return reply.status, reply.headers, reply.read().decode()

    def connection(self, source=None):
        return http.client.HTTPConnection("127.0.0.1", self.served.port, PATIENCE, source_address=source)

    def status(self, *arguments, **named):
        return self.ask(*arguments, **named)[0]

    def refusal(self, *arguments, **named):
        """Code and text of a CIM error."""
        status, _, text = self.ask(*arguments, **named)
        self.assertEqual(status, 200)
        with self.assertRaises(CimError) as refused:
            returned(text)
        return refused.exception.code, str(refused.exception)

    def hang_up(self):
        """Lets the server read its users again, and waits until it has."""
        told = re.compile(r"read again|stay as they were")
        count = len(told.findall(self.served.logged()))
        os.kill(self.served.pid, signal.SIGHUP)
        end = time.monotonic() + PATIENCE
        while len(told.findall(self.served.logged())) == count:
            self.assertLess(time.monotonic(), end)
            time.sleep(0.02)


class Passwords(Case):
    def test_only_users_with_their_passwords_are_answered(self):
        self.make_users()
        self.serve()
        for user in USERS:
            status, _, text = self.ask(user=user)
            self.assertEqual(status, 200)
            self.assertEqual(len(returned(text)), 2)
        self.assertEqual(self.status(user=("reader", "wrong")), 401)
        self.assertEqual(self.status(user=("Reader", READER[1])), 401)
        for fields in ({}, {"Authorization": "Basic"}, {"Authorization": "Bearer x"},
                       {"Authorization": "Negotiate x"}, {"Authorization": "Basic !"}):
            status, header, text = self.ask(**fields)
            self.assertEqual((status, text), (401, ""), fields)
            self.assertEqual(header["WWW-Authenticate"], 'Basic realm="cimhost", charset="UTF-8"')
        with contextlib.closing(self.connection()) as connection:
            connection.putrequest("POST", "/cimom")
            for _ in range(2):
                connection.putheader("Authorization", basic(READER))
            connection.endheaders()
            self.assertEqual(connection.getresponse().status, 401)

    def test_every_verb_asks_for_them(self):
        self.make_users()
        self.serve()
        for verb in ("GET", "HEAD", "OPTIONS", "PUT", "M-POST", "X"):
            with contextlib.closing(http.client.HTTPConnection(
                    "127.0.0.1", self.served.port, PATIENCE)) as connection:
                connection.request(verb, "/")
                self.assertEqual(connection.getresponse().status, 401, verb)

    def test_without_a_file_of_users_nobody_looks_at_them_and_the_log_says_so_once(self):
        self.served = Served(BUILD)
        self.served.__enter__()
        self.addCleanup(self.end)
        for _ in range(3):
            self.assertEqual(self.status(user=("anybody", "secret-4714")), 200)
        self.assertEqual(self.status(), 200)
        log = self.end()
        self.assertEqual(log.count("sends credentials; nobody looks at them"), 1)
        self.assertNotIn("secret-4714", log)

    def test_a_hash_is_computed_once_however_many_ask_at_once(self):
        self.make_users({READER: "read"})
        self.serve()
        with concurrent.futures.ThreadPoolExecutor(8) as pool:
            asked = [pool.submit(self.status, user=READER) for _ in range(100)]
            self.assertEqual({one.result() for one in asked}, {200})
        self.assertEqual(self.end().count('user "reader" verified'), 1)

    def test_none_is_in_the_log_or_the_trace(self):
        self.make_users()
        trace = self.folder / "trace"
        self.serve("--trace-wire", trace, "--log-level", "trace")
        wrong = ("reader", "Falsch-4715")
        for user in (*USERS, wrong, ("unknown", "Falsch-4716"), ('x" r', "Falsch-4718")):
            self.ask(user=user)
        self.ask(Authorization="Bearer Falsch-4717")
        log = self.end()
        self.assertIn('127.0.0.1: user "reader" refused: wrong password', log)
        self.assertIn('127.0.0.1: user "unknown" refused: no such user', log)
        self.assertIn(r'127.0.0.1: user "x\x22 r" refused: no such user', log)
        files = sorted(trace.iterdir())
        self.assertEqual(len(files), 14)
        self.assertIn("Authorization: (not shown)", files[1].read_text())  # a request
        for text in (log, *(file.read_text() for file in files)):
            for user in (*USERS, wrong, ("unknown", "Falsch-4716")):
                self.assertNotIn(user[1], text)
                self.assertNotIn(basic(user).split()[1], text)
            self.assertNotRegex(text, r"471\d|\$y\$")


class Roles(Case):
    def test_who_may_read_only_writes_nothing_whoever_serves_it(self):
        self.make_users()
        self.serve("--writable")
        for class_name, keys in (("ORVEX_Vsan", VSAN), *PUBLISHED):
            for request in writes(class_name, keys):
                self.assertEqual(self.refusal(request, READER), (
                    2, "2: CIM_ERR_ACCESS_DENIED: User reader may read only; it takes the role write."))
        self.assertEqual(self.refusal(create("ORVEX_None", {}), UMLAUT)[0], 2)
        self.assertEqual(self.status(create(CLASS, {**VSAN, "Name": "new"}), WRITER), 200)
        self.assertIn(">new<", self.ask(user=READER)[2])

    def test_the_role_does_not_replace_the_option(self):
        self.make_users()
        self.serve()
        code, text = self.refusal(create(CLASS, VSAN), WRITER)
        self.assertEqual(code, 2)
        self.assertIn("start cimhost with --writable", text)

    def test_who_sends_no_credentials_reads_if_that_is_asked_for(self):
        self.make_users()
        self.serve("--anonymous-read", "--writable")
        self.assertEqual(self.status(), 200)
        self.assertEqual(self.refusal(create(CLASS, VSAN)), (
            2, "2: CIM_ERR_ACCESS_DENIED: Only a user with the role write may change something."))
        self.assertEqual(self.status(user=("reader", "wrong")), 401)
        self.assertEqual(self.status(Authorization="Bearer x"), 401)
        self.assertNotIn("ERROR", self.ask(create(CLASS, {**VSAN, "Name": "new"}), WRITER)[2])


class Enumerations(Case):
    def test_one_that_is_open_belongs_to_who_has_opened_it(self):
        self.make_users()
        self.serve("--anonymous-read")
        opening = call("OpenEnumerateInstancePaths", ("ClassName", of_class(CLASS)))
        context = re.search(r'"EnumerationContext"[^>]*>\s*<VALUE>(\w+)<', self.ask(opening, READER)[2])[1]
        named = value("EnumerationContext", context)
        pulling = call("PullInstancePaths", named, value("MaxObjectCount", 1))
        for other in (WRITER, UMLAUT, None):
            self.assertEqual(self.refusal(pulling, other)[0], 21)
            self.assertEqual(self.refusal(call("CloseEnumeration", named), other)[0], 21)
        self.assertEqual(len(returned(self.ask(pulling, READER)[2])), 1)


class Published(Case):
    def mechanisms(self, user=None):
        request = call("EnumerateInstances", ("ClassName", of_class("PG_CIMXMLCommunicationMechanism")))
        one, = returned(self.ask(request, user)[2])
        return [value.text for value in one.find(
            ".//PROPERTY.ARRAY[@NAME='AuthenticationMechanismsSupported']//VALUE.ARRAY")]

    def test_the_server_says_how_it_asks_who_it_is(self):
        self.make_users({READER: "read"})
        none, basic_ = "2", "3"
        self.serve()
        self.assertEqual(self.mechanisms(READER), [basic_])
        self.end()
        self.serve("--anonymous-read")
        self.assertEqual(self.mechanisms(), [none, basic_])

    def test_a_module_is_told_who_asks_and_so_is_whom_it_asks(self):
        self.make_users()
        asks = "TST_AsksWhoAsks"
        self.serve("--anonymous-read", *modules.options(
            {"TST_WhoAsks": ("Quiet", "manners", 2), asks: ("Quiet", "manners", 2)}, MODULES, self.folder, BUILD))
        names = call("EnumerateInstanceNames", ("ClassName", of_class(asks)))
        for user in (READER, WRITER, UMLAUT, None):
            found = returned(self.ask(names, user, namespace=MODULES)[2])
            self.assertEqual([one.find(".//KEYVALUE").text or "" for one in found],
                             [user[0] if user else "", "heard " + (user[0] if user else "")])


class Reloaded(Case):
    def test_at_sighup_users_come_and_go_and_change(self):
        self.make_users({READER: "read", UMLAUT: "read"})
        self.serve("--writable")
        self.assertEqual(self.status(user=READER), 200)
        self.passwd(self.users, READER[0], given="new-4718\n")
        self.passwd(self.users, UMLAUT[0], "--remove")
        self.passwd(self.users, WRITER[0], "--role=write", given=WRITER[1] + "\n")
        self.assertEqual(self.status(user=READER), 200)
        self.assertEqual(self.status(user=WRITER), 401)
        self.hang_up()
        self.assertEqual(self.status(user=READER), 401)
        self.assertEqual(self.status(user=("reader", "new-4718")), 200)
        self.assertEqual(self.status(user=WRITER), 200)
        self.assertEqual(self.status(user=UMLAUT), 401)

    def test_a_file_with_a_fault_changes_nothing(self):
        self.make_users({READER: "read"})
        self.serve()
        self.assertEqual(self.status(user=READER), 200)
        good = self.users.read_text()
        for spoil, told in ((lambda: self.users.write_text("writer:write:*\nnonsense\n"),
                             f"error: {self.users}:2: NAME:ROLE:HASH is expected; "
                             "the users stay as they were"),
                            (lambda: self.users.chmod(0o644), "others may read or write it"),
                            (self.users.unlink, "cannot be opened: No such file")):
            self.users.write_text(good)
            self.users.chmod(0o600)
            spoil()
            self.hang_up()
            self.assertIn(told, self.served.logged())
            self.assertEqual(self.status(user=READER), 200)

    def test_at_the_start_it_is_exit_code_1_and_none_is_warned_of(self):
        def start(*options):
            return subprocess.run([BUILD / "bin/cimhost", "--users", self.users, "--check", *options],
                                  capture_output=True, text=True, timeout=PATIENCE, check=False)
        self.assertEqual(start().returncode, 1)
        self.users.write_text("reader:read:geheim\n")
        self.users.chmod(0o600)
        done = start()
        self.assertEqual(done.returncode, 1)
        self.assertIn(f"{self.users}:1: not a hash", done.stderr)
        self.assertNotIn("geheim", done.stderr)
        self.users.write_text("# nobody\n")
        self.assertIn(f"warning: {self.users}: there are no users; cimhost passwd adds one",
                      start().stderr)


class Https(Case):
    """With certificates that the clients have signed themselves."""

    def make_certificate(self, name):
        file = self.folder / f"{len(list(self.folder.iterdir()))}.pem"
        subprocess.run(["openssl", "req", "-x509", "-newkey", "ec", "-pkeyopt",
                        "ec_paramgen_curve:P-256", "-nodes", "-utf8", "-subj", f"/O=test/CN={name}", "-days",
                        "1", "-keyout", file, "-out", f"{file}.certificate"],
                       check=True, capture_output=True, timeout=PATIENCE)
        file.write_text(file.read_text() + pathlib.Path(f"{file}.certificate").read_text())
        return file

    def connection(self, source=None):
        context = ssl.create_default_context(cafile=self.served.certificate)
        if self.shown:
            context.load_cert_chain(self.shown)
        return http.client.HTTPSConnection(*self.served.secure_address.split(":"), timeout=PATIENCE,
                                           context=context)

    def test_a_certificate_is_as_good_as_a_password_if_its_name_is_a_users(self):
        self.make_users({READER: "read", UMLAUT: "read"})
        self.passwd(self.users, "machine", "--role=write", "--no-password")
        certificates = {name: self.make_certificate(name)
                        for name in ("machine", UMLAUT[0], "stranger", "Machine")}
        roots = self.folder / "roots"
        roots.write_text("".join(file.read_text() for file in certificates.values()))
        self.serve("--writable", "--client-ca", roots, https=True)
        self.shown = None
        self.assertEqual(self.status(), 401)
        self.assertEqual(self.status(user=READER), 200)
        self.assertEqual(self.status(user=("machine", "*")), 401)
        self.shown = certificates["machine"]
        self.assertEqual(self.status(), 200)
        self.assertNotIn("ERROR", self.ask(create(CLASS, {**VSAN, "Name": "new"}))[2])
        self.assertNotIn("ERROR", self.ask(create(CLASS, {**VSAN, "Name": "newer"}), READER)[2])
        self.shown = certificates[UMLAUT[0]]
        self.assertEqual(self.refusal(create(CLASS, VSAN)), (
            2, "2: CIM_ERR_ACCESS_DENIED: User jörg b may read only; it takes the role write."))
        for name in ("stranger", "Machine"):
            self.shown = certificates[name]
            self.assertEqual(self.status(), 403)
            self.assertEqual(self.status(user=READER), 403)
        log = self.end()
        self.assertIn('127.0.0.1: certificate of "stranger" refused: no such user', log)


class Attacked(Case):
    def test_who_fails_has_to_wait_and_is_told_how_long(self):
        self.make_users()
        self.serve()
        for user in (("reader", "wrong"), ("unknown", "wrong")):
            for n in range(3):
                self.assertEqual(self.status(user=user, source=f"127.0.1.{n + 1}"), 401)
            status, header, _ = self.ask(user=user, source="127.0.1.5")
            self.assertEqual((status, header["Retry-After"]), (503, "1"))
            time.sleep(1.1)
            self.assertEqual(self.status(user=user, source="127.0.1.6"), 401)
        # By address: as whoever.
        for n in range(3):
            self.assertEqual(self.status(user=(f"user{n}", "x"), source="127.0.2.1"), 401)
        self.assertEqual(self.status(user=WRITER, source="127.0.2.1"), 503)
        self.assertEqual(self.status(user=WRITER, source="127.0.2.2"), 200)

    def test_who_is_remembered_is_answered_meanwhile(self):
        self.make_users({READER: "read"})
        self.serve()
        self.assertEqual(self.status(user=READER), 200)

        def attack(n):
            user = ("reader" if n % 2 else f"user{n}", f"wrong{n}")
            return self.status(user=user, source=f"127.0.3.{n % 4 + 1}" if n % 3 else None)

        with concurrent.futures.ThreadPoolExecutor(8) as pool:
            attacks = [pool.submit(attack, n) for n in range(400)]
            answers = [self.status(user=READER) for _ in range(100)]
        self.assertEqual(set(answers), {200})
        self.assertEqual({one.result() for one in attacks}, {401, 503})
        log = self.end()
        self.assertEqual(log.count("verified"), 1)
        self.assertRegex(log, r"warning: \([1-9]\d* more lines of this kind: users\)")

    def test_too_many_passwords_at_once_are_turned_away(self):
        slow = hashes.slow("x", 100_000)
        self.users.write_text("".join(f"user{n}:read:{slow}\n" for n in range(120)))
        self.users.chmod(0o600)
        self.serve()
        self.assertEqual(self.status(user=("user0", "x")), 200)
        with concurrent.futures.ThreadPoolExecutor(119) as pool:
            asked = [pool.submit(self.ask, user=(f"user{n}", "x")) for n in range(1, 120)]
            concurrent.futures.wait(asked, return_when=concurrent.futures.FIRST_COMPLETED)
            self.assertEqual(self.status(user=("user0", "x")), 200)
            replies = [one.result() for one in asked]
        away = [header["Retry-After"] for status, header, _ in replies if status == 503]
        self.assertEqual(set(away), {"1"})
        self.assertGreaterEqual(sum(status == 200 for status, _, _ in replies), 65)
        self.assertEqual(self.status(user=("user119", "x")), 200)
        self.assertIn("turned away: too many passwords wait to be verified", self.end())


class Clients(Case):
    def setUp(self):
        super().setUp()
        self.make_users()
        self.serve()

    def run_client(self, *arguments):
        return subprocess.run(arguments, capture_output=True, text=True, timeout=PATIENCE, check=False,
                              env={**os.environ, "LC_ALL": "C.UTF-8"})

    def test_wbemcli_takes_them_in_its_url(self):
        def ask(user):
            return self.run_client("wbemcli", "ein",
                                   f"http://{user}@{self.served.address}/{NAMESPACE}:{CLASS}")
        self.assertEqual(len(ask("writer:Schreib-4712").stdout.splitlines()), 2)
        self.assertIn("Invalid username/password", ask("writer:wrong").stderr)

    def test_curl_takes_them_after_it_was_asked_for_them(self):
        body = self.folder / "body"
        body.write_text(document(NAMESPACE, *NAMES))
        for extra in ([], ["--anyauth"]):
            done = self.run_client(
                "curl", "-s", *extra, "-u", ":".join(READER), "-H", "Content-Type: application/xml",
                "-H", "CIMOperation: MethodCall", "-H", "CIMMethod: EnumerateInstanceNames", "-H",
                f"CIMObject: {NAMESPACE}", "--data-binary", f"@{body}",
                f"http://{self.served.address}/cimom")
            self.assertEqual(len(returned(done.stdout)), 2)

    def test_the_walk_takes_them(self):
        for (name, password), code in ((READER, 0), (("reader", "wrong"), 3)):
            secret = self.folder / "password"
            secret.write_text(password + "\n")
            done = self.run_client(sys.executable, SOURCE / "walk/serverprofile-walk", "--user", name,
                                   "--password-file", secret, f"http://{self.served.address}")
            self.assertEqual(done.returncode, code, done.stdout + done.stderr)

    @unittest.skipUnless(pywbem, "pywbem is not installed")
    def test_pywbem_takes_them_in_any_language(self):
        def connection(user):
            return pywbem.WBEMConnection(f"http://{self.served.address}", user, NAMESPACE)
        for user in USERS:
            self.assertEqual(len(connection(user).EnumerateInstanceNames(CLASS)), 2)
        for user in (("reader", "wrong"), None):
            with self.assertRaises(pywbem.AuthError):
                connection(user).EnumerateInstanceNames(CLASS)


class Command(Case):
    def test_it_says_what_it_cannot_do(self):
        self.assertIn("a line with the password is expected", self.passwd(self.users, "a", code=1))
        self.assertIn("an empty password", self.passwd(self.users, "a", given="\n", code=1))
        self.assertIn("a name has no colon", self.passwd(self.users, "a:b", given="x\n", code=1))
        self.assertFalse(self.users.exists())
        self.assertIn("there is no user a", self.passwd(self.users, "a", "--remove", code=1))
        self.assertIn("--role", self.passwd(self.users, "a", "--role=all", code=2))
        self.passwd(self.users, "a", "--no-password")
        self.assertEqual(self.users.read_text(), "a:read:*\n")

    def typed(self, *lines):
        """Exit code and what stands on the terminal on which these are typed."""
        pid, terminal = pty.fork()
        if pid == 0:
            os.execv(BUILD / "bin/cimhost", ["cimhost", "passwd", str(self.users), "typist"])
        shown = b""
        with contextlib.suppress(OSError):
            for line in (*lines, None):
                while not shown.endswith(b": ") or line is None:
                    shown += os.read(terminal, 1000)
                while termios.tcgetattr(terminal)[3] & termios.ECHO:
                    time.sleep(0.01)  # what is typed before it is shown
                os.write(terminal, line.encode() + b"\n")
                shown += b"|"
        os.close(terminal)
        return os.waitstatus_to_exitcode(os.waitpid(pid, 0)[1]), shown.decode()

    def test_on_a_terminal_it_asks_twice_and_shows_nothing(self):
        code, shown = self.typed("Geheim-4719", "Geheim-4719")
        self.assertEqual(code, 0, shown)
        self.assertEqual(shown.count("Password of typist: "), 2)
        self.assertNotIn("4719", shown)
        self.assertRegex(self.users.read_text(), r"^typist:read:\$y\$")
        before = self.users.read_text()
        code, shown = self.typed("Geheim-4719", "Geheim-4720")
        self.assertEqual(code, 1, shown)
        self.assertIn("not typed twice in the same way", shown)
        self.assertEqual(self.users.read_text(), before)
        self.serve()
        self.assertEqual(self.status(user=("typist", "Geheim-4719")), 200)


@unittest.skipIf(os.geteuid() != 0, "only root can become another user")
class Unprivileged(Case):
    def test_it_becomes_another_user_and_reads_the_users_again_as_that(self):
        self.make_users()
        self.folder.chmod(0o755)
        served = Served(BUILD, ["--users", self.users, "--user", "nobody:nogroup"])
        place = tempfile.mkdtemp()
        os.chmod(place, 0o777)
        old, tempfile.tempdir = tempfile.tempdir, place
        self.addCleanup(subprocess.run, ["rm", "-rf", place], check=True)
        try:
            make = tempfile.TemporaryDirectory
            tempfile.TemporaryDirectory = lambda: self.open_to_all(make())
            served.__enter__()
        finally:
            tempfile.tempdir, tempfile.TemporaryDirectory = old, make
        self.served = served
        self.addCleanup(self.end)
        status = pathlib.Path(f"/proc/{served.pid}/status").read_text()
        self.assertRegex(status, r"Uid:\t(\d*[1-9]\d*)\t\1\t\1\t\1\nGid:\t(\d*[1-9]\d*)\t\2\t\2\t\2\n")
        self.assertEqual(self.status(user=READER), 200)
        self.hang_up()
        self.assertIn("cannot be opened: Permission denied; the users stay as they were", self.served.logged())
        self.users.chmod(0o640)
        os.chown(self.users, 0, int(re.search(r"Gid:\t(\d+)", status)[1]))
        self.hang_up()
        self.assertIn("read again", self.served.logged())
        self.assertEqual(self.status(user=READER), 200)

    @staticmethod
    def open_to_all(directory):
        os.chmod(directory.name, 0o777)
        return directory


if __name__ == "__main__":
    BUILD = pathlib.Path(sys.argv.pop(1)).resolve()
    unittest.main()
