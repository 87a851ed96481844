"""The servers that are measured. Each is a context manager with a `port`; what it writes to standard
output, the module's trace, goes nowhere."""

import os
import pathlib
import subprocess
import tempfile
import time

from questions import SOURCE, ask

from installed import Installed  # tests/clients

PATIENCE = 600  # seconds for a start or an end
TICK = 0.001  # seconds between looks at what is awaited

# The threads on which cimhost reads and writes (http::Options::ioThreads); the bare server gets as many.
IO_THREADS = min(os.cpu_count() or 1, 4)


class NotStarted(Exception):
    """A server ended instead of serving."""


def processor_time(pid):
    """What a process has used, in seconds, as exact as the system counts (proc(5): clock ticks)."""
    fields = pathlib.Path(f"/proc/{pid}/stat").read_text().rpartition(")")[2].split()
    return (int(fields[11]) + int(fields[12])) / os.sysconf("SC_CLK_TCK")


class Process:
    """A program that writes its port into a file; `ready` is the time from its start until then, in
    seconds."""

    def __init__(self, command, stdin=subprocess.DEVNULL):
        self._command = command
        self._stdin = stdin

    def __enter__(self):
        self._directory = tempfile.TemporaryDirectory(prefix="bench.")
        place = pathlib.Path(self._directory.name)
        file = place / "port"
        with open(place / "log", "wb") as log:
            self.started = time.monotonic()
            self._process = subprocess.Popen(self._command(file), stdin=self._stdin,
                                             stdout=subprocess.DEVNULL, stderr=log)
        self.pid = self._process.pid
        while not file.exists():
            if self._process.poll() is not None or time.monotonic() > self.started + PATIENCE:
                log = (place / "log").read_text(errors="replace")
                self.__exit__(None, None, None)
                raise NotStarted(f"{self._process.args[0]} did not start (exit code "
                                 f"{self._process.returncode}):\n{log}")
            time.sleep(TICK)
        self.ready = time.monotonic() - self.started
        self.port = int(file.read_text())
        return self

    def __exit__(self, *_):
        if self._process.poll() is None:
            self._process.terminate()
            try:
                self._process.wait(30)
            except subprocess.TimeoutExpired:
                self._process.kill()
        self._process.wait()
        self._directory.cleanup()

    def memory(self, which="VmRSS"):
        """Resident memory in bytes, or with VmHWM the most that it ever was."""
        for line in pathlib.Path(f"/proc/{self.pid}/status").read_text().splitlines():
            if line.startswith(which + ":"):
                return int(line.split()[1]) * 1024
        raise NotStarted(f"process {self.pid} has ended")

    def first_answer(self, question):
        """Seconds from the start to the first right answer."""
        ask(self.port, question)
        return time.monotonic() - self.started


class Cimhost(Process):
    """The embedded server of a build directory with the module, the schema and the sample switch;
    `more` are further MOF files, (namespace, path) each."""

    def __init__(self, build, more=(), namespaces=(), options=()):
        self._build = pathlib.Path(build)
        self._more = list(options)
        self._more += [f"--mof={namespace}={path}" for namespace, path in more]
        self._more += [f"--namespace={namespace}" for namespace in namespaces]
        super().__init__(self._arguments)

    def _arguments(self, port_file):
        self.started = time.monotonic()
        return [self._build / "bin" / "cimhost", "--port", "0", "--port-file", port_file,
                "--log-level", "error", "--provider-dir", self._build / "lib",
                "--config", SOURCE / "samples" / "switch.conf",
                "--config", SOURCE / "schema" / "serverprofile.conf", *self._more]


class Bare(Process):
    """The bare server of bench/BareServer.cpp with recorded replies, which it answers at /0, /1, ..."""

    def __init__(self, build, replies, threads=IO_THREADS):
        self._replies = tempfile.TemporaryDirectory(prefix="bench.")
        files = []
        for number, reply in enumerate(replies):
            files.append(pathlib.Path(self._replies.name) / str(number))
            files[-1].write_bytes(reply)
        # It ends with its input, should this program not come to its end.
        self._read, self._write = os.pipe()
        super().__init__(lambda port_file: [pathlib.Path(build) / "bin" / "bench_bare_server",
                                            str(threads), port_file, *files], self._read)

    def __exit__(self, *failure):
        super().__exit__(*failure)
        os.close(self._read)
        os.close(self._write)
        self._replies.cleanup()


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
