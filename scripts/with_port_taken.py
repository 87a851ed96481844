#!/usr/bin/env python3
"""Runs a command while a TCP port of 127.0.0.1 is taken, and ends as the command does.
usage: with_port_taken.py PORT COMMAND [ARGUMENT ...]"""

import socket
import subprocess
import sys

taken = socket.socket()
try:
    taken.bind(("127.0.0.1", int(sys.argv[1])))
    taken.listen()
except OSError:
    pass  # somebody else has it: as good
sys.exit(subprocess.run(sys.argv[2:], check=False).returncode)
