"""The replies to the wire cases in canonical form: status, fields of the header, document."""

import pathlib
import re
import sys
import xml.etree.ElementTree as ElementTree

import canonical

WIRE = pathlib.Path(__file__).resolve().parent.parent / "wire"
sys.path.insert(0, str(WIRE))
import run_cases  # beside the cases

# Not sent: OpenPegasus ends itself at it.
DEADLY = ("put-is-not-allowed",)
# Fields that say nothing of what was asked, or say it in words of their own.
PASSING = ("content-length", "date", "last-modified", "pgerrordetail")
PATIENCE = 10.0  # seconds; a server that waits for more waits for ever
# To these, OpenPegasus says nothing in the end (listed.py).
UNANSWERED = ("expect-100-continue", "http-1.0-needs-no-host-and-closes", "http-malformed-closes",
              "pipelined-requests-are-answered-in-order")
SOON = 1.0  # seconds


def document(text):
    try:
        return canonical.text(ElementTree.fromstring(text))
    except ElementTree.ParseError:
        return text.strip()


def lines(reply):
    """One or more replies, as they came on one connection."""
    header, _, body = reply.partition("\n\n")
    body, nextone, rest = body.partition("HTTP/1.1 ")
    status, *fields = header.split("\n")
    # The prefix of an M-POST reply is the server's to choose.
    fields = [re.sub(r"^\d\d-|(?<=ns=)\d\d", "NN", f.strip()) for f in fields]
    kept = sorted(f for f in fields if f.split(":")[0].lower().replace("NN", "") not in PASSING)
    # The context of an enumeration is never the same.
    said = re.sub(r'("EnumerationContext".*\n *VALUE ").+', r'\1CONTEXT"', document(body))
    result = [status, *kept, *said.split("\n")]
    return result + lines(nextone + rest) if nextone else result


def answers(address):
    """(id, lines) of each reply of each case."""
    host, _, port = address.rpartition(":")
    for case in sorted(path for path in (WIRE / "cases").iterdir() if path.is_dir()):
        if case.name in DEADLY:
            continue
        run_cases.PATIENCE = SOON if case.name in UNANSWERED else PATIENCE
        count = 0
        try:
            for _, reply in run_cases.replies(case, (host, int(port))):
                count += 1
                yield f"wire {case.name} {count}", lines(reply.decode("utf-8", "replace"))
        except run_cases.Failure as failure:
            yield f"wire {case.name} {count + 1}", [str(failure)]
