#!/usr/bin/env python3
"""What is run and loaded of an optimised build is hardened, whatever of it can be seen in the files.

usage: hardening_test.py BUILD-DIRECTORY PROGRAM-OR-LIBRARY...
"""

import json
import pathlib
import re
import subprocess
import sys
import unittest

BUILD = pathlib.Path(sys.argv[1])
FILES = [pathlib.Path(name) for name in sys.argv[2:]]
SOURCE = pathlib.Path(__file__).resolve().parent.parent.parent
FLAGS = ("-fstack-protector-strong", "-D_FORTIFY_SOURCE=2", "-D_GLIBCXX_ASSERTIONS")
X86_FLAGS = ("-fstack-clash-protection", "-fcf-protection")


def output(*command):
    return subprocess.run(command, check=True, capture_output=True, text=True).stdout


class Hardening(unittest.TestCase):
    def test_files_say_so(self):
        self.assertGreaterEqual(len(FILES), 4)
        for file in FILES:
            with self.subTest(file=file.name):
                told = output("readelf", "--wide", "--headers", "--dynamic", "--dyn-syms", file)
                wanted = ("Type: +DYN", "GNU_RELRO", "FLAGS.*NOW", r"GNU_STACK .* RW ",
                          "__stack_chk_fail")
                self.assertEqual([one for one in wanted if not re.search(one, told)], [])

    def test_programs_are_position_independent(self):
        for file in FILES:
            if file.parent.name == "bin":
                with self.subTest(file=file.name):
                    self.assertIn("PIE", output("readelf", "--wide", "--dynamic", file))

    def test_each_source_is_compiled_so(self):
        wanted = list(FLAGS)
        if "Advanced Micro Devices X86-64" in output("readelf", "--headers", FILES[0]):
            wanted += X86_FLAGS
        commands = json.loads((BUILD / "compile_commands.json").read_text(encoding="utf-8"))
        seen = 0
        for command in commands:
            source = pathlib.Path(command["file"])
            if SOURCE / "tests" in source.parents:
                continue
            seen += 1
            with self.subTest(source=str(source)):
                self.assertEqual([flag for flag in wanted if flag not in command["command"]], [])
        self.assertGreater(seen, 100)


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
