#include "register/Registration.h"

#include "register/Names.h"

#include <gtest/gtest.h>

namespace registering {
namespace {

class TheRegistration : public testing::Test {
  protected:
    const Content content = readContent(SCHEMA_DIR);
    const Registration registration = content.registration;

    // The registration with one property of one capability given other items.
    Registration with(const char* name, std::vector<std::string> items) const {
        std::vector<Instance> instances = registration.instances();
        for (Property& property : instances.back().properties)
            if (property.name == name)
                property.items = std::move(items);
        return Registration(instances);
    }
};

TEST_F(TheRegistration, NamesItsModuleLibraryAndClasses) {
    EXPECT_EQ(registration.module(), "ServerProfileProviderModule");
    EXPECT_EQ(registration.library(), "libServerProfileProvider.so");
    EXPECT_EQ(joined(registration.nameSpaces()), "root/cimv2 and root/PG_InterOp");
    const std::vector<Instance> capabilities = registration.capabilities();
    ASSERT_EQ(capabilities.size(), 12U);
    EXPECT_EQ(capabilityName(capabilities.front()), "CIM_RegisteredProfile");
    EXPECT_TRUE(forInstancesAlone(capabilities.front()));
    EXPECT_FALSE(forInstancesAlone(capabilities.back()));
}

TEST_F(TheRegistration, ItsSchemaBringsThreeClassesInTheirOrder) {
    ASSERT_EQ(content.schema.size(), 3U);
    EXPECT_EQ(content.schema[0].name, "ORVEX_ObjectManagerHost");
    EXPECT_EQ(content.schema[2].superclass, "CIM_ElementSoftwareIdentity");
    EXPECT_EQ(content.schema[2].references, std::vector<std::string>{"ORVEX_SoftwareIdentity"});
    EXPECT_EQ(content.schema[2].version, "1.0.0");
}

TEST_F(TheRegistration, ServingElsewhereChangesEachListAndNothingElse) {
    const Registration moved = registration.servingIn({"root/a", "root/b"});
    ASSERT_EQ(moved.capabilities().size(), 12U);
    for (const Instance& capability : moved.capabilities())
        EXPECT_EQ(capability.texts("Namespaces"), (std::vector<std::string>{"root/a", "root/b"}));
    EXPECT_EQ(writeMof(moved.servingIn(registration.nameSpaces()).instances()),
              writeMof(registration.instances()));
}

TEST_F(TheRegistration, IsTheSameWhateverTheOrderAndCaseOfNamespacesAndTheModulesState) {
    EXPECT_TRUE(differences(registration, registration).empty());
    EXPECT_TRUE(
        differences(registration, with("Namespaces", {"\"root/pg_interop\"", "\"root/cimv2\""}))
            .empty());
    std::vector<Instance> instances = registration.instances();
    instances.front().properties.push_back({"OperationalStatus", true, {"10"}});
    EXPECT_TRUE(differences(registration, Registration(instances)).empty());
}

TEST_F(TheRegistration, EachDifferenceIsNamed) {
    const auto texts = [&](const Registration& found) {
        std::string all;
        for (const Difference& difference : differences(registration, found))
            all += difference.capability + "|" + difference.text + "\n";
        return all;
    };
    EXPECT_EQ(texts(with("Namespaces", {"\"root/cimv2\""})),
              "ORVEX_ElementSoftwareIdentity|the capability ORVEX_ElementSoftwareIdentity has "
              "Namespaces root/cimv2 instead of root/cimv2 and root/PG_InterOp\n");
    EXPECT_EQ(texts(with("ProviderType", {"2"})),
              "ORVEX_ElementSoftwareIdentity|the capability ORVEX_ElementSoftwareIdentity has "
              "ProviderType 2 instead of 2 and 3\n");
    std::vector<Instance> instances = registration.instances();
    instances.erase(instances.begin() + 1);
    EXPECT_EQ(texts(Registration(instances)),
              "|PG_Provider \"ServerProfileProvider\" is missing\n");
    instances = registration.instances();
    instances.push_back(instances.back());
    instances.back().properties[2].items = {"\"X\""};
    EXPECT_NE(texts(Registration(instances)).find("is not of this version"), std::string::npos);
}

} // namespace
} // namespace registering
