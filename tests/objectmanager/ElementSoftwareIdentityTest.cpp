// What the firmware implements: the associations of its identity with the catalogue.
#include "support/Echo.h"

PEGASUS_USING_PEGASUS;
using namespace testsupport;

namespace {

using ElementSoftwareIdentityTest = EchoTest;

const auto helper = &ServerProfileProvider::_getOrvexSPESIHelper;

Association implemented(const char* dependentClass, const std::string& dependent) {
    return {"ORVEX_ElementSoftwareIdentity",
            {"Antecedent", "ORVEX_SoftwareIdentity", identityPath},
            {"Dependent", dependentClass, dependent}};
}

/// One for each entry of the catalogue: the profiles, then the subprofiles.
std::vector<Association> allImplemented() {
    std::vector<Association> all;
    for (const char* id : {"Orvex1", "Orvex2", "Orvex6"})
        all.push_back(implemented("CIM_RegisteredProfile", profilePath(id)));
    for (const char* id : {"Orvex3", "Orvex4", "Orvex5"})
        all.push_back(implemented("CIM_RegisteredSubProfile", subProfilePath(id)));
    return all;
}

constexpr const char* start = " Quil OrvexSPESIHelper - Start ";
constexpr const char* reference = "Quil regProfRef() Start";

EchoClass echoClassWith(const char* dependent) {
    return {
        "ORVEX_ElementSoftwareIdentity",
        {"Antecedent", "ORVEX_SoftwareIdentity", "ORVEX_SoftwareIdentity.InstanceID=\"OrvexSI1\""},
        {"Dependent", "", dependent},
        {"getOrvexSPESIInstance(): Start "},
        {"getOrvexSpESI () - Exit "},
        true,
        [](ServerProfileProvider& provider, const CIMObjectPath& path,
           InstanceResponseHandler& to) { return provider._getOrvexSPESIInstance(path, to); }};
}

} // namespace

TEST_F(ElementSoftwareIdentityTest, PairsTheIdentityInRootCimv2WithTheWholeCatalogue) {
    for (const bool names : {true, false}) {
        const Outcome outcome = enumerate(helper, names);
        expectOutcome(outcome, asNamesOr(names, allImplemented()),
                      joined({{start}, repeated(6, reference)}));
        EXPECT_EQ(outcome.calls, Lines());
    }
}

TEST_F(ElementSoftwareIdentityTest, NameIsWrittenOut) {
    EXPECT_EQ(enumerate(helper, true).delivered.at(3),
              "//paths.example.net/root/request:ORVEX_ElementSoftwareIdentity."
              "Antecedent=\"//paths.example.net/root/cimv2:ORVEX_SoftwareIdentity."
              "InstanceID=\\\"OrvexSI1\\\"\","
              "Dependent=\"//paths.example.net/root/request:CIM_RegisteredSubProfile."
              "InstanceID=\\\"Orvex3\\\"\"");
}

TEST_F(ElementSoftwareIdentityTest, WithoutACatalogueThereIsNoAssociation) {
    ServerProfileProvider empty;
    for (const bool names : {true, false}) {
        InstanceRecorder instances;
        PathRecorder paths;
        EXPECT_EQ(tracedBy([&] {
                      ResponseHandler& handler = names ? static_cast<ResponseHandler&>(paths)
                                                       : static_cast<ResponseHandler&>(instances);
                      empty._getOrvexSPESIHelper("", handler, "root/request", !names);
                  }),
                  traceLines({start}));
        EXPECT_EQ(instances.delivered.size() + paths.delivered.size(), 0U);
    }
}

TEST_F(ElementSoftwareIdentityTest, HandlerOfTheWrongKindFailsAtTheFirstDelivery) {
    expectOnlyItsKindOfHandler(helper, {start, reference}, 0);
}

TEST_F(ElementSoftwareIdentityTest, ExceptionOfTheHandlerPassesAfterWhatWasDelivered) {
    for (const bool names : {true, false}) {
        const Outcome outcome = enumerate(helper, names, 4);
        EXPECT_EQ(outcome.thrown, refusal);
        EXPECT_EQ(outcome.delivered.size(), 4U);
        EXPECT_EQ(outcome.trace, traceLines(joined({{start}, repeated(5, reference)})));
    }
}

TEST_F(ElementSoftwareIdentityTest, IsGotAsWantedWithTheClassOfTheWantedDependent) {
    for (const char* dependent : {"CIM_RegisteredProfile.InstanceID=\"Orvex1\"",
                                  "CIM_RegisteredSubProfile.InstanceID=\"Orvex3\"",
                                  "CIM_RegisteredProfile.InstanceID=\"none\""})
        expectAllRules(echoClassWith(dependent));
}
