"""The results as tables, in Markdown, which is also what is printed."""

import statistics

from questions import QUESTIONS
from shapes import PLAIN, SHAPES

SIDES = ("before", "now")
LIBRARIES = ("OpenPegasus's library", "embedded library")
MODULE_AIM = 1.5


def number(value, unit=""):
    """With three digits that count."""
    if value is None:
        return "-"
    if abs(value) >= 999.5:
        return f"{round(value):,}{unit}"
    digits = f"{value:.3g}"
    return f"{digits if 'e' not in digits else format(value, '.4f')}{unit}"


def percent(value):
    return "-" if value is None else f"{100 * value:.0f} %"


def seconds(value):
    if value is None:
        return "-"
    for factor, unit in ((1, "s"), (1e3, "ms"), (1e6, "µs")):
        if abs(value) * factor >= 1:
            return f"{number(value * factor)} {unit}"
    return f"{number(value * 1e9)} ns"


def size(value):
    if value is None:
        return "-"
    for factor, unit in ((1 << 30, "GB"), (1 << 20, "MB"), (1 << 10, "kB")):
        if abs(value) >= factor:
            return f"{number(value / factor)} {unit}"
    return f"{number(value)} B"


def table(title, head, rows):
    """Columns in which no row has anything are left out."""
    kept = [i for i in range(len(head)) if i == 0 or any(row[i] != "-" for row in rows)]
    if not rows or len(kept) < 2:
        return f"**{title}**: not measured"
    lines = [f"**{title}**", "",
             "| " + " | ".join(head[i] for i in kept) + " |",
             "| --- " + "| ---: " * (len(kept) - 1) + "|"]
    lines += ["| " + " | ".join(row[i] for i in kept) + " |" for row in rows]
    return "\n".join(lines)


# The module


FLOORS = {"floor": "the floor", "made": "the floor that makes associations"}


def module_ratio(results, operation, library, side, floor="floor"):
    key = ("module", operation, library, side)
    return results.ratio((*key, "module"), (*key, floor))


def module_ratios(results, library, side, floor="floor"):
    found = (module_ratio(results, operation, library, side, floor)
             for operation in results.whats("module"))
    return [ratio for ratio in found if ratio is not None]


def module(results):
    rows = []
    for floor, title in FLOORS.items():
        for library in LIBRARIES:
            for side in SIDES:
                ratios = module_ratios(results, library, side, floor)
                if ratios:
                    rows.append([
                        f"{title}; {library}, {side}", number(min(ratios)),
                        number(statistics.median(ratios)), number(max(ratios)),
                        f"{sum(ratio <= MODULE_AIM for ratio in ratios)} of {len(ratios)}"])
    yield table("The module against its floors: processor time, times that of the floor",
                ["", "least", "median", "most", f"at most {MODULE_AIM}"], rows)
    for library in LIBRARIES:
        rows = []
        for operation in results.whats("module"):
            row = [operation]
            row += [number(module_ratio(results, operation, library, side, floor))
                    for floor in FLOORS for side in SIDES]
            for side, kind in (*((side, "module") for side in SIDES), *(
                    ("now", floor) for floor in FLOORS)):
                taken = results.median("module", operation, library, side, kind)
                row.append(seconds(taken and taken / 1e9))
            rows.append(row)
        yield table(f"Each operation on {'the ' * library.startswith('e')}{library}",
                    ["operation", "/ floor, before", "/ floor, now", "/ making floor, before",
                     "/ making floor, now", *SIDES, "floor, now", "making floor, now"], rows)


# The wire


def wire_ratio(results, what, at, side, other, measure="rate"):
    return results.ratio(("wire", what, at, side, measure), ("wire", what, at, other, measure))


def tail(results, what, at, side):
    """p99 in p50."""
    return results.ratio(("wire", what, at, side, "p99"), ("wire", what, at, side, "p50"))


def wire(results):
    rates, times, latencies = [], [], []
    for what in results.whats("wire"):
        for at in results.ats("wire", what):
            def median(side, measure):
                return results.median("wire", what, at, side, measure)
            rates.append([
                f"{what}, {at}", number(median("now", "rate"), "/s"),
                percent(wire_ratio(results, what, at, "before", "bare")),
                percent(wire_ratio(results, what, at, "now", "bare")),
                number(wire_ratio(results, what, at, "before", "OpenPegasus")),
                number(wire_ratio(results, what, at, "now", "OpenPegasus")),
                number(wire_ratio(results, what, at, "now", "before"))])
            times.append([f"{what}, {at}", *(seconds(median(side, "processor")) for side in
                                             (*SIDES, "OpenPegasus", "bare")),
                          number(wire_ratio(results, what, at, "now", "before", "processor"))])
            row = [f"{what}, {at}"]
            for side in (*SIDES, "OpenPegasus", "bare"):
                p50, p99 = median(side, "p50"), median(side, "p99")
                row.append("-" if p50 is None else f"{seconds(p50)}, {seconds(p99)}, "
                           f"{number(tail(results, what, at, side))}")
            latencies.append(row)
    yield table("Rates", ["request, connections", "now", "before / bare", "now / bare",
                          "before / OpenPegasus", "now / OpenPegasus", "now / before"], rates)
    yield table("Processor time of the server for a request",
                ["request, connections", *SIDES, "OpenPegasus", "bare", "now / before"], times)
    yield table("Latencies: p50, p99, p99 in p50",
                ["request, connections", *SIDES, "OpenPegasus", "bare"], latencies)


# Growth


def per_item(results, what, at, side, measure):
    median = results.median("growth", what, at, side, measure)
    return median / at if median is not None and at else None


def against_first(results, what, at, side, measure, each=False):
    """The measure at a size against that at the first size, for each item or whole."""
    first = results.ats("growth", what)[0]
    ratio = results.ratio(("growth", what, at, side, measure),
                          ("growth", what, first, side, measure))
    return ratio * first / at if ratio is not None and each and at else ratio


def growth_rows(results, what, cells):
    """A row for each size, with the cells of each side in turn."""
    return [[f"{at:,}", *(cell(at, side) for cell in cells for side in SIDES)]
            for at in results.ats("growth", what)]


def growth_table(results, title, what, head, cells):
    return table(title, [what, *(f"{text}, {side}" for text in head for side in SIDES)],
                 growth_rows(results, what, cells))


def growth(results):
    def whole(what, measure, form):
        return lambda at, side: form(results.median("growth", what, at, side, measure))

    def each(what, measure, form):
        return lambda at, side: form(per_item(results, what, at, side, measure))

    def relative(what, measure):
        return lambda at, side: percent(against_first(results, what, at, side, measure))

    def relative_each(what, measure):
        return lambda at, side: percent(against_first(results, what, at, side, measure, True))

    yield growth_table(
        results, "More classes: rates at 32 connections, against those without", "classes",
        ["names", "names in %", "associators in %", "load of a class"],
        [whole("classes", "names", lambda v: number(v, "/s")), relative("classes", "names"),
         relative("classes", "associators"), each("classes", "load", seconds)])
    yield growth_table(
        results, "More namespaces, each with the schema: the rate of names, and the load",
        "namespaces", ["names", "names in %", "load of a namespace"],
        [whole("namespaces", "names", lambda v: number(v, "/s")), relative("namespaces", "names"),
         each("namespaces", "load", seconds)])
    for what in ("qualifier declarations", "depth of inheritance", "registered providers"):
        if what in results.whats("growth"):  # a saved run may be older
            yield growth_table(results, f"Load: {what}", what, ["whole", "each", "each in %"],
                               [whole(what, "load", seconds), each(what, "load", seconds),
                                relative_each(what, "load")])
    what = "instances"
    yield growth_table(results, "Instances: memory and load", what,
                       ["memory of each", "load of each", "load of each in %",
                        "memory left by the enumerations", "at most meanwhile"],
                       [each(what, "memory", size), each(what, "load", seconds),
                        relative_each(what, "load"), whole(what, "after", size),
                        whole(what, "peak", size)])
    for kind in ("names", "instances"):
        rows = growth_rows(results, what, [
            whole(what, f"{kind} first byte", seconds), whole(what, f"{kind} whole", seconds),
            each(what, f"{kind} whole", seconds), relative_each(what, f"{kind} whole")])
        for row, at in zip(rows, results.ats("growth", what)):
            row.append(seconds(results.median("growth", what, at, "OpenPegasus",
                                              f"{kind} whole")))
        yield table(f"Enumerating {kind}",
                    ["instances", *(f"{text}, {side}" for text in
                                    ("first byte", "whole", "each", "each in %")
                                    for side in SIDES), "whole, OpenPegasus"], rows)
    what = "connections"
    yield growth_table(results, "More connections: names from the repository", what,
                       ["rate", "p50", "p99"],
                       [whole(what, "names", lambda v: number(v, "/s")),
                        whole(what, "p50", seconds), whole(what, "p99", seconds)])


# Memory


def memory(results):
    forms = {"start to first right answer": seconds, "many requests": number}
    rows = [[what, *(forms.get(what, size)(results.median("memory", what, None, side, "value"))
                     for side in SIDES)] for what in results.whats("memory")]
    yield table("Memory and start", ["", *SIDES], rows)


# Costs


PLAIN_TITLES = [shape.title for shape in PLAIN]
BY_STORE = [shape.title for shape in SHAPES if shape.by_store]


def costs_of(results, what, side):
    """For each byte, of the smaller and of the larger number; None if that was not measured."""
    found = [results.median("costs", what, at, side, "cost")
             for at in sorted(results.ats("costs", what))]
    return found if len(found) == 2 and None not in found else None


def against_plain(results, what, side):
    """The cost of a byte against that of the plain request."""
    found, plain = costs_of(results, what, side), costs_of(results, PLAIN_TITLES[0], side)
    return found[1] / plain[1] if found and plain else None


def worst_cost(results, side, by_store):
    return worst((against_plain(results, what, side) for what in results.whats("costs")
                  if what not in PLAIN_TITLES and (what in BY_STORE) == by_store), max)


def costs(results):
    def last(what, side, measure):
        return results.median("costs", what, max(results.ats("costs", what)), side, measure)

    def growth_of(what, side):
        found = costs_of(results, what, side)
        return found and found[1] / found[0]

    rows = [[what, size(last(what, "now", "bytes")),
             *(seconds(last(what, side, "time")) for side in SIDES),
             *(seconds(last(what, side, "cost")) for side in SIDES)]
            for what in results.whats("costs") if what in PLAIN_TITLES]
    yield table("Plain requests", ["request", "bytes", *SIDES, *(f"a byte, {side}" for side in SIDES)],
                rows)
    rows = [[f"{max(results.ats('costs', what)):,} {what}" if max(results.ats("costs", what)) > 4
             else what, size(last(what, "now", "bytes")),
             *(seconds(last(what, side, "time")) for side in SIDES),
             *(number(against_plain(results, what, side)) for side in SIDES),
             *(number(growth_of(what, side)) for side in SIDES),
             *("-" if last(what, side, "left") is None else number(last(what, side, "peak"))
               for side in SIDES),
             *(size(last(what, side, "left")) for side in SIDES)]
            for what in results.whats("costs") if what not in PLAIN_TITLES]
    yield table("Costly requests", ["request", "bytes", *SIDES,
                                    *(f"{text}, {side}" for text in
                                      ("a byte / plain", "a byte, 4 N / N", "memory / request",
                                       "memory left") for side in SIDES)], rows)


# Users


USER_SIDES = ("without users", "with users", "attacked")


def users_ratio(results, what, at, side, measure="rate"):
    return results.ratio(("users", what, at, side, measure),
                         ("users", what, at, USER_SIDES[0], measure))


def users(results):
    rows, attempts = [], []
    for what in results.whats("users"):
        for at in results.ats("users", what):
            def median(side, measure):
                return results.median("users", what, at, side, measure)
            if at is None:
                attempts.append([what, *(seconds(median("now", measure))
                                         for measure in ("processor", "whole"))])
                continue
            rows.append([f"{what}, {at}",
                         *(number(median(side, "rate"), "/s") for side in USER_SIDES),
                         *(percent(users_ratio(results, what, at, side)) for side in USER_SIDES[1:]),
                         *(seconds(median(side, "processor")) for side in USER_SIDES[:2]),
                         *(seconds(median(side, "p99")) for side in USER_SIDES)])
    yield table("A user whose password is remembered",
                ["request, connections", *USER_SIDES, "with / without", "attacked / without",
                 *(f"processor time, {side}" for side in USER_SIDES[:2]),
                 *(f"p99, {side}" for side in USER_SIDES)], rows)
    yield table("An attempt that fails", ["", "processor time of the server", "until the answer"],
                attempts)


def tables(results, section):
    return list({"module": module, "wire": wire, "growth": growth, "memory": memory,
                 "costs": costs, "users": users}[section](results))


# The aims


def at_least(bound):
    return lambda value: value >= bound


def at_most(bound):
    return lambda value: value <= bound


def worst(values, choose=min):
    values = [value for value in values if value is not None]
    return choose(values) if values else None


KIB = 1024
REPOSITORY = [question.title for question in QUESTIONS[:3]]


def largest(results, what):
    ats = results.ats("growth", what)
    return ats[-1] if ats else None


def fall(results, side):
    """The rate with the largest number of more classes, of 8,000 and fewer, against that without."""
    ats = [at for at in results.ats("growth", "classes") if at <= 8000]
    return against_first(results, "classes", ats[-1], side, "names") if ats else None


def of_instances(measure, each=True):
    def found(results, side):
        last = largest(results, "instances")
        return None if last is None else against_first(results, "instances", last, side, measure,
                                                       each)
    return found


def of_today(measure):
    """Against the other build's, at the largest size."""
    def found(results, side):
        last = largest(results, "instances")
        return results.ratio(("growth", "instances", last, side, measure),
                             ("growth", "instances", last, "before", measure))
    return found


def names_against_openpegasus(results, side):
    at = ("growth", "instances", 10000)
    return results.ratio((*at, side, "names whole"), (*at, "OpenPegasus", "names whole"))


AIMS = (
    ("repository answers against the bare server's, the least of all at 32 connections",
     "at least 60 %", at_least(0.6), percent,
     lambda r, side: worst(wire_ratio(r, what, 32, side, "bare") for what in REPOSITORY)),
    ("repository answers against OpenPegasus's, the least of all at 32 connections",
     "at least 2", at_least(2), number,
     lambda r, side: worst(wire_ratio(r, what, 32, side, "OpenPegasus") for what in REPOSITORY)),
    ("names with 8,000 more classes (--quick: the largest number) against those without",
     "at least 90 %", at_least(0.9), percent, fall),
    ("enumerating 10,000 names, against OpenPegasus", "at most 1", at_most(1),
     number, names_against_openpegasus),
    ("memory of each instance, of the largest number", "at most 1.5 kB", at_most(1.5 * KIB), size,
     lambda r, side: per_item(r, "instances", largest(r, "instances"), side, "memory")),
    ("load of each instance, of the largest number against the smallest", "at most 120 %",
     at_most(1.2), percent, of_instances("load")),
    ("the same against before", "at most 20 %", at_most(0.2), percent, of_today("load")),
    ("enumerating instances, time for each, of the largest number against the smallest",
     "at most 120 %", at_most(1.2), percent, of_instances("instances whole")),
    ("the same against before", "at most 20 %", at_most(0.2), percent, of_today("instances whole")),
    ("first byte of the largest enumeration against the smallest", "at most 200 %", at_most(2),
     percent, of_instances("instances first byte", each=False)),
    ("memory left by the largest enumeration", "at most 32 MB", at_most(32 << 20), size,
     lambda r, side: r.median("growth", "instances", largest(r, "instances"), side, "after")),
    ("p99 in p50 at 32 connections, the most of all", "at most 4", at_most(4), number,
     lambda r, side: worst((tail(r, what, 32, side) for what in r.whats("wire")), max)),
    ("cost of a byte, read or written, of the costliest request against the plain one's",
     "at most 5", at_most(5), number, lambda r, side: worst_cost(r, side, False)),
    ("the same where it follows from what is stored and is not written",
     "at most 5", at_most(5), number, lambda r, side: worst_cost(r, side, True)),
    ("the rate of a remembered user against that without users, the least of all", "at least 80 %",
     at_least(0.8), percent, lambda r, side: side == "now" and worst(
         users_ratio(r, what, at, "with users") for what in r.whats("users")
         for at in r.ats("users", what) if at is not None) or None),
    ("the module against its floor on OpenPegasus's library, the most of all operations",
     f"at most {MODULE_AIM}", at_most(MODULE_AIM), number,
     lambda r, side: worst(module_ratios(r, LIBRARIES[0], side), max)),
    ("the same against the floor that makes associations", f"at most {MODULE_AIM}",
     at_most(MODULE_AIM), number,
     lambda r, side: worst(module_ratios(r, LIBRARIES[0], side, "made"), max)),
)


def aims(results):
    """Those for which something was measured."""
    rows = []
    for what, aim, holds, form, value in AIMS:
        before, now = (value(results, side) for side in SIDES)
        if before is None and now is None:
            continue
        if "against before" in what:
            before = None
        rows.append([what, aim, form(before), form(now),
                     "-" if now is None else "yes" if holds(now) else "**no**"])
    return table("Aims", ["what", "aim", *SIDES, "met"], rows)
