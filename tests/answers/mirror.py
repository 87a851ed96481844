#!/usr/bin/env python3
"""Writes what a CIM server holds as MOF, so that cimhost can serve the same at a desk.

For each namespace a file with all qualifiers and classes, and with the instances of the classes
named, their subclasses included, except those of the classes that a provider module will answer
for (of exactly these classes). The files are named after the namespaces, with "-" for "/".

usage: mirror.py HOST:PORT DIRECTORY [--namespace NAMESPACE]... [--instances CLASS]...
                 [--without CLASS]...
"""

import argparse
import pathlib
import sys

sys.path.insert(1, sys.path[0] + "/../kit")

import mof
import request
import suite
from request import value

WHOLE = (value("DeepInheritance", True), value("LocalOnly", False))


def in_order(classes):
    """Superclasses before their subclasses, associations after what they may name."""
    by_name = {c.get("NAME").lower(): c for c in classes}
    done, result = set(), []

    def take(element):
        name = element.get("NAME").lower()
        if name not in done:
            done.add(name)
            above = by_name.get((element.get("SUPERCLASS") or "").lower())
            if above is not None:
                take(above)
            result.append(element)

    for element in sorted(classes, key=lambda c: c.find("PROPERTY.REFERENCE") is not None):
        take(element)
    return result


def without_slips(classes):
    """Takes from the classes what cimhost refuses and OpenPegasus does not look at: references to
    classes that are not there, with the method or class that has them, and the qualifier
    Association of a class that can be none (the schema of OpenPegasus calls PG_ObjectManager one).
    """
    by_name = {c.get("NAME"): c for c in classes}

    def dangling(element):
        return any(e.get("REFERENCECLASS") not in by_name for e in element.iter()
                   if e.tag in ("PROPERTY.REFERENCE", "PARAMETER.REFERENCE", "PARAMETER.REFARRAY"))

    for element in classes:
        for method in element.findall("METHOD"):
            if dangling(method):
                element.remove(method)
        above = by_name.get(element.get("SUPERCLASS"))
        for given in element.findall("QUALIFIER[@NAME='Association']"):
            if above is not None and above.find("QUALIFIER[@NAME='Association']") is None:
                element.remove(given)
    return [c for c in classes if not dangling(c)]


def schema(connection, namespace):
    yield from map(mof.declaration, connection.ask(namespace, "EnumerateQualifiers"))
    classes = connection.ask(
        namespace, "EnumerateClasses", value("DeepInheritance", True),
        value("LocalOnly", True), value("IncludeQualifiers", True))
    yield from map(mof.class_declaration, in_order(without_slips(classes)))


def properties_of(connection, namespace, name):
    found, = connection.ask(namespace, "GetClass", ("ClassName", request.of_class(name)),
                            value("LocalOnly", False))
    return [p.get("NAME") for p in found if p.tag.startswith("PROPERTY")]


def instances(connection, namespace, wanted, without):
    """Each instance once, however many of the wanted classes it is an instance of."""
    seen = set()
    without = {name.lower() for name in without}
    for name in wanted:
        try:
            found = connection.ask(
                namespace, "EnumerateInstances", ("ClassName", request.of_class(name)), *WHOLE)
        except request.CimError as error:
            if error.code == 5:  # not in this namespace
                continue
            raise
        for named in found:
            key = mof.path(named.find("INSTANCENAME"))
            if key not in seen and named.find("INSTANCE").get("CLASSNAME").lower() not in without:
                seen.add(key)
                yield mof.instance(named.find("INSTANCE"), properties_of(
                    connection, namespace, named.find("INSTANCE").get("CLASSNAME")))


def mirror(address, directory, namespaces, wanted=(), without=()):
    """Writes the files and returns {namespace: file}."""
    connection = request.Connection(address)
    files = {}
    for namespace in namespaces:
        file = pathlib.Path(directory, namespace.replace("/", "-") + ".mof")
        with open(file, "w", encoding="utf-8") as out:
            for text in schema(connection, namespace):
                out.write(text + "\n")
            for text in instances(connection, namespace, wanted, without):
                out.write(text + "\n")
        files[namespace] = file
    connection.close()
    return files


def main():
    parser = argparse.ArgumentParser(description=__doc__,
                                     formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("server", metavar="HOST:PORT")
    parser.add_argument("directory", type=pathlib.Path)
    parser.add_argument("--namespace", action="append", default=[])
    parser.add_argument("--instances", action="append", default=[], metavar="CLASS")
    parser.add_argument("--without", action="append", default=[], metavar="CLASS")
    options = parser.parse_args()
    options.directory.mkdir(parents=True, exist_ok=True)
    for namespace, file in mirror(options.server, options.directory,
                                  options.namespace or suite.NAMESPACES, options.instances,
                                  options.without).items():
        print(f"{namespace}: {file} ({file.stat().st_size} bytes)")
    return 0


if __name__ == "__main__":
    sys.exit(main())
