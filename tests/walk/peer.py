"""A peer that sends what a test says, right or not, to whoever connects."""

import socket
import threading


def reply(body, kind="application/xml; charset=utf-8", status="200 OK", more=""):
    """The bytes of an HTTP reply."""
    if isinstance(body, str):
        body = body.encode()
    return (f"HTTP/1.1 {status}\r\nContent-Type: {kind}\r\nContent-Length: {len(body)}\r\n{more}\r\n"
            .encode() + body)


def message(content, method="EnumerateInstanceNames", number="1"):
    """The text of a CIM-XML reply around the content of an IMETHODRESPONSE."""
    return ('<?xml version="1.0" encoding="utf-8"?><CIM CIMVERSION="2.0" DTDVERSION="2.0">'
            f'<MESSAGE ID="{number}" PROTOCOLVERSION="1.0"><SIMPLERSP><IMETHODRESPONSE NAME="{method}">'
            f'{content}</IMETHODRESPONSE></SIMPLERSP></MESSAGE></CIM>')


class Peer:
    """A context manager. For each connection, one of `scripts` says what is sent: for each request, an
    item of it; an item is bytes, or an iterable of bytes that are sent one after the other for as
    long as somebody reads. After the last item the connection is closed. Connections beyond the last
    script are closed at once. `requests` are the requests that came."""

    def __init__(self, *scripts, tls=None):
        self.scripts = list(scripts)
        self.requests = []
        self.over = threading.Event()  # set when the test has what it wanted
        self._tls = tls  # an ssl.SSLContext, for https

    def __enter__(self):
        self._listener = socket.create_server(("127.0.0.1", 0))
        scheme = "https" if self._tls else "http"
        self.url = f"{scheme}://127.0.0.1:{self._listener.getsockname()[1]}"
        self._thread = threading.Thread(target=self._serve, daemon=True)
        self._thread.start()
        return self

    def __exit__(self, *_):
        # Whoever accepts is woken by a connection, since closing alone does not wake it.
        self.scripts = None
        self.over.set()
        socket.create_connection(self._listener.getsockname()).close()
        self._thread.join()
        self._listener.close()

    def _serve(self):
        while True:
            connection, _ = self._listener.accept()
            with connection:
                if self.scripts is None:
                    return
                script = self.scripts.pop(0) if self.scripts else []
                try:
                    stream = connection
                    if self._tls:
                        stream = self._tls.wrap_socket(connection, server_side=True)
                    with stream:
                        for item in script:
                            self.requests.append(self._request(stream))
                            for part in [item] if isinstance(item, bytes) else item:
                                stream.sendall(part)
                except OSError:
                    pass  # the client has gone, which tests want of it

    @staticmethod
    def _request(connection):
        stream = connection.makefile("rb")
        lines = [stream.readline()]
        while lines[-1] not in (b"\r\n", b""):
            lines.append(stream.readline())
        head = b"".join(lines)
        length = next((int(line.split(b":")[1]) for line in lines
                       if line.lower().startswith(b"content-length:")), 0)
        return head + stream.read(length)
