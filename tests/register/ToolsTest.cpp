#include "register/Server.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace registering {
namespace {

const Tools tools{"cimmof", "cimprovider", "cimcli", "cimconfig", "cimserver"};

TEST(CommandsOfTools, AreMadeOfNames) {
    EXPECT_EQ(tools.loadMof("root/cimv2", "/a/b.mof", false),
              (Arguments{"cimmof", "-aEV", "-n", "root/cimv2", "-I", "/a", "/a/b.mof"}));
    EXPECT_EQ(tools.onName("gc", "interop", "CIM_A", {"-nlo"}),
              (Arguments{"cimcli", "gc", "CIM_A", "-n", "interop", "-nlo"}));
    EXPECT_EQ(tools.onNameSpace("eq", "interop"), (Arguments{"cimcli", "eq", "-n", "interop"}));
    EXPECT_EQ(tools.onModule("-d", "A"), (Arguments{"cimprovider", "-d", "-m", "A"}));
}

TEST(CommandsOfTools, HaveNoTextThatIsNoName) {
    for (const char* odd :
         {"", "-rf", "../../etc", "/root", "root/", "a//b", "a b", "a;b", "7up"}) {
        SCOPED_TRACE(odd);
        EXPECT_THROW(tools.loadMof(odd, "/a/b.mof", true), std::runtime_error);
        EXPECT_THROW(tools.onName("gc", odd, "CIM_A"), std::runtime_error);
        EXPECT_THROW(tools.deleteNameSpace(odd), std::runtime_error);
        EXPECT_THROW(tools.onModule("-e", odd), std::runtime_error);
        EXPECT_THROW(tools.onName("gc", "interop", odd), std::runtime_error);
        EXPECT_THROW(tools.onNameSpace("eq", odd), std::runtime_error);
    }
}

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
