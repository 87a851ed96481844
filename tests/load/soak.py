#!/usr/bin/env python3
"""A cimhost with failing peers beside the module, under load from good clients and bad ones.

exit code: 0 if all was well, 1 if not.
"""

import argparse
import pathlib
import subprocess
import sys
import tempfile

PLACE = pathlib.Path(__file__).resolve().parent
sys.path.insert(0, str(PLACE.parent / "clients"))

from served import Served  # noqa: E402

NAMESPACE = "root/peers"
# For each class, its provider in the library that cimhost's tests have, where the library is said to
# be, and the module's status.
PEERS = {
    "TST_Throwing": ("Quiet", "manners", 2),
    "TST_Slow": ("Slow", "manners", 2),
    "TST_Disabled": ("Quiet", "manners", 10),
    "TST_Missing": ("Quiet", "nonesuch", 2),
}
SCHEMA = "Qualifier Key : boolean = false, Scope(property), Flavor(DisableOverride);\n" + "".join(
    f"class {name} {{ [Key] string Id; }};\n" for name in PEERS)
REGISTRATION = "".join(f"""
instance of PG_ProviderModule {{
    Name = "{name}Module"; Vendor = "v"; Version = "1"; InterfaceType = "C++Default";
    InterfaceVersion = "2.6.0"; Location = "{location}"; OperationalStatus = {{{status}}};
}};
instance of PG_Provider {{ ProviderModuleName = "{name}Module"; Name = "{provider}"; }};
instance of PG_ProviderCapabilities {{
    ProviderModuleName = "{name}Module"; ProviderName = "{provider}"; CapabilityID = "1";
    ProviderType = {{2}}; ClassName = "{name}"; Namespaces = {{"{NAMESPACE}"}};
}};
""" for name, (provider, location, status) in PEERS.items())


def options(folder, build):
    """With which cimhost has the peers. What the module reads back comes late, and a crowd before a
    peer is told so soon."""
    (folder / "schema.mof").write_text(SCHEMA)
    (folder / "registration.mof").write_text(REGISTRATION)
    return [f"--mof={NAMESPACE}={folder / 'schema.mof'}",
            f"--mof=root/PG_InterOp={folder / 'registration.mof'}",
            f"--provider-dir={build / 'tests/embedded/cimhost/modules'}",
            "--fault=*:*=hang:0.001", "--patience=1"]


def main():
    parser = argparse.ArgumentParser(
        description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("build", type=pathlib.Path, help="the build directory, with its tests")
    parser.add_argument("--minutes", default="10", metavar="M")
    parser.add_argument("--clients", default="4", metavar="N", help="that are good")
    parser.add_argument("--bad", default="8", metavar="N", help="that are not")
    parser.add_argument("--pause", default="0.01", metavar="SECONDS",
                        help="of a good client between two requests")
    parser.add_argument("--sanitized", action="store_true", help="the build has a sanitizer")
    chosen = parser.parse_args()
    build = chosen.build.resolve()
    with tempfile.TemporaryDirectory() as folder:
        with Served(build, options(pathlib.Path(folder), build), traced=False) as served:
            done = subprocess.run(
                [sys.executable, "-B", PLACE / "load.py", served.address, "--pid", str(served.pid),
                 "--minutes", chosen.minutes, "--clients", chosen.clients, "--bad", chosen.bad,
                 "--pause", chosen.pause, "--peers", NAMESPACE, "--namespace", "root/PG_InterOp",
                 *(["--sanitized"] if chosen.sanitized else [])], check=False)
    return done.returncode


if __name__ == "__main__":
    sys.exit(main())
