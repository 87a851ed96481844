// The read operations of the instance interface: frame, key and dispatch.
#include "Operations.h"
#include "support/Resolver.h"

#include <cctype>

PEGASUS_USING_PEGASUS;
using namespace testsupport;

namespace {

// What the server's other providers publish, in any namespace.
const std::string vsan = "root/cimv2:ORVEX_Vsan.Name=\"vsan1\"";
const std::string computer = "root/cimv2:ORVEX_ComputerSystem.Name=\"switch\"";
const std::string manager = "root/cimv2:CIM_ObjectManager.Name=\"manager\"";
const std::string mechanism = "root/cimv2:PG_CIMXMLCommunicationMechanism.Name=\"mechanism\"";
const std::string nameSpace1 = "root/cimv2:PG_Namespace.Name=\"root/cimv2\"";
const std::string nameSpace2 = "root/cimv2:PG_Namespace.Name=\"root/interop\"";

const std::string other = "root/other"; ///< the namespace of the requests
const std::string inRequest = "//switch1.example.net/root/other:";
const std::string inOwn = "//switch1.example.net/root/cimv2:";

const std::string identity = inOwn + "ORVEX_SoftwareIdentity.InstanceID=\"OrvexSI1\"";
const std::string host = inOwn +
                         "ORVEX_ObjectManagerHost.CreationClassName=\"ORVEX_ObjectManagerHost\","
                         "Name=\"switch1.example.net\"";

std::string profile(const std::string& nameSpace, const std::string& id) {
    const bool isSub = id == "Orvex3" || id == "Orvex4" || id == "Orvex5";
    return nameSpace + (isSub ? "CIM_RegisteredSubProfile" : "CIM_RegisteredProfile") +
           ".InstanceID=\"" + id + "\"";
}

/// The path of an association in the request's namespace.
std::string association(const std::string& className, const std::string& firstRole,
                        const std::string& first, const std::string& secondRole,
                        const std::string& second) {
    const auto end = [](const std::string& path) {
        return String(path.c_str()).size() == 0 ? CIMObjectPath()
                                                : CIMObjectPath(String(path.c_str()));
    };
    Array<CIMKeyBinding> keys;
    keys.append(CIMKeyBinding(CIMName(firstRole.c_str()), CIMValue(end(first))));
    keys.append(CIMKeyBinding(CIMName(secondRole.c_str()), CIMValue(end(second))));
    return text(CIMObjectPath(String("switch1.example.net"), CIMNamespaceName(other.c_str()),
                              CIMName(className.c_str()), keys));
}

std::string dependency(const std::string& className, const std::string& antecedent,
                       const std::string& dependent) {
    return association(className, "Antecedent", antecedent, "Dependent", dependent);
}

std::string conformance(const std::string& standard, const std::string& element) {
    return association("CIM_ElementConformsToProfile", "ConformantStandard", standard,
                       "ManagedElement", element);
}

/// What an enumeration of a served class traces behind its frame and delivers.
struct Enumeration {
    std::string className;
    Lines namesTrace;
    Lines names;
    Lines instancesTrace;
    Lines instances;
};

const Lines destroyed = {"OrvexOMHost - destructor(): Start "};
const std::string reference = "Quil regProfRef() Start";

std::vector<Enumeration> enumerations() {
    const Lines pairs = {dependency("CIM_SubProfileRequiresProfile", profile(inRequest, "Orvex1"),
                                    profile(inRequest, "Orvex3")),
                         dependency("CIM_SubProfileRequiresProfile", profile(inRequest, "Orvex1"),
                                    profile(inRequest, "Orvex4")),
                         dependency("CIM_SubProfileRequiresProfile", profile(inRequest, "Orvex2"),
                                    profile(inRequest, "Orvex5"))};
    const Lines conforming = {conformance(profile(inRequest, "Orvex1"), vsan),
                              conformance(profile(inRequest, "Orvex2"), computer),
                              conformance(profile(inRequest, "Orvex6"), manager)};
    const Lines conformingTrace = {" Quil ElementConformsToProfile Instances ", reference,
                                   " Quil ElementConformsToProfile ei - Switch ", reference,
                                   reference};
    Lines identities;
    for (const char* id : {"Orvex1", "Orvex2", "Orvex6", "Orvex3", "Orvex4", "Orvex5"}) {
        identities.push_back(
            dependency("ORVEX_ElementSoftwareIdentity", identity, profile(inRequest, id)));
    }
    const Lines hosted = joined({{" Quil OrvexSPHostedServiceHelper - Start "}, destroyed});
    const Lines accessed = joined({{" Quil OrvexSPHostedAccessPointHelper - Start "}, destroyed});
    const Lines identified = joined({{" Quil OrvexSPESIHelper - Start "}, repeated(6, reference)});
    const Lines member = {" Quil NSInMgrHelper - Start "};
    const Lines service = {dependency("CIM_HostedService", host, manager)};
    const Lines accessPoint = {dependency("CIM_HostedAccessPoint", host, mechanism)};
    const Lines nameSpaces = {dependency("CIM_NamespaceInManager", manager, nameSpace1),
                              dependency("CIM_NamespaceInManager", manager, nameSpace2)};
    const Lines mechanisms = {dependency("CIM_CommMechanismForManager", manager, mechanism)};

    std::vector<Enumeration> rows = {
        {"CIM_RegisteredProfile",
         joined({{"Quil regProfInstNames() Start"},
                 repeated(3, reference),
                 {"Quil regProfInstNames() Exit"}}),
         {profile(inRequest, "Orvex1"), profile(inRequest, "Orvex2"), profile(inRequest, "Orvex6")},
         {},
         {profile(inOwn, "Orvex1"), profile(inOwn, "Orvex2"), profile(inOwn, "Orvex6")}},
        {"CIM_RegisteredSubProfile",
         {"Quil regSubProfInstNames() Start", "Quil regSubProfInstNames() i = 0", reference,
          "Quil regSubProfInstNames() i = 1", reference, "Quil regSubProfInstNames() i = 2",
          reference, "Quil regSubProfInstNames() Exit"},
         {profile(inRequest, "Orvex3"), profile(inRequest, "Orvex4"), profile(inRequest, "Orvex5")},
         {},
         {profile(inOwn, "Orvex3"), profile(inOwn, "Orvex4"), profile(inOwn, "Orvex5")}},
        {"CIM_SubProfileRequiresProfile", repeated(6, reference), pairs, repeated(6, reference),
         pairs},
        {"CIM_ElementConformsToProfile", conformingTrace, conforming, conformingTrace, conforming},
        {"ORVEX_ObjectManagerHost",
         joined({{"Quil orvexOMHostInstNames() Start"},
                 destroyed,
                 {"Quil orvexOMHostInstNames(): Exit"}}),
         {host},
         joined({{"Quil orvexOMHostInstances() Start",
                  "_getClassFromCIMOM(): className ORVEX_ObjectManagerHost", "Quil - temp msg",
                  "Quil: temp msg 23"},
                 destroyed,
                 {"Quil orvexOMHostInstances(): Exit"}}),
         {host}},
        {"ORVEX_SoftwareIdentity",
         {"Quil orvexSIInstNames() Start", "Quil orvexSIInstNames(): Exit"},
         {identity},
         {"Quil orvexSIInstances() Start", "_getClassFromCIMOM(): className ORVEX_SoftwareIdentity",
          "Quil: temp msg 23", "Quil orvexSIInstances(): Exit"},
         {identity}},
        {"CIM_HostedService", hosted, service, hosted, service},
        {"CIM_HostedAccessPoint", accessed, accessPoint, accessed, accessPoint},
        {"ORVEX_ElementSoftwareIdentity", identified, identities, identified, identities},
        {"CIM_NamespaceInManager", member, nameSpaces, member, nameSpaces},
        {"CIM_CommMechanismForManager", member, mechanisms, member, mechanisms},
    };
    // Nobody here enumerates these: the answer is empty, and complete.
    for (const char* className :
         {"CIM_ReferencedProfile", "CIM_ObjectManager", "CIM_CIMXMLCommunicationMechanism",
          "PG_CIMXMLCommunicationMechanism", "CIM_Namespace", "PG_Namespace"})
        rows.push_back({className, {}, {}, {}, {}});
    return rows;
}

void publishAll(FakeServer& server) {
    server.publish("ORVEX_Vsan", Lines{vsan});
    server.publish("ORVEX_ComputerSystem", Lines{computer});
    server.publish("CIM_ObjectManager", Lines{manager});
    server.publish("CIM_CIMXMLCommunicationMechanism", Lines{mechanism});
    server.publish("CIM_Namespace", Lines{nameSpace1, nameSpace2});
}

class InstanceOperationsTest : public ModuleTest {
  protected:
    InstanceOperationsTest() {
        resolver = Resolver();
        publishAll(*server);
        tracedBy([&] { provider.initialize(handle); });
        server->calls.clear();
    }
};

class EnumerationTest : public InstanceOperationsTest,
                        public testing::WithParamInterface<Enumeration> {
  protected:
    void expectAnswer(const std::string& operation, const std::string& spelling, const Lines& trace,
                      const Lines& paths) {
        SCOPED_TRACE(operation + " " + spelling);
        const Answer answer = ask(provider, operation, pathOf(spelling, {}, other));
        EXPECT_EQ(answer.trace, traceLines(joined({frameLines(operation, spelling), trace})));
        EXPECT_EQ(answer.paths, paths);
        EXPECT_EQ(answer.completeCalls, 1U);
        EXPECT_EQ(answer.processingCalls, 0U);
    }
};

std::string lower(std::string name) {
    for (char& c : name)
        c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return name;
}

std::string testName(const testing::TestParamInfo<Enumeration>& info) {
    return info.param.className;
}

} // namespace

INSTANTIATE_TEST_SUITE_P(Of, EnumerationTest, testing::ValuesIn(enumerations()), testName);

TEST_P(EnumerationTest, NamesGoToTheFunctionOfTheClassInAnyLetterCase) {
    const Enumeration& row = GetParam();
    expectAnswer("enumerateInstanceNames", row.className, row.namesTrace, row.names);
    expectAnswer("enumerateInstanceNames", lower(row.className), row.namesTrace, row.names);
}

TEST_P(EnumerationTest, InstancesGoToTheFunctionOfTheClassInAnyLetterCase) {
    const Enumeration& row = GetParam();
    expectAnswer("enumerateInstances", row.className, row.instancesTrace, row.instances);
    expectAnswer("enumerateInstances", lower(row.className), row.instancesTrace, row.instances);
}

TEST_P(EnumerationTest, InstancesAreTheSameWhateverThePropertyListAndTheFlags) {
    const CIMObjectPath path = pathOf(GetParam().className, {}, other);
    const Answer plain = ask(provider, "enumerateInstances", path);
    Filters filters;
    Array<CIMName> one;
    one.append(CIMName("InstanceID"));
    for (const CIMPropertyList& list : {CIMPropertyList(one), CIMPropertyList(Array<CIMName>())}) {
        filters.propertyList = list;
        filters.includeQualifiers = filters.includeClassOrigin = !filters.includeQualifiers;
        const Answer filtered = ask(provider, "enumerateInstances", path, filters);
        ASSERT_EQ(filtered.objects.size(), plain.objects.size());
        for (std::size_t i = 0; i < plain.objects.size(); ++i)
            EXPECT_TRUE(filtered.objects[i].identical(plain.objects[i]));
    }
}

TEST_F(InstanceOperationsTest, ReadBacksGoToTheNamespaceOfTheRequest) {
    ask(provider, "enumerateInstanceNames", pathOf("CIM_NamespaceInManager", {}, "root/third"));
    EXPECT_EQ(server->calls, (Lines{"enumerateInstanceNames root/third CIM_ObjectManager",
                                    "enumerateInstanceNames root/third CIM_Namespace"}));
}

namespace {

/// What getting an object traces behind its frame and delivers.
struct Get {
    const char* className;
    const char* keyName;
    const char* keyValue;
    Lines trace;
    Lines properties; ///< of the one instance delivered; none: nothing is delivered
    std::string path; ///< of that instance
};

class GetTest : public InstanceOperationsTest, public testing::WithParamInterface<Get> {};

Lines echo(const std::string& antecedent, const std::string& dependent) {
    return {"Antecedent: reference " + antecedent, "Dependent: reference " + dependent};
}

std::vector<Get> gets() {
    const Lines profileProperties = {"InstanceID: string Orvex2",
                                     "RegisteredOrganization: uint16 11",
                                     "OtherRegisteredOrganization: string ",
                                     "RegisteredName: string Switch",
                                     "RegisteredVersion: string 1.1.0",
                                     "AdvertiseTypes: uint16[] 3 ",
                                     "AdvertiseTypeDescriptions: string[] null"};
    Lines subProfileProperties = profileProperties;
    subProfileProperties[0] = "InstanceID: string Orvex5";
    subProfileProperties[3] = "RegisteredName: string Blades";
    // One key, as a path: the other reference stays empty.
    constexpr const char* key = "CIM_X.Name=\"x\"";
    const Lines echoed = echo(inRequest + key, "");
    const auto requested = [&](const std::string& className) {
        return "//client.example.net/root/other:" + className +
               ".Antecedent=\"CIM_X.Name=\\\"x\\\"\"";
    };
    std::vector<Get> rows = {
        {"CIM_RegisteredProfile",
         "InstanceID",
         "orvex2",
         {"Quil getRegisteredProfileInstance(): Start keyValue is orvex2 found flag is 0",
          "Quil getRegisteredProfileInstance(): Start regprofiles size is 3",
          "Quil getRegisteredProfileInstance() - InstanceId is Orvex1",
          "Quil getRegisteredProfileInstance() - InstanceId is Orvex2",
          "Quil getRegisteredProfileInstance() - Inst Found - foundFlag is 1",
          "Quil _getRegProfInst(): onj path is " + profile(inOwn, "Orvex2"),
          "Quil _getRegProfInst(): AFTER onj path is " + profile(inOwn, "orvex2")},
         profileProperties,
         profile(inOwn, "orvex2")},
        {"CIM_RegisteredSubProfile",
         "InstanceID",
         "orvex5",
         {},
         subProfileProperties,
         profile(inOwn, "Orvex5")},
        {"CIM_ReferencedProfile", "Antecedent", key, {}, {}, ""},
        {"CIM_SubProfileRequiresProfile",
         "Antecedent",
         key,
         {},
         echoed,
         "CIM_SubProfileRequiresProfile"},
        {"CIM_ElementConformsToProfile",
         "ConformantStandard",
         key,
         {},
         {"ConformantStandard: reference " + inRequest + key, "ManagedElement: reference "},
         "CIM_ElementConformsToProfile"},
        {"ORVEX_ObjectManagerHost",
         "Name",
         "Switch1.example.net",
         joined({{"Quil getOrvexOHostInstance(): Start - key is Switch1.example.net",
                  "_getClassFromCIMOM(): className ORVEX_ObjectManagerHost", "Quil - temp msg",
                  "Quil: temp msg 23"},
                 destroyed,
                 {"Quil getOrvexOHostInstance(): Exit "}}),
         {"CreationClassName: string ORVEX_ObjectManagerHost", "Name: string switch1.example.net",
          "NameFormat: string Other", "Description: string ", "ElementName: string ",
          "OperationalStatus: uint16[] 2 "},
         host},
        {"ORVEX_SoftwareIdentity",
         "InstanceID",
         "orvexSI1",
         {"Quil getOrvexSIInstance(): Start - key is orvexSI1", "Quil getOrvexSIInstance():In loop",
          "_getClassFromCIMOM(): className ORVEX_SoftwareIdentity", "Quil: temp msg 23",
          "Quil getOrvexSIInstance(): Exit "},
         {"InstanceID: string OrvexSI1", "Name: string Kelmar", "VersionString: string 3.0",
          "Manufacturer: string Orvex Systems", "Classifications: uint16[] 10 "},
         identity},
    };
    const struct {
        const char* className;
        const char* start;
        const char* exit;
    } echoes[] = {
        {"CIM_HostedService", "getOrvexSPHostedServiceInstance(): Start ",
         "getOrvexSpHostedServiceInstance () - Exit "},
        {"CIM_HostedAccessPoint", "getOrvexSPHostedAccessPointInstance(): Start ",
         "getOrvexSpHostedAccessPointInstance () - Exit "},
        {"CIM_NamespaceInManager", "getNSInMgrInstance(): Start ", "getNSInMgrInstance () - Exit "},
        {"CIM_CommMechanismForManager", "getCommMechForMgrInstance(): Start ",
         "getCommMechForMgrInstance () - Exit "},
        {"ORVEX_ElementSoftwareIdentity", "getOrvexSPESIInstance(): Start ",
         "getOrvexSpESI () - Exit "},
    };
    for (const auto& row : echoes) {
        rows.push_back({row.className,
                        "Antecedent",
                        key,
                        {row.start, row.exit},
                        echoed,
                        requested(row.className)});
    }
    for (const char* className :
         {"CIM_ObjectManager", "CIM_CIMXMLCommunicationMechanism",
          "PG_CIMXMLCommunicationMechanism", "CIM_Namespace", "PG_Namespace"})
        rows.push_back({className, "Name", "any", {}, {}, ""});
    return rows;
}

std::string getName(const testing::TestParamInfo<Get>& info) {
    return info.param.className;
}

} // namespace

INSTANTIATE_TEST_SUITE_P(Of, GetTest, testing::ValuesIn(gets()), getName);

TEST_P(GetTest, GoesToTheFunctionOfTheClassInAnyLetterCase) {
    const Get& row = GetParam();
    for (const bool inLowerCase : {false, true}) {
        const std::string className = inLowerCase ? lower(row.className) : row.className;
        const std::string keyName = inLowerCase ? lower(row.keyName) : row.keyName;
        SCOPED_TRACE(className);
        const Answer answer =
            ask(provider, "getInstance", pathOf(className, {{keyName, row.keyValue}}, other));
        EXPECT_EQ(answer.trace,
                  traceLines(joined(
                      {frameLines("getInstance", className, keyName, row.keyValue), row.trace})));
        EXPECT_EQ(answer.completeCalls, 1U);
        EXPECT_EQ(answer.processingCalls, 0U);
        ASSERT_EQ(answer.objects.size(), row.properties.empty() ? 0U : 1U);
        if (row.properties.empty())
            continue;
        EXPECT_EQ(describe(CIMInstance(answer.objects[0])), row.properties);
        EXPECT_TRUE(inLowerCase || answer.paths[0] == row.path) << answer.paths[0];
    }
}

TEST_P(GetTest, DeliversTheSameWhateverThePropertyListAndTheFlags) {
    const Get& row = GetParam();
    const CIMObjectPath path = pathOf(row.className, {{row.keyName, row.keyValue}}, other);
    const Answer plain = ask(provider, "getInstance", path);
    Filters filters;
    filters.propertyList = CIMPropertyList(Array<CIMName>());
    filters.includeQualifiers = filters.includeClassOrigin = true;
    const Answer filtered = ask(provider, "getInstance", path, filters);
    ASSERT_EQ(filtered.objects.size(), plain.objects.size());
    for (std::size_t i = 0; i < plain.objects.size(); ++i)
        EXPECT_TRUE(filtered.objects[i].identical(plain.objects[i]));
}

TEST_F(InstanceOperationsTest, GetWithoutAnAcceptedKeyIsTracedAndNeverCompleted) {
    const struct {
        const char* className;
        Keys keys;
        std::string lastValue;
    } rows[] = {
        {"CIM_RegisteredProfile", {{"Name", "Orvex1"}}, "Orvex1"},
        {"CIM_RegisteredProfile", {}, ""},
        {"CIM_RegisteredProfile", {{"Name", "one"}, {"Other", "two"}}, "two"},
        {"ORVEX_ObjectManagerHost",
         {{"CreationClassName", "ORVEX_ObjectManagerHost"}},
         "ORVEX_ObjectManagerHost"},
        {"CIM_HostedService", {}, ""},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.className);
        Lines keyLines;
        for (const auto& key : row.keys) {
            keyLines.push_back(keyLine(row.className, key.first));
            keyLines.push_back(keyFailLine(row.className, key.first));
        }
        const Answer answer = ask(provider, "getInstance", pathOf(row.className, row.keys));
        EXPECT_EQ(answer.trace,
                  traceLines(joined({startLines("getInstance", row.className),
                                     gateLines("getInstance"),
                                     keyLines,
                                     {std::string(row.className) + " keyvalue " + row.lastValue,
                                      "!getInstance can't find key",
                                      "Quil getInstance(): Exception -  invalid key name"}})));
        EXPECT_TRUE(answer.objects.empty());
        EXPECT_EQ(answer.completeCalls + answer.processingCalls, 0U);
    }
}

TEST_F(InstanceOperationsTest, GetTakesTheFirstAcceptedKeyAndLooksNoFurther) {
    const Answer answer =
        ask(provider, "getInstance",
            pathOf("CIM_RegisteredSubProfile",
                   {{"Aaa", "Orvex3"}, {"InstanceID", "Orvex4"}, {"Zzz", "Orvex5"}}));
    EXPECT_EQ(answer.trace,
              traceLines(joined({startLines("getInstance", "CIM_RegisteredSubProfile"),
                                 gateLines("getInstance"),
                                 {keyLine("CIM_RegisteredSubProfile", "Aaa"),
                                  keyFailLine("CIM_RegisteredSubProfile", "Aaa"),
                                  keyLine("CIM_RegisteredSubProfile", "InstanceID"),
                                  "CIM_RegisteredSubProfile keyvalue Orvex4"}})));
    EXPECT_EQ(answer.paths, (Lines{profile(inOwn, "Orvex4")}));
}

TEST_F(InstanceOperationsTest, GetOfAnAssociationAcceptsItsFirstKeyAndUsesTheWholePath) {
    const Answer answer = ask(
        provider, "getInstance",
        pathOf(
            "CIM_HostedService",
            {{"Aaa", "any"}, {"Antecedent", "CIM_X.Name=\"x\""}, {"Dependent", "CIM_Y.Name=\"y\""}},
            other));
    EXPECT_EQ(answer.trace[4], traceLines({keyLine("CIM_HostedService", "Aaa")})[0]);
    EXPECT_EQ(answer.trace[5], "ServerProfileProvider CIM_HostedService keyvalue any");
    ASSERT_EQ(answer.objects.size(), 1U);
    EXPECT_EQ(describe(CIMInstance(answer.objects[0])),
              echo(inRequest + "CIM_X.Name=\"x\"", inRequest + "CIM_Y.Name=\"y\""));
}

TEST_F(InstanceOperationsTest, GetOfWhatIsNotThereCompletesWithNothing) {
    for (const auto& [className, key] : Keys{{"CIM_RegisteredProfile", "InstanceID"},
                                             {"CIM_RegisteredSubProfile", "InstanceID"},
                                             {"ORVEX_ObjectManagerHost", "Name"},
                                             {"ORVEX_SoftwareIdentity", "InstanceID"}}) {
        const Answer answer = ask(provider, "getInstance", pathOf(className, {{key, "none"}}));
        EXPECT_TRUE(answer.objects.empty()) << className;
        EXPECT_EQ(answer.completeCalls, 1U) << className;
    }
}
