#include "routing/Registration.h"

#include "Server.h"

#include <gtest/gtest.h>

namespace embedded::routing::test {
namespace {

using namespace Pegasus;

Registration registrationOf(const std::string& mof) {
    repository::Repository repository;
    fill(repository, mof);
    return Registration(repository.view(), interop);
}

Texts findingsOf(const Registration& registration) {
    Texts lines;
    for (const Finding& finding : registration.findings()) {
        EXPECT_EQ(Finding::Severity::Problem, finding.severity);
        lines.push_back(finding.text);
    }
    return lines;
}

const std::string registered = moduleMof("M") + providerMof("M", "P");

TEST(Registration, OneCapabilityMayCarrySeveralTypesAndNamespaces) {
    const Registration registration =
        registrationOf(registered + capabilityMof("M", "P", "1", "2, 3, 5", "TST_Base",
                                                  "\"root/test\", \"root/not_there\""));
    EXPECT_EQ(Texts{}, findingsOf(registration));
    EXPECT_EQ(6U, registration.capabilities().size());
    for (const auto type :
         {ProviderType::Instance, ProviderType::Association, ProviderType::Method}) {
        for (const char* where : {"root/test", "root/not_there"}) {
            const Capability* const found =
                registration.find(CIMNamespaceName(where), CIMName("TST_Base"), type);
            ASSERT_NE(nullptr, found);
            EXPECT_EQ("M", text(found->provider.module));
            EXPECT_EQ("P", text(found->provider.name));
        }
    }
}

TEST(Registration, IsForExactlyTheClassTheNamespaceAndTheTypeInAnyCase) {
    const Registration registration =
        registrationOf(registered + capabilityMof("M", "P", "1", "2", "TST_Base"));
    const auto isFound = [&](const char* where, const char* className, ProviderType type) {
        return registration.find(CIMNamespaceName(where), CIMName(className), type) != nullptr;
    };
    EXPECT_TRUE(isFound("root/test", "TST_Base", ProviderType::Instance));
    EXPECT_TRUE(isFound("ROOT/Test", "tst_BASE", ProviderType::Instance));
    EXPECT_FALSE(isFound("root/test", "TST_Middle", ProviderType::Instance));
    EXPECT_FALSE(isFound("root/interop", "TST_Base", ProviderType::Instance));
    EXPECT_FALSE(isFound("root/test", "TST_Base", ProviderType::Association));
}

TEST(Registration, AStoppedModuleIsMarked) {
    const Registration registration = registrationOf(
        moduleMof("Stopped", "toy", "OperationalStatus = {10};") +
        moduleMof("Running", "toy", "OperationalStatus = {2};") + moduleMof("Silent"));
    EXPECT_TRUE(registration.modules().at("Stopped").stopped);
    EXPECT_FALSE(registration.modules().at("Running").stopped);
    EXPECT_FALSE(registration.modules().at("Silent").stopped);
}

TEST(Registration, WithoutTheInteropNamespaceNothingIsRegistered) {
    const repository::Repository repository;
    const Registration registration(repository.view(), CIMNamespaceName("root/nowhere"));
    EXPECT_EQ(Texts{"The interop namespace root/nowhere does not exist, so nothing is registered."},
              findingsOf(registration));
}

TEST(Registration, WithoutTheRegistrationClassesNothingIsRegistered) {
    repository::Repository repository;
    fill(repository);
    EXPECT_EQ(3U, Registration(repository.view(), nameSpace).findings().size());
}

struct FaultyCase {
    const char* rule;
    std::string mof;
    std::string finding;
};

class FaultyRegistration : public testing::TestWithParam<FaultyCase> {};

TEST_P(FaultyRegistration, IsLeftOutAndTold) {
    const Registration registration = registrationOf(GetParam().mof);
    EXPECT_EQ(Texts{GetParam().finding}, findingsOf(registration));
    EXPECT_EQ(nullptr,
              registration.find(nameSpace, CIMName("TST_Leaf"), ProviderType::Association));
}

std::string interopMof(const std::string& mof) {
    return "#pragma namespace(\"root/interop\")\n" + mof + "#pragma namespace(\"root/test\")\n";
}

/// A module that lacks one of the properties.
std::string moduleWithout(const std::string& property) {
    std::string mof = "instance of PG_ProviderModule { Name = \"M\";";
    for (const auto& [name, value] :
         std::vector<std::pair<std::string, std::string>>{{"Vendor", "v"},
                                                          {"Version", "1"},
                                                          {"InterfaceType", "C++Default"},
                                                          {"InterfaceVersion", "2.6.0"},
                                                          {"Location", "toy"}})
        if (name != property)
            mof.append(name).append(" = \"").append(value).append("\"; ");
    return interopMof(mof + "};\n");
}

std::string missing(const std::string& property) {
    return "PG_ProviderModule.Name=\"M\": Missing " + property +
           " which is required property in PG_ProviderModule class.";
}

std::string capabilityPath(const std::string& id) {
    return "PG_ProviderCapabilities.CapabilityID=\"" + id +
           "\",ProviderModuleName=\"M\",ProviderName=\"P\": ";
}

std::string otherModule(const std::string& type, const std::string& version) {
    return interopMof("instance of PG_ProviderModule { Name = \"M\"; Vendor = \"v\"; Version = "
                      "\"1\"; Location = \"toy\"; InterfaceType = \"" +
                      type + "\"; InterfaceVersion = \"" + version + "\"; };\n");
}

INSTANTIATE_TEST_SUITE_P(
    Host, FaultyRegistration,
    testing::Values(
        FaultyCase{"NoVendor", moduleWithout("Vendor"), missing("Vendor")},
        FaultyCase{"NoVersion", moduleWithout("Version"), missing("Version")},
        FaultyCase{"NoInterfaceType", moduleWithout("InterfaceType"), missing("InterfaceType")},
        FaultyCase{"NoInterfaceVersion", moduleWithout("InterfaceVersion"),
                   missing("InterfaceVersion")},
        FaultyCase{"NoLocation", moduleWithout("Location"), missing("Location")},
        FaultyCase{"NoDesignatedUser", moduleMof("M", "toy", "UserContext = 3;"),
                   missing("DesignatedUserContext")},
        FaultyCase{"OtherInterfaceType", otherModule("CMPI", "2.0.0"),
                   "PG_ProviderModule.Name=\"M\": Unsupported InterfaceType value: \"CMPI\"; "
                   "\"C++Default\" is supported."},
        FaultyCase{"OtherInterfaceVersion", otherModule("C++Default", "9.9.9"),
                   "PG_ProviderModule.Name=\"M\": Unsupported InterfaceVersion value: \"9.9.9\"; "
                   "supported are 2.1.0, 2.2.0, 2.3.0, 2.5.0, 2.6.0."},
        FaultyCase{"UnknownModule", providerMof("M", "P"),
                   "PG_Provider.Name=\"P\",ProviderModuleName=\"M\": The provider module \"M\" is "
                   "not registered."},
        FaultyCase{"UnknownProvider",
                   moduleMof("M") + capabilityMof("M", "P", "1", "3", "TST_Leaf"),
                   capabilityPath("1") + "The provider \"P\" of module \"M\" is not registered."},
        FaultyCase{"NoTypes", registered + capabilityMof("M", "P", "1", "", "TST_Leaf"),
                   capabilityPath("1") + "Missing ProviderType which is required property in "
                                         "PG_ProviderCapabilities class."},
        FaultyCase{"NoNamespaces", registered + capabilityMof("M", "P", "1", "3", "TST_Leaf", ""),
                   capabilityPath("1") + "Missing Namespaces which is required property in "
                                         "PG_ProviderCapabilities class."},
        FaultyCase{"TypeNotServed", registered + capabilityMof("M", "P", "1", "3, 4", "TST_Leaf"),
                   capabilityPath("1") + "ProviderType 4 is not served here; 2 (Instance), 3 "
                                         "(Association) and 5 (Method) are."},
        FaultyCase{"NotAClassName", registered + capabilityMof("M", "P", "1", "3", "TST-Leaf"),
                   capabilityPath("1") + "ClassName \"TST-Leaf\" is not a class name."},
        FaultyCase{"NotANamespace",
                   registered +
                       capabilityMof("M", "P", "1", "3", "TST_Leaf", "\"root/test\", \"root//x\""),
                   capabilityPath("1") + "Namespaces: \"root//x\" is not a namespace name."},
        FaultyCase{"Taken",
                   registered + capabilityMof("M", "P", "1", "2", "TST_Base") +
                       capabilityMof("M", "P", "2", "3, 2", "TST_BASE"),
                   capabilityPath("2") +
                       "A provider is already registered for the specified capability. (TST_Base "
                       "in root/test, type 2: provider \"P\" of module \"M\")"}),
    [](const auto& instance) { return instance.param.rule; });

// Modules that are part of the program.

TEST(Registration, ALinkedModuleIsRegisteredWhereItsClassesAre) {
    repository::Repository repository;
    fill(repository, "#pragma namespace(\"root/second\")\n"
                     "Qualifier Key : boolean = false, Scope(property);\n"
                     "class TST_Base { [Key] string Id; };\n");
    Registration registration(repository.view(), interop);
    registration.addLinked(repository.view(), {"M", "P"}, "inside",
                           {CIMName("TST_Base"), CIMName("TST_None")});
    EXPECT_EQ(2U, registration.capabilities().size());
    for (const char* where : {"root/test", "root/second"}) {
        const Capability* const found =
            registration.find(CIMNamespaceName(where), CIMName("TST_Base"), ProviderType::Instance);
        ASSERT_NE(nullptr, found) << where;
        EXPECT_EQ("P", text(found->provider.name));
    }
    EXPECT_TRUE(registration.modules().at("M").linked);
    EXPECT_EQ("inside", registration.modules().at("M").location);
}

TEST(Registration, ALinkedModuleWithoutItsClassesIsNotThere) {
    repository::Repository repository;
    fill(repository);
    Registration registration(repository.view(), interop);
    registration.addLinked(repository.view(), {"M", "P"}, "inside", {CIMName("TST_None")});
    EXPECT_TRUE(registration.modules().empty());
    EXPECT_TRUE(registration.providers().empty());
}

TEST(Registration, ALinkedModuleLeavesOthersTheirClasses) {
    repository::Repository repository;
    fill(repository, registered + capabilityMof("M", "P", "1", "2", "TST_Other") +
                         "instance of TST_Leaf { Id = \"loaded\"; };\n");
    Registration registration(repository.view(), interop);
    registration.addLinked(repository.view(), {"Own", "Own"}, "inside",
                           {CIMName("TST_Other"), CIMName("TST_Middle"), CIMName("TST_Link")});
    const auto holder = [&](const char* className) {
        const Capability* const found = registration.find(
            CIMNamespaceName("root/test"), CIMName(className), ProviderType::Instance);
        return found == nullptr ? "nobody" : text(found->provider.module);
    };
    EXPECT_EQ("M", holder("TST_Other"));       // registered by another
    EXPECT_EQ("nobody", holder("TST_Middle")); // an instance of a subclass was loaded
    EXPECT_EQ("Own", holder("TST_Link"));
}

TEST(Registration, ALinkedModuleLeavesAClassWhoseSubclassAnotherPublishes) {
    repository::Repository repository;
    fill(repository, registered + capabilityMof("M", "P", "1", "2", "TST_Leaf"));
    Registration registration(repository.view(), interop);
    registration.addLinked(repository.view(), {"Own", "Own"}, "inside", {CIMName("TST_Base")});
    EXPECT_EQ(nullptr, registration.find(CIMNamespaceName("root/test"), CIMName("TST_Base"),
                                         ProviderType::Instance));
}

} // namespace
} // namespace embedded::routing::test
