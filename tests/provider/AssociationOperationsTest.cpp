// The operations of the association interface: frame, key, dispatch and what is passed on.
#include "Operations.h"
#include "support/Resolver.h"

#include <algorithm>
#include <cctype>

PEGASUS_USING_PEGASUS;
using namespace testsupport;

namespace {

/// A class from which somebody traverses, and how its functions begin their trace: the filter that
/// selects the associations, then, for associators, the result class.
struct Source {
    const char* className;
    const char* keyName;
    const char* names[4]; ///< of the functions, in the order of associationOperations()
    bool tracesResultClass;
};

const std::vector<Source> sources = {
    {"CIM_RegisteredProfile",
     "InstanceID",
     {"regProfAssociatorNames", "regprofAssociators", "regProfReferenceNames", "regProfReferences"},
     false},
    {"CIM_RegisteredSubProfile",
     "InstanceID",
     {"regSubProfAssociatorNames", "regSubProfAssociators", "regSubProfRefNames",
      "regSubProfReferences"},
     false},
    {"ORVEX_ObjectManagerHost",
     "Name",
     {"orvexOMHostAssociatorNames", "orvexOMHostAssociators", "orvexOMHostReferenceNames",
      "orvexOMHostReferences"},
     true},
    {"CIM_ObjectManager",
     "Name",
     {"ObjMgrAssociatorNames", "ObjMgrAssociators", "ObjMgrReferences", "ObjMgrReferences"},
     true},
    {"PG_CIMXMLCommunicationMechanism",
     "Name",
     {"CimXmlCMAssociatorNames", "CimXmlCMAssociators", "CimXmlCMReferences", "CimXmlCMReferences"},
     true},
    {"PG_Namespace",
     "Name",
     {"NamespaceAssociatorNames", "NamespaceAssociators", "NamespaceReferenceNames",
      "NamespaceReferences"},
     true},
};

const std::vector<const char*> servedButNoSource = {
    "CIM_ReferencedProfile",
    "CIM_SubProfileRequiresProfile",
    "CIM_HostedService",
    "CIM_HostedAccessPoint",
    "CIM_CIMXMLCommunicationMechanism",
    "CIM_Namespace",
    "CIM_ElementConformsToProfile",
    "CIM_NamespaceInManager",
    "CIM_CommMechanismForManager",
    "ORVEX_ElementSoftwareIdentity",
};

bool isAssociators(const std::string& operation) { return operation[0] == 'a'; }

std::string lower(std::string name) {
    for (char& c : name)
        c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return name;
}

class AssociationOperationsTest : public ModuleTest {
  protected:
    AssociationOperationsTest() {
        resolver = Resolver();
        server->publish("CIM_ObjectManager", Lines{manager});
        tracedBy([&] { provider.initialize(handle); });
        server->calls.clear();
    }

    const std::string manager = "root/cimv2:CIM_ObjectManager.Name=\"manager\"";
};

class SourceTest : public AssociationOperationsTest, public testing::WithParamInterface<Source> {};

std::string testName(const testing::TestParamInfo<Source>& info) { return info.param.className; }

} // namespace

INSTANTIATE_TEST_SUITE_P(Of, SourceTest, testing::ValuesIn(sources), testName);

TEST_P(SourceTest, GoesToTheFunctionOfTheOperationInAnyLetterCase) {
    const Source& row = GetParam();
    for (std::size_t i = 0; i < 4; ++i) {
        const std::string operation = associationOperations()[i];
        // No traversal knows these classes, so that each ends after its first lines.
        const Filters filters = {"CIM_NoAssociation", "CIM_NoResult", "role", "resultRole"};
        const std::string start = std::string(" Quil ") + row.names[i] + "(): ";
        Lines traversal;
        if (isAssociators(operation)) {
            const std::string keyValue =
                std::string(row.names[i]) == "regprofAssociators" ? " keyValue is any key" : "";
            traversal.push_back(start + "assoc class is CIM_NoAssociation" + keyValue);
        }
        if (row.tracesResultClass || !isAssociators(operation))
            traversal.push_back(start + "result class is CIM_NoResult");
        for (const std::string& className : {std::string(row.className), lower(row.className)}) {
            SCOPED_TRACE(operation + " " + className);
            const Answer answer =
                ask(provider, operation, pathOf(className, {{row.keyName, "any key"}}), filters);
            EXPECT_EQ(answer.trace,
                      traceLines(joined(
                          {frameLines(operation, className, row.keyName, "any key"), traversal})));
            EXPECT_TRUE(answer.paths.empty());
            EXPECT_EQ(answer.completeCalls, 1U);
            EXPECT_EQ(answer.processingCalls, 0U);
        }
    }
}

TEST_P(SourceTest, FiltersThatTheClientLeftOutArriveEmpty) {
    const Source& row = GetParam();
    for (const std::string& operation : associationOperations()) {
        const Answer answer =
            ask(provider, operation, pathOf(row.className, {{row.keyName, "any key"}}));
        const std::size_t first = frameLines(operation, row.className, row.keyName).size();
        ASSERT_GT(answer.trace.size(), first + 1);
        const std::string end = answer.trace[first].substr(answer.trace[first].rfind(" is ") + 4);
        EXPECT_TRUE(end.empty() || end == "any key") << answer.trace[first];
        EXPECT_EQ(answer.completeCalls, 1U);
    }
}

TEST_F(AssociationOperationsTest, KeyValueFiltersAndNamespaceArePassedOn) {
    server->publish("ORVEX_Vsan", Lines{"root/third:ORVEX_Vsan.Name=\"vsan1\""});
    const Answer answer =
        ask(provider, "associatorNames",
            pathOf("CIM_RegisteredProfile", {{"InstanceID", "orvex1"}}, "root/third"),
            {"", "CIM_RegisteredSubProfile", "", ""});
    EXPECT_EQ(
        answer.paths,
        (Lines{"//switch1.example.net/root/third:CIM_RegisteredSubProfile.InstanceID=\"Orvex3\"",
               "//switch1.example.net/root/third:CIM_RegisteredSubProfile.InstanceID=\"Orvex4\"",
               "root/third:ORVEX_Vsan.Name=\"vsan1\"",
               "//switch1.example.net/root/cimv2:ORVEX_SoftwareIdentity.InstanceID=\"OrvexSI1\""}));
    EXPECT_EQ(server->calls, (Lines{"enumerateInstanceNames root/third ORVEX_Vsan"}));
    // A result class that names no subprofile.
    EXPECT_EQ(ask(provider, "associatorNames",
                  pathOf("CIM_RegisteredProfile", {{"InstanceID", "Orvex1"}}),
                  {"CIM_SubProfileRequiresProfile", "CIM_RegisteredProfile", "", ""})
                  .paths,
              Lines());
}

TEST_F(AssociationOperationsTest, MechanismsAndNamespacesGetTheWholeSourcePathForReferences) {
    const struct {
        const char* source;
        const char* association;
    } rows[] = {
        {"PG_CIMXMLCommunicationMechanism", "CIM_CommMechanismForManager"},
        {"PG_Namespace", "CIM_NamespaceInManager"},
    };
    for (const auto& row : rows) {
        const CIMObjectPath source = pathOf(row.source, {{"Name", "n"}, {"Other", "o"}});
        Array<CIMKeyBinding> keys;
        keys.append(CIMKeyBinding(CIMName("Antecedent"), CIMValue(CIMObjectPath(manager.c_str()))));
        keys.append(CIMKeyBinding(CIMName("Dependent"), CIMValue(source)));
        const std::string expected =
            text(CIMObjectPath(String("switch1.example.net"), CIMNamespaceName("root/cimv2"),
                               CIMName(row.association), keys));
        for (const char* operation : {"referenceNames", "references"}) {
            EXPECT_EQ(ask(provider, operation, source, {"", row.association, "", ""}).paths,
                      (Lines{expected}))
                << operation;
        }
    }
}

TEST_F(AssociationOperationsTest, SoftwareIdentityGoesToOneFunctionWithTheModeOfTheOperation) {
    for (std::size_t mode = 0; mode < 4; ++mode) {
        const std::string operation = associationOperations()[mode];
        const bool isReference = mode > 1;
        for (const std::string className : {"ORVEX_SoftwareIdentity", "orvex_softwareidentity"}) {
            SCOPED_TRACE(operation + " " + className);
            const CIMObjectPath source = pathOf(className, {{"InstanceID", "any"}});
            const Lines frame = frameLines(operation, className, "InstanceID", "any");

            // The two reference operations pass the result class twice.
            const std::string selected = isReference ? "CIM_NoResult" : "CIM_NoAssociation";
            const Answer refused = ask(provider, operation, source,
                                       {"CIM_NoAssociation", "CIM_NoResult", "role", "far"});
            EXPECT_EQ(
                refused.trace,
                traceLines(joined({frame,
                                   {" Quil orvexSIAssociators(): assoc class is " + selected,
                                    " Quil orvexSIAssociators(): result class is CIM_NoResult"}})));
            EXPECT_EQ(refused.completeCalls, 1U);

            const Answer all = ask(provider, operation, source);
            const Lines begun = traceLines(
                joined({frame,
                        {" Quil orvexSIAssociators(): assoc class is ",
                         " Quil orvexSIAssociators(): result class is ", " Quil flag is 1",
                         " Quil assoc flag is " + std::to_string(mode)}}));
            ASSERT_GE(all.trace.size(), begun.size());
            EXPECT_EQ(Lines(all.trace.begin(),
                            all.trace.begin() + static_cast<std::ptrdiff_t>(begun.size())),
                      begun);
            EXPECT_EQ(all.paths.size(), 6U);
            EXPECT_EQ(all.completeCalls, 1U);
        }
    }
}

TEST_F(AssociationOperationsTest, ServedClassThatIsNoSourceHasAnEmptyAnswer) {
    for (const char* className : servedButNoSource) {
        for (const std::string& operation : associationOperations()) {
            SCOPED_TRACE(operation + " " + className);
            const Answer answer =
                ask(provider, operation, pathOf(className, {{"Name", "n"}}), Filters());
            EXPECT_EQ(answer.trace, traceLines(frameLines(operation, className, "Name", "n")));
            EXPECT_TRUE(answer.paths.empty());
            EXPECT_EQ(answer.completeCalls, 1U);
            EXPECT_EQ(answer.processingCalls, 0U);
        }
    }
}

TEST_F(AssociationOperationsTest, PathWithoutAnAcceptedKeyIsTracedAndNeverCompleted) {
    const struct {
        const char* className;
        Keys keys;
    } rows[] = {
        {"CIM_RegisteredProfile", {{"Name", "Orvex1"}}},
        {"CIM_RegisteredProfile", {}},
        {"ORVEX_SoftwareIdentity", {{"Name", "Kelmar"}, {"Other", "o"}}},
        {"PG_Namespace", {{"InstanceID", "root/cimv2"}}},
        {"CIM_HostedService", {}},
    };
    for (const auto& row : rows) {
        Lines keyLines;
        for (const auto& key : row.keys) {
            keyLines.push_back(keyLine(row.className, key.first));
            keyLines.push_back(keyFailLine(row.className, key.first));
        }
        for (const std::string& operation : associationOperations()) {
            SCOPED_TRACE(operation + " " + row.className);
            const Answer answer = ask(provider, operation, pathOf(row.className, row.keys));
            EXPECT_EQ(
                answer.trace,
                traceLines(joined(
                    {startLines(operation, row.className),
                     gateLines(operation),
                     classLines(operation, row.className),
                     {"Quil " + operation + "(): keys.size is: " + std::to_string(row.keys.size())},
                     keyLines,
                     {"!getInstance can't find key",
                      "Quil " + operation + "(): Exception -  invalid key name"}})));
            EXPECT_TRUE(answer.paths.empty());
            EXPECT_EQ(answer.completeCalls + answer.processingCalls, 0U);
        }
    }
}

TEST_F(AssociationOperationsTest, PathWithSeveralKeysUsesTheFirstAcceptedOne) {
    for (const std::string& operation : associationOperations()) {
        SCOPED_TRACE(operation);
        const Answer answer = ask(
            provider, operation,
            pathOf("CIM_ObjectManager",
                   {{"CreationClassName", "first"}, {"Name", "second"}, {"SystemName", "third"}}));
        const Lines frame =
            traceLines(joined({startLines(operation, "CIM_ObjectManager"),
                               gateLines(operation),
                               classLines(operation, "CIM_ObjectManager"),
                               {"Quil " + operation + "(): keys.size is: 3",
                                keyLine("CIM_ObjectManager", "CreationClassName"),
                                keyFailLine("CIM_ObjectManager", "CreationClassName"),
                                keyLine("CIM_ObjectManager", "Name")}}));
        ASSERT_GT(answer.trace.size(), frame.size());
        EXPECT_EQ(Lines(answer.trace.begin(),
                        answer.trace.begin() + static_cast<std::ptrdiff_t>(frame.size())),
                  frame);
        EXPECT_NE(std::find(answer.trace.begin(), answer.trace.end(),
                            "ServerProfileProvider  Quil keyValue is second"),
                  answer.trace.end());
    }
}

TEST_F(AssociationOperationsTest, ResultsAreTheSameWhateverTheFlagsAndThePropertyList) {
    Filters filters;
    filters.includeQualifiers = true;
    filters.includeClassOrigin = true;
    filters.propertyList = CIMPropertyList(Array<CIMName>());
    const CIMObjectPath source = pathOf("CIM_RegisteredSubProfile", {{"InstanceID", "Orvex3"}});
    for (const char* operation : {"associators", "references"}) {
        const Answer plain = ask(provider, operation, source);
        const Answer filtered = ask(provider, operation, source, filters);
        ASSERT_EQ(plain.objects.size(), 2U);
        ASSERT_EQ(filtered.objects.size(), 2U);
        for (std::size_t i = 0; i < 2; ++i)
            EXPECT_TRUE(filtered.objects[i].identical(plain.objects[i]));
    }
}
