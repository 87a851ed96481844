// From a registered profile: its subprofiles, the elements that conform to it and the software
// identity.
#include "support/Traversal.h"

PEGASUS_USING_PEGASUS;
using namespace testsupport;

namespace {

const Source profile = sourceOf(&ServerProfileProvider::_getRegisteredProfileAssociatorNames,
                                &ServerProfileProvider::_getRegisteredProfileAssociators,
                                &ServerProfileProvider::_getRegisteredProfileReferenceNames,
                                &ServerProfileProvider::_getRegisteredProfileReferences);

/// A profile and what is tied to it.
struct Row {
    const char* id;
    int index;
    std::vector<std::pair<const char*, Uint32>> subProfiles; ///< with their indices
    std::string name;                                        ///< as the trace has it
    std::string elementClass;                                ///< of the conforming elements
    Lines elements;                                          ///< as the associations have them
    std::string readClass;                                   ///< what associators read
    Lines read;                                              ///< what they find
    std::string namesFailure;     ///< of associator names and both references
    std::string instancesFailure; ///< of associators
};

const std::vector<Row> rows = {
    {"Orvex1",
     0,
     {{"Orvex3", 0}, {"Orvex4", 1}},
     "Fabric",
     "ORVEX_Vsan",
     fabrics,
     "ORVEX_Vsan",
     fabrics,
     " Quil ni for ORVEX_AdminDomain exception ",
     " Quil ei for ORVEX_AdminDomain exception "},
    {"Orvex2",
     1,
     {{"Orvex5", 2}},
     "Switch",
     "ORVEX_ComputerSystem",
     switches,
     "ORVEX_PhysicalComputerSystem",
     localSwitches,
     " Quil ni for ORVEX_ComputerSystem exception ",
     " Quil gi for ORVEX_ComputerSystem exception "},
    {"Orvex6",
     2,
     {},
     "Server",
     "CIM_ObjectManager",
     objectManagers,
     "CIM_ObjectManager",
     objectManagers,
     " Quil ni for CIM_ObjectManager ",
     " Quil ei for CIM_ObjectManager "},
};

const std::map<std::string, int> bitOf = {{"CIM_SubProfileRequiresProfile", 1},
                                          {"CIM_ReferencedProfile", 2},
                                          {"CIM_ElementConformsToProfile", 4},
                                          {"ORVEX_ElementSoftwareIdentity", 8}};

const std::string localSwitchCall =
    "getInstance root/request " +
    ownPath("root/request", "ORVEX_PhysicalComputerSystem.Name=\"localswitch\"") +
    " localOnly=0 qualifiers=1 origin=1 properties=all";

Lines opening(const std::string& operation, const Question& question) {
    const std::string filter = question.filter.value_or("");
    if (operation == "associatorNames")
        return {" Quil regProfAssociatorNames(): assoc class is " + filter};
    if (operation == "associators") {
        return {" Quil regprofAssociators(): assoc class is " + filter + " keyValue is " +
                question.key};
    }
    return {(operation == "referenceNames" ? " Quil regProfReferenceNames(): result class is "
                                           : " Quil regProfReferences(): result class is ") +
            filter};
}

class ProfileTraversalTest : public TraversalTest {
  protected:
    static Block before(const std::string& operation, const Question& question, int mask) {
        return {joined({opening(operation, question), {" Quil flag is " + std::to_string(mask)}}),
                {},
                {}};
    }

    static std::string requiresLine(const std::string& operation) {
        return isAssociators(operation)   ? " Quil SubProfileRequiresProfile assoc "
               : deliversNames(operation) ? " Quil SubProfileRequiresProfile referenceNames "
                                          : " Quil SubProfileRequiresProfile reference ";
    }

    static std::string indexLine(const std::string& operation) {
        return operation == "referenceNames" ? " Quil Index of SubProf is "
                                             : "Quil index of RegProfile is ";
    }

    Block requiring(const std::string& operation, const Row& row) {
        Block block = {
            {requiresLine(operation), indexLine(operation) + std::to_string(row.index)}, {}, {}};
        for (const auto& [id, index] : row.subProfiles) {
            if (operation == "associators") {
                block.delivered.push_back(subProfileObject(index));
            } else if (operation == "associatorNames") {
                block.messages.push_back(profileReferenceLine);
                block.delivered.push_back(subProfilePath(id));
            } else {
                block.messages = joined({block.messages, repeated(2, profileReferenceLine)});
                block.delivered.push_back(Association{
                    "CIM_SubProfileRequiresProfile",
                    {"Antecedent", "CIM_RegisteredProfile", profilePath(row.id)},
                    {"Dependent", "CIM_RegisteredSubProfile",
                     subProfilePath(id)}}.as(deliversNames(operation)));
            }
        }
        return block;
    }

    static Block referenced() { return {{" Quil Referenced Profile assoc "}, {}, {}}; }

    static std::string conformsLine(const std::string& operation) {
        return isAssociators(operation)   ? " Quil ElementConformsToProfile assoc - 1 "
               : deliversNames(operation) ? " Quil ElementConformsToProfile referenceNames "
                                          : " Quil ElementConformsToProfile references ";
    }

    Block conforming(const std::string& operation, const Row& row, bool failed = false) {
        Block block = {{conformsLine(operation)}, {}, {}};
        if (isAssociators(operation))
            block.messages.push_back(" Quil ElementConformsToProfile assoc - " + row.name + " ");
        if (failed)
            block.messages.push_back(operation == "associators" ? row.instancesFailure
                                                                : row.namesFailure);
        if (!isAssociators(operation)) {
            block.messages.push_back(profileReferenceLine);
            block.calls = {enumeration(operation, row.elementClass)};
            std::vector<Association> all;
            for (const std::string& element : failed ? Lines() : row.elements) {
                all.push_back({"CIM_ElementConformsToProfile",
                               {"ConformantStandard", "CIM_RegisteredProfile", profilePath(row.id)},
                               {"ManagedElement", row.elementClass, element}});
            }
            block.delivered = asNamesOr(deliversNames(operation), all);
            return block;
        }
        if (row.name == "Switch") {
            block.messages.push_back("Quil - append localSwInst");
            block.calls = {localSwitchCall};
        } else {
            block.calls = {enumeration(operation, row.readClass)};
        }
        block.delivered = failed ? Lines() : asFarEnds(operation, row.read);
        return block;
    }

    static std::string identityLine(const std::string& operation) {
        return isAssociators(operation) ? " Quil ESI assoc " : " Quil ESI references ";
    }

    Block implementing(const std::string& operation, const Row& row) {
        if (operation == "associatorNames")
            return {{identityLine(operation)}, {identityPath}, {}};
        if (operation == "associators") {
            return {joined({{identityLine(operation)}, identityInstanceLines}),
                    {identityObject()},
                    {classCall("ORVEX_SoftwareIdentity")}};
        }
        return {{identityLine(operation), profileReferenceLine},
                asNamesOr(deliversNames(operation),
                          {{"ORVEX_ElementSoftwareIdentity",
                            {"Antecedent", "ORVEX_SoftwareIdentity", identityPath},
                            {"Dependent", "CIM_RegisteredProfile", profilePath(row.id)}}}),
                {}};
    }

    Block chosen(const std::string& operation, const Row& row, int mask) {
        return joined({(mask & 1) != 0 ? requiring(operation, row) : Block(),
                       (mask & 2) != 0 ? referenced() : Block(),
                       (mask & 4) != 0 ? conforming(operation, row) : Block(),
                       (mask & 8) != 0 ? implementing(operation, row) : Block()});
    }

    void setFailingRead(const std::string& operation, const Row& row,
                        const std::function<void()>& how) {
        const std::string& name = isAssociators(operation) ? row.readClass : row.elementClass;
        setFailing(name, how);
        server->fail("getInstance", name, how);
    }
};

} // namespace

TEST_F(ProfileTraversalTest, FilterChoosesInTheOrderOfTheBits) {
    for (const Row& row : rows)
        for (const std::string& key : {std::string(row.id), mixedCase(row.id)})
            expectFilterToChoose(
                profile, {key}, bitOf, 15, opening,
                [&](const std::string& operation, const Question& question, int mask) {
                    return joined(
                        {before(operation, question, mask), chosen(operation, row, mask)});
                });
}

TEST_F(ProfileTraversalTest, ResultClassNarrowsTheSubProfilesOnly) {
    for (const std::string& resultClass : anyClass()) {
        for (const std::string& written : {resultClass, mixedCase(resultClass)}) {
            const Question question = {"Orvex1", "", written};
            expectAnswers(profile, question, [&](const std::string& operation) {
                const bool skipped =
                    isAssociators(operation) && resultClass != "CIM_RegisteredSubProfile";
                return joined({before(operation, question, 15),
                               skipped ? Block{{requiresLine(operation)}, {}, {}}
                                       : requiring(operation, rows[0]),
                               chosen(operation, rows[0], 14)});
            });
        }
    }
}

TEST_F(ProfileTraversalTest, NullResultClassNamesNoClass) {
    const Question question = {"Orvex1", "", std::nullopt};
    for (const char* operation : {"associatorNames", "associators"}) {
        expectBlock(ask(profile, operation, question), joined({before(operation, question, 15),
                                                               {{requiresLine(operation)}, {}, {}},
                                                               chosen(operation, rows[0], 14)}));
    }
}

TEST_F(ProfileTraversalTest, UnknownSourceEndsItInTheSubProfiles) {
    for (const char* key : {"Orvex3", "none", ""}) {
        for (const char* filter : {"", "CIM_SubProfileRequiresProfile"}) {
            const Question question = {key, filter};
            expectAnswers(profile, question, [&](const std::string& operation) {
                Block end = {{requiresLine(operation), indexLine(operation) + "-1"}, {}, {}};
                if (operation == "referenceNames")
                    end.messages.push_back("Quil index of Reg Profile is -1");
                return joined({before(operation, question, filter[0] == '\0' ? 15 : 1), end});
            });
        }
    }
}

TEST_F(ProfileTraversalTest, UnknownSourceHasNoElementsButAnIdentityForAssociators) {
    for (const char* key : {"Orvex3", "none", ""}) {
        const Question elements = {key, "CIM_ElementConformsToProfile"};
        expectAnswers(profile, elements, [&](const std::string& operation) {
            return joined({before(operation, elements, 4), {{conformsLine(operation)}, {}, {}}});
        });
        const Question identity = {key, "ORVEX_ElementSoftwareIdentity"};
        expectAnswers(profile, identity, [&](const std::string& operation) {
            return joined({before(operation, identity, 8),
                           isAssociators(operation) ? implementing(operation, rows[0])
                                                    : Block{{identityLine(operation)}, {}, {}}});
        });
    }
}

TEST_F(ProfileTraversalTest, UnknownSourceIsNotLookedUpForAnotherResultClass) {
    const Question question = {"none", "", "CIM_RegisteredProfile"};
    for (const char* operation : {"associatorNames", "associators"})
        EXPECT_EQ(ask(profile, operation, question).delivered,
                  implementing(operation, rows[0]).delivered);
}

TEST_F(ProfileTraversalTest, FailingReadLeavesNoElementsAndTheRestFollows) {
    for (const Failure& failure : joined(serverFailures(), libraryFailures())) {
        for (const std::string& operation : traversalOperations()) {
            for (const Row& row : rows) {
                if (isAssociators(operation) && row.name == "Switch")
                    continue; // ends it, see below
                SCOPED_TRACE(operation + row.name + failure.thrown);
                setFailingRead(operation, row, failure.raise);
                const Question question = {row.id};
                expectBlock(ask(profile, operation, question),
                            joined({before(operation, question, 15), requiring(operation, row),
                                    referenced(), conforming(operation, row, true),
                                    implementing(operation, row)}));
                setFailingRead(operation, row, {});
            }
        }
    }
}

TEST_F(ProfileTraversalTest, FailingReadOfTheLocalSwitchEndsAssociatorNamesWithAnException) {
    for (const Failure& failure : joined(serverFailures(), libraryFailures())) {
        server->fail("getInstance", "ORVEX_PhysicalComputerSystem", failure.raise);
        const Question question = {"Orvex2"};
        const Outcome outcome = ask(profile, "associatorNames", question);
        EXPECT_EQ(outcome.thrown, "Exception uninitialized object");
        EXPECT_EQ(outcome.delivered, Lines{subProfilePath("Orvex5")});
        EXPECT_EQ(outcome.trace,
                  traceLines(joined({before("associatorNames", question, 15),
                                     requiring("associatorNames", rows[1]), referenced(),
                                     conforming("associatorNames", rows[1], true)})
                                 .messages));
    }
}

TEST_F(ProfileTraversalTest, FailingReadOfTheLocalSwitchIsDeliveredByAssociatorsAsItIs) {
    for (const Failure& failure : joined(serverFailures(), libraryFailures())) {
        server->fail("getInstance", "ORVEX_PhysicalComputerSystem", failure.raise);
        const Question question = {"Orvex2"};
        Block elements = conforming("associators", rows[1], true);
        elements.delivered = {"uninitialised"};
        expectBlock(ask(profile, "associators", question),
                    joined({before("associators", question, 15), requiring("associators", rows[1]),
                            referenced(), elements, implementing("associators", rows[1])}));
    }
}

TEST_F(ProfileTraversalTest, ExceptionOfAnotherTypeOrOfTheHandlerPasses) {
    for (const std::string& operation : traversalOperations()) {
        for (const Row& row : rows) {
            for (const Failure& failure : otherFailures()) {
                SCOPED_TRACE(operation + row.name);
                setFailingRead(operation, row, failure.raise);
                const Outcome outcome = ask(profile, operation, {row.id});
                EXPECT_EQ(outcome.thrown, failure.thrown);
                EXPECT_EQ(outcome.delivered.size(), row.subProfiles.size());
                setFailingRead(operation, row, {});
            }
            expectRefusalToPass(profile, operation, {row.id},
                                ask(profile, operation, {row.id}).delivered.size());
        }
    }
}

TEST_F(ProfileTraversalTest, SubProfilesAreDeliveredAsClonesOfTheirEntries) {
    ObjectRecorder handler;
    tracedBy([&] {
        profile.associators(provider, {"Orvex1", "CIM_SubProfileRequiresProfile"}, handler);
    });
    handler.delivered.at(1).removeProperty(0);
    EXPECT_EQ(provider.registeredSubProfiles()[1].getPropertyCount(), 7U);
}
