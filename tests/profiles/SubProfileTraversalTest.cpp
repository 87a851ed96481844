// From a registered subprofile: the profile that it extends and the software identity.
#include "support/Traversal.h"

PEGASUS_USING_PEGASUS;
using namespace testsupport;

namespace {

const Source subProfile = sourceOf(&ServerProfileProvider::_getRegisteredSubProfileAssociatorNames,
                                   &ServerProfileProvider::_getRegisteredSubProfileAssociators,
                                   &ServerProfileProvider::_getRegisteredSubProfileReferenceNames,
                                   &ServerProfileProvider::_getRegisteredSubProfileReferences);

struct Row {
    const char* id;
    int index;
    const char* profile;
    Uint32 profileIndex;
};

const std::vector<Row> rows = {
    {"Orvex3", 0, "Orvex1", 0}, {"Orvex4", 1, "Orvex1", 0}, {"Orvex5", 2, "Orvex2", 1}};

const std::map<std::string, int> bitOf = {{"CIM_SubProfileRequiresProfile", 1},
                                          {"CIM_ReferencedProfile", 2},
                                          {"CIM_ElementConformsToProfile", 4},
                                          {"ORVEX_ElementSoftwareIdentity", 8}};

/// The trace of each operation.
struct Texts {
    std::string start;
    std::string required;
    std::string index;   ///< of the source, found or not; empty: not told
    std::string unknown; ///< the source is none
    std::string identity;
};
const std::map<std::string, Texts> textsOf = {
    {"associatorNames",
     {" Quil regSubProfAssociatorNames(): assoc class is ",
      " Quil SubProfileRequiresProfile assoc ", "", "Quil index of RegSubProfile is -1",
      " Quil ESI assoc "}},
    {"associators",
     {" Quil regSubProfAssociators(): assoc class is ", " Quil SubProfileRequiresProfile assoc ",
      "", "Quil index of RegSubProfile is -1", " Quil ESI assoc "}},
    {"referenceNames",
     {" Quil regSubProfRefNames(): result class is ",
      " Quil SubProfileRequiresProfile referenceNames ", " Quil Index of SubProf is ",
      "Quil index of Sub Profile is -1", " Quil ESI references "}},
    {"references",
     {" Quil regSubProfReferences(): result class is ",
      " Quil SubProfileRequiresProfile reference ", " Quil Index of RegProf is ",
      "Quil index of RegSubProfile is -1", " Quil ESI references "}},
};

Lines opening(const std::string& operation, const Question& question) {
    return {textsOf.at(operation).start + question.filter.value_or("")};
}

bool is(const std::string& one, const std::string& other) {
    return String::equalNoCase(one.c_str(), other.c_str());
}

class SubProfileTraversalTest : public TraversalTest {
  protected:
    static Block before(const std::string& operation, const Question& question, int mask) {
        return {joined({opening(operation, question), {" Quil flag is " + std::to_string(mask)}}),
                {},
                {}};
    }

    Block requiring(const std::string& operation, const Row& row) {
        const Texts& texts = textsOf.at(operation);
        if (operation == "associatorNames")
            return {{texts.required, profileReferenceLine}, {profilePath(row.profile)}, {}};
        if (operation == "associators")
            return {{texts.required}, {profileObject(row.profileIndex)}, {}};
        return {{texts.required, texts.index + std::to_string(row.index), profileReferenceLine,
                 profileReferenceLine},
                asNamesOr(deliversNames(operation),
                          {{"CIM_SubProfileRequiresProfile",
                            {"Antecedent", "CIM_RegisteredProfile", profilePath(row.profile)},
                            {"Dependent", "CIM_RegisteredSubProfile", subProfilePath(row.id)}}}),
                {}};
    }

    Block implementing(const std::string& operation, const Row& row) {
        const Texts& texts = textsOf.at(operation);
        if (operation == "associatorNames")
            return {{texts.identity}, {identityPath}, {}};
        if (operation == "associators") {
            return {joined({{texts.identity}, identityInstanceLines}),
                    {identityObject()},
                    {classCall("ORVEX_SoftwareIdentity")}};
        }
        return {{texts.identity, profileReferenceLine},
                asNamesOr(deliversNames(operation),
                          {{"ORVEX_ElementSoftwareIdentity",
                            {"Antecedent", "ORVEX_SoftwareIdentity", identityPath},
                            {"Dependent", "CIM_RegisteredSubProfile", subProfilePath(row.id)}}}),
                {}};
    }

    /// What bit 1 writes when it finds no such subprofile.
    static Block unknown(const std::string& operation) {
        const Texts& texts = textsOf.at(operation);
        return isAssociators(operation)
                   ? Block{{texts.required, texts.unknown}, {}, {}}
                   : Block{{texts.required, texts.index + "-1", texts.unknown}, {}, {}};
    }
};

} // namespace

TEST_F(SubProfileTraversalTest, FilterChoosesAndEachPairAnswersOnce) {
    for (const Row& row : rows)
        for (const std::string& key : {std::string(row.id), mixedCase(row.id)})
            expectFilterToChoose(
                subProfile, {key}, bitOf, 15, opening,
                [&](const std::string& operation, const Question& question, int mask) {
                    return joined({before(operation, question, mask),
                                   (mask & 1) != 0 ? requiring(operation, row) : Block(),
                                   (mask & 8) != 0 ? implementing(operation, row) : Block()});
                });
}

TEST_F(SubProfileTraversalTest, ResultClassNarrowsTheProfileOnly) {
    const Row& row = rows[1];
    for (const std::string& resultClass : anyClass()) {
        for (const std::string& written : {resultClass, mixedCase(resultClass)}) {
            const Question question = {row.id, "", written};
            expectAnswers(subProfile, question, [&](const std::string& operation) {
                const bool skipped =
                    isAssociators(operation) && !is(resultClass, "CIM_RegisteredProfile");
                return joined({before(operation, question, 15),
                               skipped ? Block{{textsOf.at(operation).required}, {}, {}}
                                       : requiring(operation, row),
                               implementing(operation, row)});
            });
        }
    }
}

TEST_F(SubProfileTraversalTest, UnknownSourceEndsItWhereItIsLookedUp) {
    for (const char* key : {"Orvex1", "Orvex6", "none", ""}) {
        for (const char* filter : {"", "CIM_SubProfileRequiresProfile"}) {
            const Question question = {key, filter};
            expectAnswers(subProfile, question, [&](const std::string& operation) {
                return joined(
                    {before(operation, question, filter[0] == '\0' ? 15 : 1), unknown(operation)});
            });
        }
        const Question identityOnly = {key, "ORVEX_ElementSoftwareIdentity"};
        expectAnswers(subProfile, identityOnly, [&](const std::string& operation) {
            return joined({before(operation, identityOnly, 8),
                           isAssociators(operation)
                               ? implementing(operation, rows[0])
                               : Block{{" Quil ESI references ", "Quil index of Reg Profile is -1"},
                                       {},
                                       {}}});
        });
    }
}

TEST_F(SubProfileTraversalTest, UnknownSourceIsNotLookedUpForAnotherResultClass) {
    const Question question = {"none", "", "CIM_ObjectManager"};
    for (const char* operation : {"associatorNames", "associators"}) {
        expectBlock(ask(subProfile, operation, question),
                    joined({before(operation, question, 15),
                            {{textsOf.at(operation).required}, {}, {}},
                            implementing(operation, rows[0])}));
    }
}

TEST_F(SubProfileTraversalTest, ExceptionsOfTheBuilderAndTheHandlerPass) {
    for (const std::string& operation : traversalOperations())
        expectRefusalToPass(subProfile, operation, {"Orvex3"}, 2);
    server->forget("ORVEX_SoftwareIdentity");
    const Outcome outcome = ask(subProfile, "associators", {"Orvex3"});
    EXPECT_EQ(outcome.thrown, "CIMException 6 ");
    EXPECT_EQ(outcome.delivered, Lines{profileObject(0)});
}

TEST_F(SubProfileTraversalTest, ProfileIsDeliveredAsACloneOfItsEntry) {
    ObjectRecorder handler;
    tracedBy([&] {
        subProfile.associators(provider, {"Orvex5", "CIM_SubProfileRequiresProfile"}, handler);
    });
    handler.delivered.at(0).removeProperty(0);
    EXPECT_EQ(provider.registeredProfiles()[1].getPropertyCount(), 7U);
}
