// What the object manager has: its communication mechanisms and its namespaces.
#include "support/Echo.h"

PEGASUS_USING_PEGASUS;
using namespace testsupport;

namespace {

using ManagerMembershipTest = EchoTest;

struct Membership {
    void (ServerProfileProvider::*helper)(String, ResponseHandler&, const String&, bool);
    const char* name;
    const char* memberClass; ///< as the association declares it
    const char* queried;
    Lines members;
};

const std::vector<Membership> memberships = {
    {&ServerProfileProvider::_getCommMechForMgrHelper, "CIM_CommMechanismForManager",
     "PG_CIMXMLCommunicationMechanism", "CIM_CIMXMLCommunicationMechanism", mechanisms},
    {&ServerProfileProvider::_getNSInMgrHelper, "CIM_NamespaceInManager", "PG_Namespace",
     "CIM_Namespace", nameSpaces},
};

// The same three lines for both.
constexpr const char* start = " Quil NSInMgrHelper - Start ";
constexpr const char* managersFailed = " Quil exception ni for CIM_Namespace -Exiting ";
constexpr const char* membersFailed = " Quil exception ei for CIM_CIMXMLCommunicationMechanism ";

std::vector<Association> associations(const Membership& membership, const std::string& manager,
                                      const Lines& members) {
    std::vector<Association> all;
    for (const std::string& member : members) {
        all.push_back({membership.name,
                       {"Antecedent", "CIM_ObjectManager", manager},
                       {"Dependent", membership.memberClass, member}});
    }
    return all;
}

Lines calls(const Membership& membership) {
    return {"enumerateInstanceNames root/request CIM_ObjectManager",
            std::string("enumerateInstanceNames root/request ") + membership.queried};
}

const std::vector<EchoClass> echoClasses = {
    {"CIM_CommMechanismForManager",
     {"Antecedent", "CIM_ObjectManager", "CIM_ObjectManager.Name=\"manager\""},
     {"Dependent", "PG_CIMXMLCommunicationMechanism",
      "PG_CIMXMLCommunicationMechanism.Name=\"mechanism\""},
     {"getCommMechForMgrInstance(): Start "},
     {"getCommMechForMgrInstance () - Exit "},
     true,
     [](ServerProfileProvider& provider, const CIMObjectPath& path, InstanceResponseHandler& to) {
         return provider._getCommMechForMgrInstance(path, to);
     }},
    {"CIM_NamespaceInManager",
     {"Antecedent", "CIM_ObjectManager", "CIM_ObjectManager.Name=\"manager\""},
     {"Dependent", "PG_Namespace", "PG_Namespace.Name=\"root/cimv2\""},
     {"getNSInMgrInstance(): Start "},
     {"getNSInMgrInstance () - Exit "},
     true,
     [](ServerProfileProvider& provider, const CIMObjectPath& path, InstanceResponseHandler& to) {
         return provider._getNSInMgrInstance(path, to);
     }},
};

} // namespace

TEST_F(ManagerMembershipTest, EachMemberIsPairedWithTheFirstManagerInTheServersOrder) {
    for (const Membership& membership : memberships) {
        for (const bool names : {true, false}) {
            const Outcome outcome = enumerate(membership.helper, names);
            expectOutcome(
                outcome,
                asNamesOr(names, associations(membership, objectManagers[0], membership.members)),
                {start});
            EXPECT_EQ(outcome.calls, calls(membership));
        }
    }
}

TEST_F(ManagerMembershipTest, NameIsWrittenOutWithTheEndsAsTheServerGaveThem) {
    EXPECT_EQ(enumerate(&ServerProfileProvider::_getCommMechForMgrHelper, true).delivered.at(1),
              "//paths.example.net/root/request:CIM_CommMechanismForManager."
              "Antecedent=\"//server.example.net/root/interop:PG_ObjectManager."
              "Name=\\\"manager1\\\"\","
              "Dependent=\"root/interop:PG_CIMXMLCommunicationMechanism."
              "Name=\\\"mechanism2\\\"\"");
}

TEST_F(ManagerMembershipTest, FailingQueryOfTheManagersEndsTheOperation) {
    for (const Membership& membership : memberships) {
        for (const Failure& failure : joined(serverFailures(), libraryFailures())) {
            SCOPED_TRACE(membership.name + failure.thrown);
            server->fail("enumerateInstanceNames", "CIM_ObjectManager", failure.raise);
            for (const bool names : {true, false}) {
                for (const bool membersFail : {false, true}) {
                    server->fail("enumerateInstanceNames", membership.queried,
                                 membersFail ? failure.raise : std::function<void()>());
                    const Outcome outcome = enumerate(membership.helper, names);
                    expectOutcome(outcome, {}, {start, managersFailed});
                    EXPECT_EQ(outcome.calls, Lines{calls(membership)[0]});
                }
            }
        }
    }
}

TEST_F(ManagerMembershipTest, FailingQueryOfTheMembersPairsTheManagersWithTheFirst) {
    for (const Membership& membership : memberships) {
        for (const Failure& failure : joined(serverFailures(), libraryFailures())) {
            SCOPED_TRACE(membership.name + failure.thrown);
            server->fail("enumerateInstanceNames", membership.queried, failure.raise);
            for (const bool names : {true, false}) {
                publish("CIM_ObjectManager", objectManagers);
                const Outcome outcome = enumerate(membership.helper, names);
                expectOutcome(
                    outcome,
                    asNamesOr(names, associations(membership, objectManagers[0], objectManagers)),
                    {start, membersFailed});
                EXPECT_EQ(outcome.calls, calls(membership));
                publish("CIM_ObjectManager", {});
                expectOutcome(enumerate(membership.helper, names), {}, {start, membersFailed});
            }
        }
    }
}

TEST_F(ManagerMembershipTest, WithoutAManagerTheAntecedentIsEmpty) {
    publish("CIM_ObjectManager", {});
    for (const Membership& membership : memberships) {
        for (const bool names : {true, false}) {
            expectOutcome(enumerate(membership.helper, names),
                          asNamesOr(names, associations(membership, "", membership.members)),
                          {start});
        }
        PathRecorder handler;
        tracedBy([&] { (provider.*membership.helper)("", handler, "root/request", false); });
        EXPECT_EQ(describeKeys(handler.delivered.at(0)),
                  (Lines{"Antecedent=string ", "Dependent=reference " + membership.members[0]}));
    }
}

TEST_F(ManagerMembershipTest, NameThatIsGivenOutWithoutAManagerCanBeGot) {
    publish("CIM_ObjectManager", {});
    for (std::size_t i = 0; i < memberships.size(); ++i) {
        PathRecorder names;
        tracedBy([&] { (provider.*memberships[i].helper)("", names, "root/request", false); });
        ASSERT_EQ(names.delivered.size(), 2U);
        const std::string member = memberships[i].members[0];
        expectGotAgain(echoClasses[i], names.delivered[0], "",
                       ownPath(requestNameSpace, member.substr(member.find(':') + 1)));
    }
}

TEST_F(ManagerMembershipTest, WithoutMembersThereIsNoAssociation) {
    for (const Membership& membership : memberships) {
        publish(membership.queried, {});
        for (const bool names : {true, false})
            expectOutcome(enumerate(membership.helper, names), {}, {start});
    }
}

TEST_F(ManagerMembershipTest, ExceptionOfAnotherTypePasses) {
    for (const Membership& membership : memberships) {
        for (const Failure& failure : otherFailures()) {
            for (const char* failing : {"CIM_ObjectManager", membership.queried}) {
                server->fail("enumerateInstanceNames", failing, failure.raise);
                const Outcome outcome = enumerate(membership.helper, true);
                EXPECT_EQ(outcome.thrown, failure.thrown);
                EXPECT_EQ(outcome.delivered, Lines());
                EXPECT_EQ(outcome.trace, traceLines({start}));
                server->fail("enumerateInstanceNames", failing, std::function<void()>());
            }
        }
    }
}

TEST_F(ManagerMembershipTest, HandlerOfTheWrongKindFailsAtTheFirstDelivery) {
    for (const Membership& membership : memberships) {
        expectOnlyItsKindOfHandler(membership.helper, {start}, 2);
        publish(membership.queried, {});
        EXPECT_EQ(enumerateInto<PathRecorder>(membership.helper, false).thrown, "");
    }
}

TEST_F(ManagerMembershipTest, ExceptionOfTheHandlerPassesAfterWhatWasDelivered) {
    for (const Membership& membership : memberships) {
        for (const bool names : {true, false}) {
            const Outcome outcome = enumerate(membership.helper, names, 1);
            EXPECT_EQ(outcome.thrown, refusal);
            EXPECT_EQ(outcome.delivered,
                      asNamesOr(names, associations(membership, objectManagers[0],
                                                    {membership.members[0]})));
            EXPECT_EQ(outcome.trace, traceLines({start}));
        }
    }
}

TEST_F(ManagerMembershipTest, IsGotAsWantedAtTheWantedPath) {
    for (const EchoClass& wanted : echoClasses)
        expectAllRules(wanted);
}
