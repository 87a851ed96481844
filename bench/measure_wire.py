"""The rate and the latency of requests over the wire, with wrk, at several numbers of connections."""

import contextlib
import json
import pathlib
import subprocess
import tempfile

from questions import ASSOCIATORS, GET_MODULE, NAMES, QUESTIONS, ask
from results import progress
from servers import Bare, Cimhost, OpenPegasus, processor_time

CONNECTIONS = (1, 8, 32)
SECONDS = 1  # wrk's least


class LoadFailed(Exception):
    """Requests were not answered."""


def load(port, question, connections, place, target="/cimom", seconds=SECONDS):
    """What came of it: rate (1/s), p50, p99 (s)."""
    file = pathlib.Path(place) / "request"
    file.write_bytes(question.bytes(target))
    done = subprocess.run(
        ["wrk", "--threads", "1", "--connections", str(connections), "--duration", f"{seconds}s",
         "--timeout", "30s", "--script", pathlib.Path(__file__).resolve().parent / "post.lua",
         f"http://127.0.0.1:{port}", "--", file],
        stdin=subprocess.DEVNULL, capture_output=True, text=True, check=False)
    if done.returncode != 0:
        raise LoadFailed(f"wrk ended with {done.returncode}:\n{done.stdout}{done.stderr}")
    told = json.loads(done.stdout.splitlines()[-1])
    if told["errors"] or not told["requests"]:
        raise LoadFailed(f"{question.title}, {connections} connections: {told['errors']} requests "
                         f"failed of {told['requests']}:\n{done.stdout}")
    return {"requests": told["requests"], "rate": told["requests"] * 1e6 / told["microseconds"],
            "p50": told["p50"] / 1e6, "p99": told["p99"] / 1e6}


def measure(setup, results):
    chosen = (NAMES, GET_MODULE, ASSOCIATORS) if setup.quick else QUESTIONS
    rounds = 1 if setup.quick else setup.rounds
    with contextlib.ExitStack() as stack:
        place = stack.enter_context(tempfile.TemporaryDirectory(prefix="bench."))
        progress("wire: starting the servers")
        sides = {"now": stack.enter_context(Cimhost(setup.build))}
        if setup.against:
            sides["before"] = stack.enter_context(Cimhost(setup.against))
        replies = [ask(sides["now"].port, question).bytes for question in chosen]
        sides["bare"] = stack.enter_context(Bare(setup.build, replies, setup.io_threads))
        if setup.openpegasus:
            sides["OpenPegasus"] = stack.enter_context(OpenPegasus(setup.openpegasus, setup.build))
        for turn in range(rounds):
            for connections in CONNECTIONS:
                progress(f"wire: round {turn + 1} of {rounds}, {connections} connections")
                for number, question in enumerate(chosen):
                    for side, server in sides.items():
                        if side != "bare" and turn == 0:
                            ask(server.port, question)  # is it right?
                        before = processor_time(server.pid)
                        told = load(server.port, question, connections, place,
                                    f"/{number}" if side == "bare" else "/cimom")
                        told["processor"] = (
                            processor_time(server.pid) - before) / told["requests"]
                        for what in ("rate", "p50", "p99", "processor"):
                            results.add("wire", question.title, connections, side, what,
                                        told[what])
