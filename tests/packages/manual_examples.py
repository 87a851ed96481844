"""The examples of an installed manual page, run word for word."""

import contextlib
import gzip
import re
import signal
import socket
import subprocess
import time

PATIENCE = 60.0
PORT = 5988


def examples(page):
    """The commands that the installed page shows as examples, in its order."""
    shown = gzip.open(page, "rt").read().partition(".Sh EXAMPLES\n")[2]
    return re.findall(r"^\.Dl (.*)$", shown, re.M)


def answers():
    with contextlib.closing(socket.socket()) as probe:
        return probe.connect_ex(("127.0.0.1", PORT)) == 0


class Serving:
    """Runs `command`, which serves on the port, as a context manager; `log` is what it said on
    standard error. It must end with 0 when it is asked to."""

    def __init__(self, command, folder="/"):
        self.command, self.folder = command, folder

    def __enter__(self):
        self._process = subprocess.Popen("exec " + self.command, shell=True, cwd=self.folder,
                                         stdout=subprocess.DEVNULL, stderr=subprocess.PIPE,
                                         text=True)
        end = time.monotonic() + PATIENCE
        while not answers():
            if self._process.poll() is not None or time.monotonic() > end:
                self._process.kill()
                raise RuntimeError(f"{self.command}: {self._process.communicate()[1]}")
            time.sleep(0.05)
        return self

    def __exit__(self, *_):
        self._process.send_signal(signal.SIGTERM)
        self.log = self._process.communicate(timeout=PATIENCE)[1]
        if self._process.returncode != 0:
            raise RuntimeError(f"{self.command}: {self.log}")
