#!/usr/bin/env python3
"""Many clients at once: each gets the answers that a single client gets, and the server ends clean.

The module serves one request at a time whatever comes; the server reads, routes and writes in
parallel. Under ThreadSanitizer this is where the module and the server are watched together.

usage: concurrent_test.py BUILD-DIRECTORY [unittest arguments]
"""

import http.client
import sys
import threading
import unittest

sys.path.insert(1, sys.path[0] + "/../kit")

from request import ask, call, name, of_class
from served import NAMESPACES, Served

SERVED = None
CLIENTS = 12
ROUNDS = 6


def classwise(method, class_name):
    return call(method, ("ClassName", of_class(class_name)))


PROFILE = name("CIM_RegisteredProfile", InstanceID="Orvex1")
MANAGER = name("CIM_ObjectManager", Name="whatever")
REQUESTS = [
    classwise("EnumerateInstances", "CIM_RegisteredProfile"),
    classwise("EnumerateInstanceNames", "CIM_ElementConformsToProfile"),
    classwise("EnumerateInstances", "CIM_NamespaceInManager"),
    classwise("EnumerateInstances", "ORVEX_ObjectManagerHost"),
    classwise("EnumerateInstances", "ORVEX_Vsan"),
    classwise("GetClass", "CIM_RegisteredProfile"),
    classwise("EnumerateInstances", "CIM_ObjectManager"),
    classwise("EnumerateInstances", "CIM_NoSuch"),
    call("GetInstance", ("InstanceName", name("ORVEX_SoftwareIdentity", InstanceID="OrvexSI1"))),
    call("GetInstance", ("InstanceName", name("CIM_RegisteredProfile", InstanceID="none"))),
    call("Associators", ("ObjectName", PROFILE)),
    call("AssociatorNames", ("ObjectName", MANAGER)),
    call("References", ("ObjectName", MANAGER)),
    call("ReferenceNames", ("ObjectName", PROFILE)),
    call("DeleteInstance", ("InstanceName", PROFILE)),
]


class ConcurrentClients(unittest.TestCase):
    def connection(self):
        return http.client.HTTPConnection("127.0.0.1", SERVED.port, timeout=120)

    def test_every_client_gets_what_a_single_one_gets(self):
        alone = self.connection()
        questions = [(namespace, request) for namespace in NAMESPACES for request in REQUESTS]
        expected = [ask(alone, *question) for question in questions]
        wrong = []

        def client(number):
            connection = self.connection()
            for turn in range(ROUNDS):
                if turn % 2:  # a connection of its own for each round, or one for all
                    connection.close()
                for step in range(len(questions)):
                    index = (step * 7 + number * 3 + turn) % len(questions)
                    try:
                        answer = ask(connection, *questions[index])
                    except (OSError, http.client.HTTPException) as error:
                        answer = repr(error)
                        connection.close()
                    if answer != expected[index]:
                        wrong.append((questions[index], answer))

        clients = [threading.Thread(target=client, args=(n,)) for n in range(CLIENTS)]
        for thread in clients:
            thread.start()
        for thread in clients:
            thread.join()
        self.assertEqual(wrong[:3], [])

    def test_the_first_requests_may_come_all_at_once(self):
        # A server of its own, so that the module is not loaded yet.
        with Served(SERVED.build) as fresh:
            answers = []

            def client():
                connection = http.client.HTTPConnection("127.0.0.1", fresh.port, timeout=120)
                answers.append(ask(connection, "root/cimv2", REQUESTS[0]))

            clients = [threading.Thread(target=client) for _ in range(CLIENTS)]
            for thread in clients:
                thread.start()
            for thread in clients:
                thread.join()
            self.assertEqual(len(answers), CLIENTS)
            self.assertEqual(len(set(answers)), 1)
            self.assertIn("Enhanced Zoning and Enhanced Zoning Control", answers[0][1])
        lines = fresh.trace.splitlines()
        self.assertEqual(lines.count("ServerProfileProvider Quil initialize(): Start "), 1)
        self.assertEqual(lines.count("ServerProfileProvider Quil terminate(): Start "), 1)

    def test_trace_lines_never_mix(self):
        with Served(SERVED.build) as fresh:
            def client():
                connection = http.client.HTTPConnection("127.0.0.1", fresh.port, timeout=120)
                for request in REQUESTS:
                    ask(connection, "root/cimv2", request)

            clients = [threading.Thread(target=client) for _ in range(CLIENTS)]
            for thread in clients:
                thread.start()
            for thread in clients:
                thread.join()
        for line in fresh.trace.splitlines():
            starts = line.count("ServerProfileProvider")
            self.assertTrue(starts == 1 or line.startswith(("\tServerprofileProvider: FAIL",
                                                            "getInstance can't find key")), line)


if __name__ == "__main__":
    build = sys.argv.pop(1)
    with Served(build) as SERVED:
        program = unittest.main(exit=False)
    sys.exit(not program.result.wasSuccessful())
