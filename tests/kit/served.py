"""A cimhost that serves the module and the sample switch, for as long as a test needs it."""

import os
import pathlib
import signal
import subprocess
import tempfile
import time

SOURCE = pathlib.Path(__file__).resolve().parent.parent.parent
NAMESPACES = ("root/cimv2", "interop", "root/PG_InterOp")
PATIENCE = 60.0  # seconds for a start or an end; the sanitizers are slow
TICK = 0.001  # seconds between looks at what is awaited


class Served:
    """Starts cimhost from the build directory `build` on a free port; a context manager. The MOF
    comes from the folders schema and samples of `source`, and then from `options`; without `content`
    from these alone. The server has `environment` besides ours. Without `keep` it unmaps libraries
    that it does not need any more, without `traced` its standard output is thrown away.

    `address` is "127.0.0.1:PORT", `pid` the process, `started` when it was started by the monotonic clock, and
    `ready` the seconds from then until it served. With `https` it serves HTTPS, too: at `secure_address`,
    "localhost:PORT", with the certificate in the file `certificate`, signed by itself. At the end the server is asked to stop, and any exit
    code but those of `codes` is an error, which is how a sanitizer's report fails a test. That it has ended
    before is an error, too, whatever else has gone wrong.
    """

    def __init__(self, build, options=(), source=SOURCE, content=True, environment=None,
                 keep=True, traced=True, https=False):
        self.build = pathlib.Path(build).resolve()
        self.content = content
        self.environment = environment or {}
        self.keep = ["--keep-libraries"] if keep else []
        self.options = list(options)
        self.source = source
        self.traced = traced
        self.https = https
        self.codes = (0,)  # with which the server may end
        self.patience = PATIENCE  # for its start
        self.trace = ""
        self.log = ""

    def __enter__(self):
        arguments = ["--provider-dir", self.build / "lib"]
        if self.content:
            for file in ("samples/switch.conf", "schema/serverprofile.conf"):
                arguments += ["--config", self.source / file]
        self._directory = tempfile.TemporaryDirectory()
        place = pathlib.Path(self._directory.name)
        self._trace_file = open(place / "trace", "w+b")
        self._log_file = open(place / "log", "w+b")
        port_file = place / "port"
        program = self.build / "bin" / "cimhost"
        secure = []
        if self.https:
            self.certificate = place / "certificate.pem"
            subprocess.run([program, "make-certificate", self.certificate, place / "key.pem"],
                           check=True, stdout=subprocess.DEVNULL)
            secure = ["--https-port", "0", "--https-port-file", place / "https-port",
                      "--certificate", self.certificate, "--key", place / "key.pem"]
        self.started = time.monotonic()
        self._process = subprocess.Popen(
            [program, "--port", "0", "--port-file", port_file, *secure,
             *self.keep, *arguments, *self.options],
            stdin=subprocess.DEVNULL,
            stdout=self._trace_file if self.traced else subprocess.DEVNULL, stderr=self._log_file,
            env={**os.environ, **self.environment})
        self.pid = self._process.pid
        while not (port_file.exists() and port_file.read_text().strip()):
            if self._process.poll() is not None or time.monotonic() > self.started + self.patience:
                self._process.kill()
                self._process.wait()
                self._read()
                raise RuntimeError("cimhost did not start:\n" + self.log)
            time.sleep(TICK)
        self.ready = time.monotonic() - self.started
        self.port = int(port_file.read_text())
        self.address = f"127.0.0.1:{self.port}"
        if self.https:
            self.secure_port = int((place / "https-port").read_text())
            self.secure_address = f"localhost:{self.secure_port}"
        return self

    def __exit__(self, kind, value, traceback):
        died = self._process.poll() is not None
        self._process.send_signal(signal.SIGTERM)
        try:
            code = self._process.wait(PATIENCE)
        except subprocess.TimeoutExpired:
            self._process.kill()
            code = self._process.wait()
        self._read()
        self._directory.cleanup()
        if died:
            raise RuntimeError(f"cimhost died with {code}:\n{self.log}")
        if code not in self.codes and kind is None:
            raise RuntimeError(f"cimhost ended with {code}:\n{self.log}")

    def said(self):
        """What it has said on its standard output so far."""
        return os.pread(self._trace_file.fileno(), os.fstat(self._trace_file.fileno()).st_size,
                        0).decode()

    def says(self, text, times=1):
        """Waits until it has said a text on its standard output so often."""
        end = time.monotonic() + PATIENCE
        while self.said().count(text) < times:
            if time.monotonic() > end:
                raise RuntimeError(f"cimhost did not say {text!r} {times} times:\n{self.said()}")
            time.sleep(TICK)

    def logged(self):
        """What it has logged so far."""
        return os.pread(self._log_file.fileno(), os.fstat(self._log_file.fileno()).st_size,
                        0).decode()

    def _read(self):
        for name in ("trace", "log"):
            stream = getattr(self, f"_{name}_file")
            stream.seek(0)
            setattr(self, name, stream.read().decode())
            stream.close()
