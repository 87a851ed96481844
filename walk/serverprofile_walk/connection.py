"""HTTP and HTTPS to a server that is not trusted: every question has a deadline, every reply a largest
size."""

import base64
import http.client
import io
import socket
import ssl
import time
import urllib.parse
from typing import NamedTuple, Optional


class NoAnswer(Exception):
    """There is no answer of the operation: no connection, a connection that broke, a deadline, HTTP
    that refuses, or a reply that is no reply. Says what, and what to do about it. `sent` and
    `received` are the bytes that went over the wire, as far as they did."""

    def __init__(self, text, sent=b"", received=b""):
        super().__init__(text)
        self.sent = sent
        self.received = received


class Unreachable(NoAnswer):
    """No connection comes about, or HTTP refuses the request: what is asked makes no difference."""


class Server(NamedTuple):
    """Where a server is, and how to talk to it. `patience` is the time for a whole question in
    seconds, `largest` the size of a reply in bytes, `in_all` that of all replies that one Client takes,
    since whoever asks often keeps them."""

    host: str
    port: int
    tls: bool = False
    user: Optional[str] = None
    password: str = ""
    ca_file: Optional[str] = None  # None: the authorities that the system trusts
    verify: bool = True
    patience: float = 60.0
    largest: int = 8 * 1024 * 1024
    in_all: int = 128 * 1024 * 1024

    @property
    def address(self):
        host = f"[{self.host}]" if ":" in self.host else self.host
        return f"{host}:{self.port}"

    @property
    def url(self):
        return f"{'https' if self.tls else 'http'}://{self.address}"


def server(url, **more):
    """The Server of http://HOST[:PORT] or https://HOST[:PORT]. Throws ValueError, whose text says
    what is wrong with the URL."""
    try:
        parts = urllib.parse.urlsplit(url)
        port = parts.port
    except ValueError as error:
        raise ValueError(f"{url}: {error}") from None
    if parts.scheme not in ("http", "https") or not parts.hostname:
        raise ValueError(f"{url}: http://HOST:PORT or https://HOST:PORT is expected")
    if parts.username is not None or parts.password is not None:
        raise ValueError("the URL names a user: --user and --password-file are for that, since "
                         "others on this machine can see what a command line holds")
    if parts.path not in ("", "/", "/cimom") or parts.query or parts.fragment:
        raise ValueError(f"{url}: nothing is expected behind the port")
    tls = parts.scheme == "https"
    if port is None:
        port = 5989 if tls else 5988  # the ports registered for WBEM
    return Server(parts.hostname, port, tls, **more)


class _Timed:
    """What http.client takes for a socket: one whose every wait ends at `deadline`, however little
    comes each time."""

    def __init__(self, plain):
        self.plain = plain
        self.deadline = 0.0

    def wait(self):
        """Lets the next operation of the socket wait until the deadline, and no longer."""
        left = self.deadline - time.monotonic()
        if left <= 0:
            raise socket.timeout("timed out")
        self.plain.settimeout(left)

    def sendall(self, data):
        self.wait()
        self.plain.sendall(data)

    def makefile(self, _mode):
        return io.BufferedReader(_Reader(self))

    def close(self):
        self.plain.close()  # for good when the last reader closes


class _Reader(io.RawIOBase):
    def __init__(self, timed):
        super().__init__()
        self._timed = timed
        self._stream = timed.plain.makefile("rb", buffering=0)

    def readable(self):
        return True

    def readinto(self, buffer):
        self._timed.wait()
        return self._stream.readinto(buffer)

    def close(self):
        self._stream.close()
        super().close()


class Connection:
    """Posts documents to a Server, one after the other, on a connection that is kept as long as the
    server keeps it. For one thread."""

    def __init__(self, at):
        self._at = at
        self._http = None
        self._context = None

    def close(self):
        if self._http is not None:
            self._http.close()
            self._http = None

    def post(self, body, headers):
        """The body of the reply. Throws NoAnswer."""
        deadline = time.monotonic() + self._at.patience
        kept = self._http is not None
        try:
            try:
                return self._exchange(body, headers, deadline)
            except (http.client.RemoteDisconnected, ConnectionResetError, BrokenPipeError):
                # A server may close a kept connection at any time, and then has not read the request.
                self.close()
                if not kept:
                    raise
                return self._exchange(body, headers, deadline)
        except NoAnswer as error:
            self.close()
            error.sent = body
            raise
        except (OSError, http.client.HTTPException, ValueError) as error:
            self.close()
            raise NoAnswer(self._words(error), body) from error

    def _words(self, error):
        at = self._at
        if isinstance(error, socket.timeout):
            return f"{at.url}: no whole answer within {at.patience:g} seconds"
        if isinstance(error, http.client.RemoteDisconnected):
            return f"{at.url}: the server closed the connection without an answer"
        if isinstance(error, http.client.IncompleteRead):
            return f"{at.url}: the reply breaks off after {len(error.partial)} bytes"
        if isinstance(error, http.client.BadStatusLine):
            return (f"{at.url}: what came is no HTTP: {error.line[:80]!r}"
                    + ("" if at.tls else "; a port for https?"))
        return f"{at.url}: the connection broke: {error or type(error).__name__}"

    def _connect(self, deadline):
        at = self._at
        try:
            plain = socket.create_connection((at.host, at.port),
                                             max(deadline - time.monotonic(), 0.001))
            plain.setsockopt(socket.IPPROTO_TCP, socket.TCP_NODELAY, 1)
        except (OSError, UnicodeError) as error:
            words = getattr(error, "strerror", None) or str(error)
            raise Unreachable(f"{at.url}: no connection: {words}; does the server run, and is this "
                              "its address and port?") from error
        if at.tls:
            plain = self._secured(plain)
        timed = _Timed(plain)
        timed.deadline = deadline
        self._http = http.client.HTTPConnection(at.host, at.port)
        self._http.sock = timed

    def _secured(self, plain):
        at = self._at
        try:
            if self._context is None:
                self._context = ssl.create_default_context(cafile=at.ca_file)
                if not at.verify:
                    self._context.check_hostname = False
                    self._context.verify_mode = ssl.CERT_NONE
            return self._context.wrap_socket(plain, server_hostname=at.host)
        except ssl.SSLCertVerificationError as error:
            plain.close()
            raise Unreachable(f"{at.url}: the server's certificate is not trusted: "
                              f"{error.verify_message}; --ca-file names the authority that signed "
                              "it, --no-verify does without") from error
        except (OSError, ValueError) as error:
            plain.close()
            raise Unreachable(f"{at.url}: TLS fails: {error}; is this a port for https?") from error

    def _exchange(self, body, headers, deadline):
        at = self._at
        if self._http is None:
            self._connect(deadline)
        self._http.sock.deadline = deadline
        headers = {**headers, "Host": at.address}
        if at.user is not None:
            pair = f"{at.user}:{at.password}".encode()
            headers["Authorization"] = "Basic " + base64.b64encode(pair).decode()
        self._http.request("POST", "/cimom", body, headers)
        with self._http.getresponse() as reply:  # left in the middle, it would hold the connection open
            text = self._read(reply)
            closes = reply.will_close
        if closes:
            self.close()
        try:
            _judge(at, reply)
        except NoAnswer as error:
            error.received = text
            raise
        return text

    def _read(self, reply):
        """The body of a reply. Throws NoAnswer if it is too large, IncompleteRead if it breaks off."""
        largest, length = self._at.largest, reply.length
        text = b"" if (length or 0) > largest else reply.read(largest + 1)
        if (length or 0) > largest or len(text) > largest:
            raise NoAnswer(f"{self._at.url}: the reply is larger than {largest} bytes, and was not "
                           "read on")
        if length is not None and len(text) < length:
            raise http.client.IncompleteRead(text, length - len(text))
        return text


def _judge(at, reply):
    """Whether the header says that the body is an answer. Throws NoAnswer."""
    if reply.status == 401:
        if at.user is None:
            raise Unreachable(f"{at.url}: the server wants to know who asks: --user and "
                              "--password-file")
        raise Unreachable(f"{at.url}: the server does not accept the user {at.user!r} with this "
                          "password")
    if reply.status != 200:
        more = "".join(f"; {name}: {urllib.parse.unquote(reply.headers[name])}"
                       for name in ("CIMError", "PGErrorDetail", "Location") if reply.headers[name])
        raise Unreachable(f"{at.url}: HTTP {reply.status} {reply.reason}{more}")
    kind = reply.headers.get_content_type() if reply.headers["Content-Type"] else "nothing"
    if kind not in ("application/xml", "text/xml"):
        raise NoAnswer(f"{at.url}: the reply is {kind}, not application/xml: is a CIM server "
                       "listening there?")
