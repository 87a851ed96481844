"""A CIM server of an installed OpenPegasus, isolated, with a repository of its own, for as long as a
test needs it."""

import os
import pathlib
import shutil
import signal
import socket
import subprocess
import tempfile
import time

PATIENCE = 120.0  # seconds for a start or an end
SOURCE = pathlib.Path(__file__).resolve().parent.parent.parent
INSTALLED = ("interop", "root/cimv2")  # the namespaces into which the modules are installed
SWITCH = ("schema/orvex_switch.mof", "samples/sample_switch.mof")

# The server keeps its lock files and its local socket here under fixed names, so that two on one
# machine meet. Each gets its own, in a mount namespace; what the test needs of the real ones is
# mounted into them again.
RUN_DIRECTORIES = ("/tmp", "/var/tmp", "/var/run/tog-pegasus")

# Run by bash below unshare with the directories to be seen and where they are seen, "--", and the
# server's command. A descriptor keeps hold of what is about to be hidden.
ISOLATE = r"""
set -euo pipefail
descriptors=() names=()
while [ "$1" != -- ]; do
  exec {descriptor}<"$1"
  descriptors+=("$descriptor") names+=("$2")
  shift 2
done
shift
for directory in %s; do
  [ ! -d "$directory" ] || mount -t tmpfs -o mode=1777 tmpfs "$directory"
done
for i in "${!names[@]}"; do
  mkdir -p "${names[i]}"
  mount -c --bind "/proc/self/fd/${descriptors[i]}" "${names[i]}"
done
for descriptor in "${descriptors[@]}"; do exec {descriptor}<&-; done
exec "$@"
""" % " ".join(RUN_DIRECTORIES)


class Crashed(RuntimeError):
    """The server ended by a signal."""


class CannotIsolate(RuntimeError):
    """This user may not make a mount namespace."""


def free_port():
    with socket.socket() as listener:
        listener.bind(("127.0.0.1", 0))
        return listener.getsockname()[1]


class RealServer:
    """Starts the cimserver of the installation `home` (a PEGASUS_HOME: bin, lib, repository); a
    context manager.

    `home` inside has copies of the installation's repository and configuration, links to its
    programs and libraries, and an empty provider directory, `providers`. `visible` are directories
    below /tmp that the server, or what is run beside it, needs. For these, `etc` is /etc, a copy of the
    machine's, and `var_lib` is /var/lib, which has nothing but what is visible there. `address` is
    "127.0.0.1:PORT". At the end the server is asked to stop; if it crashed, or does not end, that is
    an error.
    """

    def __init__(self, home, visible=(), options=()):
        self.installation = pathlib.Path(home).resolve()
        self.visible = [pathlib.Path(path).resolve() for path in visible]
        self.options = list(options)
        self.log = ""

    def __enter__(self):
        self._directory = tempfile.TemporaryDirectory(prefix="real_server.")
        try:
            self.home = pathlib.Path(self._directory.name)
            self._furnish()
            self._start()
        except BaseException:
            self._directory.cleanup()
            raise
        return self

    def _furnish(self):
        for name in ("bin", "lib"):
            (self.home / name).symlink_to(self.installation / name)
        shutil.copytree(self.installation / "repository", self.home / "repository")
        for name in ("cimserver_planned.conf", "cimserver_current.conf"):
            if (self.installation / name).exists():
                shutil.copy(self.installation / name, self.home)
        self.providers = self.home / "providers"
        self.providers.mkdir()
        self.var_lib = self.home / "var_lib"
        self.var_lib.mkdir()
        self.etc = self.home / "etc"
        try:
            shutil.copytree("/etc", self.etc, symlinks=True)
        except shutil.Error:
            pass  # what this user may not read
        (self.home / "trace").mkdir()
        self.environment = {
            **os.environ, "PEGASUS_HOME": str(self.home),
            "LD_LIBRARY_PATH": str(self.installation / "lib"),
            "PATH": f"{self.home / 'bin'}:{os.environ['PATH']}"}

    def _start(self):
        self.port = free_port()
        self.address = f"127.0.0.1:{self.port}"
        seen = [(self.etc, "/etc"), (self.var_lib, "/var/lib")]
        seen += [(path, path) for path in [self.home, self.installation, *self.visible]
                 if any(str(path).startswith(d + "/") for d in (*RUN_DIRECTORIES, "/var/lib"))]
        unshare = ["unshare", "--mount"]
        if os.geteuid() != 0:
            unshare += ["--user", "--map-root-user"]
        if subprocess.run([*unshare, "true"], capture_output=True, check=False).returncode != 0:
            raise CannotIsolate("this user may not isolate a server (unshare --mount)")
        self._log_file = open(self.home / "log", "w+b")
        self._process = subprocess.Popen(
            [*unshare, "bash", "-c", ISOLATE, "bash", *(name for pair in seen for name in pair), "--",
             self.installation / "bin" / "cimserver", "daemon=false", f"httpPort={self.port}",
             "enableHttpConnection=true", "enableHttpsConnection=false",
             "enableAuthentication=false", f"providerDir=lib:{self.providers}", *self.options],
            stdin=subprocess.DEVNULL, stdout=self._log_file, stderr=subprocess.STDOUT,
            env=self.environment)
        end = time.monotonic() + PATIENCE
        while not self._answers():
            if self._process.poll() is not None or time.monotonic() > end:
                self._process.kill()
                self._process.wait()
                self._read()
                raise RuntimeError("cimserver did not start:\n" + self.log)
            time.sleep(0.1)

    def _answers(self):
        # The local socket is what the tools use; it opens after the port.
        if self._process.poll() is not None:
            return False
        try:
            socket.create_connection(("127.0.0.1", self.port), 1).close()
        except OSError:
            return False
        return self.run(["cimcli", "ns"]).returncode == 0

    def inside(self, command):
        """The command that runs `command` where the server is."""
        enter = ["nsenter", "--mount", "--target", str(self._process.pid)]
        if os.geteuid() != 0:
            enter += ["--user", "--preserve-credentials"]
        return [*enter, "--wd=" + os.getcwd(), "--", *command]

    def run(self, command):
        """Runs a command beside the server; returns a CompletedProcess with texts."""
        return subprocess.run(self.inside(command), stdin=subprocess.DEVNULL, capture_output=True,
                              text=True, check=False, env=self.environment)

    def popen(self, command):
        """Starts a command beside the server, with pipes for its output."""
        return subprocess.Popen(self.inside(command), stdin=subprocess.DEVNULL,
                                stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True,
                                env=self.environment)

    def __exit__(self, kind, value, traceback):
        code = self._stop()
        self._read()
        self._directory.cleanup()
        if code < 0:  # which explains whatever else went wrong
            raise Crashed(f"cimserver crashed ({signal.Signals(-code).name}):\n{self.log}") from value
        if code != 0 and kind is None:
            raise RuntimeError(f"cimserver ended with {code}:\n{self.log}")

    def _stop(self):
        if self._process.poll() is None:
            self._process.terminate()  # as a service manager does; cimserver -s looks each second only
        end = time.monotonic() + PATIENCE
        while self._process.poll() is None:
            if time.monotonic() > end:
                self._process.kill()
            time.sleep(0.02)
        return self._process.returncode

    def _read(self):
        self._log_file.seek(0)
        self.log = self._log_file.read().decode(errors="replace")
        self._log_file.close()


class Installed(RealServer):
    """The server with both modules, installed as the documentation says: the libraries in a provider
    directory, serverprofile-register install, and the sample switch in both namespaces. `build` is the
    build directory, with the modules for the installation in lib/openpegasus."""

    def __init__(self, home, build, options=()):
        self.build = pathlib.Path(build).resolve()
        super().__init__(home, visible=[SOURCE, self.build], options=options)

    def __enter__(self):
        super().__enter__()
        try:
            for library in (self.build / "lib" / "openpegasus").glob("*.so"):
                shutil.copy(library, self.providers)
            self.must("serverprofile-register", self.build / "bin" / "serverprofile-register",
                      "install", "--mof", SOURCE / "schema")
            for namespace in INSTALLED:
                for file in SWITCH:
                    self.must(f"cimmof {file}", "cimmof", "-aE", "-aV", "-n", namespace,
                              SOURCE / file)
        except BaseException as error:
            self.__exit__(type(error), error, None)
            raise
        return self

    def must(self, what, *command):
        """Runs a command beside the server; throws RuntimeError if it fails."""
        done = self.run(list(map(str, command)))
        if done.returncode != 0:
            raise RuntimeError(f"{what}: {done.returncode}\n{done.stdout}{done.stderr}")
        return done.stdout
