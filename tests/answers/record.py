#!/usr/bin/env python3
"""Asks a CIM server everything that the wire suite asks, and stores the answers in canonical form.

usage: record.py HOST:PORT STORE [--pairs]

STORE is a file of one JSON object a line: the question's id, whether the order of its answer is
open, and the answer: HTTP status, error code and description, the objects that came, or, for the
wire cases, the lines of the reply. Two stores of servers with the same content are compared by
compare.py. The wire cases need the namespaces root/wire, with wire.mof, and root/other.
"""

import argparse
import json
import sys
import time
import xml.etree.ElementTree as ElementTree

sys.path.insert(1, sys.path[0] + "/../kit")

import canonical
import cases
import pulled
import request
import suite


def answer(status, text):
    """What a reply says, as what JSON can hold."""
    if status != 200:
        return {"status": status}
    response = ElementTree.fromstring(text).find(".//IMETHODRESPONSE")
    error = response.find("ERROR")
    if error is not None:
        return {"error": [error.get("CODE"), error.get("DESCRIPTION")]}
    returned = response.find("IRETURNVALUE")
    return {"objects": [] if returned is None else [canonical.text(e) for e in returned]}


def own_names(connection):
    """What the second module says of itself in each server otherwise: the object manager's name and the
    address. In the store, these are replaced by words."""
    def name(class_name):
        try:
            found = connection.ask("interop", "EnumerateInstanceNames",
                                   ("ClassName", request.of_class(class_name)))
        except request.CimError:
            return None
        return next((key.findtext("KEYVALUE") for path in found
                     for key in path.findall("KEYBINDING[@NAME='Name']")), None)
    access = name("CIM_CIMXMLCommunicationMechanism") or "http://no access"
    return ((name("CIM_ObjectManager") or "no manager", "MANAGER"),
            (access.removeprefix("http://"), "ACCESS"))


def record(address, store, say=lambda text: None, wanted=None, pairs=False):
    """Writes the store and returns how many questions there were: all of the suite (or, with `pairs`,
    those that suite.Pairs takes) and all wire cases, or the questions of the suite whose id is
    `wanted`."""
    connection = request.Connection(address)
    own = own_names(connection)
    count, told = 0, time.monotonic()
    with open(store, "w", encoding="utf-8") as out:
        def keep(key, concurrent, reply):
            line = json.dumps({"id": key, "concurrent": concurrent, **reply}, ensure_ascii=False)
            for name, word in own:
                line = line.replace(name, word)
            out.write(line + "\n")

        for key, lines in cases.answers(address) if wanted is None else ():
            keep(key, False, {"wire": lines})
            count += 1
        for question in suite.questions(address, pairs):
            if wanted is not None and not wanted(question.id):
                continue
            keep(question.id, question.concurrent,
                 answer(*connection.send(question.request)))
            count += 1
            if time.monotonic() - told > 5:
                told = time.monotonic()
                say(f"{count} questions, now at: {question.id}")
        for key, concurrent, reply in pulled.answers(connection) if wanted is None else ():
            keep(key, concurrent, reply)
            count += 1
    connection.close()
    return count


def main():
    parser = argparse.ArgumentParser(description=__doc__,
                                     formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("server", metavar="HOST:PORT")
    parser.add_argument("store", metavar="STORE")
    parser.add_argument("--pairs", action="store_true", help=suite.PAIRS_HELP)
    options = parser.parse_args()
    count = record(options.server, options.store, lambda text: print(text, file=sys.stderr),
                   pairs=options.pairs)
    print(f"{count} answers in {options.store}")
    return 0


if __name__ == "__main__":
    sys.exit(main())
