#!/usr/bin/env python3
"""Puts a CIM server with the module under long parallel use and judges every answer.

Each of some thousand different requests is first asked alone; then many clients ask them in random
order, and every answer must be the one that was given alone. Meanwhile the module is disabled and
enabled again, if it is said how; while that goes on, an answer may also be the one that the server
gives without the module. Clients that behave badly may be among them, and providers that do. The
server's memory, descriptors and threads are watched.

exit code: 0 if all was well, 1 if not, 2 for wrong arguments, a server that cannot be asked, or an
interruption.
"""

import argparse
import contextlib
import os
import pathlib
import shlex
import sys
import time

sys.path.insert(1, sys.path[0] + "/../kit")

from bad import WAYS, Bad, asking_peer, telling
from clients import Asker, Load, Never, Toggle, Unanswered
from judge import Expected, Kept
from mix import Request, mix, registered, registrations
from process import HELD, Process
from report import Report

TELL = 10  # seconds between lines of progress
SETTLE = 1  # seconds for a server to close what its clients closed
PATIENCE = 60  # seconds for it to give back what bad clients took: more than its own limits
LONGEST = 40  # seconds that a bad client waits at most: more than the server does


def arguments():
    parser = argparse.ArgumentParser(
        description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("address", metavar="HOST:PORT")
    parser.add_argument("--clients", type=int, default=32)
    parser.add_argument("--requests", type=int, default=100000, help="of all clients together")
    parser.add_argument("--minutes", type=float, metavar="M",
                        help="ask for so long, however many requests that are")
    parser.add_argument("--pause", type=float, default=0, metavar="SECONDS",
                        help="of a client between two requests")
    parser.add_argument("--bad", type=int, default=0, metavar="N",
                        help="N clients that behave badly, besides")
    parser.add_argument("--peers", metavar="NS",
                        help="the bad clients also ask the classes that modules are registered for "
                        "there; these modules may be busy")
    parser.add_argument("--control", type=int, default=0, metavar="N",
                        help="before, N requests that never reach the module: how much the server "
                        "grows by itself")
    parser.add_argument("--seed", type=int, default=1, help="of the order of the requests")
    parser.add_argument("--pid", type=int, help="the server's process, to watch it")
    parser.add_argument("--sanitized", action="store_true",
                        help="the server's memory may grow: a sanitizer keeps what is freed")
    parser.add_argument("--module", default="ServerProfileProviderModule")
    parser.add_argument("--also", metavar="MODULE",
                        help="another module whose classes are asked, too; it stays enabled")
    parser.add_argument("--without", action="append", default=[], metavar="CLASS",
                        help="leave out the questions to this class, for which the module is "
                        "registered although the server answers them itself; may be repeated")
    parser.add_argument("--namespace", action="append", metavar="NS",
                        help="ask there; may be repeated; all that the module is registered for, "
                        "unless given")
    parser.add_argument("--toggle", nargs=2, metavar=("OFF", "ON"),
                        help="shell commands that disable and enable the module")
    parser.add_argument("--home", type=pathlib.Path, metavar="PEGASUS_HOME",
                        help="the server's home: the module is disabled and enabled with its "
                        "cimprovider")
    parser.add_argument("--toggles", type=int, default=4, help="how often, evenly spread")
    parser.add_argument("--hold", type=float, default=0.2, metavar="SECONDS",
                        help="how long the module stays disabled")
    chosen = parser.parse_args()
    if chosen.toggle and chosen.home:
        parser.error("--toggle and --home both say how to disable the module: give one")
    if min(chosen.clients, chosen.requests) < 1 or min(
            chosen.control, chosen.toggles, chosen.bad, chosen.pause) < 0:
        parser.error("--clients and --requests are at least 1, --control, --toggles, --bad and "
                     "--pause at least 0")
    if chosen.minutes is not None and chosen.minutes <= 0:
        parser.error("--minutes is more than 0")
    if chosen.peers and not chosen.bad:
        parser.error("--peers are asked by the bad clients: say --bad N, too")
    return chosen


def toggle_of(chosen):
    if chosen.toggle:
        return Toggle(*chosen.toggle, chosen.hold)
    if chosen.home:
        home = shlex.quote(str(chosen.home.resolve()))
        command = (f"PEGASUS_HOME={home} LD_LIBRARY_PATH={home}/lib "
                   f"{home}/bin/cimprovider {{}} -m {shlex.quote(chosen.module)}")
        return Toggle(command.format("-d"), command.format("-e"), chosen.hold)
    return Never()


def keep(asker, chosen, toggle, report):
    """Asks all requests alone."""
    served = registered(asker, chosen.module)
    if not served:
        raise Unanswered(f"the server has no module {chosen.module} registered")
    for namespace in chosen.namespace or ():
        if namespace not in served:
            raise Unanswered(f"{chosen.module} is not registered for {namespace}, but for "
                             f"{', '.join(served)}")
    served = {one: served[one] for one in chosen.namespace or served}
    requests = mix(asker, served)
    if chosen.also:
        others = registered(asker, chosen.also)
        requests += mix(asker, {one: {name: kind for name, kind in others.get(one, {}).items()
                                      if name not in chosen.without} for one in served})
    kept = Kept(asker, list(dict.fromkeys(requests)), served)
    if isinstance(toggle, Toggle):
        try:
            toggle.run("off")
            kept.keep_blocked()
        finally:
            toggle.run("on")
    else:
        report.say("The module stays enabled: neither --toggle nor --home says how to disable it.")
    kept.check("asked again")
    reach = sum(map(kept.reaches_module, kept.expected))
    report.say(f"{len(kept.expected)} different requests asked alone, {reach} of them reach the "
               f"module")
    report.list(kept.problems)
    kept.problems.clear()
    return kept


def ways(asker, peers):
    """What the bad clients do."""
    found = {name: telling(*way) for name, way in WAYS.items()}
    for module, namespace, class_name, _ in registrations(asker):
        if namespace == peers:
            for method in ("EnumerateInstances", "EnumerateInstanceNames"):
                request = Request(namespace, method, (), "ClassName", class_name)
                found[f"asks {method} of {class_name}"] = asking_peer(
                    request, Expected(asker.text(request), False), module)
    return found


def drive(name, chosen, load, toggle, bad, report):
    """Runs one load; returns the process, if it is watched."""
    process = Process(chosen.pid) if chosen.pid else None
    told = time.monotonic()

    def progress(load):
        nonlocal told
        if process:
            process.look(load.part, load.done)
        if time.monotonic() - told > TELL:
            told = time.monotonic()
            print(f"{name}: {load.done}, {load.part:.0%}", file=sys.stderr, flush=True)

    if process:
        process.look(0, 0)
    toggles = chosen.toggles if isinstance(toggle, Toggle) else 0
    with bad or contextlib.nullcontext():
        seconds = load.run(toggle, toggles, progress)
    report.answers(name, load, seconds)
    report.windows(name, load, toggle, toggles)
    if bad:
        report.bad(name, bad)
    if process:
        time.sleep(SETTLE)
        process.look(1, load.done)
    return process


def main():
    chosen = arguments()
    report = Report()
    toggle = toggle_of(chosen)
    try:
        if chosen.pid:
            os.kill(chosen.pid, 0)
        asker = Asker(chosen.address)
        kept = keep(asker, chosen, toggle, report)
        bad = None
        seconds = chosen.minutes and 60 * chosen.minutes
        if chosen.bad:
            bad = Bad(chosen.address, ways(asker, chosen.peers), chosen.bad, chosen.seed,
                      min(LONGEST, (seconds or 20) / 10))
        asker.close()
        control = None
        if chosen.control:
            alone = {r: e for r, e in kept.expected.items() if not kept.reaches_module(r)}
            load = Load(chosen.address, alone, chosen.clients, chosen.seed, chosen.control)
            process = drive("control", chosen, load, Never(), None, report)
            control = process and report.process("control", process)
        load = Load(chosen.address, kept.expected, chosen.clients, chosen.seed,
                    None if seconds else chosen.requests, seconds, chosen.pause)
        process = drive("load", chosen, load, toggle, bad, report)
        if bad:
            kept.check("after the load")
            report.list(kept.problems)
            asker.close()
        if process:
            grown = report.process("load", process)
            judged, swing = set(HELD), 0
            if chosen.sanitized:
                judged.remove("memory")
            if bad:  # these come and go with their connections and requests
                judged.remove("descriptors")
                swing = grown and process.quarters()[0].memory // 10
                report.settled(process, process.settles(PATIENCE))
            report.growth(grown, control, judged, swing)
    except KeyboardInterrupt:
        print("load.py: interrupted", file=sys.stderr)
        return 2
    except ProcessLookupError:
        print(f"load.py: no process {chosen.pid}", file=sys.stderr)
        return 2
    except (Unanswered, OSError) as error:
        print(f"load.py: {chosen.address}: {error}", file=sys.stderr)
        return 2
    report.say("all well" if not report.problems else f"{report.problems} problems")
    return 1 if report.problems else 0


if __name__ == "__main__":
    sys.exit(main())
