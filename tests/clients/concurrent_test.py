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

from served import NAMESPACES, Served

SERVED = None
CLIENTS = 12
ROUNDS = 6


def name(class_name, **keys):
    bindings = "".join(
        f'<KEYBINDING NAME="{key}"><KEYVALUE VALUETYPE="string">{value}</KEYVALUE></KEYBINDING>'
        for key, value in keys.items())
    return f'<INSTANCENAME CLASSNAME="{class_name}">{bindings}</INSTANCENAME>'


def call(method, *parameters):
    return method, "".join(f'<IPARAMVALUE NAME="{key}">{value}</IPARAMVALUE>'
                           for key, value in parameters)


def of_class(method, class_name):
    return call(method, ("ClassName", f'<CLASSNAME NAME="{class_name}"/>'))


PROFILE = name("CIM_RegisteredProfile", InstanceID="Orvex1")
MANAGER = name("CIM_ObjectManager", Name="whatever")
REQUESTS = [
    of_class("EnumerateInstances", "CIM_RegisteredProfile"),
    of_class("EnumerateInstanceNames", "CIM_ElementConformsToProfile"),
    of_class("EnumerateInstances", "CIM_NamespaceInManager"),
    of_class("EnumerateInstances", "ORVEX_ObjectManagerHost"),
    of_class("EnumerateInstances", "ORVEX_Vsan"),
    of_class("GetClass", "CIM_RegisteredProfile"),
    of_class("EnumerateInstances", "CIM_ObjectManager"),
    of_class("EnumerateInstances", "CIM_NoSuch"),
    call("GetInstance", ("InstanceName", name("ORVEX_SoftwareIdentity", InstanceID="OrvexSI1"))),
    call("GetInstance", ("InstanceName", name("CIM_RegisteredProfile", InstanceID="none"))),
    call("Associators", ("ObjectName", PROFILE)),
    call("AssociatorNames", ("ObjectName", MANAGER)),
    call("References", ("ObjectName", MANAGER)),
    call("ReferenceNames", ("ObjectName", PROFILE)),
    call("DeleteInstance", ("InstanceName", PROFILE)),
]


def document(namespace, method, parameters):
    place = "".join(f'<NAMESPACE NAME="{part}"/>' for part in namespace.split("/"))
    return (f'<?xml version="1.0" encoding="utf-8"?><CIM CIMVERSION="2.0" DTDVERSION="2.0">'
            f'<MESSAGE ID="1" PROTOCOLVERSION="1.0"><SIMPLEREQ><IMETHODCALL NAME="{method}">'
            f'<LOCALNAMESPACEPATH>{place}</LOCALNAMESPACEPATH>{parameters}'
            f'</IMETHODCALL></SIMPLEREQ></MESSAGE></CIM>')


def ask(connection, namespace, request):
    method, parameters = request
    connection.request("POST", "/cimom", document(namespace, method, parameters), {
        "Content-Type": "application/xml; charset=utf-8", "CIMOperation": "MethodCall",
        "CIMMethod": method, "CIMObject": namespace})
    reply = connection.getresponse()
    return reply.status, reply.read().decode()


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
