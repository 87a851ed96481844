#!/usr/bin/env python3
"""What the packages hold, seen from outside, without installing them.

usage: package_test.py DIRECTORY-OF-PACKAGES [unittest arguments]
"""

import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile
import unittest

import kinds

HERE = pathlib.Path(__file__).resolve().parent
SOURCE = HERE.parent.parent
KINDS = [kind(sys.argv[1]) for kind in (kinds.Deb, kinds.Rpm)]


def each_package():
    return [(kind, package) for kind in KINDS for package in kinds.NAMES]


def expected(kind, package):
    version = kind.version(package)
    files = []
    for line in (HERE / "contents.txt").read_text().splitlines():
        words = line.split()
        if not line.startswith("#") and words[0] == package and words[1:-1] in ([], [kind.name]):
            files.append(words[-1].format(lib=kind.lib, version=version,
                                          series=version.rsplit(".", 1)[0]))
    return files


class Contents(unittest.TestCase):
    maxDiff = None

    def each_program(self):
        """Every program and library of every package: a name for messages, and the file."""
        for kind, package in each_package():
            with tempfile.TemporaryDirectory() as folder:
                kind.unpack(package, folder)
                for name in expected(kind, package):
                    file = pathlib.Path(folder + name)
                    if not file.is_symlink() and file.read_bytes()[:4] == b"\x7fELF":
                        yield f"{kind.name}: {name}", file

    def test_nothing_is_missing_and_nothing_is_too_much(self):
        for kind, package in each_package():
            with self.subTest(kind=kind.name, package=package):
                self.assertEqual(sorted(kind.contents(package)), sorted(expected(kind, package)))

    def test_nothing_knows_where_it_was_built(self):
        seen = 0
        for name, file in self.each_program():
            seen += 1
            with self.subTest(name):
                self.assertFalse(str(SOURCE).encode() in file.read_bytes(), SOURCE)
        self.assertEqual(seen, 8)

    def test_programs_and_libraries_are_stripped_and_hardened(self):
        for name, file in self.each_program():
            with self.subTest(name):
                told = kinds.output("readelf", "--wide", "--headers", "--dynamic", "--dyn-syms", file)
                # The last is what the compiler puts in where a buffer could run over.
                wanted = ("Type: +DYN", "GNU_RELRO", "FLAGS.*NOW", "__stack_chk_fail")
                unwanted = (r"\.symtab", r"\.debug_")
                self.assertEqual([one for one in wanted if not re.search(one, told)], [])
                self.assertEqual([one for one in unwanted if re.search(one, told)], [])

    def test_the_private_library_is_found_from_where_it_is_used(self):
        paths = {}
        for name, file in self.each_program():
            for path in re.findall(r"R(?:UN)?PATH.*\[(.*)\]", kinds.output("readelf", "-d", file)):
                paths[name] = path
        deb, rpm = (kind.lib for kind in KINDS)
        self.assertEqual(paths, {
            "deb: /usr/bin/cimhost": f"$ORIGIN/..{deb[4:]}/cimhost",
            f"deb: {deb}/Pegasus/providers/libServerProfileProvider.so": "$ORIGIN/../../cimhost",
            "rpm: /usr/bin/cimhost": f"$ORIGIN/..{rpm[4:]}/cimhost",
            f"rpm: {rpm}/Pegasus/providers/libServerProfileProvider.so": "$ORIGIN/../../cimhost",
        })


class Lint(unittest.TestCase):
    def judged_clean(self, *command):
        result = subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True)
        self.assertEqual(result.returncode, 0, result.stdout)

    def test_lintian_finds_no_error_and_no_warning(self):
        # The suppressed one wants a bug number of Debian's own tracker.
        self.judged_clean("lintian", "--allow-root", "--fail-on", "error,warning", "--suppress-tags",
                          "initial-upload-closes-no-bugs", *KINDS[0].files.values())

    def test_rpmlint_finds_no_error(self):
        self.judged_clean("rpmlint", "--config", HERE / "rpmlint.toml", *KINDS[1].files.values())

    def test_scripts_that_packages_run_are_clean(self):
        for package, tags in {"serverprofile-provider": ("POSTIN", "PREUN"),
                              "cimhost": ("POSTIN", "PREUN", "POSTUN")}.items():
            with self.subTest(package), tempfile.TemporaryDirectory() as folder:
                deb, rpm = (kind.files[package] for kind in KINDS)
                kinds.output("dpkg-deb", "-e", deb, folder)
                self.judged_clean("shellcheck", f"{folder}/postinst", f"{folder}/prerm",
                                  f"{folder}/postrm")
                for tag in tags:
                    script = pathlib.Path(folder, tag)
                    script.write_text(kinds.output("rpm", "-qp", "--qf", f"%{{{tag}}}", rpm))
                    self.judged_clean("shellcheck", "--shell=sh", script)


class Service(unittest.TestCase):
    # systemd's own measure, from 0 to 10.
    EXPOSURE = 2.5

    def test_it_is_exposed_little(self):
        if not shutil.which("systemd-analyze") or "--offline" not in kinds.output(
                "systemd-analyze", "--help"):
            self.assertFalse(os.environ.get("CI"), "CI has to have systemd-analyze, version 250")
            self.skipTest("no systemd-analyze that can judge a unit that is not installed")
        for kind in KINDS:
            with self.subTest(kind.name), tempfile.TemporaryDirectory() as folder:
                kind.unpack("cimhost", folder)
                told = kinds.output("systemd-analyze", "security", "--offline=true", "--no-pager",
                                    f"{folder}/usr/lib/systemd/system/cimhost.service")
                found = float(re.search(r"Overall exposure level for cimhost\S+: ([\d.]+)", told)[1])
                print(f"{kind.name}: exposure of cimhost.service: {found}")
                self.assertLess(found, self.EXPOSURE, told)

    def test_its_settings_are_kept_when_they_were_changed(self):
        deb, rpm = (kind.files["cimhost"] for kind in KINDS)
        settings = "/etc/cimhost/cimhost.conf\n"
        self.assertEqual(kinds.output("dpkg-deb", "-I", deb, "conffiles"), settings)
        self.assertEqual(kinds.output("rpm", "-qp", "--configfiles", rpm), settings)


class Dependencies(unittest.TestCase):
    def test_the_module_comes_with_the_server_that_has_its_library(self):
        deb, rpm = KINDS
        depends = kinds.output("dpkg-deb", "-f", deb.files["serverprofile-provider"], "Depends")
        self.assertIn(f"cimhost (= {deb.version('cimhost')}-1)", depends.split(", "))
        library = "libpegasus-embedded.so." + rpm.version("cimhost").rsplit(".", 1)[0] + "()(64bit)"
        self.assertIn(library, kinds.output(
            "rpm", "-qp", "--requires", rpm.files["serverprofile-provider"]).splitlines())
        self.assertIn(library, kinds.output(
            "rpm", "-qp", "--provides", rpm.files["cimhost"]).splitlines())

    def test_the_walk_is_for_any_machine_with_python(self):
        deb, rpm = (kind.files["serverprofile-walk"] for kind in KINDS)
        self.assertEqual(kinds.output("dpkg-deb", "-f", deb, "Architecture", "Depends", "Recommends"),
                         "Architecture: all\nDepends: python3 (>= 3.9)\nRecommends: graphviz\n")
        self.assertEqual(kinds.output("rpm", "-qp", "--qf", "%{ARCH}", rpm), "noarch")
        self.assertIn("python3 >= 3.9",
                      kinds.output("rpm", "-qp", "--requires", rpm).splitlines())


if __name__ == "__main__":
    unittest.main(argv=[sys.argv[0], *sys.argv[2:]])
