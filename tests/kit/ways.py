"""The ways in which clients reach the served sample switch: plain, over TLS, over TLS with a user. A
test of a client goes through all of them."""

import os
import pathlib
import subprocess
import tempfile
from typing import NamedTuple

from served import NAMESPACES, Served

# With these, pywbem asks others than it is told whether to trust a certificate.
for name in ("REQUESTS_CA_BUNDLE", "CURL_CA_BUNDLE"):
    os.environ.pop(name, None)

USER, PASSWORD = "operator", "Kelmar-3.0"


class Way(NamedTuple):
    name: str
    tls: bool
    user: bool


PLAIN = Way("plain", False, False)
TLS = Way("TLS", True, False)
TLS_AND_USER = Way("TLS and a user", True, True)
WAYS = (PLAIN, TLS, TLS_AND_USER)
PLAIN_AND_USER = Way("plain and a user", False, True)  # for clients that know no TLS


class Reached(Served):
    """Served, to be reached in one way: at `url`, which is that of `address`; `plain_address` is without
    TLS. With TLS, `certificate` is the file of the server's certificate, which vouches for itself, else
    None; `user` and `password` are None where none is wanted. `namespaces` are those to be walked: all,
    plain, and otherwise the one in which clients look first."""

    def __init__(self, build, way, options=(), **more):
        self._secrets = tempfile.TemporaryDirectory()
        self._folder = pathlib.Path(self._secrets.name)
        self.way = way
        self.namespaces = NAMESPACES if way == PLAIN else ("interop",)
        self.certificate = None
        self.user, self.password = (USER, PASSWORD) if way.user else (None, None)
        super().__init__(build, [*self._users(build), *options], https=way.tls, **more)

    def _users(self, build):
        if not self.way.user:
            return []
        users = self._folder / "users"
        subprocess.run([pathlib.Path(build) / "bin" / "cimhost", "passwd", "--role", "write", users, USER],
                       input=PASSWORD + "\n", text=True, check=True, stdout=subprocess.DEVNULL)
        return ["--users", users]

    def __enter__(self):
        super().__enter__()
        self.plain_address = self.address
        if self.way.tls:
            self.address = f"127.0.0.1:{self.secure_port}"
        self.url = f"{'https' if self.way.tls else 'http'}://{self.address}"
        return self

    def __exit__(self, *error):
        try:
            super().__exit__(*error)
        finally:
            self._secrets.cleanup()

    def pywbem(self):
        """What pywbem.WBEMConnection takes besides the URL."""
        return {"creds": (self.user, self.password) if self.user else None,
                "ca_certs": self.certificate and str(self.certificate)}

    def pywbemcli(self):
        """The options with which pywbemcli finds the server."""
        return ["-s", self.url, *(["-u", self.user, "-p", self.password] if self.user else []),
                *(["--ca-certs", self.certificate] if self.certificate else [])]

    def own_client(self):
        """What connection.server of walk/ takes besides the URL."""
        return {"user": self.user, "password": self.password or "",
                "ca_file": self.certificate and str(self.certificate)}
