// From a namespace: its object managers.
#include "support/Traversal.h"

PEGASUS_USING_PEGASUS;
using namespace testsupport;

namespace {

const Source nameSpaceSource = sourceOf(&ServerProfileProvider::_getNamespaceAssociatorNames,
                                        &ServerProfileProvider::_getNamespaceAssociators,
                                        &ServerProfileProvider::_getNamespaceReferenceNames,
                                        &ServerProfileProvider::_getNamespaceReferences);

const std::map<std::string, std::string> startOf = {{"associatorNames", "NamespaceAssociatorNames"},
                                                    {"associators", "NamespaceAssociators"},
                                                    {"referenceNames", "NamespaceReferenceNames"},
                                                    {"references", "NamespaceReferences"}};

Lines opening(const std::string& operation, const Question& question) {
    return openingLines(startOf, operation, question);
}

/// The source as the client names it, in another namespace than the request's for once.
const std::string sourcePath =
    "//client.example.net/root/elsewhere:PG_Namespace.Name=\"root/cimv2\"";

Question asking(const std::string& filter) {
    Question question = {"root/cimv2", filter};
    question.source = CIMObjectPath(String(sourcePath.c_str()));
    return question;
}

class NamespaceTraversalTest : public TraversalTest {
  protected:
    static Block answer(const std::string& operation, const Question& question, int mask,
                        const Lines& managers = objectManagers, const Lines& failure = {}) {
        Block block = {
            joined({opening(operation, question),
                    chosenLines(mask, question),
                    {isAssociators(operation) ? " Quil NS In Mgr - 1 " : " Quil NS in Mgr - 1 "},
                    failure}),
            {},
            {enumeration(operation, "CIM_ObjectManager")}};
        if (isAssociators(operation)) {
            block.delivered = asFarEnds(operation, managers);
            return block;
        }
        std::vector<Association> all;
        for (const std::string& manager : managers) {
            // The order of the properties is not that of the keys.
            all.push_back({"CIM_NamespaceInManager",
                           {"Dependent", "PG_Namespace", sourcePath},
                           {"Antecedent", "CIM_ObjectManager", manager}});
        }
        block.delivered = asNamesOr(deliversNames(operation), all);
        return block;
    }
};

} // namespace

TEST_F(NamespaceTraversalTest, FilterChoosesItOrAllAsSevenAndNothingNarrows) {
    const Chosen chosen = [](const std::string& operation, const Question& question, int mask) {
        return answer(operation, question, mask);
    };
    expectFilterToChoose(nameSpaceSource, asking(""), {{"CIM_NamespaceInManager", 1}}, 7, opening,
                         chosen);
    Question another = asking("");
    another.key = "no namespace";
    expectNoNarrowing(nameSpaceSource, another, 7, chosen);
}

TEST_F(NamespaceTraversalTest, WithoutAManagerOrItsReadThereIsNothing) {
    const Question question = asking("");
    for (const Failure& failure : serverFailures()) {
        setFailing("CIM_ObjectManager", failure.raise);
        expectAnswers(nameSpaceSource, question, [&](const std::string& operation) {
            return answer(operation, question, 7, {},
                          {operation == "associators"
                               ? " Quil exception ei for CIM_ObjectManager "
                               : " Quil exception ni for CIM_ObjectManager "});
        });
    }
    setFailing("CIM_ObjectManager", {});
    publish("CIM_ObjectManager", {});
    expectAnswers(nameSpaceSource, question,
                  [&](const std::string& operation) { return answer(operation, question, 7, {}); });
}

TEST_F(NamespaceTraversalTest, ExceptionOfAnotherTypeOrOfTheHandlerPasses) {
    for (const std::string& operation : traversalOperations())
        expectRefusalToPass(nameSpaceSource, operation, asking(""), 2);
    for (const Failure& failure : joined(libraryFailures(), otherFailures())) {
        setFailing("CIM_ObjectManager", failure.raise);
        for (const std::string& operation : traversalOperations()) {
            const Outcome outcome = ask(nameSpaceSource, operation, asking(""));
            EXPECT_EQ(outcome.thrown, failure.thrown);
            EXPECT_EQ(outcome.delivered, Lines());
        }
    }
}
