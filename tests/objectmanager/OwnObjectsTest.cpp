// The module's own objects, the host of the object manager and the software identity: instance,
// path, and getting and enumerating them.
#include "support/ModuleTest.h"
#include "support/RecordingHandlers.h"

#include <functional>

PEGASUS_USING_PEGASUS;
using namespace testsupport;

namespace {

using Provider = ServerProfileProvider;

struct OwnObject {
    const char* name; ///< of the tests
    const char* className;
    const char* superClass;
    std::string keys; ///< of its path, as text
    Lines keyBindings;
    /// Each property as its class declares it, and as the instance has it. The last one is traced.
    std::vector<std::pair<const char*, const char*>> properties;
    Lines buildLines;  ///< of the instance being built, but for the last property
    Lines recordLines; ///< at the end of the object's record
    Lines keysThatGetIt;
    Lines otherKeys;
    std::string getLine; ///< the key behind it
    Lines foundLines;
    Lines enumerateLines; ///< the first and the last one
    Lines namesLines;
    std::function<CIMInstance(Provider&, const char* className)> build;
    std::function<CIMObjectPath(Provider&, const char* className, const char* nameSpace)> reference;
    std::function<CIMInstance(Provider&, const String& key, InstanceResponseHandler&)> get;
    std::function<void(Provider&, InstanceResponseHandler&)> enumerate;
    std::function<void(Provider&, const char* className, ObjectPathResponseHandler&)> names;
};

const OwnObject host = {
    "Host",
    "ORVEX_ObjectManagerHost",
    "CIM_System",
    "CreationClassName=\"ORVEX_ObjectManagerHost\",Name=\"switch1.example.net\"",
    {"CreationClassName=string ORVEX_ObjectManagerHost", "Name=string switch1.example.net"},
    {{"string CreationClassName", "CreationClassName: string ORVEX_ObjectManagerHost"},
     {"string Name", "Name: string switch1.example.net"},
     {"string NameFormat", "NameFormat: string Other"},
     {"string Description", "Description: string "},
     {"string ElementName", "ElementName: string "},
     {"uint16[] OperationalStatus", "OperationalStatus: uint16[] 2 "}},
    {"_getClassFromCIMOM(): className ORVEX_ObjectManagerHost", "Quil - temp msg"},
    {"OrvexOMHost - destructor(): Start "},
    {"switch1.example.net", "SWITCH1.Example.NET"},
    {"switch1", "", "ORVEX_ObjectManagerHost", "switch1.example.net."},
    "Quil getOrvexOHostInstance(): Start - key is ",
    {},
    {"Quil orvexOMHostInstances() Start", "Quil orvexOMHostInstances(): Exit"},
    {"Quil orvexOMHostInstNames() Start", "Quil orvexOMHostInstNames(): Exit"},
    [](Provider& provider, const char* className) {
        return provider.buildOrvexOMHostInstance(className, OrvexOMHost());
    },
    [](Provider& provider, const char* className, const char* nameSpace) {
        return provider.buildOrvexOMHostReference(className, OrvexOMHost(), nameSpace);
    },
    [](Provider& provider, const String& key, InstanceResponseHandler& to) {
        return provider._getOrvexOMHostInstance(key, to);
    },
    [](Provider& provider, InstanceResponseHandler& to) {
        provider._getOrvexOMHostInstances("ignored", to, "root/other");
    },
    [](Provider& provider, const char* className, ObjectPathResponseHandler& to) {
        provider._getOrvexOHostInstanceNames(className, to, "root/other");
    }};

const OwnObject identity = {
    "SoftwareIdentity",
    "ORVEX_SoftwareIdentity",
    "CIM_SoftwareIdentity",
    "InstanceID=\"OrvexSI1\"",
    {"InstanceID=string OrvexSI1"},
    {{"string InstanceID", "InstanceID: string OrvexSI1"},
     {"string Name", "Name: string Kelmar"},
     {"string VersionString", "VersionString: string 3.0"},
     {"string Manufacturer", "Manufacturer: string Orvex Systems"},
     {"uint16[] Classifications", "Classifications: uint16[] 10 "}},
    {"_getClassFromCIMOM(): className ORVEX_SoftwareIdentity"},
    {},
    {"OrvexSI1", "orvexsi1", "ORVEXSI1"},
    {"Orvex1", "OrvexSI", "OrvexSI11", ""},
    "Quil getOrvexSIInstance(): Start - key is ",
    {"Quil getOrvexSIInstance():In loop"},
    {"Quil orvexSIInstances() Start", "Quil orvexSIInstances(): Exit"},
    {"Quil orvexSIInstNames() Start", "Quil orvexSIInstNames(): Exit"},
    [](Provider& provider, const char* className) {
        return provider.buildOrvexSIInstance(className, OrvexSI());
    },
    [](Provider& provider, const char* className, const char* nameSpace) {
        return provider.buildOrvexSIReference(className, OrvexSI(), nameSpace);
    },
    [](Provider& provider, const String& key, InstanceResponseHandler& to) {
        return provider._getOrvexSIInstance(key, to);
    },
    [](Provider& provider, InstanceResponseHandler& to) {
        provider._getOrvexSIInstances("ignored", to, "root/other");
    },
    [](Provider& provider, const char* className, ObjectPathResponseHandler& to) {
        provider._getOrvexSIInstanceNames(className, to, "root/other");
    }};

class OwnObjectTest : public ModuleTest, public testing::WithParamInterface<const OwnObject*> {
  protected:
    OwnObjectTest() { provider.cimomHandle() = handle; }

    /// Its path with a class name and a host of the caller's.
    std::string path(const std::string& className,
                     const std::string& hostName = "switch1.example.net") const {
        return "//" + hostName + "/root/cimv2:" + className + "." + own.keys;
    }

    /// The messages of the instance being built; 3 is the code of uint16.
    Lines built() const { return joined({own.buildLines, {"Quil: temp msg 23"}, own.recordLines}); }

    void expectIt(const CIMInstance& instance) {
        Lines properties;
        for (const auto& property : own.properties)
            properties.push_back(property.second);
        EXPECT_EQ(describe(instance), properties);
        EXPECT_EQ(text(instance.getPath()), path(own.className));
    }

    const OwnObject& own = *GetParam();
    InstanceRecorder instances;
    PathRecorder paths;
};

} // namespace

INSTANTIATE_TEST_SUITE_P(Of, OwnObjectTest, testing::Values(&host, &identity),
                         [](const auto& object) { return object.param->name; });

TEST_P(OwnObjectTest, InstanceHasTheValuesOfTheRecordInThePropertiesOfTheClass) {
    CIMInstance instance;
    EXPECT_EQ(tracedBy([&] { instance = own.build(provider, own.className); }),
              traceLines(built()));
    expectIt(instance);
    EXPECT_EQ(describeKeys(instance.getPath()), own.keyBindings);
    EXPECT_EQ(server->calls, Lines{std::string("getClass root/cimv2 ") + own.className +
                                   " localOnly=0 qualifiers=1 origin=0 properties=all"});
}

TEST_P(OwnObjectTest, ReferenceIsThePathOfTheInstanceInRootCimv2) {
    for (const char* nameSpace : {"root/cimv2", "root/other", ""}) {
        CIMObjectPath reference;
        EXPECT_EQ(tracedBy([&] { reference = own.reference(provider, own.className, nameSpace); }),
                  traceLines(own.recordLines));
        EXPECT_TRUE(reference.identical(own.build(provider, own.className).getPath()));
    }
}

TEST_P(OwnObjectTest, PathNamesTheCallersClassButKeysAndHostAreTheModules) {
    _hostName = "renamed.example.net";
    server->define(makeClass(own.superClass, {"string Name"}));
    for (const char* className : {own.superClass, own.className}) {
        const std::string expected = path(className, "renamed.example.net");
        EXPECT_EQ(text(own.reference(provider, className, "root/other")), expected);
        EXPECT_EQ(text(own.build(provider, className).getPath()), expected);
    }
}

TEST_P(OwnObjectTest, PropertyThatTheClassLacksIsAbsentAndThePathIsNot) {
    for (std::size_t missing = 0; missing < own.properties.size(); ++missing) {
        SCOPED_TRACE(own.properties[missing].first);
        Lines declared;
        Lines expected;
        for (std::size_t i = 0; i < own.properties.size(); ++i) {
            if (i != missing) {
                declared.push_back(own.properties[i].first);
                expected.push_back(own.properties[i].second);
            }
        }
        server->define(makeClass(own.className, declared));
        CIMInstance instance;
        const bool isLast = missing + 1 == own.properties.size();
        EXPECT_EQ(tracedBy([&] { instance = own.build(provider, own.className); }),
                  traceLines(isLast ? joined({own.buildLines, own.recordLines}) : built()));
        EXPECT_EQ(describe(instance), expected);
        EXPECT_EQ(text(instance.getPath()), path(own.className));
    }
}

TEST_P(OwnObjectTest, OfAnUnknownClassIsNotFound) {
    server->forget(own.className);
    const std::function<void()> asked[] = {
        [&] { own.get(provider, own.keysThatGetIt[0].c_str(), instances); },
        [&] { own.enumerate(provider, instances); }};
    for (const auto& ask : asked) {
        try {
            ask();
            ADD_FAILURE() << "nothing thrown";
        } catch (const CIMException& exception) {
            EXPECT_EQ(exception.getCode(), CIM_ERR_NOT_FOUND);
            EXPECT_EQ(text(exception.getMessage()), "");
        }
    }
    EXPECT_TRUE(instances.delivered.empty());
}

TEST_P(OwnObjectTest, IsGotByItsKeyInAnyLetterCaseAndByNoOther) {
    const std::string end = own.getLine.substr(0, own.getLine.find(" Start")) + " Exit ";
    for (const std::string& key : own.keysThatGetIt) {
        InstanceRecorder handler;
        CIMInstance result;
        EXPECT_EQ(tracedBy([&] { result = own.get(provider, key.c_str(), handler); }),
                  traceLines(joined({{own.getLine + key}, own.foundLines, built(), {end}})));
        ASSERT_EQ(handler.delivered.size(), 1U);
        expectIt(handler.delivered[0]);
        EXPECT_TRUE(result.identical(handler.delivered[0]));
        EXPECT_EQ(handler.processingCalls + handler.completeCalls, 0U);
    }
    for (const std::string& key : own.otherKeys) {
        EXPECT_EQ(tracedBy([&] {
                      EXPECT_TRUE(own.get(provider, key.c_str(), instances).isUninitialized());
                  }),
                  traceLines({own.getLine + key, end}));
    }
    EXPECT_TRUE(instances.delivered.empty());
}

TEST_P(OwnObjectTest, IsEnumeratedOnce) {
    EXPECT_EQ(tracedBy([&] { own.enumerate(provider, instances); }),
              traceLines(joined({{own.enumerateLines[0]}, built(), {own.enumerateLines[1]}})));
    ASSERT_EQ(instances.delivered.size(), 1U);
    expectIt(instances.delivered[0]);
    EXPECT_EQ(instances.processingCalls + instances.completeCalls, 0U);
}

TEST_P(OwnObjectTest, IsNamedOnceInRootCimv2AsTheCallersClass) {
    EXPECT_EQ(tracedBy([&] { own.names(provider, own.className, paths); }),
              traceLines(joined({{own.namesLines[0]}, own.recordLines, {own.namesLines[1]}})));
    own.names(provider, own.superClass, paths);
    ASSERT_EQ(paths.delivered.size(), 2U);
    EXPECT_EQ(text(paths.delivered[0]), path(own.className));
    EXPECT_EQ(text(paths.delivered[1]), path(own.superClass));
    EXPECT_EQ(paths.processingCalls + paths.completeCalls, 0U);
}

namespace {

class HostTest : public ModuleTest {
  protected:
    HostTest() { provider.cimomHandle() = handle; }
};

} // namespace

TEST_F(HostTest, NameFormatFollowsWhetherTheNameWasResolved) {
    OrvexOMHost(serverprofile::hostNameBuffer, 1);
    EXPECT_EQ(describe(host.build(provider, host.className))[2], "NameFormat: string IP");
    OrvexOMHost(serverprofile::hostNameBuffer, 0);
    EXPECT_EQ(describe(host.build(provider, host.className))[2], "NameFormat: string Other");
}

TEST_F(HostTest, IsGotByTheNameOfTheRecordAndNotByThatOfThePaths) {
    InstanceRecorder instances;
    _hostName = "renamed.example.net";
    EXPECT_TRUE(host.get(provider, "renamed.example.net", instances).isUninitialized());
    EXPECT_FALSE(host.get(provider, "switch1.example.net", instances).isUninitialized());
}
