// The profile catalogue: what it holds, how it is built, and how an entry is found in it.
#include "support/ModuleTest.h"

#include <Pegasus/Common/CIMQualifier.h>

PEGASUS_USING_PEGASUS;
using namespace testsupport;

namespace {

struct Entry {
    const char* instanceId;
    const char* registeredName;
    const char* className;
};

const std::vector<Entry> profiles = {{"Orvex1", "Fabric", "CIM_RegisteredProfile"},
                                     {"Orvex2", "Switch", "CIM_RegisteredProfile"},
                                     {"Orvex6", "Server", "CIM_RegisteredProfile"}};
const std::vector<Entry> subProfiles = {
    {"Orvex3", "Zone Control", "CIM_RegisteredSubProfile"},
    {"Orvex4", "Enhanced Zoning and Enhanced Zoning Control", "CIM_RegisteredSubProfile"},
    {"Orvex5", "Blades", "CIM_RegisteredSubProfile"}};

/// An instance of a profile class whose InstanceID is `value`.
CIMInstance withInstanceId(const CIMValue& value, const char* property = "InstanceID") {
    CIMInstance instance(CIMName("CIM_RegisteredProfile"));
    instance.addProperty(CIMProperty(CIMName("RegisteredName"), CIMValue(String("a name"))));
    instance.addProperty(CIMProperty(CIMName(property), value));
    return instance;
}

/// The message and code of what `work` throws.
template <class Work>
std::string thrownBy(Work work) {
    try {
        work();
    } catch (const CIMException& exception) {
        return std::to_string(exception.getCode()) + " " + text(exception.getMessage());
    } catch (const Exception& exception) {
        return "no CIMException: " + text(exception.getMessage());
    }
    return "nothing";
}

constexpr const char* noInstanceId = "4 key InstanceId not present - internal error";
constexpr const char* noValue = "4 key InstanceId not present - internal error - 2";

class CatalogueTest : public ModuleTest {
  protected:
    CatalogueTest() { provider.cimomHandle() = handle; }

    static void expectEntries(const Array<CIMInstance>& instances,
                              const std::vector<Entry>& entries) {
        ASSERT_EQ(instances.size(), entries.size());
        for (Uint32 i = 0; i < instances.size(); ++i) {
            const Entry& entry = entries[i];
            SCOPED_TRACE(entry.instanceId);
            EXPECT_EQ(
                describe(instances[i]),
                (Lines{std::string("InstanceID: string ") + entry.instanceId,
                       "RegisteredOrganization: uint16 11", "OtherRegisteredOrganization: string ",
                       std::string("RegisteredName: string ") + entry.registeredName,
                       "RegisteredVersion: string 1.1.0", "AdvertiseTypes: uint16[] 3 ",
                       "AdvertiseTypeDescriptions: string[] null"}));
            EXPECT_EQ(text(instances[i].getClassName().getString()), entry.className);
            EXPECT_EQ(text(instances[i].getPath()),
                      std::string("//switch1.example.net/root/cimv2:") + entry.className +
                          ".InstanceID=\"" + entry.instanceId + "\"");
            EXPECT_EQ(describeKeys(instances[i].getPath()),
                      (Lines{std::string("InstanceID=string ") + entry.instanceId}));
        }
    }
};

} // namespace

TEST_F(CatalogueTest, IsEmptyFromConstruction) {
    EXPECT_EQ(provider.registeredProfiles().size(), 0U);
    EXPECT_EQ(provider.registeredSubProfiles().size(), 0U);
}

TEST_F(CatalogueTest, HoldsThreeProfilesAndThreeSubProfilesInTheirOrder) {
    provider.initData();
    expectEntries(provider.registeredProfiles(), profiles);
    expectEntries(provider.registeredSubProfiles(), subProfiles);
}

TEST_F(CatalogueTest, IsBuiltUnderTraceInTheOrderOfTheInstanceIds) {
    EXPECT_EQ(tracedBy([&] { provider.initData(); }), traceLines(catalogueLines()));
}

TEST_F(CatalogueTest, ReadsEachClassFromRootCimv2WithItsQualifiers) {
    provider.initData();
    const std::string flags = " localOnly=0 qualifiers=1 origin=0 properties=all";
    const std::string profile = "getClass root/cimv2 CIM_RegisteredProfile" + flags;
    const std::string subProfile = "getClass root/cimv2 CIM_RegisteredSubProfile" + flags;
    EXPECT_EQ(server->calls,
              (Lines{profile, profile, subProfile, subProfile, subProfile, profile}));
}

TEST_F(CatalogueTest, CarriesTheQualifiersOfItsClassAndLeavesTheClassAlone) {
    const CIMClass known = CIMOMHandle().getClass(
        OperationContext(), CIMNamespaceName("root/cimv2"), CIMName("CIM_RegisteredProfile"), false,
        true, false, CIMPropertyList());
    provider.initData();
    const CIMInstance instance = provider.registeredProfiles()[2];
    ASSERT_EQ(instance.getQualifierCount(), 2U);
    EXPECT_EQ(text(instance.getQualifier(0).getName().getString()), "Version");
    EXPECT_EQ(text(instance.getQualifier(1).getName().getString()), "Description");
    EXPECT_TRUE(known.getProperty(0).getValue().isNull());
}

TEST_F(CatalogueTest, IsAppendedToBySecondCall) {
    provider.initData();
    provider.initData();
    ASSERT_EQ(provider.registeredProfiles().size(), 6U);
    ASSERT_EQ(provider.registeredSubProfiles().size(), 6U);
    for (Uint32 i = 0; i < 3; ++i)
        EXPECT_TRUE(
            provider.registeredProfiles()[i].identical(provider.registeredProfiles()[i + 3]));
}

TEST_F(CatalogueTest, LeavesOutAPropertyThatTheClassDoesNotDefine) {
    for (const char* missing :
         {"AdvertiseTypes", "RegisteredOrganization", "OtherRegisteredOrganization",
          "RegisteredName", "RegisteredVersion", "InstanceID"}) {
        SCOPED_TRACE(missing);
        Lines expected;
        Lines defined;
        const std::pair<const char*, const char*> all[] = {
            {"string InstanceID", "InstanceID: string X1"},
            {"uint16[] AdvertiseTypes", "AdvertiseTypes: uint16[] 3 "},
            {"string RegisteredVersion", "RegisteredVersion: string 1.1.0"},
            {"string RegisteredName", "RegisteredName: string A name"},
            {"string OtherRegisteredOrganization", "OtherRegisteredOrganization: string "},
            {"uint16 RegisteredOrganization", "RegisteredOrganization: uint16 11"},
        };
        for (const auto& [declaration, value] : all) {
            if (std::string(value).find(std::string(missing) + ":") != 0) {
                defined.push_back(declaration);
                expected.push_back(value);
            }
        }
        server->define(makeClass("CIM_RegisteredProfile", defined));
        const CIMInstance instance = provider.buildRegisteredProfileInstance(
            "CIM_RegisteredProfile", RegisteredProfile("X1", "A name"));
        EXPECT_EQ(describe(instance), expected);
        EXPECT_EQ(describeKeys(instance.getPath()), (Lines{"InstanceID=string X1"}));
    }
}

TEST_F(CatalogueTest, KeepsTheClassDefaultOfAPropertyThatItDoesNotSet) {
    CIMClass cimClass = makeClass("CIM_RegisteredProfile", {"string InstanceID"});
    Array<String> descriptions;
    descriptions.append(String("by default"));
    cimClass.addProperty(CIMProperty(CIMName("AdvertiseTypeDescriptions"), CIMValue(descriptions)));
    cimClass.addProperty(CIMProperty(CIMName("RegisteredName"), CIMValue(String("by default"))));
    server->define(cimClass);
    EXPECT_EQ(describe(provider.buildRegisteredProfileInstance("CIM_RegisteredProfile",
                                                               RegisteredProfile("X1", "A name"))),
              (Lines{"InstanceID: string X1", "AdvertiseTypeDescriptions: string[] by default ",
                     "RegisteredName: string A name"}));
}

TEST_F(CatalogueTest, AsksForTheHostNameWhenAnEntryIsBuilt) {
    provider.buildRegisteredProfileInstance("CIM_RegisteredProfile", RegisteredProfile("X1", "A"));
    _hostName = "switch2";
    EXPECT_EQ(text(provider
                       .buildRegisteredProfileInstance("CIM_RegisteredProfile",
                                                       RegisteredProfile("X1", "A"))
                       .getPath()),
              "//switch2/root/cimv2:CIM_RegisteredProfile.InstanceID=\"X1\"");
}

TEST_F(CatalogueTest, PublishesTheHostNameBufferAndTheLookupFlag) {
    serverprofile::copyHostName(serverprofile::hostNameBuffer, "buffer.example.net");
    serverprofile::lookupPending = 1;
    provider.initData();
    EXPECT_EQ(text(OrvexOMHost::getName()), "buffer.example.net");
    EXPECT_EQ(text(OrvexOMHost::getNameFormat()), "IP");
    serverprofile::lookupPending = 0;
    EXPECT_EQ(text(OrvexOMHost::getNameFormat()), "IP");
    provider.initData();
    EXPECT_EQ(text(OrvexOMHost::getNameFormat()), "Other");
}

TEST_F(CatalogueTest, KeepsWhatItHasAndTheBuildFlagWhenTheServerFails) {
    server->forget("CIM_RegisteredSubProfile");
    EXPECT_EQ(thrownBy([&] { provider.initData(); }), "6 ");
    EXPECT_EQ(provider.registeredProfiles().size(), 2U);
    EXPECT_EQ(provider.registeredSubProfiles().size(), 0U);
    EXPECT_EQ(serverprofile::dataBuildInProgress, 1);
}

TEST_F(CatalogueTest, LowersTheBuildFlagAtItsEndAndNeverTouchesTheGate) {
    server->fail("getClass", "CIM_RegisteredProfile", [] {
        EXPECT_EQ(serverprofile::dataBuildInProgress, 1);
        EXPECT_EQ(_initInProgress.load(), 0);
    });
    provider.initData();
    EXPECT_EQ(serverprofile::dataBuildInProgress, 0);
    EXPECT_EQ(_initInProgress.load(), 0);
}

TEST_F(CatalogueTest, ReferenceNamesAnInstanceAsTheCallerSays) {
    const CIMInstance instance = withInstanceId(CIMValue(String("Orvex3")));
    CIMObjectPath path;
    EXPECT_EQ(tracedBy([&] {
                  path = provider.buildRegisteredProfileReference("CIM_RegisteredSubProfile",
                                                                  instance, "root/other");
              }),
              traceLines({"Quil regProfRef() Start"}));
    EXPECT_EQ(text(path),
              "//switch1.example.net/root/other:CIM_RegisteredSubProfile.InstanceID=\"Orvex3\"");
    EXPECT_EQ(describeKeys(path), (Lines{"InstanceID=string Orvex3"}));
}

TEST_F(CatalogueTest, ReferenceNeedsAnInstanceIdWithAStringValue) {
    const struct {
        CIMInstance instance;
        const char* thrown;
    } rows[] = {
        {withInstanceId(CIMValue(String("Orvex3")), "Name"), noInstanceId},
        {withInstanceId(CIMValue(CIMTYPE_STRING, false)), noValue},
        {withInstanceId(CIMValue(Uint16(3))), noValue},
        {withInstanceId(CIMValue(CIMTYPE_UINT16, false)), noValue},
        {withInstanceId(CIMValue(Boolean(true))), noValue},
    };
    for (const auto& row : rows) {
        std::string thrown;
        EXPECT_EQ(tracedBy([&] {
                      thrown = thrownBy([&] {
                          provider.buildRegisteredProfileReference("C", row.instance, "root/cimv2");
                      });
                  }),
                  traceLines({"Quil regProfRef() Start"}));
        EXPECT_EQ(thrown, row.thrown);
        Array<CIMInstance> entries;
        entries.append(row.instance);
        EXPECT_EQ(thrownBy([&] { provider.findRegProfIndex("Orvex3", entries); }), row.thrown);
    }
}

TEST_F(CatalogueTest, FindsAnEntryByItsInstanceIdWithoutRegardToCase) {
    provider.initData();
    const Uint32 none = 0xFFFFFFFFU;
    const struct {
        const char* instanceId;
        Uint32 profile;
        Uint32 subProfile;
    } rows[] = {
        {"Orvex1", 0, none},     {"orvex2", 1, none}, {"ORVEX6", 2, none},    {"Orvex3", none, 0},
        {"oRVEX4", none, 1},     {"Orvex5", none, 2}, {"Orvex7", none, none}, {"Orvex", none, none},
        {"Orvex11", none, none}, {"", none, none},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(provider.findRegProfIndex(row.instanceId, provider.registeredProfiles()),
                  row.profile)
            << row.instanceId;
        EXPECT_EQ(provider.findRegProfIndex(row.instanceId, provider.registeredSubProfiles()),
                  row.subProfile)
            << row.instanceId;
    }
}

TEST_F(CatalogueTest, FindsNothingAmongNoEntries) {
    EXPECT_EQ(provider.findRegProfIndex("Orvex1", Array<CIMInstance>()), 0xFFFFFFFFU);
}

TEST_F(CatalogueTest, FindsTheFirstMatchAndStopsAtAMalformedEntryBeforeIt) {
    const CIMInstance match = withInstanceId(CIMValue(String("Orvex3")));
    const CIMInstance malformed = withInstanceId(CIMValue(CIMTYPE_STRING, false));
    Array<CIMInstance> entries;
    entries.append(match);
    entries.append(match);
    entries.append(malformed);
    EXPECT_EQ(provider.findRegProfIndex("Orvex3", entries), 0U);
    entries.prepend(malformed);
    EXPECT_EQ(thrownBy([&] { provider.findRegProfIndex("Orvex3", entries); }), noValue);
}

TEST_F(CatalogueTest, FindingTracesNothing) {
    provider.initData();
    EXPECT_EQ(tracedBy([&] { provider.findRegProfIndex("Orvex6", provider.registeredProfiles()); }),
              Lines());
}
