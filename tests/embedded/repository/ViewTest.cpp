// What a view shows, and that it stays as it was whatever becomes of the repository.
#include "Fixture.h"

#include "repository/PathMatch.h"

#include <Pegasus/Common/Array.h>

#include <random>
#include <set>

namespace embedded::repository {

using namespace Pegasus;

namespace {

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
        for (std::size_t i = 0; i < list.size(); ++i)
            paths.push_back(text(list[i].path().toString()));
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
        repository.modifyInstance(home, instance, CIMPropertyList());
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
    for (int i = 0; i < 300; ++i)
        create(std::to_string(i).c_str());
    remove("Thing.Id=\"a\"");
    remove("Thing.Id=\"b\"");
    for (int i = 0; i < 300; ++i) {
        const std::string name = "Thing.Id=\"" + std::to_string(i) + "\"";
        if (i % 3 == 0)
            expected.push_back(name);
        else
            remove(name.c_str());
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
    for (const auto& [role, target] : links[0].references())
        ends.push_back(text(role) + " " + text(target.toString()));
    EXPECT_EQ(ends, (Strings{"To Thing.Id=\"b\"", "From Thing.Id=\"a\""}));
}

TEST_F(ViewTest, NamesOfMembersComeInTheOrderOfTheClassesProperties) {
    load("class Under : Gadget { [Key] string Own; [Key, Override(\"Id\")] string Id; };"
         "[Association] class Below : Link { [Override(\"From\")] Gadget REF From; };");
    const View view = repository.view();
    for (const char* name : {"Under", "Below", "gadget"}) {
        const CIMClass shown = view.getClass(home, name);
        Strings names, ends;
        for (Uint32 i = 0; i < shown.getPropertyCount(); ++i) {
            const CIMConstProperty property = shown.getProperty(i);
            names.push_back(text(property.getName()));
            if (property.getType() == CIMTYPE_REFERENCE)
                ends.push_back(names.back() + " " + text(property.getReferenceClassName()));
        }
        EXPECT_EQ(texts(view.propertyNames(home, name)), names);
        Strings references;
        for (const auto& [role, className] : view.references(home, name))
            references.push_back(text(role) + " " + text(className));
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
        for (const StoredInstance& each : view.referrers(home, "Link", path(source)))
            found.push_back(text(each.path().getKeyBindings()[1].getValue()));
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
    repository.modifyInstance(home, change, CIMPropertyList());
    EXPECT_EQ(referrers("Thing.Id=\"via\""), (Strings{"Thing.Id=\"x\""}));
    change.getProperty(0).setValue(CIMValue(path("Thing.Id=\"other\"")));
    repository.modifyInstance(home, change, CIMPropertyList());
    EXPECT_EQ(referrers("Thing.Id=\"via\""), Strings{});
    EXPECT_EQ(referrers("Thing.Id=\"other\""), (Strings{"Thing.Id=\"x\""}));
    EXPECT_EQ(referrers("Thing.Id=\"new\""), (Strings{"Thing.Id=\"x\""}));

    repository.deleteInstance(home, name);
    EXPECT_EQ(referrers("Thing.Id=\"new\""), Strings{});
    EXPECT_EQ(referrers("Thing.Id=\"other\""), Strings{});
    EXPECT_EQ(referrers(before, "Thing.Id=\"new\""), Strings{});
    EXPECT_EQ(referrers(before, "Thing.Id=\"a\"").size(), 3U);
}

/// Links between Things and Gadgets, of which some in every role are here and some are elsewhere.
class ReferrerGroupTest : public ReferrerTest {
  protected:
    /// Those that name the source in a role, if one is given, and have a class at another end, if
    /// one is given.
    static GroupFilter filter(const std::string& role, const std::string& farClass = "") {
        return [=](const References& ends, std::size_t near) {
            bool leadsThere = farClass.empty();
            for (std::size_t far = 0; far < ends.size(); ++far)
                leadsThere = leadsThere ||
                             (far != near && text(ends[far].second.getClassName()) == farClass);
            return leadsThere && (role.empty() || text(ends[near].first) == role);
        };
    }
    Strings wanted(const View& view, const std::string& source, const GroupFilter& isWanted) const {
        Strings found;
        for (const StoredInstance& each : view.referrers(home, "Link", path(source), isWanted))
            found.push_back(text(each.path().toString()));
        return found;
    }
    /// The same, from all there are.
    Strings scanned(const View& view, const std::string& source,
                    const GroupFilter& isWanted) const {
        Strings found;
        const InstanceList all = view.instances(home, "Link");
        for (std::size_t i = 0; i < all.size(); ++i) {
            const References ends = all[i].references();
            bool isFound = false;
            for (std::size_t near = 0; near < ends.size(); ++near) {
                const CIMObjectPath& target = ends[near].second;
                const bool isHere = target.getNameSpace().isNull() || target.getNameSpace() == home;
                isFound = isFound || (isHere && equalWithoutPlace(target, path(source)) &&
                                      isWanted(ends, near));
            }
            if (isFound)
                found.push_back(text(all[i].path().toString()));
        }
        return found;
    }
    CIMObjectPath add(const std::string& from, const std::string& to) {
        return repository.createInstance(home, link(from.c_str(), to.c_str()));
    }
    void setVia(const CIMObjectPath& name, const std::string& target) {
        CIMInstance change("Link");
        change.addProperty(CIMProperty("Via", CIMValue(path(target)), 0, "Thing"));
        change.setPath(name);
        repository.modifyInstance(home, change, CIMPropertyList());
    }
    static std::string thing(int id) { return "Thing.Id=\"" + std::to_string(id) + "\""; }
    static std::string gadget(int id) {
        return "Gadget.Id=\"" + std::to_string(id) + "\",Number=1";
    }

    const std::string hub = "Thing.Id=\"hub\"";
};

TEST_F(ReferrerGroupTest, AreAskedForOnceEachHoweverManyLinksThereAre) {
    for (const int links : {10, 3000}) {
        for (int i = links / 10; i < links; ++i) {
            add(hub, thing(i));
            add(hub, gadget(i));
            add(gadget(i), hub);
        }
        int asked = 0;
        const View view = repository.view();
        EXPECT_EQ(view.referrers(home, "Link", path(hub),
                                 [&](const References&, std::size_t) {
                                     ++asked;
                                     return false;
                                 })
                      .size(),
                  0U);
        EXPECT_EQ(asked, 3);
    }
}

TEST_F(ReferrerGroupTest, GiveTheirLinksInTheOrderInWhichTheyWereCreated) {
    Strings things, gadgets, all;
    for (int i = 0; i < 200; ++i) {
        const bool isThing = i % 3 != 0;
        const std::string name = text(add(hub, isThing ? thing(i) : gadget(i)).toString());
        (isThing ? things : gadgets).push_back(name);
        all.push_back(name);
    }
    const View view = repository.view();
    EXPECT_EQ(wanted(view, hub, {}), all);
    EXPECT_EQ(wanted(view, hub, filter("From")), all);
    EXPECT_EQ(wanted(view, hub, filter("To")), Strings{});
    EXPECT_EQ(wanted(view, hub, filter("", "Thing")), things);
    EXPECT_EQ(wanted(view, hub, filter("", "Gadget")), gadgets);
}

TEST_F(ReferrerGroupTest, TellTheRolesApartInWhichOneClassNamesAnother) {
    const std::string out = text(add(hub, thing(1)).toString());
    const std::string in = text(add(thing(1), hub).toString());
    const std::string self = text(add(hub, hub).toString());
    const View view = repository.view();
    EXPECT_EQ(wanted(view, hub, filter("From")), (Strings{out, self}));
    EXPECT_EQ(wanted(view, hub, filter("To")), (Strings{in, self}));
    EXPECT_EQ(wanted(view, hub, {}), (Strings{out, in, self}));
}

TEST_F(ReferrerGroupTest, TellTheNamespacesApartToWhichALinkLeads) {
    const std::string here = text(add(hub, thing(1)).toString());
    const std::string far = text(add(hub, "root/far:" + thing(2)).toString());
    const std::string same = text(add(hub, "root/test:" + thing(3)).toString());
    int asked = 0;
    const GroupFilter leadsFar = [&](const References& ends, std::size_t) {
        ++asked;
        return ends[1].second.getNameSpace() == CIMNamespaceName("root/far");
    };
    EXPECT_EQ(wanted(repository.view(), hub, leadsFar), Strings{far});
    EXPECT_EQ(asked, 2);
    EXPECT_EQ(wanted(repository.view(), hub, {}), (Strings{here, far, same}));
}

TEST_F(ReferrerGroupTest, LoseALinkThatIsModifiedIntoAnotherOneOrDeleted) {
    const CIMObjectPath first = add(hub, thing(1));
    const CIMObjectPath second = add(hub, thing(2));
    const std::string one = text(first.toString()), two = text(second.toString());
    const View before = repository.view();
    setVia(first, gadget(1));
    const View moved = repository.view();
    EXPECT_EQ(wanted(moved, hub, filter("", "Gadget")), Strings{one});
    EXPECT_EQ(wanted(moved, hub, filter("", "Thing")), (Strings{one, two}));
    setVia(first, thing(3));
    EXPECT_EQ(wanted(repository.view(), hub, filter("", "Gadget")), Strings{});
    EXPECT_EQ(wanted(repository.view(), hub, filter("", "Thing")), (Strings{one, two}));
    repository.deleteInstance(home, first);
    EXPECT_EQ(wanted(repository.view(), hub, filter("", "Thing")), Strings{two});
    repository.deleteInstance(home, second);
    EXPECT_EQ(wanted(repository.view(), hub, {}), Strings{});
    EXPECT_EQ(wanted(before, hub, filter("", "Gadget")), Strings{});
    EXPECT_EQ(wanted(before, hub, filter("", "Thing")), (Strings{one, two}));
    EXPECT_EQ(wanted(moved, hub, filter("", "Gadget")), Strings{one});
}

TEST_F(ReferrerGroupTest, HaveWhatALookAtAllLinksFindsWhateverIsCreatedModifiedAndDeleted) {
    std::mt19937 random(1);
    const auto below = [&](unsigned bound) { return static_cast<unsigned>(random() % bound); };
    const auto any = [&] {
        const int id = static_cast<int>(below(6));
        const char* const places[] = {"", "root/test:", "root/far:"};
        return places[below(3)] + (below(2) == 0 ? thing(id) : gadget(id));
    };
    std::vector<CIMObjectPath> links;
    std::set<std::pair<std::string, std::string>> known;
    std::size_t found = 0;
    for (int step = 0; step < 600; ++step) {
        const unsigned kind = below(6);
        if (kind < 3 || links.empty()) {
            const std::string from = any(), to = any();
            if (known.emplace(from.substr(from.find(':') + 1), to.substr(to.find(':') + 1)).second)
                links.push_back(add(from, to));
        } else if (kind < 5) {
            setVia(links[below(static_cast<unsigned>(links.size()))], any());
        } else {
            const auto gone = links.begin() + below(static_cast<unsigned>(links.size()));
            repository.deleteInstance(home, *gone);
            links.erase(gone);
        }
        const View view = repository.view();
        for (const char* role : {"", "From", "To", "Via"}) {
            for (const char* farClass : {"", "Thing", "Gadget"}) {
                const std::string source = below(2) == 0 ? thing(1) : gadget(2);
                const Strings expected = scanned(view, source, filter(role, farClass));
                EXPECT_EQ(wanted(view, source, filter(role, farClass)), expected);
                found += expected.size();
            }
        }
    }
    EXPECT_GT(found, 1000U);
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
