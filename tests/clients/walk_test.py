#!/usr/bin/env python3
"""The walk of a management tool (scripts/walk.py) ends with 0 when every answer is right, and names
every answer that is wrong: with the sample, with a changed one, with none, and with each single
answer spoilt.

usage: walk_test.py BUILD-DIRECTORY [unittest arguments]
"""

import pathlib
import subprocess
import sys
import tempfile
import unittest

from served import NAMESPACES, SOURCE, Served

sys.path.insert(0, str(SOURCE / "scripts"))
import walk  # noqa: E402  pylint: disable=wrong-import-position
import wbem  # noqa: E402  pylint: disable=wrong-import-position

BUILD = None

# Printed for people only: it names the version of the server.
NOT_CHECKED = ("Description",)


def walked(address, *options):
    """Exit code and output of the program."""
    answer = subprocess.run([sys.executable, "-B", SOURCE / "scripts" / "walk.py", address, *options],
                            capture_output=True, text=True, timeout=600, check=False)
    return answer.returncode, answer.stdout + answer.stderr


def wrong_lines(output):
    return [line for line in output.splitlines() if line.startswith("WRONG: ")]


class Source:
    """A source directory whose sample is what `change` makes of the real one."""

    def __init__(self, change):
        self.change = change

    def __enter__(self):
        self._directory = tempfile.TemporaryDirectory()
        place = pathlib.Path(self._directory.name)
        (place / "schema").symlink_to(SOURCE / "schema")
        (place / "samples").mkdir()
        sample = (SOURCE / "samples" / "sample_switch.mof").read_text(encoding="utf-8")
        changed = self.change(sample)
        assert changed != sample
        (place / "samples" / "sample_switch.mof").write_text(changed, encoding="utf-8")
        return place

    def __exit__(self, kind, value, traceback):
        self._directory.cleanup()


class Program(unittest.TestCase):
    maxDiff = None

    def test_right_answers_end_with_0_and_are_shown_with_their_commands(self):
        with Served(BUILD) as served, tempfile.TemporaryDirectory() as place:
            base = pathlib.Path(place) / "picture"
            code, output = walked(served.address, "--draw", str(base))
            self.assertEqual((code, wrong_lines(output)), (0, []), output)
            for text in ("Fabric", "Switch", "Server", "Zone Control", "Blades",
                         "Enhanced Zoning and Enhanced Zoning Control"):
                self.assertIn(f'-RegisteredName="{text}"', output)
            self.assertIn('-Name="Kelmar"', output)
            self.assertIn(f"$ wbemcli ei -nl 'http://{served.address}/root/cimv2:"
                          "CIM_RegisteredProfile'", output)
            self.assertTrue(base.with_suffix(".dot").read_text().startswith("digraph"))
            self.assertIn("</svg>", base.with_suffix(".svg").read_text())

    def test_a_printed_command_can_be_typed_again(self):
        with Served(BUILD) as served:
            _, output = walked(served.address)
            commands = [line[2:] for line in output.splitlines() if line.startswith("$ ")]
            self.assertGreater(len(commands), 10)
            for command in commands:
                again = subprocess.run(["sh", "-c", command], capture_output=True, text=True,
                                       timeout=120, check=False)
                self.assertEqual((again.returncode, again.stderr), (0, ""), command)
                shown = output.split(f"$ {command}\n", 1)[1].splitlines()
                lines = [line for line in again.stdout.splitlines() if line] or ["(nothing)"]
                self.assertEqual([f"  {line}".rstrip() for line in lines], shown[:len(lines)])

    def test_a_server_without_the_sample_is_named_wrong_in_both_namespaces(self):
        with Source(lambda sample: "// nothing\n") as source, \
                Served(BUILD, source=source) as served:
            code, output = walked(served.address)
            self.assertEqual(code, 1, output)
            for namespace in NAMESPACES:
                for name in ('ORVEX_Vsan "20010005AD000001"',
                             'ORVEX_ComputerSystem "10000005AD000001"'):
                    self.assertTrue(any(f"/{namespace}:" in line and f"{name} is missing" in line
                                        for line in wrong_lines(output)), (namespace, name, output))

    def test_a_changed_sample_is_named_with_what_came_and_what_did_not(self):
        with Source(lambda sample: sample.replace("20020005AD000001", "20030005AD000001")) \
                as source, Served(BUILD, source=source) as served:
            code, output = walked(served.address)
            self.assertEqual(code, 1, output)
            # Associators and reference names in two namespaces.
            for end in ('"20020005AD000001" is missing', '"20030005AD000001" is too much'):
                self.assertEqual(sum(line.endswith(end) for line in wrong_lines(output)), 4, output)

    def test_a_changed_property_is_named(self):
        with Source(lambda sample: sample.replace('"VSAN 2"', '"VSAN 3"')) as source, \
                Served(BUILD, source=source) as served:
            code, output = walked(served.address)
            self.assertEqual(code, 1, output)
            self.assertEqual(len(wrong_lines(output)), 2, output)
            self.assertIn('ElementName of ORVEX_Vsan "20020005AD000001" is "VSAN 3", not "VSAN 2"',
                          output)

    def test_a_server_that_is_not_there_is_named(self):
        with Served(BUILD) as served:
            gone = served.address
        code, output = walked(gone)
        self.assertEqual(code, 1)
        self.assertIn("no answer", wrong_lines(output)[0])


class Answers(unittest.TestCase):
    """Spoils one answer after the other of a walk that was recorded."""

    @classmethod
    def setUpClass(cls):
        cls.answers = {}

        def record(arguments):
            cls.answers[tuple(arguments)] = lines = wbem.run(arguments)
            return lines

        with Served(BUILD) as served:
            cls.address = served.address
            walk.walk(served.address, run=record, say=lambda _: None)

    def wrong(self, command, lines):
        """How many answers the walk finds wrong with those lines as the answer of `command`."""
        def run(arguments):
            if tuple(arguments) == command:
                if lines is None:
                    raise wbem.Refused("spoilt")
                return lines
            if tuple(arguments) not in self.answers:
                raise wbem.Refused("not recorded")
            return self.answers[tuple(arguments)]
        return sum(each.wrong for each in walk.walk(self.address, run=run, say=lambda _: None))

    def must_be_wrong(self, command, lines):
        with self.subTest(command=command, lines=lines):
            self.assertGreater(self.wrong(command, lines), 0)

    def test_the_recorded_answers_are_right(self):
        self.assertGreater(len(self.answers), 100)
        self.assertEqual(self.wrong((), []), 0)

    def test_no_answer_is_wrong(self):
        for command in self.answers:
            self.must_be_wrong(command, None)

    def test_a_missing_object_is_wrong(self):
        for command, lines in self.answers.items():
            starts = [n for n, line in enumerate(lines) if line and not line.startswith("-")]
            for start, end in zip(starts, starts[1:] + [len(lines)]):
                self.must_be_wrong(command, lines[:start] + lines[end:])

    def test_an_object_too_much_is_wrong(self):
        for command, lines in self.answers.items():
            more = [line for line in lines if line and not line.startswith("-")][:1] or \
                ['vm/root/cimv2:ORVEX_Vsan.Name="x"']
            self.must_be_wrong(command, more + lines)

    def test_another_object_is_wrong(self):
        for command, lines in self.answers.items():
            for number, line in enumerate(lines):
                if line and not line.startswith("-"):
                    other = line.replace("ORVEX_", "OTHER_").replace("PG_", "OTHER_") \
                        .replace("CIM_Registered", "OTHER_Registered")
                    self.must_be_wrong(command, lines[:number] + [other] + lines[number + 1:])

    def test_another_value_of_a_property_or_none_is_wrong(self):
        for command, lines in self.answers.items():
            for number, line in enumerate(lines):
                name = line[1:].partition("=")[0]
                if line.startswith("-") and name not in NOT_CHECKED:
                    for other in ([f'-{name}="other"'], []):
                        self.must_be_wrong(command, lines[:number] + other + lines[number + 1:])


if __name__ == "__main__":
    BUILD = sys.argv.pop(1)
    unittest.main()
