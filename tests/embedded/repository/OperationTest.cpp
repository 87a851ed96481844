// Instances that clients create, modify and delete.
#include "Fixture.h"

#include <Pegasus/Common/Array.h>

namespace embedded::repository {

using namespace Pegasus;

namespace {

using Strings = std::vector<std::string>;

class OperationTest : public RepositoryTest {
  protected:
    OperationTest() {
        load(R"(
class Thing { [Key] string Id; uint16 Speed = 5; string Text; uint8 Four[4]; };
[Abstract] class Idea { [Key] string Id; };
[Association] class Link { [Key] Thing REF From; [Key] Thing REF To; };
instance of Thing { Id = "a"; Speed = 1; Text = "first"; };
)");
    }

    CIMInstance thing(const char* id) const {
        CIMInstance instance("thing");
        instance.addProperty(CIMProperty("id", CIMValue(String(id))));
        return instance;
    }
    /// Thing "a" with another Speed and Text.
    CIMInstance changed() const {
        CIMInstance instance = thing("a");
        instance.addProperty(CIMProperty("Speed", CIMValue(Uint16(9))));
        instance.addProperty(CIMProperty("Text", CIMValue(String("changed"))));
        instance.setPath(CIMObjectPath("Thing.Id=\"a\""));
        return instance;
    }
    CIMPropertyList list(std::initializer_list<const char*> names) const {
        Array<CIMName> array;
        for (const char* name : names)
            array.append(CIMName(name));
        return CIMPropertyList(array);
    }
    Status create(const CIMInstance& instance) {
        return statusOf([&] { repository.createInstance(home, instance); });
    }
    Status modify(const CIMInstance& instance, const CIMPropertyList& properties = {}) {
        return statusOf([&] { repository.modifyInstance(home, instance, properties); });
    }
    std::string valueOfA(const char* property) const { return valueOf("Thing.Id=\"a\"", property); }
};

const Status success{};

TEST_F(OperationTest, CreateFillsInTheDefaultsAndThePath) {
    const CIMObjectPath path = repository.createInstance(home, thing("b"));
    EXPECT_EQ(text(path.toString()), "Thing.Id=\"b\"");
    EXPECT_EQ(valueOf("Thing.Id=\"b\"", "Speed"), "5");
    EXPECT_EQ(instanceAt("Thing.Id=\"b\"").getPropertyCount(), 4U);
}

TEST_F(OperationTest, CreatePutsWhatIsGivenBehindTheDefaultsAndMarksTheClassesQualifiers) {
    load("[Description(\"d\"), Version(\"1\")] class Tagged : Thing {};");
    CIMInstance instance("Tagged");
    instance.addProperty(CIMProperty("text", CIMValue(String("t"))));
    instance.addProperty(CIMProperty("Id", CIMValue(String("b"))));
    EXPECT_EQ(create(instance), success);
    const CIMInstance created = instanceAt("Tagged.Id=\"b\"");
    EXPECT_EQ(propertyTexts(created), (Strings{"Speed Thing default 5", "Four Thing default NULL",
                                               "Text Thing given t", "Id Thing given b"}));
    EXPECT_EQ(qualifierTexts(created), (Strings{"Description=d propagated"}));
}

TEST_F(OperationTest, CreateKeepsACopy) {
    CIMInstance mine = thing("b");
    mine.addProperty(CIMProperty("Text", CIMValue(String("before"))));
    EXPECT_EQ(create(mine), success);
    mine.getProperty(1).setValue(CIMValue(String("after")));
    EXPECT_EQ(valueOf("Thing.Id=\"b\"", "Text"), "before");
}

TEST_F(OperationTest, CreateRefusesKeysThatAreTaken) {
    EXPECT_EQ(create(thing("a")), (Status{11, "Thing.Id=\"a\""}));
}

TEST_F(OperationTest, CreateRefusesAMissingOrNullKey) {
    const Status missing{4, "key property Id has no value"};
    EXPECT_EQ(create(CIMInstance("Thing")), missing);
    CIMInstance null("Thing");
    null.addProperty(CIMProperty("Id", CIMValue(CIMTYPE_STRING, false)));
    EXPECT_EQ(create(null), missing);
}

TEST_F(OperationTest, CreateRefusesAnEmptyReferenceKey) {
    CIMInstance link("Link");
    link.addProperty(CIMProperty("From", CIMValue(CIMObjectPath())));
    EXPECT_EQ(create(link), (Status{4, "key property From has no value"}));
}

TEST_F(OperationTest, CreateRefusesAPropertyOfAnotherType) {
    CIMInstance instance = thing("b");
    instance.addProperty(CIMProperty("Speed", CIMValue(String("fast"))));
    EXPECT_EQ(create(instance), (Status{4, "property Speed takes a uint16"}));
    instance.removeProperty(1);
    instance.addProperty(CIMProperty("Four", CIMValue(Array<Uint8>(3))));
    EXPECT_EQ(create(instance), (Status{4, "property Four takes a uint8 array of 4"}));
}

TEST_F(OperationTest, CreateRefusesAPropertyThatTheClassDoesNotHave) {
    CIMInstance instance = thing("b");
    instance.addProperty(CIMProperty("Weight", CIMValue(Uint16(1))));
    EXPECT_EQ(create(instance), (Status{4, "class Thing has no property Weight"}));
}

TEST_F(OperationTest, CreateRefusesClassesWithoutInstances) {
    EXPECT_EQ(create(CIMInstance("NoSuch")), (Status{5, "NoSuch"}));
    EXPECT_EQ(create(CIMInstance("Idea")),
              (Status{1, "class Idea is abstract and has no instances"}));
    EXPECT_EQ(statusOf([&] { repository.createInstance("root/none", thing("b")); }),
              (Status{3, "root/none"}));
}

TEST_F(OperationTest, ModifyWithoutAListTakesWhatIsGiven) {
    CIMInstance instance = changed();
    instance.removeProperty(instance.findProperty("Text"));
    EXPECT_EQ(modify(instance), success);
    EXPECT_EQ(valueOfA("Speed"), "9");
    EXPECT_EQ(valueOfA("Text"), "first");
}

TEST_F(OperationTest, ModifyKeepsTheOrderOfThePropertiesAndTakesEachFromItsOwn) {
    EXPECT_EQ(modify(changed()), success);
    EXPECT_EQ(propertyTexts(instanceAt("Thing.Id=\"a\"")),
              (Strings{"Four Thing default NULL", "Id Thing given a", "Speed Thing given 9",
                       "Text Thing given changed"}));
}

TEST_F(OperationTest, ModifyTakesTheListedPropertiesOnly) {
    EXPECT_EQ(modify(changed(), list({"text"})), success);
    EXPECT_EQ(valueOfA("Speed"), "1");
    EXPECT_EQ(valueOfA("Text"), "changed");
    EXPECT_EQ(modify(changed(), list({})), success);
    EXPECT_EQ(valueOfA("Speed"), "1");
}

TEST_F(OperationTest, ModifySetsAListedPropertyThatIsNotGivenToItsDefault) {
    CIMInstance instance("Thing");
    instance.setPath(CIMObjectPath("Thing.Id=\"a\""));
    EXPECT_EQ(modify(instance, list({"Speed", "Text"})), success);
    EXPECT_EQ(valueOfA("Speed"), "5");
    EXPECT_EQ(valueOfA("Text"), "");
}

TEST_F(OperationTest, ModifyRefusesWhatTheClassDoesNotHave) {
    EXPECT_EQ(modify(changed(), list({"Weight"})), (Status{12, "Weight"}));
    CIMInstance instance = changed();
    instance.addProperty(CIMProperty("Weight", CIMValue(Uint16(1))));
    EXPECT_EQ(modify(instance), (Status{12, "Weight"}));
}

TEST_F(OperationTest, ModifyRefusesAnotherKey) {
    CIMInstance instance = thing("b");
    instance.setPath(CIMObjectPath("Thing.Id=\"a\""));
    EXPECT_EQ(modify(instance), (Status{4, "key property Id cannot be modified"}));
    EXPECT_EQ(valueOfA("Id"), "a");
}

TEST_F(OperationTest, ModifyThatFailsChangesNothing) {
    CIMInstance instance = changed();
    instance.addProperty(CIMProperty("Four", CIMValue(Uint16(4))));
    EXPECT_EQ(modify(instance).code, 4);
    EXPECT_EQ(valueOfA("Speed"), "1");
}

TEST_F(OperationTest, ModifyAndDeleteNameWhatIsMissing) {
    CIMInstance instance = thing("zz");
    instance.setPath(CIMObjectPath("//host/root/test:Thing.Id=\"zz\""));
    EXPECT_EQ(modify(instance), (Status{6, "Thing.Id=\"zz\""}));
    EXPECT_EQ(statusOf([&] { repository.deleteInstance(home, instance.getPath()); }),
              (Status{6, "Thing.Id=\"zz\""}));
    EXPECT_EQ(statusOf([&] { repository.deleteInstance(home, CIMObjectPath("NoSuch.Id=1")); }),
              (Status{5, "NoSuch"}));
    EXPECT_EQ(statusOf([&] { repository.deleteInstance("root/none", instance.getPath()); }),
              (Status{3, "root/none"}));
}

TEST_F(OperationTest, WhatIsDeletedIsGoneAndMayComeBack) {
    repository.deleteInstance(home, CIMObjectPath("//h/root/test:thing.ID=\"a\""));
    EXPECT_EQ(repository.view().instances(home, "Thing").size(), 0U);
    EXPECT_EQ(create(thing("a")), success);
    EXPECT_EQ(valueOfA("Speed"), "5");
}

TEST_F(OperationTest, ManyInstancesAreToldApart) {
    for (int i = 0; i < 500; ++i)
        ASSERT_EQ(create(thing(std::to_string(i).c_str())), success);
    for (int i = 0; i < 500; i += 2) {
        const std::string path = "Thing.Id=\"" + std::to_string(i) + "\"";
        repository.deleteInstance(home, CIMObjectPath(String(path.c_str())));
    }
    EXPECT_EQ(repository.view().instances(home, "Thing").size(), 251U);
    EXPECT_EQ(valueOf("Thing.Id=\"333\"", "Id"), "333");
}

} // namespace
} // namespace embedded::repository
