"""What the tests that change the machine share: the packages, by what package manager they are
installed, and that nothing may be left of them after a test.

The test program's arguments are: deb|rpm PACKAGES PACKAGES-OF-A-HIGHER-VERSION
"""

import os
import pathlib
import stat
import subprocess
import sys
import unittest

import kinds

SOURCE = pathlib.Path(__file__).resolve().parent.parent.parent
KIND = {"deb": kinds.Deb, "rpm": kinds.Rpm}[sys.argv[1]]
PACKED, HIGHER = KIND(sys.argv[2]), KIND(sys.argv[3])
PROVIDER = "serverprofile-provider"

# What package managers themselves leave behind.
BOOKKEEPING = ("/var/lib/dpkg", "/var/lib/scratch-rpm", "/var/lib/man-db", "/var/cache", "/var/log")


def left_behind():
    """What there is that was not there before, and what is not there that was."""
    changes, before = (pathlib.Path(os.environ["SCRATCH"], part) for part in ("changes", "before"))
    found = []
    for folder, folders, files in os.walk(changes):
        inside = pathlib.Path(folder).relative_to(changes)
        folders[:] = [name for name in folders if f"/{inside / name}" not in BOOKKEEPING]
        for path in (inside / name for name in folders + files):
            gone = stat.S_ISCHR(os.lstat(changes / path).st_mode)
            if gone or not os.path.lexists(before / path):
                found.append(f"/{path}" + (" (gone)" if gone else ""))
    return found


def shell(command, **options):
    return subprocess.run(command, shell=True, stdout=subprocess.PIPE, stderr=subprocess.STDOUT,
                          text=True, **options)


class Installation(unittest.TestCase):
    maxDiff = None

    def setUp(self):
        self.addCleanup(lambda: self.assertEqual(left_behind(), []))
        self.addCleanup(PACKED.purge_settings, "cimhost")

    def installed(self, *names):
        """Installs, and removes at the end of the test."""
        text = PACKED.install(*(names or kinds.NAMES))
        self.addCleanup(PACKED.remove, *(names or kinds.NAMES), purge=True)
        return text

    def told(self, text):
        """The one line that the package said."""
        lines = [line for line in text.splitlines() if line.startswith(PROVIDER + ": ")]
        self.assertEqual(len(lines), 1, text)
        return lines[0][len(PROVIDER) + 2:]
