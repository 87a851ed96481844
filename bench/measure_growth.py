"""How the cost grows with what the server holds. Every server is started anew for each size."""

import pathlib
import tempfile

import mof
from measure_wire import load
from questions import ASSOCIATORS, INSTANCES, NAMES, SOURCE, ask_on, connect
from results import progress
from servers import Cimhost, OpenPegasus

LOAD_CONNECTIONS = 32
OPENPEGASUS_FILE = 1000  # instances in a file; its compiler refuses some 10,000
SLOW = 4  # seconds; what takes longer to load is measured fewer times
FEW = 3


class Sizes:
    """The sizes that are measured: of each kind those of a whole run, or of a quick one."""

    def __init__(self, quick):
        self.classes = (0, 1000) if quick else (0, 100, 500, 2000, 8000, 10000)
        self.namespaces = (0, 10) if quick else (0, 10, 100)
        self.qualifiers = (1000, 2000) if quick else (12500, 25000, 50000)
        self.depth = (100, 200) if quick else (100, 1000)
        self.providers = (1000, 4000) if quick else (1000, 10000)
        self.instances = (1000, 4000) if quick else (1000, 10000, 100000)
        self.connections = (32, 400) if quick else (1, 8, 32, 128, 400)
        # It takes long to start, to load and to end.
        self.openpegasus_instances = () if quick else (1000, 10000)


def builds(setup):
    sides = {"now": setup.build}
    if setup.against:
        sides["before"] = setup.against
    return sides


class Growth:
    def __init__(self, setup, results, place, sizes):
        self._setup = setup
        self._results = results
        self._place = pathlib.Path(place)
        self._sizes = sizes
        self._rounds = 1 if setup.quick else setup.rounds
        self._plain = {}  # side: seconds until it serves with nothing more

    def _file(self, name, parts):
        return mof.write(self._place / name, parts)

    def _drive(self, what, sizes, visit):
        """visit(size, side, build) for each size and side in each round, the sides in turn. It returns
        the seconds of a load, if there is one; what is slow to load is not visited in every round."""
        slow = set()
        for turn in range(self._rounds):
            for size in sizes:
                for side, build in builds(self._setup).items():
                    if (size, side) in slow and turn >= FEW:
                        continue
                    progress(f"growth: {what}, round {turn + 1} of {self._rounds}, {size}, {side}")
                    taken = visit(size, side, build)
                    if taken is not None and taken > SLOW:
                        slow.add((size, side))

    def _add(self, what, size, side, **measures):
        for measure, value in measures.items():
            self._results.add("growth", what, size, side, measure, value)

    def plain(self):
        def visit(size, side, build):
            with Cimhost(build) as server:
                self._plain.setdefault(side, []).append(server.ready)
        self._drive("nothing more", (0,), visit)
        self._plain = {side: min(seconds) for side, seconds in self._plain.items()}

    def _load_time(self, server, side):
        return max(server.ready - self._plain[side], 0.0)

    def classes(self):
        files = {size: self._file(f"classes{size}", mof.classes(size))
                 for size in self._sizes.classes}

        def visit(size, side, build):
            with Cimhost(build, [("interop", files[size])]) as server:
                self._add("classes", size, side, load=self._load_time(server, side))
                for question, measure in ((NAMES, "names"), (ASSOCIATORS, "associators")):
                    told = load(server.port, question, LOAD_CONNECTIONS, self._place)
                    self._add("classes", size, side, **{measure: told["rate"]})
                return server.ready
        self._drive("classes", self._sizes.classes, visit)

    def namespaces(self):
        def visit(size, side, build):
            schema = SOURCE / "schema" / "cim_schema.mof"
            more = [(f"bench/n{n}", schema) for n in range(size)]
            with Cimhost(build, more) as server:
                self._add("namespaces", size, side, load=self._load_time(server, side))
                told = load(server.port, NAMES, LOAD_CONNECTIONS, self._place)
                self._add("namespaces", size, side, names=told["rate"])
                return server.ready
        self._drive("namespaces", self._sizes.namespaces, visit)

    def _loads(self, what, sizes, make, namespace="interop"):
        files = {size: self._file(f"{what.replace(' ', '')}{size}", make(size)) for size in sizes}

        def visit(size, side, build):
            with Cimhost(build, [(namespace, files[size])]) as server:
                self._add(what, size, side, load=self._load_time(server, side))
                return server.ready
        self._drive(what, sizes, visit)

    def qualifiers(self):
        self._loads("qualifier declarations", self._sizes.qualifiers, mof.qualifiers)

    def depth(self):
        self._loads("depth of inheritance", self._sizes.depth, mof.depth)

    def providers(self):
        self._loads("registered providers", self._sizes.providers, mof.providers, "root/PG_InterOp")

    def instances(self):
        files = {size: self._file(f"instances{size}", mof.instances(size))
                 for size in self._sizes.instances}

        def visit(size, side, build):
            with Cimhost(build) as empty:
                nothing = empty.memory()
            with Cimhost(build, [("interop", files[size])]) as server:
                held = server.memory()
                self._add("instances", size, side, load=self._load_time(server, side),
                          memory=held - nothing)
                self._enumerate(server, size, side)
                self._add("instances", size, side, after=server.memory() - held,
                          peak=server.memory("VmHWM") - held)
                return server.ready
        self._drive("instances", self._sizes.instances, visit)

    def _enumerate(self, server, size, side):
        """Both, each on a connection of its own."""
        for question, kind in ((NAMES, "names"), (INSTANCES, "instances")):
            question = question._replace(least=size)
            with connect(server.port) as connection:
                answer = ask_on(connection, question)
            question.check(answer.bytes)
            self._add("instances", size, side, **{f"{kind} first byte": answer.first_byte,
                                                  f"{kind} whole": answer.whole})

    def connections(self):
        def visit(size, side, build):
            with Cimhost(build) as server:
                told = load(server.port, NAMES, size, self._place)
                self._add("connections", size, side, names=told["rate"], p50=told["p50"],
                          p99=told["p99"])
        self._drive("connections", self._sizes.connections, visit)

    def openpegasus(self):
        """The same enumerations there, of as many instances as it loads in a reasonable time."""
        for size in self._sizes.openpegasus_instances:
            progress(f"growth: instances, {size}, OpenPegasus (loads them in minutes)")
            parts = list(mof.instances(size))
            with OpenPegasus(self._setup.openpegasus, self._setup.build, self._place) as server:
                for first in range(0, size, OPENPEGASUS_FILE):
                    file = self._file("instances", parts[first:first + OPENPEGASUS_FILE])
                    server.must("cimmof", "cimmof", "-aE", "-aV", "-n", "interop", file)
                for _ in range(self._rounds):
                    self._enumerate(server, size, "OpenPegasus")


def measure(setup, results, sizes=None):
    with tempfile.TemporaryDirectory(prefix="bench.") as place:
        growth = Growth(setup, results, place, sizes or Sizes(setup.quick))
        growth.plain()
        growth.classes()
        growth.namespaces()
        growth.qualifiers()
        growth.depth()
        growth.providers()
        growth.instances()
        growth.connections()
        if setup.openpegasus:
            growth.openpegasus()
