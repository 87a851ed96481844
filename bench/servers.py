"""The servers that are measured. Each is a context manager with a `port`; what it writes to standard
output, the module's trace, goes nowhere."""

import os
import pathlib
import subprocess
import tempfile
import time

from questions import ask

from openpegasus import Installed  # tests/kit
from served import TICK, Served

PATIENCE = 600  # seconds for a start

# The threads on which cimhost reads and writes (http::Options::ioThreads); the bare server gets as many.
IO_THREADS = min(os.cpu_count() or 1, 4)


def processor_time(pid):
    """What a process has used, in seconds, as exact as the system counts (proc(5): clock ticks)."""
    fields = pathlib.Path(f"/proc/{pid}/stat").read_text().rpartition(")")[2].split()
    return (int(fields[11]) + int(fields[12])) / os.sysconf("SC_CLK_TCK")


class Cimhost(Served):
    """The embedded server of a build directory with the module, the schema and the sample switch;
    `more` are further MOF files, (namespace, path) each."""

    def __init__(self, build, more=(), namespaces=(), options=()):
        super().__init__(build, [
            "--log-level", "error", *options, *(f"--mof={namespace}={path}" for namespace, path in more),
            *(f"--namespace={namespace}" for namespace in namespaces)], keep=False, traced=False)
        self.patience = PATIENCE

    def memory(self, which="VmRSS"):
        """Resident memory in bytes, or with VmHWM the most that it ever was."""
        for line in pathlib.Path(f"/proc/{self.pid}/status").read_text().splitlines():
            if line.startswith(which + ":"):
                return int(line.split()[1]) * 1024
        raise RuntimeError(f"process {self.pid} has ended")

    def first_answer(self, question):
        """Seconds from the start to the first right answer."""
        ask(self.port, question)
        return time.monotonic() - self.started


class Bare:
    """The bare server of bench/BareServer.cpp with recorded replies, which it answers at /0, /1, ..."""

    def __init__(self, build, replies, threads=IO_THREADS):
        self._program = pathlib.Path(build) / "bin" / "bench_bare_server"
        self._replies = replies
        self._threads = str(threads)

    def __enter__(self):
        with tempfile.TemporaryDirectory(prefix="bench.") as directory:
            place = pathlib.Path(directory)
            files = [place / str(number) for number in range(len(self._replies))]
            for file, reply in zip(files, self._replies):
                file.write_bytes(reply)
            # It ends with its input, should this program not come to its end.
            self._process = subprocess.Popen([self._program, self._threads, place / "port", *files],
                                             stdin=subprocess.PIPE)
            self.pid = self._process.pid
            while not (place / "port").exists():
                if self._process.poll() is not None:
                    raise RuntimeError(f"{self._program} ended with {self._process.returncode}")
                time.sleep(TICK)
            self.port = int((place / "port").read_text())
        return self

    def __exit__(self, *_):
        self._process.communicate()


class OpenPegasus(Installed):
    """A server of an installed OpenPegasus with the same module, schema and objects; it sees `folder`,
    too."""

    def __init__(self, home, build, folder=None):
        super().__init__(home, build)
        self.visible += [folder] if folder else []

    def _furnish(self):
        super()._furnish()
        (self.home / "log").symlink_to(os.devnull)

    @property
    def pid(self):
        return self._process.pid
