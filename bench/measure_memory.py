"""Resident memory of cimhost, idle, for a connection and after many requests, and how long it takes from
its start to the first right answer. That of instances is measured with their growth."""

import contextlib
import tempfile

from measure_growth import builds
from measure_wire import load
from questions import GET_MODULE, NAMES, ask, ask_on, connect
from results import progress
from servers import Cimhost

IDLE_CONNECTIONS = 400
MANY, FEW = 1000000, 10000  # requests
AT_ONCE = 32  # connections of the many requests


def requests(server, count, place):
    """Asks at least that many."""
    asked = 0
    for question in (NAMES, GET_MODULE):
        seconds = 1
        while asked < (count // 2 if question is NAMES else count):
            told = load(server.port, question, AT_ONCE, place, seconds=seconds)
            asked += told["requests"]
            seconds = 1 if count == FEW else 5
    return asked


def measure(setup, results):
    def add(what, side, value):
        results.add("memory", what, None, side, "value", value)

    rounds = 1 if setup.quick else setup.rounds
    with tempfile.TemporaryDirectory(prefix="bench.") as place:
        for turn in range(rounds):
            for side, build in builds(setup).items():
                progress(f"memory: round {turn + 1} of {rounds}, {side}")
                with Cimhost(build) as server:
                    add("start to first right answer", side, server.first_answer(GET_MODULE))
                with Cimhost(build) as server:
                    add("idle", side, server.memory())
                    ask(server.port, NAMES)
                    before = server.memory()
                    with contextlib.ExitStack() as stack:
                        for _ in range(IDLE_CONNECTIONS):
                            ask_on(stack.enter_context(connect(server.port)), NAMES)
                        add("a connection", side, (server.memory() - before) / IDLE_CONNECTIONS)
        for side, build in builds(setup).items():
            count = FEW if setup.quick else MANY
            progress(f"memory: {count} requests, {side}")
            with Cimhost(build) as server:
                requests(server, FEW, place)
                before = server.memory()
                asked = requests(server, count, place)
                add("after many requests", side, server.memory() - before)
                add("many requests", side, asked)
