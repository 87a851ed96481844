#!/usr/bin/env python3
"""Becomes a program that is as narrow as the installed unit of cimhost says of the process itself: its
system calls, code in memory, files, core dumps.

usage: confined.py PROGRAM [ARGUMENT...]
"""

import ctypes
import errno
import os
import pathlib
import re
import resource
import subprocess
import sys

UNIT = pathlib.Path("/usr/lib/systemd/system/cimhost.service")
ALLOW, REFUSE = 0x7FFF0000, 0x00050000 | errno.EPERM  # libseccomp's
PR_SET_MDWE, REFUSE_EXEC_GAIN = 65, 1


def unit():
    """The unit's settings, each with all its values."""
    found = {}
    for key, value in re.findall(r"(?m)^(\w+)=(.*)$", UNIT.read_text()):
        found.setdefault(key, []).append(value)
    return found


def calls(name):
    """The system calls of a group of systemd's."""
    told = subprocess.run(["systemd-analyze", "syscall-filter", name], check=True,
                          stdout=subprocess.PIPE, text=True).stdout
    found = set()
    for word in re.findall(r"(?m)^ +([@\w]\S*)$", told):
        found |= calls(word) if word.startswith("@") else {word}
    return found


def filter_calls(lines):
    """Refuses all but what a list of allowed calls and then one of refused ones leave."""
    allowed = calls("@default")
    for line in lines:
        for name in line.lstrip("~").split():
            allowed = allowed - calls(name) if line.startswith("~") else allowed | calls(name)
    library = ctypes.CDLL("libseccomp.so.2")
    library.seccomp_init.restype = ctypes.c_void_p
    context = ctypes.c_void_p(library.seccomp_init(REFUSE))
    for name in allowed:
        number = library.seccomp_syscall_resolve_name(name.encode())
        if number >= 0:  # others are another machine's
            if library.seccomp_rule_add(context, ALLOW, number, 0) != 0:
                raise OSError(f"no rule for {name}")
    if library.seccomp_load(context) != 0:
        raise OSError("the filter cannot be loaded")


def main():
    settings = unit()
    resource.setrlimit(resource.RLIMIT_CORE, (int(settings["LimitCORE"][0]),) * 2)
    os.umask(int(settings["UMask"][0], 8))
    filter_calls(settings["SystemCallFilter"])
    if settings["MemoryDenyWriteExecute"] == ["yes"]:
        # Linux 6.3; an older one goes on without.
        ctypes.CDLL(None).prctl(PR_SET_MDWE, REFUSE_EXEC_GAIN, 0, 0, 0)
    os.execvp(sys.argv[1], sys.argv[1:])


if __name__ == "__main__":
    main()
