// From a communication mechanism: its object managers and its host.
#include "support/Traversal.h"

PEGASUS_USING_PEGASUS;
using namespace testsupport;

namespace {

const Source mechanism = sourceOf(&ServerProfileProvider::_getCimXmlCMAssociatorNames,
                                  &ServerProfileProvider::_getCimXmlCMAssociators,
                                  &ServerProfileProvider::_getCimXmlCMReferenceNames,
                                  &ServerProfileProvider::_getCimXmlCMReferences);

const std::map<std::string, std::string> startOf = {{"associatorNames", "CimXmlCMAssociatorNames"},
                                                    {"associators", "CimXmlCMAssociators"},
                                                    {"referenceNames", "CimXmlCMReferences"},
                                                    {"references", "CimXmlCMReferences"}};

Lines opening(const std::string& operation, const Question& question) {
    return openingLines(startOf, operation, question);
}

/// The source as the client names it, in another namespace than the request's for once.
const std::string sourcePath = "//client.example.net/root/elsewhere:"
                               "PG_CIMXMLCommunicationMechanism.Name=\"mechanism1\"";

Question asking(const std::string& filter) {
    Question question = {"mechanism1", filter};
    question.source = CIMObjectPath(String(sourcePath.c_str()));
    return question;
}

class CommunicationMechanismTraversalTest : public TraversalTest {
  protected:
    static Block before(const std::string& operation, const Question& question, int mask) {
        return {joined({opening(operation, question), chosenLines(mask, question)}), {}, {}};
    }

    static Block managersOf(const std::string& operation, const Lines& managers = objectManagers,
                            const Lines& failure = {}) {
        Block block = {joined({{" Quil CommMech ForMgr - 1 "}, failure}),
                       {},
                       {enumeration(operation, "CIM_ObjectManager")}};
        if (isAssociators(operation)) {
            block.delivered = asFarEnds(operation, managers);
            return block;
        }
        std::vector<Association> all;
        for (const std::string& manager : managers) {
            // The order of the properties is not that of the keys.
            all.push_back({"CIM_CommMechanismForManager",
                           {"Dependent", "PG_CIMXMLCommunicationMechanism", sourcePath},
                           {"Antecedent", "CIM_ObjectManager", manager}});
        }
        block.delivered = asNamesOr(deliversNames(operation), all);
        return block;
    }

    Block hosted(const std::string& operation) {
        Block block = {{" Quil HostedAccessPoint assoc - 1 "}, {}, {}};
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
            block.delivered =
                asNamesOr(deliversNames(operation),
                          {{"CIM_HostedAccessPoint",
                            {"Antecedent", "ORVEX_ObjectManagerHost", hostPath},
                            {"Dependent", "PG_CIMXMLCommunicationMechanism", sourcePath}}});
        return block;
    }

    static Lines failureLine(const std::string& operation) {
        return {operation == "associators" ? " Quil exception ei for CIM_ObjectManager "
                                           : " Quil exception ni for CIM_ObjectManager "};
    }
};

} // namespace

TEST_F(CommunicationMechanismTraversalTest, FilterChoosesOneOrBothAsSevenAndNothingNarrows) {
    const Chosen chosen = [&](const std::string& operation, const Question& question, int mask) {
        return joined({before(operation, question, mask),
                       (mask & 1) != 0 ? managersOf(operation) : Block(),
                       (mask & 2) != 0 ? hosted(operation) : Block()});
    };
    expectFilterToChoose(mechanism, asking(""),
                         {{"CIM_CommMechanismForManager", 1}, {"CIM_HostedAccessPoint", 2}}, 7,
                         opening, chosen);
    Question another = asking("");
    another.key = "no mechanism";
    expectNoNarrowing(mechanism, another, 7, chosen);
}

TEST_F(CommunicationMechanismTraversalTest, WithoutAManagerOnlyTheHostIsLeft) {
    publish("CIM_ObjectManager", {});
    const Question question = asking("");
    expectAnswers(mechanism, question, [&](const std::string& operation) {
        return joined(
            {before(operation, question, 7), managersOf(operation, {}), hosted(operation)});
    });
}

TEST_F(CommunicationMechanismTraversalTest, FailingReadDeliversNothingAndTheHostFollows) {
    for (const Failure& failure : serverFailures()) {
        setFailing("CIM_ObjectManager", failure.raise);
        const Question question = asking("");
        expectAnswers(mechanism, question, [&](const std::string& operation) {
            return joined({before(operation, question, 7),
                           managersOf(operation, {}, failureLine(operation)), hosted(operation)});
        });
        const Question one = asking("CIM_CommMechanismForManager");
        expectAnswers(mechanism, one, [&](const std::string& operation) {
            return joined(
                {before(operation, one, 1), managersOf(operation, {}, failureLine(operation))});
        });
    }
}

TEST_F(CommunicationMechanismTraversalTest, ExceptionOfAnotherTypePasses) {
    for (const Failure& failure : joined(libraryFailures(), otherFailures())) {
        setFailing("CIM_ObjectManager", failure.raise);
        for (const std::string& operation : traversalOperations()) {
            const Outcome outcome = ask(mechanism, operation, asking(""));
            EXPECT_EQ(outcome.thrown, failure.thrown);
            EXPECT_EQ(outcome.delivered, Lines());
        }
    }
}

TEST_F(CommunicationMechanismTraversalTest, ExceptionsOfTheBuilderAndTheHandlerPass) {
    for (const std::string& operation : traversalOperations())
        expectRefusalToPass(mechanism, operation, asking(""), 3);
    server->forget("ORVEX_ObjectManagerHost");
    const Outcome outcome = ask(mechanism, "associators", asking(""));
    EXPECT_EQ(outcome.thrown, "CIMException 6 ");
    EXPECT_EQ(outcome.delivered.size(), 2U);
}
