"""The differences between the embedded server and OpenPegasus that are meant, each with its reason.

A rule looks at two answers to one question that differ, OpenPegasus's first. It returns both
without the difference that it stands for, or None where it has nothing to say.
"""

import re
from typing import Callable, NamedTuple


ALWAYS, WITH_OWN_OBJECTS, SOMETIMES = range(3)  # when a difference is met


class Rule(NamedTuple):
    name: str
    what: str  # what OpenPegasus does, and what is done here
    why: str
    apply: Callable
    met: int = ALWAYS


def changed(answer, change):
    """`answer` with `change` done to each object, None for one that goes."""
    if "objects" not in answer:
        return answer
    kept = [change(o) for o in answer["objects"]]
    return {**answer, "objects": [o for o in kept if o is not None]}


def both(change):
    """A rule that does the same to both sides, if it does anything."""
    def apply(theirs, ours):
        result = changed(theirs, change), changed(ours, change)
        return None if result == (theirs, ours) else result
    return apply


def spelt(text):
    return text.replace("PG_NameSpace", "PG_Namespace").replace("InstanceId", "InstanceID")


def of_server(text):
    return re.search(r'^ *INSTANCE CLASSNAME="PG_', text, re.M) is not None


def without_decoration(text):
    """An object of the server's own without qualifiers, without marks of what comes from which
    class, those of its properties that have a value in the order of their names."""
    if not of_server(text):
        return text
    text = re.sub(r' PROPAGATED="true"| CLASSORIGIN="[^"]*"', "", text)
    head, _, rest = text.partition("INSTANCE CLASSNAME=")
    indent = " " * (len(head) - len(head.rstrip(" ")) + 2)
    first, *members = re.split(rf"\n(?={indent}\S)", rest)
    members = [re.sub(rf"\n{indent}  QUALIFIER .*(\n{indent}   .*)*", "", m) for m in members
               if not m.startswith(f"{indent}QUALIFIER")]
    members = [m for m in members if "\n" in m]
    return head + "INSTANCE CLASSNAME=" + "\n".join([first] + sorted(members))


def class_names_in_order(theirs, ours):
    if " EnumerateClassNames " not in theirs["id"]:
        return None
    return tuple({**a, "objects": sorted(a.get("objects", []))} for a in (theirs, ours))


def nothing_delivered(theirs, ours):
    got = theirs.get("objects") == [] or theirs.get("error") == ["1", "CIM_ERR_FAILED: "
                                                                 "uninitialized object"]
    if not re.search(" Get(Instance|Property) ", theirs["id"]) or not got or ours.get("error", [""])[0] != "6":
        return None
    return theirs, {**{k: v for k, v in ours.items() if k != "error"},
                    **{k: theirs[k] for k in ("objects", "error") if k in theirs}}


def classes_for_no_keys(theirs, ours):
    """Theirs without the objects, and with the classes, if not with their names, below paths of
    classes."""
    if not ours["id"].partition(" without keys")[1]:
        return None

    def as_class(text):
        if text.startswith("OBJECTPATH"):
            return None if "KEYBINDING" in text else text
        return text.replace("INSTANCEPATH", "CLASSPATH", 1).replace(
            "INSTANCENAME CLASSNAME=", "CLASSNAME NAME=", 1) if "\n  CLASS NAME=" in text else None
    result = changed(theirs, as_class)
    return None if result == theirs else (result, ours)


def path_without_keys(theirs, ours):
    result = changed(ours, lambda o: re.sub(
        r'(CLASSNAME="ORVEX_PhysicalComputerSystem")\n *KEYBINDING NAME="Name"\n.*', r"\1", o))
    return None if result == ours else (theirs, result)


def error_without_words(theirs, ours):
    number, text = theirs.get("error", ["", ""])
    if not number or ":" in text or ours.get("error", [""])[0] != number:
        return None
    return theirs, {**ours, "error": theirs["error"]}


def nameless_key(theirs, ours):
    if " nameless " not in ours["id"] or ours.get("error", [""])[0] != "4":
        return None
    return theirs, theirs


def refused_by_the_server(theirs, ours):
    if not theirs.get("error", ["", ""])[1].endswith("Class not supported by Interop Provider"):
        return None
    if not re.match(r"root/PG_InterOp (Associator|Reference)", ours["id"]) or "objects" not in ours:
        return None
    return theirs, theirs


def in_cases(*names):
    """Whatever came in these wire cases."""
    def apply(theirs, ours):
        return (theirs, theirs) if ours["id"].split()[:2] in [["wire", n] for n in names] else None
    return apply


def without_types(theirs, ours):
    if not ours["id"].startswith("wire enumeration-"):
        return None
    plain = [re.sub(r' PARAMTYPE="\w+"', "", line) for line in ours["wire"]]
    return None if plain == ours["wire"] else (theirs, {**ours, "wire": plain})


def code(answer):
    return answer.get("error", [None])[0]


def words_of_pulls(theirs, ours):
    about = " pulled: " in ours["id"] or ours["id"].startswith("wire enumeration-context-unknown ")
    if ours["id"].startswith("wire "):
        codes = [re.findall(r'ERROR CODE="(\d+)"', "\n".join(a["wire"])) for a in (theirs, ours)]
    else:
        codes = [code(a) for a in (theirs, ours)]
    return (theirs, theirs) if about and codes[0] and codes[0] == codes[1] else None


def in_sessions(*expected):
    """These codes (None: no error) in sessions about these words, OpenPegasus's first."""
    def apply(theirs, ours):
        for words, before, after in expected:
            asked = re.search(rf" pulled: Open\w+ {words}$", ours["id"])
            met = before is None or code(theirs) == before
            if asked and met and code(ours) == after:
                return theirs, theirs
        return None
    return apply


def swapped_filters(theirs, ours):
    return (theirs, theirs) if " OpenAssociatorInstancePaths " in ours["id"] and (
        " AssocClass=" in ours["id"]) else None


def either(*rules):
    """Whichever of the rules has something to say first."""
    def apply(theirs, ours):
        return next(filter(None, (rule(theirs, ours) for rule in rules)), None)
    return apply


def unanswered_in_a_pipeline(theirs, ours):
    """No answer, or in its place that of a later request of the same pipeline."""
    def asked(answer):
        found = re.search(r'MESSAGE ID="(\d+)"', "\n".join(answer["wire"]))
        return int(found[1]) if found else 0
    if not ours["id"].startswith("wire pipelined-requests-") or (
            any(theirs["wire"]) and not 0 < asked(ours) < asked(theirs)):
        return None
    return theirs, theirs


def no_association(theirs, ours):
    def change(text):
        return re.sub(r'\n  QUALIFIER NAME="Association".*\n.*', "", text)
    if " GetClass PG_ObjectManager " not in ours["id"]:
        return None
    return changed(theirs, change), ours


RULES = (
    Rule("order of class names",
         "EnumerateClassNames in the order of its files; here in the order of declaration",
         "the order has no meaning, and a stable one can be compared", class_names_in_order),
    Rule("GetInstance that delivers nothing",
         "an empty reply, or \"uninitialized object\" from GetProperty; here CIM_ERR_NOT_FOUND "
         "with the path",
         "clients cannot parse an empty GetInstance reply", nothing_delivered),
    Rule("a source without keys",
         "is its class, as here, but the providers are asked as well and what they say is added, "
         "and Associators and References write the classes below paths of objects (INSTANCEPATH); "
         "here the classes alone are answered, and written below their own paths (CLASSPATH)",
         "the client named no object that a provider could describe; a class below an object's "
         "path is not a valid reply, and strict clients refuse it",
         either(classes_for_no_keys, in_cases("source-without-keys-is-its-class"))),
    Rule("path of a repository's object that a provider got",
         "a provider that gets an object of the repository finds only the class in its path; here "
         "the keys, too",
         "the sample's objects stand for those of other providers, whose paths have keys",
         path_without_keys),
    Rule("an error without words",
         "gives no text for an ExecQuery that it does not do, nor for a parameter that "
         "GetInstance lacks; here the error has it", "for people",
         either(error_without_words, in_cases("query-operations-are-not-offered"))),
    Rule("a key value without a name",
         "handed on; here an error, unless the class has one key",
         "a guess could mean another object", nameless_key),
    Rule("sources that the server's own provider refuses",
         "a traversal in its interop namespace that also reaches association classes of its own "
         "(PG_...) fails as a whole when the source is none of its own objects; here it is "
         "answered",
         "the embedded server has no associations of its own", refused_by_the_server,
         WITH_OWN_OBJECTS),
    Rule("HTTP 1.0, and connections that are to be closed",
         "stays open without a word; here the reply says Connection and is kept to",
         "RFC 9112, 9.3 and 9.6", in_cases(
             "connection-close-closes", "http-1.0-keep-alive-stays-open",
             "http-1.0-needs-no-host-and-closes", "http-malformed-closes", "http-binary-closes",
             "content-length-huge-closes")),
    Rule("several requests in one piece",
         "now and then leaves one or all after the first unanswered; here all are answered, in "
         "their order",
         "RFC 9112, 9.3.2", unanswered_in_a_pipeline, SOMETIMES),
    Rule("verbs other than POST and M-POST",
         "a small web server for GET and HEAD, 400 for others; here 404, and 405 with Allow",
         "no client expects pages", in_cases(
             "get-finds-nothing", "head-finds-nothing", "connection-lives-on-after-errors")),
    Rule("Expect: 100-continue",
         "not answered; here with 100 Continue", "RFC 9110, 10.1.1",
         in_cases("expect-100-continue")),
    Rule("types of the pull operations' results",
         "does not say the types of EndOfSequence and EnumerationContext; here with PARAMTYPE",
         "clients that follow DSP0203 need them; the others ignore them",
         without_types),
    Rule("words of the pull operations' errors",
         "its own texts; here ours, with the same code", "for people", words_of_pulls),
    Rule("filtered enumerations",
         "error 25 where paths are asked for, and 1 for a language alone; a query about "
         "instances is ignored; here 25 for all",
         "DSP0200 1.4, 5.3.2.24: a filter that is not served is refused",
         in_sessions(("a filter", None, "25"), ("a language", "1", "25"))),
    Rule("continuing after an error",
         "error 7; here 26", "DSP0200 1.4, 5.3.2.24", in_sessions(("going on", "7", "26"))),
    Rule("objects and time of a pull",
         "no more than 10,000 objects (error 4) and 90 seconds (22); here any number of objects, "
         "in pieces, and 300 seconds",
         "a reply needs the memory of one piece; some clients process a piece for longer than 90 "
         "seconds",
         in_sessions(("10001 at once", "4", None), ("a long time", "22", None))),
    Rule("an enumeration in another namespace, or of the other kind",
         "error 1, and one of the other kind is closed; here 21, or 3 where there is no such "
         "namespace, and it stays open",
         "DSP0200 1.4, 5.3.2.24: a context is valid where it was opened; a wrong request does "
         "not end the enumeration", in_sessions(
             ("pulled elsewhere", "1", "21"), ("pulled in no namespace", "1", "3"),
             ("pulled as the other kind", "1", "21"), ("pulled after that", "21", None))),
    Rule("EnumerationCount",
         "error 21 for a context that it does not know; here 7 whatever the context is",
         "cimhost does not offer it", in_sessions(("counted", "21", "7"))),
    Rule("filters of OpenAssociatorInstancePaths",
         "takes AssocClass for ResultClass; here each filters as its name says",
         "DSP0200 1.4, 5.3.2.24", swapped_filters),
    Rule("chunked replies",
         "where the client can read them, with errors in trailers; here replies above 64 KiB alone",
         "clients accept both", in_cases("te-chunked-need-not-be-chunked")),
    Rule("PG_ObjectManager as an association",
         "its schema says so; here the MOF reader refuses it, and the comparison leaves it out "
         "when it mirrors the schema",
         "it has no references", no_association, WITH_OWN_OBJECTS),
    Rule("spelling in the server's own names",
         "PG_NameSpace and InstanceId in paths of its own; here as the class spells them",
         "one spelling for clients; names compare without regard to case", both(spelt),
         WITH_OWN_OBJECTS),
    Rule("decoration of the server's own objects",
         "its own objects come with the qualifiers of their classes and with every property "
         "marked as propagated; here, shown in their place, they have neither",
         "identity and values are the same", both(without_decoration),
         WITH_OWN_OBJECTS),
)


def unmet(counts, own_objects):
    """The names of the rules that should have been met and were not; `own_objects` tells whether the
    server publishes objects of its own."""
    return [rule.name for rule in RULES if not counts[rule.name]
            and (rule.met == ALWAYS or (rule.met == WITH_OWN_OBJECTS and own_objects))]
