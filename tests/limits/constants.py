"""The constants of embedded/limits/Limits.h, as they are written there."""

import pathlib
import re
from typing import NamedTuple

SOURCE = pathlib.Path(__file__).resolve().parent.parent.parent
UNITS = {"KiB": 1024, "MiB": 1024 * 1024}


class Limit(NamedTuple):
    value: int
    shown: str  # as the manual page has it
    items: tuple  # of the manual page


def limits():
    """{name: Limit}. Each line with a constant has to be understood."""
    found = {}
    for line in (SOURCE / "embedded/limits/Limits.h").read_text(encoding="utf-8").splitlines():
        if not line.startswith("constexpr ") or re.match(r"constexpr std::size_t [KM]iB = ", line):
            continue
        read = re.fullmatch(r"constexpr [\w:]*?(seconds|minutes)? ?(\w+)(?: = |\{)(\d+)"
                            r"(?: \* (KiB|MiB))?\}?; +///< (.*)", line)
        if not read:
            raise ValueError(f"Limits.h: no number and item of the manual page: {line}")
        time, name, number, unit, items = read.groups()
        found[name] = Limit(int(number) * UNITS.get(unit, 1),
                            " ".join(filter(None, (number, unit or time))),
                            tuple(items.split("; ")))
    return found
