// From the entry point to termination.
#include "support/ModuleTest.h"
#include "support/MutexProbe.h"
#include "support/RecordingHandlers.h"
#include "support/Resolver.h"

#include <Pegasus/Provider/ProviderException.h>

#include <functional>

PEGASUS_USING_PEGASUS;
using namespace testsupport;

extern "C" CIMProvider* PegasusCreateProvider(const String& providerName);

namespace {

class LifecycleTest : public ModuleTest {
  protected:
    LifecycleTest() { resolver = Resolver(); }
};

} // namespace

TEST_F(LifecycleTest, AnyNameGetsAFreshProvider) {
    std::vector<CIMProvider*> created;
    for (const char* name : {"ServerProfileProvider", "", "another", "ServerProfileProvider"}) {
        CIMProvider* provider_ = nullptr;
        EXPECT_EQ(tracedBy([&] { provider_ = PegasusCreateProvider(String(name)); }), Lines());
        ASSERT_NE(provider_, nullptr);
        EXPECT_NE(dynamic_cast<ServerProfileProvider*>(provider_), nullptr);
        EXPECT_NE(dynamic_cast<CIMInstanceProvider*>(provider_), nullptr);
        EXPECT_NE(dynamic_cast<CIMAssociationProvider*>(provider_), nullptr);
        for (const CIMProvider* other : created)
            EXPECT_NE(provider_, other);
        created.push_back(provider_);
    }
    for (CIMProvider* provider_ : created)
        provider_->terminate();
}

TEST_F(LifecycleTest, InitializeIsTracedFromItsStartToItsEnd) {
    EXPECT_EQ(tracedBy([&] {
                  CIMProvider& asServersSeeIt = provider;
                  asServersSeeIt.initialize(handle);
              }),
              traceLines(joined({{"Quil initialize(): Start ",
                                  "Quil initialize(): Start BEFoRE MUTEX _initInProgress 0",
                                  "Quil initialize(): Start AFTER MUTEX _initInProgress 0",
                                  "Quil initialize(): Start _initInProgress 1",
                                  "Quil initialize(): _hostName switch1.example.net",
                                  "Quil initialize(): calling initdata() - initFlag is  0"},
                                 catalogueLines(),
                                 {"Quil initialize(): End "}})));
    EXPECT_EQ(_initInProgress.load(), 0);
    EXPECT_EQ(provider.registeredProfiles().size(), 3U);
    EXPECT_EQ(provider.registeredSubProfiles().size(), 3U);
}

TEST_F(LifecycleTest, GateIsClosedWhileTheCatalogueIsBuilt) {
    bool asked = false;
    server->fail("getClass", "CIM_RegisteredProfile", [&] {
        asked = true;
        EXPECT_EQ(_initInProgress.load(), 1);
    });
    provider.initialize(handle);
    EXPECT_TRUE(asked);
    EXPECT_EQ(_initInProgress.load(), 0);
}

TEST_F(LifecycleTest, ConstructionOpensTheGate) {
    _initInProgress = 1;
    const ServerProfileProvider another;
    EXPECT_EQ(_initInProgress.load(), 0);
}

TEST_F(LifecycleTest, SecondInitializeBuildsTheCatalogueAgainWithTheNewHandle) {
    provider.initialize(handle);
    const auto other = FakeServer::withSchema();
    CIMOMHandle otherHandle = FakeServer::handleTo(other);
    const auto askedBefore = server->calls.size();
    EXPECT_EQ(tracedBy([&] { provider.initialize(otherHandle); })[5],
              "ServerProfileProvider Quil initialize(): calling initdata() - initFlag is  0");
    EXPECT_EQ(server->calls.size(), askedBefore);
    EXPECT_EQ(other->calls.size(), 6U);
    EXPECT_EQ(provider.registeredProfiles().size(), 6U);
}

TEST_F(LifecycleTest, HandleOutlivesTheServersOwn) {
    {
        CIMOMHandle temporary = handle;
        provider.initialize(temporary);
    }
    InstanceRecorder instances;
    provider._getOrvexSIInstances("", instances, "root/cimv2");
    EXPECT_EQ(instances.delivered.size(), 1U);
}

TEST_F(LifecycleTest, NeverAgreesToBeUnloadedEarly) {
    for (int i = 0; i < 2; ++i) {
        EXPECT_EQ(tracedBy([&] { EXPECT_FALSE(provider.tryTerminate()); }),
                  traceLines({"Quil tryTerminate(): Start "}));
        provider.initialize(handle);
    }
}

TEST_F(LifecycleTest, TerminateDeletesTheProvider) {
    CIMProvider* const created = PegasusCreateProvider("");
    EXPECT_EQ(tracedBy([&] { created->terminate(); }),
              traceLines({"Quil terminate(): Start ", "Destructor "}));
}

TEST_F(LifecycleTest, TerminateLetsGoOfTheServer) {
    CIMProvider* const created = PegasusCreateProvider("");
    created->initialize(handle);
    const long held = server.use_count();
    created->terminate();
    EXPECT_LT(server.use_count(), held);
}

TEST_F(LifecycleTest, ModuleStateOutlivesTheProvider) {
    CIMProvider* const created = PegasusCreateProvider("");
    resolver.officialName = "kept.example.net";
    created->initialize(handle);
    created->terminate();
    EXPECT_EQ(text(_getHostName()), "kept.example.net");
    EXPECT_EQ(text(OrvexOMHost::getName()), "kept.example.net");
}

TEST_F(LifecycleTest, DestructionIsTraced) {
    EXPECT_EQ(tracedBy([] { const ServerProfileProvider temporary; }), traceLines({"Destructor "}));
}

TEST_F(LifecycleTest, HostNameIsGivenAsACopy) {
    String copy = _getHostName();
    copy.append(Char16('x'));
    EXPECT_EQ(text(_getHostName()), "switch1.example.net");
}

TEST_F(LifecycleTest, ModuleMutexKeepsOthersOutUntilItIsUnlockedAsOftenAsItWasLocked) {
    _mutex_lock();
    _mutex_lock();
    EXPECT_FALSE(moduleMutexIsFree(std::chrono::milliseconds(100)));
    _mutex_unlock();
    EXPECT_FALSE(moduleMutexIsFree(std::chrono::milliseconds(100)));
    _mutex_unlock();
    EXPECT_TRUE(moduleMutexIsFree());
}

TEST_F(LifecycleTest, WriteOperationsAreRefusedWithoutGateOrTrace) {
    const OperationContext context;
    const CIMObjectPath path = pathOf("CIM_RegisteredProfile", {{"InstanceID", "Orvex1"}});
    const CIMInstance instance(CIMName("CIM_RegisteredProfile"));
    CIMInstanceProvider& instanceProvider = provider;
    PathRecorder paths;
    InstanceRecorder instances;
    _initInProgress = 1; // nobody passes the gate
    const std::function<void()> operations[] = {
        [&] { instanceProvider.createInstance(context, path, instance, paths); },
        [&] {
            instanceProvider.modifyInstance(context, path, instance, true, CIMPropertyList(),
                                            instances);
        },
        [&] { instanceProvider.deleteInstance(context, path, instances); },
    };
    for (const auto& operation : operations) {
        std::string thrown;
        EXPECT_EQ(tracedBy([&] {
                      try {
                          operation();
                      } catch (const CIMNotSupportedException& exception) {
                          thrown = std::to_string(exception.getCode()) + " '" +
                                   text(exception.getMessage()) + "'";
                      }
                  }),
                  Lines());
        EXPECT_EQ(thrown, "7 ''");
    }
    _initInProgress = 0;
    EXPECT_EQ(paths.completeCalls + instances.completeCalls, 0U);
    EXPECT_TRUE(server->calls.empty());
}
