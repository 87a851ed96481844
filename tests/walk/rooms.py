"""Makes the modules of the walk, and of tests/kit, importable."""

import pathlib
import sys

SOURCE = pathlib.Path(__file__).resolve().parent.parent.parent
for room in ("walk", "tests/kit"):
    sys.path.insert(0, str(SOURCE / room))
