// From the object manager: its host, its namespaces, its communication mechanisms, its profile.
#include "support/Traversal.h"

PEGASUS_USING_PEGASUS;
using namespace testsupport;

namespace {

const Source manager = sourceOf(&ServerProfileProvider::_getObjMgrAssociatorNames,
                                &ServerProfileProvider::_getObjMgrAssociators,
                                &ServerProfileProvider::_getObjMgrReferenceNames,
                                &ServerProfileProvider::_getObjMgrReferences);

const std::map<int, std::string> associationOf = {{1, "CIM_HostedService"},
                                                  {2, "CIM_NamespaceInManager"},
                                                  {4, "CIM_CommMechanismForManager"},
                                                  {8, "CIM_ElementConformsToProfile"}};

const std::map<std::string, std::string> startOf = {{"associatorNames", "ObjMgrAssociatorNames"},
                                                    {"associators", "ObjMgrAssociators"},
                                                    {"referenceNames", "ObjMgrReferences"},
                                                    {"references", "ObjMgrReferences"}};

Lines opening(const std::string& operation, const Question& question) {
    return openingLines(startOf, operation, question);
}

class ObjectManagerTraversalTest : public TraversalTest {
  protected:
    /// What stands at the other end of bits 2 and 4: the far ends themselves, or associations.
    Lines far(const std::string& operation, int bit, const Lines& ends) {
        if (isAssociators(operation))
            return asFarEnds(operation, ends);
        std::vector<Association> all;
        for (const std::string& end : ends) {
            all.push_back({associationOf.at(bit),
                           {"Antecedent", "CIM_ObjectManager", managerEnd},
                           {"Dependent",
                            bit == 2 ? "PG_Namespace" : "PG_CIMXMLCommunicationMechanism", end}});
        }
        return asNamesOr(deliversNames(operation), all);
    }

    Block hosted(const std::string& operation) {
        Block block = {{" Quil HostedService assoc - 1 "}, {}, {}};
        if (operation == "associators") {
            block.messages = joined({block.messages, hostInstanceLines});
            block.delivered = {hostObject()};
            block.calls = {classCall("ORVEX_ObjectManagerHost")};
            return block;
        }
        block.messages.push_back(destructorLine);
        if (operation == "associatorNames")
            block.delivered = Lines{hostPath};
        else
            block.delivered = asNamesOr(deliversNames(operation),
                                        {{"CIM_HostedService",
                                          {"Antecedent", "ORVEX_ObjectManagerHost", hostPath},
                                          {"Dependent", "CIM_ObjectManager", managerEnd}}});
        return block;
    }

    Block nameSpacesOf(const std::string& operation) {
        return {{" Quil NamespaceInManager - 1 "},
                far(operation, 2, nameSpaces),
                {enumeration(operation, "CIM_Namespace")}};
    }

    Block mechanismsOf(const std::string& operation) {
        return {{" Quil CommMechanismForManager - 1 "},
                far(operation, 4, mechanisms),
                {enumeration(operation, "CIM_CIMXMLCommunicationMechanism")}};
    }

    Block conforming(const std::string& operation) {
        Block block = {{" Quil ElementConformsToProfile - 1 "}, {}, {}};
        if (operation == "associators") {
            block.delivered = {profileObject(2)};
            return block;
        }
        block.messages.push_back(profileReferenceLine);
        if (operation == "associatorNames")
            block.delivered = Lines{profilePath("Orvex6")};
        else
            block.delivered = asNamesOr(
                deliversNames(operation),
                {{"CIM_ElementConformsToProfile",
                  {"ManagedElement", "CIM_ObjectManager", managerEnd},
                  {"ConformantStandard", "CIM_RegisteredProfile", profilePath("Orvex6")}}});
        return block;
    }

    Block bit(const std::string& operation, int which) {
        return which == 1   ? hosted(operation)
               : which == 2 ? nameSpacesOf(operation)
               : which == 4 ? mechanismsOf(operation)
                            : conforming(operation);
    }

    /// The lines and calls before the bits.
    Block before(const std::string& operation, const Question& question, int mask) {
        Block block = {joined({opening(operation, question), chosenLines(mask, question)}), {}, {}};
        if (!isAssociators(operation))
            block.calls = {"enumerateInstanceNames root/request CIM_ObjectManager"};
        return block;
    }

    Block all(const std::string& operation, const Question& question) {
        return joined({before(operation, question, 15), hosted(operation), nameSpacesOf(operation),
                       mechanismsOf(operation), conforming(operation)});
    }

    /// The failure lines of bit 2 or 4.
    static Lines failureLines(const std::string& operation, int which, const Failure& failure) {
        Lines lines = {which == 2 ? " Quil exception ei for CIM_Namespace "
                                  : " Quil exception ei for CIM_CIMXMLCommunicationMechanism "};
        if (operation == "associators")
            lines.push_back("ObjMgrAssoc:(): Exception - ei CIM_Namespace " + failure.message);
        return lines;
    }

    std::string managerEnd = objectManagers[0];
};

} // namespace

TEST_F(ObjectManagerTraversalTest, FilterChoosesOneOrAllFourInOrderAndNothingNarrows) {
    const Chosen chosen = [&](const std::string& operation, const Question& question, int mask) {
        return mask == 15 ? all(operation, question)
                          : joined({before(operation, question, mask), bit(operation, mask)});
    };
    std::map<std::string, int> bits;
    for (const auto& [mask, name] : associationOf)
        bits[name] = mask;
    expectFilterToChoose(manager, {"manager1"}, bits, 15, opening, chosen);
    expectNoNarrowing(manager, {"no manager"}, 15, chosen);
}

TEST_F(ObjectManagerTraversalTest, FailingReadOfTheManagerEndsReferences) {
    for (const Failure& failure : serverFailures()) {
        setFailing("CIM_ObjectManager", failure.raise);
        const Question question = {"manager1"};
        expectAnswers(manager, question, [&](const std::string& operation) {
            if (isAssociators(operation))
                return all(operation, question);
            return joined({before(operation, question, 15),
                           {{" Quil exception ni for CIM_Namespace -Exiting "}, {}, {}}});
        });
    }
}

TEST_F(ObjectManagerTraversalTest, WithoutAManagerItsEndIsEmpty) {
    publish("CIM_ObjectManager", {});
    managerEnd = "";
    const Question question = {"manager1"};
    expectAnswers(manager, question,
                  [&](const std::string& operation) { return all(operation, question); });
    PathRecorder handler;
    tracedBy([&] { manager.referenceNames(provider, {"", "CIM_HostedService"}, handler); });
    EXPECT_EQ(describeKeys(handler.delivered.at(0)),
              (Lines{"Antecedent=reference " + hostPath, "Dependent=string "}));
}

// The list of what was read last is used again when a read fails.

TEST_F(ObjectManagerTraversalTest, FailingReadOfNamespacesLeavesWhatWasReadBefore) {
    for (const Failure& failure : serverFailures()) {
        setFailing("CIM_Namespace", failure.raise);
        const auto failed = [&](const std::string& operation) {
            return Block{
                joined({{" Quil NamespaceInManager - 1 "}, failureLines(operation, 2, failure)}),
                isAssociators(operation) ? Lines() : far(operation, 2, objectManagers),
                {enumeration(operation, "CIM_Namespace")}};
        };
        const Question question = {"manager1"};
        expectAnswers(manager, question, [&](const std::string& operation) {
            return joined({before(operation, question, 15), hosted(operation), failed(operation),
                           mechanismsOf(operation), conforming(operation)});
        });
        const Question one = {"manager1", "CIM_NamespaceInManager"};
        expectAnswers(manager, one, [&](const std::string& operation) {
            return joined({before(operation, one, 2), failed(operation)});
        });
    }
}

TEST_F(ObjectManagerTraversalTest, FailingReadOfMechanismsLeavesWhatWasReadBefore) {
    for (const Failure& failure : serverFailures()) {
        setFailing("CIM_CIMXMLCommunicationMechanism", failure.raise);
        const auto failed = [&](const std::string& operation, const Lines& left) {
            return Block{joined({{" Quil CommMechanismForManager - 1 "},
                                 failureLines(operation, 4, failure)}),
                         far(operation, 4, left),
                         {enumeration(operation, "CIM_CIMXMLCommunicationMechanism")}};
        };
        const Question question = {"manager1"};
        expectAnswers(manager, question, [&](const std::string& operation) {
            return joined({before(operation, question, 15), hosted(operation),
                           nameSpacesOf(operation), failed(operation, nameSpaces),
                           conforming(operation)});
        });
        const Question one = {"manager1", "CIM_CommMechanismForManager"};
        expectAnswers(manager, one, [&](const std::string& operation) {
            return joined({before(operation, one, 4),
                           failed(operation, isAssociators(operation) ? Lines() : objectManagers)});
        });
    }
}

TEST_F(ObjectManagerTraversalTest, BothReadsFailingLeaveTheManagers) {
    for (const Failure& failure : serverFailures()) {
        setFailing("CIM_Namespace", failure.raise);
        setFailing("CIM_CIMXMLCommunicationMechanism", failure.raise);
        const Question question = {"manager1"};
        expectAnswers(manager, question, [&](const std::string& operation) {
            const Lines left = isAssociators(operation) ? Lines() : objectManagers;
            return joined(
                {before(operation, question, 15),
                 hosted(operation),
                 {joined({{" Quil NamespaceInManager - 1 "}, failureLines(operation, 2, failure)}),
                  far(operation, 2, left),
                  {enumeration(operation, "CIM_Namespace")}},
                 {joined({{" Quil CommMechanismForManager - 1 "},
                          failureLines(operation, 4, failure)}),
                  far(operation, 4, left),
                  {enumeration(operation, "CIM_CIMXMLCommunicationMechanism")}},
                 conforming(operation)});
        });
    }
}

TEST_F(ObjectManagerTraversalTest, EmptyReadReplacesTheList) {
    publish("CIM_Namespace", {});
    setFailing("CIM_CIMXMLCommunicationMechanism", serverFailures()[0].raise);
    for (const std::string& operation : traversalOperations()) {
        EXPECT_EQ(ask(manager, operation, {"manager1"}).delivered,
                  joined({hosted(operation).delivered, conforming(operation).delivered}));
    }
}

TEST_F(ObjectManagerTraversalTest, ExceptionOfAnotherTypePassesAfterWhatWasDelivered) {
    for (const Failure& failure : joined(libraryFailures(), otherFailures())) {
        for (const std::string& operation : traversalOperations()) {
            for (const char* failing :
                 {"CIM_ObjectManager", "CIM_Namespace", "CIM_CIMXMLCommunicationMechanism"}) {
                SCOPED_TRACE(operation + failing);
                const bool isManager = failing == std::string("CIM_ObjectManager");
                setFailing(failing, failure.raise);
                const Outcome outcome = ask(manager, operation, {"manager1"});
                setFailing(failing, {});
                if (isManager && isAssociators(operation)) {
                    EXPECT_EQ(outcome.thrown, "");
                    continue;
                }
                EXPECT_EQ(outcome.thrown, failure.thrown);
                EXPECT_EQ(outcome.delivered.size(), isManager                                 ? 0U
                                                    : failing == std::string("CIM_Namespace") ? 1U
                                                                                              : 3U);
            }
        }
    }
}

TEST_F(ObjectManagerTraversalTest, ExceptionsOfTheBuildersAndTheHandlerPass) {
    server->forget("ORVEX_ObjectManagerHost");
    const Outcome outcome = ask(manager, "associators", {"manager1"});
    EXPECT_EQ(outcome.thrown, "CIMException 6 ");
    EXPECT_EQ(outcome.delivered, Lines());
    for (const char* operation : {"associatorNames", "referenceNames", "references"})
        expectRefusalToPass(manager, operation, {"manager1"}, 6);
}

TEST_F(ObjectManagerTraversalTest, ProfileIsDeliveredAsACloneOfItsEntry) {
    ObjectRecorder handler;
    tracedBy([&] {
        manager.associators(provider, {"manager1", "CIM_ElementConformsToProfile"}, handler);
    });
    handler.delivered.at(0).removeProperty(0);
    EXPECT_EQ(provider.registeredProfiles()[2].getPropertyCount(), 7U);
}
