// Class definitions read from the server, and the instances begun from them.
#include "common/ClassTemplates.h"
#include "support/ModuleTest.h"

#include <Pegasus/Common/CIMQualifier.h>

PEGASUS_USING_PEGASUS;
using namespace testsupport;

namespace {

class ClassTemplatesTest : public ModuleTest {
  protected:
    CIMClass read(const char* nameSpace, const char* className, bool includeQualifiers) {
        CIMNamespaceName space(nameSpace);
        CIMName name(className);
        return _getClassFromCIMOM(handle, space, name, includeQualifiers);
    }
};

Lines propertyNames(const CIMInstance& instance) {
    Lines names;
    for (Uint32 i = 0; i < instance.getPropertyCount(); ++i)
        names.push_back(text(instance.getProperty(i).getName().getString()));
    return names;
}

} // namespace

TEST_F(ClassTemplatesTest, ClassIsReadWithAllItsPropertiesFromTheNamespaceGiven) {
    server->define(makeClass("CIM_X", {"string Name", "uint16 Size"}), "root/other");
    CIMClass cimClass;
    EXPECT_EQ(tracedBy([&] { cimClass = read("root/other", "CIM_X", false); }),
              traceLines({"_getClassFromCIMOM(): className CIM_X"}));
    read("root/other", "CIM_X", true);
    EXPECT_EQ(cimClass.getPropertyCount(), 2U);
    EXPECT_EQ(
        server->calls,
        (Lines{"getClass root/other CIM_X localOnly=0 qualifiers=0 origin=0 properties=all",
               "getClass root/other CIM_X localOnly=0 qualifiers=1 origin=0 properties=all"}));
}

TEST_F(ClassTemplatesTest, CimExceptionOfTheServerBecomesNotFoundWithoutAMessage) {
    for (const CIMStatusCode status :
         {CIM_ERR_NOT_FOUND, CIM_ERR_INVALID_CLASS, CIM_ERR_ACCESS_DENIED, CIM_ERR_FAILED}) {
        server->fail("getClass", "CIM_X", status, "the server's message");
        std::string thrown = "nothing";
        EXPECT_EQ(tracedBy([&] {
                      try {
                          read("root/cimv2", "CIM_X", true);
                      } catch (const CIMException& exception) {
                          thrown = std::to_string(exception.getCode()) + " '" +
                                   text(exception.getMessage()) + "'";
                      }
                  }),
                  traceLines({"_getClassFromCIMOM(): className CIM_X",
                              "_getClassFromCIMOM(): Exception hit ",
                              "_getClassFromCIMOM(): Ecxeption className CIM_X"}));
        EXPECT_EQ(thrown, "6 ''");
    }
}

TEST_F(ClassTemplatesTest, OtherExceptionsOfTheServerPass) {
    server->fail("getClass", "CIM_X", [] { throw Exception(String("connection timed out")); });
    std::string thrown = "nothing";
    EXPECT_EQ(tracedBy([&] {
                  try {
                      read("root/cimv2", "CIM_X", true);
                  } catch (const CIMException&) {
                      thrown = "a CIMException";
                  } catch (const Exception& exception) {
                      thrown = text(exception.getMessage());
                  }
              }),
              traceLines({"_getClassFromCIMOM(): className CIM_X"}));
    EXPECT_EQ(thrown, "connection timed out");
}

TEST_F(ClassTemplatesTest, InstanceCarriesThePropertySetOfItsClassInTheOrderOfTheClass) {
    const Lines profile = {"AdvertiseTypeDescriptions",
                           "AdvertiseTypes",
                           "RegisteredVersion",
                           "RegisteredName",
                           "OtherRegisteredOrganization",
                           "RegisteredOrganization",
                           "InstanceID"};
    const Lines identity = {"Name", "Classifications", "Manufacturer", "VersionString",
                            "InstanceID"};
    const Lines host = {"CreationClassName", "OperationalStatus", "ElementName",
                        "Description",       "NameFormat",        "Name"};
    const struct {
        const char* className;
        Lines properties;
    } rows[] = {
        {"CIM_RegisteredProfile", profile},   {"CIM_RegisteredSubProfile", profile},
        {"ORVEX_SoftwareIdentity", identity}, {"ORVEX_ObjectManagerHost", host},
        {"orvex_objectmanagerhost", host},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.className);
        Lines declared = {"string Caption"};
        for (const std::string& property : row.properties) {
            declared.push_back("string " + property);
            declared.push_back("string " + property + "2");
        }
        server->define(makeClass(row.className, declared));
        CIMInstance instance;
        EXPECT_EQ(tracedBy([&] { instance = _instAddQualifieres(handle, CIMName(row.className)); }),
                  traceLines({std::string("_getClassFromCIMOM(): className ") + row.className}));
        EXPECT_EQ(propertyNames(instance), row.properties);
        EXPECT_EQ(text(instance.getClassName().getString()), row.className);
    }
    EXPECT_EQ(server->calls[0],
              "getClass root/cimv2 CIM_RegisteredProfile localOnly=0 qualifiers=1 origin=0 "
              "properties=all");
}

TEST_F(ClassTemplatesTest, PropertyNamesAreComparedIgnoringCaseAndKeptAsTheClassSpellsThem) {
    server->define(makeClass("ORVEX_SoftwareIdentity", {"string INSTANCEID", "string name"}));
    EXPECT_EQ(propertyNames(_instAddQualifieres(handle, CIMName("ORVEX_SoftwareIdentity"))),
              (Lines{"INSTANCEID", "name"}));
    EXPECT_EQ(describe(provider.buildOrvexSIInstance("ORVEX_SoftwareIdentity", OrvexSI())),
              (Lines{"INSTANCEID: string OrvexSI1", "name: string Kelmar"}));
}

TEST_F(ClassTemplatesTest, ClassNameIsTheOneOfTheDefinitionHoweverItWasAskedFor) {
    server->define(makeClass("ORVEX_SOFTWAREidentity", {"string InstanceID"}));
    const CIMInstance instance = _instAddQualifieres(handle, CIMName("ORVEX_SoftwareIdentity"));
    EXPECT_EQ(text(instance.getClassName().getString()), "ORVEX_SOFTWAREidentity");
    EXPECT_EQ(propertyNames(instance), Lines{"InstanceID"});
    // A finished instance has the name of its path.
    const CIMInstance finished = provider.buildOrvexSIInstance("ORVEX_SoftwareIdentity", OrvexSI());
    EXPECT_EQ(text(finished.getPath().getClassName().getString()), "ORVEX_SoftwareIdentity");
}

TEST_F(ClassTemplatesTest, InstanceCarriesAllQualifiersOfTheClassInTheirOrder) {
    CIMClass cimClass = makeClass("ORVEX_SoftwareIdentity", {"string InstanceID"});
    const Lines names = {"Version", "Description", "Abstract", "MappingStrings"};
    for (const std::string& name : names)
        cimClass.addQualifier(
            CIMQualifier(CIMName(name.c_str()), CIMValue(String("of the class"))));
    server->define(cimClass);
    CIMInstance instance = _instAddQualifieres(handle, CIMName("ORVEX_SoftwareIdentity"));
    ASSERT_EQ(instance.getQualifierCount(), names.size());
    for (Uint32 i = 0; i < names.size(); ++i) {
        EXPECT_EQ(text(instance.getQualifier(i).getName().getString()), names[i]);
        EXPECT_EQ(text(instance.getQualifier(i).getValue().toString()), "of the class");
    }
    EXPECT_EQ(instance.getProperty(0).getQualifierCount(), 1U);
}

TEST_F(ClassTemplatesTest, InstanceHasTheDefaultsOfTheClassAndSharesNothingWithIt) {
    CIMClass cimClass = makeClass("ORVEX_SoftwareIdentity", {"string InstanceID"});
    cimClass.addProperty(CIMProperty(CIMName("Name"), CIMValue(String("by default"))));
    cimClass.addQualifier(CIMQualifier(CIMName("Version"), CIMValue(String("1.0"))));
    server->define(cimClass);
    CIMInstance instance = _instAddQualifieres(handle, CIMName("ORVEX_SoftwareIdentity"));
    EXPECT_EQ(describe(instance), (Lines{"InstanceID: string null", "Name: string by default"}));
    instance.getProperty(1).setValue(CIMValue(String("changed")));
    instance.getQualifier(0).setValue(CIMValue(String("changed")));
    EXPECT_EQ(describe(cimClass.getProperty(1)), "Name: string by default");
    EXPECT_EQ(text(cimClass.getQualifier(0).getValue().toString()), "1.0");
}

TEST_F(ClassTemplatesTest, InstanceOfAnUnknownClassIsNotFound) {
    try {
        _instAddQualifieres(handle, CIMName("CIM_Unknown"));
        ADD_FAILURE() << "nothing thrown";
    } catch (const CIMException& exception) {
        EXPECT_EQ(exception.getCode(), CIM_ERR_NOT_FOUND);
        EXPECT_EQ(text(exception.getMessage()), "");
    }
}
