#include "Server.h"

#include <Pegasus/Common/CIMClass.h>
#include <gtest/gtest.h>

namespace embedded::routing::test {
namespace {

using namespace Pegasus;

std::string nameOf(const CIMName& name) { return name.isNull() ? "-" : text(name.getString()); }

/// Notes the call with all its filters; delivers one object that tells the candidate.
toy::Script script(const std::string& name) {
    toy::Script result;
    result.answer = [name](const toy::Call& call) {
        toy::note(name + " " + call.operation + " " + text(call.path.toString()) + " " +
                  nameOf(call.associationClass) + " " + nameOf(call.resultClass) + " '" +
                  text(call.role) + "' '" + text(call.resultRole) + "'");
        const CIMName candidate =
            call.associationClass.isNull() ? call.resultClass : call.associationClass;
        const auto instance = instanceOf("TST_Base", nameOf(candidate).c_str());
        if (call.objects != nullptr)
            call.objects->deliver(CIMObject(instance));
        else
            call.paths->deliver(instance.getPath());
        call.complete();
    };
    return result;
}

Texts calls() {
    Texts result;
    for (const std::string& event : toy::journal())
        if (event.find("initialize ") != 0)
            result.push_back(event);
    return result;
}

class AssociationRouting : public testing::Test {
  protected:
    explicit AssociationRouting(const std::string& more = {})
        : server(servedBy("P", {"TST_Link", "TST_SubLink"}) + servedBy("Q", {"TST_OtherLink"}) +
                 more) {
        toy::setScript("P", script("P"));
        toy::setScript("Q", script("Q"));
    }

    Answers<CIMObjectPath> associatorNames(const CIMObjectPath& source,
                                           const char* assocClass = nullptr,
                                           const char* resultClass = nullptr, const char* role = "",
                                           const char* resultRole = "") {
        return server.router.associatorNames(
            {}, nameSpace, source, assocClass == nullptr ? CIMName() : assocClass,
            resultClass == nullptr ? CIMName() : resultClass, role, resultRole);
    }
    Answers<CIMObjectPath> referenceNames(const CIMObjectPath& source,
                                          const char* resultClass = nullptr,
                                          const char* role = "") {
        return server.router.referenceNames({}, nameSpace, source,
                                            resultClass == nullptr ? CIMName() : resultClass, role);
    }

    Server server;
    const CIMObjectPath base = pathOf("TST_Base", "1");
};

TEST_F(AssociationRouting, EachRegisteredCandidateIsAskedOnceInItsOwnName) {
    const auto answer = associatorNames(base);
    EXPECT_EQ((Texts{"P associatorNames //testhost/root/test:TST_Base.Id=\"1\" TST_Link - '' ''",
                     "P associatorNames //testhost/root/test:TST_Base.Id=\"1\" TST_SubLink - '' ''",
                     "Q associatorNames //testhost/root/test:TST_Base.Id=\"1\" TST_OtherLink - '' "
                     "''"}),
              calls());
    EXPECT_EQ((Texts{"//testhost/root/test:TST_Base.Id=\"TST_Link\"",
                     "//testhost/root/test:TST_Base.Id=\"TST_SubLink\"",
                     "//testhost/root/test:TST_Base.Id=\"TST_OtherLink\""}),
              texts(answer.objects));
    EXPECT_EQ(4U, answer.sources) << "and the repository";
}

TEST_F(AssociationRouting, AllFourOperationsGoTheSameWay) {
    Router& router = server.router;
    const CIMName subLink("TST_SubLink");
    const CIMName middle("TST_Middle");
    router.associators({}, nameSpace, base, subLink, middle, "Left", "right", false, false, {});
    router.associatorNames({}, nameSpace, base, subLink, middle, "Left", "right");
    router.references({}, nameSpace, base, subLink, "Left", false, false, {});
    router.referenceNames({}, nameSpace, base, subLink, "Left");
    const std::string source = " //testhost/root/test:TST_Base.Id=\"1\" ";
    EXPECT_EQ((Texts{"P associators" + source + "TST_SubLink TST_Middle 'Left' 'right'",
                     "P associatorNames" + source + "TST_SubLink TST_Middle 'Left' 'right'",
                     "P references" + source + "- TST_SubLink 'Left' ''",
                     "P referenceNames" + source + "- TST_SubLink 'Left' ''"}),
              calls());
}

TEST_F(AssociationRouting, AFilterKeepsTheClassAndItsSubclasses) {
    EXPECT_EQ(3U, associatorNames(base, "TST_Link").sources);
    EXPECT_EQ(2U, associatorNames(base, "TST_SubLink").sources);
    EXPECT_EQ(3U, referenceNames(base, "TST_Link").sources);
}

TEST_F(AssociationRouting, ASourceOfASubclassReachesReferencesToItsSuperclass) {
    EXPECT_EQ(4U, referenceNames(pathOf("TST_Leaf", "1")).sources);
}

TEST_F(AssociationRouting, OnlyAssociationsThatCanTouchTheSourcesClassAreAsked) {
    referenceNames(pathOf("TST_Other", "1"));
    EXPECT_EQ(
        Texts{"Q referenceNames //testhost/root/test:TST_Other.Id=\"1\" - TST_OtherLink '' ''"},
        calls());
}

TEST_F(AssociationRouting, AFilterThatIsNoAssociationGivesNothing) {
    EXPECT_EQ(0U, associatorNames(base, "TST_Other").objects.size());
    EXPECT_EQ(Texts{}, calls());
}

TEST_F(AssociationRouting, UnknownClassesAndIllegalRolesReachNoProvider) {
    EXPECT_EQ("4: TST_None", errorOf([&] { associatorNames(pathOf("TST_None", "1")); }));
    EXPECT_EQ("4: TST_None", errorOf([&] { associatorNames(base, "TST_None"); }));
    EXPECT_EQ("5: TST_None", errorOf([&] { associatorNames(base, nullptr, "TST_None"); }));
    EXPECT_EQ("4: TST_None", errorOf([&] { referenceNames(base, "TST_None"); }));
    EXPECT_EQ("4: role a b", errorOf([&] { associatorNames(base, nullptr, nullptr, "a b"); }));
    EXPECT_EQ("4: resultrole 1",
              errorOf([&] { associatorNames(base, nullptr, nullptr, "", "1"); }));
    EXPECT_EQ("4: role 1", errorOf([&] { referenceNames(base, nullptr, "1"); }));
    EXPECT_EQ("3: root/none",
              errorOf([&] { server.router.referenceNames({}, "root/none", base, CIMName(), ""); }));
    EXPECT_EQ(Texts{}, calls());
}

TEST_F(AssociationRouting, AnUnknownRoleIsTheProvidersBusiness) {
    referenceNames(base, "TST_SubLink", "NoSuchRole");
    EXPECT_EQ(1U, calls().size());
}

TEST_F(AssociationRouting, EmptyHostsAndNamespacesOfResultsAreFilledInOthersStay) {
    toy::Script other;
    other.answer = [](const toy::Call& call) {
        CIMObjectPath path = pathOf("TST_Base", "1");
        path.setNameSpace(CIMNamespaceName("root/wrong"));
        auto instance = instanceOf("TST_Base", "1");
        instance.setPath(path);
        if (call.objects != nullptr) {
            call.objects->deliver(CIMObject(instance));
            path.setHost("elsewhere");
            instance = instance.clone();
            instance.setPath(path);
            call.objects->deliver(CIMObject(instance));
        }
        call.complete();
    };
    toy::setScript("Q", other);
    const auto answer = server.router.associators({}, nameSpace, pathOf("TST_Other", "1"),
                                                  CIMName(), CIMName(), "", "", false, false, {});
    EXPECT_EQ((Texts{"//testhost/root/wrong:TST_Base.Id=\"1\"",
                     "//elsewhere/root/wrong:TST_Base.Id=\"1\""}),
              texts(answer.objects));
}

TEST_F(AssociationRouting, NotSupportedFromAllProvidersIsEmptySinceTheRepositoryAnswers) {
    toy::Script refusing;
    refusing.answer = [](const toy::Call&) { throw CIMException(CIM_ERR_NOT_SUPPORTED, "no"); };
    toy::setScript("P", refusing);
    toy::setScript("Q", refusing);
    EXPECT_EQ(0U, associatorNames(base).objects.size());
}

TEST_F(AssociationRouting, AnErrorOfOneCandidateIsTheAnswer) {
    toy::Script failing;
    failing.answer = [](const toy::Call&) { throw CIMException(CIM_ERR_ACCESS_DENIED, "no"); };
    toy::setScript("Q", failing);
    EXPECT_EQ("2: no", errorOf([&] { associatorNames(base); }));
}

TEST_F(AssociationRouting, AnInstanceCapabilityIsNoAssociationCapability) {
    Server other(moduleMof("M") + providerMof("M", "P") +
                 capabilityMof("M", "P", "1", "2", "TST_Link"));
    toy::setScript("P", script("P"));
    EXPECT_EQ(1U,
              other.router.referenceNames({}, nameSpace, base, CIMName("TST_Link"), "").sources);
}

TEST_F(AssociationRouting, ASourceWithoutKeysIsItsClassAndAnsweredFromTheSchemaAlone) {
    const CIMObjectPath source("", {}, CIMName("TST_Other"));
    EXPECT_EQ(Texts{"//testhost/root/test:TST_OtherLink"}, texts(referenceNames(source).objects));
    EXPECT_EQ(Texts{"//testhost/root/test:TST_Base"}, texts(associatorNames(source).objects));
    const auto associations =
        server.router.references({}, nameSpace, source, CIMName(), "", false, false, {}).objects;
    ASSERT_EQ(1U, associations.size());
    EXPECT_TRUE(associations[0].isClass());
    EXPECT_EQ("//testhost/root/test:TST_OtherLink", text(associations[0].getPath().toString()));
    const auto ends =
        server.router
            .associators({}, nameSpace, source, CIMName(), CIMName(), "", "", false, false, {})
            .objects;
    ASSERT_EQ(1U, ends.size());
    EXPECT_TRUE(ends[0].isClass());
    EXPECT_EQ(Texts{}, calls());
}

/// With instances in the repository, of an association that no provider serves.
class StoredAssociations : public AssociationRouting {
  protected:
    StoredAssociations()
        : AssociationRouting("[Association] class TST_Stored {"
                             " [Key] TST_Base REF Near; [Key] TST_Other REF Far; };\n"
                             "instance of TST_Base as $Base { Id = \"1\"; };\n"
                             "instance of TST_Other as $Other { Id = \"2\"; };\n"
                             "instance of TST_Stored { Near = $Base; Far = $Other; };\n"
                             "instance of TST_Stored { Near = $Base;"
                             " Far = \"TST_Other.Id=\\\"dangling\\\"\"; };\n"
                             "instance of TST_Link { Left = $Base; Right = $Base; };\n") {}
};

TEST_F(StoredAssociations, TheRepositoryAnswersFirst) {
    EXPECT_EQ((Texts{"//testhost/root/test:TST_Other.Id=\"2\"",
                     "//testhost/root/test:TST_Other.Id=\"dangling\"",
                     "//testhost/root/test:TST_Base.Id=\"TST_Link\"",
                     "//testhost/root/test:TST_Base.Id=\"TST_SubLink\"",
                     "//testhost/root/test:TST_Base.Id=\"TST_OtherLink\""}),
              texts(associatorNames(base).objects));
}

TEST_F(StoredAssociations, InstancesOfAServedAssociationAreLeftToItsProvider) {
    EXPECT_EQ((Texts{"//testhost/root/test:TST_Base.Id=\"TST_Link\"",
                     "//testhost/root/test:TST_Base.Id=\"TST_SubLink\""}),
              texts(referenceNames(base, "TST_Link").objects));
}

TEST_F(StoredAssociations, AssociatorsShowsTheFarInstancesThatExist) {
    const auto answer = server.router.associators({}, nameSpace, base, CIMName("TST_Stored"),
                                                  CIMName(), "", "", false, false, {});
    EXPECT_EQ(Texts{"//testhost/root/test:TST_Other.Id=\"2\""}, texts(answer.objects));
    EXPECT_EQ(1U, answer.sources);
}

TEST_F(StoredAssociations, ReferencesShowsTheAssociations) {
    const auto objects = server.router
                             .references({}, nameSpace, pathOf("TST_Other", "2"),
                                         CIMName("TST_Stored"), "far", false, false, {})
                             .objects;
    ASSERT_EQ(1U, objects.size());
    EXPECT_EQ("testhost", text(objects[0].getPath().getHost()));
    EXPECT_EQ(nameSpace, objects[0].getPath().getNameSpace());
    EXPECT_EQ("TST_Stored", text(objects[0].getClassName().getString()));
    EXPECT_EQ(texts(objects),
              texts(referenceNames(pathOf("TST_Other", "2"), "TST_Stored", "far").objects));
}

} // namespace
} // namespace embedded::routing::test
