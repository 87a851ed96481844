"""Says what happened, and keeps whether all is well."""

import judge
from process import HELD, Sample

# Growth that is taken for noise: what the allocator keeps for threads that come and go, and for
# each request less than the smallest block that malloc hands out (24 bytes).
NOISE = 2048  # KiB
A_REQUEST = 16  # bytes
FEW = 8  # descriptors or threads
MOST_IN_WINDOWS = 0.5  # of all requests; the others are judged strictly
MOST_TOLD = 10  # of each kind of problem


def counts(counter):
    return ", ".join(f"{number} {what}" for what, number in sorted(counter.items())) or "none"


class Report:
    """Prints as things happen. `problems` is how many were found."""

    def __init__(self):
        self.problems = 0

    def say(self, text):
        print(text, flush=True)

    def problem(self, text):
        self.problems += 1
        self.say(f"PROBLEM: {text}")

    def list(self, problems):
        for text in problems[:MOST_TOLD]:
            self.problem(text)
        if len(problems) > MOST_TOLD:
            self.problem(f"and {len(problems) - MOST_TOLD} more of these")

    def answers(self, name, load, seconds):
        whole = "" if load.count is None else f"of {load.count} "
        self.say(f"{name}: {load.done} {whole}requests answered in {seconds:.1f} s "
                 f"({load.done / seconds:.0f}/s) on {load.connections} connections")
        self.say(f"{name}: outside windows {counts(load.outside)}; within {counts(load.inside)}")
        wrong = load.outside[judge.WRONG] + load.inside[judge.WRONG]
        if wrong:
            self.problem(f"{name}: {wrong} wrong answers; the first:")
        for request, expected, text, inside in load.wrong:
            self.say(f"--- {'within a window' if inside else 'outside windows'}: {request}\n"
                     f"--- alone:\n{expected.text}\n--- now:\n{text}")
        self.list([f"{name}: {number} times no answer: {text}"
                   for text, number in load.unanswered.most_common()])
        if load.count is not None and load.done != load.count:
            self.problem(f"{name}: {load.count - load.done} requests were not answered")

    def windows(self, name, load, toggle, wanted):
        for number, (off, whole) in enumerate(toggle.windows, 1):
            blocked = load.blocked[2 * number - 1]
            self.say(f"{name}: window {number}: {whole:.2f} s, {off:.2f} of them to disable; "
                     f"{blocked} blocked")
            if not blocked:
                self.problem(f"{name}: no request was blocked in window {number}")
        self.list(toggle.problems)
        if len(toggle.windows) != wanted:
            self.problem(f"{name}: {len(toggle.windows)} windows instead of {wanted}")
        inside = sum(load.inside.values())
        if inside > MOST_IN_WINDOWS * load.done:
            self.problem(f"{name}: {inside} of {load.done} requests were in windows, too many for "
                         f"a judgement: ask for more --requests or fewer --toggles")

    def bad(self, name, bad):
        """What the bad clients did, and where they were answered otherwise than they should be."""
        self.say(f"{name}: bad clients: {counts(bad.taken)}")
        self.list([f"{name}: {number} times {text}" for text, number in bad.wrong.most_common()])

    def process(self, name, process):
        """Returns the growth after the warm-up; None if there are too few samples."""
        if process.ended:
            self.problem(f"{name}: the server's process ended")
            return None
        quarters = process.quarters()
        for what in HELD:
            values = [getattr(sample, what) for sample in process.samples]
            warm = "" if quarters is None else (
                "{} and {} in the second and last quarter, ".format(
                    *(getattr(quarter, what) for quarter in quarters)))
            self.say(f"{name}: {what}{' (KiB)' if what == 'memory' else ''} {values[0]} at the "
                     f"start, {warm}{values[-1]} at the end, at most {max(values)}")
        return quarters and Sample(*(last - warm for warm, last in zip(*quarters)))

    def settled(self, process, settled):
        """What is left when all clients are gone."""
        first, last = process.samples[0], process.samples[-1]
        for what in HELD[1:]:
            self.say(f"load: {getattr(last, what)} {what} when all clients were gone, "
                     f"{getattr(first, what)} before they came")
        if not settled and not process.ended:
            self.problem("the server did not give back what its clients took")

    def growth(self, grown, control, judged, swing=0):
        """Judges the growth in the load of what `judged` names. What the control grew by, beyond
        noise, is the server's own, and none of the module's. `swing`: KiB of memory by which the
        server may happen to hold more at one time than at another."""
        if grown is None:
            self.problem("the load was too short to see whether the server grows")
            return
        own = max(0, control.memory - NOISE) * grown.done // control.done if control else 0
        bound = NOISE + swing + own + A_REQUEST * grown.done // 1024
        if "memory" in judged:
            self.say(f"load: {grown.memory:+} KiB in {grown.done} requests after the warm-up; "
                     f"allowed are {bound}, {own} of them as the server's own")
            if grown.memory > bound:
                self.problem(f"the server's memory grew by {grown.memory} KiB, {bound} are allowed")
        for what in judged:
            if what != "memory" and getattr(grown, what) > FEW:
                self.problem(f"the server's {what} grew by {getattr(grown, what)}, {FEW} are "
                             f"allowed")
