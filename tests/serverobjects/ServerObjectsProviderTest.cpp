#include "serverobjects/ServerObjectsProvider.h"

#include "embedding/CIMOMHandleRep.h"
#include "support/FakeServer.h"

#include <Pegasus/Common/CIMProperty.h>
#include <Pegasus/Common/CIMValue.h>

#include <gtest/gtest.h>

#include <map>
#include <memory>
#include <set>
#include <stdexcept>
#include <thread>

namespace serverobjects {
namespace {

using namespace Pegasus;
using testsupport::text;
using Texts = std::vector<std::string>;

/// A CIM server behind the provider's handle. It has the namespaces, configuration and objects that
/// a test gives it, and knows no other class.
class Server : public CIMOMHandleRep {
  public:
    std::map<std::string, Texts> paths; ///< "namespace:class" -> the names of its objects
    std::map<std::string, std::string> configuration;
    std::function<void()> fail; ///< called by every request
    Texts asked;                ///< "namespace:class"

    embedding::Answer perform(const embedding::Operation& operation) override {
        switch (operation.kind) {
        case embedding::OperationKind::EnumerateInstanceNames:
            return {embedding::cursorOverAll(names(operation.nameSpace, operation.className))};
        case embedding::OperationKind::EnumerateInstances:
            return {embedding::cursorOverAll(instances(operation.nameSpace, operation.className))};
        default:
            return CIMOMHandleRep::perform(operation);
        }
    }

  private:
    Array<CIMObjectPath> names(const CIMNamespaceName& nameSpace, const CIMName& className) {
        const auto found = paths.find(ask(nameSpace, className));
        if (found == paths.end())
            throw CIMException(CIM_ERR_INVALID_CLASS, className.getString());
        Array<CIMObjectPath> result;
        for (const std::string& path : found->second)
            result.append(CIMObjectPath(String(path.c_str())));
        return result;
    }

    Array<CIMInstance> instances(const CIMNamespaceName& nameSpace, const CIMName& className) {
        if (ask(nameSpace, className) != "root/PG_Internal:PG_ConfigSetting" ||
            configuration.empty())
            throw CIMException(CIM_ERR_INVALID_NAMESPACE, nameSpace.getString());
        Array<CIMInstance> result;
        for (const auto& [name, value] : configuration) {
            CIMInstance setting(className);
            setting.addProperty(
                CIMProperty(CIMName("PropertyName"), CIMValue(String(name.c_str()))));
            setting.addProperty(
                CIMProperty(CIMName("CurrentValue"), CIMValue(String(value.c_str()))));
            result.append(setting);
        }
        return result;
    }

    std::string ask(const CIMNamespaceName& nameSpace, const CIMName& className) {
        asked.push_back(text(nameSpace.getString()) + ":" + text(className.getString()));
        if (fail)
            fail();
        return asked.back();
    }
};

struct Instances : InstanceResponseHandler {
    std::vector<CIMInstance> objects;
    bool completed = false;
    void processing() override {}
    void complete() override { completed = true; }
    void deliver(const CIMInstance& instance) override { objects.push_back(instance); }
    void deliver(const Array<CIMInstance>&) override { FAIL(); }
};

struct Paths : ObjectPathResponseHandler {
    Texts names;
    bool completed = false;
    void processing() override {}
    void complete() override { completed = true; }
    void deliver(const CIMObjectPath& path) override { names.push_back(text(path)); }
    void deliver(const Array<CIMObjectPath>&) override { FAIL(); }
};

class ServerObjects : public testing::Test {
  protected:
    ServerObjects() {
        settings.systemCreationClassName = "TST_System";
        settings.systemName = "box";
        settings.elementName = "Test server";
        settings.description = "Test server, version 7.8";
        settings.nameSpaces = {"interop"};
    }
    ~ServerObjects() override {
        if (_provider != nullptr)
            _provider->terminate();
    }

    ServerObjectsProvider& provider() {
        if (_provider == nullptr) {
            _provider = new ServerObjectsProvider([this] { return settings; });
            initialize(*_provider);
        }
        return *_provider;
    }

    void initialize(ServerObjectsProvider& made) {
        embedding::setHandleFactory([this] { return server; });
        CIMOMHandle handle;
        made.initialize(handle);
    }

    static CIMObjectPath request(const char* className, const char* nameSpace = "interop") {
        return CIMObjectPath("host", CIMNamespaceName(nameSpace), CIMName(className));
    }

    Texts names(const char* className, const char* nameSpace = "interop") {
        Paths handler;
        provider().enumerateInstanceNames({}, request(className, nameSpace), handler);
        EXPECT_TRUE(handler.completed);
        return handler.names;
    }

    std::vector<CIMInstance> instances(const char* className, const char* nameSpace = "interop") {
        Instances handler;
        provider().enumerateInstances({}, request(className, nameSpace), false, false, {}, handler);
        EXPECT_TRUE(handler.completed);
        return handler.objects;
    }

    /// The property as text; "none" if the instance does not have it.
    static std::string property(const CIMInstance& instance, const char* name) {
        const Uint32 position = instance.findProperty(CIMName(name));
        return position == PEG_NOT_FOUND
                   ? "none"
                   : text(instance.getProperty(position).getValue().toString());
    }

    Settings settings;
    const std::shared_ptr<Server> server = std::make_shared<Server>();

  private:
    ServerObjectsProvider* _provider = nullptr;
};

const char* const manager = "CIM_ObjectManager";
const char* const mechanism = "PG_CIMXMLCommunicationMechanism";
const char* const nameSpaceClass = "PG_Namespace";

// What a server says of itself.

const char* const publishedManager = R"(PG_ObjectManager.CreationClassName="PG_ObjectManager",)"
                                     R"(Name="PG:1",SystemCreationClassName="PG_System",)"
                                     R"(SystemName="server")";

TEST_F(ServerObjects, TheObjectManagerHasWhatClientsRequire) {
    EXPECT_EQ(Texts{R"(//host/interop:CIM_ObjectManager.CreationClassName="CIM_ObjectManager",)"
                    R"(Name="Test server:box",SystemCreationClassName="TST_System",)"
                    R"(SystemName="box")"},
              names(manager));
    const CIMInstance object = instances(manager).at(0);
    EXPECT_EQ("Test server", property(object, "ElementName"));
    EXPECT_EQ("Test server, version 7.8", property(object, "Description"));
    EXPECT_EQ("2 ", property(object, "OperationalStatus"));
    EXPECT_EQ("TRUE", property(object, "Started"));
    for (const char* key : {"SystemCreationClassName", "SystemName", "CreationClassName", "Name"})
        EXPECT_NE("none", property(object, key)) << key;
}

TEST_F(ServerObjects, TheConfigurationOfTheServerTellsItsAccesses) {
    server->configuration = {{"enableHttpConnection", "true"},
                             {"enableHttpsConnection", "true"},
                             {"httpPort", "1234"},
                             {"httpsPort", ""},
                             {"hostname", "short"},
                             {"fullyQualifiedHostName", "long"},
                             {"enableAuthentication", "true"},
                             {"httpAuthType", "Basic"}};
    settings.httpAddress = "not:asked";
    const std::vector<CIMInstance> objects = instances(mechanism);
    ASSERT_EQ(2U, objects.size());
    EXPECT_EQ("long:1234", property(objects[0], "IPAddress"));
    EXPECT_EQ("2", property(objects[0], "namespaceAccessProtocol"));
    EXPECT_EQ("long:5989", property(objects[1], "IPAddress"));
    EXPECT_EQ("3", property(objects[1], "namespaceAccessProtocol"));
    EXPECT_EQ("http://long:1234", property(objects[0], "Name"));
    EXPECT_EQ("https://long:5989", property(objects[1], "Name"));
    EXPECT_EQ("3 ", property(objects[0], "AuthenticationMechanismsSupported"));
}

TEST_F(ServerObjects, AnAccessThatIsOffIsNone) {
    server->configuration = {{"enableHttpConnection", "false"},
                             {"enableHttpsConnection", "false"},
                             {"enableAuthentication", "false"}};
    settings.httpAddress = settings.httpsAddress = "not:asked";
    EXPECT_EQ(Texts{}, names(mechanism));
}

TEST_F(ServerObjects, WithoutAConfigurationTheSettingsTellTheAccesses) {
    settings.httpsAddress = "box:1";
    settings.functionalProfiles = {2, 5};
    const std::vector<CIMInstance> objects = instances(mechanism);
    ASSERT_EQ(1U, objects.size());
    const std::map<const char*, const char*> required{{"Name", "https://box:1"},
                                                      {"ElementName", "CIM-XML over https"},
                                                      {"CommunicationMechanism", "2"},
                                                      {"FunctionalProfilesSupported", "2 5 "},
                                                      {"MultipleOperationsSupported", "FALSE"},
                                                      {"AuthenticationMechanismsSupported", "0 "},
                                                      {"AdvertiseTypes", "2 "},
                                                      {"Version", "1.0"},
                                                      {"CIMXMLProtocolVersion", "1"},
                                                      {"CIMValidated", "FALSE"},
                                                      {"OperationalStatus", "2 "}};
    for (const auto& [name, value] : required)
        EXPECT_EQ(value, property(objects[0], name)) << name;
}

TEST_F(ServerObjects, NamespacesAreThoseOfTheServerAndOfTheSettingsEachOnce) {
    server->paths = {{"root:__Namespace", {R"(__Namespace.Name="b")", R"(__Namespace.Name="a")"}},
                     {"root/a:__Namespace", {R"(__Namespace.Name="deep")"}}};
    settings.nameSpaces = {"ROOT/B", "interop"};
    Texts found;
    for (const CIMInstance& object : instances(nameSpaceClass)) {
        found.push_back(property(object, "Name"));
        EXPECT_EQ("CIM_ObjectManager", property(object, "ObjectManagerCreationClassName"));
        EXPECT_EQ("Test server:box", property(object, "ObjectManagerName"));
        EXPECT_EQ("TST_System", property(object, "SystemCreationClassName"));
        EXPECT_EQ("box", property(object, "SystemName"));
        EXPECT_EQ("0", property(object, "ClassInfo"));
        EXPECT_EQ("2", property(object, "ClassType"));
    }
    EXPECT_EQ((Texts{"interop", "root", "root/a", "root/a/deep", "root/b"}), found);
}

TEST_F(ServerObjects, WhereTheServerPublishesItsOwnManagerNameAndSystemAreThose) {
    settings.serverNamespace = "root/server";
    server->paths["root/server:PG_ObjectManager"] = {publishedManager};
    EXPECT_EQ(Texts{R"(//host/interop:CIM_ObjectManager.CreationClassName="CIM_ObjectManager",)"
                    R"(Name="PG:1",SystemCreationClassName="PG_System",SystemName="server")"},
              names(manager));
    EXPECT_EQ("PG:1", property(instances(nameSpaceClass).at(0), "ObjectManagerName"));
}

TEST_F(ServerObjects, InTheServersOwnNamespaceNothingIsPublished) {
    settings.serverNamespace = "root/server";
    settings.httpAddress = "box:1";
    server->paths["root/server:PG_ObjectManager"] = {publishedManager};
    for (const char* className : {manager, mechanism, nameSpaceClass}) {
        EXPECT_EQ(Texts{}, names(className, "root/server")) << className;
        EXPECT_EQ(1U, names(className).size()) << className;
    }
}

TEST_F(ServerObjects, TheServerIsAskedOnceAndNeverForAClassThatIsServedHere) {
    settings.serverNamespace = "root/server";
    server->paths["root/server:PG_ObjectManager"] = {publishedManager};
    for (int i = 0; i < 2; ++i) {
        for (const char* className : {manager, mechanism, nameSpaceClass}) {
            names(className);
            instances(className, "INTEROP");
        }
    }
    EXPECT_EQ((Texts{"root/server:PG_ObjectManager", "root/PG_Internal:PG_ConfigSetting",
                     "root:__Namespace", "interop:PG_ObjectManager"}),
              server->asked);
}

TEST_F(ServerObjects, WithoutLeaveTheServerIsNotAsked) {
    settings.askServer = false;
    settings.serverNamespace = "root/server";
    EXPECT_EQ(1U, names(manager).size());
    EXPECT_EQ(1U, names(nameSpaceClass).size());
    EXPECT_EQ(Texts{}, server->asked);
}

TEST_F(ServerObjects, WhatTheServerCannotSayFailsTheRequestAndIsAskedAgain) {
    server->fail = [] { throw CIMException(CIM_ERR_FAILED, "not now"); };
    EXPECT_THROW(names(manager), CIMException);
    server->fail = nullptr;
    EXPECT_EQ(1U, names(manager).size());
}

TEST_F(ServerObjects, WrongSettingsAreToldToTheClient) {
    bool wrong = true;
    auto* const faulty = new ServerObjectsProvider([&]() -> Settings {
        if (wrong)
            throw std::runtime_error("x.conf:1: no");
        return settings;
    });
    initialize(*faulty);
    Paths handler;
    EXPECT_THROW(faulty->enumerateInstanceNames({}, request(manager), handler), std::runtime_error);
    wrong = false;
    faulty->enumerateInstanceNames({}, request(manager), handler);
    EXPECT_EQ(1U, handler.names.size());
    faulty->terminate();
}

TEST_F(ServerObjects, GetInstanceFindsWhatEnumerationNamesAndNothingElse) {
    settings.httpAddress = "box:1";
    for (const char* className : {manager, mechanism, nameSpaceClass}) {
        for (const std::string& name : names(className)) {
            CIMObjectPath path{String(name.c_str())};
            path.setHost("another");
            Instances handler;
            provider().getInstance({}, path, false, false, {}, handler);
            ASSERT_EQ(1U, handler.objects.size()) << name;
            EXPECT_TRUE(handler.completed);
            EXPECT_EQ(text(path), text(handler.objects[0].getPath()));
        }
    }
    CIMObjectPath other{String(names(manager).at(0).c_str())};
    Array<CIMKeyBinding> keys = other.getKeyBindings();
    keys[0].setValue("another");
    other.setKeyBindings(keys);
    Instances handler;
    EXPECT_THROW(provider().getInstance({}, other, false, false, {}, handler),
                 CIMObjectNotFoundException);
}

TEST_F(ServerObjects, AnotherClassHasNoObjects) { EXPECT_EQ(Texts{}, names("PG_ObjectManager")); }

TEST_F(ServerObjects, NothingCanBeChanged) {
    const CIMInstance object = instances(manager).at(0);
    Paths handler;
    EXPECT_THROW(provider().createInstance({}, object.getPath(), object, handler),
                 CIMNotSupportedException);
    EXPECT_THROW(provider().modifyInstance({}, object.getPath(), object, false, {}, handler),
                 CIMNotSupportedException);
    EXPECT_THROW(provider().deleteInstance({}, object.getPath(), handler),
                 CIMNotSupportedException);
}

TEST_F(ServerObjects, ManyAtOnceAreAnsweredAlikeAndTheServerIsAskedOnce) {
    provider();
    std::vector<std::thread> threads;
    std::vector<Texts> found(8);
    for (Texts& each : found) {
        threads.emplace_back([&] {
            Paths handler;
            provider().enumerateInstanceNames({}, request(manager), handler);
            each = handler.names;
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(1U, std::set<Texts>(found.begin(), found.end()).size());
    EXPECT_EQ(3U, server->asked.size()); // configuration, namespaces, the own object manager
}

} // namespace
} // namespace serverobjects
