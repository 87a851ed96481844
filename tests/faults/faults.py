"""What a process may meet: the library failing.cpp, preloaded, and a hand on its switches; and a test
that counts what came of the faults that it made."""

import collections
import mmap
import os
import pathlib
import struct
import tempfile
import time
import unittest

# As failing.cpp has them, 64 bits each.
SWITCHES = ("allocations", "nth", "every", "failed", "few", "interrupt", "interrupted",
            "accept", "send", "receive", "write", "refused", "clock")


def rest(pid):
    """Waits until all threads of a process sleep, and go on doing so: it has come up."""
    def switches():
        statuses = [path.read_text() for path in pathlib.Path(f"/proc/{pid}/task").glob("*/status")]
        return all("\nState:\tS" in one for one in statuses) and [
            line for one in statuses for line in one.splitlines() if "ctxt_switches" in line]
    before = None
    while not before or before != switches():
        before = switches()
        time.sleep(0.05)


class Switches:
    """Attributes by the names above, read and written while the process runs. `environment` is what
    it has to be started with. A context manager: the file behind it goes with it."""

    def __init__(self, library):
        handle, name = tempfile.mkstemp(prefix="faults-")
        os.ftruncate(handle, 8 * len(SWITCHES))
        self.__dict__["_file"] = pathlib.Path(name)
        self.__dict__["_map"] = mmap.mmap(handle, 8 * len(SWITCHES))
        os.close(handle)
        preload = " ".join(filter(None, (os.environ.get("LD_PRELOAD"),
                                        str(pathlib.Path(library).resolve()))))
        sanitizer = os.environ.get("ASAN_OPTIONS", "")
        self.__dict__["environment"] = {
            "LD_PRELOAD": preload, "FAILING": name,
            "ASAN_OPTIONS": ":".join(filter(None, (sanitizer, "verify_asan_link_order=0")))}

    def __enter__(self):
        return self

    def __exit__(self, *exception):
        self._map.close()
        self._file.unlink()

    def __getattr__(self, name):
        return struct.unpack_from("q", self._map, 8 * SWITCHES.index(name))[0]

    def __setattr__(self, name, value):
        struct.pack_into("q", self._map, 8 * SWITCHES.index(name), value)

    def clear(self):
        for name in ("nth", "every", "few", "interrupt", "accept", "send", "receive", "write",
                     "clock"):
            setattr(self, name, 0)


class Counting(unittest.TestCase):
    """Has `outcomes`, faults by what came of them; they are printed at the end of a test, in a line that
    all.py reads."""

    def setUp(self):
        self.outcomes = collections.Counter()

    def tearDown(self):
        total = sum(self.outcomes.values())
        print(f"\n{self.id().rsplit('.', 1)[1]}: {total} faults:",
              ", ".join(f"{count} {what}" for what, count in self.outcomes.most_common()),
              flush=True)
