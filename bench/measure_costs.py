"""What requests cost the server that are meant to cost it much: processor time for each byte that is
read and written, against that of a plain request, and memory for each byte of the request."""

import pathlib
import tempfile
import threading
import time

import mof
from measure_growth import builds
from questions import connect, is_whole
from results import progress
from servers import Cimhost
from shapes import NAMESPACE, PLAIN, SHAPES, THINGS

LEAST, QUICK = 0.2, 0.02  # seconds of processor time that a figure is made of
MOST = 400  # requests for it
LARGE = 1 << 20  # bytes of a request of which several are sent at once, to see what they leave
AT_ONCE = 8


def used(pid):
    """Processor time of a process in seconds, by its clock (clock_getcpuclockid(3))."""
    return time.clock_gettime(~pid << 3 | 2)


def exchange(connection, request):
    """The bytes of one answer. The server may answer, and end, before it has read all."""
    reply = bytearray()
    try:
        connection.sendall(request)
    except (BrokenPipeError, ConnectionResetError):
        pass
    while not is_whole(reply):
        try:
            received = connection.recv(1 << 20)
        except ConnectionResetError:
            break
        if not received:
            break
        reply += received
    return reply


def cost(server, request, least):
    """Seconds and bytes, read and written, of one request; of as many as make a figure."""
    taken = size = asked = 0
    connection = connect(server.port)
    while taken < least and asked < MOST:
        start = used(server.pid)
        reply = exchange(connection, request)
        taken += used(server.pid) - start
        size += len(request) + len(reply)
        asked += 1
        if b"Connection: close" in reply[:1000] or not is_whole(reply):
            connection.close()
            connection = connect(server.port)
    connection.close()
    return taken / asked, size / asked


def ask_once(server, request):
    with connect(server.port) as connection:
        exchange(connection, request)


def measure_shape(server, shape, least, add):
    large = shape.make(shape.size)
    ask_once(server, PLAIN[0].make(1))
    before = server.memory()
    ask_once(server, large)
    add(shape.size, "peak", max(server.memory("VmHWM") - before, 0) / len(large))
    if len(large) >= LARGE:
        threads = [threading.Thread(target=ask_once, args=(server, large)) for _ in range(AT_ONCE)]
        for thread in threads:
            thread.start()
        for thread in threads:
            thread.join()
        ask_once(server, PLAIN[0].make(1))
        add(shape.size, "left", max(server.memory() - before, 0))
    for size in (shape.size // 4, shape.size):
        seconds, bytes_ = cost(server, shape.make(size), least)
        add(size, "cost", seconds / bytes_)
        add(size, "time", seconds)
        add(size, "bytes", bytes_)


def measure(setup, results, shapes=(*PLAIN, *SHAPES)):
    with tempfile.TemporaryDirectory(prefix="bench.") as place:
        file = mof.write(pathlib.Path(place) / "costly.mof", mof.costly(THINGS))
        for shape in shapes:
            for side, build in builds(setup).items():
                progress(f"costs: {shape.title}, {side}")
                with Cimhost(build, [(NAMESPACE, file)], options=["--writable"]) as server:
                    measure_shape(server, shape, QUICK if setup.quick else LEAST,
                                  lambda size, measure, value: results.add(
                                      "costs", shape.title, size, side, measure, value))
