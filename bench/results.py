"""What was measured: rows of (section, what, at, side, measure, values), a value for each round."""

import json
import statistics
import sys
import time


class Results:
    """`at` is what the row was measured at (connections, a size), a number or None."""

    def __init__(self):
        self.facts = {}  # section: what its results depend on
        self._rows = {}

    def add(self, section, what, at, side, measure, value):
        # As it is kept, so that what is kept makes the same tables.
        rounded = float(f"{value:.5g}")
        self._rows.setdefault((section, what, at, side, measure), []).append(rounded)

    def values(self, section, what, at, side, measure):
        return self._rows.get((section, what, at, side, measure), [])

    def median(self, *key):
        """None if that was not measured."""
        values = self.values(*key)
        return statistics.median(values) if values else None

    def ratio(self, one, two):
        """One row against another, the median of the rounds; None if one was not measured."""
        ones, twos = self.values(*one), self.values(*two)
        if len(ones) != len(twos):  # not in the same rounds
            ones, twos = [self.median(*one)], [self.median(*two)]
        if not ones or None in ones + twos or 0 in twos:
            return None
        return statistics.median(a / b for a, b in zip(ones, twos))

    def spread(self, *key):
        """How far the rounds lie apart: the middle half of them against the median."""
        values = self.values(*key)
        if len(values) < 4:
            return None
        low, _, high = statistics.quantiles(values, n=4)
        return (high - low) / statistics.median(values)

    def _distinct(self, position, section, what):
        return list(dict.fromkeys(key[position] for key in self._rows if key[0] == section
                                  and what in (None, key[1])))

    def whats(self, section):
        return self._distinct(1, section, None)

    def ats(self, section, what=None):
        return self._distinct(2, section, what)

    def sides(self, section, what=None):
        return self._distinct(3, section, what)

    def spreads(self, section):
        return [spread for key in self._rows if key[0] == section
                for spread in [self.spread(*key)] if spread is not None]

    def rounds(self, section):
        """How often it was measured, at the least and at the most."""
        counts = [len(values) for key, values in self._rows.items() if key[0] == section]
        return (min(counts), max(counts)) if counts else (0, 0)

    def write(self, path):
        rows = [json.dumps([*key, values]) for key, values in self._rows.items()]
        path.write_text('{"facts": ' + json.dumps(self.facts) + ',\n"rows": [\n' +
                        ",\n".join(rows) + "\n]}\n")

    @classmethod
    def read(cls, path):
        """Empty if there is no such file."""
        results = cls()
        if path.exists():
            stored = json.loads(path.read_text())
            results.facts = stored["facts"]
            for *key, values in stored["rows"]:
                results._rows[tuple(key)] = values
        return results

    def replace(self, other):
        """Takes what the other has in the place of its own sections of these names."""
        self._rows = {key: values for key, values in self._rows.items()
                      if key[0] not in other.facts}
        self._rows.update(other._rows)
        self.facts.update(other.facts)


START = time.monotonic()


def progress(text):
    print(f"[{time.monotonic() - START:5.0f}s] {text}", file=sys.stderr, flush=True)
