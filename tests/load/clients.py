"""Asking: one client alone, and many at once with the module going and coming back meanwhile."""

import collections
import http.client
import itertools
import random
import subprocess
import threading
import time
from xml.etree import ElementTree

import judge
from request import ask

PATIENCE = 120  # seconds for an answer
GIVE_UP = 5  # transport errors in a row after which a client stops
SHOWN = 5  # wrong answers kept whole


class Unanswered(Exception):
    """No answer came, or not to what was asked."""


class Asker:
    """A client that asks on one connection, which it opens anew after an error. Not thread-safe."""

    def __init__(self, address, name="0"):
        self._connection = http.client.HTTPConnection(address, timeout=PATIENCE)
        self._name = name
        self._count = 0

    def text(self, request):
        """The answer as it came, less the ID, which is the request's."""
        self._count += 1
        message = f"{self._name}.{self._count}"
        try:
            status, text = ask(self._connection, request.namespace, request.call(), message)
        except (OSError, http.client.HTTPException) as error:
            self.close()
            raise Unanswered(f"{type(error).__name__}: {error}") from error
        if status != 200 or text.count(f' ID="{message}"') != 1:
            self.close()
            raise Unanswered(f"HTTP {status}, not an answer to message {message}: {text[:500]}")
        return text.replace(f' ID="{message}"', ' ID="-"', 1)

    def elements(self, request):
        """The objects of the answer; none of an error."""
        returned = ElementTree.fromstring(self.text(request)).find(".//IRETURNVALUE")
        return [] if returned is None else list(returned)

    def close(self):
        self._connection.close()


class Toggle:
    """Disables the module and enables it again, by commands. A window is from before the one to
    after the other; `phase` is odd within it."""

    def __init__(self, off, on, hold):
        self._commands = {"off": off, "on": on}
        self._hold = hold
        self.phase = 0
        self.windows = []  # (seconds for off, for all), as they went
        self.problems = []

    def run(self, which):
        command = self._commands[which]
        done = subprocess.run(command, shell=True, capture_output=True, text=True, check=False)
        if done.returncode != 0:
            self.problems.append(f"{command}: exit {done.returncode}: "
                                 f"{(done.stdout + done.stderr).strip()}")

    def window(self):
        start = time.monotonic()
        self.phase += 1
        self.run("off")
        off = time.monotonic() - start
        time.sleep(self._hold)
        self.run("on")
        self.phase += 1
        self.windows.append((off, time.monotonic() - start))


class Never:
    """For servers that cannot disable a module."""

    phase = 0
    windows = ()
    problems = ()


class Load:
    """Requests of `expected` by `clients` clients, each in an order of its own, with `pause` seconds
    between two: `count` of them all, or, without, as many as go into `seconds`."""

    def __init__(self, address, expected, clients, seed, count=None, seconds=None, pause=0):
        self._address = address
        self._expected = expected
        self._requests = list(expected)
        self._seed = seed
        self._pause = pause
        self._start = None
        self.count = count
        self.seconds = seconds
        self._lock = threading.Lock()
        shares = [itertools.count() if count is None else range(n, count, clients)
                  for n in range(clients)]
        self._threads = [threading.Thread(target=self._client, args=share)
                         for share in enumerate(shares)]
        self._toggle = None
        self._stopped = False
        self.done = 0
        self.outside = collections.Counter()  # verdicts outside windows
        self.inside = collections.Counter()
        self.wrong = []  # (request, expected, text, in window)
        self.unanswered = collections.Counter()  # what was said: how often
        self.blocked = collections.Counter()  # by phase
        self.connections = 0

    @property
    def part(self):
        """How much of the work is over, from 0 to 1."""
        if self.count is not None:
            return self.done / self.count
        return min(1, (time.monotonic() - self._start) / self.seconds)

    def run(self, toggle, toggles, progress):
        """Returns the seconds it took. `progress` is called all the while."""
        self._toggle = toggle
        self._start = time.monotonic()
        changer = threading.Thread(target=self._change, args=(toggles,))
        for thread in (*self._threads, changer):
            thread.start()
        try:
            while self._works():
                progress(self)
                time.sleep(0.05)
            seconds = time.monotonic() - self._start
        finally:  # also when interrupted: no thread goes on, and the module is left enabled
            self._stopped = True
            for thread in (*self._threads, changer):
                thread.join()
        progress(self)
        return seconds

    def _works(self):
        return any(thread.is_alive() for thread in self._threads)

    def _change(self, toggles):
        """Windows at even distances in the work."""
        for n in range(toggles):
            while self.part < (n + 1) / (toggles + 1):
                if not self._works():
                    return
                time.sleep(0.01)
            self._toggle.window()

    def _client(self, number, share):
        chance = random.Random(f"{self._seed} {number}")
        asker = Asker(self._address, f"c{number}")
        order, failures = [], 0
        reconnects = number % 4 == 3  # the others keep their connection to the end
        with self._lock:
            self.connections += 1
        for _ in share:
            if not order:
                order = chance.sample(self._requests, len(self._requests))
            if reconnects and chance.random() < 0.05:
                asker.close()
                with self._lock:
                    self.connections += 1
            failures = 0 if self._ask(asker, order.pop()) else failures + 1
            if failures == GIVE_UP or self._stopped or self.part == 1:
                break
            if self._pause:
                time.sleep(self._pause)
        asker.close()

    def _ask(self, asker, request):
        before = self._toggle.phase
        try:
            text = asker.text(request)
        except Unanswered as error:
            with self._lock:
                self.unanswered[str(error)] += 1
                self.connections += 1
            return False
        after = self._toggle.phase
        in_window = before % 2 == 1 or after != before
        verdict = self._expected[request].judge(text, in_window)
        with self._lock:
            self.done += 1
            (self.inside if in_window else self.outside)[verdict] += 1
            if verdict == judge.BLOCKED:
                self.blocked[before + 1 - before % 2] += 1
            if verdict == judge.WRONG and len(self.wrong) < SHOWN:
                self.wrong.append((request, self._expected[request], text, in_window))
        return True
