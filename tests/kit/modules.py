"""Modules beside the profile's, out of the library that cimhost's tests have (MannersModule.cpp)."""

import pathlib


# The classes of which registrations are instances, as small as they can be.
REGISTRATION_CLASSES = """
Qualifier Key : boolean = false, Scope(property, reference), Flavor(DisableOverride);
class PG_ProviderModule {
    [Key] string Name; string Vendor; string Version; string InterfaceType;
    string InterfaceVersion; string Location; uint16 OperationalStatus[];
};
class PG_Provider { [Key] string ProviderModuleName; [Key] string Name; };
class PG_ProviderCapabilities {
    [Key] string ProviderModuleName; [Key] string ProviderName; [Key] string CapabilityID;
    uint16 ProviderType[]; string ClassName; string Namespaces[];
};
"""


def registered(module, provider, classes, namespace, location="manners", status=2):
    """MOF that registers a module in the library `location`, of one provider of `classes`."""
    return f"""
instance of PG_ProviderModule {{
    Name = "{module}"; Vendor = "v"; Version = "1"; InterfaceType = "C++Default";
    InterfaceVersion = "2.6.0"; Location = "{location}"; OperationalStatus = {{{status}}};
}};
instance of PG_Provider {{ ProviderModuleName = "{module}"; Name = "{provider}"; }};
""" + "".join(f"""
instance of PG_ProviderCapabilities {{
    ProviderModuleName = "{module}"; ProviderName = "{provider}"; CapabilityID = "{each}";
    ProviderType = {{2}}; ClassName = "{each}"; Namespaces = {{"{namespace}"}};
}};
""" for each in classes)


def options(modules, namespace, folder, build):
    """With which cimhost has `modules`, {class: (provider, location of the library, status)}: each
    class is declared in `namespace` and published by a module of its own, CLASSModule. The MOF is
    written into `folder`."""
    folder, library = pathlib.Path(folder), pathlib.Path(build) / "tests/embedded/cimhost/modules"
    schema, registration = folder / "schema.mof", folder / "registration.mof"
    schema.write_text(
        "Qualifier Key : boolean = false, Scope(property), Flavor(DisableOverride);\n" +
        "".join(f"class {name} {{ [Key] string Id; }};\n" for name in modules))
    registration.write_text("".join(
        registered(f"{name}Module", provider, [name], namespace, location, status)
        for name, (provider, location, status) in modules.items()))
    return [f"--mof={namespace}={schema}", f"--mof=root/PG_InterOp={registration}",
            f"--provider-dir={library}"]
