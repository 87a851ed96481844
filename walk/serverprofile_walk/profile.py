"""The Server profile of the switch as a table: which objects there are, what ties them, and what is
odd on purpose. Only this is known beforehand; everything else the server has to say itself."""

from typing import NamedTuple, Optional

# Where clients look for the profiles: the standard's names of the interop namespace (DSP1033), in
# the order in which clients try them, and then a name that servers give it.
INTEROP_NAMES = ("interop", "root/interop")
SERVERS_NAMES = ("root/PG_InterOp",)

# Where the switch's own classes are, and where the profile says that its own objects are.
OWN_NAMESPACE = "root/cimv2"


class Oddity(NamedTuple):
    """What looks like a mistake in the answers and is none."""

    name: str
    text: str


class Kind(NamedTuple):
    """A kind of objects.

    `enumerated` is the class by which clients find them, `published` the class of which they have to
    be, in any letter case (None: that or a subclass). From a `source` the profile is followed on.
    The paths of `own` objects say OWN_NAMESPACE wherever they were asked for. `members` are the
    objects that there have to be, (label, keys, properties); without, the server says which there
    are: at least `least`, at most `most`. Only those with the key `only` count.
    With `keyless`, a far end may be named by its class alone, for that reason.
    Each has the `properties`, and those of `required` are not NULL. `settled`: its properties are
    the same in each answer; others may change from one question to the next."""

    name: str
    enumerated: str
    published: Optional[str] = None
    source: bool = True
    own: bool = False
    members: tuple = ()
    least: int = 1
    most: Optional[int] = None
    only: Optional[tuple] = None
    keyless: Optional["Oddity"] = None
    properties: tuple = ()
    required: tuple = ()
    settled: bool = True
    advice: str = ""  # what to do when one is published as another class


THE_BOX_MAY_COME_WITHOUT_KEYS = Oddity(
    "the box may come without keys",
    "An OpenPegasus hands on an object of its own repository, such as the box of the sample switch, "
    "by its class alone. The box of a switch whose provider publishes it says its keys. Without keys "
    "it is not followed.")


def _registered(instance_id, name):
    return name, (("InstanceID", instance_id),), (("RegisteredName", name),)


_REGISTERED = (("RegisteredOrganization", 11), ("OtherRegisteredOrganization", ""),
               ("RegisteredVersion", "1.1.0"), ("AdvertiseTypes", (3,)))
_SYSTEM = ("SystemCreationClassName", "SystemName", "CreationClassName", "Name")

# What clients of the Server profile read, and what the CIM schema 2.41 calls Required.
KINDS = (
    Kind("registered profile", "CIM_RegisteredProfile", "CIM_RegisteredProfile", own=True, members=(
        _registered("Orvex1", "Fabric"), _registered("Orvex2", "Switch"),
        _registered("Orvex6", "Server")), properties=_REGISTERED),
    Kind("registered subprofile", "CIM_RegisteredSubProfile", "CIM_RegisteredSubProfile", own=True,
         members=(_registered("Orvex3", "Zone Control"),
                  _registered("Orvex4", "Enhanced Zoning and Enhanced Zoning Control"),
                  _registered("Orvex5", "Blades")), properties=_REGISTERED),
    Kind("object manager", "CIM_ObjectManager", "CIM_ObjectManager", most=1, required=(
        *_SYSTEM, "ElementName", "Description", "OperationalStatus", "Started"), advice=(
            "the profile leads on from CIM_ObjectManager, exactly that class, so whoever follows "
            "this path gets empty answers: no namespaces, no mechanism, no host. Let the server "
            "publish its object manager as CIM_ObjectManager; on an OpenPegasus, "
            "'serverprofile-register install' adds the module that does")),
    Kind("namespace", "CIM_Namespace", "PG_Namespace", required=(
        *_SYSTEM, "ObjectManagerCreationClassName", "ObjectManagerName", "ClassInfo", "ClassType"),
         advice="the profile leads on from PG_Namespace, so whoever follows this path gets an empty "
                "answer"),
    Kind("communication mechanism", "CIM_CIMXMLCommunicationMechanism",
         "PG_CIMXMLCommunicationMechanism", properties=(
             ("CommunicationMechanism", 2), ("CIMXMLProtocolVersion", 1)), required=(
             *_SYSTEM, "ElementName", "FunctionalProfilesSupported", "MultipleOperationsSupported",
             "AuthenticationMechanismsSupported", "AdvertiseTypes", "CIMValidated", "Version"),
         advice="the profile leads on from PG_CIMXMLCommunicationMechanism, so whoever follows this "
                "path gets empty answers"),
    Kind("host", "ORVEX_ObjectManagerHost", "ORVEX_ObjectManagerHost", own=True, most=1, properties=(
        ("CreationClassName", "ORVEX_ObjectManagerHost"), ("OperationalStatus", (2,))),
         required=("NameFormat", "Description", "ElementName")),
    Kind("firmware", "ORVEX_SoftwareIdentity", "ORVEX_SoftwareIdentity", own=True, members=((
        "Kelmar", (("InstanceID", "OrvexSI1"),), (
            ("Name", "Kelmar"), ("Manufacturer", "Orvex Systems"), ("VersionString", "3.0"),
            ("Classifications", (10,)))),)),
    Kind("fabric", "ORVEX_Vsan", source=False, settled=False),
    Kind("switch in its fabrics", "ORVEX_ComputerSystem", source=False, settled=False),
    Kind("box of the switch", "ORVEX_PhysicalComputerSystem", source=False, settled=False, most=1,
         only=("Name", "localswitch"), keyless=THE_BOX_MAY_COME_WITHOUT_KEYS),
)
KIND = {kind.name: kind for kind in KINDS}

# Enumerating a class lists its subclasses' objects, too.
ALSO_LISTED = {"registered profile": ("registered subprofile",)}

# Properties that have to be the same in an object and in the object manager: (kind, (its property,
# the object manager's)).
AGREEMENTS = (
    ("namespace", (("SystemCreationClassName", "SystemCreationClassName"),
                   ("SystemName", "SystemName"), ("ObjectManagerName", "Name"))),
    ("communication mechanism", (("SystemCreationClassName", "SystemCreationClassName"),
                                 ("SystemName", "SystemName"))),
)


class Association(NamedTuple):
    """An association class and the roles of its ends. Each of `rows` names what stands at the first
    and at the second end: an object of the table by its label, or every object of a kind. Following
    `asked_as` leads to the same."""

    name: str
    roles: tuple
    rows: tuple
    asked_as: tuple = ()


_DEPENDENCY = ("Antecedent", "Dependent")

ASSOCIATIONS = (
    Association("CIM_SubProfileRequiresProfile", _DEPENDENCY, (
        ("Fabric", "Zone Control"), ("Fabric", "Enhanced Zoning and Enhanced Zoning Control"),
        ("Switch", "Blades")), ("CIM_ReferencedProfile",)),
    Association("CIM_ElementConformsToProfile", ("ConformantStandard", "ManagedElement"), (
        ("Fabric", "fabric"), ("Switch", "switch in its fabrics"), ("Server", "object manager"))),
    Association("ORVEX_ElementSoftwareIdentity", _DEPENDENCY, (
        ("firmware", "registered profile"), ("firmware", "registered subprofile"))),
    Association("CIM_HostedService", _DEPENDENCY, (("host", "object manager"),)),
    Association("CIM_HostedAccessPoint", _DEPENDENCY, (("host", "communication mechanism"),)),
    Association("CIM_NamespaceInManager", _DEPENDENCY, (("object manager", "namespace"),)),
    Association("CIM_CommMechanismForManager", _DEPENDENCY, (
        ("object manager", "communication mechanism"),)),
)


THE_SWITCH_IS_TWO_OBJECTS = Oddity(
    "the switch is two objects",
    "Following CIM_ElementConformsToProfile from the profile Switch (associators, associator names) "
    "leads to the box, an ORVEX_PhysicalComputerSystem. The association itself (references, reference "
    "names, enumeration) names the switch as a member of its fabrics, an ORVEX_ComputerSystem.")
OWN_OBJECTS_SAY_WHERE_THEY_ARE_KEPT = Oddity(
    "the profile's own objects say root/cimv2",
    "Paths of profiles, subprofiles, host and firmware may say root/cimv2 whatever namespace was "
    "asked; all other paths are in the namespace that was asked.")
ELEMENTS_WITHOUT_A_PLACE = Oddity(
    "ends without a namespace",
    "An end of an association may name no namespace; it is then in the one that was asked.")
ELEMENTS_LEAD_NOWHERE = Oddity(
    "fabrics and switches lead nowhere",
    "They belong to other providers; the profile is not followed from them, only to them.")
THE_SERVER_HAS_NO_SUBPROFILE = Oddity(
    "Server has no subprofile",
    "Following CIM_SubProfileRequiresProfile from the profile Server gives an empty answer.")
GET_SAYS_WHERE_IT_WAS_ASKED = Oddity(
    "an association that is got",
    "GetInstance of an association puts its ends into the namespace that was asked.")

NAMESPACES_MAY_NOT_BE_GOT = Oddity(
    "namespaces that an OpenPegasus publishes itself are not got",
    "An OpenPegasus that publishes its namespaces itself answers GetInstance of one in its own interop "
    "namespace only; elsewhere there is no answer, and after some such questions the server answers "
    "nothing more. So that is not asked. Each is seen whole in the enumeration and from the object "
    "manager.")

ODDITIES = (THE_SWITCH_IS_TWO_OBJECTS, THE_BOX_MAY_COME_WITHOUT_KEYS,
            OWN_OBJECTS_SAY_WHERE_THEY_ARE_KEPT, ELEMENTS_WITHOUT_A_PLACE, ELEMENTS_LEAD_NOWHERE,
            THE_SERVER_HAS_NO_SUBPROFILE, GET_SAYS_WHERE_IT_WAS_ASKED, NAMESPACES_MAY_NOT_BE_GOT)

# Objects that are not asked for by GetInstance: (kind, key, its value, why).
NOT_GOT = (("namespace", "ObjectManagerCreationClassName", "PG_ObjectManager",
            NAMESPACES_MAY_NOT_BE_GOT),)

# What stands at the far end, for who follows an association from an object, instead of what the
# association itself names: (association, label of the source) -> (kind, why).
FAR_END_INSTEAD = {
    ("CIM_ElementConformsToProfile", "Switch"): ("box of the switch", THE_SWITCH_IS_TWO_OBJECTS),
}

# What a client reads of a class definition: the name of the organisation in words.
ORGANIZATION_CLASS = "CIM_RegisteredProfile"
ORGANIZATION = ("RegisteredOrganization", "11", "SNIA")
