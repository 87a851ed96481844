"""Each read operation of the module in process, against its floor (Module.cpp)."""

import json
import pathlib
import subprocess
import tempfile

import world
from results import progress
from servers import Cimhost

# Processor time for an operation and side in a round, in seconds.
LONG, SHORT = 0.01, 0.002


def libraries(setup):
    """(library, side, program, module)."""
    programs, module = setup.build / "bin", "libServerProfileProvider.so"
    rows = [("embedded library", "now", "bench_module", setup.build / "lib")]
    if setup.against:
        rows.append(("embedded library", "before", "bench_module_against", setup.against / "lib"))
    if setup.openpegasus:
        rows.append(("OpenPegasus's library", "now", "bench_module_openpegasus",
                     setup.build / "lib" / "openpegasus"))
        if setup.against:
            rows.append(("OpenPegasus's library", "before", "bench_module_openpegasus",
                         setup.against / "lib" / "openpegasus"))
    return [(library, side, programs / program, folder / module)
            for library, side, program, folder in rows if (folder / module).exists()]


def run(program, module, world_file, seconds, out):
    done = subprocess.run([program, module, world_file, f"--benchmark_min_time={seconds}",
                           f"--benchmark_out={out}", "--benchmark_out_format=json"],
                          stdin=subprocess.DEVNULL, stderr=subprocess.PIPE, text=True, check=False)
    if done.returncode != 0:
        raise RuntimeError(f"{program} ended with {done.returncode}:\n{done.stderr}")
    return json.loads(pathlib.Path(out).read_text())["benchmarks"]


def measure(setup, results):
    with tempfile.TemporaryDirectory(prefix="bench.") as directory:
        place = pathlib.Path(directory)
        with Cimhost(setup.build) as server:
            world.write(server.port, place / "world")
        for turn in range(setup.rounds):
            for library, side, program, module in libraries(setup):
                progress(f"module: round {turn + 1} of {setup.rounds}, {library}, {side}")
                for one in run(program, module, place / "world", SHORT if setup.quick else LONG,
                               place / "out"):
                    kind, operation = one["name"].split(" ", 1)
                    results.add("module", operation, library, side, kind, one["cpu_time"])
