// The served classes, and the keys by which their objects are named.
#include "Operations.h"

#include <cctype>

PEGASUS_USING_PEGASUS;
using namespace testsupport;

namespace {

constexpr const char* any = nullptr;

struct ServedClass {
    const char* name;
    const char* key; ///< `any`: every key is accepted
};

const std::vector<ServedClass> servedClasses = {
    {"CIM_RegisteredProfile", "InstanceID"},
    {"CIM_RegisteredSubProfile", "InstanceID"},
    {"CIM_ReferencedProfile", any},
    {"CIM_SubProfileRequiresProfile", any},
    {"ORVEX_ObjectManagerHost", "Name"},
    {"CIM_HostedService", any},
    {"CIM_HostedAccessPoint", any},
    {"CIM_ObjectManager", "Name"},
    {"CIM_CIMXMLCommunicationMechanism", "Name"},
    {"PG_CIMXMLCommunicationMechanism", "Name"},
    {"CIM_Namespace", "Name"},
    {"PG_Namespace", "Name"},
    {"CIM_ElementConformsToProfile", any},
    {"CIM_NamespaceInManager", any},
    {"CIM_CommMechanismForManager", any},
    {"ORVEX_SoftwareIdentity", "InstanceID"},
    {"ORVEX_ElementSoftwareIdentity", any},
};

std::string withLetters(std::string name, int (*letter)(int)) {
    for (char& c : name)
        c = static_cast<char>(letter(static_cast<unsigned char>(c)));
    return name;
}

Lines inAnyCase(const std::string& name) {
    return {name, withLetters(name, std::tolower), withLetters(name, std::toupper)};
}

class ServedClassTest : public ModuleTest, public testing::WithParamInterface<ServedClass> {
  protected:
    int check(const std::string& className, const std::string& keyName, Lines* lines = nullptr) {
        int result = -1;
        const Lines traced =
            tracedBy([&] { result = provider._checkKey(className.c_str(), keyName.c_str()); });
        if (lines != nullptr)
            *lines = traced;
        return result;
    }
};

class UnservedClassTest : public ModuleTest {};

std::string testName(const testing::TestParamInfo<ServedClass>& info) { return info.param.name; }

} // namespace

INSTANTIATE_TEST_SUITE_P(Of, ServedClassTest, testing::ValuesIn(servedClasses), testName);

TEST_P(ServedClassTest, IsServedInAnyLetterCaseAndUntraced) {
    for (const std::string& name : inAnyCase(GetParam().name)) {
        CIMName className(name.c_str());
        EXPECT_EQ(tracedBy([&] { EXPECT_TRUE(provider._checkClass(className)); }), Lines());
        EXPECT_EQ(text(className.getString()), name);
    }
}

TEST_P(ServedClassTest, AcceptsItsKeysInAnyLetterCase) {
    const Lines keys = GetParam().key != any ? inAnyCase(GetParam().key)
                                             : Lines{"Antecedent", "Name", "", "whatever"};
    for (const std::string& className : inAnyCase(GetParam().name)) {
        for (const std::string& key : keys) {
            Lines lines;
            EXPECT_EQ(check(className, key, &lines), 1) << className << " " << key;
            EXPECT_EQ(lines, traceLines({keyLine(className, key)}));
        }
    }
}

TEST_P(ServedClassTest, RefusesOtherKeysAndSaysSo) {
    for (const std::string key :
         {"InstanceID", "Name", "CreationClassName", "InstanceI", "Names", ""}) {
        const bool accepted = GetParam().key == any || key == GetParam().key;
        Lines lines;
        EXPECT_EQ(check(GetParam().name, key, &lines), accepted ? 1 : 0) << key;
        Lines expected = {keyLine(GetParam().name, key)};
        if (!accepted)
            expected.push_back(keyFailLine(GetParam().name, key));
        EXPECT_EQ(lines, traceLines(expected));
    }
}

TEST_F(UnservedClassTest, IsTracedAndNotSupported) {
    for (const char* name :
         {"CIM_ManagedElement", "PG_ObjectManager", "ORVEX_Vsan", "CIM_RegisteredProfiles",
          "CIM_RegisteredProfil", "ORVEX_RegisteredProfile", "CIM_SoftwareIdentity",
          "CIM_ElementSoftwareIdentity"}) {
        CIMName className(name);
        std::string thrown;
        EXPECT_EQ(tracedBy([&] {
                      try {
                          provider._checkClass(className);
                      } catch (const CIMException& exception) {
                          thrown = std::to_string(exception.getCode()) + " '" +
                                   text(exception.getMessage()) + "'";
                      }
                  }),
                  traceLines({"Quil _checkClass(): failed "}));
        EXPECT_EQ(thrown, "7 ''") << name;
    }
}

TEST_F(UnservedClassTest, HasNoKeys) {
    for (const char* key : {"Name", "InstanceID", "Antecedent"}) {
        int result = -1;
        EXPECT_EQ(tracedBy([&] { result = provider._checkKey("CIM_ManagedElement", key); }),
                  traceLines({keyLine("CIM_ManagedElement", key),
                              keyFailLine("CIM_ManagedElement", key)}));
        EXPECT_EQ(result, 0);
    }
}

TEST_F(UnservedClassTest, IsAnsweredByNothingAndNeverCompleted) {
    buildCatalogue();
    const CIMObjectPath path = pathOf("CIM_ManagedElement", {{"InstanceID", "Orvex1"}});
    provider.initialize(handle);
    for (const std::string& operation : readOperations()) {
        const Answer answer = ask(provider, operation, path);
        EXPECT_EQ(answer.trace, traceLines(joined({startLines(operation, "CIM_ManagedElement"),
                                                   gateLines(operation),
                                                   classLines(operation, "CIM_ManagedElement"),
                                                   {"Quil _checkClass(): failed ",
                                                    "Quil " + operation + "(): Exception - "}})));
        EXPECT_TRUE(answer.paths.empty()) << operation;
        EXPECT_EQ(answer.completeCalls + answer.processingCalls, 0U) << operation;
    }
}
