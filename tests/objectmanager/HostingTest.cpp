// What the host of the object manager hosts: its access points and its service.
#include "support/Echo.h"

PEGASUS_USING_PEGASUS;
using namespace testsupport;

namespace {

using HostingTest = EchoTest;

const auto accessPoints = &ServerProfileProvider::_getOrvexSPHostedAccessPointHelper;
const auto service = &ServerProfileProvider::_getOrvexSPHostedServiceHelper;

constexpr const char* destructor = "OrvexOMHost - destructor(): Start ";
const Lines accessPointLines = {" Quil OrvexSPHostedAccessPointHelper - Start ", destructor};
constexpr const char* accessPointFailure =
    " Quil ni OrvexSPHostedAccessPointHelper:EXCEPTION for CIM_CIMXMLCommunicationMechanism ";
const Lines serviceLines = {" Quil OrvexSPHostedServiceHelper - Start ", destructor};
const Lines serviceFailureLines = {
    " Quil OrvexSPHostedServiceHelper - Start ",
    " Quil ni OrvexSPHostedServiceHelper:EXCEPTION for CIM_ObjectManager ", destructor};

Association hosted(const char* name, const char* dependentClass, const std::string& dependent) {
    return {name,
            {"Antecedent", "ORVEX_ObjectManagerHost", hostPath},
            {"Dependent", dependentClass, dependent}};
}

std::vector<Association> hostedAccessPoints() {
    std::vector<Association> all;
    for (const std::string& mechanism : mechanisms)
        all.push_back(
            hosted("CIM_HostedAccessPoint", "PG_CIMXMLCommunicationMechanism", mechanism));
    return all;
}

std::vector<Association> hostedService(const std::string& manager) {
    return {hosted("CIM_HostedService", "CIM_ObjectManager", manager)};
}

const std::vector<EchoClass> echoClasses = {
    {"CIM_HostedAccessPoint",
     {"Antecedent", "ORVEX_ObjectManagerHost",
      "ORVEX_ObjectManagerHost.CreationClassName=\"ORVEX_ObjectManagerHost\",Name=\"any\""},
     {"Dependent", "PG_CIMXMLCommunicationMechanism",
      "PG_CIMXMLCommunicationMechanism.Name=\"mechanism\""},
     {"getOrvexSPHostedAccessPointInstance(): Start "},
     {"getOrvexSpHostedAccessPointInstance () - Exit "},
     true,
     [](ServerProfileProvider& provider, const CIMObjectPath& path, InstanceResponseHandler& to) {
         return provider._getOrvexSPHostedAccessPointInstance(path, to);
     }},
    {"CIM_HostedService",
     {"Antecedent", "ORVEX_ObjectManagerHost",
      "ORVEX_ObjectManagerHost.CreationClassName=\"ORVEX_ObjectManagerHost\",Name=\"any\""},
     {"Dependent", "CIM_ObjectManager", "CIM_ObjectManager.Name=\"manager\""},
     {"getOrvexSPHostedServiceInstance(): Start "},
     {"getOrvexSpHostedServiceInstance () - Exit "},
     true,
     [](ServerProfileProvider& provider, const CIMObjectPath& path, InstanceResponseHandler& to) {
         return provider._getOrvexSPHostedServiceInstance(path, to);
     }},
};

} // namespace

TEST_F(HostingTest, HostsEachMechanismAtTheSameHostEndInRootCimv2) {
    for (const bool names : {true, false}) {
        const Outcome outcome = enumerate(accessPoints, names);
        expectOutcome(outcome, asNamesOr(names, hostedAccessPoints()), accessPointLines);
        EXPECT_EQ(outcome.calls,
                  Lines{"enumerateInstanceNames root/request CIM_CIMXMLCommunicationMechanism"});
    }
}

TEST_F(HostingTest, HostsTheFirstManagerOnly) {
    for (const bool names : {true, false}) {
        const Outcome outcome = enumerate(service, names);
        expectOutcome(outcome, asNamesOr(names, hostedService(objectManagers[0])), serviceLines);
        EXPECT_EQ(outcome.calls, Lines{"enumerateInstanceNames root/request CIM_ObjectManager"});
    }
}

TEST_F(HostingTest, NameIsWrittenOut) {
    EXPECT_EQ(enumerate(service, true).delivered.at(0),
              "//paths.example.net/root/request:CIM_HostedService."
              "Antecedent=\"//paths.example.net/root/cimv2:ORVEX_ObjectManagerHost."
              "CreationClassName=\\\"ORVEX_ObjectManagerHost\\\","
              "Name=\\\"switch1.example.net\\\"\","
              "Dependent=\"//server.example.net/root/interop:PG_ObjectManager."
              "Name=\\\"manager1\\\"\"");
}

TEST_F(HostingTest, WithoutMechanismsThereIsNoAccessPoint) {
    publish("CIM_CIMXMLCommunicationMechanism", {});
    for (const bool names : {true, false})
        expectOutcome(enumerate(accessPoints, names), {}, accessPointLines);
    for (const Failure& failure : joined(serverFailures(), libraryFailures())) {
        SCOPED_TRACE(failure.thrown);
        server->fail("enumerateInstanceNames", "CIM_CIMXMLCommunicationMechanism", failure.raise);
        for (const bool names : {true, false}) {
            expectOutcome(enumerate(accessPoints, names), {},
                          joined({accessPointLines, {accessPointFailure}}));
            // The other class of associations does not ask for them.
            expectOutcome(enumerate(service, names),
                          asNamesOr(names, hostedService(objectManagers[0])), serviceLines);
        }
    }
}

TEST_F(HostingTest, WithoutAManagerTheServiceIsHostedAllTheSameWithAnEmptyEnd) {
    publish("CIM_ObjectManager", {});
    for (const bool names : {true, false})
        expectOutcome(enumerate(service, names), asNamesOr(names, hostedService("")), serviceLines);
    publish("CIM_ObjectManager", objectManagers);
    for (const Failure& failure : joined(serverFailures(), libraryFailures())) {
        SCOPED_TRACE(failure.thrown);
        server->fail("enumerateInstanceNames", "CIM_ObjectManager", failure.raise);
        for (const bool names : {true, false})
            expectOutcome(enumerate(service, names), asNamesOr(names, hostedService("")),
                          serviceFailureLines);
    }
    PathRecorder handler;
    tracedBy([&] { (provider.*service)("", handler, "root/request", false); });
    EXPECT_EQ(describeKeys(handler.delivered.at(0)),
              (Lines{"Antecedent=reference " + hostPath, "Dependent=string "}));
}

TEST_F(HostingTest, NameThatIsGivenOutWithoutAManagerCanBeGot) {
    publish("CIM_ObjectManager", {});
    PathRecorder names;
    tracedBy([&] { (provider.*service)("", names, "root/request", false); });
    ASSERT_EQ(names.delivered.size(), 1U);
    expectGotAgain(echoClasses[1], names.delivered[0],
                   ownPath(requestNameSpace, hostPath.substr(hostPath.find(':') + 1)), "");
}

TEST_F(HostingTest, ExceptionOfAnotherTypePasses) {
    for (const Failure& failure : otherFailures()) {
        server->fail("enumerateInstanceNames", "CIM_CIMXMLCommunicationMechanism", failure.raise);
        server->fail("enumerateInstanceNames", "CIM_ObjectManager", failure.raise);
        for (const bool names : {true, false}) {
            for (const Helper helper : {accessPoints, service}) {
                const Outcome outcome = enumerate(helper, names);
                EXPECT_EQ(outcome.thrown, failure.thrown);
                EXPECT_EQ(outcome.delivered, Lines());
            }
        }
    }
}

TEST_F(HostingTest, HandlerOfTheWrongKindFailsAtTheFirstDelivery) {
    expectOnlyItsKindOfHandler(accessPoints, accessPointLines, 1);
    expectOnlyItsKindOfHandler(service, serviceLines, 1);
    publish("CIM_CIMXMLCommunicationMechanism", {});
    EXPECT_EQ(enumerateInto<PathRecorder>(accessPoints, false).thrown, "");
}

TEST_F(HostingTest, ExceptionOfTheHandlerPassesAfterWhatWasDelivered) {
    for (const bool names : {true, false}) {
        const Outcome outcome = enumerate(accessPoints, names, 1);
        EXPECT_EQ(outcome.thrown, refusal);
        EXPECT_EQ(outcome.delivered, Lines{hostedAccessPoints()[0].as(names)});
        EXPECT_EQ(outcome.trace, traceLines(accessPointLines));
        EXPECT_EQ(enumerate(service, names, 0).thrown, refusal);
    }
}

TEST_F(HostingTest, IsGotAsWantedAtTheWantedPath) {
    for (const EchoClass& wanted : echoClasses)
        expectAllRules(wanted);
}
