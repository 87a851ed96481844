"""MOF that is more of the same: what the growth is measured with."""

from questions import vsan


def classes(count):
    for n in range(count):
        yield f"""
[Version("1.0.0"), Description("One of many classes.")]
class BENCH_Class{n} : CIM_ManagedElement {{
    [Key, Description("The name."), MaxLen(256)] string Name;
    [Description("A number.")] uint32 Number;
    [Description("Some more numbers."), ArrayType("Indexed")] uint16 Numbers[];
}};
"""


def instances(count):
    """Objects like those of the sample switch, as many properties set."""
    for n in range(count):
        yield f"""
instance of ORVEX_Vsan {{
    CreationClassName = "ORVEX_Vsan";
    Name = "{vsan(n)}";
    NameFormat = "WWN";
    ElementName = "VSAN {n}";
    Description = "The fabric of the hosts of row {n}";
    OperationalStatus = {{2}};
    StatusDescriptions = {{"OK"}};
    HealthState = 5;
    EnabledState = 2;
}};
"""


def qualifiers(count):
    for n in range(count):
        yield f"qualifier Bench{n} : string = null, scope(class, property);\n"


def depth(count):
    """Each class below the one before it."""
    for n in range(count):
        above = f"BENCH_Level{n - 1}" if n else "CIM_ManagedElement"
        yield f"""
class BENCH_Level{n} : {above} {{
    [Description("A number of this level.")] uint32 Number{n};
}};
"""


def providers(count):
    """A module that is never asked, with a provider for each class."""
    yield """
instance of PG_ProviderModule {
    Name = "Bench"; Vendor = "Bench"; Version = "1"; InterfaceType = "C++Default";
    InterfaceVersion = "2.6.0"; Location = "Bench";
};
"""
    for n in range(count):
        provider = f'ProviderModuleName = "Bench"; {{}}Name = "Provider{n}";'
        yield f"""
instance of PG_Provider {{ {provider.format("")} }};
instance of PG_ProviderCapabilities {{
    {provider.format("Provider")} CapabilityID = "{n}"; ProviderType = {{2}};
    ClassName = "BENCH_Class{n}"; Namespaces = {{"interop"}};
}};
"""


def costly(things):
    """What the costs are measured with: a class of each kind, and a thing with many links."""
    wide = "".join(f"    [Description(\"Number {n}.\")] string P{n};\n" for n in range(900))
    yield f"""
class BENCH_Thing : CIM_ManagedElement {{
    [Key] string Name;
    string Text;
    string Texts[];
    uint8 Bytes[];
    boolean Flags[];
    datetime Times[];
    real64 Reals[];
    char16 Letters[];
    uint64 Number;
    real64 Real;
}};
class BENCH_Wide : CIM_ManagedElement {{
    [Key] string Name;
{wide}}};
class BENCH_Empty : BENCH_Wide {{
}};
[Association]
class BENCH_Link {{
    [Key] BENCH_Thing REF Antecedent;
    [Key] BENCH_Thing REF Dependent;
}};
instance of BENCH_Wide {{
    Name = "there";
}};
"""
    for n in range(things):
        yield f"""
instance of BENCH_Thing {{ Name = "{n:08}"; Text = "thing {n}"; }};
instance of BENCH_Link {{
    Antecedent = "BENCH_Thing.Name=\\"00000000\\"";
    Dependent = "BENCH_Thing.Name=\\"{n:08}\\"";
}};
"""


def write(path, parts):
    with open(path, "w") as file:
        file.writelines(parts)
    return path
