"""Modules beside the profile's, out of the library that cimhost's tests have (MannersModule.cpp)."""

import pathlib


def options(modules, namespace, folder, build):
    """With which cimhost has `modules`, {class: (provider, location of the library, status)}: each
    class is declared in `namespace` and published by a module of its own, CLASSModule. The MOF is
    written into `folder`."""
    folder, library = pathlib.Path(folder), pathlib.Path(build) / "tests/embedded/cimhost/modules"
    schema, registration = folder / "schema.mof", folder / "registration.mof"
    schema.write_text(
        "Qualifier Key : boolean = false, Scope(property), Flavor(DisableOverride);\n" +
        "".join(f"class {name} {{ [Key] string Id; }};\n" for name in modules))
    registration.write_text("".join(f"""
instance of PG_ProviderModule {{
    Name = "{name}Module"; Vendor = "v"; Version = "1"; InterfaceType = "C++Default";
    InterfaceVersion = "2.6.0"; Location = "{location}"; OperationalStatus = {{{status}}};
}};
instance of PG_Provider {{ ProviderModuleName = "{name}Module"; Name = "{provider}"; }};
instance of PG_ProviderCapabilities {{
    ProviderModuleName = "{name}Module"; ProviderName = "{provider}"; CapabilityID = "1";
    ProviderType = {{2}}; ClassName = "{name}"; Namespaces = {{"{namespace}"}};
}};
""" for name, (provider, location, status) in modules.items()))
    return [f"--mof={namespace}={schema}", f"--mof=root/PG_InterOp={registration}",
            f"--provider-dir={library}"]
