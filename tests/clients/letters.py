"""Short names for the objects of the sample switch and of the module, for tables in tests."""

from cimxml import Path, references

# "-" is a path that is empty.
OBJECTS = {
    "CIM_ObjectManager": "M",
    "PG_CIMXMLCommunicationMechanism": "X",
    "ORVEX_ObjectManagerHost": "H",
    "ORVEX_SoftwareIdentity": "F",
    "ORVEX_ComputerSystem": "S",
    "ORVEX_PhysicalComputerSystem": "L",
    "": "-",
}
NUMBERED = {  # by the last character of this key
    "CIM_RegisteredProfile": ("P", "InstanceID"),
    "CIM_RegisteredSubProfile": ("P", "InstanceID"),
}
NAMED = {
    ("PG_Namespace", "interop"): "N1",
    ("PG_Namespace", "root/cimv2"): "N2",
    ("PG_Namespace", "root/PG_InterOp"): "N3",
    ("ORVEX_Vsan", "20010005AD000001"): "V1",
    ("ORVEX_Vsan", "20020005AD000001"): "V2",
}
# Associations are told as "HS:H>M", the first end's letter, ">", the second's.
ENDS = {
    "CIM_HostedService": ("HS", "Antecedent", "Dependent"),
    "CIM_HostedAccessPoint": ("HA", "Antecedent", "Dependent"),
    "CIM_NamespaceInManager": ("NM", "Antecedent", "Dependent"),
    "CIM_CommMechanismForManager": ("CM", "Antecedent", "Dependent"),
    "CIM_SubProfileRequiresProfile": ("SR", "Antecedent", "Dependent"),
    "CIM_ElementConformsToProfile": ("EC", "ConformantStandard", "ManagedElement"),
    "ORVEX_ElementSoftwareIdentity": ("SI", "Antecedent", "Dependent"),
}


def label(found):
    """An object, or an association with its ends, in letters."""
    if found.class_name in ENDS:
        kind, first, second = ENDS[found.class_name]
        if isinstance(found, Path):
            ends = [found.key(role) or Path("") for role in (first, second)]
        else:
            ends = [references(found)[role][1] for role in (first, second)]
        return f"{kind}:{label(ends[0])}>{label(ends[1])}"
    where = found if isinstance(found, Path) else found.path
    if found.class_name in NUMBERED:
        letter, key = NUMBERED[found.class_name]
        return letter + where.key(key)[-1]
    return OBJECTS.get(found.class_name) or NAMED[found.class_name, where.key("Name")]
