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


def write(path, parts):
    with open(path, "w") as file:
        file.writelines(parts)
    return path
