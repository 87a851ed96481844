// The registration says which classes the provider answers for, and only those.
#include "LoadedSchema.h"

#include <map>

using Pegasus::CIMInstance;
using Pegasus::CIMName;

namespace {

class Registration : public LoadedSchema {
  protected:
    const std::vector<std::string> names{"ServerProfileProvider", "ServerObjectsProvider"};

    std::vector<CIMInstance> instancesOf(const char* className) const {
        return LoadedSchema::instancesOf(interop, className);
    }
};

} // namespace

TEST_F(Registration, NamesTheModulesAndTheirProviders) {
    const auto modules = instancesOf("PG_ProviderModule");
    const auto providers = instancesOf("PG_Provider");
    ASSERT_EQ(modules.size(), names.size());
    ASSERT_EQ(providers.size(), names.size());
    for (std::size_t i = 0; i < names.size(); ++i) {
        const std::map<const char*, std::string> expected = {
            {"Name", names[i] + "Module"},   {"Vendor", "Orvex Systems"},   {"Version", "1.0.0"},
            {"InterfaceType", "C++Default"}, {"InterfaceVersion", "2.6.0"}, {"Location", names[i]},
            {"ModuleGroupName", "CIMServer"}};
        for (const auto& [property, text] : expected)
            EXPECT_EQ(value(modules[i], property), text) << property;
        EXPECT_EQ(value(providers[i], "ProviderModuleName"), names[i] + "Module");
        EXPECT_EQ(value(providers[i], "Name"), names[i]);
    }
}

TEST_F(Registration, CoversTheClassesOfTheProfileAndTheServersOwnByOneModuleEach) {
    const std::string instances = "ServerProfileProvider 2 ";
    const std::string associations = "ServerProfileProvider 2 3 ";
    const std::string ofServer = "ServerObjectsProvider 2 ";
    const std::map<std::string, std::string> expected = {
        {"CIM_ObjectManager", ofServer},
        {"PG_CIMXMLCommunicationMechanism", ofServer},
        {"PG_Namespace", ofServer},
        {"CIM_RegisteredProfile", instances},
        {"CIM_RegisteredSubProfile", instances},
        {"ORVEX_ObjectManagerHost", instances},
        {"ORVEX_SoftwareIdentity", instances},
        {"CIM_ReferencedProfile", associations},
        {"CIM_SubProfileRequiresProfile", associations},
        {"CIM_ElementConformsToProfile", associations},
        {"CIM_HostedService", associations},
        {"CIM_HostedAccessPoint", associations},
        {"CIM_NamespaceInManager", associations},
        {"CIM_CommMechanismForManager", associations},
        {"ORVEX_ElementSoftwareIdentity", associations},
    };
    std::map<std::string, std::string> found;
    for (const CIMInstance& capability : instancesOf("PG_ProviderCapabilities"))
        found[value(capability, "ClassName")] =
            value(capability, "ProviderName") + " " + value(capability, "ProviderType");
    EXPECT_EQ(found, expected);
}

TEST_F(Registration, HoldsForClassesThatAreThere) {
    for (const CIMInstance& capability : instancesOf("PG_ProviderCapabilities")) {
        const std::string className = value(capability, "ClassName");
        const std::string provider = value(capability, "ProviderName");
        EXPECT_EQ(value(capability, "ProviderModuleName"), provider + "Module");
        EXPECT_EQ(value(capability, "Namespaces"), provider == names[0]
                                                       ? "interop root/cimv2 root/PG_InterOp "
                                                       : "interop root/cimv2 ")
            << className;
        EXPECT_TRUE(repository.view().hasClass(home, CIMName(className.c_str()))) << className;
        EXPECT_TRUE(repository.view().hasClass(interop, CIMName(className.c_str()))) << className;
    }
}
