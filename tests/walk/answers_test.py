#!/usr/bin/env python3
"""The walk finds every wrong answer. A walk through the served sample is recorded once, and then taken
again with single answers spoilt, and with servers that are wrong as a whole.

usage: answers_test.py BUILD-DIRECTORY [--all] [unittest arguments]

With --all, each answer is spoilt in every way; without, answers to questions of one kind share the ways.
"""

import collections
import gc
import os
import sys
import traceback
import unittest

import rooms  # noqa: F401
from served import Served

from serverprofile_walk import connection, profile
from serverprofile_walk.client import CimError, Client, NoAnswer, Question
from serverprofile_walk.connection import Unreachable
from serverprofile_walk.objects import Class, Instance, Key, Path, Property
from serverprofile_walk.walk import TRAVERSALS, Walk

INTEROP, OTHER = "interop", "root/cimv2"
ALL = "--all" in sys.argv
EACH = 1 if ALL else 4  # of so many ways to spoil an answer, one is tried
RECORDED = {}  # Question -> answer


def record(build):
    with Served(build) as served, \
            Client(connection.server(f"http://{served.address}", patience=300)) as client:
        def ask(question):
            RECORDED[question] = client.ask(question)
            return RECORDED[question]
        Walk(ask).run()
        # What only some of the walks below ask.
        for question in (Question("EnumerateInstanceNames", "root/interop", Path("CIM_Namespace")),
                         Question("EnumerateInstanceNames", "root/PG_InterOp", Path("CIM_Namespace")),
                         Question("EnumerateInstanceNames", OTHER, Path("CIM_RegisteredProfile"))):
            try:
                ask(question)
            except CimError as error:
                RECORDED[question] = error


def recorded(question):
    answer = RECORDED[question]
    if isinstance(answer, Exception):
        raise answer
    return answer


def walked(change=lambda question, answer: answer, namespaces=(INTEROP,), **more):
    """The walk with each answer as `change` makes it of the recorded one; None is no answer."""
    def ask(question):
        answer = change(question, RECORDED.get(question))
        if answer is None:
            raise NoAnswer("spoilt")
        if isinstance(answer, Exception):
            raise answer
        return answer
    walk = Walk(ask)
    walk.run(namespaces, **more)
    return walk


def problems(walk):
    return [text for asked in walk.wrong for text, _ in asked.problems]


def listed(answer):
    return answer if isinstance(answer, list) else [answer]


def like(answer, items):
    """An answer of the same form with other items."""
    return items if isinstance(answer, list) else items[0] if items else None


# --- spoiling


def with_class(path, name):
    return path._replace(class_name=name)


def with_other_key(path):
    """The path with another value in one key; in an association, in one of its ends."""
    *others, key = path.keys
    value = with_other_key(key.value) if isinstance(key.value, Path) else key.value + "x"
    return path._replace(keys=(*others, key._replace(value=value)))


def on_path(change):
    """The change of a path, for whatever an answer holds."""
    def changed(each):
        if isinstance(each, Instance):
            return each if each.path is None else each._replace(path=change(each.path))
        return change(each) if isinstance(each, Path) else each
    return changed


def elsewhere(path):
    """The path in another namespace; of an association without one, its ends."""
    if path.namespace is not None:
        return path._replace(namespace="root/elsewhere")
    return path._replace(keys=tuple(
        key._replace(value=key.value._replace(namespace="root/elsewhere"))
        if isinstance(key.value, Path) else key for key in path.keys))


def other_value(found):
    value = found.value
    if isinstance(value, Path):
        return with_other_key(value)
    if isinstance(value, tuple):
        return (*value, value[0]) if value else None
    if isinstance(value, bool):
        return not value
    return value + ("x" if isinstance(value, str) else 1)


def settled(instance, question):
    """The properties of an instance that the walk has to judge: of objects of other providers, only the
    keys are."""
    path = instance.path or question.target
    kinds = [kind for kind in profile.KINDS if kind.enumerated.lower() == instance.class_name.lower()]
    names = {key.name.lower() for key in path.keys}
    return [each for each in instance.properties if each.value is not None
            and (not kinds or kinds[0].settled or each.name.lower() in names)]


def spoils(question, answer):
    """Each way in which an answer is spoilt, as (what, answer)."""
    yield "no answer", NoAnswer("spoilt")
    yield "an error", CimError(1, "spoilt")
    if isinstance(answer, Class):
        yield "another class", answer._replace(name="CIM_Other")
        yield "without properties", answer._replace(properties=())
        for number, each in enumerate(answer.properties):
            if each.name == "RegisteredOrganization":
                bare = each._replace(qualifiers=())
                yield "without qualifiers", answer._replace(
                    properties=(*answer.properties[:number], bare, *answer.properties[number + 1:]))
        return
    items = listed(answer)
    if isinstance(answer, list):
        yield from spoilt_lists(question, items)
    for number, each in enumerate(items):
        for what, other in spoilt_items(question, each):
            if other != each:
                yield what, like(answer, [*items[:number], other, *items[number + 1:]])


def spoilt_lists(question, items):
    for number in range(len(items)):
        yield f"object {number} is missing", items[:number] + items[number + 1:]
    if items:
        yield "an object twice", [items[-1], *items]
    stranger = Path("CIM_Stranger", (Key("Name", "x"),))
    if not question.operation.endswith("Names"):
        stranger = Instance("CIM_Stranger", (Property("Name", "string", "x"),), stranger)
    yield "a stranger", [*items, stranger]


def spoilt_items(question, each):
    yield "another class", on_path(lambda path: with_class(path, "CIM_Other"))(each)
    yield "another key", on_path(with_other_key)(each)
    yield "another namespace", on_path(elsewhere)(each)
    if isinstance(each, Instance):
        yield "another class inside", each._replace(class_name="CIM_Other")
        for number, one in enumerate(settled(each, question)):
            rest = tuple(other for other in each.properties if other is not one)
            # Most objects come in a dozen answers: each property is left out of some, changed in others.
            if (number + len(question.operation) + len(question.association or "")) % 2:
                yield f"without {one.name}", each._replace(properties=rest)
            else:
                yield f"another {one.name}", each._replace(
                    properties=(*rest, one._replace(value=other_value(one))))


class EverySpoiltAnswer(unittest.TestCase):
    """Whatever a walk asks before an answer that is spoilt is the same; so each spoilt one is tried by
    a copy of the process at that point."""

    def test_is_found_wrong(self):
        # Questions that serve to find what is walked are spoilt in InteropNamespace.
        tried, missed, kinds = 0, [], collections.Counter()

        def ask(question):
            nonlocal tried
            answer = recorded(question)
            if asker.child:
                return answer
            kind = question.operation, question.target.class_name
            for number, (what, spoilt) in enumerate(spoils(question, answer), kinds[kind]):
                if number % EACH:
                    continue
                tried += 1
                child = os.fork()
                if child == 0:
                    asker.child = True
                    if isinstance(spoilt, Exception):
                        raise spoilt
                    return spoilt
                if os.waitstatus_to_exitcode(os.waitpid(child, 0)[1]) != FOUND:
                    missed.append((what, question.operation, question.namespace,
                                   str(question.target), question.association))
            kinds[kind] += 1
            return answer

        class asker:
            child = False

        def report(what):
            if asker.child and getattr(what, "wrong", None):
                os._exit(FOUND)

        walk = Walk(ask, report)
        gc.disable()  # it would make each copy a copy of all memory
        try:
            walk.run([INTEROP])
        except BaseException:
            if not asker.child:
                raise
            traceback.print_exc()
            os._exit(2)
        finally:
            gc.enable()
        if asker.child:
            os._exit(0)
        self.assertTrue(walk.whole, problems(walk))
        self.assertGreater(tried, 5000 / EACH)
        self.assertEqual(missed, [])


FOUND = 17


class TheRecordedWalk(unittest.TestCase):
    def test_is_whole(self):
        walk = walked()
        self.assertEqual((problems(walk), walk.whole, walk.notes), ([], True, {}))

    def test_asks_each_question_once(self):
        walk = walked(namespaces=(INTEROP, OTHER))
        questions = [asked.question for asked in walk.asked]
        self.assertEqual(len(questions), len(set(questions)))
        self.assertGreater(len(questions), 400)

    def test_is_the_same_each_time(self):
        first, second = walked(), walked()
        self.assertEqual([asked.question for asked in first.asked],
                         [asked.question for asked in second.asked])

    def test_follows_every_path_as_it_was_given(self):
        walk = walked()
        given = set()
        for asked in walk.asked:
            if asked.question.operation == "GetClass":
                continue
            for each in listed(asked.answer):
                path = each.path if isinstance(each, Instance) else each
                if path is not None:
                    given.add((path.namespace or asked.question.namespace, path.local))
        got = {(asked.question.namespace, asked.question.target) for asked in walk.asked
               if asked.question.operation == "GetInstance"}
        # What answers in other namespaces give belongs to a walk there.
        self.assertEqual({each for each in given if each[0] == INTEROP} - got, set())
        self.assertIn(OTHER, {namespace for namespace, _ in got})

    def test_asks_each_traversal_with_and_without_the_association_class(self):
        asked = {}
        for each in walked().asked:
            if each.question.operation in TRAVERSALS and each.question.namespace == INTEROP:
                source = each.question.target.class_name
                asked.setdefault(source, set()).add(
                    (each.question.association, each.question.operation))
        self.assertEqual(
            {source: {association for association, _ in questions}
             for source, questions in asked.items()},
            {"CIM_RegisteredProfile": {"CIM_SubProfileRequiresProfile", "CIM_ReferencedProfile",
                                       "CIM_ElementConformsToProfile", "ORVEX_ElementSoftwareIdentity",
                                       None},
             "CIM_RegisteredSubProfile": {"CIM_SubProfileRequiresProfile", "CIM_ReferencedProfile",
                                          "ORVEX_ElementSoftwareIdentity", None},
             "CIM_ObjectManager": {"CIM_ElementConformsToProfile", "CIM_HostedService",
                                   "CIM_NamespaceInManager", "CIM_CommMechanismForManager", None},
             "PG_Namespace": {"CIM_NamespaceInManager", None},
             "PG_CIMXMLCommunicationMechanism": {"CIM_HostedAccessPoint", "CIM_CommMechanismForManager",
                                                 None},
             "ORVEX_ObjectManagerHost": {"CIM_HostedService", "CIM_HostedAccessPoint", None},
             "ORVEX_SoftwareIdentity": {"ORVEX_ElementSoftwareIdentity", None}})
        for questions in asked.values():
            associations = {association for association, _ in questions}
            self.assertEqual(questions, {(association, operation) for association in associations
                                         for operation in TRAVERSALS})


def renamed(old, new, leads_on):
    """A change of all answers, and of what they are asked with: a class by another name. `leads_on`:
    whether traversals from that name are answered; then its key CreationClassName stays, too."""
    def path(each):
        if each is None or each.keys is None:
            return each
        return each._replace(class_name=name(each.class_name), keys=tuple(
            key._replace(value=path(key.value) if isinstance(key.value, Path) else value(key.value))
            for key in each.keys))

    def name(each):
        return new if each == old else each

    def value(each):
        return each if leads_on else name(each)

    def item(each):
        if isinstance(each, Path):
            return path(each)
        if not isinstance(each, Instance):
            return each
        return each._replace(class_name=name(each.class_name), path=path(each.path), properties=tuple(
            one._replace(value=path(one.value) if isinstance(one.value, Path) else value(one.value))
            for one in each.properties))

    answers = {}
    for question, answer in RECORDED.items():
        if isinstance(answer, Exception):
            continue
        asked = question._replace(target=path(question.target))
        if question.operation in TRAVERSALS and question.target.class_name == old and not leads_on:
            answers[asked] = []
        else:
            answers[asked] = like(answer, [item(each) for each in listed(answer)])
    return lambda question, _: answers.get(question)


class Servers(unittest.TestCase):
    """Servers that are wrong as a whole are told in words that one can act on."""

    def test_an_object_manager_under_another_name_is_named_with_what_to_do(self):
        walk = walked(renamed("CIM_ObjectManager", "PG_ObjectManager", leads_on=False))
        self.assertFalse(walk.whole)
        said = [(text, advice) for asked in walk.wrong for text, advice in asked.problems
                if "is published as" in text]
        self.assertEqual(len(said), 4)  # names and instances, and those to which the host leads
        self.assertIn("is published as PG_ObjectManager, not as CIM_ObjectManager", said[0][0])
        self.assertIn("publish its object manager as CIM_ObjectManager", said[0][1])
        # And nothing else is wrong but each hop from there.
        hops = [asked for asked in walk.wrong if asked.question.operation in TRAVERSALS]
        self.assertEqual(len(walk.wrong), len(hops) + len(said))
        self.assertEqual({asked.question.target.class_name for asked in hops}, {"PG_ObjectManager"})
        self.assertTrue(all(asked.answer == [] for asked in hops))

    def test_class_names_may_be_in_any_letter_case(self):
        walk = walked(renamed("PG_Namespace", "PG_NameSpace", leads_on=True))
        self.assertEqual(problems(walk), [])
        self.assertIn("PG_NameSpace", {asked.question.target.class_name for asked in walk.asked})

    def counted(self, class_name, number):
        """The problems of a server that lists so many objects of a class."""
        def change(question, answer):
            if question.target == Path(class_name) and question.namespace == INTEROP:
                more = [each._replace(path=with_other_key(each.path)) if isinstance(each, Instance)
                        else with_other_key(each) for each in answer]
                return (answer + more)[:number]
            return answer
        return " ".join(problems(walked(change)))

    def test_there_is_exactly_one_object_manager_and_one_host(self):
        self.assertIn("2 of object manager in interop: there has to be 1",
                      self.counted("CIM_ObjectManager", 2))
        self.assertIn("no object manager in interop", self.counted("CIM_ObjectManager", 0))
        self.assertIn("2 of host in interop: there has to be 1",
                      self.counted("ORVEX_ObjectManagerHost", 2))

    def test_what_conforms_to_a_profile_is_there(self):
        for class_name, words in (("ORVEX_Vsan", "no fabric in interop"),
                                  ("ORVEX_ComputerSystem", "no switch in its fabrics in interop"),
                                  ("ORVEX_PhysicalComputerSystem",
                                   "no box of the switch in interop with Name localswitch")):
            self.assertIn(words, self.counted(class_name, 0))

    def test_other_boxes_are_the_switch_s_own_business(self):
        def change(question, answer):
            if question.target == Path("ORVEX_PhysicalComputerSystem"):
                other = RECORDED[question][0]
                return answer + [other._replace(path=with_other_key(other.path))
                                 if isinstance(other, Instance) else with_other_key(other)]
            return answer
        self.assertEqual(problems(walked(change)), [])

    def names_changed(self, change):
        """The problems when the names of namespaces are what `change` makes of them, everywhere."""
        def path(each):
            return each if not each or each.keys is None else each._replace(keys=tuple(
                key._replace(value=change(key.value)) if key.name == "Name"
                and each.class_name == "PG_Namespace" else
                key._replace(value=path(key.value)) if isinstance(key.value, Path) else key
                for key in each.keys))

        def item(each):
            if isinstance(each, Path):
                return path(each)
            if not isinstance(each, Instance):
                return each
            return each._replace(path=each.path and path(each.path), properties=tuple(
                one._replace(value=path(one.value)) if isinstance(one.value, Path) else
                one._replace(value=change(one.value))
                if one.name == "Name" and each.class_name == "PG_Namespace" else one
                for one in each.properties))
        answers = {question._replace(target=path(question.target)):
                   answer if isinstance(answer, Exception) else like(
                       answer, [item(each) for each in listed(answer)])
                   for question, answer in RECORDED.items()}
        return problems(walked(lambda question, _: answers[question]))

    def test_the_namespace_walked_is_listed(self):
        self.assertEqual(self.names_changed(lambda name: "other" if name == INTEROP else name),
                         ["interop is not in the list of the server's namespaces, though it is there"])

    def test_namespaces_are_listed_without_a_slash(self):
        found = self.names_changed(lambda name: "/" + name)
        self.assertEqual(len(found), 3, found)
        self.assertTrue(all("is listed with a slash before it" in text for text in found))

    def test_keys_of_namespaces_and_mechanism_agree_with_the_object_manager(self):
        def change(question, answer):
            if question == Question("EnumerateInstances", INTEROP, Path("CIM_ObjectManager")):
                return [each._replace(properties=tuple(
                    one._replace(value="other") if one.name in ("SystemName", "Name") else one
                    for one in each.properties)) for each in answer]
            return answer
        found = " ".join(problems(walked(change)))
        for text in ('SystemName of PG_Namespace "interop" is',
                     'ObjectManagerName of PG_Namespace "interop" is',
                     'SystemName of PG_CIMXMLCommunicationMechanism'):
            self.assertIn(text, found)

    def test_properties_that_clients_read_are_not_null(self):
        for kind in profile.KINDS:
            classes = {kind.enumerated.lower(), (kind.published or kind.enumerated).lower()}
            for name in kind.required:
                # In every answer: it tells one story, and lacks the property.
                def bare(each, classes=classes, name=name):
                    if not isinstance(each, Instance) or each.class_name.lower() not in classes:
                        return each
                    return each._replace(properties=tuple(
                        one._replace(value=None) if one.name == name else one
                        for one in each.properties))
                with self.subTest(kind=kind.name, property=name):
                    walk = walked(lambda question, answer, bare=bare: like(
                        answer, [bare(each) for each in listed(answer)]))
                    self.assertIn(f"{name} of ", " ".join(
                        text for text in problems(walk) if "NULL" in text))

    def test_an_error_names_its_status_and_what_to_do(self):
        for code, words, advice in (
                (1, "CIM_X Class not supported by Interop Provider", "namespace of its own"),
                (7, "provider blocked.", "cimprovider -e"), (5, "CIM_HostedService", "is missing in")):
            error = CimError(code, words)
            walk = walked(lambda question, answer, error=error: error
                          if question.association == "CIM_HostedService" else answer)
            for asked in walk.wrong:
                self.assertEqual(asked.problems[0][0], "an error came")
                self.assertIn(advice, asked.problems[0][1])
            self.assertEqual(len(walk.wrong), 12)

    def test_a_namespace_that_is_not_there_is_said_once(self):
        walk = walked(lambda question, answer: CimError(3, "root/x"), namespaces=("root/x",))
        self.assertEqual((len(walk.asked), problems(walk), walk.whole), (1, ["an error came"], False))

    def test_three_questions_without_an_answer_end_the_walk(self):
        walk = walked(lambda question, answer: None if question.operation in TRAVERSALS else answer)
        self.assertTrue(walk.gave_up)
        self.assertEqual([asked.error is not None for asked in walk.asked[-4:]],
                         [False, True, True, True])
        self.assertFalse(walk.whole)

    def test_a_server_that_cannot_be_reached_is_no_walk(self):
        def ask(question):
            raise Unreachable("nobody there")
        with self.assertRaises(Unreachable):
            Walk(ask).run([INTEROP])


class LetPass(unittest.TestCase):
    """What an OpenPegasus does and nobody can mend is noted, and not wrong."""

    def test_the_box_may_come_without_keys_and_is_then_not_followed(self):
        def change(question, answer):
            if question.operation.startswith("Associator") and isinstance(answer, list):
                return [bare(each) for each in answer]
            return answer

        def bare(each):
            path = each.path if isinstance(each, Instance) else each
            if path.class_name != "ORVEX_PhysicalComputerSystem":
                return each
            path = path._replace(keys=())
            return each._replace(path=path) if isinstance(each, Instance) else path
        walk = walked(change)
        self.assertEqual(problems(walk), [])
        self.assertEqual(list(walk.notes), [profile.THE_BOX_MAY_COME_WITHOUT_KEYS])

    def test_nothing_else_may_come_without_keys(self):
        for class_name in ("ORVEX_Vsan", "CIM_ObjectManager", "CIM_RegisteredSubProfile"):
            def change(question, answer, class_name=class_name):
                if question.operation == "AssociatorNames":
                    return [each._replace(keys=()) if each.class_name == class_name else each
                            for each in answer]
                return answer
            with self.subTest(class_name):
                self.assertIn("is missing", " ".join(problems(walked(change))))

    def test_namespaces_that_the_server_publishes_itself_are_not_got(self):
        walk = walked(renamed("CIM_ObjectManager", "PG_ObjectManager", leads_on=False))
        got = [asked.question.target.class_name for asked in walk.asked
               if asked.question.operation == "GetInstance"]
        self.assertNotIn("PG_Namespace", got)
        self.assertIn(profile.NAMESPACES_MAY_NOT_BE_GOT, walk.notes)


class InteropNamespace(unittest.TestCase):
    def searched(self, **answers):
        """The walk that finds its namespaces, with these answers to CIM_Namespace by namespace."""
        def change(question, answer):
            namespace = question.namespace.replace("/", "_")
            if question.target == Path("CIM_Namespace") and namespace in answers \
                    and question.operation == "EnumerateInstanceNames":
                return answers[namespace]
            return answer if answer is not None else CimError(3, question.namespace)
        return walked(change, namespaces=())

    def test_is_found_by_the_standard_s_own_name(self):
        walk = self.searched()
        self.assertEqual((walk.interop, walk.whole), ("interop", True))
        self.assertEqual([section.namespace for section in walk.sections], [INTEROP, OTHER])
        self.assertEqual(walk.left_out, ["root/PG_InterOp"])

    def test_is_looked_for_further_on_status_3_alone(self):
        # Status 5 and 6, and every answer, mean that it is there.
        for code in (5, 6):
            walk = self.searched(interop=CimError(code, ""))
            self.assertEqual(walk.interop, "interop")
        walk = self.searched(interop=CimError(3, ""))
        self.assertEqual(walk.interop, "root/PG_InterOp")

    def test_under_a_name_of_the_server_s_own_is_found_and_wrong(self):
        walk = self.searched(interop=CimError(3, ""))
        self.assertEqual([section.namespace for section in walk.sections], ["root/PG_InterOp", OTHER])
        self.assertIn("no namespace interop or root/interop", " ".join(problems(walk)))

    def test_that_answers_with_another_error_stops_clients_and_is_wrong(self):
        walk = self.searched(interop=CimError(1, "broken"))
        self.assertIn("clients that look for the interop namespace stop at this error", problems(walk))

    def test_that_is_nowhere_is_wrong(self):
        walk = walked(lambda question, answer: CimError(3, ""), namespaces=())
        self.assertEqual((walk.interop, walk.whole, walk.sections), (None, False, []))
        self.assertIn("no namespace interop or root/interop", problems(walk)[0])

    def test_root_cimv2_is_walked_only_where_the_profile_is_served(self):
        def change(question, answer):
            if question == Question("EnumerateInstanceNames", OTHER, Path("CIM_RegisteredProfile")):
                return [Path("CIM_RegisteredProfile", (Key("InstanceID", "another's"),))]
            return answer
        walk = walked(change, namespaces=())
        self.assertEqual([section.namespace for section in walk.sections], [INTEROP])
        self.assertIn(OTHER, walk.left_out)

    def test_everywhere_is_each_listed_namespace_where_the_profile_is_served(self):
        def change(question, answer):
            if question.namespace == "root/PG_InterOp":
                return [] if question.target == Path("CIM_RegisteredProfile") else CimError(5, "")
            return answer
        walk = walked(change, namespaces=(), everywhere=True)
        self.assertEqual([section.namespace for section in walk.sections], [INTEROP, OTHER])


class Sections(unittest.TestCase):
    def test_a_path_that_leads_elsewhere_counts_where_it_was_given(self):
        # The host says root/cimv2 wherever it is asked for: broken there, it is broken for interop.
        def change(question, answer):
            if question.namespace == OTHER and question.association == "CIM_HostedService":
                return []
            return answer
        walk = walked(change, namespaces=(INTEROP, OTHER))
        wrong = {section.namespace: len(section.wrong) for section in walk.sections}
        self.assertGreater(wrong[INTEROP], 0)
        self.assertGreater(wrong[OTHER], wrong[INTEROP])

    def test_a_fault_in_one_namespace_leaves_the_other_whole(self):
        def change(question, answer):
            if question.namespace == INTEROP and question.target == Path("CIM_HostedAccessPoint"):
                return []
            return answer
        walk = walked(change, namespaces=(INTEROP, OTHER))
        self.assertEqual([bool(section.wrong) for section in walk.sections], [True, False])


if __name__ == "__main__":
    sys.argv = [argument for argument in sys.argv if argument != "--all"]
    record(sys.argv.pop(1))
    unittest.main()
