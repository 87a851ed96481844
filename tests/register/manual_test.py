#!/usr/bin/env python3
"""The manual page and --help of serverprofile-register name the same options and exit codes."""

import pathlib
import re
import subprocess
import sys
import unittest

PAGE = (pathlib.Path(__file__).resolve().parent.parent.parent / "docs" / "man" /
        "serverprofile-register.8")


class Manual(unittest.TestCase):
    tool = ""

    def setUp(self):
        self.help = subprocess.run([self.tool, "--help"], check=True, capture_output=True,
                                   text=True).stdout
        self.page = PAGE.read_text(encoding="utf-8")

    def test_each_option_of_one_is_in_the_other(self):
        in_help = set(re.findall(r"^ +(?:-\w,)?(--[\w-]+)", self.help, re.M))
        described = self.page.split(".Sh DESCRIPTION")[1]
        in_page = {"-" + name for name in re.findall(r"^\.It Fl (-[\w-]+)", described, re.M)}
        self.assertIn("--dry-run", in_help)
        self.assertEqual(in_help, in_page)

    def test_the_synopsis_names_each_option(self):
        synopsis = self.page.split(".Sh SYNOPSIS")[1].split(".Sh")[0]
        for option in re.findall(r"^ +(?:-\w,)?-(-[\w-]+)", self.help, re.M):
            self.assertRegex(synopsis, rf"{option}\b")

    def test_each_exit_code_of_one_is_in_the_other(self):
        in_help = re.findall(r"^  (\d)  ", self.help, re.M)
        codes = self.page.split(".Sh EXIT STATUS")[1].split(".Sh")[0]
        self.assertEqual(in_help, re.findall(r"^\.It (\d)$", codes, re.M))
        self.assertEqual(in_help, list("01234"))

    def test_each_command_is_described(self):
        listed = self.help.split("Subcommands:\n")[1].split("\n\n")[0]
        commands = re.findall(r"^  (\w+) {2,}", listed, re.M)
        self.assertEqual(commands, ["install", "remove", "status"])
        for command in commands:
            self.assertRegex(self.page, rf"(?m)^\.It Cm {command}$")


if __name__ == "__main__":
    Manual.tool = sys.argv.pop()
    unittest.main()
