// The host of the object manager: its instance, its path, and getting and enumerating it.
#include "support/ModuleTest.h"
#include "support/RecordingHandlers.h"

PEGASUS_USING_PEGASUS;
using namespace testsupport;

namespace {

constexpr const char* hostClass = "ORVEX_ObjectManagerHost";
const std::string hostPath = "//switch1.example.net/root/cimv2:ORVEX_ObjectManagerHost."
                             "CreationClassName=\"ORVEX_ObjectManagerHost\","
                             "Name=\"switch1.example.net\"";

const Lines hostProperties = {"CreationClassName: string ORVEX_ObjectManagerHost",
                              "Name: string switch1.example.net",
                              "NameFormat: string Other",
                              "Description: string ",
                              "ElementName: string ",
                              "OperationalStatus: uint16[] 2 "};

/// The messages of the instance being built; 3 is the code of uint16.
const Lines buildLines = {"_getClassFromCIMOM(): className ORVEX_ObjectManagerHost",
                          "Quil - temp msg", "Quil: temp msg 23"};
const Lines destructorLine = {"OrvexOMHost - destructor(): Start "};

class HostTest : public ModuleTest {
  protected:
    HostTest() { provider.cimomHandle() = handle; }

    InstanceRecorder instances;
    PathRecorder paths;
};

} // namespace

TEST_F(HostTest, InstanceHasTheValuesOfTheRecordInThePropertiesOfTheClass) {
    CIMInstance instance;
    EXPECT_EQ(
        tracedBy([&] { instance = provider.buildOrvexOMHostInstance(hostClass, OrvexOMHost()); }),
        traceLines(joined({buildLines, destructorLine})));
    EXPECT_EQ(describe(instance), hostProperties);
    EXPECT_EQ(text(instance.getPath()), hostPath);
    EXPECT_EQ(describeKeys(instance.getPath()),
              (Lines{"CreationClassName=string ORVEX_ObjectManagerHost",
                     "Name=string switch1.example.net"}));
}

TEST_F(HostTest, ReferenceIsThePathOfTheInstanceInRootCimv2) {
    for (const char* nameSpace : {"root/cimv2", "root/other", ""}) {
        CIMObjectPath path;
        EXPECT_EQ(tracedBy([&] {
                      path =
                          provider.buildOrvexOMHostReference(hostClass, OrvexOMHost(), nameSpace);
                  }),
                  traceLines(destructorLine));
        EXPECT_EQ(text(path), hostPath);
    }
    EXPECT_TRUE(
        provider.buildOrvexOMHostReference(hostClass, OrvexOMHost(), "root/cimv2")
            .identical(provider.buildOrvexOMHostInstance(hostClass, OrvexOMHost()).getPath()));
}

TEST_F(HostTest, PathNamesTheCallersClassButKeysTheRecordsClass) {
    const std::string path = "//switch1.example.net/root/cimv2:CIM_System."
                             "CreationClassName=\"ORVEX_ObjectManagerHost\","
                             "Name=\"switch1.example.net\"";
    EXPECT_EQ(text(provider.buildOrvexOMHostReference("CIM_System", OrvexOMHost(), "root/cimv2")),
              path);
    server->define(makeClass("CIM_System", {"string Name"}));
    EXPECT_EQ(text(provider.buildOrvexOMHostInstance("CIM_System", OrvexOMHost()).getPath()), path);
}

TEST_F(HostTest, PathHasTheHostOfTheMomentAndTheKeyOfTheRecord) {
    _hostName = "renamed.example.net";
    const std::string path = "//renamed.example.net/root/cimv2:ORVEX_ObjectManagerHost."
                             "CreationClassName=\"ORVEX_ObjectManagerHost\","
                             "Name=\"switch1.example.net\"";
    EXPECT_EQ(text(provider.buildOrvexOMHostReference(hostClass, OrvexOMHost(), "root/cimv2")),
              path);
    EXPECT_EQ(text(provider.buildOrvexOMHostInstance(hostClass, OrvexOMHost()).getPath()), path);
}

TEST_F(HostTest, PropertyThatTheClassLacksIsAbsentAndThePathIsNot) {
    const std::vector<std::pair<const char*, const char*>> declared = {
        {"string CreationClassName", "CreationClassName: string ORVEX_ObjectManagerHost"},
        {"string Name", "Name: string switch1.example.net"},
        {"string NameFormat", "NameFormat: string Other"},
        {"string Description", "Description: string "},
        {"string ElementName", "ElementName: string "},
        {"uint16[] OperationalStatus", "OperationalStatus: uint16[] 2 "},
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
        server->define(makeClass(hostClass, properties));
        CIMInstance instance;
        Lines lines = {"_getClassFromCIMOM(): className ORVEX_ObjectManagerHost",
                       "Quil - temp msg"};
        if (missing != 5)
            lines.push_back("Quil: temp msg 23");
        EXPECT_EQ(tracedBy([&] {
                      instance = provider.buildOrvexOMHostInstance(hostClass, OrvexOMHost());
                  }),
                  traceLines(joined({lines, destructorLine})));
        EXPECT_EQ(describe(instance), expected);
        EXPECT_EQ(text(instance.getPath()), hostPath);
    }
}

TEST_F(HostTest, NameFormatFollowsWhetherTheNameWasResolved) {
    OrvexOMHost(serverprofile::hostNameBuffer, 1);
    EXPECT_EQ(describe(provider.buildOrvexOMHostInstance(hostClass, OrvexOMHost()))[2],
              "NameFormat: string IP");
    OrvexOMHost(serverprofile::hostNameBuffer, 0);
    EXPECT_EQ(describe(provider.buildOrvexOMHostInstance(hostClass, OrvexOMHost()))[2],
              "NameFormat: string Other");
}

TEST_F(HostTest, ClassIsReadFromRootCimv2AndAnUnknownOneIsNotFound) {
    provider.buildOrvexOMHostInstance(hostClass, OrvexOMHost());
    EXPECT_EQ(server->calls,
              (Lines{"getClass root/cimv2 ORVEX_ObjectManagerHost localOnly=0 qualifiers=1 "
                     "origin=0 properties=all"}));
    server->forget(hostClass);
    for (const bool byKey : {true, false}) {
        try {
            if (byKey)
                provider._getOrvexOMHostInstance("switch1.example.net", instances);
            else
                provider._getOrvexOMHostInstances("", instances, "root/cimv2");
            ADD_FAILURE() << "nothing thrown";
        } catch (const CIMException& exception) {
            EXPECT_EQ(exception.getCode(), CIM_ERR_NOT_FOUND);
        }
    }
    EXPECT_TRUE(instances.delivered.empty());
}

TEST_F(HostTest, IsGotByItsNameInAnyLetterCase) {
    for (const std::string key : {"switch1.example.net", "SWITCH1.Example.NET"}) {
        InstanceRecorder handler;
        CIMInstance result;
        EXPECT_EQ(tracedBy([&] {
                      result = provider._getOrvexOMHostInstance(String(key.c_str()), handler);
                  }),
                  traceLines(joined({{"Quil getOrvexOHostInstance(): Start - key is " + key},
                                     buildLines,
                                     destructorLine,
                                     {"Quil getOrvexOHostInstance(): Exit "}})));
        ASSERT_EQ(handler.delivered.size(), 1U);
        EXPECT_EQ(describe(handler.delivered[0]), hostProperties);
        EXPECT_EQ(text(handler.delivered[0].getPath()), hostPath);
        EXPECT_TRUE(result.identical(handler.delivered[0]));
        EXPECT_EQ(handler.processingCalls + handler.completeCalls, 0U);
    }
}

TEST_F(HostTest, IsNotGotByAnyOtherKey) {
    for (const std::string key :
         {"switch1", "", "ORVEX_ObjectManagerHost", "switch1.example.net."}) {
        CIMInstance result;
        EXPECT_EQ(tracedBy([&] {
                      result = provider._getOrvexOMHostInstance(String(key.c_str()), instances);
                  }),
                  traceLines({"Quil getOrvexOHostInstance(): Start - key is " + key,
                              "Quil getOrvexOHostInstance(): Exit "}));
        EXPECT_TRUE(result.isUninitialized());
    }
    EXPECT_TRUE(instances.delivered.empty());
}

TEST_F(HostTest, IsGotByTheNameOfTheRecordAndNotByThatOfThePaths) {
    _hostName = "renamed.example.net";
    EXPECT_TRUE(
        provider._getOrvexOMHostInstance("renamed.example.net", instances).isUninitialized());
    EXPECT_FALSE(
        provider._getOrvexOMHostInstance("switch1.example.net", instances).isUninitialized());
}

TEST_F(HostTest, IsEnumeratedAsOneInstance) {
    EXPECT_EQ(
        tracedBy([&] { provider._getOrvexOMHostInstances("ignored", instances, "root/other"); }),
        traceLines(joined({{"Quil orvexOMHostInstances() Start"},
                           buildLines,
                           destructorLine,
                           {"Quil orvexOMHostInstances(): Exit"}})));
    ASSERT_EQ(instances.delivered.size(), 1U);
    EXPECT_EQ(describe(instances.delivered[0]), hostProperties);
    EXPECT_EQ(text(instances.delivered[0].getPath()), hostPath);
    EXPECT_EQ(instances.processingCalls + instances.completeCalls, 0U);
}

TEST_F(HostTest, IsNamedOnceInRootCimv2AsTheCallersClass) {
    EXPECT_EQ(
        tracedBy([&] { provider._getOrvexOHostInstanceNames(hostClass, paths, "root/other"); }),
        traceLines(joined({{"Quil orvexOMHostInstNames() Start"},
                           destructorLine,
                           {"Quil orvexOMHostInstNames(): Exit"}})));
    provider._getOrvexOHostInstanceNames("CIM_System", paths, "root/other");
    ASSERT_EQ(paths.delivered.size(), 2U);
    EXPECT_EQ(text(paths.delivered[0]), hostPath);
    EXPECT_EQ(text(paths.delivered[1].getClassName().getString()), "CIM_System");
    EXPECT_EQ(paths.processingCalls + paths.completeCalls, 0U);
}
