#include "Throws.h"

#include <Pegasus/Common/CIMFlavor.h>
#include <Pegasus/Common/CIMQualifier.h>
#include <Pegasus/Common/CIMQualifierDecl.h>
#include <Pegasus/Common/CIMScope.h>

using namespace Pegasus;
using namespace apitest;

namespace {

const CIMValue yes(Boolean(true));

TEST(CIMFlavor, IsWrittenWithItsNamesInFixedOrder) {
    const struct {
        CIMFlavor flavor;
        const char* name;
    } cases[] = {
        {CIMFlavor::NONE, ""},
        {CIMFlavor::OVERRIDABLE, "OVERRIDABLE"},
        {CIMFlavor::ENABLEOVERRIDE, "OVERRIDABLE"},
        {CIMFlavor::TOSUBCLASS, "TOSUBCLASS"},
        {CIMFlavor::TOSUBELEMENTS, "TOSUBCLASS"},
        {CIMFlavor::TOINSTANCE, "TOINSTANCE"},
        {CIMFlavor::TRANSLATABLE, "TRANSLATABLE"},
        {CIMFlavor::DISABLEOVERRIDE, "DISABLEOVERRIDE"},
        {CIMFlavor::RESTRICTED, "RESTRICTED"},
        {CIMFlavor::DEFAULTS, "OVERRIDABLE TOSUBCLASS"},
        {CIMFlavor::RESTRICTED + CIMFlavor::TOINSTANCE, "TOINSTANCE RESTRICTED"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(text(c.flavor.toString()), c.name);
}

TEST(CIMFlavor, HasAFlavorOnlyIfItHasAllItsParts) {
    const CIMFlavor flavor = CIMFlavor::OVERRIDABLE + CIMFlavor::TRANSLATABLE;
    EXPECT_TRUE(flavor.hasFlavor(CIMFlavor::OVERRIDABLE));
    EXPECT_TRUE(flavor.hasFlavor(CIMFlavor::NONE));
    EXPECT_FALSE(flavor.hasFlavor(CIMFlavor::DEFAULTS));
    EXPECT_FALSE(CIMFlavor().hasFlavor(CIMFlavor::OVERRIDABLE));
}

TEST(CIMFlavor, KeepsOppositesBesideEachOther) {
    CIMFlavor flavor = CIMFlavor::OVERRIDABLE;
    flavor.addFlavor(CIMFlavor::DISABLEOVERRIDE);
    EXPECT_TRUE(flavor.hasFlavor(CIMFlavor::OVERRIDABLE));
    flavor.removeFlavor(CIMFlavor::OVERRIDABLE);
    EXPECT_TRUE(flavor.equal(CIMFlavor::DISABLEOVERRIDE));
}

TEST(CIMFlavor, IsAValueWhoseCopiesAreIndependent) {
    const CIMFlavor original = CIMFlavor::TOINSTANCE;
    CIMFlavor copy(original);
    copy.addFlavor(CIMFlavor::RESTRICTED);
    EXPECT_TRUE(original.equal(CIMFlavor::TOINSTANCE));
    EXPECT_FALSE(copy.equal(original));
}

TEST(CIMScope, IsWrittenWithItsNamesInFixedOrder) {
    const struct {
        CIMScope scope;
        const char* name;
    } cases[] = {
        {CIMScope::NONE, ""},
        {CIMScope::CLASS, "CLASS"},
        {CIMScope::ASSOCIATION, "ASSOCIATION"},
        {CIMScope::INDICATION, "INDICATION"},
        {CIMScope::PROPERTY, "PROPERTY"},
        {CIMScope::REFERENCE, "REFERENCE"},
        {CIMScope::METHOD, "METHOD"},
        {CIMScope::PARAMETER, "PARAMETER"},
        {CIMScope::METHOD + CIMScope::CLASS, "CLASS METHOD"},
        {CIMScope::ANY, "CLASS ASSOCIATION INDICATION PROPERTY REFERENCE METHOD PARAMETER"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(text(c.scope.toString()), c.name);
}

TEST(CIMScope, HasAScopeOnlyIfItHasAllItsParts) {
    CIMScope scope = CIMScope::CLASS;
    EXPECT_FALSE(scope.hasScope(CIMScope::ANY));
    scope.addScope(CIMScope::PROPERTY);
    EXPECT_TRUE(scope.hasScope(CIMScope::CLASS + CIMScope::PROPERTY));
    EXPECT_TRUE(scope.hasScope(CIMScope::NONE));
    EXPECT_TRUE(CIMScope::ANY.hasScope(scope));
    EXPECT_FALSE(scope.equal(CIMScope::ANY));
}

TEST(CIMQualifier, HasWhatItWasMadeWith) {
    const CIMQualifier plain("Key", yes);
    EXPECT_EQ(text(plain.getName().getString()), "Key");
    EXPECT_EQ(plain.getType(), CIMTYPE_BOOLEAN);
    EXPECT_FALSE(plain.isArray());
    EXPECT_TRUE(plain.getValue().equal(yes));
    EXPECT_TRUE(plain.getFlavor().equal(CIMFlavor::NONE));
    EXPECT_EQ(plain.getPropagated(), 0U);
    EXPECT_FALSE(plain.isUninitialized());

    const CIMConstQualifier full("Key", yes, CIMFlavor::DEFAULTS, true);
    EXPECT_TRUE(full.getFlavor().equal(CIMFlavor::DEFAULTS));
    EXPECT_EQ(full.getPropagated(), 1U);
}

TEST(CIMQualifier, IsUninitializedUntilItIsAssigned) {
    CIMQualifier none;
    const CIMQualifier some("Key", yes);
    expectAllUninitialized({
        {"getName", [&] { none.getName(); }},
        {"setName", [&] { none.setName("x"); }},
        {"getType", [&] { none.getType(); }},
        {"isArray", [&] { none.isArray(); }},
        {"getValue", [&] { none.getValue(); }},
        {"setValue", [&] { none.setValue(yes); }},
        {"setFlavor", [&] { none.setFlavor(CIMFlavor::NONE); }},
        {"unsetFlavor", [&] { none.unsetFlavor(CIMFlavor::NONE); }},
        {"getFlavor", [&] { none.getFlavor(); }},
        {"getPropagated", [&] { none.getPropagated(); }},
        {"setPropagated", [&] { none.setPropagated(true); }},
        {"identical", [&] { none.identical(some); }},
        {"const getName", [&] { CIMConstQualifier(none).getName(); }},
        {"const getValue", [&] { CIMConstQualifier(none).getValue(); }},
    });
    EXPECT_TRUE(none.isUninitialized());
    none = some;
    EXPECT_FALSE(none.isUninitialized());
}

TEST(CIMQualifier, NeedsAName) {
    CIMQualifier qualifier("Key", yes);
    EXPECT_TRUE(throwsUninitialized([] { CIMQualifier(CIMName(), yes); }));
    EXPECT_TRUE(throwsUninitialized([&] { qualifier.setName(CIMName()); }));
}

TEST(CIMQualifier, TakesAValueOfAnotherType) {
    CIMQualifier qualifier("MaxLen", yes);
    qualifier.setValue(CIMValue(Uint16(2)));
    EXPECT_EQ(qualifier.getType(), CIMTYPE_UINT16);
}

TEST(CIMQualifier, SetFlavorReplacesAndUnsetFlavorRemoves) {
    CIMQualifier qualifier("Key", yes, CIMFlavor::DEFAULTS);
    qualifier.unsetFlavor(CIMFlavor::OVERRIDABLE);
    EXPECT_TRUE(qualifier.getFlavor().equal(CIMFlavor::TOSUBCLASS));
    qualifier.setFlavor(CIMFlavor::RESTRICTED);
    EXPECT_TRUE(qualifier.getFlavor().equal(CIMFlavor::RESTRICTED));
}

TEST(CIMQualifier, CopiesShareAndClonesDoNot) {
    CIMQualifier original("Key", yes);
    CIMQualifier copy(original);
    const CIMConstQualifier constant(original);
    const CIMQualifier clone = original.clone();
    const CIMQualifier constantClone = constant.clone();
    copy.setPropagated(true);
    EXPECT_EQ(original.getPropagated(), 1U);
    EXPECT_EQ(constant.getPropagated(), 1U);
    EXPECT_EQ(clone.getPropagated(), 0U);
    EXPECT_EQ(constantClone.getPropagated(), 0U);
}

TEST(CIMQualifier, IsIdenticalIgnoringTheCaseOfItsName) {
    const CIMQualifier qualifier("Key", yes, CIMFlavor::DEFAULTS);
    EXPECT_TRUE(qualifier.identical(CIMQualifier("kEY", yes, CIMFlavor::DEFAULTS)));
    EXPECT_FALSE(qualifier.identical(CIMQualifier("Kex", yes, CIMFlavor::DEFAULTS)));
    EXPECT_FALSE(qualifier.identical(CIMQualifier("Key", yes)));
    EXPECT_FALSE(qualifier.identical(CIMQualifier("Key", yes, CIMFlavor::DEFAULTS, true)));
    EXPECT_FALSE(
        qualifier.identical(CIMQualifier("Key", CIMValue(Boolean(false)), CIMFlavor::DEFAULTS)));
}

TEST(CIMQualifierDecl, HasWhatItWasMadeWith) {
    const CIMQualifierDecl plain("Key", yes, CIMScope::PROPERTY);
    EXPECT_EQ(text(plain.getName().getString()), "Key");
    EXPECT_EQ(plain.getType(), CIMTYPE_BOOLEAN);
    EXPECT_FALSE(plain.isArray());
    EXPECT_TRUE(plain.getScope().equal(CIMScope::PROPERTY));
    EXPECT_TRUE(plain.getFlavor().equal(CIMFlavor::DEFAULTS));
    EXPECT_EQ(plain.getArraySize(), 0U);

    const CIMValue pair(Array<Uint16>(2));
    const CIMQualifierDecl fixed("Pair", pair, CIMScope::ANY, CIMFlavor::NONE, 2);
    EXPECT_EQ(fixed.getArraySize(), 2U);
    EXPECT_TRUE(fixed.isArray());
    EXPECT_TRUE(fixed.getValue().equal(pair));
    EXPECT_TRUE(fixed.getScope().equal(CIMScope::ANY));
}

TEST(CIMQualifierDecl, NeedsANameAndIsUninitializedWithout) {
    CIMQualifierDecl none;
    EXPECT_TRUE(none.isUninitialized());
    expectAllUninitialized({
        {"constructor", [] { CIMQualifierDecl(CIMName(), yes, CIMScope::ANY); }},
        {"getName", [&] { none.getName(); }},
        {"getScope", [&] { none.getScope(); }},
        {"getValue", [&] { none.getValue(); }},
    });
}

} // namespace
