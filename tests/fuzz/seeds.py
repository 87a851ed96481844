#!/usr/bin/env python3
"""Makes seeds of the wire cases: the corpora of the fuzz targets cimxml, headers and http get a file
for each request that differs (for http: in what HTTP sees of it), named after its case. To be run
when cases were added; the files are kept with the sources.

usage: seeds.py
"""

import pathlib
import re
import sys

HERE = pathlib.Path(__file__).resolve().parent
sys.path.insert(0, str(HERE.parent / "wire"))
import run_cases

SERVER = ("127.0.0.1", 5988)


def main():
    if sys.argv[1:]:
        print(__doc__.strip(), file=sys.stderr)
        return 0 if sys.argv[1] in ("--help", "-h") else 2
    seen = set()

    def keep(target, name, data, what=None):
        if (target, what or data) not in seen:
            seen.add((target, what or data))
            (HERE / "corpus" / target).mkdir(parents=True, exist_ok=True)
            (HERE / "corpus" / target / name).write_bytes(data)

    for case in sorted((HERE.parent / "wire" / "cases").iterdir()):
        steps = run_cases.steps_of(case)
        sent = [run_cases.wire_bytes(steps, at, SERVER)
                for at, step in enumerate(steps) if step.kind != "reply"]
        header, _, body = sent[0].partition(b"\r\n\r\n")
        framing = re.sub(rb"(?m)^(CIM|\d\d-CIM|Content-Length:).*\n", b"", header)
        keep("http", case.name, b"".join(sent), (framing, len(sent)))
        if re.match(rb"(M-)?POST ", header):
            keep("headers", case.name, header.replace(b"\r\n", b"\n") + b"\n\n" + body)
        if body.startswith(b"<?xml"):
            keep("cimxml", case.name, body)
    return 0


if __name__ == "__main__":
    sys.exit(main())
