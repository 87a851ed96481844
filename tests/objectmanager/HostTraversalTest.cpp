// From the host of the object manager: its service and its access points.
#include "support/Traversal.h"

PEGASUS_USING_PEGASUS;
using namespace testsupport;

namespace {

const Source host = sourceOf(&ServerProfileProvider::_getOrvexOMHostAssociatorNames,
                             &ServerProfileProvider::_getOrvexOMHostAssociators,
                             &ServerProfileProvider::_getOrvexOMHostReferenceNames,
                             &ServerProfileProvider::_getOrvexOMHostReferences);

const std::map<std::string, std::string> startOf = {
    {"associatorNames", "orvexOMHostAssociatorNames"},
    {"associators", "orvexOMHostAssociators"},
    {"referenceNames", "orvexOMHostReferenceNames"},
    {"references", "orvexOMHostReferences"}};

Lines opening(const std::string& operation, const Question& question) {
    return openingLines(startOf, operation, question);
}

/// The name of the record, which is not that of the paths.
constexpr const char* hostKey = "switch1.example.net";

struct Part {
    int bit;
    std::string filter;
    std::string line;
    std::string farClass;
    std::string dependentClass; ///< as the association declares it
};

const Part service = {1, "CIM_HostedService", " Quil HostedService assoc - 1 ", "CIM_ObjectManager",
                      "CIM_ObjectManager"};
const Part accessPoint = {2, "CIM_HostedAccessPoint", " Quil HostedAccessPoint - 1 ",
                          "CIM_CIMXMLCommunicationMechanism", "PG_CIMXMLCommunicationMechanism"};

class HostTraversalTest : public TraversalTest {
  protected:
    static Block before(const std::string& operation, const Question& question, int mask) {
        Block block = {joined({opening(operation, question), chosenLines(mask, question)}), {}, {}};
        if (!isAssociators(operation))
            block.messages.push_back(destructorLine);
        return block;
    }

    /// What the part delivers when it has these far ends.
    static Block farEnds(const std::string& operation, const Part& part, const Lines& ends,
                         bool failed) {
        Block block = {
            {part.line, " Quil key value matched "}, {}, {enumeration(operation, part.farClass)}};
        if (failed) {
            const bool namesOnly = part.bit == 1 && operation != "associators";
            block.messages.push_back(std::string(" Quil exception ") + (namesOnly ? "ni" : "ei") +
                                     " for " + part.farClass + " ");
        }
        if (isAssociators(operation)) {
            block.delivered = asFarEnds(operation, ends);
            return block;
        }
        std::vector<Association> all;
        for (const std::string& end : ends) {
            all.push_back({part.filter,
                           {"Antecedent", "ORVEX_ObjectManagerHost", hostPath},
                           {"Dependent", part.dependentClass, end}});
        }
        block.delivered = asNamesOr(deliversNames(operation), all);
        return block;
    }
};

} // namespace

TEST_F(HostTraversalTest, FilterChoosesOneOrTheServiceThenTheAccessPointsAsSevenAndNothingNarrows) {
    const Chosen chosen = [](const std::string& operation, const Question& question, int mask) {
        return joined(
            {before(operation, question, mask),
             (mask & 1) != 0 ? farEnds(operation, service, objectManagers, false) : Block(),
             (mask & 2) != 0 ? farEnds(operation, accessPoint, mechanisms, false) : Block()});
    };
    for (const std::string key : {hostKey, "SWITCH1.Example.NET"})
        expectFilterToChoose(host, {key}, {{service.filter, 1}, {accessPoint.filter, 2}}, 7,
                             opening, chosen);
    expectNoNarrowing(host, {hostKey}, 7, chosen);
}

TEST_F(HostTraversalTest, AnyOtherKeyDeliversNothingAndReadsNothing) {
    for (const char* key : {"paths.example.net", "switch1", "", "ORVEX_ObjectManagerHost"}) {
        const Question question = {key};
        expectAnswers(host, question, [&](const std::string& operation) {
            return joined(
                {before(operation, question, 7), {{service.line, accessPoint.line}, {}, {}}});
        });
    }
}

TEST_F(HostTraversalTest, FailingReadLeavesWhatWasReadBefore) {
    for (const Failure& failure : joined(serverFailures(), libraryFailures())) {
        for (int failed = 1; failed < 4; ++failed) {
            SCOPED_TRACE(failure.thrown + std::to_string(failed));
            const bool noManagers = (failed & 1) != 0;
            const bool noMechanisms = (failed & 2) != 0;
            setFailing("CIM_ObjectManager", noManagers ? failure.raise : std::function<void()>());
            setFailing("CIM_CIMXMLCommunicationMechanism",
                       noMechanisms ? failure.raise : std::function<void()>());
            const Lines first = noManagers ? Lines() : objectManagers;
            const Lines second = noMechanisms ? first : mechanisms;
            const Question question = {hostKey};
            expectAnswers(host, question, [&](const std::string& operation) {
                return joined({before(operation, question, 7),
                               farEnds(operation, service, first, noManagers),
                               farEnds(operation, accessPoint, second, noMechanisms)});
            });
            const Question one = {hostKey, "CIM_HostedAccessPoint"};
            expectAnswers(host, one, [&](const std::string& operation) {
                return joined({before(operation, one, 2),
                               farEnds(operation, accessPoint, noMechanisms ? Lines() : mechanisms,
                                       noMechanisms)});
            });
        }
    }
}

TEST_F(HostTraversalTest, EmptyReadReplacesTheList) {
    publish("CIM_CIMXMLCommunicationMechanism", {});
    const Question question = {hostKey};
    expectAnswers(host, question, [&](const std::string& operation) {
        return joined({before(operation, question, 7),
                       farEnds(operation, service, objectManagers, false),
                       farEnds(operation, accessPoint, {}, false)});
    });
}

TEST_F(HostTraversalTest, ExceptionOfAnotherTypeOrOfTheHandlerPasses) {
    for (const std::string& operation : traversalOperations())
        expectRefusalToPass(host, operation, {hostKey}, 4);
    for (const Failure& failure : otherFailures()) {
        for (const std::string& operation : traversalOperations()) {
            setFailing("CIM_ObjectManager", {});
            setFailing("CIM_CIMXMLCommunicationMechanism", failure.raise);
            Outcome outcome = ask(host, operation, {hostKey});
            EXPECT_EQ(outcome.thrown, failure.thrown);
            EXPECT_EQ(outcome.delivered.size(), 2U);
            setFailing("CIM_ObjectManager", failure.raise);
            outcome = ask(host, operation, {hostKey});
            EXPECT_EQ(outcome.thrown, failure.thrown);
            EXPECT_EQ(outcome.delivered, Lines());
        }
    }
}
