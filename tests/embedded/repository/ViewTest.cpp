// What a view shows, and that it stays as it was whatever becomes of the repository.
#include "Fixture.h"

#include <Pegasus/Common/Array.h>

namespace embedded::repository {

namespace {

using Pegasus::CIMInstance;
using Pegasus::CIMName;
using Pegasus::CIMObjectPath;
using Pegasus::CIMProperty;
using Pegasus::CIMValue;
using Pegasus::String;
using Strings = std::vector<std::string>;

class ViewTest : public RepositoryTest {
  protected:
    ViewTest() {
        load(R"(
[Description("d")] class Thing { [Key] string Id; uint16 Speed = 5; string Text; };
class Gadget : Thing { [Key] uint32 Number; };
[Association] class Link { [Key] Thing REF From; [Key] Thing REF To; Thing REF Via; };
instance of Thing { Id = "a"; Text = "first"; };
instance of Thing { Id = "b"; };
)");
    }

    static CIMObjectPath path(const std::string& text) {
        return CIMObjectPath(String(text.c_str()));
    }
    Strings pathsOf(const View& view, const char* className = "Thing") const {
        Strings paths;
        const InstanceList list = view.instances(home, className);
        for (std::size_t i = 0; i < list.size(); ++i) {
            paths.push_back(text(list[i].path().toString()));
        }
        return paths;
    }
    void create(const char* id) {
        CIMInstance instance("Thing");
        instance.addProperty(CIMProperty("Id", CIMValue(String(id))));
        repository.createInstance(home, instance);
    }
    void remove(const char* instanceName) { repository.deleteInstance(home, path(instanceName)); }
    void changeText(const char* id, const char* now) {
        CIMInstance instance("Thing");
        instance.addProperty(CIMProperty("Text", CIMValue(String(now))));
        instance.setPath(path("Thing.Id=\"" + std::string(id) + "\""));
        repository.modifyInstance(home, instance, Pegasus::CIMPropertyList());
    }
    std::string textOfA(const View& view) const {
        const CIMInstance a = view.getInstance(home, path("Thing.Id=\"a\"")).instance();
        return text(a.getProperty(a.findProperty("Text")).getValue());
    }
};

TEST_F(ViewTest, StaysAsItWasWhenInstancesAreCreatedChangedAndDeleted) {
    const View before = repository.view();
    create("c");
    changeText("a", "second");
    remove("Thing.Id=\"b\"");
    EXPECT_EQ(pathsOf(before), (Strings{"Thing.Id=\"a\"", "Thing.Id=\"b\""}));
    EXPECT_EQ(textOfA(before), "first");
    EXPECT_EQ(pathsOf(repository.view()), (Strings{"Thing.Id=\"a\"", "Thing.Id=\"c\""}));
    EXPECT_EQ(textOfA(repository.view()), "second");
}

TEST_F(ViewTest, StaysAsItWasWhenMofIsLoaded) {
    const View before = repository.view();
    load("Qualifier New : boolean = false, Scope(any);"
         "class Below : Thing {}; [Association] class Other { [Key] Thing REF Of; };"
         "instance of Thing { Id = \"c\"; }; instance of Below { Id = \"d\"; };");
    repository.createNameSpace("root/new");
    EXPECT_FALSE(before.hasClass(home, "Below"));
    EXPECT_FALSE(before.hasNameSpace("root/new"));
    EXPECT_EQ(before.nameSpaces().size(), 1U);
    EXPECT_EQ(texts(before.subClassNames(home, "Thing", true)), (Strings{"Gadget"}));
    EXPECT_EQ(texts(before.associationClassNames(home, "Thing", CIMName())), (Strings{"Link"}));
    EXPECT_EQ(pathsOf(before).size(), 2U);
    EXPECT_EQ(statusOf([&] { before.getQualifier(home, "New"); }), (Status{6, "New"}));
    const View after = repository.view();
    EXPECT_EQ(texts(after.subClassNames(home, "Thing", true)), (Strings{"Gadget", "Below"}));
    EXPECT_EQ(texts(after.associationClassNames(home, "Below", CIMName())),
              (Strings{"Link", "Other"}));
    EXPECT_EQ(pathsOf(after).size(), 3U);
    EXPECT_EQ(pathsOf(after, "Below").size(), 1U);
}

TEST_F(ViewTest, ALoadThatFailsChangesNoView) {
    const View before = repository.view();
    EXPECT_NE(errorOf("instance of Thing { Id = \"c\"; }; instance of Thing { Id = \"a\"; };"), "");
    EXPECT_EQ(pathsOf(before).size(), 2U);
    EXPECT_EQ(pathsOf(repository.view()).size(), 2U);
}

TEST_F(ViewTest, ListsAndInstancesOutliveTheirViewAndTheRepository) {
    auto other = std::make_unique<Repository>();
    other->load(mof::readText("Qualifier Key : boolean = false, Scope(property);"
                              "class Lone { [Key] string Id; string Text; };"
                              "instance of Lone { Id = \"x\"; Text = \"kept\"; };",
                              "test.mof"),
                home);
    const InstanceList list = other->view().instances(home, "Lone");
    other.reset();
    const CIMInstance lone = list[0].instance();
    EXPECT_EQ(text(lone.getPath().toString()), "Lone.Id=\"x\"");
    EXPECT_EQ(text(lone.getProperty(lone.findProperty("Text")).getValue()), "kept");
}

TEST_F(ViewTest, InstancesKeepTheirOrderWhenOthersGo) {
    Strings expected;
    for (int i = 0; i < 300; ++i) {
        create(std::to_string(i).c_str());
    }
    remove("Thing.Id=\"a\"");
    remove("Thing.Id=\"b\"");
    for (int i = 0; i < 300; ++i) {
        const std::string name = "Thing.Id=\"" + std::to_string(i) + "\"";
        if (i % 3 == 0) {
            expected.push_back(name);
        } else {
            remove(name.c_str());
        }
    }
    create("a");
    expected.emplace_back("Thing.Id=\"a\"");
    EXPECT_EQ(pathsOf(repository.view()), expected);
}

TEST_F(ViewTest, AnInstanceIsShownWithItsQualifiersOrWithout) {
    load("[DisplayName(\"me\")] instance of Thing { [Description(\"x\")] Id = \"q\"; };");
    const StoredInstance stored =
        repository.view().getInstance(home, path("//h/root/other:thing.ID=\"q\""));
    EXPECT_EQ(text(stored.className()), "Thing");
    EXPECT_EQ(qualifierTexts(stored.instance()),
              (Strings{"Description=d propagated", "DisplayName=me own"}));
    EXPECT_EQ(propertyTexts(stored.instance()), propertyTexts(stored.instance(false)));
    const CIMInstance bare = stored.instance(false);
    EXPECT_EQ(qualifierTexts(bare), Strings{});
    EXPECT_EQ(qualifierTexts(bare.getProperty(bare.findProperty("Id"))), Strings{});
}

TEST_F(ViewTest, InstancesWithDifferentQualifiersKeepTheirOwn) {
    for (int i = 0; i < 200; ++i) {
        const std::string n = std::to_string(i);
        load("[DisplayName(\"" + n + "\")] instance of Thing { Id = \"q" + n + "\"; };");
    }
    for (const int i : {0, 1, 63, 64, 65, 199}) {
        const std::string n = std::to_string(i);
        EXPECT_EQ(qualifierTexts(instanceAt(("Thing.Id=\"q" + n + "\"").c_str())),
                  (Strings{"Description=d propagated", "DisplayName=" + n + " own"}));
    }
}

TEST_F(ViewTest, ValuesThatAreEqualButWrittenDifferentlyStayAsTheyAreWritten) {
    load("class Odd { [Key] string Id; real64 R; datetime T; };"
         "instance of Odd { Id = \"1\"; R = 0.0; T = \"20200101120000.000000+000\"; };"
         "instance of Odd { Id = \"2\"; R = -0.0; T = \"20200101130000.000000+060\"; };");
    EXPECT_EQ(valueOf("Odd.Id=\"1\"", "R").front(), '0');
    EXPECT_EQ(valueOf("Odd.Id=\"2\"", "R").front(), '-');
    EXPECT_EQ(valueOf("Odd.Id=\"2\"", "T"), "20200101130000.000000+060");
}

TEST_F(ViewTest, ReferencesAreThoseWithAValueByTheirRoles) {
    load(R"(instance of Link { To = "Thing.Id=\"b\""; From = "Thing.Id=\"a\""; };)");
    const InstanceList links = repository.view().instances(home, "Link");
    Strings ends;
    for (const auto& [role, target] : links[0].references()) {
        ends.push_back(text(role) + " " + text(target.toString()));
    }
    EXPECT_EQ(ends, (Strings{"To Thing.Id=\"b\"", "From Thing.Id=\"a\""}));
}

TEST_F(ViewTest, NamesOfMembersComeInTheOrderOfTheClassesProperties) {
    load("class Under : Gadget { [Key] string Own; [Key, Override(\"Id\")] string Id; };"
         "[Association] class Below : Link { [Override(\"From\")] Gadget REF From; };");
    const View view = repository.view();
    for (const char* name : {"Under", "Below", "gadget"}) {
        const Pegasus::CIMClass shown = view.getClass(home, name);
        Strings names, ends;
        for (Pegasus::Uint32 i = 0; i < shown.getPropertyCount(); ++i) {
            const Pegasus::CIMConstProperty property = shown.getProperty(i);
            names.push_back(text(property.getName()));
            if (property.getType() == Pegasus::CIMTYPE_REFERENCE) {
                ends.push_back(names.back() + " " + text(property.getReferenceClassName()));
            }
        }
        EXPECT_EQ(texts(view.propertyNames(home, name)), names);
        Strings references;
        for (const auto& [role, className] : view.references(home, name)) {
            references.push_back(text(role) + " " + text(className));
        }
        EXPECT_EQ(references, ends);
        EXPECT_EQ(references.empty(), name != std::string("Below"));
    }
    EXPECT_EQ(statusOf([&] { view.propertyNames(home, "NoSuch"); }), (Status{6, "NoSuch"}));
    EXPECT_EQ(statusOf([&] { view.references(home, "NoSuch"); }), (Status{6, "NoSuch"}));
    EXPECT_EQ(texts(view.keyNames(home, "gadget")), (Strings{"Id", "Number"}));
    EXPECT_EQ(texts(view.keyNames(home, "Under")), (Strings{"Number", "Own", "Id"}));
    EXPECT_EQ(statusOf([&] { view.keyNames(home, "NoSuch"); }), (Status{6, "NoSuch"}));
}

TEST_F(ViewTest, IsAHoldsForAClassAndThoseBelowAndForNoUnknownName) {
    const View view = repository.view();
    EXPECT_TRUE(view.isA(home, "gadget", "THING"));
    EXPECT_TRUE(view.isA(home, "Thing", "Thing"));
    EXPECT_FALSE(view.isA(home, "Thing", "Gadget"));
    EXPECT_FALSE(view.isA(home, "NoSuch", "Thing"));
    EXPECT_FALSE(view.isA(home, "Thing", "NoSuch"));
    EXPECT_FALSE(view.isA("root/none", "Thing", "Thing"));
}

/// The instances of Link that refer to an instance.
class ReferrerTest : public ViewTest {
  protected:
    ReferrerTest() {
        load(R"(
instance of Link { From = "Thing.Id=\"a\""; To = "Thing.Id=\"b\""; };
instance of Link { From = "Thing.Id=\"b\""; To = "Thing.Id=\"c\""; };
instance of Link { From = "root/test:Thing.Id=\"a\""; To = "Thing.Id=\"c\""; };
instance of Link { From = "root/far:Thing.Id=\"a\""; To = "Thing.Id=\"d\""; };
instance of Link { From = "Thing.Id=\"a\""; To = "Thing.Id=\"a\""; };
)");
    }

    /// The keys To of the referrers of `source`.
    Strings referrers(const View& view, const char* source) const {
        Strings found;
        for (const StoredInstance& each : view.referrers(home, "Link", path(source))) {
            found.push_back(text(each.path().getKeyBindings()[1].getValue()));
        }
        return found;
    }
    Strings referrers(const char* source) const { return referrers(repository.view(), source); }

    CIMInstance link(const char* from, const char* to) const {
        CIMInstance instance("Link");
        instance.addProperty(CIMProperty("From", CIMValue(path(from)), 0, "Thing"));
        instance.addProperty(CIMProperty("To", CIMValue(path(to)), 0, "Thing"));
        return instance;
    }
};

TEST_F(ReferrerTest, AreThoseThatNameTheSourceInThisNamespaceEachOnceInTheirOrder) {
    EXPECT_EQ(referrers("Thing.Id=\"a\""),
              (Strings{"Thing.Id=\"b\"", "Thing.Id=\"c\"", "Thing.Id=\"a\""}));
    EXPECT_EQ(referrers("Thing.Id=\"c\""), (Strings{"Thing.Id=\"c\"", "Thing.Id=\"c\""}));
    EXPECT_EQ(referrers("Thing.Id=\"zz\""), Strings{});
}

TEST_F(ReferrerTest, DoNotDependOnTheHostNamespaceAndCaseOfTheSource) {
    EXPECT_EQ(referrers("//h/root/other:thing.ID=\"a\""), referrers("Thing.Id=\"a\""));
    EXPECT_EQ(referrers("Thing.Id=\"A\""), Strings{});
}

TEST_F(ReferrerTest, FollowWhatIsCreatedModifiedAndDeleted) {
    const View before = repository.view();
    CIMObjectPath name =
        repository.createInstance(home, link("Thing.Id=\"new\"", "Thing.Id=\"x\""));
    EXPECT_EQ(referrers("Thing.Id=\"new\""), (Strings{"Thing.Id=\"x\""}));

    CIMInstance change("Link");
    change.addProperty(CIMProperty("Via", CIMValue(path("Thing.Id=\"via\"")), 0, "Thing"));
    change.setPath(name);
    repository.modifyInstance(home, change, Pegasus::CIMPropertyList());
    EXPECT_EQ(referrers("Thing.Id=\"via\""), (Strings{"Thing.Id=\"x\""}));
    change.getProperty(0).setValue(CIMValue(path("Thing.Id=\"other\"")));
    repository.modifyInstance(home, change, Pegasus::CIMPropertyList());
    EXPECT_EQ(referrers("Thing.Id=\"via\""), Strings{});
    EXPECT_EQ(referrers("Thing.Id=\"other\""), (Strings{"Thing.Id=\"x\""}));
    EXPECT_EQ(referrers("Thing.Id=\"new\""), (Strings{"Thing.Id=\"x\""}));

    repository.deleteInstance(home, name);
    EXPECT_EQ(referrers("Thing.Id=\"new\""), Strings{});
    EXPECT_EQ(referrers("Thing.Id=\"other\""), Strings{});
    EXPECT_EQ(referrers(before, "Thing.Id=\"new\""), Strings{});
    EXPECT_EQ(referrers(before, "Thing.Id=\"a\"").size(), 3U);
}

TEST_F(ReferrerTest, HaveTheStatusOfInstances) {
    const auto ask = [&](const char* nameSpace, const char* className) {
        return statusOf(
            [&] { repository.view().referrers(nameSpace, className, path("Thing.Id=\"a\"")); });
    };
    EXPECT_EQ(ask("root/none", "Link"), (Status{3, "root/none"}));
    EXPECT_EQ(ask("root/test", "NoSuch"), (Status{5, "NoSuch"}));
    EXPECT_EQ(ask("root/test", "Gadget"), Status{});
}

} // namespace
} // namespace embedded::repository
