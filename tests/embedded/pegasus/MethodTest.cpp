#include "Throws.h"

#include <Pegasus/Common/CIMMethod.h>
#include <Pegasus/Common/CIMParamValue.h>
#include <Pegasus/Common/CIMParameter.h>
#include <Pegasus/Common/CIMValue.h>

using namespace Pegasus;
using namespace apitest;

namespace {

const CIMValue yes(Boolean(true));

TEST(CIMParameter, HasWhatItWasMadeWith) {
    const CIMParameter plain("Force", CIMTYPE_BOOLEAN);
    EXPECT_EQ(text(plain.getName().getString()), "Force");
    EXPECT_EQ(plain.getType(), CIMTYPE_BOOLEAN);
    EXPECT_FALSE(plain.isArray());
    EXPECT_EQ(plain.getArraySize(), 0U);
    EXPECT_TRUE(plain.getReferenceClassName().isNull());

    const CIMConstParameter full("Disks", CIMTYPE_REFERENCE, true, 3, "CIM_Disk");
    EXPECT_TRUE(full.isArray());
    EXPECT_EQ(full.getArraySize(), 3U);
    EXPECT_EQ(text(full.getReferenceClassName().getString()), "CIM_Disk");
}

TEST(CIMParameter, RejectsWhatCannotBeAParameter) {
    EXPECT_TRUE(throwsUninitialized([] { CIMParameter(CIMName(), CIMTYPE_STRING); }));
    const std::vector<NamedCall> mismatches = {
        {"scalar of fixed size", [] { CIMParameter("p", CIMTYPE_STRING, false, 3); }},
        {"reference class for a value", [] { CIMParameter("p", CIMTYPE_STRING, false, 0, "C"); }},
        {"reference without its class", [] { CIMParameter("p", CIMTYPE_REFERENCE); }},
    };
    for (const NamedCall& mismatch : mismatches)
        EXPECT_TRUE(throwsTypeMismatch(mismatch.call)) << mismatch.name;
}

TEST(CIMParameter, IsIdenticalWhateverItsArrayness) {
    const CIMParameter parameter("Disks", CIMTYPE_REFERENCE, true, 3, "Disk");
    EXPECT_TRUE(parameter.identical(CIMParameter("DISKS", CIMTYPE_REFERENCE, true, 0, "DISK")));
    EXPECT_FALSE(parameter.identical(CIMParameter("Disk", CIMTYPE_REFERENCE, true, 3, "Disk")));
    EXPECT_TRUE(parameter.identical(CIMParameter("Disks", CIMTYPE_REFERENCE, false, 0, "Disk")));
    EXPECT_FALSE(parameter.identical(CIMParameter("Disks", CIMTYPE_REFERENCE, true, 3, "Tape")));
    EXPECT_FALSE(parameter.identical(CIMParameter("Disks", CIMTYPE_STRING, true, 3)));
    CIMParameter qualified = parameter.clone();
    qualified.addQualifier(CIMQualifier("In", yes));
    EXPECT_FALSE(parameter.identical(qualified));
}

TEST(CIMMethod, HasWhatItWasMadeWith) {
    CIMMethod method("Reset", CIMTYPE_UINT32, "CIM_Disk", true);
    EXPECT_EQ(text(method.getName().getString()), "Reset");
    EXPECT_EQ(method.getType(), CIMTYPE_UINT32);
    EXPECT_EQ(text(method.getClassOrigin().getString()), "CIM_Disk");
    EXPECT_TRUE(method.getPropagated());
    method.setName("Stop");
    method.setType(CIMTYPE_STRING);
    method.setClassOrigin("CIM_Tape");
    method.setPropagated(false);
    const CIMConstMethod constant(method);
    EXPECT_EQ(text(constant.getName().getString()), "Stop");
    EXPECT_EQ(constant.getType(), CIMTYPE_STRING);
    EXPECT_EQ(text(constant.getClassOrigin().getString()), "CIM_Tape");
    EXPECT_FALSE(constant.getPropagated());
    EXPECT_TRUE(throwsUninitialized([] { CIMMethod(CIMName(), CIMTYPE_UINT32); }));
    EXPECT_TRUE(throwsUninitialized([&] { method.setName(CIMName()); }));
}

TEST(CIMMethod, FindsItsParametersIgnoringCase) {
    CIMMethod method("Reset", CIMTYPE_UINT32);
    CIMParameter force("Force", CIMTYPE_BOOLEAN);
    method.addParameter(force).addParameter(CIMParameter("Delay", CIMTYPE_UINT16));
    EXPECT_EQ(method.getParameterCount(), 2U);
    EXPECT_EQ(method.findParameter("DELAY"), 1U);
    EXPECT_EQ(method.findParameter("Other"), PEG_NOT_FOUND);
    EXPECT_TRUE(throws<AlreadyExistsException>(
        [&] { method.addParameter(CIMParameter("FORCE", CIMTYPE_UINT8)); },
        "already exists: parameter \"FORCE\""));
    EXPECT_TRUE(
        throws<Exception>([&] { force.setName("Other"); },
                          "Attempted to change the name of a parameter already in a container."));
    EXPECT_TRUE(throwsUninitialized([&] { method.addParameter(CIMParameter()); }));
    EXPECT_TRUE(throwsOutOfBounds([&] { method.getParameter(2); }));
    EXPECT_TRUE(throwsOutOfBounds([&] { method.removeParameter(2); }));
    method.removeParameter(0);
    EXPECT_EQ(method.findParameter("Delay"), 0U);
    EXPECT_NO_THROW(force.setName("Other"));
}

TEST(CIMMethod, CopiesShareAndClonesDoNot) {
    CIMMethod original("Reset", CIMTYPE_UINT32);
    original.addParameter(CIMParameter("Force", CIMTYPE_BOOLEAN));
    CIMMethod copy(original);
    const CIMMethod clone = original.clone();
    EXPECT_TRUE(clone.identical(original));
    copy.getParameter(0).addQualifier(CIMQualifier("In", yes));
    EXPECT_EQ(original.getParameter(0).getQualifierCount(), 1U);
    EXPECT_EQ(clone.getParameter(0).getQualifierCount(), 0U);
    EXPECT_FALSE(clone.identical(original));
}

TEST(CIMMethod, IsIdenticalWhateverItsOrigin) {
    const CIMMethod method("Reset", CIMTYPE_UINT32);
    EXPECT_TRUE(method.identical(CIMMethod("RESET", CIMTYPE_UINT32, "CIM_Disk", true)));
    EXPECT_FALSE(method.identical(CIMMethod("Reset", CIMTYPE_STRING)));
    EXPECT_FALSE(method.identical(CIMMethod("Stop", CIMTYPE_UINT32)));
}

TEST(CIMMethod, IsUninitializedUntilItIsAssigned) {
    CIMMethod none;
    CIMParameter noParameter;
    const CIMMethod some("Reset", CIMTYPE_UINT32);
    expectAllUninitialized({
        {"getName", [&] { none.getName(); }},
        {"getType", [&] { none.getType(); }},
        {"setType", [&] { none.setType(CIMTYPE_UINT8); }},
        {"getClassOrigin", [&] { none.getClassOrigin(); }},
        {"getParameterCount", [&] { none.getParameterCount(); }},
        {"identical", [&] { none.identical(some); }},
        {"parameter getName", [&] { noParameter.getName(); }},
        {"parameter getType", [&] { noParameter.getType(); }},
        {"parameter identical", [&] { noParameter.identical(noParameter); }},
    });
    EXPECT_TRUE(none.isUninitialized());
    EXPECT_TRUE(noParameter.isUninitialized());
    none = some;
    EXPECT_FALSE(none.isUninitialized());
}

TEST(CIMParamValue, HasWhatItWasMadeWith) {
    CIMParamValue value("Force", yes);
    EXPECT_EQ(text(value.getParameterName()), "Force");
    EXPECT_TRUE(value.getValue().equal(yes));
    EXPECT_TRUE(value.isTyped());
    EXPECT_FALSE(CIMParamValue("Force", yes, false).isTyped());

    String name("Delay");
    CIMValue delay(Uint16(5));
    value.setParameterName(name);
    value.setValue(delay);
    EXPECT_EQ(text(value.getParameterName()), "Delay");
    EXPECT_TRUE(value.getValue().equal(delay));
}

TEST(CIMParamValue, NeedsANameAndIsUninitializedWithout) {
    CIMParamValue none;
    CIMParamValue some("Force", yes);
    String empty;
    EXPECT_TRUE(none.isUninitialized());
    expectAllUninitialized({
        {"constructor", [] { CIMParamValue("", yes); }},
        {"setParameterName", [&] { some.setParameterName(empty); }},
        {"getParameterName", [&] { none.getParameterName(); }},
        {"getValue", [&] { none.getValue(); }},
        {"isTyped", [&] { none.isTyped(); }},
        {"setIsTyped", [&] { none.setIsTyped(true); }},
    });
}

TEST(CIMParamValue, CopiesShareAndClonesDoNot) {
    CIMParamValue original("Force", yes);
    CIMParamValue copy(original);
    const CIMParamValue clone = original.clone();
    copy.setIsTyped(false);
    EXPECT_FALSE(original.isTyped());
    EXPECT_TRUE(clone.isTyped());
}

} // namespace
