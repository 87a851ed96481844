#include "register/Tools.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace registering {
namespace {

const Tools tools{"cimmof", "cimprovider", "cimcli", "cimconfig", "cimserver"};

TEST(CommandsOfTools, AreMadeOfNames) {
    EXPECT_EQ(tools.loadMof("root/cimv2", "/a/b.mof", false),
              (Arguments{"cimmof", "-aEV", "-n", "root/cimv2", "-I", "/a", "/a/b.mof"}));
    EXPECT_EQ(tools.deleteClass("interop", "CIM_A"),
              (Arguments{"cimcli", "dc", "CIM_A", "-n", "interop"}));
}

TEST(CommandsOfTools, HaveNoTextThatIsNoName) {
    for (const char* odd :
         {"", "-rf", "../../etc", "/root", "root/", "a//b", "a b", "a;b", "7up"}) {
        SCOPED_TRACE(odd);
        EXPECT_THROW(tools.loadMof(odd, "/a/b.mof", true), std::runtime_error);
        EXPECT_THROW(tools.classNames(odd), std::runtime_error);
        EXPECT_THROW(tools.getClass(odd, "CIM_A"), std::runtime_error);
        EXPECT_THROW(tools.getClass("interop", odd), std::runtime_error);
        EXPECT_THROW(tools.deleteClass(odd, "CIM_A"), std::runtime_error);
        EXPECT_THROW(tools.deleteClass("interop", odd), std::runtime_error);
        EXPECT_THROW(tools.qualifiers(odd), std::runtime_error);
        EXPECT_THROW(tools.deleteQualifier("interop", odd), std::runtime_error);
        EXPECT_THROW(tools.deleteNameSpace(odd), std::runtime_error);
        EXPECT_THROW(tools.instances(odd, "CIM_A"), std::runtime_error);
        EXPECT_THROW(tools.instanceNames("interop", odd), std::runtime_error);
        EXPECT_THROW(tools.references("interop", odd), std::runtime_error);
        EXPECT_THROW(tools.enable(odd), std::runtime_error);
        EXPECT_THROW(tools.disable(odd), std::runtime_error);
        EXPECT_THROW(tools.removeModule(odd), std::runtime_error);
    }
}

} // namespace
} // namespace registering
