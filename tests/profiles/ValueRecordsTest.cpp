// The three value records: what their getters report, and what the host record keeps for its class.
#include "common/Records.h"
#include "support/ModuleTest.h"

#include <Pegasus/Common/CIMQualifier.h>

#include <type_traits>

PEGASUS_USING_PEGASUS;
using namespace testsupport;

namespace {

// Asked while the program is loaded, before any test has made a record.
const std::string hostNameAtLoad = text(OrvexOMHost::getName());
const std::string nameFormatAtLoad = text(OrvexOMHost::getNameFormat());

/// A property that shares nothing with those that the getters make.
CIMProperty somethingElse() {
    CIMProperty property(CIMName("Other"), CIMValue(CIMTYPE_UINT8, true, 3), 3, CIMName(),
                         CIMName("Origin"), true);
    property.addQualifier(CIMQualifier(CIMName("Key"), CIMValue(Boolean(true))));
    return property;
}

/// Expects each getter of `record` to replace whatever a property held by what is described.
template <class Record>
void expectFilled(
    const Record& record,
    const std::vector<std::pair<bool (Record::*)(CIMProperty&) const, const char*>>& rows) {
    for (const auto& [getter, filled] : rows) {
        for (CIMProperty property : {CIMProperty(), somethingElse()}) {
            EXPECT_TRUE((record.*getter)(property));
            EXPECT_EQ(describe(property), filled);
            EXPECT_EQ(property.getArraySize(), 0U) << filled;
            EXPECT_TRUE(property.getReferenceClassName().isNull()) << filled;
            EXPECT_TRUE(property.getClassOrigin().isNull()) << filled;
            EXPECT_FALSE(property.getPropagated()) << filled;
            EXPECT_EQ(property.getQualifierCount(), 0U) << filled;
        }
    }
}

/// A host name as the constructors take it.
struct Name {
    explicit Name(const std::string& name) : text(name) {}
    operator char*() { return text.data(); }
    std::string text;
};

} // namespace

TEST(RegisteredProfileTest, HoldsTwoPlainStringsAndTakesTheKeyFirst) {
    EXPECT_EQ(text(RegisteredProfile().getInstanceId()), "");
    EXPECT_EQ(text(RegisteredProfile().getRegisteredName()), "");
    RegisteredProfile profile("Orvex1", "Fabric");
    profile.initialize(); // changes nothing
    const RegisteredProfile copy = profile;
    profile.instanceId = "Orvex4";
    profile.setRegisteredName("Zone Control");
    EXPECT_EQ(text(profile.getInstanceId()), "Orvex4");
    EXPECT_EQ(text(profile.getRegisteredName()), "Zone Control");
    EXPECT_EQ(text(profile.registeredName), "Zone Control");
    EXPECT_EQ(text(copy.instanceId), "Orvex1");
    EXPECT_EQ(text(copy.registeredName), "Fabric");
}

TEST(RegisteredProfileTest, HasNoBaseClassAndNoVirtualOperation) {
    EXPECT_FALSE(std::is_polymorphic_v<RegisteredProfile>);
    EXPECT_FALSE(std::has_virtual_destructor_v<RegisteredProfile>);
}

TEST(RegisteredProfileTest, GettersReplaceWhateverThePropertyHeld) {
    const RegisteredProfile profile("Orvex1", "Fabric");
    expectFilled<RegisteredProfile>(
        profile,
        {
            {&RegisteredProfile::getInstanceId, "InstanceID: string Orvex1"},
            {&RegisteredProfile::getRegisteredName, "RegisteredName: string Fabric"},
            {&RegisteredProfile::getRegisteredVersion, "RegisteredVersion: string 1.1.0"},
            {&RegisteredProfile::getOtherRegisteredOrganization,
             "OtherRegisteredOrganization: string "},
            {&RegisteredProfile::getRegisteredOrganization, "RegisteredOrganization: sint32 11"},
            {&RegisteredProfile::getAdvertiseTypes, "AdvertiseTypes: sint32 0"},
            {&RegisteredProfile::getAdvertiseTypeDescriptions,
             "AdvertiseTypeDescriptions: sint32 0"},
        });
}

TEST(RegisteredProfileTest, GettersLeaveThePreviousPropertyOfOthersAlone) {
    const CIMProperty kept = somethingElse();
    CIMProperty property = kept;
    RegisteredProfile().getAdvertiseTypes(property);
    EXPECT_EQ(describe(kept), "Other: uint8[] null");
}

TEST(OrvexOMHostTest, IsZeroFilledWhenTheModuleIsLoaded) {
    EXPECT_EQ(hostNameAtLoad, "");
    EXPECT_EQ(nameFormatAtLoad, "Other");
}

TEST(OrvexOMHostTest, KeepsNameAndFlagForTheClassAndNotForTheObject) {
    const OrvexOMHost earlier(Name("first"), 0);
    { const OrvexOMHost temporary(Name("switch1.example.net"), 1); }
    const OrvexOMHost later;
    for (const OrvexOMHost& host : {earlier, later}) {
        EXPECT_EQ(text(host.getName()), "switch1.example.net");
        EXPECT_EQ(text(host.getNameFormat()), "IP");
        EXPECT_EQ(text(host.getCreationClassName()), "ORVEX_ObjectManagerHost");
    }
}

TEST(OrvexOMHostTest, StoresNothingFromADefaultOrStringConstructor) {
    OrvexOMHost(Name("switch1"), 1);
    const OrvexOMHost byDefault;
    const OrvexOMHost byString{String("ignored")};
    EXPECT_EQ(text(byString.getName()), "switch1");
    EXPECT_EQ(text(byString.getNameFormat()), "IP");
}

TEST(OrvexOMHostTest, LeavesTheFlagWhenOnlyANameIsGiven) {
    OrvexOMHost(Name("switch1"), 1);
    const OrvexOMHost named(Name("switch2"));
    EXPECT_EQ(text(named.getName()), "switch2");
    EXPECT_EQ(text(named.getNameFormat()), "IP");
    OrvexOMHost(Name("switch3"), 0);
    const OrvexOMHost again(Name("switch4"));
    EXPECT_EQ(text(again.getName()), "switch4");
    EXPECT_EQ(text(again.getNameFormat()), "Other");
}

TEST(OrvexOMHostTest, SelectsIpForEveryFlagButZero) {
    for (const int flag : {0, 1, 2, -1, 0x7fffffff, -0x7fffffff - 1}) {
        OrvexOMHost(Name("switch1"), flag);
        EXPECT_EQ(text(OrvexOMHost().getNameFormat()), flag == 0 ? "Other" : "IP") << flag;
    }
}

TEST(OrvexOMHostTest, IsNotChangedByInitializeOrDestruction) {
    OrvexOMHost(Name("switch1"), 1);
    { OrvexOMHost().initialize(); }
    EXPECT_EQ(text(OrvexOMHost().getName()), "switch1");
    EXPECT_EQ(text(OrvexOMHost().getNameFormat()), "IP");
}

TEST(OrvexOMHostTest, TracesOnlyTheDestructionOfEachObject) {
    EXPECT_EQ(tracedBy([] {
                  OrvexOMHost first(Name("switch1"), 0);
                  first.initialize();
                  first.getName();
                  const OrvexOMHost copy = first;
                  const OrvexOMHost third{String("ignored")};
              }),
              traceLines(repeated(3, "OrvexOMHost - destructor(): Start ")));
}

TEST(OrvexOMHostTest, CutsANameThatDoesNotFit) {
    for (const std::size_t size : {254U, 255U, 256U, 300U, 5000U}) {
        OrvexOMHost(Name(std::string(size, 'h')), 0);
        EXPECT_EQ(text(OrvexOMHost().getName()), std::string(std::min(size, std::size_t{255}), 'h'))
            << size;
    }
}

TEST(OrvexOMHostTest, GettersReplaceWhateverThePropertyHeld) {
    const OrvexOMHost host(Name("switch1.example.net"), 1);
    expectFilled<OrvexOMHost>(host, {{&OrvexOMHost::getNameFormat, "NameFormat: string IP"}});
    OrvexOMHost(Name("switch1.example.net"), 0);
    expectFilled<OrvexOMHost>(
        host, {
                  {&OrvexOMHost::getCreationClassName,
                   "CreationClassName: string ORVEX_ObjectManagerHost"},
                  {&OrvexOMHost::getName, "Name: string switch1.example.net"},
                  {&OrvexOMHost::getNameFormat, "NameFormat: string Other"},
                  {&OrvexOMHost::getElementName, "ElementName: string "},
                  {&OrvexOMHost::getDescription, "Description: string "},
                  {&OrvexOMHost::getOperationalStatus, "OperationalStatus: boolean TRUE"},
              });
}

TEST(OrvexSITest, ReportsConstantsAndTracesNothing) {
    EXPECT_EQ(tracedBy([] {
                  const OrvexSI si;
                  EXPECT_EQ(text(si.getInstanceId()), "OrvexSI1");
                  EXPECT_EQ(text(si.getManu()), "Orvex Systems");
                  EXPECT_EQ(text(si.getVersion()), "3.0");
                  EXPECT_EQ(text(si.getName()), "Kelmar");
              }),
              Lines());
}
