#include "register/Content.h"

#include <gtest/gtest.h>

namespace registering {
namespace {

class TheRegistration : public testing::Test {
  protected:
    const Content content = readContent(SCHEMA_DIR);
    const Registration registration = content.modules.front().registration;

    // The registration with one property of one capability given other items.
    Registration with(const char* name, const std::vector<std::string>& items) const {
        std::vector<Instance> instances = registration.instances;
        for (mof::PropertyInitializer& property : instances.back().properties)
            if (property.name == name)
                property.value = array(items);
        return Registration{instances};
    }

    static mof::Value array(const std::vector<std::string>& items) {
        mof::Value value{true, {}, {}};
        for (const std::string& item : items)
            value.items.push_back({mof::Literal::Kind::String, false, item, {}});
        return value;
    }
};

TEST_F(TheRegistration, NamesItsModuleLibraryAndClasses) {
    EXPECT_EQ(registration.module(), "ServerProfileProviderModule");
    EXPECT_EQ(registration.library(), "libServerProfileProvider.so");
    EXPECT_EQ(joined(registration.nameSpaces()), "interop, root/cimv2 and root/PG_InterOp");
    const std::vector<Instance> capabilities = registration.capabilities();
    ASSERT_EQ(capabilities.size(), 12U);
    EXPECT_EQ(capabilityName(capabilities.front()), "CIM_RegisteredProfile");
    EXPECT_TRUE(forInstancesAlone(capabilities.front()));
    EXPECT_FALSE(forInstancesAlone(capabilities.back()));
}

TEST_F(TheRegistration, HasNoNamespaceThatIsNone) {
    const Registration odd =
        with("Namespaces", {"../../etc", "-rf", "", "a//b", "a/", "1", "root/another"});
    EXPECT_EQ(joined(odd.nameSpaces()), "interop, root/cimv2, root/PG_InterOp and root/another");
    EXPECT_FALSE(differences(registration, odd).empty());
}

TEST_F(TheRegistration, OfTheServersOwnObjectsNamesItsModuleAndProvider) {
    ASSERT_EQ(content.modules.size(), 2U);
    EXPECT_FALSE(content.modules.front().serverObjects);
    EXPECT_TRUE(content.modules.back().serverObjects);
    const Registration& objects = content.modules.back().registration;
    EXPECT_EQ(objects.module(), "ServerObjectsProviderModule");
    EXPECT_EQ(objects.provider(), "ServerObjectsProvider");
    EXPECT_EQ(objects.library(), "libServerObjectsProvider.so");
    EXPECT_EQ(objects.capabilities().size(), 3U);
}

TEST_F(TheRegistration, ItsSchemaBringsThreeClassesInTheirOrder) {
    const std::vector<Class>& own = content.own.classes;
    ASSERT_EQ(own.size(), 3U);
    EXPECT_EQ(own[0].name, "ORVEX_ObjectManagerHost");
    EXPECT_EQ(own[2].superclass, "CIM_ElementSoftwareIdentity");
    EXPECT_EQ(own[2].references, std::vector<std::string>{"ORVEX_SoftwareIdentity"});
    EXPECT_EQ(own[2].version, "1.0.0");
}

TEST_F(TheRegistration, EachClassOfTheBaseSchemaStandsAfterThoseThatItNeeds) {
    NameSet declared;
    for (const Class& one : content.base.classes) {
        EXPECT_TRUE(one.superclass.empty() || declared.count(one.superclass) != 0) << one.name;
        for (const std::string& end : one.references)
            EXPECT_NE(declared.count(end), 0U) << one.name;
        declared.insert(one.name);
    }
    EXPECT_GE(declared.size(), 30U);
    EXPECT_TRUE(hasName(content.base.qualifiers, "Key"));
}

TEST_F(TheRegistration, KeysAreThoseThatAClassDeclaresAndThoseThatItInherits) {
    const auto keys = content.keys();
    EXPECT_EQ(keys.at("ORVEX_ObjectManagerHost"), (NameSet{"CreationClassName", "Name"}));
    EXPECT_EQ(keys.at("CIM_HostedService"), (NameSet{"Antecedent", "Dependent"}));
    EXPECT_EQ(keys.at("PG_ObjectManager"),
              (NameSet{"CreationClassName", "Name", "SystemCreationClassName", "SystemName"}));
    EXPECT_TRUE(keys.at("CIM_ManagedElement").empty());
}

TEST_F(TheRegistration, ServingElsewhereChangesEachListAndNothingElse) {
    const Registration moved = registration.servingIn({"root/a", "root/b"});
    ASSERT_EQ(moved.capabilities().size(), 12U);
    for (const Instance& capability : moved.capabilities())
        EXPECT_EQ(texts(capability, "Namespaces"), (std::vector<std::string>{"root/a", "root/b"}));
    EXPECT_EQ(writeMof(moved.servingIn(registration.nameSpaces()).instances),
              writeMof(registration.instances));
}

TEST_F(TheRegistration, IsTheSameWhateverTheOrderAndCaseOfNamespacesAndTheModulesState) {
    EXPECT_TRUE(differences(registration, registration).empty());
    EXPECT_TRUE(
        differences(registration, with("Namespaces", {"root/pg_interop", "Interop", "root/cimv2"}))
            .empty());
    std::vector<Instance> instances = registration.instances;
    instances.front().properties.push_back({{}, "OperationalStatus", array({"10"}), {}});
    EXPECT_TRUE(differences(registration, Registration{instances}).empty());
}

TEST_F(TheRegistration, EachDifferenceIsNamed) {
    const auto differing = [&](const Registration& found) {
        std::string all;
        for (const Difference& difference : differences(registration, found))
            all += difference.capability + "|" + difference.text + "\n";
        return all;
    };
    EXPECT_EQ(differing(with("Namespaces", {"root/cimv2"})),
              "ORVEX_ElementSoftwareIdentity|the capability ORVEX_ElementSoftwareIdentity has "
              "Namespaces root/cimv2 instead of interop, root/cimv2 and root/PG_InterOp\n");
    EXPECT_EQ(differing(with("ProviderType", {"2"})),
              "ORVEX_ElementSoftwareIdentity|the capability ORVEX_ElementSoftwareIdentity has "
              "ProviderType 2 instead of 2 and 3\n");
    std::vector<Instance> instances = registration.instances;
    instances.erase(instances.begin() + 1);
    EXPECT_EQ(differing(Registration{instances}),
              "|PG_Provider \"ServerProfileProvider\" is missing\n");
    instances = registration.instances;
    instances.push_back(instances.back());
    instances.back().properties[2].value.items.front().text = "X";
    EXPECT_NE(differing(Registration{instances}).find("is not of this version"), std::string::npos);
}

} // namespace
} // namespace registering
