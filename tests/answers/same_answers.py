#!/usr/bin/env python3
"""Asks cimhost and the server of an installed OpenPegasus the same and compares the answers.

Starts that server with a repository of its own, loads schema, sample switch and registration with
its tools, and the module built for it; mirrors what it holds into MOF; starts cimhost with that;
asks both the wire suite. Ends with 1 if the answers differ otherwise than listed, or if a listed
difference did not come.

usage: same_answers.py --home PEGASUS_HOME --build BUILD-DIRECTORY [--pairs] [--keep DIRECTORY]
                       [--document FILE]
"""

import argparse
import concurrent.futures
import functools
import json
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile

sys.path.insert(1, sys.path[0] + "/../kit")

import compare
import document
import listed
import mirror
import record
import suite
from openpegasus import CannotIsolate, Crashed, RealServer
from request import Connection
from served import Served

SOURCE = pathlib.Path(__file__).resolve().parent.parent.parent
CIMV2, INTEROP, OWN = suite.NAMESPACES
SCHEMA = SOURCE / "schema"
REGISTRATION = SCHEMA / "serverprofile_registration.mof"
SERVER_OBJECTS = SCHEMA / "serverobjects_registration.mof"
MODULE = SCHEMA / "orvex_serverprofile.mof"
SWITCH = (SCHEMA / "orvex_switch.mof", SOURCE / "samples" / "sample_switch.mof")
OBJECTS = pathlib.Path(__file__).resolve().parent / "objects.mof"
# What the server's own providers answer for, and the mirror takes over.
OF_SERVER = ("CIM_Namespace", "CIM_ObjectManager", "CIM_CIMXMLCommunicationMechanism",
             "PG_ComputerSystem", "CIM_RegisteredProfile", "CIM_SoftwareIdentity",
             "CIM_ElementConformsToProfile", "CIM_ReferencedProfile", "CIM_HostedService",
             "CIM_HostedAccessPoint", "CIM_NamespaceInManager", "CIM_CommMechanismForManager",
             "CIM_ElementSoftwareIdentity")
# OpenPegasus's own provider of the Server profile shares its objects between requests without a
# lock, and a traversal from one of them can ask it twice at once: for an association class of its own,
# and by a read-back of the module. Now and then that ends the server, as a few clients do without any
# module. Only at such a question is it let pass, and asked again from the start.
ATTEMPTS = 4
UNSAFE = re.compile(INTEROP + r" (Associator|Reference)(s|Names) .*\bPG_")
# What cimhost, when it is writable, says of itself by the second module.
SETTINGS = """ElementName = cimhost
Description = cimhost, version {version}
FunctionalProfilesSupported = 2, 5, 6
Namespaces = interop
"""
# The server's own objects that the module reads back, by namespace: shown as a provider publishes them.
SHOWN = {INTEROP: suite.OF_SERVER, OWN: ("PG_Namespace",)}
# Of these classes, what objects.mof has is loaded as it is.
FROM_FILES = ("CIM_ObjectManager", "CIM_CIMXMLCommunicationMechanism")


def say(text):
    print(f"== {text}", flush=True)


def wire_mof(directory):
    """The wire cases' content without an empty list, which cimmof cannot read."""
    text = (SOURCE / "tests" / "wire" / "wire.mof").read_text(encoding="utf-8")
    file = pathlib.Path(directory, "wire.mof")
    file.write_text(re.sub(r".*= \{\};\n", "", text), encoding="utf-8")
    return file


def load(server, *arguments):
    done = server.run(["cimmof", *map(str, arguments)])
    if done.returncode != 0:
        raise RuntimeError(f"cimmof {arguments}: {done.returncode}\n{done.stdout}{done.stderr}")


def version(build):
    said = subprocess.run([build / "bin" / "cimhost", "--version"], check=True,
                          capture_output=True, text=True)
    return said.stdout.split()[-1]


def served(server):
    connection = Connection(server.address)
    namespaces = suite.served(connection)
    connection.close()
    return namespaces


def fill(server, build, wire):
    """What OpenPegasus serves: the module in its two namespaces and one of its own, and there the
    server's own objects by the second module; in root/cimv2 the repository has them."""
    for library in (build / "lib" / "openpegasus").glob("*.so"):
        shutil.copy(library, server.providers)
    for file in ("cim_schema.mof", "pg_server.mof"):
        load(server, "-uc", "-aEV", "-I", SCHEMA, "-n", OWN, SCHEMA / file)
    for namespace in served(server):
        for file in (SWITCH[0], MODULE, SWITCH[1]):
            load(server, "-aE", "-aV", "-n", namespace, file)
    load(server, "-n", CIMV2, OBJECTS)
    settings = server.etc / "serverobjects" / "ServerObjectsProvider.conf"
    settings.parent.mkdir(exist_ok=True)
    settings.write_text(SETTINGS.format(version=version(build)), encoding="utf-8")
    own = wire.with_name("serverobjects.mof")
    own.write_text(SERVER_OBJECTS.read_text(encoding="utf-8").replace(f', "{CIMV2}"', ""),
                   encoding="utf-8")
    load(server, "-n", INTEROP, own)
    load(server, "-n", "root/wire", wire)
    empty = wire.with_name("empty.mof")
    empty.write_text("class X_Nothing { };\n", encoding="utf-8")
    load(server, "-n", "root/other", empty)
    load(server, "-n", INTEROP, REGISTRATION)


def mirrored(server, directory):
    """The options with which cimhost serves what `server` does."""
    registered = re.findall(r'\bClassName = "(\w+)"', REGISTRATION.read_text(encoding="utf-8"))
    published = mirror.mirror(server.address, directory, suite.NAMESPACES, OF_SERVER,
                              {*registered, *FROM_FILES, *suite.OF_SERVER})
    place = directory / "shown"
    place.mkdir(exist_ok=True)
    namespaces = served(server)
    # A server that publishes nothing of itself has the second module's namespaces, and cimhost its own.
    publishes_itself = INTEROP in namespaces
    files = [*published.items(), *((namespace, SWITCH[1]) for namespace in namespaces)]
    if publishes_itself:
        files += [(f"shown/{namespace}", file) for namespace, classes in SHOWN.items()
                  for file in mirror.mirror(server.address, place, (namespace,), classes).values()]
        files.append((INTEROP, shown_registration(directory)))
    options = [part for namespace, file in files for part in ("--mof", f"{namespace}={file}")]
    if not publishes_itself:
        options += [part for namespace in ("root", "root/PG_Internal")
                    for part in ("--namespace", namespace)]
    return options


def shown_registration(directory):
    """The registration of the module that shows these objects."""
    file = directory / "shown.mof"
    file.write_text("""
instance of PG_ProviderModule { Name = "Shown"; Vendor = "tests"; Version = "1";
    InterfaceType = "C++Default"; InterfaceVersion = "2.6.0"; Location = "Shown"; };
instance of PG_Provider { ProviderModuleName = "Shown"; Name = "Shown"; };
""" + "".join(f"""
instance of PG_ProviderCapabilities {{ ProviderModuleName = "Shown"; ProviderName = "Shown";
    CapabilityID = "{name} in {namespace}"; ProviderType = {{2}}; ClassName = "{name}";
    Namespaces = {{"{namespace}"}}; }};
""" for namespace, classes in SHOWN.items() for name in classes), encoding="utf-8")
    return file


def content(mirror_options, wire):
    given = (f"{CIMV2}={OBJECTS}", f"root/wire={wire}", f"{INTEROP}={REGISTRATION}")
    return [*mirror_options, *(part for option in given for part in ("--mof", option)),
            "--namespace", "root/other"]


def both_recorded(server, build, directory, wire, stores, pairs):
    """Writes the two stores, OpenPegasus's and ours."""
    options = [*content(mirrored(server, directory), wire),
               "--provider-dir", str(build / "tests" / "answers" / "lib")]
    # Writable, as that server is.
    with Served(build, ["--writable", *options], content=False) as served:
        with concurrent.futures.ThreadPoolExecutor() as pool:
            list(pool.map(functools.partial(record.record, pairs=pairs),
                          (server.address, served.address), stores))


def last_question(stores):
    """What OpenPegasus was asked and did not answer; cimhost was asked the same in the same order."""
    theirs, ours = (store.read_text(encoding="utf-8").splitlines() if store.exists() else []
                    for store in stores)
    return json.loads(ours[len(theirs)])["id"] if len(theirs) < len(ours) else ""


def settled(address, store, theirs, ours):
    """`theirs` with the answers that the server gives, asked again, where it may have mixed them up."""
    for _ in range(1, ATTEMPTS):
        doubted = {key for key, _ in compare.compare(theirs, ours)[1] if UNSAFE.match(key)}
        if not doubted:
            break
        say("asking OpenPegasus again:\n   " + "\n   ".join(sorted(doubted)))
        record.record(address, store, wanted=lambda key: listed.spelt(key) in doubted)
        theirs = {**theirs, **compare.load(store)}
    return theirs


def recorded(home, build, directory, pairs):
    """The answers of both, OpenPegasus's and ours, of the first attempt that the server survives."""
    wire = wire_mof(directory)
    stores = directory / "openpegasus.answers", directory / "embedded.answers"
    for attempt in range(1, ATTEMPTS + 1):
        say("starting the server of OpenPegasus")
        try:
            with RealServer(home, visible=[SOURCE, directory, build]) as server:
                fill(server, build, wire)
                say(f"asking both (OpenPegasus: {server.address})")
                both_recorded(server, build, directory, wire, stores, pairs)
                theirs, ours = map(compare.load, stores)
                return settled(server.address, directory / "again.answers", theirs, ours), ours
        except Crashed as crash:
            question = last_question(stores)
            say(f"{str(crash).splitlines()[0]} attempt {attempt} of {ATTEMPTS}, at: {question}")
            if attempt == ATTEMPTS or not UNSAFE.match(question):
                raise
    return None


def main():
    parser = argparse.ArgumentParser(description=__doc__,
                                     formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--home", required=True, type=pathlib.Path)
    parser.add_argument("--build", required=True, type=pathlib.Path)
    parser.add_argument("--pairs", action="store_true", help=suite.PAIRS_HELP)
    parser.add_argument("--keep", type=pathlib.Path, help="leave mirror and stores there")
    parser.add_argument("--document", type=pathlib.Path, help="write the list with its counts")
    options = parser.parse_args()
    if options.document and options.pairs:
        parser.error("--document says what came of all questions: leave out --pairs")
    with tempfile.TemporaryDirectory() as scratch:
        directory = options.keep or pathlib.Path(scratch)
        directory.mkdir(parents=True, exist_ok=True)
        theirs, ours = recorded(options.home, options.build.resolve(), directory, options.pairs)
    counts, unlisted = compare.compare(theirs, ours)
    compare.report(theirs, counts, unlisted)
    unmet = listed.unmet(counts, any(key.startswith(INTEROP + " ") for key in theirs))
    if unmet:
        print("listed, but not met: " + ", ".join(unmet))
    if options.document and not unlisted:
        options.document.write_text(document.text(len(theirs), counts), encoding="utf-8")
    return 1 if unlisted or unmet else 0


if __name__ == "__main__":
    try:
        sys.exit(main())
    except CannotIsolate as error:
        sys.exit(f"same_answers: {error}")
