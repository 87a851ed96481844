#!/usr/bin/env python3
"""Compares two stores of record.py. Prints each difference that is not listed, and how often each
listed one came; ends with 1 if there is one that is not listed.

usage: compare.py STORE OTHER [--limit N]
"""

import argparse
import collections
import difflib
import json
import re
import sys

import listed


def load(store):
    with open(store, encoding="utf-8") as lines:
        return {listed.spelt(answer["id"]): answer for answer in map(json.loads, lines)}


def class_of(text):
    """The class of an object in canonical form."""
    found = re.search(r'CLASSNAME="([^"]*)"', text)
    return found[1] if found else ""


def in_order(answer):
    """Its objects as they compare. Where providers are asked at once, those of an enumeration keep
    their order within a class, which is one provider's."""
    objects = answer.get("objects")
    if objects is None or not answer["concurrent"]:
        return objects
    if " Enumerate" in answer["id"]:
        return sorted(objects, key=class_of)
    return sorted(objects)


def same(one, other):
    said = ("status", "error", "wire")
    return in_order(one) == in_order(other) and all(one.get(k) == other.get(k) for k in said)


def lines(answer):
    if "wire" in answer:
        return answer["wire"]
    if "status" in answer:
        return [f"HTTP {answer['status']}"]
    if "error" in answer:
        return [f"ERROR {' '.join(answer['error'])}"]
    return ["\n".join(in_order(answer))] if answer["objects"] else ["nothing"]


def difference(one, other):
    before, after = ("\n".join(lines(a)).splitlines() for a in (one, other))
    return list(difflib.unified_diff(before, after, lineterm="", n=1))[2:]


def compare(one, other):
    """(listed: Counter by reason, unlisted: list of (id, difference))."""
    counts, unlisted = collections.Counter(), []
    for key in sorted(one.keys() | other.keys()):
        if key not in one or key not in other:
            unlisted.append((key, ["asked of one server only"]))
            continue
        mine, theirs, reasons = one[key], other[key], []
        if not same(mine, theirs):
            for rule in listed.RULES:
                changed = rule.apply(mine, theirs)
                if changed is not None:
                    mine, theirs = changed
                    reasons.append(rule.name)
                    if same(mine, theirs):
                        break
            if same(mine, theirs):
                counts.update(reasons)
            else:
                unlisted.append((key, difference(mine, theirs)))
    return counts, unlisted


def report(one, counts, unlisted, limit=20):
    for key, what in unlisted[:limit]:
        print(f"DIFFERENT {key}")
        print("\n".join("    " + line[:200] for line in what[:30]))
    for rule in listed.RULES:
        if counts[rule.name]:
            print(f"{counts[rule.name]:6} {rule.name}")
    print(f"{len(one)} questions, {sum(counts.values())} listed differences, "
          f"{len(unlisted)} others")


def main():
    parser = argparse.ArgumentParser(description=__doc__,
                                     formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("one", metavar="STORE")
    parser.add_argument("other", metavar="OTHER")
    parser.add_argument("--limit", type=int, default=20, help="differences to print (default 20)")
    options = parser.parse_args()
    one, other = load(options.one), load(options.other)
    counts, unlisted = compare(one, other)
    report(one, counts, unlisted, options.limit)
    return 1 if unlisted else 0


if __name__ == "__main__":
    sys.exit(main())
