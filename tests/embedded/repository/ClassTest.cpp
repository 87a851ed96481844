// What a resolved class shows, and what the flags of GetClass leave of it.
#include "Fixture.h"

#include <Pegasus/Common/Array.h>

namespace embedded::repository {

namespace {

using Pegasus::CIMClass;
using Pegasus::CIMConstClass;
using Pegasus::CIMName;
using Pegasus::CIMPropertyList;
using Pegasus::Uint32;

const char* const classes = R"(
[Abstract, Description("base"), Version("1.0")]
class Base {
    [Key, Description("the key")] string Id;
    [Description("speed"), Override(null)] uint16 Speed = 5;
    uint8 Codes[] = {1, 2};
    [Description("starts")] uint32 Start([Required] string how);
    uint32 Stop();
};
class Middle : base {
    string Extra;
    [Override("Speed")] uint16 SPEED = 7;
    [Override("Start")] uint32 Start(string how, uint8 when);
};
[Description("leaf")]
class Leaf : Middle { [MaxLen(9)] string Last; };
)";

/// "name origin own|propagated", one per member.
template <class Count, class Get>
std::vector<std::string> membersOf(Count count, Get get) {
    std::vector<std::string> members;
    for (Uint32 i = 0; i < count; ++i) {
        const auto member = get(i);
        members.push_back(text(member.getName()) + " " + text(member.getClassOrigin()) +
                          (member.getPropagated() ? " propagated" : " own"));
    }
    return members;
}

std::vector<std::string> propertiesOf(const CIMConstClass& cimClass) {
    return membersOf(cimClass.getPropertyCount(),
                     [&](Uint32 i) { return cimClass.getProperty(i); });
}

std::vector<std::string> methodsOf(const CIMConstClass& cimClass) {
    return membersOf(cimClass.getMethodCount(), [&](Uint32 i) { return cimClass.getMethod(i); });
}

template <class Holder>
std::vector<std::string> qualifiersOf(const Holder& holder) {
    std::vector<std::string> names;
    for (Uint32 i = 0; i < holder.getQualifierCount(); ++i) {
        const Pegasus::CIMConstQualifier qualifier = holder.getQualifier(i);
        names.push_back(text(qualifier.getName()) + "=" + text(qualifier.getValue().toString()) +
                        (qualifier.getPropagated() ? " propagated" : " own"));
    }
    return names;
}

Pegasus::CIMConstProperty propertyOf(const CIMConstClass& cimClass, const char* name) {
    return cimClass.getProperty(cimClass.findProperty(CIMName(name)));
}

using Strings = std::vector<std::string>;

class ClassTest : public RepositoryTest {
  protected:
    ClassTest() { load(classes); }
};

TEST_F(ClassTest, InheritedPropertiesComeFirstAndOverridingOnesKeepTheirPlace) {
    EXPECT_EQ(propertiesOf(classNamed("Leaf")),
              (Strings{"Id Base propagated", "SPEED Base propagated", "Codes Base propagated",
                       "Extra Middle propagated", "Last Leaf own"}));
}

TEST_F(ClassTest, AnOverridingPropertyIsTheClassesOwnButOriginatesWhereItFirstStood) {
    EXPECT_EQ(propertiesOf(classNamed("Middle"))[1], "SPEED Base own");
    EXPECT_EQ(text(propertyOf(classNamed("Leaf"), "Speed").getValue().toString()), "7");
}

TEST_F(ClassTest, AnOverridingPropertyWithoutADefaultInheritsIt) {
    load("class A : Base { uint16 Speed; };");
    EXPECT_EQ(text(propertyOf(classNamed("A"), "Speed").getValue().toString()), "5");
}

TEST_F(ClassTest, MethodsAreInheritedLikeProperties) {
    const CIMClass leaf = classNamed("Leaf");
    EXPECT_EQ(methodsOf(leaf), (Strings{"Start Base propagated", "Stop Base propagated"}));
    EXPECT_EQ(leaf.getMethod(0).getParameterCount(), 2U);
    EXPECT_EQ(methodsOf(classNamed("Middle"))[0], "Start Base own");
}

TEST_F(ClassTest, ClassQualifiersFlowDownUnlessTheyAreRestricted) {
    EXPECT_EQ(qualifiersOf(classNamed("Base")),
              (Strings{"Abstract=TRUE own", "Description=base own", "Version=1.0 own"}));
    EXPECT_EQ(qualifiersOf(classNamed("Middle")), (Strings{"Description=base propagated"}));
    EXPECT_EQ(qualifiersOf(classNamed("Leaf")), (Strings{"Description=leaf own"}));
    EXPECT_FALSE(classNamed("Middle").isAbstract());
}

TEST_F(ClassTest, PropertyQualifiersFlowDownUnlessTheyAreRestricted) {
    EXPECT_EQ(qualifiersOf(propertyOf(classNamed("Middle"), "Speed")),
              (Strings{"Description=speed propagated", "Override=Speed own"}));
    EXPECT_EQ(qualifiersOf(propertyOf(classNamed("Leaf"), "Speed")),
              (Strings{"Description=speed propagated"}));
}

TEST_F(ClassTest, MethodQualifiersFlowDown) {
    EXPECT_EQ(qualifiersOf(classNamed("Middle").getMethod(0)),
              (Strings{"Description=starts propagated", "Override=Start own"}));
}

TEST_F(ClassTest, KeysFlowDown) {
    Pegasus::Array<CIMName> keys;
    classNamed("Leaf").getKeyNames(keys);
    ASSERT_EQ(keys.size(), 1U);
    EXPECT_EQ(text(keys[0]), "Id");
}

TEST_F(ClassTest, AnAssociationStaysOneBelow) {
    load("[Association] class Link { [Key] Base REF A; [Key] Base REF B; };"
         "class LinkBelow : Link {};");
    EXPECT_TRUE(classNamed("LinkBelow").isAssociation());
}

TEST_F(ClassTest, FlavorsOfTheDeclarationGoWithTheQualifier) {
    const auto key = propertyOf(classNamed("Base"), "Id").getQualifier(0);
    EXPECT_TRUE(key.getFlavor().hasFlavor(Pegasus::CIMFlavor::TOSUBCLASS));
    EXPECT_TRUE(key.getFlavor().hasFlavor(Pegasus::CIMFlavor::DISABLEOVERRIDE));
    EXPECT_FALSE(key.getFlavor().hasFlavor(Pegasus::CIMFlavor::ENABLEOVERRIDE));
}

TEST_F(ClassTest, FlavorsAtTheQualifierChangeThoseOfItsDeclaration) {
    load("[Description(\"here only\") : Restricted] class A {}; class B : A {};");
    EXPECT_EQ(qualifiersOf(classNamed("A")).size(), 1U);
    EXPECT_EQ(qualifiersOf(classNamed("B")).size(), 0U);
}

TEST_F(ClassTest, NamesAreFoundInAnyCaseAndShownAsDeclared) {
    EXPECT_EQ(text(classNamed("mIDDLE").getClassName()), "Middle");
    EXPECT_EQ(text(classNamed("Middle").getSuperClassName()), "Base");
}

TEST_F(ClassTest, LocalOnlyLeavesOutWhatIsPropagated) {
    const CIMClass middle = repository.getClass(home, "Middle", true);
    EXPECT_EQ(propertiesOf(middle), (Strings{"SPEED Base own", "Extra Middle own"}));
    EXPECT_EQ(methodsOf(middle), (Strings{"Start Base own"}));
    EXPECT_EQ(qualifiersOf(middle), Strings{});
    EXPECT_EQ(qualifiersOf(propertyOf(middle, "Speed")), (Strings{"Override=Speed own"}));
}

TEST_F(ClassTest, WithoutQualifiersNoElementHasAny) {
    const CIMClass base = repository.getClass(home, "Base", false, false);
    EXPECT_EQ(base.getQualifierCount(), 0U);
    EXPECT_EQ(propertyOf(base, "Id").getQualifierCount(), 0U);
    const Pegasus::CIMConstMethod start = CIMConstClass(base).getMethod(0);
    EXPECT_EQ(start.getQualifierCount(), 0U);
    EXPECT_EQ(start.getParameter(0).getQualifierCount(), 0U);
}

TEST_F(ClassTest, WithoutClassOriginNoElementHasOne) {
    const CIMClass leaf = repository.getClass(home, "Leaf", false, true, false);
    EXPECT_EQ(propertiesOf(leaf)[0], "Id  propagated");
    EXPECT_EQ(methodsOf(leaf)[0], "Start  propagated");
}

TEST_F(ClassTest, APropertyListNarrowsThePropertiesAndNothingElse) {
    Pegasus::Array<CIMName> names;
    names.append(CIMName("extra"));
    names.append(CIMName("NoSuch"));
    const CIMClass leaf =
        repository.getClass(home, "Leaf", false, true, true, CIMPropertyList(names));
    EXPECT_EQ(propertiesOf(leaf), (Strings{"Extra Middle propagated"}));
    EXPECT_EQ(leaf.getMethodCount(), 2U);
    const CIMPropertyList none{Pegasus::Array<CIMName>()};
    EXPECT_EQ(repository.getClass(home, "Leaf", false, true, true, none).getPropertyCount(), 0U);
}

TEST_F(ClassTest, ChangingWhatWasHandedOutChangesNothingInside) {
    CIMClass mine = classNamed("Base");
    mine.getProperty(1).setValue(Pegasus::CIMValue(Pegasus::Uint16(99)));
    mine.removeProperty(0);
    EXPECT_EQ(classNamed("Base").getPropertyCount(), 3U);
    EXPECT_EQ(text(propertyOf(classNamed("Base"), "Speed").getValue().toString()), "5");
}

TEST_F(ClassTest, TheSameClassMayBeDeclaredAgain) {
    load(classes);
    EXPECT_EQ(repository.subClassNames(home, CIMName(), true).size(), 3U);
}

TEST_F(ClassTest, UnknownNamesHaveTheStatusOfTheirOperation) {
    EXPECT_EQ(statusOf([&] { repository.getClass("root/none", "Base"); }),
              (Status{3, "root/none"}));
    EXPECT_EQ(statusOf([&] { repository.getClass(home, "NoSuch"); }), (Status{6, "NoSuch"}));
    EXPECT_EQ(statusOf([&] { repository.hasClass("root/none", "Base"); }),
              (Status{3, "root/none"}));
    EXPECT_EQ(statusOf([&] { repository.subClassNames(home, "NoSuch", true); }),
              (Status{5, "NoSuch"}));
    EXPECT_EQ(statusOf([&] { repository.superClassNames(home, "NoSuch"); }), (Status{5, "NoSuch"}));
    EXPECT_EQ(statusOf([&] { repository.subClassNames("root/none", CIMName(), true); }),
              (Status{3, "root/none"}));
}

TEST_F(ClassTest, SubclassesComeInTheOrderOfDeclaration) {
    load("class Second : Base {}; class Root {}; class UnderSecond : Second {};"
         "class UnderMiddle : Middle {};");
    EXPECT_EQ(texts(repository.subClassNames(home, "base", false)), (Strings{"Middle", "Second"}));
    EXPECT_EQ(texts(repository.subClassNames(home, "Base", true)),
              (Strings{"Middle", "Leaf", "Second", "UnderSecond", "UnderMiddle"}));
    EXPECT_EQ(texts(repository.subClassNames(home, CIMName(), false)), (Strings{"Base", "Root"}));
    EXPECT_EQ(repository.subClassNames(home, CIMName(), true).size(), 7U);
}

TEST_F(ClassTest, SuperclassesComeNearestFirst) {
    EXPECT_EQ(texts(repository.superClassNames(home, "leaf")), (Strings{"Middle", "Base"}));
    EXPECT_EQ(texts(repository.superClassNames(home, "Base")), Strings{});
}

} // namespace
} // namespace embedded::repository
