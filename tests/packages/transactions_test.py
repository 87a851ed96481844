#!/usr/bin/env python3
"""Installs, uses, upgrades and removes the packages, as each kind's package manager does it.

Changes the machine, so it runs in a copy (scratch.sh).
usage: transactions_test.py deb|rpm PACKAGES PACKAGES-OF-A-HIGHER-VERSION [unittest arguments]
"""

import pathlib
import sys
import unittest

from scripts_test import Scripts
from server_test import Server
from service_test import Service
from use_test import Use

__all__ = ["Scripts", "Server", "Service", "Use"]


if __name__ == "__main__":
    # The index of manual pages takes longer than all the rest, and pages are found without it.
    pathlib.Path("/var/lib/man-db/auto-update").unlink(missing_ok=True)
    unittest.main(argv=[sys.argv[0], *sys.argv[4:]])
