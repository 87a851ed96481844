#!/usr/bin/env python3
"""Every benchmark runs and measures what it says, and the document has the tables and plots of the kept
results.

usage: smoke_test.py BUILD-DIRECTORY [unittest arguments]
"""

import contextlib
import pathlib
import sys
import tempfile
import types
import unittest

import document
import measure_costs
import measure_growth
import measure_memory
import measure_module
import measure_users
import measure_wire
import mof
import questions
import shapes
import tables
from results import Results
from servers import Bare, Cimhost

BUILD = pathlib.Path(sys.argv[1])
SETUP = types.SimpleNamespace(build=BUILD, against=None, openpegasus=None, quick=True, rounds=1,
                              io_threads=1)


class Smoke(unittest.TestCase):
    def test_every_operation_of_the_module_has_its_floors(self):
        results = Results()
        measure_module.SHORT = 0.0001
        setup = types.SimpleNamespace(**{**vars(SETUP), "openpegasus": (
            BUILD / "bin" / "bench_module_openpegasus").exists()})
        measure_module.measure(setup, results)
        operations = results.whats("module")
        self.assertEqual(len(operations), len(set(operations)))
        self.assertGreater(len(operations), 50)
        for library, side, _, _ in measure_module.libraries(setup):
            for operation in operations:
                for kind in ("module", "floor", "made"):
                    self.assertGreater(
                        results.median("module", operation, library, side, kind), 0, operation)

    def test_the_bare_server_answers_the_bytes_that_it_was_given(self):
        with Cimhost(BUILD) as server:
            replies = [questions.ask(server.port, one).bytes for one in questions.QUESTIONS]
        with Bare(BUILD, replies) as bare, questions.connect(bare.port) as connection:
            for number, reply in enumerate(replies):
                connection.sendall(questions.NAMES.bytes(f"/{number}"))
                received = b""
                while len(received) < len(reply):
                    received += connection.recv(len(reply))
                self.assertEqual(received, reply)

    def test_a_wrong_answer_is_no_result(self):
        with Cimhost(BUILD) as server:
            with self.assertRaisesRegex(questions.WrongAnswer, "2 objects instead of 3"):
                questions.ask(server.port, questions.NAMES._replace(least=3))

    def test_a_load_has_rate_and_latency(self):
        with tempfile.TemporaryDirectory() as place, Cimhost(BUILD) as server:
            told = measure_wire.load(server.port, questions.GET_MODULE, 2, place)
        self.assertGreater(told["requests"], 0)
        self.assertGreater(told["rate"], 0)
        self.assertLessEqual(told["p50"], told["p99"])

    def test_growth_and_memory_are_measured(self):
        results = Results()
        sizes = types.SimpleNamespace(classes=(5,), namespaces=(1,), qualifiers=(5,), depth=(5,),
                                      providers=(5,), instances=(5,), connections=(2,))
        measure_growth.measure(SETUP, results, sizes)
        self.assertEqual(len(results.whats("growth")), 7)
        self.assertGreater(results.median("growth", "instances", 5, "now", "memory"), -1 << 20)
        measure_memory.FEW = 10
        measure_memory.IDLE_CONNECTIONS = 4
        measure_memory.measure(SETUP, results)
        self.assertGreater(results.median("memory", "idle", None, "now", "value"), 1 << 20)
        measure_costs.QUICK = 0.0001
        with tempfile.TemporaryDirectory() as place:
            file = mof.write(pathlib.Path(place, "costly.mof"), mof.costly(shapes.THINGS))
            with Cimhost(BUILD, [(shapes.NAMESPACE, file)], options=["--writable"]) as server:
                # One for all shapes, which are measured on one each.
                measure_costs.Cimhost = lambda *_, **__: contextlib.nullcontext(server)
                measure_costs.measure(SETUP, results, [shape._replace(size=4) for shape in
                                                       (*shapes.PLAIN, *shapes.SHAPES)])
        self.assertEqual(len(results.whats("costs")), len(shapes.PLAIN) + len(shapes.SHAPES))
        for what in results.whats("costs"):
            self.assertGreater(tables.costs_of(results, what, "now")[1], 0, what)
        measure_users.CONNECTIONS = (8,)
        measure_users.measure(SETUP, results)
        self.assertGreater(tables.users_ratio(results, questions.NAMES.title, 8, "attacked"), 0)
        for section in ("growth", "memory", "costs", "users"):
            for one in tables.tables(results, section):
                self.assertIn("| ---", one)

    def test_the_document_has_the_tables_and_plots_of_its_results(self):
        docs = questions.SOURCE / "docs"
        kept = Results.read(docs / "performance" / "results.json")
        self.assertEqual(set(kept.facts), {"module", "wire", "growth", "memory", "costs", "users"})
        text = (docs / "performance.md").read_text()
        self.assertEqual(document.filled(text, kept), text, "bench.sh --save makes it anew")
        for name in document.PLOTS:
            self.assertEqual((docs / "performance" / f"{name}.svg").read_text(),
                             document.draw(kept, name), name)
            self.assertIn(f"performance/{name}.svg", text)


if __name__ == "__main__":
    unittest.main(argv=[sys.argv[0], *sys.argv[2:]])
