// The classes have the chains, keys, references and value maps that clients know from CIM 2.41.
#include "LoadedSchema.h"

#include <algorithm>
#include <filesystem>
#include <set>

using Pegasus::CIMName;
using Pegasus::Uint32;

namespace {

using Words = std::vector<std::string>;

std::set<std::string> mofFilesIn(const std::string& directory) {
    std::set<std::string> files;
    for (const auto& entry : std::filesystem::directory_iterator(projectFile(directory)))
        if (entry.path().extension() == ".mof")
            files.insert(entry.path().string());
    return files;
}

// The files that the declarations of `file` come from, those that it includes among them.
std::set<std::string> sources(const std::string& file) {
    std::set<std::string> out{file};
    for (const auto& declaration : embedded::mof::readFile(file))
        std::visit([&](const auto& what) { out.insert(*what.where.file); }, declaration.what);
    return out;
}

} // namespace

TEST_F(LoadedSchema, LeavesNoFileOut) {
    std::set<std::string> loaded;
    for (const auto& [nameSpace, file] : loadedFiles())
        loaded.merge(sources(file));
    std::set<std::string> present = mofFilesIn("schema");
    present.merge(mofFilesIn("samples"));
    EXPECT_EQ(loaded, present);
}

// From the class to the root.
TEST_F(LoadedSchema, DerivesClassesAsCimDoes) {
    const Words element = {"CIM_ManagedElement"};
    const Words logical = {"CIM_LogicalElement", "CIM_ManagedSystemElement", "CIM_ManagedElement"};
    const auto below = [](Words first, const Words& rest) {
        first.insert(first.end(), rest.begin(), rest.end());
        return first;
    };
    const Words enabled = below({"CIM_EnabledLogicalElement"}, logical);
    const Words system = below({"CIM_System"}, enabled);
    const Words hosted = {"CIM_HostedDependency", "CIM_Dependency"};
    const Words profileReference = {"CIM_ReferencedSpecification", "CIM_Dependency"};

    const std::vector<std::pair<std::string, Words>> chains = {
        {"CIM_RegisteredProfile", below({"CIM_RegisteredSpecification"}, element)},
        {"CIM_RegisteredSubProfile",
         below({"CIM_RegisteredProfile", "CIM_RegisteredSpecification"}, element)},
        {"CIM_ReferencedProfile", profileReference},
        {"CIM_SubProfileRequiresProfile", below({"CIM_ReferencedProfile"}, profileReference)},
        {"CIM_ElementConformsToProfile", {}},
        {"CIM_ObjectManager", below({"CIM_WBEMService", "CIM_Service"}, enabled)},
        {"CIM_CIMXMLCommunicationMechanism",
         below({"CIM_ObjectManagerCommunicationMechanism", "CIM_ServiceAccessPoint"}, enabled)},
        {"CIM_Namespace", element},
        {"CIM_NamespaceInManager", hosted},
        {"CIM_HostedService", hosted},
        {"CIM_HostedAccessPoint", hosted},
        {"CIM_CommMechanismForManager", {"CIM_ServiceAccessBySAP", "CIM_Dependency"}},
        {"CIM_SoftwareIdentity", logical},
        {"CIM_ElementSoftwareIdentity", {"CIM_Dependency"}},
        {"CIM_ComputerSystem", system},
        {"CIM_AdminDomain", system},
        {"ORVEX_ObjectManagerHost", below({"CIM_ComputerSystem"}, system)},
        {"ORVEX_SoftwareIdentity", below({"CIM_SoftwareIdentity"}, logical)},
        {"ORVEX_ElementSoftwareIdentity", {"CIM_ElementSoftwareIdentity", "CIM_Dependency"}},
        {"ORVEX_Vsan", below({"CIM_AdminDomain"}, system)},
    };
    for (const auto& [name, chain] : chains) {
        Words found;
        for (const CIMName& above : repository.view().superClassNames(home, CIMName(name.c_str())))
            found.push_back(text(above.getString()));
        EXPECT_EQ(found, chain) << name;
    }
}

TEST_F(LoadedSchema, GivesClassesTheKeysOfCim) {
    const Words inSystem = {"CreationClassName", "Name", "SystemCreationClassName", "SystemName"};
    const Words reference = {"Antecedent", "Dependent"};
    const std::vector<std::pair<std::string, Words>> keys = {
        {"CIM_RegisteredProfile", {"InstanceID"}},
        {"CIM_RegisteredSubProfile", {"InstanceID"}},
        {"CIM_SoftwareIdentity", {"InstanceID"}},
        {"CIM_ObjectManager", inSystem},
        {"CIM_CIMXMLCommunicationMechanism", inSystem},
        {"CIM_Namespace",
         {"CreationClassName", "Name", "ObjectManagerCreationClassName", "ObjectManagerName",
          "SystemCreationClassName", "SystemName"}},
        {"CIM_ComputerSystem", {"CreationClassName", "Name"}},
        {"CIM_AdminDomain", {"CreationClassName", "Name"}},
        {"ORVEX_ObjectManagerHost", {"CreationClassName", "Name"}},
        {"ORVEX_PhysicalComputerSystem", {"Name"}},
        {"CIM_ReferencedProfile", reference},
        {"CIM_SubProfileRequiresProfile", reference},
        {"CIM_ElementConformsToProfile", {"ConformantStandard", "ManagedElement"}},
        {"ORVEX_ElementSoftwareIdentity", reference},
        {"CIM_ManagedElement", {}},
    };
    for (const auto& [name, expected] : keys) {
        Pegasus::Array<CIMName> found;
        classNamed(name).getKeyNames(found);
        std::set<std::string> sorted;
        for (Uint32 i = 0; i < found.size(); ++i)
            sorted.insert(text(found[i].getString()));
        EXPECT_EQ(Words(sorted.begin(), sorted.end()), expected) << name;
    }
}

TEST_F(LoadedSchema, LetsAssociationsReferToTheClassesOfCim) {
    struct Case {
        const char* association;
        const char* property;
        const char* target;
    };
    for (const Case& c : std::vector<Case>{
             {"CIM_ReferencedProfile", "Antecedent", "CIM_RegisteredProfile"},
             {"CIM_ReferencedProfile", "Dependent", "CIM_RegisteredProfile"},
             {"CIM_SubProfileRequiresProfile", "Antecedent", "CIM_RegisteredProfile"},
             {"CIM_SubProfileRequiresProfile", "Dependent", "CIM_RegisteredSubProfile"},
             {"CIM_ElementConformsToProfile", "ConformantStandard", "CIM_RegisteredProfile"},
             {"CIM_ElementConformsToProfile", "ManagedElement", "CIM_ManagedElement"},
             {"CIM_NamespaceInManager", "Antecedent", "CIM_ObjectManager"},
             {"CIM_NamespaceInManager", "Dependent", "CIM_Namespace"},
             {"CIM_CommMechanismForManager", "Antecedent", "CIM_ObjectManager"},
             {"CIM_CommMechanismForManager", "Dependent",
              "CIM_ObjectManagerCommunicationMechanism"},
             {"CIM_HostedService", "Antecedent", "CIM_System"},
             {"CIM_HostedService", "Dependent", "CIM_Service"},
             {"CIM_HostedAccessPoint", "Antecedent", "CIM_System"},
             {"CIM_HostedAccessPoint", "Dependent", "CIM_ServiceAccessPoint"},
             {"CIM_ElementSoftwareIdentity", "Antecedent", "CIM_SoftwareIdentity"},
             {"CIM_ElementSoftwareIdentity", "Dependent", "CIM_ManagedElement"},
             {"ORVEX_ElementSoftwareIdentity", "Antecedent", "ORVEX_SoftwareIdentity"},
             {"ORVEX_ElementSoftwareIdentity", "Dependent", "CIM_ManagedElement"}}) {
        SCOPED_TRACE(std::string(c.association) + "." + c.property);
        const auto type = classNamed(c.association);
        EXPECT_TRUE(type.isAssociation());
        const Uint32 index = type.findProperty(CIMName(c.property));
        ASSERT_NE(index, PEG_NOT_FOUND);
        EXPECT_EQ(text(type.getProperty(index).getReferenceClassName().getString()), c.target);
    }
}

TEST_F(LoadedSchema, GivesPropertiesTheTypesOfCim) {
    struct Case {
        const char* className;
        const char* property;
        Pegasus::CIMType type;
        bool isArray;
    };
    const auto number = Pegasus::CIMTYPE_UINT16;
    const auto words = Pegasus::CIMTYPE_STRING;
    const auto truth = Pegasus::CIMTYPE_BOOLEAN;
    for (const Case& c : std::vector<Case>{
             {"CIM_RegisteredProfile", "RegisteredOrganization", number, false},
             {"CIM_RegisteredProfile", "OtherRegisteredOrganization", words, false},
             {"CIM_RegisteredProfile", "RegisteredName", words, false},
             {"CIM_RegisteredProfile", "RegisteredVersion", words, false},
             {"CIM_RegisteredProfile", "AdvertiseTypes", number, true},
             {"CIM_RegisteredProfile", "AdvertiseTypeDescriptions", words, true},
             {"ORVEX_SoftwareIdentity", "Name", words, false},
             {"ORVEX_SoftwareIdentity", "VersionString", words, false},
             {"ORVEX_SoftwareIdentity", "Manufacturer", words, false},
             {"ORVEX_SoftwareIdentity", "Classifications", number, true},
             {"ORVEX_ObjectManagerHost", "NameFormat", words, false},
             {"ORVEX_ObjectManagerHost", "ElementName", words, false},
             {"ORVEX_ObjectManagerHost", "OperationalStatus", number, true},
             {"PG_ObjectManager", "Started", truth, false},
             {"PG_ObjectManager", "GatherStatisticalData", truth, false},
             {"PG_Namespace", "ClassInfo", number, false},
             {"PG_Namespace", "ClassType", number, false},
             {"PG_CIMXMLCommunicationMechanism", "FunctionalProfilesSupported", number, true},
             {"PG_CIMXMLCommunicationMechanism", "MultipleOperationsSupported", truth, false},
             {"ORVEX_ComputerSystem", "Dedicated", number, true}}) {
        SCOPED_TRACE(std::string(c.className) + "." + c.property);
        const auto type = classNamed(c.className);
        const Uint32 index = type.findProperty(CIMName(c.property));
        ASSERT_NE(index, PEG_NOT_FOUND);
        EXPECT_EQ(type.getProperty(index).getType(), c.type);
        EXPECT_EQ(type.getProperty(index).isArray(), c.isArray);
    }
}

// Clients print a value by its place in the two lists.
TEST_F(LoadedSchema, PairsEachMappedValueWithItsName) {
    for (const CIMName& name : repository.view().subClassNames(interop, CIMName(), true)) {
        const auto type = repository.view().getClass(interop, name);
        for (Uint32 i = 0; i < type.getPropertyCount(); ++i) {
            const auto property = type.getProperty(i);
            const Uint32 map = property.findQualifier(CIMName("ValueMap"));
            const Uint32 values = property.findQualifier(CIMName("Values"));
            if (map == PEG_NOT_FOUND || values == PEG_NOT_FOUND)
                continue;
            EXPECT_EQ(property.getQualifier(map).getValue().getArraySize(),
                      property.getQualifier(values).getValue().getArraySize())
                << text(name.getString()) << "." << text(property.getName().getString());
        }
    }
}

TEST_F(LoadedSchema, NamesTheValuesThatTheProfileUses) {
    struct Case {
        const char* className;
        const char* property;
        const char* number;
        const char* name;
    };
    for (const Case& c :
         std::vector<Case>{{"CIM_RegisteredProfile", "RegisteredOrganization", "1", "Other"},
                           {"CIM_RegisteredProfile", "RegisteredOrganization", "2", "DMTF"},
                           {"CIM_RegisteredProfile", "RegisteredOrganization", "11", "SNIA"},
                           {"CIM_RegisteredProfile", "AdvertiseTypes", "1", "Other"},
                           {"CIM_RegisteredProfile", "AdvertiseTypes", "2", "Not Advertised"},
                           {"CIM_RegisteredProfile", "AdvertiseTypes", "3", "SLP"},
                           {"CIM_SoftwareIdentity", "Classifications", "10", "Firmware"},
                           {"CIM_ComputerSystem", "Dedicated", "5", "Switch"},
                           {"CIM_ComputerSystem", "Dedicated", "37", "FC Switch"},
                           {"CIM_ManagedSystemElement", "OperationalStatus", "2", "OK"},
                           {"CIM_EnabledLogicalElement", "EnabledState", "2", "Enabled"},
                           {"CIM_Namespace", "ClassType", "2", "CIM"},
                           {"CIM_Namespace", "ClassInfo", "200", "DMI Recast"},
                           {"CIM_ObjectManagerCommunicationMechanism",
                            "AuthenticationMechanismsSupported", "3", "Basic"},
                           {"CIM_ObjectManagerCommunicationMechanism",
                            "FunctionalProfilesSupported", "6", "Association Traversal"}}) {
        const Words map = listQualifier(c.className, c.property, "ValueMap");
        const Words values = listQualifier(c.className, c.property, "Values");
        const auto at = std::find(map.begin(), map.end(), c.number) - map.begin();
        ASSERT_LT(static_cast<std::size_t>(at), values.size());
        EXPECT_EQ(values[static_cast<std::size_t>(at)], c.name)
            << c.className << "." << c.property << " " << c.number;
    }
}
