#include "Throws.h"

#include <Pegasus/Common/CIMClass.h>
#include <Pegasus/Common/CIMInstance.h>

using namespace Pegasus;
using namespace apitest;

namespace {

const CIMValue yes(Boolean(true));
const CIMValue no(Boolean(false));

CIMProperty keyProperty(const char* name) {
    CIMProperty property(name, CIMValue(CIMTYPE_STRING, false), 0, CIMName(), "Device");
    property.addQualifier(CIMQualifier("Key", yes));
    return property;
}

/// A class with a qualifier, two keys, a property with a default and a method.
CIMClass diskClass() {
    CIMClass cls("Disk", "Device");
    cls.addQualifier(CIMQualifier("Version", CIMValue(String("1"))));
    cls.addProperty(keyProperty("Id"));
    cls.addProperty(CIMProperty("Size", CIMValue(Uint16(7))));
    cls.addProperty(keyProperty("Host"));
    cls.addMethod(CIMMethod("Reset", CIMTYPE_UINT32));
    return cls;
}

TEST(CIMClass, HasWhatItWasMadeWith) {
    CIMClass cls("Disk", "Device");
    EXPECT_EQ(text(cls.getClassName().getString()), "Disk");
    EXPECT_EQ(text(cls.getPath().toString()), "Disk");
    EXPECT_EQ(text(cls.getSuperClassName().getString()), "Device");
    cls.setSuperClassName(CIMName());
    EXPECT_TRUE(cls.getSuperClassName().isNull());
    EXPECT_TRUE(CIMClass("Disk").getSuperClassName().isNull());
    EXPECT_TRUE(throwsUninitialized([] { CIMClass nameless{CIMName()}; }));
}

TEST(CIMClass, IsAnAssociationOrAbstractByATrueQualifier) {
    const struct {
        CIMValue value;
        bool expected;
    } cases[] = {
        {yes, true},
        {no, false},
        {CIMValue(String("true")), false},
    };
    for (const auto& c : cases) {
        CIMClass association("C");
        association.addQualifier(CIMQualifier("ASSOCIATION", c.value));
        EXPECT_EQ(association.isAssociation(), c.expected) << text(c.value.toString());
        EXPECT_FALSE(association.isAbstract());
        CIMClass abstract("C");
        abstract.addQualifier(CIMQualifier("abstract", c.value));
        EXPECT_EQ(CIMConstClass(abstract).isAbstract(), c.expected) << text(c.value.toString());
        EXPECT_FALSE(CIMConstClass(abstract).isAssociation());
    }
}

TEST(CIMClass, HasTheKeysWhoseQualifierIsTrueInTheirOrder) {
    CIMClass cls = diskClass();
    CIMProperty unset("Unset", yes);
    unset.addQualifier(CIMQualifier("Key", no));
    cls.addProperty(unset);
    Array<CIMName> names;
    names.append("Replaced");
    cls.getKeyNames(names);
    ASSERT_EQ(names.size(), 2U);
    EXPECT_EQ(text(names[0].getString()), "Id");
    EXPECT_EQ(text(names[1].getString()), "Host");
    EXPECT_TRUE(cls.hasKeys());
    EXPECT_TRUE(CIMConstClass(cls).hasKeys());
    CIMConstClass("Keyless").getKeyNames(names);
    EXPECT_EQ(names.size(), 0U);
    EXPECT_FALSE(CIMClass("Keyless").hasKeys());
}

TEST(CIMClass, NeedsTheReferenceClassOfAReference) {
    CIMClass cls("OnDisk");
    const CIMValue null(CIMTYPE_REFERENCE, false);
    EXPECT_TRUE(throwsTypeMismatch([&] { cls.addProperty(CIMProperty("Disk", null)); }));
    EXPECT_TRUE(throwsTypeMismatch([&] { CIMObject(cls).addProperty(CIMProperty("Disk", null)); }));
    EXPECT_NO_THROW(cls.addProperty(CIMProperty("Disk", null, 0, "Disk")));
    EXPECT_EQ(cls.getPropertyCount(), 1U);
}

TEST(CIMClass, FindsItsPropertiesAndMethodsIgnoringCase) {
    CIMClass cls = diskClass();
    EXPECT_EQ(cls.findProperty("SIZE"), 1U);
    EXPECT_EQ(cls.findProperty("Other"), PEG_NOT_FOUND);
    EXPECT_EQ(cls.findMethod("RESET"), 0U);
    EXPECT_EQ(cls.findMethod("Other"), PEG_NOT_FOUND);
    EXPECT_TRUE(throws<AlreadyExistsException>([&] { cls.addProperty(keyProperty("ID")); },
                                               "already exists: property \"ID\""));
    EXPECT_TRUE(
        throws<AlreadyExistsException>([&] { cls.addMethod(CIMMethod("reset", CIMTYPE_UINT8)); },
                                       "already exists: method \"reset\""));
    EXPECT_TRUE(throwsUninitialized([&] { cls.addProperty(CIMProperty()); }));
    EXPECT_TRUE(throwsUninitialized([&] { cls.addMethod(CIMMethod()); }));
    EXPECT_TRUE(throwsOutOfBounds([&] { cls.getProperty(3); }));
    EXPECT_TRUE(throwsOutOfBounds([&] { cls.removeProperty(3); }));
    EXPECT_TRUE(throwsOutOfBounds([&] { cls.getMethod(1); }));
    EXPECT_TRUE(throwsOutOfBounds([&] { cls.removeMethod(1); }));
    cls.removeMethod(0);
    EXPECT_EQ(cls.getMethodCount(), 0U);
}

TEST(CIMClass, KeepsTheNamesOfItsMethods) {
    CIMMethod method("Reset", CIMTYPE_UINT32);
    CIMClass cls("Disk");
    cls.addMethod(method);
    EXPECT_TRUE(
        throws<Exception>([&] { method.setName("Stop"); },
                          "Attempted to change the name of a method already in a container."));
}

TEST(CIMClass, DoesNotSetTheClassOriginOfWhatIsAdded) {
    CIMClass cls = diskClass();
    EXPECT_TRUE(cls.getProperty(1).getClassOrigin().isNull());
    EXPECT_TRUE(cls.getMethod(0).getClassOrigin().isNull());
}

TEST(CIMClass, CopiesShareAndClonesDoNot) {
    CIMClass original = diskClass();
    CIMClass copy(original);
    CIMClass clone = original.clone();
    EXPECT_TRUE(clone.identical(original));
    copy.getProperty(0).setPropagated(true);
    copy.getMethod(0).addParameter(CIMParameter("Force", CIMTYPE_BOOLEAN));
    EXPECT_TRUE(original.getProperty(0).getPropagated());
    EXPECT_EQ(CIMConstClass(original).getMethod(0).getParameterCount(), 1U);
    EXPECT_FALSE(clone.getProperty(0).getPropagated());
    EXPECT_EQ(clone.getMethod(0).getParameterCount(), 0U);
}

TEST(CIMClass, IsIdenticalBySuperclassMethodsAndAllThatAnInstanceHas) {
    const CIMClass cls = diskClass();
    CIMClass other = diskClass();
    other.setSuperClassName("DEVICE");
    EXPECT_TRUE(cls.identical(other));
    other.setSuperClassName("Thing");
    EXPECT_FALSE(cls.identical(other));
    other = diskClass();
    other.addMethod(CIMMethod("Stop", CIMTYPE_UINT32));
    EXPECT_FALSE(cls.identical(other));
    other = diskClass();
    other.removeProperty(2);
    EXPECT_FALSE(cls.identical(other));
    EXPECT_FALSE(CIMClass("Disk").identical(CIMClass("Tape")));
}

TEST(CIMClass, IsUninitializedUntilItIsAssigned) {
    CIMClass none;
    Array<CIMName> names;
    expectAllUninitialized({
        {"isAssociation", [&] { none.isAssociation(); }},
        {"isAbstract", [&] { none.isAbstract(); }},
        {"getClassName", [&] { none.getClassName(); }},
        {"getPath", [&] { none.getPath(); }},
        {"getSuperClassName", [&] { none.getSuperClassName(); }},
        {"setSuperClassName", [&] { none.setSuperClassName("Device"); }},
        {"addProperty", [&] { none.addProperty(CIMProperty("Size", yes)); }},
        {"addMethod", [&] { none.addMethod(CIMMethod("Reset", CIMTYPE_UINT8)); }},
        {"getMethodCount", [&] { none.getMethodCount(); }},
        {"getKeyNames", [&] { none.getKeyNames(names); }},
        {"hasKeys", [&] { none.hasKeys(); }},
        {"identical", [&] { none.identical(none); }},
        {"buildInstance", [&] { none.buildInstance(true, true, CIMPropertyList()); }},
        {"const class getClassName", [] { CIMConstClass().getClassName(); }},
    });
    none = diskClass();
    EXPECT_FALSE(none.isUninitialized());
}

TEST(CIMClassBuildInstance, HasTheDefaultsOfTheClass) {
    CIMClass cls = diskClass();
    cls.setPath(CIMObjectPath("//host/root:Disk"));
    cls.getProperty(0).setPropagated(true);
    const CIMInstance instance = cls.buildInstance(true, true, CIMPropertyList());
    EXPECT_EQ(text(instance.getPath().toString()), "Disk");
    ASSERT_EQ(instance.getPropertyCount(), 3U);
    EXPECT_EQ(text(instance.getProperty(1).getValue().toString()), "7");
    EXPECT_TRUE(instance.getProperty(0).getValue().isNull());
    EXPECT_EQ(text(instance.getProperty(0).getClassOrigin().getString()), "Device");
    EXPECT_TRUE(instance.getProperty(0).getPropagated());
    EXPECT_EQ(instance.getProperty(0).getQualifierCount(), 1U);
    EXPECT_EQ(instance.getQualifierCount(), 1U);
}

TEST(CIMClassBuildInstance, IsIndependentOfTheClass) {
    const CIMClass cls = diskClass();
    CIMInstance instance = cls.buildInstance(true, true, CIMPropertyList());
    instance.getProperty(1).setValue(CIMValue(Uint16(8)));
    instance.getProperty(0).removeQualifier(0);
    instance.getQualifier(0).setPropagated(true);
    EXPECT_TRUE(cls.identical(diskClass()));
}

TEST(CIMClassBuildInstance, LeavesOutWhatIsNotWanted) {
    const CIMClass cls = diskClass();
    const CIMInstance plain = cls.buildInstance(false, false, CIMPropertyList());
    EXPECT_EQ(plain.getPropertyCount(), 3U);
    EXPECT_EQ(plain.getQualifierCount(), 0U);
    EXPECT_EQ(plain.getProperty(0).getQualifierCount(), 0U);
    EXPECT_TRUE(plain.getProperty(0).getClassOrigin().isNull());

    Array<CIMName> names;
    names.append("host");
    names.append("Unknown");
    names.append("id");
    const CIMInstance some = cls.buildInstance(true, true, CIMPropertyList(names));
    ASSERT_EQ(some.getPropertyCount(), 2U);
    EXPECT_EQ(text(some.getProperty(0).getName().getString()), "Id");
    EXPECT_EQ(text(some.getProperty(1).getName().getString()), "Host");

    names.clear();
    EXPECT_EQ(cls.buildInstance(true, true, CIMPropertyList(names)).getPropertyCount(), 0U);
}

} // namespace
