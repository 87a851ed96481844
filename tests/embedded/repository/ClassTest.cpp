// What a resolved class shows, and what the flags of GetClass leave of it.
#include "Fixture.h"

#include <Pegasus/Common/Array.h>

namespace embedded::repository {

using namespace Pegasus;

namespace {

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
    return membersOf(
        cimClass.getPropertyCount(), [&](Uint32 i) { return cimClass.getProperty(i); });
}

std::vector<std::string> methodsOf(const CIMConstClass& cimClass) {
    return membersOf(
        cimClass.getMethodCount(), [&](Uint32 i) { return cimClass.getMethod(i); });
}

CIMConstProperty propertyOf(const CIMConstClass& cimClass, const char* name) {
    return cimClass.getProperty(cimClass.findProperty(CIMName(name)));
}

using Strings = std::vector<std::string>;

class ClassTest : public RepositoryTest {
  protected:
    ClassTest() { load(classes); }
};

TEST_F(ClassTest, PropertiesThatAreOnlyInheritedComeFirstThenThoseDeclaredInTheirOrder) {
    EXPECT_EQ(propertiesOf(classNamed("Middle")),
              (Strings{"Id Base propagated", "Codes Base propagated", "Extra Middle own",
                       "SPEED Base own"}));
    EXPECT_EQ(propertiesOf(classNamed("Leaf")),
              (Strings{"Id Base propagated", "Codes Base propagated", "Extra Middle propagated",
                       "SPEED Base propagated", "Last Leaf own"}));
}

TEST_F(ClassTest, AnOverridingPropertyIsTheClassesOwnButOriginatesWhereItFirstStood) {
    EXPECT_EQ(propertiesOf(classNamed("Middle")).back(), "SPEED Base own");
    EXPECT_EQ(text(propertyOf(classNamed("Leaf"), "Speed").getValue().toString()), "7");
}

TEST_F(ClassTest, AnOverridingPropertyWithoutADefaultHasNone) {
    load("class A : Base { uint16 Speed; };");
    const CIMValue value = propertyOf(classNamed("A"), "Speed").getValue();
    EXPECT_TRUE(value.isNull());
    EXPECT_EQ(value.getType(), CIMTYPE_UINT16);
}

TEST_F(ClassTest, MethodsComeInTheOrderOfProperties) {
    EXPECT_EQ(methodsOf(classNamed("Middle")), (Strings{"Stop Base propagated", "Start Base own"}));
    const CIMClass leaf = classNamed("Leaf");
    EXPECT_EQ(methodsOf(leaf), (Strings{"Stop Base propagated", "Start Base propagated"}));
    EXPECT_EQ(leaf.getMethod(1).getParameterCount(), 2U);
}

TEST_F(ClassTest, ClassQualifiersFlowDownUnlessTheyAreRestricted) {
    EXPECT_EQ(qualifierTexts(classNamed("Base")),
              (Strings{"Abstract=TRUE own", "Description=base own", "Version=1.0 own"}));
    EXPECT_EQ(qualifierTexts(classNamed("Middle")), (Strings{"Description=base propagated"}));
    EXPECT_EQ(qualifierTexts(classNamed("Leaf")), (Strings{"Description=leaf own"}));
    EXPECT_FALSE(classNamed("Middle").isAbstract());
}

TEST_F(ClassTest, QualifiersHandedDownStandBeforeTheClassesOwnTheLastFirst) {
    load(R"(
[Description("up"), Version("1"), ClassOnly, DisplayName("u")] class Up {};
[Version("2"), Abstract] class Down : Up {};
[Abstract, Description("bottom")] class Bottom : Down {};
class Below : Down {};
)");
    EXPECT_EQ(qualifierTexts(classNamed("Down")),
              (Strings{"DisplayName=u propagated", "ClassOnly=TRUE propagated",
                       "Description=up propagated", "Version=2 own", "Abstract=TRUE own"}));
    EXPECT_EQ(qualifierTexts(classNamed("Bottom")),
              (Strings{"ClassOnly=TRUE propagated", "DisplayName=u propagated", "Abstract=TRUE own",
                       "Description=bottom own"}));
    EXPECT_EQ(qualifierTexts(classNamed("Below")),
              (Strings{"Description=up propagated", "ClassOnly=TRUE propagated",
                       "DisplayName=u propagated"}));
}

TEST_F(ClassTest, AnInheritedPropertyKeepsItsQualifiersAsTheyAreRestrictedOnesToo) {
    load("class A : Base {};");
    EXPECT_EQ(qualifierTexts(propertyOf(classNamed("A"), "Id")),
              (Strings{"Key=TRUE own", "Description=the key own"}));
    EXPECT_EQ(qualifierTexts(propertyOf(classNamed("A"), "Speed")),
              (Strings{"Description=speed own", "Override=NULL own"}));
    EXPECT_EQ(qualifierTexts(propertyOf(classNamed("Leaf"), "Speed")),
              (Strings{"Description=speed propagated", "Override=Speed own"}));
}

TEST_F(ClassTest, AnOverridingPropertyTakesRestrictedQualifiersBehindItsOwn) {
    load("class A : Base { [MaxLen(2), DisplayName(\"s\")] uint16 Speed; };");
    EXPECT_EQ(qualifierTexts(propertyOf(classNamed("A"), "Speed")),
              (Strings{"Description=speed propagated", "MaxLen=2 own", "DisplayName=s own",
                       "Override=NULL own"}));
    EXPECT_EQ(qualifierTexts(propertyOf(classNamed("Middle"), "Speed")),
              (Strings{"Description=speed propagated", "Override=Speed own"}));
}

TEST_F(ClassTest, AnInheritedMethodKeepsItsQualifiersAndThoseOfItsParameters) {
    load("class A : Base {};");
    const CIMConstClass a = classNamed("A");
    EXPECT_EQ(qualifierTexts(a.getMethod(0)), (Strings{"Description=starts own"}));
    EXPECT_EQ(qualifierTexts(a.getMethod(0).getParameter(0)), (Strings{"Required=TRUE own"}));
    EXPECT_EQ(qualifierTexts(CIMConstClass(classNamed("Leaf")).getMethod(1)),
              (Strings{"Description=starts propagated", "Override=Start own"}));
}

TEST_F(ClassTest, AnOverridingMethodTakesNoRestrictedQualifiers) {
    load("class A : Middle { [MaxLen(2)] uint32 Start(); };");
    const CIMConstClass a = classNamed("A");
    EXPECT_EQ(qualifierTexts(a.getMethod(a.findMethod(CIMName("Start")))),
              (Strings{"Description=starts propagated", "MaxLen=2 own"}));
}

TEST_F(ClassTest, AQualifierIsSpeltAsWhereItIsUsed) {
    load("[DESCRIPTION(\"a\")] class A : Base { [description(\"mine\")] uint16 Speed; };"
         "class B : A {};");
    EXPECT_EQ(qualifierTexts(classNamed("A")), (Strings{"DESCRIPTION=a own"}));
    EXPECT_EQ(qualifierTexts(classNamed("B")), (Strings{"DESCRIPTION=a propagated"}));
    EXPECT_EQ(qualifierTexts(propertyOf(classNamed("A"), "Speed")),
              (Strings{"description=mine own", "Override=NULL own"}));
}

TEST_F(ClassTest, KeysFlowDown) {
    Array<CIMName> keys;
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
    EXPECT_TRUE(key.getFlavor().hasFlavor(CIMFlavor::TOSUBCLASS));
    EXPECT_TRUE(key.getFlavor().hasFlavor(CIMFlavor::DISABLEOVERRIDE));
    EXPECT_FALSE(key.getFlavor().hasFlavor(CIMFlavor::ENABLEOVERRIDE));
}

TEST_F(ClassTest, FlavorsAtTheQualifierChangeThoseOfItsDeclaration) {
    load("[Description(\"here only\") : Restricted] class A {}; class B : A {};");
    EXPECT_EQ(qualifierTexts(classNamed("A")).size(), 1U);
    EXPECT_EQ(qualifierTexts(classNamed("B")).size(), 0U);
}

TEST_F(ClassTest, NamesAreFoundInAnyCaseAndShownAsDeclared) {
    EXPECT_EQ(text(classNamed("mIDDLE").getClassName()), "Middle");
    EXPECT_EQ(text(classNamed("Middle").getSuperClassName()), "Base");
}

TEST_F(ClassTest, LocalOnlyLeavesOutWhatIsPropagated) {
    const CIMConstClass middle = repository.view().getClass(home, "Middle", true);
    EXPECT_EQ(propertiesOf(middle), (Strings{"Extra Middle own", "SPEED Base own"}));
    EXPECT_EQ(methodsOf(middle), (Strings{"Start Base own"}));
    EXPECT_EQ(qualifierTexts(middle), Strings{});
    EXPECT_EQ(qualifierTexts(propertyOf(middle, "Speed")), (Strings{"Override=Speed own"}));
    EXPECT_EQ(qualifierTexts(middle.getMethod(0)), (Strings{"Override=Start own"}));
}

TEST_F(ClassTest, LocalOnlyShowsTheClassesOwnQualifiersAndThoseThatNothingMarks) {
    load("[Version(\"2\"), DisplayName(\"a\")] class A : Base { [MaxLen(2)] uint16 Speed; };"
         "class B : A {};");
    const CIMClass a = repository.view().getClass(home, "A", true);
    EXPECT_EQ(qualifierTexts(a), (Strings{"Version=2 own", "DisplayName=a own"}));
    EXPECT_EQ(qualifierTexts(propertyOf(a, "Speed")),
              (Strings{"MaxLen=2 own", "Override=NULL own"}))
        << "OpenPegasus does not mark restricted ones either";
    const CIMClass b = repository.view().getClass(home, "B", true);
    EXPECT_EQ(qualifierTexts(b), Strings{});
    EXPECT_EQ(propertiesOf(b), Strings{});
    EXPECT_EQ(methodsOf(b), Strings{});
}

TEST_F(ClassTest, WithoutQualifiersNoElementHasAny) {
    const CIMClass base = repository.view().getClass(home, "Base", false, false);
    EXPECT_EQ(base.getQualifierCount(), 0U);
    EXPECT_EQ(propertyOf(base, "Id").getQualifierCount(), 0U);
    const CIMConstMethod start = CIMConstClass(base).getMethod(0);
    EXPECT_EQ(start.getQualifierCount(), 0U);
    EXPECT_EQ(start.getParameter(0).getQualifierCount(), 0U);
}

TEST_F(ClassTest, WithoutClassOriginNoElementHasOne) {
    const CIMClass leaf = repository.view().getClass(home, "Leaf", false, true, false);
    EXPECT_EQ(propertiesOf(leaf)[0], "Id  propagated");
    EXPECT_EQ(methodsOf(leaf)[0], "Stop  propagated");
}

TEST_F(ClassTest, APropertyListNarrowsThePropertiesAndNothingElse) {
    Array<CIMName> names;
    names.append(CIMName("extra"));
    names.append(CIMName("NoSuch"));
    const CIMClass leaf =
        repository.view().getClass(home, "Leaf", false, true, true, CIMPropertyList(names));
    EXPECT_EQ(propertiesOf(leaf), (Strings{"Extra Middle propagated"}));
    EXPECT_EQ(leaf.getMethodCount(), 2U);
    const CIMPropertyList none{Array<CIMName>()};
    EXPECT_EQ(repository.view().getClass(home, "Leaf", false, true, true, none).getPropertyCount(),
              0U);
}

TEST_F(ClassTest, ChangingWhatWasHandedOutChangesNothingInside) {
    CIMClass mine = classNamed("Base");
    mine.getProperty(1).setValue(CIMValue(Uint16(99)));
    mine.removeProperty(0);
    EXPECT_EQ(classNamed("Base").getPropertyCount(), 3U);
    EXPECT_EQ(text(propertyOf(classNamed("Base"), "Speed").getValue().toString()), "5");
}

TEST_F(ClassTest, TheSameClassMayBeDeclaredAgain) {
    load(classes);
    EXPECT_EQ(repository.view().subClassNames(home, CIMName(), true).size(), 3U);
}

TEST_F(ClassTest, UnknownNamesHaveTheStatusOfTheirOperation) {
    EXPECT_EQ(statusOf([&] { repository.view().getClass("root/none", "Base"); }),
              (Status{3, "root/none"}));
    EXPECT_EQ(statusOf([&] { repository.view().getClass(home, "NoSuch"); }), (Status{6, "NoSuch"}));
    EXPECT_EQ(statusOf([&] { repository.view().hasClass("root/none", "Base"); }),
              (Status{3, "root/none"}));
    EXPECT_EQ(statusOf([&] { repository.view().subClassNames(home, "NoSuch", true); }),
              (Status{5, "NoSuch"}));
    EXPECT_EQ(statusOf([&] { repository.view().superClassNames(home, "NoSuch"); }),
              (Status{5, "NoSuch"}));
    EXPECT_EQ(statusOf([&] { repository.view().subClassNames("root/none", CIMName(), true); }),
              (Status{3, "root/none"}));
}

TEST_F(ClassTest, SubclassesComeInTheOrderOfDeclaration) {
    load("class Second : Base {}; class Root {}; class UnderSecond : Second {};"
         "class UnderMiddle : Middle {};");
    EXPECT_EQ(texts(repository.view().subClassNames(home, "base", false)),
              (Strings{"Middle", "Second"}));
    EXPECT_EQ(texts(repository.view().subClassNames(home, "Base", true)),
              (Strings{"Middle", "Leaf", "Second", "UnderSecond", "UnderMiddle"}));
    EXPECT_EQ(texts(repository.view().subClassNames(home, CIMName(), false)),
              (Strings{"Base", "Root"}));
    EXPECT_EQ(repository.view().subClassNames(home, CIMName(), true).size(), 7U);
}

TEST_F(ClassTest, SuperclassesComeNearestFirst) {
    EXPECT_EQ(texts(repository.view().superClassNames(home, "leaf")), (Strings{"Middle", "Base"}));
    EXPECT_EQ(texts(repository.view().superClassNames(home, "Base")), Strings{});
}

TEST_F(ClassTest, ADeepChainHandsDownEverythingInItsOrder) {
    const int depth = 300;
    std::string mof = "class C_0 { [Key] string Id; string P0; uint32 M0(); };";
    for (int i = 1; i < depth; ++i) {
        const std::string n = std::to_string(i);
        mof += "class C_" + n + " : C_" + std::to_string(i - 1) + " { string P" + n +
               (i == depth / 2 ? "; [Description(\"new\")] string P0; uint32 M" : "; uint32 M") +
               n + "(); };";
    }
    load(mof);
    const CIMClass last = classNamed("C_299");
    Strings expected{"Id C_0 propagated"};
    for (int i = 1; i < depth; ++i) {
        const std::string n = std::to_string(i);
        expected.push_back("P" + n + " C_" + n + (i == depth - 1 ? " own" : " propagated"));
        if (i == depth / 2)
            expected.emplace_back("P0 C_0 propagated");
    }
    EXPECT_EQ(propertiesOf(last), expected);
    EXPECT_EQ(last.getMethodCount(), 300U);
    EXPECT_EQ(qualifierTexts(propertyOf(last, "P0")), (Strings{"Description=new own"}));
    EXPECT_EQ(qualifierTexts(propertyOf(classNamed("C_149"), "P0")), Strings{});
    EXPECT_EQ(repository.view().superClassNames(home, "C_299").size(), 299U);
    EXPECT_EQ(repository.view().subClassNames(home, "C_0", true).size(), 299U);
    EXPECT_EQ(texts(repository.view().subClassNames(home, "C_0", false)), (Strings{"C_1"}));
    load(mof);
    EXPECT_EQ(propertiesOf(classNamed("C_299")), expected);
}

TEST_F(ClassTest, ASubclassDoesNotChangeWhatItsSiblingsAndItsSuperclassHave) {
    load("class A : Base { string Extra; uint16 Speed; }; class B : Base { uint8 Codes[]; };"
         "class C : Base {};");
    EXPECT_EQ(propertiesOf(classNamed("Base")),
              (Strings{"Id Base own", "Speed Base own", "Codes Base own"}));
    EXPECT_EQ(propertiesOf(classNamed("A")), (Strings{"Id Base propagated", "Codes Base propagated",
                                                      "Extra A own", "Speed Base own"}));
    EXPECT_EQ(propertiesOf(classNamed("B")),
              (Strings{"Id Base propagated", "Speed Base propagated", "Codes Base own"}));
    EXPECT_EQ(propertiesOf(classNamed("C")),
              (Strings{"Id Base propagated", "Speed Base propagated", "Codes Base propagated"}));
}

} // namespace
} // namespace embedded::repository
