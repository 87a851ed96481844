"""The document of the listed differences."""

import listed

HEAD = """# The same answers

<!-- Made by tests/answers/same_answers.py --document FILE. Do not edit: the list is in
     tests/answers/listed.py. -->

`tests/answers/same_answers.py` asks the server of an OpenPegasus and `cimhost`, with the same schema,
the same objects and the same modules, everything that the wire suite asks: all operations, from all
sources, with all filters, in `root/cimv2`, in the interop namespace of OpenPegasus and in `interop`,
refused writes, questions that are wrong, and the wire cases. It stores the answers in canonical form (`record.py`) and compares
them (`compare.py`): everything that an answer says counts, its order, too. Only where OpenPegasus asks
several providers at once, the order of what they say is left open (the objects of one class in an
enumeration, which one provider delivers, keep theirs), and where a traversal answers classes, which
it has in the order of its files.

"""
MIDDLE = """
* **OpenPegasus does** / **here**: what differs. *Why*: the reason for which it may.
* *Count*: questions of that run whose answers differ by it. A question may count for several.

| difference | OpenPegasus does; here | why | count |
| --- | --- | --- | --- |
"""
MENDED = """
## Mended

What the comparison found and the embedded server now does as OpenPegasus does: the order of a class's
properties and methods; the order and marks of qualifiers, and which of them a property is handed
down; no default for an overriding property that gives none; the order of an instance's properties,
and the qualifiers that it has from its class; the spelling of qualifiers; the error of a GetInstance
whose provider swallowed what complete() threw; the words for an illegal role; a parameter that is no
boolean; an M-POST that declares a prefix and does not use it; the classes that a traversal from a
source without keys finds; the qualifiers, origins and properties of classes that a traversal answers.
"""
TAIL = """
What these differences leave unseen: traversals in the interop namespace that the server's own provider
refuses are compared in `root/cimv2` alone, where the same objects are.

Now and then the server of OpenPegasus ends meanwhile (SIGSEGV in its own provider of the Server
profile, which shares its objects between requests without a lock; six clients that ask it for its
object manager and namespaces end it within some thousand requests, with no module registered). The
script then starts anew, and says so; only if it was at a traversal from one of these objects. For the
same reason it may answer one with an object that has the keys of another; where the answers to such a
traversal differ, the script asks that server again, up to three times, and says so.

One wire case is not sent to OpenPegasus, since a debug build of it ends at a PUT. The empty list of
strings in another is left out, since its MOF compiler cannot read one.
"""


def text(questions, counts):
    rows = "".join(f"| {rule.name} | {rule.what} | {rule.why} | {counts[rule.name]} |\n"
                   for rule in listed.RULES)
    figures = (f"In the last run (OpenPegasus 2.14.4, in process): **{questions} questions, "
               f"{sum(counts.values())} listed differences of {len(listed.RULES)} kinds, "
               "no other.**\n")
    return HEAD + figures + MIDDLE + rows + TAIL + MENDED


def rows(document):
    """The rows of the list in a document, without their counts."""
    return [line.rsplit("|", 2)[0] for line in document.splitlines() if line.startswith("| ")][2:]
