#include "Server.h"

#include <gtest/gtest.h>

namespace embedded::routing::test {
namespace {

/// What becomes of the three writes of `TST_x.Id="stored"`.
Texts writes(Router& router, const char* className) {
    const auto instance = instanceOf(className, "stored");
    return {errorOf([&] { router.createInstance({}, nameSpace, instance); }),
            errorOf([&] { router.modifyInstance({}, nameSpace, instance, false, {}); }),
            errorOf([&] { router.deleteInstance({}, nameSpace, instance.getPath()); })};
}

Texts thrice(const std::string& outcome) { return {outcome, outcome, outcome}; }

TEST(Writes, ReachTheRepositoryOfAWritableServerOnly) {
    Server server("instance of TST_Base { Id = \"kept\"; };\n");
    EXPECT_EQ(thrice("no error"), writes(server.router, "TST_Base"));
    Router readOnly(server.repository, server.modules, "testhost");
    EXPECT_EQ(thrice("2: The repository is read-only; start cimhost with --writable to change it."),
              writes(readOnly, "TST_Base"));
    EXPECT_EQ("5: TST_None", errorOf([&] {
                  readOnly.createInstance({}, nameSpace, instanceOf("TST_None", "1"));
              }));
    EXPECT_EQ(Texts{"TST_Base.Id=\"kept\""}, texts(server.enumerate("TST_Base").objects));
}

TEST(Writes, OfAPublishedClassReachItsProviderInAnyServer) {
    Server server(servedBy("P", {"TST_Leaf"}));
    toy::Script script;
    script.answer = [](const toy::Call& call) {
        toy::note(call.operation);
        if (call.paths != nullptr)
            call.paths->deliver(call.path);
        call.complete();
    };
    toy::setScript("P", script);
    Router readOnly(server.repository, server.modules, "testhost");
    for (Router* router : {&server.router, &readOnly})
        EXPECT_EQ(thrice("no error"), writes(*router, "TST_Leaf"));
    EXPECT_EQ(7U, toy::journal().size()) << "six and initialize";
}

TEST(Writes, ReachNoClassWhoseInstancesAppearAmongThoseOfAProvider) {
    Server server(servedBy("P", {"TST_Middle"}) + servedBy("Q", {"TST_Link"}));
    const std::string among =
        " cannot be changed: they appear among those of TST_Middle, which provider MP/P publishes.";
    EXPECT_EQ(thrice("2: Instances of TST_Base" + among), writes(server.router, "TST_Base"));
    EXPECT_EQ(thrice("2: Instances of TST_Leaf" + among), writes(server.router, "TST_Leaf"));
    EXPECT_EQ(thrice("no error"), writes(server.router, "TST_Other"));
}

TEST(Writes, AreFreeWhereAProviderServesAssociationsOrAnotherNamespaceOnly) {
    Server server(moduleMof("M") + providerMof("M", "P") +
                  capabilityMof("M", "P", "1", "3", "TST_Leaf") +
                  capabilityMof("M", "P", "2", "2", "TST_Leaf", "\"root/elsewhere\""));
    EXPECT_EQ(thrice("no error"), writes(server.router, "TST_Base"));
}

} // namespace
} // namespace embedded::routing::test
