#!/usr/bin/env python3
"""A program's manual page and its --help say the same.

usage: manual_test.py PROGRAM PAGE [unittest arguments]
"""

import re
import subprocess
import sys
import unittest

PROGRAM, PAGE = sys.argv[1:3]


def printed(*command):
    return subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True,
                          check=False).stdout


class Manual(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.help = printed(PROGRAM, "--help")
        cls.commands = re.findall(r"^  ([\w-]+) {2,}", cls.help.partition("Subcommands:\n")[2].partition(
            "\n\n")[0], re.M)
        with open(PAGE) as page:
            cls.page = page.read()

    def test_mandoc_finds_nothing_wrong(self):
        self.assertEqual(printed("mandoc", "-T", "lint", "-W", "warning", PAGE), "")

    def test_every_option_is_in_both(self):
        described = set()
        for item in re.findall(r"^\.It (Fl .*)$", self.page, re.M):
            described.update("-" + option for option in re.findall(r"(?:Fl|,) (-?[a-z-]+)", item))
        offered = set()
        every_help = self.help + "".join(printed(PROGRAM, command, "--help")
                                         for command in self.commands)
        for first_column in re.findall(r"^  (-[^ ]+)", every_help, re.M):
            offered.update(first_column.split(","))
        self.assertGreater(len(offered), 2)
        self.assertEqual(described, offered)

    def test_every_described_option_is_in_the_synopsis(self):
        synopsis = self.page[self.page.index(".Sh SYNOPSIS"):self.page.index(".Sh DESCRIPTION")]
        for option in re.findall(r"^\.It Fl (-?[a-z-]+)", self.page, re.M):
            with self.subTest(option):
                self.assertRegex(synopsis, rf"(Fl|\|) {option}\b")

    def test_every_default_is_in_both(self):
        # What is all capitals is part of a value's name. A path depends on the installation.
        for option, default in re.findall(r"^  --([a-z-]+) [^\n=]*=(?![A-Z]+\s|/)(\S+)", self.help,
                                          re.M):
            with self.subTest(option):
                item = re.search(rf"^\.It Fl -{option} .*?(?=^\.It|^\.El)", self.page, re.M | re.S)
                self.assertRegex(item[0], rf"The default is\s+(\.\w\w )?{re.escape(default)}\s*[.:;]")

    def test_the_exit_codes_are_the_same(self):
        # The page may say more, but begins each with the same words.
        listed = re.findall(r"^  (\d)  ([^;:,\n]*)", self.help, re.M)
        self.assertTrue(listed)
        told = re.findall(r"^\.It (\d)\n([^;:,\n]*)", self.page, re.M)
        self.assertEqual([(code, words[:1].lower() + words[1:].rstrip(".")) for code, words in told],
                         listed)

    def test_every_command_is_described(self):
        for command in self.commands:
            with self.subTest(command):
                self.assertRegex(self.page, rf"(?m)^\.It Cm {command}( Oo .*| Ar .*)?$")


if __name__ == "__main__":
    unittest.main(argv=[sys.argv[0], *sys.argv[3:]])
