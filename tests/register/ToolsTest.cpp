#include "register/Tools.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace registering {
namespace {

const Tools tools{"cimmof", "cimprovider", "cimcli", "cimconfig", "cimserver"};

TEST(CommandsOfTools, AreMadeOfNames) {
    EXPECT_EQ(tools.loadMof("root/cimv2", "/a/b.mof", false),
              (Arguments{"cimmof", "-aEV", "-n", "root/cimv2", "-I", "/a", "/a/b.mof"}));
    EXPECT_EQ(tools.onName("gc", "interop", "CIM_A", "-nlo"),
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

} // namespace
} // namespace registering
