#!/usr/bin/env python3
"""What cmake/FindOpenPegasus.cmake finds in trees as people have them.

usage: find_openpegasus_test.py CMAKE [unittest arguments]
"""

import pathlib
import subprocess
import sys
import tempfile
import unittest

MODULES = pathlib.Path(__file__).resolve().parent.parent.parent / "cmake"
PROJECT = f"""
cmake_minimum_required(VERSION 3.25)
project(Finds LANGUAGES NONE)
list(APPEND CMAKE_MODULE_PATH {MODULES})
if(PROCESSOR)
  set(CMAKE_SYSTEM_PROCESSOR ${{PROCESSOR}})
endif()
set(CMAKE_FIND_LIBRARY_PREFIXES lib)
set(CMAKE_FIND_LIBRARY_SUFFIXES .so)
set(CMAKE_FIND_USE_CMAKE_SYSTEM_PATH FALSE)
find_package(OpenPegasus QUIET)
message(STATUS "found=${{OpenPegasus_FOUND}} version=${{OpenPegasus_VERSION}} home=${{OpenPegasus_HOME}}")
if(OpenPegasus_FOUND)
  get_target_property(definitions OpenPegasus::provider INTERFACE_COMPILE_DEFINITIONS)
  get_target_property(includes OpenPegasus::provider INTERFACE_INCLUDE_DIRECTORIES)
  get_target_property(libraries OpenPegasus::provider INTERFACE_LINK_LIBRARIES)
  message(STATUS "definitions=${{definitions}}")
  message(STATUS "includes=${{includes}}")
  message(STATUS "libraries=${{libraries}}")
endif()
"""
VERSION = '#define PEGASUS_PRODUCT_NAME "x"\n#define PEGASUS_PRODUCT_VERSION "9.8.7"\n'
SERVER_PARTS = ("bin/cimserver", "bin/cimmof", "bin/cimprovider", "bin/cimcli",
                "repository")


class Finding(unittest.TestCase):
    def setUp(self):
        self._directory = tempfile.TemporaryDirectory()
        self.addCleanup(self._directory.cleanup)
        self.place = pathlib.Path(self._directory.name).resolve()
        self.put("project/CMakeLists.txt", PROJECT)

    def put(self, name, text="", executable=False):
        file = self.place / name
        file.parent.mkdir(parents=True, exist_ok=True)
        file.write_text(text, encoding="utf-8")
        file.chmod(0o755 if executable else 0o644)

    def headers(self, below):
        self.put(f"{below}/Pegasus/Provider/CIMInstanceProvider.h")

    def libraries(self, below, ending=".so"):
        for name in ("common", "provider"):
            self.put(f"{below}/libpeg{name}{ending}")

    def source_tree(self):
        self.headers("tree/src")
        self.put("tree/src/Pegasus/Common/PegasusVersion.h", VERSION)
        self.libraries("home/lib")
        return [f"-DPEGASUS_ROOT={self.place / 'tree'}", f"-DPEGASUS_HOME={self.place / 'home'}"]

    def installation(self):
        self.headers("root/usr/include")
        self.libraries("root/usr/lib64", ".so.1")
        return [f"-DPEGASUS_ROOT={self.place / 'root'}"]

    def find(self, *options):
        """What the project said: {word: value}."""
        done = subprocess.run(
            [CMAKE, "-S", self.place / "project", "-B", self.place / "build", *options],
            capture_output=True, text=True, check=False, env={"PATH": "/usr/bin:/bin"})
        self.assertEqual(0, done.returncode, done.stderr)
        words = [line[3:] for line in done.stdout.splitlines() if "=" in line]
        return dict(word.split("=", 1) for line in words
                    for word in (line.split() if line.startswith("found=") else [line]))

    def test_nothing_where_nothing_is(self):
        self.assertEqual({"found": "FALSE", "version": "unknown", "home": ""}, self.find())

    def test_a_source_tree_and_its_output(self):
        found = self.find(*self.source_tree())
        self.assertEqual(("TRUE", "9.8.7"), (found["found"], found["version"]))
        self.assertEqual(str(self.place / "tree/src"), found["includes"])
        self.assertEqual(f"{self.place}/home/lib/libpegprovider.so;"
                         f"{self.place}/home/lib/libpegcommon.so", found["libraries"])

    def test_an_installation_with_runtime_libraries_alone(self):
        found = self.find(*self.installation())
        self.assertEqual(("TRUE", "unknown"), (found["found"], found["version"]))
        self.assertIn("/usr/lib64/libpegcommon.so.1", found["libraries"])

    def test_an_installation_that_says_its_version_when_asked(self):
        options = self.installation()
        self.put("root/usr/sbin/cimserver", "#!/bin/sh\necho 7.6.5\n", executable=True)
        self.assertEqual("7.6.5", self.find(*options)["version"])

    def test_headers_without_libraries_are_none(self):
        self.headers("tree/src")
        self.assertEqual("FALSE", self.find(f"-DPEGASUS_ROOT={self.place / 'tree'}")["found"])

    def test_the_platform_follows_from_the_processor(self):
        options = self.source_tree()
        for processor, platform in (("x86_64", "LINUX_X86_64_GNU"), ("i686", "LINUX_IX86_GNU"),
                                    ("aarch64", "LINUX_AARCH64_GNU"), ("ppc", "LINUX_PPC_GNU"),
                                    ("ppc64le", "LINUX_PPC64_GNU"), ("s390x", "LINUX_ZSERIES64_GNU")):
            defined = self.find(*options, f"-DPROCESSOR={processor}")["definitions"].split(";")
            self.assertEqual([f"PEGASUS_PLATFORM_{platform}"],
                             [d for d in defined if d.startswith("PEGASUS_PLATFORM")], processor)

    def test_a_processor_without_a_platform_is_none(self):
        self.assertEqual("FALSE", self.find(*self.source_tree(), "-DPROCESSOR=z80")["found"])

    def test_the_users_definitions_are_added(self):
        defined = self.find(*self.source_tree(), "-DPEGASUS_DEFINITIONS=A;B=1")["definitions"]
        self.assertEqual(["THREAD_SAFE", "A", "B=1"], defined.split(";")[1:])

    def test_a_home_has_all_that_a_server_takes(self):
        options = self.source_tree()
        for part in SERVER_PARTS:
            self.put(f"home/{part}", executable=True)
        self.assertEqual(str(self.place / "home"), self.find(*options)["home"])
        for part in SERVER_PARTS:
            (self.place / "home" / part).unlink()
            self.assertEqual("", self.find(*options)["home"], part)
            self.put(f"home/{part}", executable=True)


if __name__ == "__main__":
    CMAKE = sys.argv.pop(1)
    unittest.main()
