// The read operations of the instance interface: frame, key and dispatch.
#include "Operations.h"
#include "support/Resolver.h"

#include <cctype>
#include <functional>

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

using Module = ServerProfileProvider;

/// The functions to which the enumerations of a served class go; none where nobody here enumerates
/// it, and the answer is empty, and complete.
struct Enumeration {
    std::string className;
    std::function<void(Module&, const String& className, ObjectPathResponseHandler&)> names;
    std::function<void(Module&, const String& className, InstanceResponseHandler&)> instances;
};

Enumeration by(const char* className, Module::EnumerateNames Module::*names,
               Module::EnumerateInstances Module::*instances) {
    return {className,
            [names](Module& module, const String& name, ObjectPathResponseHandler& to) {
                (module.*names)(name, to, other.c_str());
            },
            [instances](Module& module, const String& name, InstanceResponseHandler& to) {
                (module.*instances)(name, to, other.c_str());
            }};
}

Enumeration by(const char* className, Module::Enumerate Module::*both) {
    return {className,
            [both](Module& module, const String& name, ObjectPathResponseHandler& to) {
                (module.*both)(name, to, other.c_str(), false);
            },
            [both](Module& module, const String& name, InstanceResponseHandler& to) {
                (module.*both)(name, to, other.c_str(), true);
            }};
}

const std::vector<Enumeration> enumerations = {
    by("CIM_RegisteredProfile", &Module::_getRegisteredProfileInstanceNames,
       &Module::_getRegisteredProfileInstances),
    by("CIM_RegisteredSubProfile", &Module::_getRegisteredSubProfileInstanceNames,
       &Module::_getRegisteredSubProfileInstances),
    by("CIM_SubProfileRequiresProfile", &Module::_getSubprofileRequiresProfileInstanceNames,
       &Module::_getSubprofileRequiresProfileInstances),
    by("CIM_ElementConformsToProfile", &Module::_getElementConformstoProfileInstanceNames,
       &Module::_getElementConformstoProfileInstances),
    by("ORVEX_ObjectManagerHost", &Module::_getOrvexOHostInstanceNames,
       &Module::_getOrvexOMHostInstances),
    by("ORVEX_SoftwareIdentity", &Module::_getOrvexSIInstanceNames, &Module::_getOrvexSIInstances),
    by("CIM_HostedService", &Module::_getOrvexSPHostedServiceHelper),
    by("CIM_HostedAccessPoint", &Module::_getOrvexSPHostedAccessPointHelper),
    by("ORVEX_ElementSoftwareIdentity", &Module::_getOrvexSPESIHelper),
    by("CIM_NamespaceInManager", &Module::_getNSInMgrHelper),
    by("CIM_CommMechanismForManager", &Module::_getCommMechForMgrHelper),
    {"CIM_ReferencedProfile", {}, {}},
    {"CIM_ObjectManager", {}, {}},
    {"CIM_CIMXMLCommunicationMechanism", {}, {}},
    {"PG_CIMXMLCommunicationMechanism", {}, {}},
    {"CIM_Namespace", {}, {}},
    {"PG_Namespace", {}, {}},
};

std::string lower(std::string name) {
    for (char& c : name)
        c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return name;
}

Lines pathsOf(const PathRecorder& recorder) {
    Lines all;
    for (const CIMObjectPath& path : recorder.delivered)
        all.push_back(text(path));
    return all;
}

Lines pathsOf(const InstanceRecorder& recorder) {
    Lines all;
    for (const CIMInstance& instance : recorder.delivered)
        all.push_back(text(instance.getPath()));
    return all;
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
    /// Expects the answer of `function`, which delivers something unless there is none, behind the
    /// frame of the operation.
    template <class Recorder, class Function>
    void expectAnswer(const std::string& operation, const Function& function) {
        for (const std::string& spelling : {GetParam().className, lower(GetParam().className)}) {
            SCOPED_TRACE(operation + " " + spelling);
            Recorder expected;
            const Lines trace = tracedBy([&] {
                if (function)
                    function(provider, GetParam().className.c_str(), expected);
            });
            const Answer answer = ask(provider, operation, pathOf(spelling, {}, other));
            EXPECT_EQ(answer.trace, joined({traceLines(frameLines(operation, spelling)), trace}));
            EXPECT_EQ(answer.paths, pathsOf(expected));
            EXPECT_EQ(answer.paths.empty(), !function);
            EXPECT_EQ(answer.completeCalls, 1U);
            EXPECT_EQ(answer.processingCalls, 0U);
        }
    }
};

std::string testName(const testing::TestParamInfo<Enumeration>& info) {
    return info.param.className;
}

} // namespace

INSTANTIATE_TEST_SUITE_P(Of, EnumerationTest, testing::ValuesIn(enumerations), testName);

TEST_P(EnumerationTest, GoesToTheFunctionsOfTheClassInAnyLetterCase) {
    expectAnswer<PathRecorder>("enumerateInstanceNames", GetParam().names);
    expectAnswer<InstanceRecorder>("enumerateInstances", GetParam().instances);
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

/// The function to which getting an object of a class goes, if there is one, and a key for it.
struct Get {
    std::string className;
    std::string keyName;
    const char* keyValue;
    std::function<void(Module&, const CIMObjectPath&, const String& key, InstanceResponseHandler&)>
        function;
};

class GetTest : public InstanceOperationsTest, public testing::WithParamInterface<Get> {};

Lines echo(const std::string& antecedent, const std::string& dependent) {
    return {"Antecedent: reference " + antecedent, "Dependent: reference " + dependent};
}

Get by(const char* className, const char* keyName, const char* key,
       Module::GetByKey Module::*function) {
    return {className, keyName, key,
            [function](Module& module, const CIMObjectPath&, const String& value,
                       InstanceResponseHandler& to) { (module.*function)(value, to); }};
}

/// Associations are got by the whole path, which needs one key, of any name.
Get byPath(const char* className, const char* keyName, Module::GetByPath Module::*function) {
    return {className, keyName, "CIM_X.Name=\"x\"",
            [function](Module& module, const CIMObjectPath& path, const String&,
                       InstanceResponseHandler& to) { (module.*function)(path, to); }};
}

const std::vector<Get> gets = {
    by("CIM_RegisteredProfile", "InstanceID", "orvex2", &Module::_getRegisteredProfileInstance),
    by("CIM_RegisteredSubProfile", "InstanceID", "orvex5",
       &Module::_getRegisteredSubProfileInstance),
    by("ORVEX_ObjectManagerHost", "Name", "Switch1.example.net", &Module::_getOrvexOMHostInstance),
    by("ORVEX_SoftwareIdentity", "InstanceID", "orvexSI1", &Module::_getOrvexSIInstance),
    byPath("CIM_SubProfileRequiresProfile", "Antecedent",
           &Module::_getSubprofileRequiresProfileInstance),
    byPath("CIM_ElementConformsToProfile", "ConformantStandard",
           &Module::_getElementConformstoProfileInstance),
    byPath("CIM_HostedService", "Antecedent", &Module::_getOrvexSPHostedServiceInstance),
    byPath("CIM_HostedAccessPoint", "Antecedent", &Module::_getOrvexSPHostedAccessPointInstance),
    byPath("CIM_NamespaceInManager", "Antecedent", &Module::_getNSInMgrInstance),
    byPath("CIM_CommMechanismForManager", "Antecedent", &Module::_getCommMechForMgrInstance),
    byPath("ORVEX_ElementSoftwareIdentity", "Antecedent", &Module::_getOrvexSPESIInstance),
    {"CIM_ReferencedProfile", "Antecedent", "CIM_X.Name=\"x\"", {}},
    {"CIM_ObjectManager", "Name", "any", {}},
    {"CIM_CIMXMLCommunicationMechanism", "Name", "any", {}},
    {"PG_CIMXMLCommunicationMechanism", "Name", "any", {}},
    {"CIM_Namespace", "Name", "any", {}},
    {"PG_Namespace", "Name", "any", {}},
};

std::string getName(const testing::TestParamInfo<Get>& info) { return info.param.className; }

} // namespace

INSTANTIATE_TEST_SUITE_P(Of, GetTest, testing::ValuesIn(gets), getName);

TEST_P(GetTest, GoesToTheFunctionOfTheClassInAnyLetterCase) {
    const Get& row = GetParam();
    for (const auto& [className, keyName] :
         Keys{{row.className, row.keyName}, {lower(row.className), lower(row.keyName)}}) {
        SCOPED_TRACE(className);
        const CIMObjectPath path = pathOf(className, {{keyName, row.keyValue}}, other);
        InstanceRecorder expected;
        const Lines trace = tracedBy([&] {
            if (row.function)
                row.function(provider, path, row.keyValue, expected);
        });
        const Answer answer = ask(provider, "getInstance", path);
        EXPECT_EQ(answer.trace,
                  joined({traceLines(frameLines("getInstance", className, keyName, row.keyValue)),
                          trace}));
        EXPECT_EQ(answer.completeCalls, 1U);
        EXPECT_EQ(answer.processingCalls, 0U);
        ASSERT_EQ(answer.objects.size(), row.function ? 1U : 0U);
        EXPECT_TRUE(!row.function ||
                    answer.objects[0].identical(CIMObject(expected.delivered.at(0))));
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
    EXPECT_EQ(answer.paths, (Lines{"//switch1.example.net/root/cimv2:CIM_RegisteredSubProfile."
                                   "InstanceID=\"Orvex4\""}));
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
