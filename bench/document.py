"""docs/performance.md: its tables and plots, made anew from the results. The words around them are
written by hand; a table stands between <!-- NAME --> and <!-- end -->."""

import re
import statistics

import plot
import tables
from results import Results

PLOTS = {
    # file: title, label of the sizes, section and kind, measure, what becomes of it
    "classes": ("Names from the repository, requests a second, 32 connections", "more classes",
                "classes", "names", None),
    "memory": ("Memory of each instance, bytes", "instances", "instances", "memory", "each"),
    "load": ("Load of each instance, microseconds", "instances", "instances", "load", "each µs"),
    "enumeration": ("Enumerating instances, microseconds for each", "instances", "instances",
                    "instances whole", "each µs"),
    "first_byte": ("First byte of an enumeration of instances, milliseconds", "instances",
                   "instances", "instances first byte", "ms"),
    "qualifiers": ("Load of each qualifier declaration, microseconds", "qualifier declarations",
                   "qualifier declarations", "load", "each µs"),
    "depth": ("Load of each class of a line of inheritance, microseconds", "depth",
              "depth of inheritance", "load", "each µs"),
    "connections": ("Names from the repository, requests a second", "connections", "connections",
                    "names", None),
}
FORMS = {None: lambda value, at: value, "each": lambda value, at: value / at,
         "each µs": lambda value, at: value * 1e6 / at, "ms": lambda value, at: value * 1e3}


def draw(results, name):
    title, label, what, measure, form = PLOTS[name]
    lines = {}
    for side in (*tables.SIDES, "OpenPegasus"):
        for at in results.ats("growth", what):
            value = results.median("growth", what, at, side, measure)
            if value is not None and at:
                lines.setdefault(side, []).append((at, FORMS[form](value, at)))
    return plot.svg(title, label, lines)


def run_of(results, section):
    """When, on what and how a section was measured, and how far its rounds lie apart."""
    facts = results.facts[section]
    low, high = results.rounds(section)
    rounds = f"{low} to {high}" if low != high else f"{low}"
    built = "; ".join(f"{side}: {commit}" for side, commit in sorted(facts["built"].items()))
    spreads = results.spreads(section)
    apart = (f" The middle half of the rounds lies within {tables.percent(statistics.median(spreads))} "
             f"of the median for half of the rows, {tables.percent(max(spreads))} for the worst."
             if spreads else "")
    note = f" {facts['note']}." if facts.get("note") else ""
    return (f"- **{section}**: {facts['date']}, {facts['processors']} x {facts['processor']}, "
            f"{facts['system']}, load of the machine at the start {facts['load']}; rounds: "
            f"{rounds}{', --quick' if facts['quick'] else ''}.{note}{apart} Versions: {built}.")


def filled(text, results):
    blocks = {section: "\n\n".join(tables.tables(results, section)) for section in results.facts}
    blocks["aims"] = tables.aims(results)
    blocks["runs"] = "\n".join(run_of(results, section) for section in results.facts)
    for name, block in blocks.items():
        text, count = re.subn(rf"(<!-- {name} -->\n).*?(<!-- end -->)",
                              lambda found, block=block: f"{found[1]}\n{block}\n\n{found[2]}",
                              text, flags=re.DOTALL)
        if count != 1:
            raise RuntimeError(f"docs/performance.md has {count} places for {name}")
    return text


def save(results, docs):
    """Keeps the sections that were not measured as they are."""
    place = docs / "performance"
    place.mkdir(exist_ok=True)
    kept = Results.read(place / "results.json")
    kept.replace(results)
    kept.write(place / "results.json")
    document = docs / "performance.md"
    document.write_text(filled(document.read_text(), kept))
    for name in PLOTS:
        picture = draw(kept, name)
        if picture:
            (place / f"{name}.svg").write_text(picture)
