"""The service as it is installed. No systemd runs here: what the unit says is started as it says it, by
its user, as narrow as confined.py makes it, and the test is told what systemd would be.
"""

import contextlib
import pathlib
import pwd
import re
import shlex
import shutil
import signal
import socket
import subprocess

import kinds
from confined import unit
from installation import HIGHER, KIND, PACKED, Installation, shell

SETTINGS = pathlib.Path("/etc/cimhost/cimhost.conf")
SYSUSERS = pathlib.Path("/usr/bin/systemd-sysusers")
ENABLED = pathlib.Path("/etc/systemd/system/multi-user.target.wants/cimhost.service")
BOOTED = pathlib.Path("/run/systemd/system")
SYSTEMCTL = pathlib.Path("/usr/local/bin/systemctl")  # before /usr/bin
POLICY = pathlib.Path("/usr/sbin/policy-rc.d")
CALLS = pathlib.Path("/tmp/systemctl-calls")
PATIENCE = 60
# Its text: the service's user need not be able to read the source tree.
CONFINED = pathlib.Path(__file__).with_name("confined.py").read_text()


def command(settings):
    """What ExecStart comes to with the variables of the unit and of its file."""
    file = pathlib.Path(settings["EnvironmentFile"][0].lstrip("-")).read_text()
    lines = [*settings["Environment"], *re.findall(r"(?m)^\w+=.*$", file)]
    variables = dict(shlex.split(line)[0].split("=", 1) for line in lines)
    words = []
    for word in settings["ExecStart"][0].split():
        words += variables.get(word[1:], "").split() if word.startswith("$") else [word]
    return words


class Started:
    """The service, as a context manager; it must end with 0 when it is asked to."""

    def __enter__(self):
        settings = unit()
        user = settings["User"][0]
        self.told = socket.socket(socket.AF_UNIX, socket.SOCK_DGRAM)
        self.told.settimeout(PATIENCE)
        self.told.bind("\0service-test")
        self.process = subprocess.Popen(
            ["setpriv", f"--reuid={user}", f"--regid={settings['Group'][0]}", "--init-groups",
             "--no-new-privs", "--bounding-set=-all", "--inh-caps=-all", "/usr/bin/python3",
             "-c", CONFINED, *command(settings)],
            env={"PATH": "/usr/sbin:/usr/bin", "NOTIFY_SOCKET": "@service-test"},
            cwd="/", stdout=subprocess.DEVNULL, stderr=subprocess.PIPE, text=True)
        self.expect("READY=1")
        return self

    def expect(self, state):
        try:
            told = self.told.recv(4096).decode()
        except socket.timeout:
            self.process.kill()
            raise RuntimeError(f"no {state}: {self.process.communicate()[1]}") from None
        if told.split("\n")[0] != state:
            raise RuntimeError(f"{told} instead of {state}")

    def status(self):
        return dict(line.split(":\t", 1) for line in pathlib.Path(
            f"/proc/{self.process.pid}/status").read_text().splitlines() if ":\t" in line)

    def reload(self):
        self.process.send_signal(signal.SIGHUP)
        self.expect("RELOADING=1")
        self.expect("READY=1")

    def __exit__(self, kind, *_):
        self.process.send_signal(signal.SIGTERM)
        with self.told:
            if kind is None:
                self.expect("STOPPING=1")
        self.log = self.process.communicate(timeout=PATIENCE)[1]
        if kind is None and self.process.returncode != 0:
            raise RuntimeError(self.log)


class Service(Installation):
    def systemctl(self, *lines):
        """A stand-in, on a machine that was started by systemd; what it is asked for is noted."""
        if POLICY.exists():  # in a container it keeps all services from being started or stopped
            away = POLICY.with_suffix(".away")
            POLICY.rename(away)
            self.addCleanup(away.rename, POLICY)
        BOOTED.mkdir(parents=True)
        self.addCleanup(BOOTED.rmdir)
        SYSTEMCTL.write_text("\n".join(["#!/bin/sh", f'echo "$*" >>{CALLS}', *lines]) + "\n")
        SYSTEMCTL.chmod(0o755)
        self.addCleanup(SYSTEMCTL.unlink)
        CALLS.write_text("")

    def asked(self):
        calls = [call.replace("--system ", "").replace("--quiet ", "")
                 for call in CALLS.read_text().splitlines()]
        CALLS.write_text("")
        return calls

    def test_it_serves_the_sample_as_soon_as_it_is_started(self):
        shell("userdel cimhost")  # another test's
        self.installed()
        with Started() as service:
            status = service.status()
            user = pwd.getpwnam("cimhost")
            self.assertNotEqual(user.pw_uid, 0)
            self.assertEqual(set(status["Uid"].split()), {str(user.pw_uid)})
            self.assertEqual(set(status["Gid"].split()), {str(user.pw_gid)})
            self.assertEqual([int(status[name], 16) for name in ("CapBnd", "CapPrm", "CapEff")],
                             [0, 0, 0])
            self.assertEqual((status["NoNewPrivs"], status["Seccomp"]), ("1", "2"))
            for _ in range(2):
                walk = shell("serverprofile-walk http://127.0.0.1:5988")
                self.assertEqual(walk.returncode, 0, walk.stdout)
                service.reload()
        self.assertIn("ServerProfileProviderModule", service.log)

    def test_its_settings_show_how_others_may_ask(self):
        PACKED.install(*kinds.NAMES)
        self.addCleanup(shutil.rmtree, SETTINGS.parent)
        shown = SETTINGS.read_text()
        commands = re.findall(r"(?m)^#   (.+)$", shown)
        self.assertEqual(len(commands), 4)
        made = [SETTINGS.parent / name for name in ("cimhost.pem", "cimhost.key", "users")]
        for one in commands:
            result = shell(one.replace("NAME", "operator"), input="Kelmar7\n")
            self.assertEqual(result.returncode, 0, result.stdout)
        self.assertEqual([oct(file.stat().st_mode & 0o777) for file in made],
                         ["0o644", "0o640", "0o640"])
        SETTINGS.write_text(re.sub(r"(?m)^#(?=OPTIONS=)", "", shown))
        ask = "wbemcli -cacert /etc/cimhost/cimhost.pem ein '{}localhost:5989/root/cimv2:{}'"
        ask = ask.format("https://{}", "CIM_RegisteredProfile")
        with Started() as service:
            for _ in range(2):
                self.assertIn("Orvex1", shell(ask.format("operator:Kelmar7@")).stdout)
                for wrong in ("", "operator:Kelmar@"):
                    self.assertNotIn("Orvex1", shell(ask.format(wrong)).stdout)
                service.reload()
            with contextlib.closing(socket.socket()) as plain:
                self.assertNotEqual(plain.connect_ex(("127.0.0.1", 5988)), 0)
        self.assertNotIn("Kelmar", service.log)
        # These are the administrator's, and stay.
        PACKED.remove(*kinds.NAMES, purge=True)
        self.assertTrue(all(file.exists() for file in made))
        changed = ["cimhost.conf.rpmsave"] if KIND is kinds.Rpm else []
        self.assertEqual(sorted(file.name for file in SETTINGS.parent.iterdir()),
                         sorted([*(file.name for file in made), *changed]))

    def test_an_upgrade_keeps_its_settings(self):
        self.installed()
        packed = SETTINGS.read_text()
        self.addCleanup(SETTINGS.write_text, packed)  # or an RPM leaves them when it is removed
        changed = packed + 'OPTIONS="--log-level debug"\n'
        SETTINGS.write_text(changed)
        HIGHER.upgrade(*kinds.NAMES)
        self.assertEqual(SETTINGS.read_text(), changed)

    def test_the_unit_is_what_systemd_takes(self):
        self.installed()
        verified = shell("systemd-analyze verify --man=no cimhost.service")
        self.assertNotIn("cimhost", verified.stdout)
        self.assertEqual(verified.returncode, 0, verified.stdout)

    def test_it_is_neither_enabled_nor_started_and_only_goes_on_if_it_ran(self):
        self.systemctl()
        PACKED.install(*kinds.NAMES)
        for call in self.asked():
            self.assertIn(call, ("daemon-reload", "try-restart cimhost.service"))
        HIGHER.upgrade(*kinds.NAMES)
        self.assertEqual(self.asked()[-2:], ["daemon-reload", "try-restart cimhost.service"])
        self.assertFalse(ENABLED.is_symlink())
        HIGHER.remove(*kinds.NAMES, purge=True)
        calls = self.asked()
        self.assertIn(calls[0], ("stop cimhost.service",
                                 "--no-reload disable --now cimhost.service"))
        self.assertEqual(set(calls[1:]), {"daemon-reload"})

    def test_what_enabling_made_goes_with_it(self):
        PACKED.install(*kinds.NAMES)
        result = shell("systemctl enable cimhost.service")
        self.assertEqual(result.returncode, 0, result.stdout)
        self.assertTrue(ENABLED.is_symlink())
        PACKED.remove(*kinds.NAMES, purge=True)
        self.assertFalse(ENABLED.is_symlink())

    def test_trouble_with_systemd_never_fails_the_transaction(self):
        self.systemctl("exit 1")
        away = SYSUSERS.with_suffix(".away")
        for place in (None, "exit 1"):
            with self.subTest(place):
                SYSUSERS.rename(away)
                try:
                    if place:
                        SYSUSERS.write_text(f"#!/bin/sh\n{place}\n")
                        SYSUSERS.chmod(0o755)
                    PACKED.install(*kinds.NAMES)
                    HIGHER.upgrade(*kinds.NAMES)
                    HIGHER.remove(*kinds.NAMES, purge=True)
                finally:
                    away.rename(SYSUSERS)
