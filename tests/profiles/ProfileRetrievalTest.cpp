// Enumerating and getting registered profiles and subprofiles from the catalogue.
#include "support/ModuleTest.h"
#include "support/RecordingHandlers.h"

PEGASUS_USING_PEGASUS;
using namespace testsupport;

namespace {

class ProfileRetrievalTest : public ModuleTest {
  protected:
    ProfileRetrievalTest() { buildCatalogue(); }

    /// What every retrieval owes its caller, who signals processing and completion himself.
    template <class Recorder>
    static void expectOnlyDelivered(const Recorder& handler) {
        EXPECT_EQ(handler.processingCalls, 0U);
        EXPECT_EQ(handler.completeCalls, 0U);
    }

    InstanceRecorder instances;
    PathRecorder paths;
};

Lines pathTexts(const std::vector<CIMInstance>& instances) {
    Lines all;
    for (const CIMInstance& instance : instances)
        all.push_back(text(instance.getPath()));
    return all;
}

Lines pathTexts(const std::vector<CIMObjectPath>& paths) {
    Lines all;
    for (const CIMObjectPath& path : paths)
        all.push_back(text(path));
    return all;
}

/// The paths of the entries with these InstanceIDs.
Lines entryPaths(const std::string& prefix, const Lines& instanceIds) {
    Lines all;
    for (const std::string& id : instanceIds)
        all.push_back(prefix + ".InstanceID=\"" + id + "\"");
    return all;
}

} // namespace

TEST_F(ProfileRetrievalTest, EnumeratesClonesWithTheirCataloguePathsUntraced) {
    _hostName = "renamed.example.net";
    EXPECT_EQ(tracedBy([&] {
                  provider._getRegisteredProfileInstances("ignored", instances, "root/other");
              }),
              Lines());
    EXPECT_EQ(pathTexts(instances.delivered),
              entryPaths("//switch1.example.net/root/cimv2:CIM_RegisteredProfile",
                         {"Orvex1", "Orvex2", "Orvex6"}));
    expectOnlyDelivered(instances);
    for (Uint32 i = 0; i < 3; ++i) {
        EXPECT_TRUE(instances.delivered[i].identical(provider.registeredProfiles()[i]));
        instances.delivered[i].removeProperty(0);
        EXPECT_EQ(provider.registeredProfiles()[i].getPropertyCount(), 7U);
    }
}

TEST_F(ProfileRetrievalTest, EnumeratesSubProfilesLikewise) {
    EXPECT_EQ(tracedBy([&] {
                  provider._getRegisteredSubProfileInstances("ignored", instances, "root/other");
              }),
              Lines());
    EXPECT_EQ(pathTexts(instances.delivered),
              entryPaths("//switch1.example.net/root/cimv2:CIM_RegisteredSubProfile",
                         {"Orvex3", "Orvex4", "Orvex5"}));
    expectOnlyDelivered(instances);
    for (Uint32 i = 0; i < 3; ++i) {
        EXPECT_TRUE(instances.delivered[i].identical(provider.registeredSubProfiles()[i]));
        instances.delivered[i].removeProperty(0);
        EXPECT_EQ(provider.registeredSubProfiles()[i].getPropertyCount(), 7U);
    }
}

TEST_F(ProfileRetrievalTest, EnumeratesNamesInTheRequestsNamespaceWithTheHostOfTheMoment) {
    _hostName = "renamed.example.net";
    EXPECT_EQ(tracedBy([&] {
                  provider._getRegisteredProfileInstanceNames("CIM_AsAsked", paths, "root/other");
              }),
              traceLines(joined({{"Quil regProfInstNames() Start"},
                                 repeated(3, "Quil regProfRef() Start"),
                                 {"Quil regProfInstNames() Exit"}})));
    EXPECT_EQ(pathTexts(paths.delivered), entryPaths("//renamed.example.net/root/other:CIM_AsAsked",
                                                     {"Orvex1", "Orvex2", "Orvex6"}));
    expectOnlyDelivered(paths);
}

TEST_F(ProfileRetrievalTest, EnumeratesNamesOfSubProfilesTracingEachIndex) {
    _hostName = "renamed.example.net";
    EXPECT_EQ(tracedBy([&] {
                  provider._getRegisteredSubProfileInstanceNames("CIM_AsAsked", paths,
                                                                 "root/other");
              }),
              traceLines({"Quil regSubProfInstNames() Start", "Quil regSubProfInstNames() i = 0",
                          "Quil regProfRef() Start", "Quil regSubProfInstNames() i = 1",
                          "Quil regProfRef() Start", "Quil regSubProfInstNames() i = 2",
                          "Quil regProfRef() Start", "Quil regSubProfInstNames() Exit"}));
    EXPECT_EQ(pathTexts(paths.delivered), entryPaths("//renamed.example.net/root/other:CIM_AsAsked",
                                                     {"Orvex3", "Orvex4", "Orvex5"}));
    expectOnlyDelivered(paths);
}

TEST_F(ProfileRetrievalTest, GetsAProfileKeyedAsTheRequestSpeltIt) {
    _hostName = "renamed.example.net";
    CIMInstance result;
    EXPECT_EQ(
        tracedBy([&] { result = provider._getRegisteredProfileInstance("ORVEX6", instances); }),
        traceLines(
            {"Quil getRegisteredProfileInstance(): Start keyValue is ORVEX6 found flag is 0",
             "Quil getRegisteredProfileInstance(): Start regprofiles size is 3",
             "Quil getRegisteredProfileInstance() - InstanceId is Orvex1",
             "Quil getRegisteredProfileInstance() - InstanceId is Orvex2",
             "Quil getRegisteredProfileInstance() - InstanceId is Orvex6",
             "Quil getRegisteredProfileInstance() - Inst Found - foundFlag is 1",
             "Quil _getRegProfInst(): onj path is "
             "//switch1.example.net/root/cimv2:CIM_RegisteredProfile.InstanceID=\"Orvex6\"",
             "Quil _getRegProfInst(): AFTER onj path is "
             "//renamed.example.net/root/cimv2:CIM_RegisteredProfile.InstanceID=\"ORVEX6\""}));
    EXPECT_EQ(pathTexts(instances.delivered),
              entryPaths("//renamed.example.net/root/cimv2:CIM_RegisteredProfile", {"ORVEX6"}));
    EXPECT_EQ(describeKeys(instances.delivered[0].getPath()), (Lines{"InstanceID=string ORVEX6"}));
    EXPECT_EQ(describe(instances.delivered[0]), describe(provider.registeredProfiles()[2]));
    EXPECT_EQ(describe(instances.delivered[0])[0], "InstanceID: string Orvex6");
    expectOnlyDelivered(instances);
    EXPECT_TRUE(result.identical(provider.registeredProfiles()[2]));
    EXPECT_EQ(text(result.getPath()),
              "//switch1.example.net/root/cimv2:CIM_RegisteredProfile.InstanceID=\"Orvex6\"");
}

TEST_F(ProfileRetrievalTest, GettingAProfileLeavesTheCatalogueAlone) {
    provider._getRegisteredProfileInstance("orvex1", instances);
    instances.delivered[0].removeProperty(0);
    EXPECT_EQ(text(provider.registeredProfiles()[0].getPath()),
              "//switch1.example.net/root/cimv2:CIM_RegisteredProfile.InstanceID=\"Orvex1\"");
    EXPECT_EQ(provider.registeredProfiles()[0].getPropertyCount(), 7U);
}

TEST_F(ProfileRetrievalTest, StopsSearchingProfilesAtTheFirstMatch) {
    EXPECT_EQ(
        tracedBy([&] { provider._getRegisteredProfileInstance("Orvex1", instances); }),
        traceLines(
            {"Quil getRegisteredProfileInstance(): Start keyValue is Orvex1 found flag is 0",
             "Quil getRegisteredProfileInstance(): Start regprofiles size is 3",
             "Quil getRegisteredProfileInstance() - InstanceId is Orvex1",
             "Quil getRegisteredProfileInstance() - Inst Found - foundFlag is 1",
             "Quil _getRegProfInst(): onj path is "
             "//switch1.example.net/root/cimv2:CIM_RegisteredProfile.InstanceID=\"Orvex1\"",
             "Quil _getRegProfInst(): AFTER onj path is "
             "//switch1.example.net/root/cimv2:CIM_RegisteredProfile.InstanceID=\"Orvex1\""}));
}

TEST_F(ProfileRetrievalTest, DeliversNothingForAProfileThatIsNone) {
    for (const std::string id : {"Orvex3", "Orvex7", "", "Orvex"}) {
        CIMInstance result;
        EXPECT_EQ(tracedBy([&] {
                      result =
                          provider._getRegisteredProfileInstance(String(id.c_str()), instances);
                  }),
                  traceLines({"Quil getRegisteredProfileInstance(): Start keyValue is " + id +
                                  " found flag is 0",
                              "Quil getRegisteredProfileInstance(): Start regprofiles size is 3",
                              "Quil getRegisteredProfileInstance() - InstanceId is Orvex1",
                              "Quil getRegisteredProfileInstance() - InstanceId is Orvex2",
                              "Quil getRegisteredProfileInstance() - InstanceId is Orvex6"}));
        EXPECT_TRUE(result.isUninitialized());
    }
    EXPECT_TRUE(instances.delivered.empty());
}

TEST_F(ProfileRetrievalTest, GetsASubProfileUnchangedAndUntraced) {
    _hostName = "renamed.example.net";
    CIMInstance result;
    EXPECT_EQ(
        tracedBy([&] { result = provider._getRegisteredSubProfileInstance("orvex4", instances); }),
        Lines());
    ASSERT_EQ(instances.delivered.size(), 1U);
    EXPECT_TRUE(instances.delivered[0].identical(provider.registeredSubProfiles()[1]));
    EXPECT_EQ(text(instances.delivered[0].getPath()),
              "//switch1.example.net/root/cimv2:CIM_RegisteredSubProfile.InstanceID=\"Orvex4\"");
    EXPECT_EQ(describe(instances.delivered[0])[3],
              "RegisteredName: string Enhanced Zoning and Enhanced Zoning Control");
    EXPECT_TRUE(result.identical(provider.registeredSubProfiles()[1]));
    expectOnlyDelivered(instances);
    instances.delivered[0].removeProperty(0);
    EXPECT_EQ(provider.registeredSubProfiles()[1].getPropertyCount(), 7U);
}

TEST_F(ProfileRetrievalTest, DeliversNothingForASubProfileThatIsNone) {
    for (const char* id : {"Orvex1", "Orvex2", "Orvex6", "Orvex7", ""})
        EXPECT_TRUE(provider._getRegisteredSubProfileInstance(id, instances).isUninitialized());
    EXPECT_TRUE(instances.delivered.empty());
}

namespace {

/// A catalogue whose profile class, subprofile class or both declare the InstanceID otherwise.
class MalformedCatalogueTest : public ModuleTest {
  protected:
    void buildFrom(const Lines& profileProperties, const Lines& subProfileProperties) {
        server->define(makeClass("CIM_RegisteredProfile", profileProperties));
        server->define(makeClass("CIM_RegisteredSubProfile", subProfileProperties));
        buildCatalogue();
    }

    /// Traces and the message of what is thrown.
    template <class Work>
    Lines failureOf(Work work) {
        std::string thrown = "nothing";
        Lines lines = tracedBy([&] {
            try {
                work();
            } catch (const CIMException& exception) {
                thrown = std::to_string(exception.getCode()) + " " + text(exception.getMessage());
            }
        });
        lines.push_back(thrown);
        return lines;
    }

    InstanceRecorder instances;
};

} // namespace

TEST_F(MalformedCatalogueTest, GettingAProfileWithoutInstanceIdIsTracedAndThrown) {
    buildFrom({"string RegisteredName"}, {"string InstanceID"});
    EXPECT_EQ(
        failureOf([&] { provider._getRegisteredProfileInstance("Orvex1", instances); }),
        joined(
            {traceLines(
                 {"Quil getRegisteredProfileInstance(): Start keyValue is Orvex1 found flag is 0",
                  "Quil getRegisteredProfileInstance(): Start regprofiles size is 3",
                  "Quil getRegisteredProfileInstance() - Exception - Property InstanceId not "
                  "found"}),
             {"4 key InstanceId not present - internal error"}}));
    EXPECT_TRUE(instances.delivered.empty());
}

TEST_F(MalformedCatalogueTest, GettingAProfileWithoutAValueIsTracedAndThrown) {
    buildFrom({"string InstanceID"}, {"string InstanceID"});
    CIMInstance first = provider.registeredProfiles()[0]; // shares what the catalogue holds
    first.getProperty(0).setValue(CIMValue(CIMTYPE_STRING, false));
    EXPECT_EQ(
        failureOf([&] { provider._getRegisteredProfileInstance("Orvex2", instances); }),
        joined(
            {traceLines(
                 {"Quil getRegisteredProfileInstance(): Start keyValue is Orvex2 found flag is 0",
                  "Quil getRegisteredProfileInstance(): Start regprofiles size is 3",
                  "Quil getRegisteredProfileInstance() - Exception - InstanceId value is Null"}),
             {"4 key InstanceId not present - internal error - 2"}}));
    EXPECT_TRUE(instances.delivered.empty());
}

TEST_F(MalformedCatalogueTest, GettingAProfileWhoseInstanceIdIsAListIsTracedAndThrown) {
    buildFrom({"string InstanceID"}, {"string InstanceID"});
    CIMInstance first = provider.registeredProfiles()[0]; // shares what the catalogue holds
    first.removeProperty(0);
    Array<String> ids;
    ids.append("Orvex1");
    first.addProperty(CIMProperty(CIMName("InstanceID"), CIMValue(ids)));
    const Lines failure =
        failureOf([&] { provider._getRegisteredProfileInstance("Orvex2", instances); });
    ASSERT_FALSE(failure.empty());
    EXPECT_EQ(failure.back(), "4 key InstanceId not present - internal error - 2");
    EXPECT_TRUE(instances.delivered.empty());
}

TEST_F(MalformedCatalogueTest, GettingASubProfileLooksForTheInstanceIdInTheProfiles) {
    // Where the profiles have no such property, none of the subprofiles can be had.
    buildFrom({"string RegisteredName"}, {"string InstanceID"});
    EXPECT_EQ(failureOf([&] { provider._getRegisteredSubProfileInstance("Orvex3", instances); }),
              (Lines{"4 key InstanceId not present - internal error"}));
}

TEST_F(MalformedCatalogueTest, GettingASubProfileReadsThePositionOfTheProfilesProperty) {
    buildFrom({"string RegisteredName", "string InstanceID"},
              {"string InstanceID", "string RegisteredName"});
    EXPECT_TRUE(provider._getRegisteredSubProfileInstance("Orvex5", instances).isUninitialized());
    EXPECT_FALSE(provider._getRegisteredSubProfileInstance("blades", instances).isUninitialized());
    EXPECT_EQ(text(instances.delivered.at(0).getPath()),
              "//switch1.example.net/root/cimv2:CIM_RegisteredSubProfile.InstanceID=\"Orvex5\"");
}

TEST_F(MalformedCatalogueTest, GettingASubProfileWithoutAValueThrowsUntraced) {
    buildFrom({"string RegisteredName", "string InstanceID"},
              {"string InstanceID", "uint16 RegisteredOrganization"});
    EXPECT_EQ(failureOf([&] { provider._getRegisteredSubProfileInstance("Orvex3", instances); }),
              (Lines{"4 key InstanceId not present - internal error - 2"}));
    EXPECT_TRUE(instances.delivered.empty());
}
