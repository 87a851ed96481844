#include "host/ServerObjects.h"

#include "Server.h"
#include "host/Values.h"
#include "mof/Mof.h"

#include <gtest/gtest.h>

namespace embedded::host::test {
namespace {

using Pegasus::CIMInstance;
using Pegasus::CIMName;
using Pegasus::CIMNamespaceName;
using Pegasus::CIMObjectPath;
using Pegasus::Uint16;

const char* const ownClasses = R"(
class CIM_ObjectManager {
    [Key] string SystemCreationClassName; [Key] string SystemName;
    [Key] string CreationClassName; [Key] string Name; };
class PG_ObjectManager : CIM_ObjectManager { };
class CIM_Namespace {
    [Key] string SystemCreationClassName; [Key] string SystemName;
    [Key] string ObjectManagerCreationClassName; [Key] string ObjectManagerName;
    [Key] string CreationClassName; [Key] string Name; };
class PG_Namespace : CIM_Namespace { };
class CIM_CIMXMLCommunicationMechanism {
    [Key] string SystemCreationClassName; [Key] string SystemName;
    [Key] string CreationClassName; [Key] string Name; };
class PG_CIMXMLCommunicationMechanism : CIM_CIMXMLCommunicationMechanism { };
)";

const ServerIdentity identity{"testhost", "manager", "Test server", "7.8.9", false};

class ServerObjectsTest : public testing::Test {
  protected:
    ServerObjectsTest()
        : modules(Registration(), {}),
          router(repository, modules, serverObjects(repository, identity), "testhost") {
        fill(repository);
        for (const CIMNamespaceName& where : {nameSpace, interop}) {
            repository.load(mof::readText(ownClasses, "own.mof"), where);
        }
    }

    Pegasus::Array<CIMInstance> enumerate(const CIMNamespaceName& where, const char* className) {
        return router.enumerateInstances({}, where, CIMName(className), true, false, false, {})
            .objects;
    }

    repository::Repository repository;
    ProviderModules modules;
    Router router;
};

TEST_F(ServerObjectsTest, EveryNamespaceThatDefinesTheClassesHasThem) {
    for (const CIMNamespaceName& where : {nameSpace, interop}) {
        for (const char* prefix : {"CIM_", "PG_"}) {
            const auto count = [&](const char* name) {
                return enumerate(where, (prefix + std::string(name)).c_str()).size();
            };
            EXPECT_EQ(1U, count("ObjectManager"));
            EXPECT_EQ(2U, count("Namespace"));
            EXPECT_EQ(1U, count("CIMXMLCommunicationMechanism"));
        }
    }
}

TEST_F(ServerObjectsTest, TheObjectManagerHasWhatClientsRequire) {
    const CIMInstance manager = enumerate(interop, "CIM_ObjectManager")[0];
    EXPECT_EQ("//testhost/root/interop:PG_ObjectManager.CreationClassName=\"PG_ObjectManager\","
              "Name=\"manager\",SystemCreationClassName=\"CIM_ComputerSystem\","
              "SystemName=\"testhost\"",
              text(manager.getPath().toString()));
    EXPECT_EQ("Test server", text(stringOf(manager, "ElementName")));
    EXPECT_NE(std::string::npos, text(stringOf(manager, "Description")).find("version 7.8"));
    EXPECT_EQ(std::vector<Uint16>{2}, numbersOf(manager, "OperationalStatus"));
    Pegasus::Boolean started = false;
    manager.getProperty(manager.findProperty(CIMName("Started"))).getValue().get(started);
    EXPECT_TRUE(started);
}

TEST_F(ServerObjectsTest, ANamespaceObjectIsThereForEveryNamespaceServed) {
    repository.createNameSpace(CIMNamespaceName("root/later"));
    Texts names;
    const auto objects = enumerate(nameSpace, "CIM_Namespace");
    for (Pegasus::Uint32 i = 0; i < objects.size(); ++i) {
        const CIMInstance& object = objects[i];
        names.push_back(text(stringOf(object, "Name")));
        EXPECT_EQ("PG_ObjectManager", text(stringOf(object, "ObjectManagerCreationClassName")));
        EXPECT_EQ("manager", text(stringOf(object, "ObjectManagerName")));
        EXPECT_EQ(Uint16(2), numberOf(object, "ClassType"));
        EXPECT_TRUE(hasValue(object, "ClassInfo"));
        EXPECT_EQ(6U, object.getPath().getKeyBindings().size());
    }
    EXPECT_EQ((Texts{"root/interop", "root/test", "root/later"}), names);
}

TEST_F(ServerObjectsTest, TheCommunicationMechanismSaysWhatIsServed) {
    const CIMInstance mechanism = enumerate(interop, "CIM_CIMXMLCommunicationMechanism")[0];
    EXPECT_EQ("Test server", text(stringOf(mechanism, "ElementName")));
    EXPECT_EQ(Uint16(2), numberOf(mechanism, "CommunicationMechanism"));
    EXPECT_EQ(Uint16(1), numberOf(mechanism, "CIMXMLProtocolVersion"));
    EXPECT_EQ((std::vector<Uint16>{2, 5, 6}), numbersOf(mechanism, "FunctionalProfilesSupported"));
    EXPECT_EQ(std::vector<Uint16>{2}, numbersOf(mechanism, "AuthenticationMechanismsSupported"));
    Pegasus::Boolean several = true;
    mechanism.getProperty(mechanism.findProperty(CIMName("MultipleOperationsSupported")))
        .getValue()
        .get(several);
    EXPECT_FALSE(several);
}

TEST_F(ServerObjectsTest, GetInstanceFindsWhatEnumerationNamesAndNothingElse) {
    for (const char* className :
         {"PG_ObjectManager", "PG_Namespace", "PG_CIMXMLCommunicationMechanism"}) {
        const auto names = router.enumerateInstanceNames({}, nameSpace, CIMName(className)).objects;
        for (Pegasus::Uint32 i = 0; i < names.size(); ++i) {
            // As it comes in a request: without host and namespace.
            const CIMObjectPath request = localPath(names[i]);
            EXPECT_EQ(names[i],
                      router.getInstance({}, nameSpace, request, false, false, {}).getPath());
        }
    }
    EXPECT_EQ("6: PG_ObjectManager.Id=\"1\"", errorOf([&] {
                  router.getInstance({}, nameSpace, pathOf("PG_ObjectManager", "1"), false, false,
                                     {});
              }));
}

TEST_F(ServerObjectsTest, WhatWasLoadedTakesTheirPlaceInItsNamespace) {
    repository.load(mof::readText(R"(instance of PG_ObjectManager {
        SystemCreationClassName = "S"; SystemName = "elsewhere";
        CreationClassName = "PG_ObjectManager"; Name = "loaded"; };)",
                                  "loaded.mof"),
                    interop);
    const auto loaded = enumerate(interop, "CIM_ObjectManager");
    ASSERT_EQ(1U, loaded.size());
    EXPECT_EQ("elsewhere", utf8(stringOf(loaded[0], "SystemName")));
    EXPECT_EQ("testhost", utf8(loaded[0].getPath().getHost()));
    EXPECT_TRUE(interop == loaded[0].getPath().getNameSpace());
    const auto made = enumerate(nameSpace, "CIM_ObjectManager");
    ASSERT_EQ(1U, made.size());
    EXPECT_EQ("testhost", utf8(stringOf(made[0], "SystemName")));
}

TEST_F(ServerObjectsTest, APropertyListIsHeeded) {
    Pegasus::Array<CIMName> names;
    names.append(CIMName("ElementName"));
    const auto objects = router
                             .enumerateInstances({}, nameSpace, CIMName("PG_ObjectManager"), true,
                                                 false, false, names)
                             .objects;
    EXPECT_EQ(1U, objects[0].getPropertyCount());
}

TEST_F(ServerObjectsTest, NothingCanBeChanged) {
    const auto names =
        router.enumerateInstanceNames({}, nameSpace, CIMName("PG_ObjectManager")).objects;
    const CIMInstance object = enumerate(nameSpace, "PG_ObjectManager")[0];
    const std::string refused = "7: The server's own objects cannot be changed.";
    EXPECT_EQ(refused, errorOf([&] { router.deleteInstance({}, nameSpace, names[0]); }));
    EXPECT_EQ(refused, errorOf([&] { router.createInstance({}, nameSpace, object); }));
    EXPECT_EQ(refused, errorOf([&] { router.modifyInstance({}, nameSpace, object, false, {}); }));
}

TEST(ServerIdentity, BasicAuthenticationIsTold) {
    repository::Repository repository;
    ServerIdentity guarded = identity;
    guarded.basicAuthentication = true;
    fill(repository);
    repository.load(mof::readText(ownClasses, "own.mof"), nameSpace);
    const ProviderModules modules(Registration(), {});
    Router router(repository, modules, serverObjects(repository, guarded), "testhost");
    const auto objects =
        router
            .enumerateInstances({}, nameSpace, CIMName("PG_CIMXMLCommunicationMechanism"), true,
                                false, false, {})
            .objects;
    EXPECT_EQ(std::vector<Uint16>{3}, numbersOf(objects[0], "AuthenticationMechanismsSupported"));
}

TEST(LocalHostName, IsNeverEmpty) {
    EXPECT_NE("", text(localHostName()));
}

} // namespace
} // namespace embedded::host::test
