#include "register/Listings.h"

#include <gtest/gtest.h>

namespace registering {
namespace {

const std::string modules = "MODULE                           STATUS\n"
                            "OperatingSystemModule            OK \n"
                            "ServerProfileProviderModule2     OK \n"
                            "ServerProfileProviderModule      Stopped \n";

TEST(Listings, AModulesStatusIsThatOfItsWholeName) {
    EXPECT_EQ(moduleStatus(modules, "ServerProfileProviderModule"), "Stopped");
    EXPECT_EQ(moduleStatus(modules, "OperatingSystemModule"), "OK");
    EXPECT_EQ(moduleStatus(modules, "ServerProfile"), std::nullopt);
    EXPECT_EQ(moduleStatus("", "ServerProfile"), std::nullopt);
}

TEST(Listings, PathsNameTheirClassWithAndWithoutHost) {
    EXPECT_EQ(classesOfPaths("3 referenceNames\n"
                             "//vm/root/cimv2:CIM_A\n"
                             "CIM_B.Key=\"//x/y:CIM_C.a=1\"\n"
                             "//vm:5988/root/cimv2:CIM_D.K=\"a:b.c\"\n"
                             "\n"),
              (std::vector<std::string>{"CIM_A", "CIM_B", "CIM_D"}));
}

TEST(Listings, DeclaredQualifiersAreNamedByTheirFirstLines) {
    EXPECT_EQ(declaredQualifiers("\nQualifier MinValue : sint64 = null, Scope(property method);\n\n"
                                 "Qualifier Key : boolean = FALSE, Scope(property reference), \n"
                                 "    Flavor(DisableOverride, ToSubclass);\n"),
              (std::vector<std::string>{"MinValue", "Key"}));
}

TEST(Listings, AConfiguredValueStandsBehindItsLabel) {
    EXPECT_EQ(configuredValue("Current value: lib:/usr/lib\n"), "lib:/usr/lib");
    EXPECT_EQ(configuredValue("Current value: \n"), "");
    EXPECT_EQ(configuredValue("Current value can not be determined\n"), "");
}

TEST(Listings, RelativeProviderDirectoriesAreBelowTheHome) {
    EXPECT_EQ(directoriesOf("lib:/usr/lib64/Pegasus/providers", "/home/x"),
              (std::vector<std::filesystem::path>{"/home/x/lib", "/usr/lib64/Pegasus/providers"}));
    EXPECT_TRUE(directoriesOf("", "/").empty());
}

} // namespace
} // namespace registering
