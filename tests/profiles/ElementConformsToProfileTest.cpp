// Which elements of the server conform to which profile: naming, enumerating and getting the
// associations.
#include "support/Echo.h"

PEGASUS_USING_PEGASUS;
using namespace testsupport;

namespace {

struct Row {
    const char* elementClass;
    const char* profile;
    const char* failureLine;
    Lines elements;
};

const std::vector<Row> rows = {
    {"ORVEX_Vsan", "Orvex1", " Quil ni for ORVEX_AdminDomain exception ", fabrics},
    {"ORVEX_ComputerSystem", "Orvex2", " Quil ni for ORVEX_ComputerSystem exception ", switches},
    {"CIM_ObjectManager", "Orvex6", " Quil ni for CIM_ObjectManager ", objectManagers},
};

constexpr const char* reference = "Quil regProfRef() Start";

std::vector<Association> conforming(const Row& row) {
    std::vector<Association> all;
    for (const std::string& element : row.elements) {
        all.push_back({"CIM_ElementConformsToProfile",
                       {"ConformantStandard", "CIM_RegisteredProfile", profilePath(row.profile)},
                       {"ManagedElement", row.elementClass, element}});
    }
    return all;
}

class ElementConformsToProfileTest : public EchoTest {
  protected:
    Outcome enumerate(bool names, std::size_t accepted = ~std::size_t(0)) {
        const String nameSpace(requestNameSpace.c_str());
        return names ? observe<PathRecorder>(
                           [&](PathRecorder& handler) {
                               provider._getElementConformstoProfileInstanceNames(
                                   "ignored", handler, nameSpace);
                           },
                           accepted)
                     : observe<InstanceRecorder>(
                           [&](InstanceRecorder& handler) {
                               provider._getElementConformstoProfileInstances("ignored", handler,
                                                                              nameSpace);
                           },
                           accepted);
    }

    /// Expects both enumerations to answer without the rows of `failed`, a bit for each, the first
    /// for 1.
    void expectAllBut(unsigned failed) {
        Lines messages = {" Quil ElementConformsToProfile Instances "};
        std::vector<Association> associations;
        for (std::size_t row = 0; row < rows.size(); ++row) {
            if (row == 1)
                messages.push_back(" Quil ElementConformsToProfile ei - Switch ");
            if ((failed & (1U << row)) != 0) {
                messages.push_back(rows[row].failureLine);
            } else {
                const std::vector<Association> more = conforming(rows[row]);
                associations.insert(associations.end(), more.begin(), more.end());
            }
            messages.push_back(reference);
        }
        for (const bool names : {true, false}) {
            const Outcome outcome = enumerate(names);
            expectOutcome(outcome, asNamesOr(names, associations), messages);
            EXPECT_EQ(outcome.calls,
                      (Lines{"enumerateInstanceNames root/request ORVEX_Vsan",
                             "enumerateInstanceNames root/request ORVEX_ComputerSystem",
                             "enumerateInstanceNames root/request CIM_ObjectManager"}));
        }
    }

    void setFailing(unsigned failed, const std::function<void()>& how) {
        for (std::size_t row = 0; row < rows.size(); ++row)
            server->fail("enumerateInstanceNames", rows[row].elementClass,
                         (failed & (1U << row)) != 0 ? how : std::function<void()>());
    }
};

const EchoClass echoClass = {
    "CIM_ElementConformsToProfile",
    {"ConformantStandard", "CIM_RegisteredProfile", "CIM_RegisteredProfile.InstanceID=\"Orvex2\""},
    {"ManagedElement", "", "ORVEX_Vsan.Name=\"vsan1\""},
    {},
    {},
    false,
    [](ServerProfileProvider& provider, const CIMObjectPath& path, InstanceResponseHandler& to) {
        return provider._getElementConformstoProfileInstance(path, to);
    }};

} // namespace

TEST_F(ElementConformsToProfileTest, PairsTheElementsOfEachClassWithItsProfile) { expectAllBut(0); }

TEST_F(ElementConformsToProfileTest, NameIsWrittenOutWithTheElementsPathAsTheServerGaveIt) {
    EXPECT_EQ(enumerate(true).delivered.at(1),
              "//paths.example.net/root/request:CIM_ElementConformsToProfile."
              "ConformantStandard=\"//paths.example.net/root/request:CIM_RegisteredProfile."
              "InstanceID=\\\"Orvex1\\\"\","
              "ManagedElement=\"ORVEX_Vsan.Name=\\\"vsan2\\\"\"");
}

TEST_F(ElementConformsToProfileTest, RowWhoseQueryFailsContributesNothingAndTheOthersGoOn) {
    for (const Failure& failure : joined(serverFailures(), libraryFailures())) {
        for (unsigned failed = 1; failed < 8; ++failed) {
            SCOPED_TRACE(failure.thrown + ", rows " + std::to_string(failed));
            setFailing(failed, failure.raise);
            expectAllBut(failed);
        }
    }
}

TEST_F(ElementConformsToProfileTest, RowWithoutElementsContributesNothing) {
    server->publish("ORVEX_ComputerSystem", Lines());
    for (const bool names : {true, false}) {
        expectOutcome(
            enumerate(names),
            joined({asNamesOr(names, conforming(rows[0])), asNamesOr(names, conforming(rows[2]))}),
            {" Quil ElementConformsToProfile Instances ", reference,
             " Quil ElementConformsToProfile ei - Switch ", reference, reference});
    }
}

TEST_F(ElementConformsToProfileTest, ExceptionOfAnotherTypePasses) {
    for (const Failure& failure : otherFailures()) {
        for (std::size_t row = 0; row < rows.size(); ++row) {
            setFailing(1U << row, failure.raise);
            for (const bool names : {true, false}) {
                const Outcome outcome = enumerate(names);
                EXPECT_EQ(outcome.thrown, failure.thrown);
                // The third is asked only after the elements of the first two were delivered.
                EXPECT_EQ(outcome.delivered, row < 2
                                                 ? Lines()
                                                 : joined({asNamesOr(names, conforming(rows[0])),
                                                           asNamesOr(names, conforming(rows[1]))}));
                EXPECT_EQ(outcome.calls.size(), row + 1);
            }
        }
    }
}

TEST_F(ElementConformsToProfileTest, ExceptionOfTheHandlerPassesBeforeTheThirdQuery) {
    for (const bool names : {true, false}) {
        const Outcome outcome = enumerate(names, 1);
        EXPECT_EQ(outcome.thrown, refusal);
        EXPECT_EQ(outcome.delivered, Lines{conforming(rows[0])[0].as(names)});
        EXPECT_EQ(outcome.trace,
                  traceLines({" Quil ElementConformsToProfile Instances ", reference,
                              " Quil ElementConformsToProfile ei - Switch ", reference}));
        EXPECT_EQ(outcome.calls.size(), 2U);
        // An exception of the handler is none of the query of the row.
        EXPECT_EQ(enumerate(names, 3).thrown, refusal);
    }
}

TEST_F(ElementConformsToProfileTest, IsGotAsWantedWithoutAPath) { expectAllRules(echoClass); }
