#include "Server.h"

#include <Pegasus/Common/CIMProperty.h>
#include <Pegasus/Common/CIMValue.h>
#include <Pegasus/Provider/CIMInstanceProvider.h>
#include <gtest/gtest.h>

namespace embedded::routing::test {
namespace {

using namespace Pegasus;

/// Notes what it is asked and delivers one object of exactly the class that is named.
toy::Script faithful(const std::string& name) {
    toy::Script script;
    script.answer = [name](const toy::Call& call) {
        toy::note(name + " " + call.operation + " " + text(call.path.toString()));
        const std::string className = text(call.path.getClassName().getString());
        const CIMInstance instance = instanceOf(className.c_str(), name.c_str());
        if (call.instances != nullptr)
            call.instances->deliver(instance);
        if (call.paths != nullptr)
            call.paths->deliver(instance.getPath());
        call.complete();
    };
    return script;
}

/// The calls that reached providers, without the life cycle.
Texts calls() {
    Texts result;
    for (const std::string& event : toy::journal())
        if (event.find("initialize ") != 0)
            result.push_back(event);
    return result;
}

const char* const stored = "instance of TST_Base { Id = \"stored\"; Text = \"t\"; };\n"
                           "instance of TST_Middle { Id = \"stored\"; Extra = \"e\"; };\n";

TEST(InstanceRouting, AnEnumerationAsksTheClassAndEachOfItsSubclassesInOrder) {
    Server server(servedBy("P", {"TST_Base"}) + servedBy("Q", {"TST_Leaf"}) + stored);
    toy::setScript("P", faithful("P"));
    toy::setScript("Q", faithful("Q"));
    const auto instances = server.enumerate("TST_Base");
    EXPECT_EQ((Texts{"TST_Base.Id=\"P\"", "TST_Middle.Id=\"stored\"", "TST_Leaf.Id=\"Q\""}),
              texts(instances.objects));
    EXPECT_EQ(3U, instances.sources);
    const auto names = server.router.enumerateInstanceNames({}, nameSpace, CIMName("TST_Base"));
    EXPECT_EQ(texts(instances.objects), texts(names.objects));
    EXPECT_EQ(3U, names.sources);
    EXPECT_EQ((Texts{"P enumerateInstances //testhost/root/test:TST_Base",
                     "Q enumerateInstances //testhost/root/test:TST_Leaf",
                     "P enumerateInstanceNames //testhost/root/test:TST_Base",
                     "Q enumerateInstanceNames //testhost/root/test:TST_Leaf"}),
              calls());
}

TEST(InstanceRouting, ASingleClassIsOneSource) {
    Server server(servedBy("P", {"TST_Leaf"}));
    EXPECT_EQ(1U, server.enumerate("TST_Leaf").sources);
}

TEST(InstanceRouting, ARegistrationIsNotInheritedBySubclasses) {
    Server server(servedBy("P", {"TST_Base"}) + stored);
    toy::setScript("P", faithful("P"));
    EXPECT_EQ(Texts{"TST_Middle.Id=\"stored\""}, texts(server.enumerate("TST_Middle").objects));
    EXPECT_EQ(Texts{}, calls());
}

TEST(InstanceRouting, ProvidersGetTheClassAndTheKeysAsTheClientSpelledThem) {
    Server server(servedBy("P", {"TST_Base"}));
    toy::setScript("P", faithful("P"));
    server.get(pathOf("tst_BASE", "Key"));
    EXPECT_EQ(Texts{"P getInstance //testhost/root/test:tst_BASE.Id=\"Key\""}, calls());
}

TEST(InstanceRouting, OperationsOnOneInstanceGoToExactlyTheClassThatIsNamed) {
    Server server(servedBy("P", {"TST_Middle"}) + stored);
    toy::setScript("P", faithful("P"));
    // There is no search in subclasses, and none in superclasses.
    EXPECT_EQ("6: TST_Base.Id=\"P\"", errorOf([&] { server.get(pathOf("TST_Base", "P")); }));
    EXPECT_EQ("6: TST_Leaf.Id=\"P\"", errorOf([&] { server.get(pathOf("TST_Leaf", "P")); }));
    EXPECT_EQ(Texts{}, calls());
    EXPECT_EQ("TST_Middle.Id=\"P\"",
              text(server.get(pathOf("TST_Middle", "x")).getPath().toString()));
    EXPECT_EQ("TST_Base.Id=\"stored\"",
              text(server.get(pathOf("TST_Base", "stored")).getPath().toString()));
}

TEST(InstanceRouting, ChangesGoToTheProviderOrToTheRepository) {
    Server server(servedBy("P", {"TST_Middle"}));
    toy::setScript("P", faithful("P"));
    Router& router = server.router;
    for (const char* className : {"TST_Middle", "TST_Other"}) {
        const CIMInstance instance = instanceOf(className, "1");
        router.createInstance({}, nameSpace, instance);
        router.modifyInstance({}, nameSpace, instance, false, {});
        router.deleteInstance({}, nameSpace, instance.getPath());
    }
    EXPECT_EQ((Texts{"P createInstance //testhost/root/test:TST_Middle.Id=\"1\"",
                     "P modifyInstance //testhost/root/test:TST_Middle.Id=\"1\"",
                     "P deleteInstance //testhost/root/test:TST_Middle.Id=\"1\""}),
              calls());
    EXPECT_EQ("6: TST_Other.Id=\"1\"",
              errorOf([&] { router.deleteInstance({}, nameSpace, pathOf("TST_Other", "1")); }));
}

TEST(InstanceRouting, GetPropertyAsksForAnInstanceWithThatProperty) {
    Server server(servedBy("P", {"TST_Base"}) + stored);
    toy::Script script;
    script.answer = [](const toy::Call& call) {
        toy::note(call.operation + " " + text(call.propertyList[0].getString()) + " of " +
                  std::to_string(call.propertyList.size()));
        call.instances->deliver(instanceOf("TST_Base", "1"));
        call.complete();
    };
    toy::setScript("P", script);
    const auto property = [&](const char* className, const char* id, const char* name) {
        return server.router.getProperty({}, nameSpace, pathOf(className, id), CIMName(name));
    };
    EXPECT_EQ("1", text(property("TST_Base", "1", "Id").toString()));
    EXPECT_EQ("12: Text", errorOf([&] { property("TST_Base", "1", "Text"); }));
    EXPECT_EQ((Texts{"getInstance Id of 1", "getInstance Text of 1"}), calls());
    EXPECT_EQ("e", text(property("TST_Middle", "stored", "Extra").toString()));
}

TEST(InstanceRouting, UnknownNamespacesAndClassesReachNoProvider) {
    Server server(servedBy("P", {"TST_Base"}));
    Router& router = server.router;
    const CIMNamespaceName nowhere("root/nowhere");
    const CIMName none("TST_None");
    const CIMObjectPath path = pathOf("TST_None", "1");
    const CIMInstance instance = instanceOf("TST_None", "1");
    const std::vector<std::function<void(const CIMNamespaceName&)>> operations{
        [&](const auto& where) { router.getInstance({}, where, path, false, false, {}); },
        [&](const auto& where) {
            router.enumerateInstances({}, where, none, true, false, false, {});
        },
        [&](const auto& where) { router.enumerateInstanceNames({}, where, none); },
        [&](const auto& where) { router.createInstance({}, where, instance); },
        [&](const auto& where) { router.modifyInstance({}, where, instance, false, {}); },
        [&](const auto& where) { router.deleteInstance({}, where, path); },
        [&](const auto& where) { router.getProperty({}, where, path, CIMName("Id")); }};
    for (std::size_t i = 0; i < operations.size(); ++i) {
        EXPECT_EQ("3: root/nowhere", errorOf([&] { operations[i](nowhere); })) << i;
        EXPECT_EQ("5: TST_None", errorOf([&] { operations[i](nameSpace); })) << i;
    }
    EXPECT_EQ(Texts{}, calls());
}

TEST(InstanceRouting, TheUserReachesTheProvider) {
    Server server(servedBy("P", {"TST_Leaf"}));
    toy::Script script;
    script.answer = [](const toy::Call& call) {
        const IdentityContainer user(call.context.get(IdentityContainer::NAME));
        toy::note(text(user.getUserName()));
        EXPECT_TRUE(call.context.contains(AcceptLanguageListContainer::NAME));
        EXPECT_TRUE(call.context.contains(ContentLanguageListContainer::NAME));
    };
    toy::setScript("P", script);
    server.router.enumerateInstanceNames({"somebody"}, nameSpace, CIMName("TST_Leaf"));
    EXPECT_EQ(Texts{"somebody"}, calls());
}

// Property lists.

Texts listed(const CIMPropertyList& list) {
    Texts names;
    for (Uint32 i = 0; i < list.size(); ++i)
        names.push_back(text(list[i].getString()));
    return names;
}

class PropertyLists : public testing::Test {
  protected:
    PropertyLists() : server(servedBy("P", {"TST_Middle"}) + stored) {
        toy::Script script;
        script.answer = [this](const toy::Call& call) {
            seen = call.propertyList;
            CIMInstance instance{CIMName("TST_Middle")};
            for (const char* name : {"Extra", "Own", "Text", "Id"})
                instance.addProperty(CIMProperty(CIMName(name), String(name)));
            instance.setPath(pathOf("TST_Middle", "1"));
            call.instances->deliver(instance);
            call.complete();
        };
        toy::setScript("P", script);
    }

    static Texts propertiesOf(const CIMInstance& instance) {
        Texts names;
        for (Uint32 i = 0; i < instance.getPropertyCount(); ++i)
            names.push_back(text(instance.getProperty(i).getName().getString()));
        return names;
    }

    Server server;
    CIMPropertyList seen;
};

TEST(InstanceRouting, TheRepositoryTellsTheKeysOfAClassAsGetClassWould) {
    Server server;
    EXPECT_EQ(std::vector{CIMName("Id")}, server.router.keyNames(nameSpace, CIMName("tst_leaf")));
    const auto got = [&](const CIMNamespaceName& where) {
        server.router.getClass({}, where, CIMName("TST_None"), false, true, false, {});
    };
    const auto keysOf = [&](const CIMNamespaceName& where) {
        server.router.keyNames(where, CIMName("TST_None"));
    };
    for (const CIMNamespaceName& where : {nameSpace, CIMNamespaceName("root/none")})
        EXPECT_EQ(errorOf([&] { got(where); }), errorOf([&] { keysOf(where); }));
}

TEST_F(PropertyLists, WithDeepInheritanceNothingIsLeftOut) {
    const auto objects = server.enumerate("TST_Base", true).objects;
    EXPECT_TRUE(seen.isNull());
    EXPECT_EQ((Texts{"Extra", "Own", "Text", "Id"}), propertiesOf(objects[1]));
}

TEST_F(PropertyLists, WithoutDeepInheritanceTheRequestedClassSaysWhichProperties) {
    const auto objects = server.enumerate("TST_Base", false).objects;
    EXPECT_EQ((Texts{"Id", "Text"}), listed(seen));
    ASSERT_EQ(2U, objects.size());
    EXPECT_EQ((Texts{"Id", "Text"}), propertiesOf(objects[0]));
    EXPECT_EQ((Texts{"Id", "Text"}), propertiesOf(objects[1]));
    EXPECT_EQ("TST_Middle.Id=\"1\"", text(objects[1].getPath().toString()));
}

TEST_F(PropertyLists, AListOfTheClientsGoesThroughAndIsAppliedLater) {
    Array<CIMName> names;
    names.append(CIMName("Extra"));
    names.append(CIMName("Unknown"));
    const auto objects = server.enumerate("TST_Middle", false, CIMPropertyList(names)).objects;
    EXPECT_EQ((Texts{"Extra", "Unknown"}), listed(seen));
    EXPECT_EQ((Texts{"Extra", "Own", "Text", "Id"}), propertiesOf(objects[0]));
}

// Errors of sources.

toy::Script failing(CIMStatusCode code, const char* message) {
    toy::Script script;
    script.answer = [=](const toy::Call& call) {
        toy::note(message);
        if (call.instances != nullptr)
            call.instances->deliver(instanceOf("TST_Base", "lost"));
        throw CIMException(code, message);
    };
    return script;
}

TEST(SourceErrors, TheFirstErrorIsTheAnswerAndAllSourcesAreAsked) {
    Server server(servedBy("P", {"TST_Base"}) + servedBy("Q", {"TST_Middle"}) +
                  servedBy("R", {"TST_Leaf"}));
    toy::setScript("P", faithful("P"));
    toy::setScript("Q", failing(CIM_ERR_ACCESS_DENIED, "first"));
    toy::setScript("R", failing(CIM_ERR_FAILED, "second"));
    EXPECT_EQ("2: first", errorOf([&] { server.enumerate("TST_Base"); }));
    EXPECT_EQ(3U, calls().size());
}

TEST(SourceErrors, NotSupportedFromOneSourceIsPassedOver) {
    Server server(servedBy("P", {"TST_Middle"}));
    toy::setScript("P", failing(CIM_ERR_NOT_SUPPORTED, "not me"));
    EXPECT_EQ(0U, server.enumerate("TST_Middle").objects.size()) << "the repository has TST_Leaf";
}

TEST(SourceErrors, NotSupportedFromAllSourcesIsTheAnswer) {
    Server server(servedBy("P", {"TST_Middle"}) + servedBy("Q", {"TST_Leaf"}));
    toy::setScript("P", failing(CIM_ERR_NOT_SUPPORTED, "not me"));
    toy::setScript("Q", failing(CIM_ERR_NOT_SUPPORTED, "nor me"));
    EXPECT_EQ("7: nor me", errorOf([&] { server.enumerate("TST_Leaf"); }));
    EXPECT_EQ("7: not me", errorOf([&] { server.enumerate("TST_Middle"); }));
}

TEST(SourceErrors, AnyOtherErrorGoesBeforeNotSupported) {
    Server server(servedBy("P", {"TST_Middle"}) + servedBy("Q", {"TST_Leaf"}));
    toy::setScript("P", failing(CIM_ERR_NOT_SUPPORTED, "not me"));
    toy::setScript("Q", failing(CIM_ERR_FAILED, "broken"));
    EXPECT_EQ("1: broken", errorOf([&] { server.enumerate("TST_Middle"); }));
}

// Classes and qualifiers.

TEST(Schema, IsTheRepositorys) {
    Server server;
    Router& router = server.router;
    EXPECT_EQ("6: TST_None", errorOf([&] {
                  router.getClass({}, nameSpace, CIMName("TST_None"), false, true, true, {});
              }));
    EXPECT_EQ(1U, router.getClass({}, nameSpace, CIMName("TST_Middle"), true, true, true, {})
                      .getPropertyCount());
    const auto below = [&](bool deep) {
        Texts names;
        const Array<CIMName> found =
            router.enumerateClassNames({}, nameSpace, CIMName("TST_Base"), deep);
        for (Uint32 i = 0; i < found.size(); ++i)
            names.push_back(text(found[i].getString()));
        return names;
    };
    EXPECT_EQ(Texts{"TST_Middle"}, below(false));
    EXPECT_EQ((Texts{"TST_Middle", "TST_Leaf"}), below(true));
    const auto classes =
        router.enumerateClasses({}, nameSpace, CIMName("TST_Base"), true, false, false, false);
    ASSERT_EQ(2U, classes.size());
    EXPECT_EQ(3U, classes[1].getPropertyCount());
    EXPECT_EQ(2U, router.enumerateQualifiers({}, nameSpace).size());
    EXPECT_EQ("Key",
              text(router.getQualifier({}, nameSpace, CIMName("key")).getName().getString()));
}

} // namespace
} // namespace embedded::routing::test
