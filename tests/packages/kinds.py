"""The two kinds of packages, and how each one's tools are asked for the same things."""

import pathlib
import re
import subprocess

NAMES = ("cimhost", "serverprofile-provider", "serverprofile-walk")


def output(*command):
    """What `command` prints to standard output; it must succeed."""
    return subprocess.run(command, check=True, stdout=subprocess.PIPE, text=True).stdout


def said(*command):
    """All that `command` prints; if it fails, that is in the error."""
    result = subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.STDOUT,
                            stdin=subprocess.DEVNULL, text=True)
    if result.returncode != 0:
        raise RuntimeError(f"{command} ended with {result.returncode}:\n{result.stdout}")
    return result.stdout


class Kind:
    """A kind of packages, as scripts/package.sh made them in the folder `folder`: `files` by the
    package's name, `lib` where they keep libraries. What changes the machine returns what the
    package manager said, and raises RuntimeError if the transaction failed."""

    def __init__(self, folder):
        self.files = {name: one(folder, self.pattern.format(name)) for name in NAMES}

    def chosen(self, names):
        return [str(self.files[name]) for name in names]


class Deb(Kind):
    name = "deb"
    pattern = "{}_*.deb"
    lib = "/usr/lib/" + output("dpkg-architecture", "-qDEB_HOST_MULTIARCH").strip()

    def contents(self, package):
        """The package's files, without directories."""
        lines = output("dpkg-deb", "-c", self.files[package]).splitlines()
        return [re.search(r" \.(/\S*)", line)[1] for line in lines if not line.startswith("d")]

    def version(self, package):
        return output("dpkg-deb", "-f", self.files[package], "Version").strip().rsplit("-", 1)[0]

    def unpack(self, package, folder):
        output("dpkg-deb", "-x", self.files[package], folder)

    def install(self, *names):
        return said("dpkg", "--install", *self.chosen(names))

    upgrade = install

    def remove(self, *names, purge=False):
        return said("dpkg", "--purge" if purge else "--remove", *names)

    def purge_settings(self, name):
        """Removes the settings of a package that is gone."""
        states = subprocess.run(["dpkg-query", "-W", "-f", "${db:Status-Status}", name],
                                stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True)
        if states.stdout == "config-files":
            self.remove(name, purge=True)

    def verify(self, *names):
        """What differs between what is installed and what was packed: nothing, if all is well."""
        return said("dpkg", "--verify", *names)

    def installed_version(self, name):
        return output("dpkg-query", "-W", "-f", "${Version}", name)


class Rpm(Kind):
    name = "rpm"
    pattern = "{}-*.rpm"
    lib = "/usr/" + output("rpm", "--eval", "%{_lib}").strip()

    def contents(self, package):
        lines = output("rpm", "-qlvp", self.files[package]).splitlines()
        return [re.search(r" (/\S*)", line)[1] for line in lines if not line.startswith("d")]

    def version(self, package):
        return output("rpm", "-qp", "--qf", "%{VERSION}", self.files[package])

    def unpack(self, package, folder):
        with subprocess.Popen(["rpm2cpio", self.files[package]], stdout=subprocess.PIPE) as archive:
            subprocess.run(["cpio", "-id", "--quiet"], cwd=folder, check=True, stdin=archive.stdout)

    # Debian's libraries are not in this database, and its rpm wants to be told that it is meant.
    # The scripts look for programs where those of the machine do.
    RPM = ("rpm", "--dbpath", "/var/lib/scratch-rpm")
    CHANGE = (*RPM, "--nodeps", "--force-debian", "--define", "_install_script_path %(echo $PATH)")

    def install(self, *names):
        return said(*self.CHANGE, "--install", *self.chosen(names))

    def upgrade(self, *names):
        return said(*self.CHANGE, "--upgrade", *self.chosen(names))

    def remove(self, *names, purge=False):
        return said(*self.CHANGE, "--erase", *names)

    def purge_settings(self, name):
        """They have gone with the package, unless they were changed."""

    def verify(self, *names):
        return said(*self.RPM, "--verify", "--nodeps", *names)

    def installed_version(self, name):
        return output(*self.RPM, "-q", "--qf", "%{VERSION}", name)


def one(folder, pattern):
    found = list(pathlib.Path(folder).glob(pattern))
    if len(found) != 1:
        raise RuntimeError(f"one {pattern} is expected in {folder}, not {len(found)}")
    return found[0]
