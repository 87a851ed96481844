// Which profile a subprofile requires: naming, enumerating and getting the associations.
#include "support/Echo.h"

PEGASUS_USING_PEGASUS;
using namespace testsupport;

namespace {

using SubProfileRequiresProfileTest = EchoTest;

/// Profile and subprofile of each association, in the order of delivery.
const std::vector<std::pair<const char*, const char*>> pairs = {
    {"Orvex1", "Orvex3"}, {"Orvex1", "Orvex4"}, {"Orvex2", "Orvex5"}};

std::vector<Association> associations(const std::string& nameSpace) {
    std::vector<Association> all;
    for (const auto& [profile, subProfile] : pairs) {
        all.push_back(
            {"CIM_SubProfileRequiresProfile",
             {"Antecedent", "CIM_RegisteredProfile", profilePath(profile, nameSpace)},
             {"Dependent", "CIM_RegisteredSubProfile", subProfilePath(subProfile, nameSpace)},
             nameSpace});
    }
    return all;
}

const EchoClass echoClass = {
    "CIM_SubProfileRequiresProfile",
    {"Antecedent", "CIM_RegisteredProfile", "CIM_RegisteredProfile.InstanceID=\"Orvex6\""},
    {"Dependent", "CIM_RegisteredSubProfile", "CIM_RegisteredSubProfile.InstanceID=\"Orvex3\""},
    {},
    {},
    false,
    [](ServerProfileProvider& provider, const CIMObjectPath& path, InstanceResponseHandler& to) {
        return provider._getSubprofileRequiresProfileInstance(path, to);
    }};

} // namespace

TEST_F(SubProfileRequiresProfileTest, NamesOneForEachPairInTheRequestsNamespace) {
    for (const std::string nameSpace : {"root/request", "root/cimv2"}) {
        const Outcome outcome = observe<PathRecorder>([&](PathRecorder& handler) {
            provider._getSubprofileRequiresProfileInstanceNames("ignored", handler,
                                                                nameSpace.c_str());
        });
        expectOutcome(outcome, asNamesOr(true, associations(nameSpace)),
                      repeated(6, "Quil regProfRef() Start"));
        EXPECT_EQ(outcome.calls, Lines());
    }
}

TEST_F(SubProfileRequiresProfileTest, NameIsWrittenOut) {
    PathRecorder handler;
    tracedBy(
        [&] { provider._getSubprofileRequiresProfileInstanceNames("", handler, "root/request"); });
    EXPECT_EQ(text(handler.delivered.at(0)),
              "//paths.example.net/root/request:CIM_SubProfileRequiresProfile."
              "Antecedent=\"//paths.example.net/root/request:CIM_RegisteredProfile."
              "InstanceID=\\\"Orvex1\\\"\","
              "Dependent=\"//paths.example.net/root/request:CIM_RegisteredSubProfile."
              "InstanceID=\\\"Orvex3\\\"\"");
    EXPECT_EQ(describeKeys(handler.delivered[0]),
              (Lines{"Antecedent=reference " + profilePath("Orvex1"),
                     "Dependent=reference " + subProfilePath("Orvex3")}));
}

TEST_F(SubProfileRequiresProfileTest, EnumeratesInstancesWithTheSamePathsAndBothReferences) {
    const Outcome outcome = observe<InstanceRecorder>([&](InstanceRecorder& handler) {
        provider._getSubprofileRequiresProfileInstances("ignored", handler, "root/request");
    });
    expectOutcome(outcome, asNamesOr(false, associations("root/request")),
                  repeated(6, "Quil regProfRef() Start"));
    EXPECT_EQ(outcome.calls, Lines());
}

TEST_F(SubProfileRequiresProfileTest, ExceptionOfTheHandlerPassesAfterWhatWasDelivered) {
    const Outcome names = observe<PathRecorder>(
        [&](PathRecorder& handler) {
            provider._getSubprofileRequiresProfileInstanceNames("", handler, "root/request");
        },
        1);
    EXPECT_EQ(names.thrown, refusal);
    EXPECT_EQ(names.delivered, Lines{associations("root/request")[0].path()});
    EXPECT_EQ(names.trace, traceLines(repeated(4, "Quil regProfRef() Start")));
    const Outcome instances = observe<InstanceRecorder>(
        [&](InstanceRecorder& handler) {
            provider._getSubprofileRequiresProfileInstances("", handler, "root/request");
        },
        2);
    EXPECT_EQ(instances.thrown, refusal);
    EXPECT_EQ(instances.delivered.size(), 2U);
}

TEST_F(SubProfileRequiresProfileTest, IsGotAsWantedWithoutAPath) { expectAllRules(echoClass); }
