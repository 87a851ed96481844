#!/usr/bin/env python3
"""Runs every command of docs/clients.md as it stands there, and compares what it prints with what the
page says. The server on the page's port 5988 is the plain one, on 5989 the one with TLS; it has users
where the command names one. "..." stands for any lines, or within a line for anything in it.

usage: page_test.py BUILD-DIRECTORY [--python PYTHON] [--java LIBRARY.jar] [--home PEGASUS_HOME]

Without a Python that has the packages of requirements.txt, a library or an OpenPegasus, the commands
for it are left out, and that is said.
"""

import argparse
import collections
import contextlib
import os
import pathlib
import re
import subprocess
import sys
import tempfile

sys.path.insert(1, sys.path[0] + "/../kit")

import ways
from served import SOURCE

PAGE = SOURCE / "docs" / "clients.md"
BLOCK = re.compile(r"^```(\w*)\n(.*?)^```$", re.MULTILINE | re.DOTALL)
# A block that begins with a comment of nothing but a name is the file of that name.
FILE = re.compile(r"(?:<\?xml.*\?>\n)?(?:# |<!-- )([\w.]+)(?: -->)?\n")
CLIENTS = ("wbemcli", "pywbemcli", "python3", "keytool", "java", "cimcli", "curl",
           "serverprofile-walk")


def files(text):
    """The files that the page shows, by name."""
    found = {}
    for kind, body in BLOCK.findall(text):
        name = FILE.match(body)
        if name and kind != "console":
            found[name[1]] = body if kind != "" else body[name.end():]
    return found


def commands(text):
    """Each command with what it prints, (client, command, lines)."""
    for kind, body in BLOCK.findall(text):
        if kind == "console":
            for part in re.split(r"^\$ ", body, flags=re.MULTILINE)[1:]:
                command, _, printed = part.partition("\n")
                names = [word for word in re.split(r"[\s|&;]+", command) if word in CLIENTS]
                yield names[0], command, printed.rstrip("\n").split("\n")


def way_of(command):
    return ways.Way("in docs/clients.md", tls="https:" in command or "keytool" in command,
                    user=ways.USER in command)


def pattern(lines):
    """What the lines of the page stand for."""
    return "".join(
        r"(?:.*\n)*?" if line == "..." else ".*".join(map(re.escape, line.split("..."))) + r"\n"
        for line in lines)


class Page:
    def __init__(self, folder, arguments):
        self.folder = folder
        self.environment = {**os.environ, "PATH": f"{folder}:{os.environ['PATH']}"}
        self.missing = set()
        self.importing = None  # the command that makes trust.p12
        self.link("tests", SOURCE / "tests")
        self.link("serverprofile-walk", SOURCE / "walk" / "serverprofile-walk")
        if arguments.python:
            self.script("python3", f'exec {arguments.python.absolute()} "$@"')
            self.link("pywbemcli", arguments.python.with_name("pywbemcli"))
        else:
            self.missing |= {"python3", "pywbemcli"}
        if arguments.java:
            self.link("build/java/wbem-java.jar", arguments.java)
        else:
            self.missing |= {"java", "keytool"}
        if arguments.home:
            # Its libraries are for this program alone.
            self.script("cimcli", f'PEGASUS_HOME={arguments.home} LD_LIBRARY_PATH={arguments.home}/lib '
                                  f'exec {arguments.home}/bin/cimcli "$@"')
        else:
            self.missing.add("cimcli")

    def link(self, name, target):
        (self.folder / name).parent.mkdir(parents=True, exist_ok=True)
        (self.folder / name).symlink_to(target.absolute())

    def script(self, name, text):
        (self.folder / name).write_text(f"#!/bin/sh\n{text}\n", encoding="utf-8")
        (self.folder / name).chmod(0o755)

    def shell(self, command):
        return subprocess.run(["bash", "-c", command], cwd=self.folder, env=self.environment,
                              stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True,
                              stdin=subprocess.DEVNULL, timeout=300, check=False)

    def trust(self, certificate):
        """The page has one server with TLS, here there are two, each with a certificate of its own."""
        link = self.folder / "certificate.pem"
        if not certificate or (link.exists() and link.samefile(certificate)):
            return
        link.unlink(missing_ok=True)
        link.symlink_to(certificate)
        if (self.folder / "trust.p12").exists():
            (self.folder / "trust.p12").unlink()
            self.shell(self.importing)

    def run(self, served, command, lines):
        """Whether a command prints what it should; says what differs."""
        self.trust(served.certificate)
        done = self.shell(self.here(served, command))
        expected = self.here(served, "\n".join(lines)).split("\n")
        if done.returncode == 0 and re.fullmatch(pattern(expected), done.stdout.rstrip("\n") + "\n"):
            return True
        print(f"WRONG: {command}\nends with {done.returncode} and prints\n{done.stdout}")
        return False

    @staticmethod
    def here(served, text):
        return text.replace("127.0.0.1:5989" if served.certificate else "127.0.0.1:5988",
                            served.address)


def main():
    parser = argparse.ArgumentParser(description=__doc__,
                                     formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("build", type=pathlib.Path)
    for option in ("--python", "--java", "--home"):
        parser.add_argument(option, type=pathlib.Path)
    arguments = parser.parse_args()
    text = PAGE.read_text(encoding="utf-8")

    counts = collections.defaultdict(collections.Counter)
    with contextlib.ExitStack() as stack:
        page = Page(pathlib.Path(stack.enter_context(tempfile.TemporaryDirectory())), arguments)
        for name, body in files(text).items():
            (page.folder / name).write_text(body, encoding="utf-8")
        servers = {}
        for client, command, lines in commands(text):
            if client in page.missing:
                counts[client]["left out"] += 1
                continue
            way = way_of(command)
            if way not in servers:
                servers[way] = stack.enter_context(ways.Reached(arguments.build, way))
            if client == "keytool":
                page.importing = command
            right = page.run(servers[way], command, lines)
            counts[client]["right" if right else "wrong"] += 1
    for client in CLIENTS:
        print(f"{client}: " + ", ".join(f"{count} {what}" for what, count in counts[client].items()))
    # Each client of the page is there, and each is asked in its three ways.
    short = [client for client in CLIENTS if sum(counts[client].values()) < 3 and client != "keytool"]
    if short:
        print("fewer than three commands: " + ", ".join(short))
    return 1 if short or any(count["wrong"] for count in counts.values()) else 0


if __name__ == "__main__":
    sys.exit(main())
