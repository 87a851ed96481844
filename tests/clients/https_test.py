#!/usr/bin/env python3
"""Meets the served sample switch over HTTPS with what people have at hand: curl, openssl, wbemcli.

usage: https_test.py BUILD-DIRECTORY [unittest arguments]
"""

import re
import subprocess
import sys
import unittest

sys.path.insert(1, sys.path[0] + "/../kit")

from request import call, document, of_class
from served import Served

BUILD = sys.argv.pop(1)
NAMESPACE = "root/cimv2"
PROFILES = ["Orvex1", "Orvex2", "Orvex6", "Orvex3", "Orvex4", "Orvex5"]


def run(*command, **options):
    return subprocess.run(list(map(str, command)), capture_output=True, text=True, timeout=60,
                          check=False, **options)


class Https(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.served = cls.enterClassContext(Served(BUILD, https=True))
        cls.url = f"https://{cls.served.secure_address}"

    def curl(self, *options):
        method, parameters = call("EnumerateInstanceNames",
                                  ("ClassName", of_class("CIM_RegisteredProfile")))
        return run("curl", "-sS", *options, f"{self.url}/cimom", "-H", "CIMOperation: MethodCall",
                   "-H", f"CIMMethod: {method}", "-H", f"CIMObject: {NAMESPACE}", "-H",
                   "Content-Type: application/xml; charset=utf-8", "--data-binary",
                   document(NAMESPACE, method, parameters))

    def test_curl_that_trusts_the_certificate(self):
        answer = self.curl("--cacert", self.served.certificate)
        self.assertEqual((answer.returncode, answer.stderr), (0, ""))
        for profile in PROFILES:
            self.assertIn(f">{profile}<", answer.stdout)

    def test_curl_that_does_not(self):
        answer = self.curl()
        self.assertEqual((answer.returncode, answer.stdout), (60, ""))

    def test_openssl_says_what_was_agreed(self):
        for version in ("TLSv1.2", "TLSv1.3"):
            answer = run("openssl", "s_client", "-connect", self.served.secure_address, "-CAfile",
                         self.served.certificate, "-verify_return_error",
                         "-" + version.lower().replace(".", "_").replace("v", ""), stdin=subprocess.DEVNULL)
            self.assertEqual(answer.returncode, 0, answer.stderr)
            self.assertIn("Verification: OK", answer.stdout)
            self.assertIn(version, answer.stdout)

    def test_both_ways_in_are_published(self):
        answer = run("wbemcli", "-cacert", self.served.certificate, "ei", "-nl",
                     f"{self.url}/interop:CIM_CIMXMLCommunicationMechanism")
        self.assertEqual(re.findall(r'(?m)^-(?:Name|IPAddress)="(.*)"', answer.stdout), [
            f"http://{self.served.address}", self.served.address,
            f"https://127.0.0.1:{self.served.secure_port}", f"127.0.0.1:{self.served.secure_port}"])

    def wbemcli(self, *options, url=None):
        return run("wbemcli", *options, "ein",
                   f"{url or self.url}/{NAMESPACE}:CIM_RegisteredProfile")

    def test_wbemcli_that_trusts_the_certificate(self):
        answer = self.wbemcli("-cacert", self.served.certificate)
        self.assertEqual((answer.returncode, answer.stderr), (0, ""))
        self.assertEqual([line.partition('InstanceID="')[2][:-1]
                          for line in answer.stdout.splitlines()], PROFILES)

    def test_wbemcli_that_asks_nothing(self):
        answer = self.wbemcli("-noverify")
        self.assertEqual((answer.returncode, len(answer.stdout.splitlines())), (0, len(PROFILES)))

    def test_wbemcli_that_does_not_trust_it(self):
        answer = self.wbemcli()
        self.assertNotEqual(answer.returncode, 0)
        self.assertNotIn("Orvex", answer.stdout)

    def test_wbemcli_that_takes_one_port_for_the_other(self):
        for url in (f"https://{self.served.address}", f"http://{self.served.secure_address}"):
            answer = self.wbemcli("-noverify", url=url)
            self.assertNotEqual(answer.returncode, 0)
            self.assertNotIn("Orvex", answer.stdout)
        self.assertEqual(self.wbemcli("-noverify").returncode, 0)


if __name__ == "__main__":
    unittest.main()
