#include "Throws.h"

#include <Pegasus/Common/CIMInstance.h>
#include <Pegasus/Common/CIMObjectPath.h>
#include <Pegasus/Common/CIMProperty.h>

using namespace Pegasus;
using namespace apitest;

namespace {

const CIMValue yes(Boolean(true));
const CIMValue one(Uint16(1));

CIMValue arrayOf(Uint32 size) { return CIMValue(Array<Uint16>(size)); }

CIMValue reference() { return CIMValue(CIMObjectPath("Disk.Id=\"0\"")); }

TEST(CIMProperty, HasWhatItWasMadeWith) {
    const CIMProperty plain("Size", one);
    EXPECT_EQ(text(plain.getName().getString()), "Size");
    EXPECT_TRUE(plain.getValue().equal(one));
    EXPECT_EQ(plain.getType(), CIMTYPE_UINT16);
    EXPECT_FALSE(plain.isArray());
    EXPECT_EQ(plain.getArraySize(), 0U);
    EXPECT_TRUE(plain.getReferenceClassName().isNull());
    EXPECT_TRUE(plain.getClassOrigin().isNull());
    EXPECT_FALSE(plain.getPropagated());
    EXPECT_FALSE(plain.isUninitialized());

    const CIMConstProperty full("Disk", reference(), 0, "CIM_Disk", "CIM_OnDisk", true);
    EXPECT_EQ(text(full.getReferenceClassName().getString()), "CIM_Disk");
    EXPECT_EQ(text(full.getClassOrigin().getString()), "CIM_OnDisk");
    EXPECT_TRUE(full.getPropagated());

    const CIMProperty fixed("Three", arrayOf(3), 3);
    EXPECT_TRUE(fixed.isArray());
    EXPECT_EQ(fixed.getArraySize(), 3U);
}

TEST(CIMProperty, RejectsWhatCannotBeAProperty) {
    EXPECT_TRUE(throwsUninitialized([] { CIMProperty(CIMName(), yes); }));
    const std::vector<NamedCall> mismatches = {
        {"scalar of fixed size", [] { CIMProperty("p", yes, 3); }},
        {"the same of a const property", [] { CIMConstProperty("p", yes, 3); }},
        {"array of another size", [] { CIMProperty("p", arrayOf(2), 3); }},
        {"null array without its size",
         [] { CIMProperty("p", CIMValue(CIMTYPE_UINT16, true), 3); }},
        {"array of references", [] { CIMProperty("p", CIMValue(Array<CIMObjectPath>())); }},
        {"reference class for a value", [] { CIMProperty("p", yes, 0, "CIM_Disk"); }},
    };
    for (const NamedCall& mismatch : mismatches)
        EXPECT_TRUE(throwsTypeMismatch(mismatch.call)) << mismatch.name;
}

TEST(CIMProperty, MayBeAReferenceWithoutAReferenceClass) {
    EXPECT_EQ(CIMProperty("p", reference()).getType(), CIMTYPE_REFERENCE);
}

TEST(CIMProperty, MayBeANullArrayOfItsFixedSize) {
    EXPECT_NO_THROW(CIMProperty("p", CIMValue(CIMTYPE_UINT16, true, 3), 3));
}

TEST(CIMProperty, TakesOnlyValuesOfItsTypeAndArrayness) {
    CIMProperty property("Size", one);
    property.setValue(CIMValue(Uint16(2)));
    EXPECT_EQ(text(property.getValue().toString()), "2");
    EXPECT_TRUE(throwsTypeMismatch([&] { property.setValue(CIMValue(Uint32(3))); }));
    EXPECT_TRUE(throwsTypeMismatch([&] { property.setValue(arrayOf(1)); }));
    EXPECT_TRUE(throwsTypeMismatch([&] { property.setValue(CIMValue()); }));
    EXPECT_EQ(text(property.getValue().toString()), "2");
    property.setValue(CIMValue(CIMTYPE_UINT16, false));
    EXPECT_TRUE(property.getValue().isNull());
}

TEST(CIMProperty, TakesOnlyArraysOfItsFixedSize) {
    CIMProperty property("Three", arrayOf(3), 3);
    EXPECT_TRUE(throwsTypeMismatch([&] { property.setValue(arrayOf(2)); }));
    EXPECT_TRUE(throwsTypeMismatch([&] { property.setValue(CIMValue(CIMTYPE_UINT16, true)); }));
    EXPECT_NO_THROW(property.setValue(CIMValue(CIMTYPE_UINT16, true, 3)));
}

TEST(CIMProperty, IsUninitializedUntilItIsAssigned) {
    CIMProperty none;
    const CIMProperty some("Size", one);
    expectAllUninitialized({
        {"getName", [&] { none.getName(); }},
        {"setName", [&] { none.setName("x"); }},
        {"getValue", [&] { none.getValue(); }},
        {"getType", [&] { none.getType(); }},
        {"isArray", [&] { none.isArray(); }},
        {"setValue", [&] { none.setValue(one); }},
        {"getArraySize", [&] { none.getArraySize(); }},
        {"getReferenceClassName", [&] { none.getReferenceClassName(); }},
        {"getClassOrigin", [&] { none.getClassOrigin(); }},
        {"setClassOrigin", [&] { none.setClassOrigin("C"); }},
        {"getPropagated", [&] { none.getPropagated(); }},
        {"setPropagated", [&] { none.setPropagated(true); }},
        {"identical", [&] { none.identical(some); }},
    });
    EXPECT_TRUE(none.isUninitialized());
    none = some;
    EXPECT_FALSE(none.isUninitialized());
}

TEST(CIMProperty, CopiesShareAndClonesDoNot) {
    CIMProperty original("Size", one);
    original.addQualifier(CIMQualifier("Key", yes));
    CIMProperty copy(original);
    const CIMConstProperty constant(original);
    const CIMProperty clone = original.clone();
    copy.setValue(CIMValue(Uint16(2)));
    copy.getQualifier(0).setPropagated(true);
    EXPECT_EQ(text(original.getValue().toString()), "2");
    EXPECT_EQ(text(constant.getValue().toString()), "2");
    EXPECT_EQ(original.getQualifier(0).getPropagated(), 1U);
    EXPECT_EQ(text(clone.getValue().toString()), "1");
    EXPECT_EQ(clone.getQualifier(0).getPropagated(), 0U);
    EXPECT_TRUE(constant.clone().identical(original));
}

TEST(CIMProperty, KeepsItsNameWhileAnInstanceFindsItByIt) {
    const char* const refusal =
        "Attempted to change the name of a property already in a container.";
    CIMProperty property("Size", one);
    property.setName("Length");
    CIMInstance first("Disk");
    first.addProperty(property);
    EXPECT_TRUE(throws<Exception>([&] { property.setName("Size"); }, refusal));
    {
        CIMInstance second("Disk");
        second.addProperty(property);
        first.removeProperty(0);
        EXPECT_TRUE(throws<Exception>([&] { property.setName("Size"); }, refusal));
        EXPECT_NO_THROW(property.clone().setName("Size"));
    }
    property.setName("Size");
    EXPECT_EQ(text(property.getName().getString()), "Size");
    EXPECT_TRUE(throwsUninitialized([&] { property.setName(CIMName()); }));
}

TEST(CIMProperty, IsIdenticalByAllButItsArraySize) {
    const CIMProperty property("Size", one, 0, CIMName(), "Disk");
    EXPECT_TRUE(property.identical(CIMProperty("SIZE", one, 0, CIMName(), "disk")));
    EXPECT_FALSE(property.identical(CIMProperty("Length", one, 0, CIMName(), "Disk")));
    EXPECT_FALSE(property.identical(CIMProperty("Size", yes, 0, CIMName(), "Disk")));
    EXPECT_FALSE(property.identical(CIMProperty("Size", one)));
    EXPECT_FALSE(property.identical(CIMProperty("Size", one, 0, CIMName(), "Disk", true)));
    EXPECT_TRUE(CIMProperty("p", arrayOf(3), 3).identical(CIMProperty("p", arrayOf(3))));
    EXPECT_FALSE(CIMProperty("p", reference(), 0, "Disk").identical(CIMProperty("p", reference())));

    CIMProperty qualified = property.clone();
    qualified.addQualifier(CIMQualifier("Key", yes));
    EXPECT_FALSE(property.identical(qualified));
}

TEST(CIMProperty, IsIdenticalOnlyWithItsQualifiersInTheSameOrder) {
    const CIMQualifier key("Key", yes);
    const CIMQualifier write("Write", yes);
    CIMProperty keyFirst("p", one);
    keyFirst.addQualifier(key).addQualifier(write);
    CIMProperty writeFirst("p", one);
    writeFirst.addQualifier(write).addQualifier(key);
    EXPECT_FALSE(keyFirst.identical(writeFirst));
    EXPECT_TRUE(keyFirst.identical(keyFirst.clone()));
}

} // namespace
