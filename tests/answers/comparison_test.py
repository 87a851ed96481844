#!/usr/bin/env python3
"""What the comparison of two servers' answers finds, and what it lets pass."""

import collections
import json
import pathlib
import sys
import tempfile
import unittest
import unittest.mock
import xml.etree.ElementTree as ElementTree

sys.path.insert(1, sys.path[0] + "/../kit")

import canonical
import compare
import document
import listed
import mof
import request
import same_answers
import suite

DOCUMENT = pathlib.Path(__file__).resolve().parent.parent.parent / "docs" / "same-answers.md"


def answer(key, concurrent=False, **said):
    return {key: {"id": key, "concurrent": concurrent, **said}}


def found(theirs, ours):
    """(names of the listed differences, ids of the others)."""
    counts, unlisted = compare.compare(theirs, ours)
    return sorted(counts), [key for key, _ in unlisted]


def name(cls, key):
    return f'INSTANCENAME CLASSNAME="{cls}"\n  KEYBINDING NAME="N"\n    KEYVALUE "{key}"'


class Order(unittest.TestCase):
    def test_counts_where_one_provider_answers(self):
        a, b = name("A", "1"), name("A", "2")
        asked = "ns AssociatorNames X AssocClass=Leaf"
        self.assertEqual(([], [asked]), found(answer(asked, objects=[a, b]),
                                              answer(asked, objects=[b, a])))

    def test_is_open_where_several_providers_answer(self):
        a, b = name("A", "1"), name("B", "2")
        asked = "ns AssociatorNames X"
        self.assertEqual(([], []), found(answer(asked, True, objects=[a, b]),
                                         answer(asked, True, objects=[b, a])))

    def test_counts_within_a_class_of_an_enumeration(self):
        a, b, c = name("A", "1"), name("A", "2"), name("B", "3")
        asked = "ns EnumerateInstanceNames A"
        self.assertEqual(([], []), found(answer(asked, True, objects=[a, b, c]),
                                         answer(asked, True, objects=[c, a, b])))
        self.assertEqual(([], [asked]), found(answer(asked, True, objects=[a, b, c]),
                                              answer(asked, True, objects=[b, a, c])))

    def test_an_object_told_twice_is_not_told_once(self):
        a = name("A", "1")
        asked = "ns AssociatorNames X"
        self.assertEqual(([], [asked]), found(answer(asked, True, objects=[a, a]),
                                              answer(asked, True, objects=[a])))


class Differences(unittest.TestCase):
    def test_are_found_in_whatever_an_answer_says(self):
        same = {"objects": []}
        for other in ({"objects": [name("A", "1")]}, {"error": ["6", "CIM_ERR_NOT_FOUND"]},
                      {"status": 400}, {"wire": ["HTTP/1.1 200 OK"]}):
            self.assertEqual(([], ["ns Q"]), found(answer("ns Q", **same), answer("ns Q", **other)))
        self.assertEqual(([], ["ns Q"]),
                         found(answer("ns Q", error=["1", "CIM_ERR_FAILED: a"]),
                               answer("ns Q", error=["1", "CIM_ERR_FAILED: b"])))

    def test_a_question_asked_of_one_server_only_is_one(self):
        self.assertEqual(([], ["ns Q"]), found(answer("ns Q", objects=[]), {}))


class Listed(unittest.TestCase):
    def test_nothing_delivered_stands_for_not_found_alone(self):
        asked = "ns GetInstance X"
        nothing = answer(asked, objects=[])
        self.assertEqual((["GetInstance that delivers nothing"], []),
                         found(nothing, answer(asked, error=["6", "CIM_ERR_NOT_FOUND: X"])))
        self.assertEqual(([], [asked]),
                         found(nothing, answer(asked, error=["1", "CIM_ERR_FAILED"])))
        self.assertEqual(([], ["ns Associators X"]),
                         found(answer("ns Associators X", objects=[]),
                               answer("ns Associators X", error=["6", "CIM_ERR_NOT_FOUND: X"])))

    def test_objects_beside_classes_are_left_out_only_for_a_source_without_keys(self):
        theirs = [name("A", "1"), 'OBJECTPATH\n  INSTANCEPATH\n    INSTANCENAME CLASSNAME="C"']
        ours = theirs[1:]
        for words, expected in (("X without keys", (["a source without keys"], [])),
                                ("X", ([], ["ns AssociatorNames X"]))):
            asked = f"ns AssociatorNames {words}"
            self.assertEqual(expected, found(answer(asked, objects=theirs),
                                             answer(asked, objects=ours)))

    def test_the_classes_of_a_source_without_keys_are_the_same(self):
        def path(kind, held):
            return f"VALUE.OBJECTWITHPATH\n  {kind}\n    {held}\n  CLASS NAME="
        theirs = path("INSTANCEPATH", 'INSTANCENAME CLASSNAME="C"')
        ours = path("CLASSPATH", 'CLASSNAME NAME="C"')
        asked = "ns References X without keys"
        same = (["a source without keys"], [])
        for there, here, expected in (
                ([theirs + '"C"'], [ours + '"C"'], same), ([theirs + '"C"'], [ours + '"D"'], None),
                ([theirs + '"C"'], [], None), ([name("A", "1")], [name("A", "1")], ([], [])),
                ([name("A", "1")], [ours + '"C"'], None), ([theirs + '"C"'] * 2, [ours + '"C"'], None)):
            self.assertEqual(expected or ([], [asked]), found(answer(asked, objects=there),
                                                              answer(asked, objects=here)))

    def test_a_pipelined_request_may_lack_its_answer_but_not_have_another(self):
        asked = "wire pipelined-requests-are-answered-in-order 2"
        ours = answer(asked, wire=["HTTP/1.1 200 OK"])
        self.assertEqual((["several requests in one piece"], []),
                         found(answer(asked, wire=["", ""]), ours))
        self.assertEqual(([], [asked]), found(answer(asked, wire=["HTTP/1.1 400"]), ours))

        def message(number):
            return answer(asked, wire=["HTTP/1.1 200 OK", f'  MESSAGE ID="{number}"'])
        for there, here, expected in ((3, 2, (["several requests in one piece"], [])),
                                      (1, 2, ([], [asked])), ("x", 2, ([], [asked]))):
            self.assertEqual(expected, found(message(there), message(here)))
        self.assertEqual(([], ["wire host-missing 1"]),
                         found(answer("wire host-missing 1", wire=["", ""]),
                               answer("wire host-missing 1", wire=["HTTP/1.1 200 OK"])))

    def test_a_refusal_by_the_server_is_let_pass_where_ours_answers_a_traversal(self):
        refused = ["1", "CIM_ERR_FAILED: CIM_X Class not supported by Interop Provider"]
        asked = "root/PG_InterOp Associators X"
        listed_name = "sources that the server's own provider refuses"
        self.assertEqual(([listed_name], []), found(answer(asked, error=refused),
                                                    answer(asked, objects=[])))
        self.assertEqual(([], [asked]),
                         found(answer(asked, error=refused),
                               answer(asked, error=["1", "CIM_ERR_FAILED: something"])))
        for other in ("root/cimv2 Associators X", "root/PG_InterOp EnumerateInstances X"):
            self.assertEqual(([], [other]), found(answer(other, error=refused),
                                                  answer(other, objects=[])))

    def test_decoration_is_no_value(self):
        def own(value, marked):
            mark = ' PROPAGATED="true"' if marked else ""
            return (f'VALUE.NAMEDINSTANCE\n  INSTANCE CLASSNAME="PG_X"\n    PROPERTY NAME="P"{mark}\n'
                    f'      VALUE "{value}"')
        asked = "ns EnumerateInstances PG_X"
        self.assertEqual((["decoration of the server's own objects"], []),
                         found(answer(asked, objects=[own("1", True)]),
                               answer(asked, objects=[own("1", False)])))
        self.assertEqual(([], [asked]), found(answer(asked, objects=[own("1", True)]),
                                              answer(asked, objects=[own("2", False)])))

    def test_decoration_of_others_counts(self):
        asked = "ns GetInstance CIM_X"
        marked = 'INSTANCE CLASSNAME="CIM_X"\n  PROPERTY NAME="P" PROPAGATED="true"\n    VALUE "1"'
        plain = marked.replace(' PROPAGATED="true"', "")
        self.assertEqual(([], [asked]), found(answer(asked, objects=[marked]),
                                              answer(asked, objects=[plain])))

    def test_an_error_may_lack_words_but_not_say_others(self):
        asked = "ns ExecQuery"
        ours = answer(asked, error=["7", "CIM_ERR_NOT_SUPPORTED: not here"])
        self.assertEqual((["an error without words"], []),
                         found(answer(asked, error=["7", "CIM_ERR_NOT_SUPPORTED"]), ours))
        self.assertEqual(([], [asked]),
                         found(answer(asked, error=["7", "CIM_ERR_NOT_SUPPORTED: there"]), ours))

    def test_an_error_of_a_pull_may_have_other_words_but_no_other_code(self):
        asked = "root/cimv2 pulled: OpenEnumerateInstances closed twice"
        theirs = answer(asked, error=["21", "X: theirs"])
        self.assertEqual((["words of the pull operations' errors"], []),
                         found(theirs, answer(asked, error=["21", "X: ours"])))
        self.assertEqual(([], [asked]), found(theirs, answer(asked, error=["1", "X: theirs"])))
        self.assertEqual(([], [asked]), found(theirs, answer(asked, objects=[])))

    def test_codes_of_pulls_are_those_that_are_listed(self):
        asked = "root/cimv2 pulled: OpenReferenceInstances going on"
        seven, other = answer(asked, error=["7", "x"]), answer(asked, error=["26", "x"])
        self.assertEqual((["continuing after an error"], []), found(seven, other))
        self.assertEqual(([], [asked]), found(other, seven))
        self.assertEqual(([], [asked]), found(seven, answer(asked, objects=[])))

    def test_types_of_what_a_pull_gives_back_are_let_pass_and_nothing_else(self):
        asked = "wire enumeration-opens 1"
        theirs = ['  PARAMVALUE NAME="EnumerationContext"', '    VALUE "x"']
        ours = ['  PARAMVALUE NAME="EnumerationContext" PARAMTYPE="string"', '    VALUE "x"']
        self.assertEqual((["types of the pull operations' results"], []),
                         found(answer(asked, wire=theirs), answer(asked, wire=ours)))
        self.assertEqual(([], [asked]), found(answer(asked, wire=theirs),
                                              answer(asked, wire=[*ours, "more"])))

    def test_is_what_the_document_lists(self):
        written = DOCUMENT.read_text(encoding="utf-8")
        expected = document.text(0, collections.Counter())
        self.assertEqual(document.rows(expected), document.rows(written))
        self.assertEqual(len(listed.RULES), len(document.rows(written)))


    def test_is_unmet_where_it_should_have_come_and_did_not(self):
        everything = collections.Counter(rule.name for rule in listed.RULES)
        self.assertEqual([], listed.unmet(everything, own_objects=True))
        for name, own in (("order of class names", False), ("spelling in the server's own names", True)):
            self.assertEqual([name], listed.unmet(everything - collections.Counter([name]), own))
        less = everything - collections.Counter(["spelling in the server's own names",
                                                 "several requests in one piece"])
        self.assertEqual([], listed.unmet(less, own_objects=False))


class Pairs(unittest.TestCase):
    def test_are_each_in_a_question_and_no_question_is_without_a_new_one(self):
        pairs = suite.Pairs()

        def taken(method, *parameters):
            return pairs.has_new(suite.Question("", request.Request("ns", method, parameters), False))
        self.assertTrue(taken("Associators", ("ObjectName", "A"), ("Role", "R")))
        self.assertTrue(taken("Associators", ("ObjectName", "B"), ("Role", "S")))
        self.assertTrue(taken("Associators", ("ObjectName", "A"), ("Role", "S")))
        self.assertFalse(taken("Associators", ("ObjectName", "A")))
        self.assertTrue(taken("AssociatorNames", ("ObjectName", "A")))
        for _ in range(2):
            self.assertTrue(taken("GetClass", ("ClassName", "A")))


class Crash(unittest.TestCase):
    def test_is_at_the_question_after_the_last_one_answered(self):
        with tempfile.TemporaryDirectory() as directory:
            stores = [pathlib.Path(directory, name) for name in ("theirs", "ours")]
            self.assertEqual("", same_answers.last_question(stores))
            lines = [json.dumps({"id": key}) + "\n" for key in ("one", "two", "three")]
            stores[0].write_text(lines[0], encoding="utf-8")
            stores[1].write_text("".join(lines), encoding="utf-8")
            self.assertEqual("two", same_answers.last_question(stores))
            stores[0].write_text("".join(lines), encoding="utf-8")
            self.assertEqual("", same_answers.last_question(stores))

    def test_is_let_pass_only_in_traversals_from_the_servers_own_objects(self):
        for question, passes in (
                ('root/PG_InterOp References PG_NameSpace.Name="x" ResultClass=CIM_Dependency', True),
                ('root/PG_InterOp AssociatorNames CIM_Namespace as PG_NameSpace.Name="x"', True),
                ('root/PG_InterOp References CIM_RegisteredProfile.InstanceID="Orvex1"', False),
                ('root/PG_InterOp EnumerateInstances PG_Namespace', False),
                ('root/cimv2 References PG_NameSpace.Name="x"', False), ("", False)):
            self.assertEqual(passes, bool(same_answers.UNSAFE.match(question)), question)


class MixedUp(unittest.TestCase):
    """Answers that the server of OpenPegasus gives otherwise when it is asked again."""

    OWN = 'root/PG_InterOp Associators PG_Namespace.Name="x"'
    OTHER = 'root/PG_InterOp Associators CIM_RegisteredProfile.InstanceID="Orvex1"'

    def settled(self, asked, *again):
        """What is kept of a wrong answer to `asked`, where these come when it is asked again."""
        self.asked = 0

        def recorded(_, store, wanted):
            self.assertTrue(wanted(asked.replace("Namespace", "NameSpace")) and not wanted("another"))
            said = answer(asked, objects=[again[self.asked]])[asked]
            store.write_text(json.dumps(said) + "\n", encoding="utf-8")
            self.asked += 1
        with tempfile.TemporaryDirectory() as directory, \
                unittest.mock.patch("record.record", recorded), \
                unittest.mock.patch("same_answers.say"):
            kept = same_answers.settled("", pathlib.Path(directory, "again"),
                                        answer(asked, objects=["wrong"]),
                                        answer(asked, objects=["right"]))
        return kept[asked]["objects"]

    def test_are_asked_until_they_are_right(self):
        self.assertEqual(["right"], self.settled(self.OWN, "right"))
        self.assertEqual(["right"], self.settled(self.OWN, "wrong too", "right"))
        self.assertEqual(2, self.asked)

    def test_stay_wrong_where_the_server_says_so_each_time(self):
        self.assertEqual(["wrong"], self.settled(self.OWN, "wrong", "wrong", "wrong"))
        self.assertEqual(same_answers.ATTEMPTS - 1, self.asked)

    def test_are_not_asked_again_elsewhere(self):
        self.assertEqual(["wrong"], self.settled(self.OTHER))
        self.assertEqual(0, self.asked)


class Canonical(unittest.TestCase):
    def test_keeps_what_an_element_says_and_drops_how_it_is_written(self):
        one = '<A Z="1" B="2">\n  <C> x </C><D/></A>'
        other = '<A B="2" Z="1"><C> x </C>\n<D></D></A>'
        self.assertEqual('A B="2" Z="1"\n  C " x "\n  D',
                         canonical.text(ElementTree.fromstring(one)))
        self.assertEqual(canonical.text(ElementTree.fromstring(one)),
                         canonical.text(ElementTree.fromstring(other)))


class Mof(unittest.TestCase):
    def test_a_class_is_written_with_all_that_is_local_to_it(self):
        text = ('<CLASS NAME="C" SUPERCLASS="S"><QUALIFIER NAME="Version" TYPE="string">'
                '<VALUE>1.0</VALUE></QUALIFIER><QUALIFIER NAME="Association" TYPE="boolean">'
                '<VALUE>TRUE</VALUE></QUALIFIER><PROPERTY.ARRAY NAME="A" TYPE="uint16" ARRAYSIZE="2">'
                '<VALUE.ARRAY><VALUE>1</VALUE><VALUE>2</VALUE></VALUE.ARRAY></PROPERTY.ARRAY>'
                '<PROPERTY.REFERENCE NAME="R" REFERENCECLASS="D"><QUALIFIER NAME="Key" TYPE="boolean">'
                '<VALUE>TRUE</VALUE></QUALIFIER></PROPERTY.REFERENCE>'
                '<METHOD NAME="M" TYPE="uint32"><PARAMETER NAME="P" TYPE="string"/></METHOD></CLASS>')
        self.assertEqual('[Association,\n Version("1.0")]\nclass C : S {\n    uint16 A[2] = {1, 2};\n'
                         '    [Key]\n    D REF R;\n    uint32 M(\n        string P);\n};\n',
                         mof.class_declaration(ElementTree.fromstring(text)))

    def test_an_instance_says_null_where_a_default_would_creep_in(self):
        text = ('<INSTANCE CLASSNAME="C"><PROPERTY NAME="S" TYPE="string"><VALUE>a "b"\n\\</VALUE>'
                '</PROPERTY><PROPERTY NAME="N" TYPE="uint8"/></INSTANCE>')
        self.assertEqual('instance of C {\n    S = "a \\"b\\"\\n\\\\";\n    N = null;\n'
                         '    Other = null;\n};\n',
                         mof.instance(ElementTree.fromstring(text), ("s", "Other")))


if __name__ == "__main__":
    unittest.main()
