"""The program serverprofile-walk."""

import argparse
import os
import pathlib
import sys

from . import VERSION, connection, graph, jsonform, page, text
from .client import Client, NoAnswer
from .command import PASSWORD_VARIABLE
from .walk import Walk

HELP = f"""\
usage: serverprofile-walk [options] URL

Walks the Server profile of a switch on the CIM server at URL, as a storage management client does,
and judges each answer. URL is http://HOST:PORT or https://HOST:PORT. Nothing is changed there.

Options:
  --namespace NAMESPACE   walk this namespace, and others only if they are named, too
  --all                   walk every namespace that the server lists and where the profile is served
  --user NAME             who asks
  --password-file FILE    the password is the first line of FILE (without: {PASSWORD_VARIABLE})
  --ca-file FILE          the authority that signed the server's certificate, as PEM
  --no-verify             take any certificate
  --timeout SECONDS=60    how long the answer to a question may take
  --verbose               show each question and what came
  --json                  print JSON instead of text
  --html FILE             write a page with the verdict, a picture, objects and questions
  --draw BASE             draw what was found into BASE.dot and BASE.svg (needs Graphviz)
  -h,--help               print this text
  --version               print the version

Without --namespace and --all: the interop namespace, which is looked for as clients do (interop,
root/interop, root/PG_InterOp), and root/cimv2 where the profile is served there.

Exit codes:
  0  the walk is whole
  1  an answer is wrong
  2  wrong command line
  3  the server cannot be reached
  4  a file cannot be written
"""


class WrongCommandLine(Exception):
    pass


class _Parser(argparse.ArgumentParser):
    def format_help(self):
        return HELP

    def error(self, message):
        raise WrongCommandLine(message)


def _options(arguments):
    parser = _Parser(prog="serverprofile-walk", allow_abbrev=False)
    parser.add_argument("url", metavar="URL")
    parser.add_argument("--namespace", action="append", default=[])
    parser.add_argument("--all", action="store_true", dest="everywhere")
    parser.add_argument("--user")
    parser.add_argument("--password-file")
    parser.add_argument("--ca-file")
    parser.add_argument("--no-verify", action="store_false", dest="verify")
    parser.add_argument("--timeout", type=float, default=60)
    parser.add_argument("--verbose", action="store_true")
    parser.add_argument("--json", action="store_true")
    parser.add_argument("--html", type=pathlib.Path)
    parser.add_argument("--draw", type=pathlib.Path)
    parser.add_argument("--version", action="version", version=f"serverprofile-walk {VERSION}")
    options = parser.parse_args(arguments)
    if options.namespace and options.everywhere:
        raise WrongCommandLine("--namespace or --all, not both")
    for namespace in options.namespace:
        if not all(namespace.split("/")):
            raise WrongCommandLine(f"--namespace {namespace!r}: no namespace begins or ends with a slash, "
                                   "or has two in a row")
    if not 0 < options.timeout < 1e6:
        raise WrongCommandLine(f"--timeout {options.timeout:g}: a number of seconds above 0 is expected")
    return options


def _password(options):
    if options.user is None:
        if options.password_file:
            raise WrongCommandLine("--password-file without --user")
        return ""
    if options.password_file:
        try:
            with open(options.password_file, encoding="utf-8") as file:
                return file.readline().rstrip("\r\n")
        except (OSError, UnicodeError) as error:
            raise WrongCommandLine(f"--password-file: {error}") from error
    if PASSWORD_VARIABLE not in os.environ:
        raise WrongCommandLine(f"--user: where is the password? --password-file FILE, or "
                               f"{PASSWORD_VARIABLE} in the environment")
    return os.environ[PASSWORD_VARIABLE]


def _server(options):
    if options.ca_file and not os.access(options.ca_file, os.R_OK):
        raise WrongCommandLine(f"--ca-file: {options.ca_file} cannot be read")
    try:
        return connection.server(
            options.url, user=options.user, password=_password(options), ca_file=options.ca_file,
            verify=options.verify, patience=options.timeout)
    except ValueError as error:
        raise WrongCommandLine(str(error)) from error


def run(arguments, say=print):
    """Runs the program; returns its exit code. `say` prints a text for standard output."""
    try:
        options = _options(arguments)
        at = _server(options)
    except WrongCommandLine as error:
        print(f"serverprofile-walk: {error} (try --help)", file=sys.stderr)
        return 2
    writer = text.Writer(at, (lambda line: None) if options.json else say, options.verbose,
                         options.password_file)
    with Client(at) as client:
        walk = Walk(client.ask, writer.report)
        try:
            walk.run(options.namespace, options.everywhere)
        except NoAnswer as error:
            if options.json:
                say(jsonform.document(at, None, str(error)), end="")
            print(f"serverprofile-walk: {text.printable(str(error))}", file=sys.stderr)
            return 3
    if options.json:
        say(jsonform.document(at, walk, password_file=options.password_file), end="")
    else:
        writer.end(walk)
    if not _files(options, at, walk):
        return 4
    return 0 if walk.whole else 1


def _files(options, at, walk):
    """Writes the page and the picture that are asked for. Returns whether all is written."""
    done = True
    try:
        if options.html:
            content, no_picture = page.page(at, walk, options.password_file)
            options.html.write_text(content, encoding="utf-8")
            if no_picture:
                _complain(f"no picture in {options.html}: {no_picture}")
    except OSError as error:
        done = _complain(f"--html: {error}")
    try:
        if options.draw and walk.sections:
            graph.write(graph.Graph(walk, walk.sections[0]).dot(), options.draw)
    except (OSError, graph.CannotDraw) as error:
        done = _complain(f"--draw: {error}")
    return done


def _complain(words):
    print(f"serverprofile-walk: {text.printable(words)}", file=sys.stderr)
    return False


def main():
    try:
        code = run(sys.argv[1:])
        sys.stdout.flush()
    except KeyboardInterrupt:
        code = 130
    except BrokenPipeError:  # who reads has seen enough
        os.dup2(os.open(os.devnull, os.O_WRONLY), sys.stdout.fileno())
        code = 141
    sys.exit(code)
