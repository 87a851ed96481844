"""What a process holds, sampled while it works, and whether that grows."""

import pathlib
import statistics
import time
from typing import NamedTuple


class Sample(NamedTuple):
    """What a process held when `part` of the work, `done` requests, was done, or how much more than
    at another time."""

    part: float
    done: int
    memory: int  # resident, KiB
    descriptors: int
    threads: int


HELD = Sample._fields[2:]


class Process:
    """Samples of a process of this machine. Its warm-up is the first quarter of the work; after it,
    the median of the second quarter is held against that of the last."""

    def __init__(self, pid):
        self._place = pathlib.Path("/proc") / str(pid)
        self.samples = []
        self.ended = False

    def look(self, part, done):
        try:
            status = dict(line.split(":", 1) for line in
                          (self._place / "status").read_text().splitlines() if ":" in line)
            self.samples.append(Sample(part, done, int(status["VmRSS"].split()[0]),
                                       len(list((self._place / "fd").iterdir())),
                                       int(status["Threads"])))
        except (FileNotFoundError, ProcessLookupError, KeyError):  # a zombie has no VmRSS
            self.ended = True

    def quarters(self):
        """The medians of the second and of the last quarter; None if they went too fast for a
        sample in each."""
        quarters = [[s for s in self.samples if low <= s.part < low + 0.25] for low in (0.25, 0.75)]
        if not all(quarters):
            return None
        return [Sample(*map(statistics.median_low, zip(*quarter))) for quarter in quarters]

    def settles(self, patience):
        """Waits until it holds no more descriptors and threads than at first; `patience` seconds
        at most. Returns whether it does."""
        end = time.monotonic() + patience
        while not self.ended:
            self.look(1, self.samples[-1].done)
            if all(now <= first for now, first in zip(self.samples[-1][3:], self.samples[0][3:])):
                return True
            if time.monotonic() > end:
                break
            time.sleep(0.1)
        return False
