"""The server's tools as serverprofile-register meets them in a test: programs under their names
that ask the test, which answers from a server and lets go wrong what a test wants to."""

import os
import pathlib
import re
import signal
import socket
import tempfile
import threading

NAMES = ("cimmof", "cimprovider", "cimcli", "cimconfig", "cimserver")

# What the tools say and how they end when the server refuses, and when it is not there.
REFUSALS = {
    "cimmof": ("Parsing error: parse error: Error adding an instance: CIM_ERR_FAILED: no\n", 250),
    "cimprovider": ("Failed to disable provider module: Provider is busy.\n", 1),
    "cimcli": ("cimcli CIMException:  Cmd= x Object= x Code= 1\nCIM_ERR_FAILED: no\n", 1),
    "cimconfig": ("no\n", 1),
    "cimserver": ("no\n", 1),
}
DOWN = {
    "cimmof": ("Cannot connect to CIM Server. The CIM Server may not be running.\n", 246),
    "cimprovider": ("The CIM server may not be running.\n", 1),
    "cimcli": ("Pegasus Exception: Cannot connect to local CIM server. Connection failed. "
               "trying to connect to\n", 54),
    "cimconfig": ("Current value can not be determined because the CIM server is not running.\n",
                  1),
    "cimserver": ("2.14.4\n", 0),
}


class Tools:
    """Answers for the tools in the directory `directory`, until closed.

    `answer(name, arguments)` is how a tool works: it returns exit code, output and errors. `faults`
    are dictionaries: "match", a pattern for the call, or "index", its number from 0, or "from", the
    number of the first; and a "mode":

    reject  the tool refuses and does nothing
    half    it does half of its work and then refuses (cimmof; another one refuses)
    after   it does its work and then says that it failed
    crash   it ends by a signal, having done nothing
    wait    it does its work once release() is called, if ever; `waiting` is set
    down    the server is not there

    `errors` are what went wrong in answering.
    """

    def __init__(self, directory, client, answer):
        self.directory = pathlib.Path(directory)
        for name in NAMES:
            (self.directory / name).symlink_to(client)
        self.answer = answer
        self.socket = str(self.directory / "socket")
        self.waiting = threading.Event()
        self.errors = []
        self._held = []  # the tools that wait: each with what it was called with
        self.plan()
        self._listener = socket.socket(socket.AF_UNIX)
        self._listener.bind(self.socket)
        self._listener.listen()
        threading.Thread(target=self._serve, daemon=True).start()

    def _serve(self):
        while True:
            try:
                tool = self._listener.accept()[0]
            except OSError:
                return  # closed
            with tool.makefile("rb") as stream:
                name, *arguments = stream.read().decode().split("\0")[:-1]
            self._reply(tool, self.take, pathlib.Path(name).name, arguments)

    def _reply(self, tool, how, name, arguments):
        try:
            reply = how(name, arguments)
        except Exception as error:  # a fault of the test, which would pass for the tool's
            self.errors.append(repr(error))
            reply = 99, "", "the test failed"
        if reply is None:
            self._held.append((tool, name, arguments))
            self.waiting.set()
            return
        code, out, err = reply
        out = out.encode()
        with tool:
            try:
                tool.sendall(b"%d %d\n" % (code, len(out)) + out + err.encode())
            except BrokenPipeError:
                pass  # it was killed meanwhile

    def release(self):
        """Lets the tools that wait do their work."""
        while self._held:
            tool, *call = self._held.pop()
            self._reply(tool, self.answer, *call)

    def close(self):
        self.plan()
        self._listener.shutdown(socket.SHUT_RDWR)
        self._listener.close()

    def plan(self, *faults):
        """From now on these faults, and a new count of the calls."""
        self.calls = []
        self.faults = faults
        self.waiting.clear()
        for tool, *_ in self._held:
            tool.close()
        self._held = []

    def take(self, name, arguments):
        call = " ".join([name, *arguments])
        index = len(self.calls)
        self.calls.append(call)
        for fault in self.faults:
            if (fault.get("index", index) == index and index >= fault.get("from", 0)
                    and re.search(fault.get("match", ""), call)):
                return self.fail(fault["mode"], name, arguments)
        return self.answer(name, arguments)

    def fail(self, mode, name, arguments):
        if mode == "half" and name == "cimmof":
            self.answer(name, [*arguments[:-1], self.half_of(arguments[-1])])
        elif mode == "after":
            self.answer(name, arguments)
        elif mode == "crash":
            return -signal.SIGKILL, "", ""
        elif mode == "wait":
            return None
        text, code = (DOWN if mode == "down" else REFUSALS)[name]
        return code, "", text

    def half_of(self, file):
        """The declarations, or inclusions, of the first half of a MOF file, as a file."""
        text = pathlib.Path(file).read_text()
        included = [line for line in text.split("\n") if line.startswith("#pragma include")]
        parts = text.split("\n};\n")
        if included:
            parts = []
        handle, name = tempfile.mkstemp(suffix=".mof", dir=pathlib.Path(file).parent)
        with os.fdopen(handle, "w") as stream:
            stream.write("".join(line + "\n" for line in included[: len(included) // 2 + 1]))
            stream.write("".join(part + "\n};\n" for part in parts[: len(parts) // 2]))
        return name
