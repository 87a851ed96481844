#include "Server.h"

#include <gtest/gtest.h>

#include <dlfcn.h>

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <fstream>
#include <stdexcept>
#include <thread>
#include <utility>

namespace embedded::routing::test {
namespace {

using namespace Pegasus;

bool isMapped(const char* library) {
    void* const handle = dlopen((modulesDirectory() / library).c_str(), RTLD_LAZY | RTLD_NOLOAD);
    if (handle != nullptr)
        dlclose(handle);
    return handle != nullptr;
}

std::string enumerationError(Server& server) {
    return errorOf([&] { server.enumerate("TST_Base"); });
}

std::string register1(const std::string& provider, const std::string& location) {
    return moduleMof("M", location) + providerMof("M", provider) +
           capabilityMof("M", provider, "1", "2", "TST_Base");
}

TEST(LifeCycle, AModuleIsLoadedByTheFirstRequestAndInitializedOnce) {
    Server server(servedBy("P", {"TST_Base", "TST_Middle"}));
    EXPECT_EQ(Texts{}, toy::journal());
    server.enumerate("TST_Base");
    server.enumerate("TST_Middle");
    EXPECT_EQ(Texts{"initialize P"}, toy::journal());
}

TEST(LifeCycle, ConcurrentFirstRequestsWaitForOneInitialize) {
    Server server(servedBy("P", {"TST_Base"}));
    std::atomic<bool> initialized{false};
    std::atomic<int> early{0};
    toy::Script script;
    script.initialize = [&](CIMOMHandle&) {
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
        initialized = true;
    };
    script.answer = [&](const toy::Call& call) {
        early += initialized ? 0 : 1;
        call.instances->deliver(instanceOf("TST_Base", "1"));
        call.complete();
    };
    toy::setScript("P", script);

    std::atomic<unsigned> answers{0};
    std::vector<std::thread> clients;
    for (int i = 0; i < 16; ++i) {
        clients.emplace_back([&] {
            for (int round = 0; round < 20; ++round)
                answers += server.enumerate("TST_Base").objects.size();
        });
    }
    for (std::thread& client : clients)
        client.join();
    EXPECT_EQ(320U, answers);
    EXPECT_EQ(0, early);
    EXPECT_EQ(Texts{"initialize P"}, toy::journal());
}

TEST(LifeCycle, AFailedInitializeIsTerminatedAndTriedAgainByTheNextRequest) {
    Server server(servedBy("P", {"TST_Base"}));
    toy::Script script;
    script.initialize = [](CIMOMHandle&) { throw std::runtime_error("no disk"); };
    toy::setScript("P", script);
    EXPECT_EQ("1: provider initialization failed", enumerationError(server));
    EXPECT_EQ(Texts{"provider P of module MP: initialize(): no disk"}, server.log());
    toy::setScript("P", {});
    EXPECT_EQ("no error", enumerationError(server));
    EXPECT_EQ((Texts{"initialize P", "terminate P", "initialize P"}), toy::journal());
}

TEST(LifeCycle, ConcurrentFirstRequestsAllFailWithAFailedInitialize) {
    Server server(servedBy("P", {"TST_Base"}));
    toy::Script script;
    script.initialize = [](CIMOMHandle&) { throw 1; };
    toy::setScript("P", script);
    std::atomic<int> failures{0};
    std::vector<std::thread> clients;
    for (int i = 0; i < 8; ++i) {
        clients.emplace_back([&] {
            failures += enumerationError(server) == "1: provider initialization failed" ? 1 : 0;
        });
    }
    for (std::thread& client : clients)
        client.join();
    EXPECT_EQ(8, failures);
    EXPECT_EQ(16U, toy::journal().size());
}

TEST(LifeCycle, AnExceptionOfTheModulesOwnTypeDoesNotOutliveItsLibrary) {
    Server server(register1("ThrowsOwnType", "toy"), false);
    EXPECT_EQ("1: provider initialization failed", enumerationError(server));
    EXPECT_EQ(Texts{"provider ThrowsOwnType of module M: initialize(): of the module's own type"},
              server.log());
    EXPECT_FALSE(isMapped("libtoy.so"));
}

TEST(LifeCycle, TheEndTerminatesTheProvidersTheLastReadyFirst) {
    Server server(servedBy("P", {"TST_Base"}) + servedBy("Q", {"TST_Other"}) +
                      servedBy("Idle", {"TST_Middle"}),
                  false);
    server.enumerate("TST_Other");
    server.enumerate("TST_Base", true);
    EXPECT_TRUE(isMapped("libtoy.so"));
    server.modules.unloadAll();
    EXPECT_EQ((Texts{"initialize Q", "initialize P", "initialize Idle", "terminate Idle",
                     "terminate P", "terminate Q"}),
              toy::journal());
    EXPECT_FALSE(isMapped("libtoy.so"));
}

TEST(LifeCycle, AProviderThatWasNeverAskedIsNeitherInitializedNorTerminated) {
    { Server server(servedBy("P", {"TST_Base"})); }
    Server server(servedBy("P", {"TST_Base"}));
    server.modules.unloadAll();
    EXPECT_EQ(Texts{}, toy::journal());
}

TEST(LifeCycle, LibrariesStayMappedWhenAskedTo) {
    Server server(servedBy("P", {"TST_Base"}), true);
    server.enumerate("TST_Base");
    server.modules.unloadAll();
    EXPECT_EQ((Texts{"initialize P", "terminate P"}), toy::journal());
    EXPECT_TRUE(isMapped("libtoy.so"));
    // Back to where the other tests begin.
    void* const handle =
        dlopen((modulesDirectory() / "libtoy.so").c_str(), RTLD_NOLOAD | RTLD_LAZY);
    dlclose(handle);
    dlclose(handle);
}

TEST(LifeCycle, AnExceptionFromTerminateIsLoggedAndStopsNothing) {
    for (const auto& [what, told] :
         {std::pair("stuck", "stuck"), std::pair("no UTF-8: \xff", "no UTF-8: \\xFF")}) {
        Server server(servedBy("P", {"TST_Base"}) + servedBy("Q", {"TST_Other"}));
        toy::Script script;
        script.terminate = [text = what] { throw std::runtime_error(text); };
        toy::setScript("Q", script);
        server.enumerate("TST_Base");
        server.enumerate("TST_Other");
        server.modules.unloadAll();
        EXPECT_EQ(Texts{std::string("provider Q of module MQ: terminate(): ") + told},
                  server.log());
        EXPECT_EQ((Texts{"initialize P", "initialize Q", "terminate Q", "terminate P"}),
                  toy::journal());
    }
}

TEST(LifeCycle, AfterTheEndRequestsFail) {
    Server server(servedBy("P", {"TST_Base"}));
    server.enumerate("TST_Base");
    server.modules.unloadAll();
    EXPECT_EQ("1: The CIM server is shutting down.", enumerationError(server));
    EXPECT_EQ((Texts{"initialize P", "terminate P"}), toy::journal());
}

TEST(LifeCycle, TheEndWaitsForRequestsInProgress) {
    Server server(servedBy("P", {"TST_Base"}));
    std::mutex mutex;
    std::condition_variable changed;
    bool inside = false;
    toy::Script script;
    script.answer = [&](const toy::Call& call) {
        {
            const std::lock_guard<std::mutex> lock(mutex);
            inside = true;
            changed.notify_all();
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
        toy::note("answered");
        call.complete();
    };
    toy::setScript("P", script);
    std::thread client([&] { server.enumerate("TST_Base"); });
    {
        std::unique_lock<std::mutex> lock(mutex);
        changed.wait(lock, [&] { return inside; });
    }
    server.modules.unloadAll();
    client.join();
    EXPECT_EQ((Texts{"initialize P", "answered", "terminate P"}), toy::journal());
}

TEST(LifeCycle, ProvidersOfAStoppedModuleAreBlocked) {
    Server server(moduleMof("M", "toy", "OperationalStatus = {10};") + providerMof("M", "P") +
                  capabilityMof("M", "P", "1", "2", "TST_Leaf"));
    EXPECT_EQ("7: provider blocked.", errorOf([&] { server.enumerate("TST_Leaf"); }));
}

TEST(LifeCycle, TheFirstDirectoryThatHasTheLibraryIsTaken) {
    repository::Repository repository;
    toy::reset();
    fill(repository, servedBy("P", {"TST_Base"}));
    ProviderModules modules(Registration(repository.view(), interop),
                            {{"/nowhere", modulesDirectory(), "/elsewhere"}, false, {}, {}});
    Router router(repository, modules, "testhost");
    const ProviderHandles handles(router);
    router.enumerateInstanceNames({}, nameSpace, CIMName("TST_Base"));
    EXPECT_EQ(Texts{"initialize P"}, toy::journal());
}

struct LoadCase {
    const char* rule;
    std::string provider;
    std::string location;
    std::string error;
};

class LoadFailure : public testing::TestWithParam<LoadCase> {};

TEST_P(LoadFailure, IsToldToTheClient) {
    const LoadCase& load = GetParam();
    Server server(register1(load.provider, load.location));
    EXPECT_EQ(load.error, enumerationError(server));
    EXPECT_EQ(load.error, enumerationError(server)) << "tried again";
}

std::string loadFailure(const std::string& library, const std::string& provider) {
    return "1: ProviderLoadFailure (" + (modulesDirectory() / library).string() + ":" + provider +
           "):";
}

INSTANTIATE_TEST_SUITE_P(
    Host, LoadFailure,
    testing::Values(
        LoadCase{"NoLibrary", "P", "gone",
                 "1: File \"libgone.so\" was not found for provider module \"M\"."},
        LoadCase{"NoEntryPoint", "P", "noentry",
                 loadFailure("libnoentry.so", "P") + "entry point not found."},
        LoadCase{"CallsWhatNoLibraryHas", "P", "unresolved",
                 loadFailure("libunresolved.so", "P") + "Cannot load library, error: " +
                     (modulesDirectory() / "libunresolved.so").string() +
                     ": undefined symbol: _Z11madeNowherev"},
        LoadCase{"ProviderNotKnown", "Unknown", "toy",
                 loadFailure("libtoy.so", "Unknown") + "provider is not a CIMProvider."},
        LoadCase{"CreationThrows", "CreationThrows", "toy", "1: of the module's own type"}),
    [](const auto& instance) { return instance.param.rule; });

TEST(LifeCycle, ALibraryThatCannotBeLoadedIsToldWithTheReason) {
    const std::filesystem::path directory =
        std::filesystem::path(testing::TempDir()) / "routing_test_garbage";
    std::filesystem::create_directories(directory);
    std::ofstream(directory / "libgarbage.so") << "no library\n";
    repository::Repository repository;
    fill(repository, register1("P", "garbage"));
    ProviderModules modules(Registration(repository.view(), interop), {{directory}, false, {}, {}});
    Router router(repository, modules, "testhost");
    const std::string error =
        errorOf([&] { router.enumerateInstanceNames({}, nameSpace, CIMName("TST_Base")); });
    EXPECT_EQ(0U, error.find("1: ProviderLoadFailure (" + (directory / "libgarbage.so").string() +
                             ":P):Cannot load library, error: "))
        << error;
}

} // namespace
} // namespace embedded::routing::test
