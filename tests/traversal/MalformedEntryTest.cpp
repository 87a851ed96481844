// A catalogue whose subprofiles have lost their InstanceID: what reads them fails with the error of
// the builders, after what was delivered before.
#include "support/Traversal.h"

PEGASUS_USING_PEGASUS;
using namespace testsupport;

namespace {

class MalformedEntryTest : public AssociationTest {
  protected:
    MalformedEntryTest() {
        server->define(makeClass("CIM_RegisteredSubProfile", {"string Caption"}));
        broken.cimomHandle() = handle;
        tracedBy([&] { broken.initData(); });
    }

    ServerProfileProvider broken;
};

struct Row {
    const char* name;
    std::function<void(ServerProfileProvider&, PathRecorder&)> call;
    std::size_t delivered;
};

const std::vector<Row> rows = {
    {"subprofile requires profile",
     [](ServerProfileProvider& provider, PathRecorder& to) {
         provider._getSubprofileRequiresProfileInstanceNames("", to, "root/request");
     },
     0},
    {"element software identity",
     [](ServerProfileProvider& provider, PathRecorder& to) {
         provider._getOrvexSPESIHelper("", to, "root/request", false);
     },
     3},
    {"associator names of a profile",
     [](ServerProfileProvider& provider, PathRecorder& to) {
         provider._getRegisteredProfileAssociatorNames("Orvex1", "", "", "", "", to,
                                                       "root/request");
     },
     0},
    {"reference names of a profile",
     [](ServerProfileProvider& provider, PathRecorder& to) {
         provider._getRegisteredProfileReferenceNames("Orvex2", "", "", to, "root/request");
     },
     0},
    {"associator names of a subprofile",
     [](ServerProfileProvider& provider, PathRecorder& to) {
         provider._getRegisteredSubProfileAssociatorNames("Orvex3", "", "", "", "", to,
                                                          "root/request");
     },
     0},
    {"reference names of a subprofile",
     [](ServerProfileProvider& provider, PathRecorder& to) {
         provider._getRegisteredSubProfileReferenceNames("Orvex3", "ORVEX_ElementSoftwareIdentity",
                                                         "", to, "root/request");
     },
     0},
    {"associator names of the software identity",
     [](ServerProfileProvider& provider, PathRecorder& to) {
         provider._getOrvexSIAssociatorReferenceHelper("OrvexSI1", "", "", "", "", false, false, to,
                                                       "root/request", 0);
     },
     3},
    {"reference names of the software identity",
     [](ServerProfileProvider& provider, PathRecorder& to) {
         provider._getOrvexSIAssociatorReferenceHelper("OrvexSI1", "", "", "", "", false, false, to,
                                                       "root/request", 2);
     },
     3},
};

} // namespace

TEST_F(MalformedEntryTest, ErrorOfTheBuilderPassesAfterWhatWasDelivered) {
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        const Outcome outcome =
            observe<PathRecorder>([&](PathRecorder& handler) { row.call(broken, handler); });
        EXPECT_EQ(outcome.thrown, "CIMException 4 key InstanceId not present - internal error");
        EXPECT_EQ(outcome.delivered.size(), row.delivered);
    }
}

TEST_F(MalformedEntryTest, WhatDoesNotReadTheEntryIsServed) {
    const Outcome elements = observe<PathRecorder>([&](PathRecorder& handler) {
        broken._getElementConformstoProfileInstanceNames("", handler, "root/request");
    });
    EXPECT_EQ(elements.thrown, "");
    EXPECT_EQ(elements.delivered.size(), 5U);
    const Outcome none = observe<PathRecorder>([&](PathRecorder& handler) {
        // The server's profile has no subprofile.
        broken._getRegisteredProfileAssociatorNames("Orvex6", "CIM_SubProfileRequiresProfile", "",
                                                    "", "", handler, "root/request");
    });
    EXPECT_EQ(none.thrown, "");
}
