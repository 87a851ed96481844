"""Makes the modules of the walk, and those of the tests with clients, importable."""

import pathlib
import sys

SOURCE = pathlib.Path(__file__).resolve().parent.parent.parent
for room in ("walk", "tests/clients"):
    sys.path.insert(0, str(SOURCE / room))
