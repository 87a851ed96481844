#!/usr/bin/env python3
"""serverprofile-walk as people run it: what it prints and writes, and its exit codes, with the served
sample and with servers that are changed, or not there.

usage: program_test.py BUILD-DIRECTORY [unittest arguments]
"""

import html.parser
import json
import os
import pathlib
import subprocess
import sys
import tempfile
import unittest

import rooms
from peer import Peer, message, reply
from served import Served

from serverprofile_walk import command, connection, graph, page, text
from serverprofile_walk.client import Client, Question
from serverprofile_walk.objects import Instance, Key, Path
from serverprofile_walk.walk import Walk

PROGRAM = rooms.SOURCE / "walk" / "serverprofile-walk"
BUILD = SERVED = None
NAMESPACES = ["interop", "root/cimv2", "root/PG_InterOp"]


def run(*arguments, **more):
    return subprocess.run([sys.executable, PROGRAM, "--timeout", "300", *map(str, arguments)],
                          capture_output=True, text=True, check=False, **more)


def url():
    return f"http://{SERVED.address}"


class Source:
    """A source directory whose sample is what `change` makes of the real one."""

    def __init__(self, change):
        self.change = change

    def __enter__(self):
        self._directory = tempfile.TemporaryDirectory()
        place = pathlib.Path(self._directory.name)
        (place / "schema").symlink_to(rooms.SOURCE / "schema")
        (place / "samples").mkdir()
        (place / "samples" / "switch.conf").symlink_to(rooms.SOURCE / "samples" / "switch.conf")
        sample = (rooms.SOURCE / "samples" / "sample_switch.mof").read_text(encoding="utf-8")
        changed = self.change(sample)
        assert changed != sample
        (place / "samples" / "sample_switch.mof").write_text(changed, encoding="utf-8")
        return place

    def __exit__(self, kind, value, traceback):
        self._directory.cleanup()


class Output(unittest.TestCase):
    maxDiff = None

    def test_a_whole_walk_ends_with_0_and_says_so_in_its_last_line(self):
        answer = run("--all", url())
        self.assertEqual((answer.returncode, answer.stderr), (0, ""), answer.stdout)
        lines = answer.stdout.splitlines()
        self.assertRegex(lines[-1], r"^The walk is whole in interop, root/cimv2, root/PG_InterOp: "
                                    r"\d{3,} questions, 0 wrong$")
        for line in ("== interop", "ok     each registered profile: Fabric; Switch; Server",
                     "ok     Fabric along CIM_SubProfileRequiresProfile: Zone Control; "
                     "Enhanced Zoning and Enhanced Zoning Control",
                     'ok     Switch along CIM_ElementConformsToProfile: '
                     'ORVEX_PhysicalComputerSystem "localswitch"'):
            self.assertIn(line, lines)
        self.assertFalse([line for line in lines if line.startswith("WRONG")])

    def test_without_options_the_interop_namespace_and_root_cimv2_are_walked(self):
        answer = run(url())
        self.assertIn("whole in interop, root/cimv2:", answer.stdout)
        self.assertIn("Not walked: root/PG_InterOp (", answer.stdout)

    def test_namespaces_are_walked_as_they_are_named(self):
        answer = run("--namespace", "root/PG_InterOp", "--namespace", "interop", url())
        self.assertIn("whole in root/PG_InterOp, interop:", answer.stdout)

    def test_verbose_shows_each_question_and_what_came(self):
        answer = run("--verbose", "--namespace", "interop", url())
        self.assertIn(f"       $ wbemcli ein '{url()}/interop:ORVEX_SoftwareIdentity'\n"
                      '         came:     ORVEX_SoftwareIdentity.InstanceID="OrvexSI1"\n',
                      answer.stdout)
        self.assertIn("(on purpose: Following CIM_ElementConformsToProfile", answer.stdout)

    def test_what_the_switch_says_itself_is_not_wrong(self):
        change = {"20020005AD000001": "20030005AD000001", '"VSAN 2"': '"VSAN <3>"'}

        def changed(sample):
            for old, new in change.items():
                sample = sample.replace(old, new)
            return sample
        with Source(changed) as source, Served(BUILD, source=source) as served:
            answer = run(f"http://{served.address}")
            self.assertEqual(answer.returncode, 0, answer.stdout)
            self.assertIn('ORVEX_Vsan "20030005AD000001"', answer.stdout)

    def test_a_server_without_the_sample_is_wrong_with_what_came_and_what_did_not(self):
        with Source(lambda sample: "// nothing\n") as source, Served(BUILD, source=source) as served:
            answer = run(f"http://{served.address}")
            self.assertEqual(answer.returncode, 1, answer.stdout)
            for namespace in NAMESPACES[:2]:
                self.assertIn(
                    f"       $ wbemcli ein 'http://{served.address}/{namespace}:ORVEX_Vsan'\n"
                    "         came:     nothing\n         expected: nothing\n"
                    f"         WRONG:    no fabric in {namespace}: a client cannot follow the profile "
                    "to one\n", answer.stdout)
            self.assertRegex(answer.stdout.splitlines()[-1],
                             r"^The walk is not whole in .*: \d+ questions, [1-9]\d* wrong$")

    def test_a_server_that_is_not_there_is_3_and_named(self):
        with Peer() as peer:
            gone = peer.url
        answer = run(gone)
        self.assertEqual((answer.returncode, answer.stdout), (3, ""))
        self.assertIn(f"serverprofile-walk: {gone}: no connection: Connection refused", answer.stderr)
        answer = run("--json", gone)
        self.assertEqual(answer.returncode, 3)
        self.assertIn("no connection", json.loads(answer.stdout)["error"])

    def test_wrong_command_lines_are_2_and_named(self):
        for arguments, words in (
                ((), "URL"), (("--no-such", "http://a"), "--no-such"),
                (("a:5988",), "http://HOST:PORT"),
                (("http://eve:secret@a",), "--user and --password-file"),
                (("--namespace", "/interop", "http://a"), "slash"),
                (("--namespace", "interop", "--all", "http://a"), "not both"),
                (("--timeout", "0", "http://a"), "--timeout 0"),
                (("--timeout", "x", "http://a"), "--timeout"),
                (("--user", "eve", "http://a"), "where is the password"),
                (("--password-file", "x", "http://a"), "without --user"),
                (("--user", "eve", "--password-file", "/no/such", "http://a"), "--password-file:"),
                (("--ca-file", "/no/such", "https://a"), "/no/such cannot be read")):
            with self.subTest(arguments):
                answer = run(*arguments)
                self.assertEqual((answer.returncode, answer.stdout), (2, ""))
                self.assertIn(words, answer.stderr)
                self.assertNotIn("secret", answer.stderr)

    def test_whoever_stops_reading_is_no_error(self):
        with subprocess.Popen([sys.executable, PROGRAM, "--verbose", url()], stdout=subprocess.PIPE,
                              stderr=subprocess.PIPE) as program:
            program.stdout.readline()
            program.stdout.close()
            self.assertEqual(program.stderr.read(), b"")
            self.assertEqual(program.wait(), 141)

    def test_a_password_is_in_no_output(self):
        with tempfile.TemporaryDirectory() as place:
            file = pathlib.Path(place) / "the file"
            file.write_text("se'cret\n", encoding="utf-8")
            for more, environment in ((("--password-file", str(file)), {}),
                                      ((), {command.PASSWORD_VARIABLE: "se'cret"})):
                page_file = pathlib.Path(place) / "page.html"
                answer = run("--user", "eve", *more, "--verbose", "--namespace", "interop",
                             "--html", page_file, url(), env={**os.environ, **environment})
                self.assertEqual(answer.returncode, 0, answer.stdout + answer.stderr)
                written = answer.stdout + page_file.read_text(encoding="utf-8")
                self.assertNotIn("cret", written)
                # The command finds it again by itself.
                line = next(line for line in answer.stdout.splitlines() if " $ wbemcli ein " in line)
                again = subprocess.run(["sh", "-c", line.partition("$ ")[2]], capture_output=True,
                                       text=True, check=False, env={**os.environ, **environment})
                self.assertEqual((again.returncode, again.stderr), (0, ""), line)


class Json(unittest.TestCase):
    def test_has_the_members_that_the_manual_page_names(self):
        answer = run("--json", "--namespace", "interop", url())
        self.assertEqual((answer.returncode, answer.stderr), (0, ""))
        found = json.loads(answer.stdout)
        number = found["questions"]
        self.assertEqual(found, {
            "format": 1, "program": found["program"], "url": url(), "whole": True, "error": None,
            "questions": number, "wrong": 0, "interop": None, "left_out": [], "notes": [], "wrongs": [],
            "namespaces": [{"name": "interop", "whole": True, "questions": number, "wrong": 0,
                            "wrongs": []}]})
        manual = (rooms.SOURCE / "docs/man/serverprofile-walk.1").read_text(encoding="utf-8")
        described = manual[manual.index(".Sh JSON"):manual.index(".Sh ENVIRONMENT")]
        for name in [*found, *found["namespaces"][0]]:
            self.assertRegex(described, rf"Li (.* , )?{name}\b")

    def test_names_each_wrong_answer_as_the_manual_page_says(self):
        with Source(lambda sample: "// nothing\n") as source, Served(BUILD, source=source) as served:
            answer = run("--json", "--namespace", "interop", f"http://{served.address}")
        self.assertEqual(answer.returncode, 1)
        found = json.loads(answer.stdout)
        self.assertEqual(found["wrong"], len(found["wrongs"]))
        self.assertEqual(found["namespaces"][0]["wrongs"], [each["number"] for each in found["wrongs"]])
        self.assertEqual(found["wrongs"][0], {
            "number": found["wrongs"][0]["number"], "operation": "EnumerateInstanceNames",
            "namespace": "interop", "target": "ORVEX_Vsan", "association": None,
            "command": f"wbemcli ein 'http://{served.address}/interop:ORVEX_Vsan'", "status": None,
            "came": [], "expected": [], "problems": [
                {"text": "no fabric in interop: a client cannot follow the profile to one",
                 "advice": None}]})


class Commands(unittest.TestCase):
    def test_each_can_be_typed_again_and_answers_the_same(self):
        with Client(connection.server(url(), patience=300)) as client:
            walk = Walk(client.ask)
            walk.run(["interop"])
        self.assertTrue(walk.whole)
        # One of each kind.
        for asked in {(asked.question.operation, asked.question.target.class_name,
                       asked.question.association): asked for asked in walk.asked}.values():
            typed = command.command(client.at, asked.question)
            again = subprocess.run(["sh", "-c", typed], capture_output=True, text=True, check=False)
            self.assertEqual((again.returncode, again.stderr), (0, ""), typed)
            if asked.question.operation == "GetClass":
                continue
            # References are printed with a colon less.
            shown = [line for line in again.stdout.splitlines() if line and not line.startswith("-")]
            answer = asked.answer if isinstance(asked.answer, list) else [asked.answer]
            self.assertEqual(len(shown), len(answer), typed)
            for line, each in zip(shown, answer):
                path = each.path if isinstance(each, Instance) else each
                if isinstance(path, Path) and \
                        not any(isinstance(key.value, Path) for key in path.keys):
                    self.assertTrue(line.endswith(f":{path.local}"), (typed, line))

    def test_name_what_a_shell_and_wbemcli_would_read_otherwise(self):
        value = "a'b\"c$d`e&f<g>,h=i.j:k/\\l m;"
        path = Path("CIM_X", (Key("A", value), Key("N", "5", "numeric"), Key("B", "TRUE", "boolean")))
        at = connection.server(url())
        for target in (path, Path("CIM_T", (Key("R", path._replace(namespace="root/x"), "reference"),
                                            Key("S", path, "reference")))):
            typed = command.command(at, Question("GetInstance", "interop", target))
            with Peer([reply(message('<ERROR CODE="6"/>', "GetInstance"))]) as peer:
                subprocess.run(["sh", "-c", typed.replace(url(), peer.url)], capture_output=True,
                               check=False)
            sent = peer.requests[0].decode().replace("\n", "")
            escaped = value.replace("&", "&amp;").replace('"', "&quot;").replace("<", "&lt;").replace(
                ">", "&gt;")
            self.assertEqual(sent.count(f'"string">{escaped}</KEYVALUE>'),
                             1 + (target is not path), sent)
            self.assertIn('<KEYVALUE VALUETYPE="numeric">5</KEYVALUE>', sent)


HOSTILE = "</style><script>alert('1')</script>\"'&amp;<img src=x onerror=y>\x1b[31m\u202e\x9b\u2028"


class Elements(html.parser.HTMLParser):
    """Collects the elements of a page with their attributes, and its texts."""

    def __init__(self, content):
        super().__init__()
        self.elements = []
        self.texts = []
        self.feed(content)
        self.close()

    def handle_starttag(self, tag, attrs):
        self.elements.append((tag, dict(attrs)))

    def handle_data(self, data):
        self.texts.append(data)


def hostile(each):
    """An answer whose values hold what would be markup, or obeyed by a terminal."""
    if isinstance(each, list):
        return [hostile(one) for one in each]
    if not isinstance(each, Instance):
        return each
    return each._replace(properties=tuple(
        one._replace(value=one.value + HOSTILE) if one.name in ("Description", "ElementName") else one
        for one in each.properties if isinstance(one.value, str)) + tuple(
            one for one in each.properties if not isinstance(one.value, str)))


class Page(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.at = connection.server(url(), patience=300)
        with Client(cls.at) as client:
            cls.walk = Walk(lambda question: hostile(client.ask(question)))
            cls.walk.run()
            cls.right = Walk(client.ask)
            cls.right.run()

    def test_needs_and_does_nothing_else(self):
        content, no_picture = page.page(self.at, self.walk)
        self.assertIsNone(no_picture)
        found = Elements(content)
        self.assertEqual({tag for tag, _ in found.elements} & {
            "script", "link", "img", "iframe", "object", "embed", "base", "form", "image", "use"},
            set())
        for tag, attributes in found.elements:
            for name, value in attributes.items():
                self.assertFalse(name.startswith("on"), (tag, name))
                self.assertNotIn(name, ("src", "xlink:href", "action", "data"))
                if name == "href":
                    self.assertTrue(value.startswith("#"), value)
                self.assertNotIn("url(", value or "")
        style = content[content.index("<style>"):content.index("</style>")]
        self.assertNotIn("url(", style)
        self.assertNotIn("@import", style)
        self.assertIn("default-src 'none'", content)

    def test_shows_what_a_server_says_as_text(self):
        content, _ = page.page(self.at, self.walk)
        self.assertNotIn("<script", content)
        self.assertNotIn("<img", content)
        for character in "\x1b\x9b\u202e\u2028":
            self.assertNotIn(character, content)
        texts = "".join(Elements(content).texts)
        self.assertIn("</style><script>alert('1')</script>", texts)
        self.assertIn("\\x1b[31m\\u202e", texts)

    def test_leads_to_every_place_that_it_names(self):
        elements = Elements(page.page(self.at, self.right)[0]).elements
        there = [attributes["id"] for _, attributes in elements if "id" in attributes]
        self.assertEqual(len(there), len(set(there)))
        for _, attributes in elements:
            if "href" in attributes:
                self.assertIn(attributes["href"][1:], there)

    def test_has_verdict_picture_objects_and_each_question_with_its_command(self):
        content, _ = page.page(self.at, self.right)
        texts = "".join(Elements(content).texts)
        self.assertIn(text.verdict(self.right), texts)
        self.assertIn("<svg", content)
        for words in ("registered profile: Fabric", "ORVEX_ObjectManagerHost", '"Kelmar"'):
            self.assertIn(words, texts)
        for asked in self.right.asked:
            self.assertIn(command.command(self.at, asked.question), texts)

    def test_is_written_whole_where_there_is_no_graphviz_and_says_so(self):
        with tempfile.TemporaryDirectory() as place:
            file = pathlib.Path(place) / "page.html"
            answer = run("--html", file, "--namespace", "interop", url(), env={"PATH": place})
            self.assertEqual(answer.returncode, 0, answer.stderr)
            self.assertIn("install Graphviz", answer.stderr)
            content = file.read_text(encoding="utf-8")
            self.assertIn("No picture: the program dot is not there: install Graphviz", content)
            self.assertNotIn("<svg", content)
            self.assertIn("</html>", content)

    def test_the_picture_is_drawn_into_files(self):
        with tempfile.TemporaryDirectory() as place:
            base = pathlib.Path(place) / "walk.of.today"
            answer = run("--draw", base, url())
            self.assertEqual((answer.returncode, answer.stderr), (0, ""))
            dot = (base.parent / "walk.of.today.dot").read_text(encoding="utf-8")
            self.assertTrue(dot.startswith("digraph"))
            self.assertIn("</svg>", (base.parent / "walk.of.today.svg").read_text(encoding="utf-8"))

    def test_a_picture_that_is_more_than_one_is_left_out(self):
        for more in ("<script/>", '<a href="x"/>', '<g onload="x"/>', '<path fill="url(x)"/>'):
            with self.assertRaises(graph.CannotDraw):
                graph.inlined('<?xml version="1.0"?><svg xmlns="http://www.w3.org/2000/svg">'
                              f"{more}</svg>")

    def test_a_file_that_cannot_be_written_is_4_and_named(self):
        for option in ("--html", "--draw"):
            answer = run(option, "/no/such/folder/x", url())
            self.assertEqual(answer.returncode, 4)
            self.assertIn(f"serverprofile-walk: {option}: ", answer.stderr)

    def test_a_terminal_is_told_nothing_by_the_server(self):
        lines = []
        writer = text.Writer(self.at, lines.append, verbose=True)
        with Client(self.at) as client:
            walk = Walk(lambda question: hostile_names(client.ask(question)), writer.report)
            walk.run(["interop"])
        writer.end(walk)
        self.assertTrue(walk.wrong)
        printed = "\n".join(lines)
        self.assertIn("\\x1b[31m", printed)
        self.assertTrue(all(each.isprintable() or each == "\n" for each in printed))
        # Every line is one of the program's own, also with a line in a value.
        self.assertFalse([line for line in printed.splitlines() if line.startswith("ok     forged")])


def hostile_names(each):
    """An answer whose fabrics are called what a terminal would obey, and would take for a line."""
    if isinstance(each, list):
        return [hostile_names(one) for one in each]
    if isinstance(each, Path) and each.class_name == "ORVEX_Vsan":
        return each._replace(keys=tuple(
            key._replace(value=key.value + "\nok     forged\x1b[31m\x9b") if key.name == "Name" else key
            for key in each.keys))
    return each


if __name__ == "__main__":
    BUILD = sys.argv.pop(1)
    with Served(BUILD) as SERVED:
        program = unittest.main(exit=False)
    sys.exit(not program.result.wasSuccessful())
