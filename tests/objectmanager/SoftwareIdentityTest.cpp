// The software identity: its instance, its path, and getting and enumerating it.
#include "support/ModuleTest.h"
#include "support/RecordingHandlers.h"

PEGASUS_USING_PEGASUS;
using namespace testsupport;

namespace {

constexpr const char* identityClass = "ORVEX_SoftwareIdentity";
const std::string identityPath =
    "//switch1.example.net/root/cimv2:ORVEX_SoftwareIdentity.InstanceID=\"OrvexSI1\"";

const Lines identityProperties = {"InstanceID: string OrvexSI1", "Name: string Kelmar",
                                  "VersionString: string 3.0", "Manufacturer: string Orvex Systems",
                                  "Classifications: uint16[] 10 "};

/// The messages of the instance being built; 3 is the code of uint16.
const Lines buildLines = {"_getClassFromCIMOM(): className ORVEX_SoftwareIdentity",
                          "Quil: temp msg 23"};

class SoftwareIdentityTest : public ModuleTest {
  protected:
    SoftwareIdentityTest() { provider.cimomHandle() = handle; }

    InstanceRecorder instances;
    PathRecorder paths;
};

} // namespace

TEST_F(SoftwareIdentityTest, InstanceHasTheConstantsInThePropertiesOfTheClass) {
    CIMInstance instance;
    EXPECT_EQ(tracedBy([&] { instance = provider.buildOrvexSIInstance(identityClass, OrvexSI()); }),
              traceLines(buildLines));
    EXPECT_EQ(describe(instance), identityProperties);
    EXPECT_EQ(text(instance.getPath()), identityPath);
    EXPECT_EQ(describeKeys(instance.getPath()), (Lines{"InstanceID=string OrvexSI1"}));
    EXPECT_EQ(server->calls,
              (Lines{"getClass root/cimv2 ORVEX_SoftwareIdentity localOnly=0 qualifiers=1 "
                     "origin=0 properties=all"}));
}

TEST_F(SoftwareIdentityTest, ReferenceIsThePathOfTheInstanceInRootCimv2) {
    for (const char* nameSpace : {"root/cimv2", "root/other", ""}) {
        CIMObjectPath path;
        EXPECT_EQ(tracedBy([&] {
                      path = provider.buildOrvexSIReference(identityClass, OrvexSI(), nameSpace);
                  }),
                  Lines());
        EXPECT_EQ(text(path), identityPath);
    }
}

TEST_F(SoftwareIdentityTest, PathNamesTheCallersClassAndTheHostOfTheMoment) {
    _hostName = "renamed.example.net";
    const std::string path =
        "//renamed.example.net/root/cimv2:CIM_SoftwareIdentity.InstanceID=\"OrvexSI1\"";
    EXPECT_EQ(text(provider.buildOrvexSIReference("CIM_SoftwareIdentity", OrvexSI(), "root/other")),
              path);
    server->define(makeClass("CIM_SoftwareIdentity", {"string InstanceID"}));
    EXPECT_EQ(text(provider.buildOrvexSIInstance("CIM_SoftwareIdentity", OrvexSI()).getPath()),
              path);
}

TEST_F(SoftwareIdentityTest, PropertyThatTheClassLacksIsAbsentAndThePathIsNot) {
    const std::vector<std::pair<const char*, const char*>> declared = {
        {"string InstanceID", "InstanceID: string OrvexSI1"},
        {"string Name", "Name: string Kelmar"},
        {"string VersionString", "VersionString: string 3.0"},
        {"string Manufacturer", "Manufacturer: string Orvex Systems"},
        {"uint16[] Classifications", "Classifications: uint16[] 10 "},
    };
    for (std::size_t missing = 0; missing < declared.size(); ++missing) {
        SCOPED_TRACE(declared[missing].first);
        Lines properties;
        Lines expected;
        for (std::size_t i = 0; i < declared.size(); ++i) {
            if (i != missing) {
                properties.push_back(declared[i].first);
                expected.push_back(declared[i].second);
            }
        }
        server->define(makeClass(identityClass, properties));
        CIMInstance instance;
        Lines lines = {"_getClassFromCIMOM(): className ORVEX_SoftwareIdentity"};
        if (missing != 4)
            lines.push_back("Quil: temp msg 23");
        EXPECT_EQ(
            tracedBy([&] { instance = provider.buildOrvexSIInstance(identityClass, OrvexSI()); }),
            traceLines(lines));
        EXPECT_EQ(describe(instance), expected);
        EXPECT_EQ(text(instance.getPath()), identityPath);
    }
}

TEST_F(SoftwareIdentityTest, IsGotByItsKeyInAnyLetterCase) {
    for (const std::string key : {"OrvexSI1", "orvexsi1", "ORVEXSI1"}) {
        InstanceRecorder handler;
        CIMInstance result;
        EXPECT_EQ(
            tracedBy([&] { result = provider._getOrvexSIInstance(String(key.c_str()), handler); }),
            traceLines(joined({{"Quil getOrvexSIInstance(): Start - key is " + key,
                                "Quil getOrvexSIInstance():In loop"},
                               buildLines,
                               {"Quil getOrvexSIInstance(): Exit "}})));
        ASSERT_EQ(handler.delivered.size(), 1U);
        EXPECT_EQ(describe(handler.delivered[0]), identityProperties);
        EXPECT_EQ(text(handler.delivered[0].getPath()), identityPath);
        EXPECT_TRUE(result.identical(handler.delivered[0]));
        EXPECT_EQ(handler.processingCalls + handler.completeCalls, 0U);
    }
}

TEST_F(SoftwareIdentityTest, IsNotGotByAnyOtherKey) {
    for (const std::string key : {"Orvex1", "OrvexSI", "OrvexSI11", ""}) {
        CIMInstance result;
        EXPECT_EQ(tracedBy([&] {
                      result = provider._getOrvexSIInstance(String(key.c_str()), instances);
                  }),
                  traceLines({"Quil getOrvexSIInstance(): Start - key is " + key,
                              "Quil getOrvexSIInstance(): Exit "}));
        EXPECT_TRUE(result.isUninitialized());
    }
    EXPECT_TRUE(instances.delivered.empty());
}

TEST_F(SoftwareIdentityTest, IsEnumeratedAsOneInstance) {
    EXPECT_EQ(
        tracedBy([&] { provider._getOrvexSIInstances("ignored", instances, "root/other"); }),
        traceLines(joined(
            {{"Quil orvexSIInstances() Start"}, buildLines, {"Quil orvexSIInstances(): Exit"}})));
    ASSERT_EQ(instances.delivered.size(), 1U);
    EXPECT_EQ(describe(instances.delivered[0]), identityProperties);
    EXPECT_EQ(text(instances.delivered[0].getPath()), identityPath);
    EXPECT_EQ(instances.processingCalls + instances.completeCalls, 0U);
}

TEST_F(SoftwareIdentityTest, IsNamedOnceInRootCimv2AsTheCallersClass) {
    EXPECT_EQ(
        tracedBy([&] { provider._getOrvexSIInstanceNames(identityClass, paths, "root/other"); }),
        traceLines({"Quil orvexSIInstNames() Start", "Quil orvexSIInstNames(): Exit"}));
    provider._getOrvexSIInstanceNames("CIM_SoftwareIdentity", paths, "root/other");
    ASSERT_EQ(paths.delivered.size(), 2U);
    EXPECT_EQ(text(paths.delivered[0]), identityPath);
    EXPECT_EQ(text(paths.delivered[1].getClassName().getString()), "CIM_SoftwareIdentity");
    EXPECT_EQ(paths.processingCalls + paths.completeCalls, 0U);
}

TEST_F(SoftwareIdentityTest, UnknownClassPassesToTheCaller) {
    server->forget(identityClass);
    try {
        provider._getOrvexSIInstances("", instances, "root/cimv2");
        ADD_FAILURE() << "nothing thrown";
    } catch (const CIMException& exception) {
        EXPECT_EQ(exception.getCode(), CIM_ERR_NOT_FOUND);
        EXPECT_EQ(text(exception.getMessage()), "");
    }
}
