#!/usr/bin/env python3
"""Runs the tests of this folder with all their faults, and says how many the server survived.

usage: all.py BUILD LIBRARY MODULES MORE-MODULES

A fault is survived when the test that made it is content with what came of it and with the answers
after it. Exit code 1 if one was not.
"""

import pathlib
import re
import subprocess
import sys

HERE = pathlib.Path(__file__).resolve().parent


def run(test, arguments):
    """The output, which is shown as it comes, and the exit code."""
    lines = []
    command = [sys.executable, "-B", HERE / f"{test}_test.py", *arguments]
    with subprocess.Popen(command, stdout=subprocess.PIPE, stderr=subprocess.STDOUT,
                          text=True) as process:
        for line in process.stdout:
            print(line, end="", flush=True)
            lines.append(line)
    return "".join(lines), process.returncode


def main():
    if len(sys.argv) != 5:
        sys.exit(__doc__)
    build, library, *modules = sys.argv[1:]
    tests = {"memory": [library, "--all"], "io": [library], "clients": ["--all"],
             "modules": [*modules, "--all"]}
    kinds = []
    sums = []
    for test, arguments in tests.items():
        output, code = run(test, [build, *arguments])
        tried = re.findall(r"(?m)^test_(\w+): (\d+) faults: (.*)$", output)
        kinds += [f"{int(count):9}  {test} {name.replace('_', ' ')}: {what}"
                  for name, count, what in tried]
        failures = len(re.findall(r"(?m)^(?:FAIL|ERROR): ", output)) or abs(code)
        sums.append((len(tried), sum(int(count) for _, count, _ in tried), failures,
                     output.count("cimhost died with ")))
    print(" survived", *kinds, sep="\n")
    print(f"\n{'':8}{'tests':>7}{'survived':>10}{'failures':>10}{'deaths':>8}")
    for test, row in (*zip(tests, sums), ("all", [sum(column) for column in zip(*sums)])):
        print("{:8}{:7}{:10}{:10}{:8}".format(test, *row))
    return 1 if any(failures for _, _, failures, _ in sums) else 0


if __name__ == "__main__":
    sys.exit(main())
