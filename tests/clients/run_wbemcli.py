#!/usr/bin/env python3
"""Asks the served sample switch with wbemcli, in each way (ways.py), and compares every word that it
prints.

A file of cases holds, for each case, the rule that it guards, the command, its exit code and its
output (standard error after standard output):

    # a rule in words
    $ gi -nl {URL}:ORVEX_SoftwareIdentity.InstanceID="OrvexSI1"
    exit 0
    ...

The command's words are separated by blanks and quoted by nothing but what wbemcli itself reads.

Placeholders: {URL} the server with the namespace, {SERVER} without; {ADDRESS} host and port as the
client spells it, {SCHEME}; {PLAIN} host and port without TLS, {PORT} the port in that; {NAMESPACE},
{HOST} the name of the machine; {NAME} and {FORMAT} the host's name and its format as the module
publishes them, which depend on whether the machine's name can be resolved; {AUTHENTICATION} the number
that says whether users are asked for. A case that names {URL} or {NAMESPACE} is run in every
namespace; all others once. One that names a user is not run where the server has users, and one whose rule
says that the server speaks TLS, or no TLS, not where that is otherwise.
"""

import argparse
import pathlib
import re
import socket
import subprocess
import sys

sys.path.insert(1, sys.path[0] + "/../kit")

import ways
from served import NAMESPACES

HERE = pathlib.Path(__file__).resolve().parent


class Case:
    def __init__(self, rule, command):
        self.rule = rule
        self.command = command
        self.exit_code = None
        self.output = []

    def fits(self, way):
        return not (way.user and "@" in self.command or way.tls and "speaks no TLS" in self.rule or
                    not way.tls and "speaks TLS" in self.rule)

    def namespaces(self):
        return NAMESPACES if re.search(r"\{(URL|NAMESPACE)\}", self.command) else NAMESPACES[:1]


def read(path):
    cases = []
    rule = []
    for line in path.read_text(encoding="utf-8").splitlines():
        if line.startswith("# "):
            rule.append(line[2:])
        elif line.startswith("$ "):
            cases.append(Case(" ".join(rule), line[2:]))
            rule = []
        elif cases and cases[-1].exit_code is None:
            cases[-1].exit_code = int(line.removeprefix("exit "))
        elif cases and not rule:
            cases[-1].output.append(line)
    for case in cases:
        while case.output and not case.output[-1].strip():
            case.output.pop()
    return cases


def wbemcli(*arguments):
    return subprocess.run(["wbemcli", *arguments], check=True, capture_output=True,
                          text=True).stdout


def published_name(url, *more):
    """The name of the host of the object manager of the server at `url`: empty when the machine's name
    is unknown to its resolver, else the canonical one."""
    answer = wbemcli(*more, "ein", f"{url}/root/cimv2:ORVEX_ObjectManagerHost")
    return re.search(r'Name="([^"]*)"\s*$', answer)[1]


def fill(text, values):
    return re.sub(r"\{([A-Z]+)\}", lambda m: values[m[1]], text)


def options(served):
    """What wbemcli needs to trust the server."""
    return ["-cacert", served.certificate] if served.certificate else []


def server(served):
    """The server as a URL of wbemcli says it."""
    user = f"{served.user}:{served.password}@" if served.user else ""
    return served.url.replace("://", f"://{user}")


def ask(command, values, more=()):
    answer = subprocess.run(["wbemcli", *more, *fill(command, values).split()],
                            capture_output=True, text=True, timeout=60, check=False)
    lines = (answer.stdout + answer.stderr).rstrip("\n").splitlines()
    return answer.returncode, lines


def main():
    parser = argparse.ArgumentParser(description=__doc__,
                                     formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--build", required=True, help="the build directory")
    parser.add_argument("--show", action="store_true",
                        help="print the cases with what is answered now, to be read by a person")
    parser.add_argument("cases", nargs="*", type=pathlib.Path,
                        default=sorted(HERE.glob("wbemcli*.cases")))
    arguments = parser.parse_args()

    wrong = 0
    for way in ways.WAYS[:1] if arguments.show else ways.WAYS:
        with ways.Reached(arguments.build, way) as served:
            wrong += run(served, [case for path in arguments.cases for case in read(path)],
                         arguments.show)
    return 1 if wrong else 0


def run(served, cases, show):
    """Runs all cases; returns how many failed, of none one."""
    passed = failed = 0
    host = socket.gethostname()
    name = published_name(server(served), *options(served))
    for case in (case for case in cases if case.fits(served.way)):
        for namespace in case.namespaces():
            values = {"URL": f"{server(served)}/{namespace}", "SERVER": server(served), "HOST": host,
                      "ADDRESS": served.address, "SCHEME": served.url.partition(":")[0],
                      "PLAIN": served.plain_address,
                      "PORT": served.plain_address.rpartition(":")[2], "NAMESPACE": namespace,
                      "NAME": name, "FORMAT": "Other" if name else "IP",
                      "AUTHENTICATION": "3" if served.user else "2"}
            code, lines = ask(case.command, values, options(served))
            if show:
                print(f"# {case.rule}\n$ {case.command}\nexit {code}")
                print("\n".join(unfill(line, values) for line in lines) + "\n")
                break
            expected = [fill(line, values) for line in case.output]
            if (code, lines) == (case.exit_code, expected):
                passed += 1
                continue
            failed += 1
            print(f"FAILED: {case.rule}\n  wbemcli {fill(case.command, values)}")
            print(f"  exit code {code}, expected {case.exit_code}")
            print("\n".join(["  expected:"] + ["    " + line for line in expected] +
                            ["  answered:"] + ["    " + line for line in lines]))
    if show:
        return 0
    print(f"wbemcli, {served.way.name}: {passed + failed} calls, {passed} right, {failed} wrong")
    return failed or (0 if passed else 1)


def unfill(line, values):
    for name in ("ADDRESS", "NAMESPACE", "PORT"):
        line = line.replace(values[name], "{" + name + "}")
    return re.sub(rf'(?<![\w.]){re.escape(values["HOST"])}(?=["/])', "{HOST}", line)


if __name__ == "__main__":
    sys.exit(main())
