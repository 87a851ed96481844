// From the software identity: everything in the catalogue.
#include "support/Traversal.h"

PEGASUS_USING_PEGASUS;
using namespace testsupport;

namespace {

int modeOf(const std::string& operation) {
    return operation == "associatorNames"  ? 0
           : operation == "associators"    ? 1
           : operation == "referenceNames" ? 2
                                           : 3;
}

void askHelper(ServerProfileProvider& provider, const Question& question, ResponseHandler& handler,
               int mode) {
    const bool associators = mode < 2;
    provider._getOrvexSIAssociatorReferenceHelper(
        question.key.c_str(), pointer(question.filter),
        // References put the result class into both places.
        pointer(associators ? question.resultClass : question.filter), question.role.c_str(),
        associators ? question.resultRole.c_str() : "", question.flags, question.flags, handler,
        requestNameSpace.c_str(), mode);
}

Source identitySource() {
    const auto inMode = [](int mode) {
        return [mode](ServerProfileProvider& provider, const Question& question, auto& handler) {
            askHelper(provider, question, handler, mode);
        };
    };
    return {inMode(0), inMode(1), inMode(2), inMode(3)};
}

const Source identity = identitySource();

constexpr const char* association = "ORVEX_ElementSoftwareIdentity";

Lines opening(const std::string& operation, const Question& question) {
    const std::string start = " Quil orvexSIAssociators(): ";
    return {start + "assoc class is " + question.filter.value_or(""),
            start + "result class is " +
                (isAssociators(operation) ? question.resultClass : question.filter).value_or("")};
}

class SoftwareIdentityTraversalTest : public TraversalTest {
  protected:
    Block answer(const std::string& operation, const Question& question, bool profiles = true,
                 bool subProfiles = true) {
        Block block = {joined({opening(operation, question),
                               {" Quil flag is 1",
                                " Quil assoc flag is " + std::to_string(modeOf(operation))}}),
                       {},
                       {}};
        const auto add = [&](const std::string& className, const std::string& path,
                             const std::string& object) {
            if (operation != "associators")
                block.messages.push_back(profileReferenceLine);
            block.delivered.push_back(
                operation == "associatorNames" ? path
                : operation == "associators"
                    ? object
                    : Association{association,
                                  {"Antecedent", "ORVEX_SoftwareIdentity", identityPath},
                                  {"Dependent", className, path}}
                          .as(deliversNames(operation)));
        };
        const Lines profileIds = {"Orvex1", "Orvex2", "Orvex6"};
        const Lines subProfileIds = {"Orvex3", "Orvex4", "Orvex5"};
        for (Uint32 i = 0; i < 3; ++i)
            if (profiles)
                add("CIM_RegisteredProfile", profilePath(profileIds[i]), profileObject(i));
        for (Uint32 i = 0; i < 3; ++i) {
            if (subProfiles)
                add("CIM_RegisteredSubProfile", subProfilePath(subProfileIds[i]),
                    subProfileObject(i));
        }
        return block;
    }
};

} // namespace

TEST_F(SoftwareIdentityTraversalTest, OwnAssociationOrNoneChoosesTheWholeCatalogue) {
    for (const char* key : {"OrvexSI1", "no identity"})
        expectFilterToChoose(
            identity, {key}, {{association, 1}}, 1, opening,
            [&](const std::string& operation, const Question& question, int) {
                return answer(operation, question);
            });
}

TEST_F(SoftwareIdentityTraversalTest, ResultClassNarrowsAssociatorsOnlyByAnyAssociation) {
    for (const char* filter : {association, ""}) {
        for (const std::string& resultClass : anyClass()) {
            for (const std::string& written : {resultClass, mixedCase(resultClass)}) {
                const Question question = {"OrvexSI1", filter, written};
                expectAnswers(identity, question, [&](const std::string& operation) {
                    const bool all = !isAssociators(operation);
                    return answer(operation, question,
                                  all || resultClass == "CIM_RegisteredProfile",
                                  all || resultClass == "CIM_RegisteredSubProfile");
                });
            }
        }
    }
}

TEST_F(SoftwareIdentityTraversalTest, NullResultClassIsNoClass) {
    for (const char* operation : {"associatorNames", "associators"}) {
        const Question question = {"OrvexSI1", "", std::nullopt};
        expectBlock(ask(identity, operation, question), answer(operation, question, false, false));
    }
}

TEST_F(SoftwareIdentityTraversalTest, AnyOtherModeDeliversNothing) {
    for (const int mode : {-1, 4, 5, 100}) {
        const auto call = [&](ResponseHandler& handler) {
            askHelper(provider, {"OrvexSI1"}, handler, mode);
        };
        const Outcome paths = observe<PathRecorder>(call);
        const Outcome objects = observe<ObjectRecorder>(call);
        EXPECT_EQ(paths.delivered, Lines());
        EXPECT_EQ(objects.delivered, Lines());
        EXPECT_EQ(paths.thrown + objects.thrown, "");
        EXPECT_EQ(paths.trace.at(3),
                  "ServerProfileProvider  Quil assoc flag is " + std::to_string(mode));
    }
}

TEST_F(SoftwareIdentityTraversalTest, HandlerOfTheWrongKindFailsAtTheFirstDelivery) {
    for (int mode = 0; mode < 4; ++mode) {
        const auto call = [&](ResponseHandler& handler) {
            askHelper(provider, {"OrvexSI1"}, handler, mode);
        };
        const Outcome instances = observe<InstanceRecorder>(call);
        const Outcome other =
            mode % 2 == 0 ? observe<ObjectRecorder>(call) : observe<PathRecorder>(call);
        EXPECT_EQ(instances.thrown, "std::bad_cast");
        EXPECT_EQ(other.thrown, "std::bad_cast");
        EXPECT_EQ(other.delivered, Lines());
        const auto nothing = [&](InstanceRecorder& handler) {
            askHelper(provider, {"OrvexSI1", "CIM_HostedService"}, handler, mode);
        };
        EXPECT_EQ(observe<InstanceRecorder>(nothing).thrown, "");
    }
}

TEST_F(SoftwareIdentityTraversalTest, ExceptionOfTheHandlerPassesAfterWhatWasDelivered) {
    for (const std::string& operation : traversalOperations())
        expectRefusalToPass(identity, operation, {"OrvexSI1"}, 6);
}

TEST_F(SoftwareIdentityTraversalTest, EntriesAreDeliveredAsClones) {
    ObjectRecorder handler;
    tracedBy([&] { identity.associators(provider, {"OrvexSI1"}, handler); });
    for (CIMObject& object : handler.delivered)
        object.removeProperty(0);
    for (Uint32 i = 0; i < 3; ++i) {
        EXPECT_EQ(provider.registeredProfiles()[i].getPropertyCount(), 7U);
        EXPECT_EQ(provider.registeredSubProfiles()[i].getPropertyCount(), 7U);
    }
}
