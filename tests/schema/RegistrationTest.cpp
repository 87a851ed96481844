// The registration says which classes the provider answers for, and only those.
#include "LoadedSchema.h"

#include <map>

using Pegasus::CIMInstance;
using Pegasus::CIMName;

namespace {

class Registration : public LoadedSchema {
  protected:
    std::vector<CIMInstance> instancesOf(const char* className) const {
        return repository.enumerateInstances(interop, CIMName(className));
    }
};

} // namespace

TEST_F(Registration, NamesTheModuleAndItsProvider) {
    const auto modules = instancesOf("PG_ProviderModule");
    ASSERT_EQ(modules.size(), 1U);
    const std::map<const char*, std::string> expected = {{"Name", "ServerProfileProviderModule"},
                                                         {"Vendor", "Orvex Systems"},
                                                         {"Version", "1.0.0"},
                                                         {"InterfaceType", "C++Default"},
                                                         {"InterfaceVersion", "2.6.0"},
                                                         {"Location", "ServerProfileProvider"},
                                                         {"ModuleGroupName", "CIMServer"}};
    for (const auto& [property, text] : expected)
        EXPECT_EQ(value(modules[0], property), text) << property;

    const auto providers = instancesOf("PG_Provider");
    ASSERT_EQ(providers.size(), 1U);
    EXPECT_EQ(value(providers[0], "ProviderModuleName"), "ServerProfileProviderModule");
    EXPECT_EQ(value(providers[0], "Name"), "ServerProfileProvider");
}

TEST_F(Registration, CoversTheClassesOfTheProfileAndLeavesTheServerItsOwn) {
    const std::string instances = "2 ";
    const std::string associations = "2 3 ";
    const std::map<std::string, std::string> expected = {
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
        found[value(capability, "ClassName")] = value(capability, "ProviderType");
    EXPECT_EQ(found, expected);
}

TEST_F(Registration, HoldsInBothNamespacesForClassesThatAreThere) {
    for (const CIMInstance& capability : instancesOf("PG_ProviderCapabilities")) {
        const std::string className = value(capability, "ClassName");
        EXPECT_EQ(value(capability, "ProviderModuleName"), "ServerProfileProviderModule");
        EXPECT_EQ(value(capability, "ProviderName"), "ServerProfileProvider");
        EXPECT_EQ(value(capability, "Namespaces"), "root/cimv2 root/PG_InterOp ") << className;
        EXPECT_TRUE(repository.hasClass(home, CIMName(className.c_str()))) << className;
        EXPECT_TRUE(repository.hasClass(interop, CIMName(className.c_str()))) << className;
    }
}
