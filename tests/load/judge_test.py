#!/usr/bin/env python3
"""What the load takes for a right answer, and what not.

usage: judge_test.py [unittest arguments]
"""

import sys
import unittest

sys.path.insert(1, sys.path[0] + "/../kit")

from judge import BLOCKED, BLOCKED_TEXT, PARTIAL, REORDERED, RIGHT, WRONG
from judge import Kept
from mix import Request, registered
from request import name, of_class
from xml.etree import ElementTree

SERVED = {"n": {"Base": False, "Derived": False, "Tie": True, "Knot": True}}
BELOW = {"Base": ("Derived", "Other")}
SOURCE = (("ObjectName", name("Base", Id="1")),)
ALL = Request("n", "EnumerateInstanceNames", (), "ClassName", "Base")
LEAF = Request("n", "EnumerateInstanceNames", (), "ClassName", "Derived")
FAR = Request("n", "AssociatorNames", SOURCE, "AssocClass")
TIE, KNOT = FAR.under("Tie"), FAR.under("Knot")
GET = Request("n", "GetInstance", (("InstanceName", name("Base", Id="1")),), single="Base")
GET_OTHER = Request("n", "GetInstance", (("InstanceName", name("Other", Id="1")),), single="Other")

B1, B2, D1, D2, O1, O2, F1, F2, F3 = (
    name(class_name, Id=key) for class_name, key in (
        ("Base", "1"), ("Base", "2"), ("Derived", "1"), ("Derived", "2"), ("Other", "1"),
        ("Other", "2"), ("Far", "1"), ("Far", "2"), ("Far", "3")))


def answer(request, *objects):
    inside = f"<IRETURNVALUE>{''.join(objects)}</IRETURNVALUE>" if objects else ""
    return (f'<CIM><MESSAGE ID="-"><SIMPLERSP><IMETHODRESPONSE NAME="{request.method}">{inside}'
            f"</IMETHODRESPONSE></SIMPLERSP></MESSAGE></CIM>")


def error(request, code, text):
    said = f'<ERROR CODE="{code}" DESCRIPTION="{text}"/>'
    return answer(request).replace("</IMETHOD", f"{said}</IMETHOD")


def blocked(request):
    return error(request, 7, BLOCKED_TEXT)


ENABLED = {
    ALL: answer(ALL, B1, B2, D1, D2, O1, O2), LEAF: answer(LEAF, D1, D2),
    FAR: answer(FAR, F1, F2, F3), TIE: answer(TIE, F1, F2), KNOT: answer(KNOT, F3),
    GET: answer(GET, B1), GET_OTHER: answer(GET_OTHER, O1),
}
DISABLED = {
    ALL: answer(ALL, O1, O2), LEAF: blocked(LEAF), FAR: answer(FAR), TIE: answer(TIE),
    KNOT: answer(KNOT), GET: blocked(GET), GET_OTHER: answer(GET_OTHER, O1),
}


class Script:
    """Answers what it is told to."""

    def __init__(self):
        self.answers = dict(ENABLED)

    def text(self, request):
        if request.method == "EnumerateClassNames":
            below = BELOW.get(dict(request.parameters)["ClassName"].split('"')[1], ())
            return answer(request, *map(of_class, below))
        return self.answers[request]

    def elements(self, request):
        returned = ElementTree.fromstring(self.text(request)).find(".//IRETURNVALUE")
        return [] if returned is None else list(returned)


def keep(disabled=None, enabled=None):
    """What is kept of ENABLED and DISABLED, each with changes."""
    script = Script()
    script.answers.update(enabled or {})
    kept = Kept(script, list(ENABLED), SERVED)
    script.answers = {**DISABLED, **(disabled or {})}
    kept.keep_blocked()
    return kept


class Judging(unittest.TestCase):
    def verdicts(self, request, *objects):
        """Outside and within a window."""
        expected = keep().expected[request]
        text = objects[0] if objects[:1] and "<CIM>" in objects[0] else answer(request, *objects)
        return expected.judge(text, False), expected.judge(text, True)

    def test_the_model_fits_the_answers_kept(self):
        kept = keep()
        self.assertEqual(kept.problems, [])
        kept._asker.answers = ENABLED
        kept.check("again")
        self.assertEqual(kept.problems, [])
        for request in (GET_OTHER, GET):
            self.assertEqual(kept.reaches_module(request), request is GET)

    def test_the_same_is_right(self):
        self.assertEqual(self.verdicts(ALL, B1, B2, D1, D2, O1, O2), (RIGHT, RIGHT))
        self.assertEqual(self.verdicts(GET, B1), (RIGHT, RIGHT))

    def test_parts_may_change_places(self):
        for objects in ((D1, D2, B1, B2, O1, O2), (O1, O2, D1, D2, B1, B2)):
            self.assertEqual(self.verdicts(ALL, *objects), (REORDERED, REORDERED))
        self.assertEqual(self.verdicts(FAR, F3, F1, F2), (REORDERED, REORDERED))

    def test_objects_of_one_part_may_not(self):
        self.assertEqual(self.verdicts(ALL, B2, B1, D1, D2, O1, O2), (WRONG, WRONG))
        self.assertEqual(self.verdicts(ALL, B1, B2, D1, D2, O2, O1), (WRONG, WRONG))
        self.assertEqual(self.verdicts(FAR, F2, F1, F3), (WRONG, WRONG))
        self.assertEqual(self.verdicts(FAR, F1, F3, F2), (WRONG, WRONG))
        self.assertEqual(self.verdicts(LEAF, D2, D1), (WRONG, WRONG))

    def test_blocked_is_for_windows_alone(self):
        self.assertEqual(self.verdicts(GET, blocked(GET)), (WRONG, BLOCKED))
        self.assertEqual(self.verdicts(LEAF, blocked(LEAF)), (WRONG, BLOCKED))
        self.assertEqual(self.verdicts(ALL, O1, O2), (WRONG, BLOCKED))
        self.assertEqual(self.verdicts(FAR), (WRONG, BLOCKED))

    def test_what_the_module_has_no_part_in_is_never_blocked(self):
        self.assertEqual(self.verdicts(GET_OTHER, blocked(GET_OTHER)), (WRONG, WRONG))

    def test_whole_parts_may_be_missing_in_windows(self):
        for objects in ((B1, B2, O1, O2), (O1, O2, D1, D2)):
            self.assertEqual(self.verdicts(ALL, *objects), (WRONG, PARTIAL))
        self.assertEqual(self.verdicts(FAR, F3), (WRONG, PARTIAL))

    def test_pieces_of_parts_may_not(self):
        for objects in ((B1, D1, D2, O1, O2), (B1, B2, D2, O1, O2), (B1, B2, D1, D2, O1), (B1, B2)):
            self.assertEqual(self.verdicts(ALL, *objects), (WRONG, WRONG))
        self.assertEqual(self.verdicts(FAR, F1, F3), (WRONG, WRONG))

    def test_more_than_there_is_is_wrong(self):
        self.assertEqual(self.verdicts(ALL, B1, B2, D1, D2, O1, O2, B1), (WRONG, WRONG))
        self.assertEqual(self.verdicts(GET, B1, B1), (WRONG, WRONG))
        self.assertEqual(self.verdicts(FAR, F1, F2, F3, B1), (WRONG, WRONG))

    def test_nothing_is_no_answer_where_all_would_be_refused(self):
        self.assertEqual(self.verdicts(LEAF), (WRONG, WRONG))
        expected = keep(enabled={ALL: answer(ALL, B1, B2, D1, D2)},
                        disabled={ALL: blocked(ALL)}).expected[ALL]
        self.assertEqual(expected.judge(answer(ALL), True), WRONG)
        self.assertEqual(expected.judge(blocked(ALL), True), BLOCKED)
        self.assertEqual(expected.judge(answer(ALL, D1, D2), True), PARTIAL)

    def test_without_windows_the_order_is_free_between_classes_of_several_parts(self):
        script = Script()
        script.answers[TIE] = answer(TIE, F1, D1)
        kept = Kept(script, list(ENABLED), SERVED)
        for request, objects, verdict in ((ALL, (D1, D2, O1, O2, B1, B2), REORDERED),
                                          (ALL, (D2, D1, O1, O2, B1, B2), WRONG),
                                          (TIE, (D1, F1), WRONG)):
            text = answer(request, *objects)
            self.assertEqual(kept.expected[request].judge(text, False), verdict)

    def test_other_errors_other_operations_and_no_xml_are_wrong(self):
        for text in (error(GET, 1, "CIM_ERR_FAILED"), error(GET, 7, "CIM_ERR_NOT_SUPPORTED"),
                     answer(GET, B2), answer(ALL, B1), "<CIM>", "<CIM></CIM>"):
            self.assertEqual(self.verdicts(GET, text), (WRONG, WRONG), text)
        self.assertEqual(self.verdicts(ALL, answer(FAR, D1, D2, B1, B2, O1, O2)), (WRONG, WRONG))


class Keeping(unittest.TestCase):
    def assert_problem(self, kept, text):
        self.assertTrue(any(text in problem for problem in kept.problems), kept.problems)

    def test_finds_a_single_class_that_is_not_blocked(self):
        self.assert_problem(keep({GET: ENABLED[GET]}), "it is not blocked")

    def test_finds_a_request_that_should_not_change(self):
        self.assert_problem(keep({GET_OTHER: blocked(GET_OTHER)}), "yet changes")

    def test_finds_another_failure(self):
        self.assert_problem(keep({ALL: error(ALL, 1, "CIM_ERR_FAILED")}), "fails otherwise")

    def test_finds_objects_that_only_a_disabled_module_has(self):
        self.assert_problem(keep({ALL: answer(ALL, O1, O2, F1)}), "has other objects")

    def test_finds_an_answer_that_is_not_its_parts(self):
        self.assert_problem(keep({ALL: answer(ALL, O1)}), "not that of its parts")

    def test_finds_another_answer_after_the_module_came_back(self):
        kept = keep()
        kept._asker.answers = {**ENABLED, GET: answer(GET, B2)}
        kept.check("again")
        self.assert_problem(kept, "answered otherwise")


class Registration(unittest.TestCase):
    def test_is_read_by_namespace_and_class(self):
        def array(key, *values):
            return (f'<PROPERTY.ARRAY NAME="{key}"><VALUE.ARRAY>'
                    + "".join(f"<VALUE>{v}</VALUE>" for v in values)
                    + "</VALUE.ARRAY></PROPERTY.ARRAY>")

        def capability(module, class_name, *types):
            return (f'<VALUE.NAMEDINSTANCE><INSTANCENAME CLASSNAME="C"/><INSTANCE CLASSNAME="C">'
                    f'<PROPERTY NAME="ProviderModuleName"><VALUE>{module}</VALUE></PROPERTY>'
                    f'<PROPERTY NAME="ClassName"><VALUE>{class_name}</VALUE></PROPERTY>'
                    f'{array("Namespaces", "n", "m")}{array("ProviderType", *types)}'
                    f"</INSTANCE></VALUE.NAMEDINSTANCE>")

        class Registered(Script):
            def text(self, request):
                return answer(request, capability("M", "Tie", 2, 3), capability("X", "No", 2),
                              capability("M", "Base", 2))

        classes = {"Tie": True, "Base": False}
        self.assertEqual(registered(Registered(), "M"), {"n": classes, "m": classes})


if __name__ == "__main__":
    unittest.main()
