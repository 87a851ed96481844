#!/usr/bin/env python3
"""What the documentation names exists: links, files, commands and their options, trace lines,
findings of serverprofile-register.

usage: documentation_test.py BUILD-DIRECTORY
"""

import functools
import pathlib
import re
import subprocess
import sys
import unittest

SOURCE = pathlib.Path(__file__).resolve().parent.parent.parent
PAGES = [SOURCE / "docs" / name for name in ("deploying.md", "troubleshooting.md", "clients.md")]
MODULE = ("common", "provider", "profiles", "objectmanager", "traversal")
LITERAL = re.compile(r'"((?:[^"\\\n]|\\.)*)"')
# Texts that make a trace line or a finding; shorter ones say nothing.
TELLING = 9
# What the tool puts between its texts: placeholders and names of the page, a namespace, a question.
VALUE = re.compile(r"[A-Z]+|[A-Z]+_\w+|interop:?|root/\w+|wbemcli|e[in]+|'http://\S+")


def prose(text):
    """The text without fenced blocks."""
    return re.sub(r"^```.*?^```$", "", text, flags=re.MULTILINE | re.DOTALL)


def fences(text, kind=None):
    """The lines of the fenced blocks, of one kind or of all."""
    for found, body in re.findall(r"^```(\w*)\n(.*?)^```$", text, re.MULTILINE | re.DOTALL):
        if kind is None or found == kind:
            yield from body.splitlines()


def spans(text):
    """The texts that are set as code in a line; one may go on in the next."""
    return [" ".join(span.split("\n")) for span in re.findall(r"`([^`]+)`", prose(text))]


def anchors(path):
    """The places in a document that links may name, as the hosting sites name them."""
    headings = re.findall(r"^#+ (.*)$", prose(path.read_text(encoding="utf-8")), re.MULTILINE)
    return {re.sub(r"[^\w -]", "", heading.lower()).replace(" ", "-") for heading in headings}


def literals(*rooms):
    """The texts in the sources of some rooms, those written in several pieces joined."""
    found = set()
    for room in rooms:
        for path in (each for end in ("cpp", "h", "py") for each in (SOURCE / room).glob(f"*.{end}")):
            joined = re.sub(r'"\s*\n\s*"', "", path.read_text(encoding="utf-8"))
            found.update(text.replace("\\n", "").replace("\\t", "\t")
                         for text in LITERAL.findall(joined))
    return found


def traced(line, known):
    """Whether the module writes such a line: a text of its own, whole, and behind one that ends with a
    blank a value: a word, or what an exception says. The frame of an operation puts the operation's name
    before some (provider/Serve.h)."""
    line = re.sub(r"^ServerProfileProvider ", "", line)
    framed = re.fullmatch(r"Quil (\w+)\(\): (.*)", line)
    if framed and framed[1] in known and traced(framed[2], known):
        return True
    for text in known:
        # printf's place holders stand for one word each.
        found = len(text) >= TELLING and re.match(re.sub("%s", r"\\w+", re.escape(text)), line)
        value = found and line[found.end():]
        if found and (not value or text.endswith(" ") and (" " not in value or value in known)):
            return True
    return False


def composed(line, known):
    """Whether the tool writes such a line: texts of its own, with nothing but values between them."""
    line = re.sub(r"^  WRONG", "", line)
    texts = set(map(str.strip, known))
    for text in sorted((text for text in texts if len(text) >= TELLING), key=len, reverse=True):
        line = line.replace(text, "\0")
    return "\0" in line and all(word in texts or VALUE.fullmatch(word)
                                for word in re.split(r"[\0\s]+", line))


class Documentation(unittest.TestCase):
    build = pathlib.Path()

    def each(self):
        for path in PAGES:
            yield path, path.read_text(encoding="utf-8")

    def test_links_lead_somewhere(self):
        for path, text in self.each():
            for target in re.findall(r"\]\(([^)\s]+)\)", text):
                name, _, place = target.partition("#")
                other = (path.parent / name).resolve() if name else path
                with self.subTest(page=path.name, link=target):
                    self.assertTrue(other.exists())
                    if place:
                        self.assertIn(place, anchors(other))

    def test_the_readme_leads_to_them(self):
        readme = (SOURCE / "README.md").read_text(encoding="utf-8")
        for path in PAGES:
            self.assertIn(f"({path.relative_to(SOURCE)})", readme)

    def test_files_of_the_source_exist(self):
        rooms = "|".join(path.name for path in SOURCE.iterdir()
                         if path.is_dir() and path.name not in ("build", ".git"))
        for path, text in self.each():
            for line in [*fences(text), *spans(text)]:
                for name in re.findall(rf"(?:^|\s)((?:{rooms})/[\w./-]*)", line):
                    with self.subTest(page=path.name, file=name):
                        self.assertTrue((SOURCE / name).exists())

    @functools.lru_cache(maxsize=None)
    def help_of(self, command):
        programs = {"serverprofile-register": self.build / "bin/serverprofile-register",
                    "cimhost": self.build / "bin/cimhost", "serve-sample": self.build / "bin/cimhost",
                    "serverprofile-walk": SOURCE / "walk/serverprofile-walk",
                    "scripts/package.sh": SOURCE / "scripts/package.sh"}
        def told(*words):
            return subprocess.run([programs[command], *words, "--help"], capture_output=True,
                                  text=True, check=True).stdout
        help_ = told()
        ours = help_.partition("Subcommands:\n")[2].partition("\n\n")[0]
        return help_ + "".join(told(one) for one in re.findall(r"^  ([\w-]+) {2,}", ours, re.M))

    def test_commands_have_the_options_that_are_named(self):
        ours = (r"(?:^|[\s/])(serverprofile-register|serverprofile-walk|cimhost|serve-sample|"
                r"scripts/package\.sh)\s(.*)")
        seen = set()
        for path, text in self.each():
            for line in [*fences(text), *spans(text)]:
                found = re.search(ours, line)
                if not found:
                    continue
                offered = self.help_of(found[1])
                seen.add(found[1])
                with self.subTest(page=path.name, line=line):
                    for option in re.findall(r"(?:^|\s)(--[\w-]+)", found[2]):
                        self.assertRegex(offered, rf"{option}\b(?!-)")
                    if found[1] == "serverprofile-register" and not found[2].startswith("-"):
                        self.assertRegex(offered, rf"(?m)^ +{found[2].split()[0]} ")
        self.assertEqual(len(seen), 5, "each is named somewhere, or this finds nothing")

    def test_options_that_stand_alone_are_those_of_a_command_of_ours(self):
        offered = "".join(self.help_of(command) for command in (
            "serverprofile-register", "serverprofile-walk", "cimhost", "scripts/package.sh"))
        for path, text in self.each():
            if path.name == "clients.md":
                continue  # there they are those of the clients
            for span in spans(text):
                for option in re.findall(r"^(--[\w-]+)", span):
                    with self.subTest(page=path.name, option=option):
                        self.assertRegex(offered, rf"{option}\b(?!-)")

    def test_presets_and_targets_exist(self):
        presets = (SOURCE / "CMakePresets.json").read_text(encoding="utf-8")
        made = "".join(path.read_text(encoding="utf-8")
                       for path in SOURCE.glob("*/CMakeLists.txt"))
        for path, text in self.each():
            for line in fences(text):
                for preset in re.findall(r"--preset (\w+)", line):
                    self.assertIn(f'"name": "{preset}"', presets, path.name)
                for target in "".join(re.findall(r"--target (.*)", line)).split():
                    self.assertRegex(made, rf"\w+\({target}\b", path.name)

    def test_trace_lines_are_in_the_sources(self):
        known = literals(*MODULE, "embedded/routing") | {"Too few objects delivered."}
        count = 0
        for path, text in self.each():
            inline = [span for span in re.findall(r"`([^`\n]+)`", prose(text))
                      if re.match(r" ?Quil |_getClass", span)]
            for line in [*fences(text, "trace"), *inline]:
                count += 1
                with self.subTest(page=path.name, line=line):
                    self.assertTrue(traced(line, known))
        self.assertGreater(count, 20, "the pages quote the trace, or this finds nothing")

    def test_findings_are_in_the_tool(self):
        known = literals("register")
        for text in literals("walk/serverprofile_walk"):  # whose findings it repeats
            known.update(re.split(r"\{[^}]*\}", text))
        count = 0
        for path, text in self.each():
            for line in fences(text, "status"):
                count += 1
                with self.subTest(page=path.name, line=line):
                    self.assertTrue(composed(line, known))
        self.assertGreater(count, 5, "the pages quote findings, or this finds nothing")

    def test_names_of_the_module_are_those_of_the_mof(self):
        mof = set()
        for path in SOURCE.glob("schema/*.mof"):
            mof.update(re.findall(r"\w+", path.read_text(encoding="utf-8")))
        mof.add("ORVEX_AdminDomain")  # stands in the trace for another class, on purpose
        for path, text in self.each():
            for name in re.findall(r"\b(?:ORVEX_|ServerProfileProvider)[A-Za-z]*", text):
                with self.subTest(page=path.name, name=name):
                    self.assertTrue(name in mof)


if __name__ == "__main__":
    Documentation.build = pathlib.Path(sys.argv.pop(1))
    unittest.main()
