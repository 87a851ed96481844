#!/usr/bin/env python3
"""Many clients at once ask a server that has not loaded the module yet: it is loaded once, each of them
is answered, and the module's trace is whole. (That each gets what a single client gets is in tests/load.)

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
from served import Served

BUILD = sys.argv.pop(1)
CLIENTS = 12


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
    @classmethod
    def setUpClass(cls):
        cls.first = []
        with Served(BUILD) as served:
            def client():
                connection = http.client.HTTPConnection("127.0.0.1", served.port, timeout=120)
                cls.first.append(ask(connection, "root/cimv2", REQUESTS[0]))
                for request in REQUESTS:
                    ask(connection, "root/cimv2", request)

            clients = [threading.Thread(target=client) for _ in range(CLIENTS)]
            for thread in clients:
                thread.start()
            for thread in clients:
                thread.join()
        cls.trace = served.trace.splitlines()

    def test_the_first_requests_may_come_all_at_once(self):
        self.assertEqual(len(self.first), CLIENTS)
        self.assertEqual(len(set(self.first)), 1)
        self.assertIn("Enhanced Zoning and Enhanced Zoning Control", self.first[0][1])
        self.assertEqual(self.trace.count("ServerProfileProvider Quil initialize(): Start "), 1)
        self.assertEqual(self.trace.count("ServerProfileProvider Quil terminate(): Start "), 1)

    def test_trace_lines_never_mix(self):
        self.assertGreater(len(self.trace), 1000)
        for line in self.trace:
            starts = line.count("ServerProfileProvider")
            self.assertTrue(starts == 1 or line.startswith(("\tServerprofileProvider: FAIL",
                                                            "getInstance can't find key")), line)


if __name__ == "__main__":
    unittest.main()
