"""The server of an OpenPegasus with both modules, installed as the documentation says: the libraries in
a provider directory, serverprofile-register install, and the sample switch in both namespaces."""

import pathlib
import shutil

from real_server import RealServer

SOURCE = pathlib.Path(__file__).resolve().parent.parent.parent
NAMESPACES = ("interop", "root/cimv2")
SWITCH = ("schema/orvex_switch.mof", "samples/sample_switch.mof")


class Installed(RealServer):
    """`home` is the PEGASUS_HOME of an installation; `build` the build directory, with the modules for
    it in lib/openpegasus. A context manager, as RealServer is."""

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
            for namespace in NAMESPACES:
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
