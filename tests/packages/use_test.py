"""The installed packages in use: what their manual pages promise."""

import os
import pathlib
import tempfile

import kinds
from installation import KIND, PACKED, PROVIDER, Installation, shell
from manual_examples import Serving, examples

PAGE = "/usr/share/man/man1/cimhost.1.gz"
PROFILES = ("Orvex1", "Orvex2", "Orvex6")


class Use(Installation):
    def test_what_is_installed_is_what_was_packed(self):
        self.installed()
        self.assertEqual(PACKED.verify(*kinds.NAMES), "")

    def test_the_examples_of_the_manual_page_work_word_for_word(self):
        self.installed()
        check, serve, ask, fault, own, passwd, users, ask_as_user = examples(PAGE)
        self.checks(check, "provider ServerProfileProviderModule/")
        with Serving(serve):
            result = shell(ask)
            for profile in PROFILES:
                self.assertIn(f'InstanceID="{profile}"', result.stdout)
            walk = shell("serverprofile-walk http://127.0.0.1:5988")
            self.assertEqual(walk.returncode, 0, walk.stdout)
        with Serving(fault) as served:
            shell("wbemcli ain -ac CIM_NamespaceInManager "
                  "'http://127.0.0.1:5988/root/cimv2:PG_Namespace.Name=\"root/cimv2\"'")
        self.assertIn("fault asked for: a provider's enumerateInstances of CIM_Namespace", served.log)
        self.assertIn("---- request 1\n", served.log)
        with tempfile.TemporaryDirectory() as folder:
            self.own_module(folder)
            with Serving(own, folder):
                self.assertIn('InstanceID="Orvex2"', shell(ask).stdout)
            made = shell(passwd, cwd=folder, input="PASSWORD\n")
            self.assertEqual(made.returncode, 0, made.stdout)
            with Serving(users, folder):
                self.assertIn('InstanceID="Orvex2"', shell(ask_as_user).stdout)
                self.assertNotIn('InstanceID="Orvex2"', shell(ask).stdout)

    def own_module(self, folder):
        """The files that the last example names: what the packages have, by the names there."""
        mof = f"/usr/share/{PROVIDER}/mof"
        pathlib.Path(folder, "schema.mof").write_text(
            '#pragma include ("cim_schema.mof")\n#pragma include ("orvex_switch.mof")\n'
            + pathlib.Path(mof, "orvex_serverprofile.mof").read_text())
        for name, target in (
                ("registration.mof", f"{mof}/serverprofile_registration.mof"),
                ("libServerProfileProvider.so",
                 f"{KIND.lib}/Pegasus/providers/libServerProfileProvider.so")):
            pathlib.Path(folder, name).symlink_to(target)

    def checks(self, command, line):
        """The command, a check, finds no problem, and something that begins with `line`."""
        result = shell(command)
        self.assertEqual((result.returncode, result.stdout.splitlines()[-1]), (0, "0 problems"),
                         result.stdout)
        self.assertIn("\n" + line, result.stdout)

    def test_the_sample_is_served_without_the_module_too(self):
        self.installed("cimhost")
        self.checks(examples(PAGE)[0], "namespace root/cimv2: ")

    def test_a_module_for_another_server_is_left_out_of_the_sample(self):
        self.installed()
        library = pathlib.Path(f"{KIND.lib}/Pegasus/providers/libServerProfileProvider.so")
        library.write_bytes(pathlib.Path("/bin/true").read_bytes())
        result = shell(examples(PAGE)[0])
        self.assertEqual(result.returncode, 0, result.stdout)
        self.assertIn(f"leaving out the module: {library} is not for cimhost\n", result.stdout)
        self.assertNotIn("ServerProfileProviderModule/", result.stdout)

    def test_manual_pages_are_found_and_rendered(self):
        self.installed()
        for page in ("cimhost", "serverprofile-register", "serverprofile-walk"):
            with self.subTest(page):
                result = shell(f"man {page}", env={**os.environ, "MANPAGER": "cat", "LC_ALL": "C"})
                self.assertEqual(result.returncode, 0, result.stdout)
                self.assertRegex(result.stdout, rf"(?m)^NAME\n +{page} ")
                lint = shell(f"mandoc -T lint -W warning $(man -w {page})")
                self.assertEqual((lint.returncode, lint.stdout), (0, ""))
