"""What a process holds, sampled while it works, and whether that grows."""

import pathlib
import statistics
from typing import NamedTuple


class Sample(NamedTuple):
    """What a process held when `done` requests were done, or how much more than at another time."""

    done: int
    memory: int  # resident, KiB
    descriptors: int
    threads: int


HELD = Sample._fields[1:]


class Process:
    """Samples of a process of this machine. Its warm-up is the first quarter of the work; after it,
    the median of the second quarter is held against that of the last."""

    def __init__(self, pid):
        self._place = pathlib.Path("/proc") / str(pid)
        self.samples = []
        self.ended = False

    def look(self, done):
        try:
            status = dict(line.split(":", 1) for line in
                          (self._place / "status").read_text().splitlines() if ":" in line)
            self.samples.append(Sample(done, int(status["VmRSS"].split()[0]),
                                       len(list((self._place / "fd").iterdir())),
                                       int(status["Threads"])))
        except (FileNotFoundError, ProcessLookupError, KeyError):  # a zombie has no VmRSS
            self.ended = True

    def quarters(self, count):
        """The medians of the second and of the last quarter of `count` requests; None if they went
        too fast for a sample in each."""
        quarters = [[s for s in self.samples if low <= s.done * 4 < low + count]
                    for low in (count, 3 * count)]
        if not all(quarters):
            return None
        return [Sample(*map(statistics.median_low, zip(*quarter))) for quarter in quarters]
