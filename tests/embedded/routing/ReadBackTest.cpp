#include "Server.h"

#include <Pegasus/Provider/CIMOMHandle.h>
#include <gtest/gtest.h>

#include <chrono>
#include <condition_variable>
#include <future>
#include <thread>

namespace embedded::routing::test {
namespace {

using namespace Pegasus;

Array<CIMInstance> enumerate(CIMOMHandle& handle, const char* className) {
    return handle.enumerateInstances(OperationContext(), nameSpace, CIMName(className), true, false,
                                     false, false, {});
}

/// Reads back `className` and delivers what it finds, as instances of the class it was asked for.
toy::Script relaying(const char* className) {
    toy::Script script;
    script.answer = [className](const toy::Call& call) {
        const auto found = enumerate(*call.handle, className);
        for (Uint32 i = 0; i < found.size(); ++i)
            call.instances->deliver(found[i]);
        call.complete();
    };
    return script;
}

toy::Script delivering(const char* className, const char* id) {
    toy::Script script;
    script.answer = [=](const toy::Call& call) {
        call.instances->deliver(instanceOf(className, id));
        call.complete();
    };
    return script;
}

const char* const stored = "instance of TST_Other { Id = \"stored\"; };\n";

TEST(ReadBack, ReachesTheRepositoryAndOtherModules) {
    Server server(servedBy("P", {"TST_Base"}) + servedBy("Q", {"TST_Leaf"}) + stored);
    toy::setScript("P", relaying("TST_Other"));
    EXPECT_EQ(Texts{"TST_Other.Id=\"stored\""}, texts(server.enumerate("TST_Base").objects));
    toy::setScript("P", relaying("TST_Leaf"));
    toy::setScript("Q", delivering("TST_Leaf", "q"));
    EXPECT_EQ((Texts{"TST_Leaf.Id=\"q\"", "TST_Leaf.Id=\"q\""}),
              texts(server.enumerate("TST_Base").objects));
}

TEST(ReadBack, IsOnBehalfOfTheUserWhoseRequestItServes) {
    Server server(servedBy("P", {"TST_Base"}) + servedBy("Q", {"TST_Other"}));
    Texts users;
    const auto note = [&users](const toy::Call& call) {
        const IdentityContainer identity(call.context.get(IdentityContainer::NAME));
        users.push_back(text(identity.getUserName()));
    };
    toy::Script asking;
    asking.answer = [note](const toy::Call& call) {
        note(call);
        call.handle->enumerateInstances(call.context, nameSpace, CIMName("TST_Other"), true, false,
                                        false, false, {});
        call.complete();
    };
    toy::setScript("P", asking);
    toy::Script asked;
    asked.answer = [note](const toy::Call& call) {
        note(call);
        call.complete();
    };
    toy::setScript("Q", asked);
    server.router.enumerateInstances({"anna"}, nameSpace, CIMName("TST_Base"), false, false, false,
                                     {});
    EXPECT_EQ((Texts{"anna", "anna"}), users);
}

TEST(ReadBack, IntoAModuleThatWaitsForItFailsAtOnce) {
    Server server(servedBy("P", {"TST_Base"}));
    toy::setScript("P", relaying("TST_Base"));
    EXPECT_EQ("1: Provider module \"MP\" waits for this request itself and cannot be asked for "
              "class TST_Base.",
              errorOf([&] { server.enumerate("TST_Base"); }));
}

TEST(ReadBack, IntoAnotherProviderOfTheSameModuleFailsToo) {
    Server server(moduleMof("M") + providerMof("M", "P") + providerMof("M", "Q") +
                  capabilityMof("M", "P", "1", "2", "TST_Base") +
                  capabilityMof("M", "Q", "2", "2", "TST_Other"));
    toy::setScript("P", relaying("TST_Other"));
    EXPECT_EQ("1: Provider module \"M\" waits for this request itself and cannot be asked for "
              "class TST_Other.",
              errorOf([&] { server.enumerate("TST_Base"); }));
}

TEST(ReadBack, IntoAWaitingModuleThroughAnotherOneFailsToo) {
    Server server(servedBy("P", {"TST_Base"}) + servedBy("Q", {"TST_Other"}));
    toy::setScript("P", relaying("TST_Other"));
    toy::setScript("Q", relaying("TST_Base"));
    EXPECT_EQ("1: Provider module \"MP\" waits for this request itself and cannot be asked for "
              "class TST_Base.",
              errorOf([&] { server.enumerate("TST_Base"); }));
}

TEST(ReadBack, AProviderMayLiveWithTheErrorAndTheNextRequestIsFree) {
    Server server(servedBy("P", {"TST_Leaf"}));
    toy::Script script;
    script.answer = [](const toy::Call& call) {
        EXPECT_NE("no error", errorOf([&] { enumerate(*call.handle, "TST_Leaf"); }));
        call.instances->deliver(instanceOf("TST_Leaf", "1"));
        call.complete();
    };
    toy::setScript("P", script);
    EXPECT_EQ(1U, server.enumerate("TST_Leaf").objects.size());
    EXPECT_EQ(1U, server.enumerate("TST_Leaf").objects.size());
}

TEST(ReadBack, DuringInitializeReachesOthersAndNotItself) {
    Server server(servedBy("P", {"TST_Base"}) + stored);
    toy::Script script;
    script.initialize = [](CIMOMHandle& handle) {
        toy::note(std::to_string(enumerate(handle, "TST_Other").size()));
        toy::note(errorOf([&] { enumerate(handle, "TST_Base"); }));
    };
    toy::setScript("P", script);
    server.enumerate("TST_Base");
    EXPECT_EQ((Texts{"initialize P", "1",
                     "1: Provider module \"MP\" waits for this request itself and cannot be asked "
                     "for class TST_Base."}),
              toy::journal());
}

TEST(ReadBack, OfTwoModulesThatInitializeAcrossEachOtherDoesNotHang) {
    Server server(servedBy("P", {"TST_Leaf"}) + servedBy("Q", {"TST_Other"}));
    std::mutex mutex;
    std::condition_variable changed;
    int inside = 0;
    const auto meet = [&] {
        std::unique_lock<std::mutex> lock(mutex);
        ++inside;
        changed.notify_all();
        changed.wait(lock, [&] { return inside >= 2; });
    };
    std::atomic<int> refused{0};
    const auto initializing = [&](const char* other) {
        toy::Script script;
        script.initialize = [&, other](CIMOMHandle& handle) {
            meet();
            const std::string error = errorOf([&] { enumerate(handle, other); });
            refused += error == "no error" ? 0 : 1;
        };
        return script;
    };
    toy::setScript("P", initializing("TST_Other"));
    toy::setScript("Q", initializing("TST_Leaf"));
    auto first = std::async(
        std::launch::async, [&] { server.enumerate("TST_Leaf"); });
    auto second = std::async(std::launch::async, [&] { server.enumerate("TST_Other"); });
    for (auto* request : {&first, &second}) {
        ASSERT_EQ(std::future_status::ready, request->wait_for(std::chrono::seconds(30)));
        request->get();
    }
    EXPECT_EQ(1, refused) << "the one that would have closed the circle";
}

TEST(ReadBack, FromAThreadOfTheModulesOwnMayEnterTheModule) {
    Server server(servedBy("P", {"TST_Leaf"}) + servedBy("Q", {"TST_Other"}));
    toy::setScript("P", delivering("TST_Leaf", "p"));
    toy::Script script;
    script.initialize = [](CIMOMHandle& handle) {
        std::thread([handle]() mutable {
            toy::note(std::to_string(enumerate(handle, "TST_Leaf").size()));
        }).join();
    };
    toy::setScript("Q", script);
    server.enumerate("TST_Leaf");
    server.enumerate("TST_Other");
    EXPECT_EQ((Texts{"initialize P", "initialize Q", "1"}), toy::journal());
}

TEST(ReadBack, AHandleServesManyThreads) {
    Server server(servedBy("P", {"TST_Base"}) + servedBy("Q", {"TST_Other"}));
    toy::setScript("P", relaying("TST_Other"));
    toy::setScript("Q", delivering("TST_Other", "q"));
    std::atomic<unsigned> found{0};
    std::vector<std::thread> clients;
    for (int i = 0; i < 8; ++i) {
        clients.emplace_back([&] {
            for (int round = 0; round < 25; ++round)
                found += server.enumerate("TST_Base").objects.size();
        });
    }
    for (std::thread& client : clients)
        client.join();
    EXPECT_EQ(200U, found);
}

TEST(ReadBack, ErrorsCarryNoStatusNameInTheirMessage) {
    Server server(servedBy("P", {"TST_Leaf"}));
    CIMOMHandle handle;
    const OperationContext context;
    EXPECT_EQ("3: root/none", errorOf([&] {
                  handle.enumerateInstanceNames(context, "root/none", CIMName("TST_Base"));
              }));
    EXPECT_EQ("5: TST_None", errorOf([&] { enumerate(handle, "TST_None"); }));
    EXPECT_EQ("6: TST_None", errorOf([&] {
                  handle.getClass(context, nameSpace, CIMName("TST_None"), false, true, true, {});
              }));
    EXPECT_EQ("6: TST_Other.Id=\"1\"", errorOf([&] {
                  handle.getInstance(context, nameSpace, pathOf("TST_Other", "1"), false, false,
                                     false, {});
              }));
}

TEST(ReadBack, EveryOperationIsTheServersOwn) {
    Server server(std::string(stored) + "instance of TST_Base { Id = \"1\"; };\n"
                                        "instance of TST_OtherLink {"
                                        " Source = \"TST_Base.Id=\\\"1\\\"\";"
                                        " Target = \"TST_Other.Id=\\\"stored\\\"\"; };\n");
    CIMOMHandle handle;
    const OperationContext context;
    const CIMObjectPath base = pathOf("TST_Base", "1");
    const CIMName none;
    EXPECT_EQ(
        1U,
        handle.associators(context, nameSpace, base, none, none, "", "", false, false, {}).size());
    EXPECT_EQ(1U, handle.associatorNames(context, nameSpace, base, none, none, "", "").size());
    EXPECT_EQ(1U, handle.references(context, nameSpace, base, none, "", false, false, {}).size());
    EXPECT_EQ(1U, handle.referenceNames(context, nameSpace, base, none, "").size());
    EXPECT_EQ(2U, handle.enumerateClassNames(context, nameSpace, "TST_Base", true).size());
    EXPECT_EQ(
        1U,
        handle.enumerateClasses(context, nameSpace, "TST_Base", false, false, true, true).size());
    EXPECT_EQ("1", text(handle.getProperty(context, nameSpace, base, CIMName("Id")).toString()));
    handle.createInstance(context, nameSpace, instanceOf("TST_Base", "2"));
    handle.modifyInstance(context, nameSpace, instanceOf("TST_Base", "2"), false, {});
    EXPECT_EQ(2U, handle.enumerateInstanceNames(context, nameSpace, "TST_Base").size());
    handle.deleteInstance(context, nameSpace, pathOf("TST_Base", "2"));
    EXPECT_EQ(1U, handle.enumerateInstanceNames(context, nameSpace, "TST_Base").size());
    handle.disallowProviderUnload();
    handle.allowProviderUnload();
    EXPECT_EQ(0U, errorOf([&] {
                      handle.setProperty(context, nameSpace, base, CIMName("Text"), {});
                  }).find("7: "));
}

TEST(ReadBack, TheUserIsPassedOn) {
    Server server(servedBy("P", {"TST_Base"}) + servedBy("Q", {"TST_Other"}));
    toy::Script reader;
    reader.answer = [](const toy::Call& call) {
        call.handle->enumerateInstanceNames(call.context, nameSpace, CIMName("TST_Other"));
    };
    toy::setScript("P", reader);
    toy::Script answering;
    answering.answer = [](const toy::Call& call) {
        toy::note(text(IdentityContainer(call.context.get(IdentityContainer::NAME)).getUserName()));
    };
    toy::setScript("Q", answering);
    server.router.enumerateInstanceNames({"somebody"}, nameSpace, CIMName("TST_Base"));
    EXPECT_EQ((Texts{"initialize P", "initialize Q", "somebody"}), toy::journal());
}

} // namespace
} // namespace embedded::routing::test
