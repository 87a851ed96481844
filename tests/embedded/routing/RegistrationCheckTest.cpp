#include "routing/Registration.h"

#include "Server.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>

namespace embedded::routing::test {
namespace {

using Pegasus::CIMName;

struct Lines {
    Texts notes;
    Texts problems;
};

Lines check(const std::string& mof, const std::vector<std::filesystem::path>& directories) {
    repository::Repository repository;
    fill(repository, mof);
    const Registration registration(repository.view(), interop);
    Lines lines;
    for (const Finding& finding : registration.check(repository.view(), directories))
        (finding.severity == Finding::Severity::Note ? lines.notes : lines.problems)
            .push_back(finding.text);
    return lines;
}

/// What is told of one capability of a provider that is otherwise in order.
Texts problemsOf(const std::string& types, const std::string& className,
                 const std::string& nameSpaces = "\"root/test\"") {
    return check(moduleMof("M") + providerMof("M", "P") +
                     capabilityMof("M", "P", "1", types, className, nameSpaces),
                 {modulesDirectory()})
        .problems;
}

TEST(RegistrationCheck, WhatIsInOrderIsListedOnly) {
    const Lines lines = check(moduleMof("M") + providerMof("M", "P") +
                                  capabilityMof("M", "P", "1", "2, 3", "TST_Link"),
                              {"/nowhere", modulesDirectory()});
    EXPECT_EQ(Texts{}, lines.problems);
    EXPECT_EQ((Texts{"TST_Link in root/test (instances): provider \"P\" of module \"M\"",
                     "TST_Link in root/test (associations): provider \"P\" of module \"M\"",
                     "module \"M\": " + (modulesDirectory() / "libtoy.so").string()}),
              lines.notes);
}

TEST(RegistrationCheck, TellsWhyAClassCannotBeAskedFor) {
    EXPECT_EQ(Texts{"TST_None in root/test (instances): the namespace does not define the class, "
                    "so it cannot be asked for; no namespace does: load its MOF, or correct the "
                    "name."},
              problemsOf("2", "TST_None"));
    EXPECT_EQ(Texts{"TST_Base in root/interop (instances): the namespace does not define the "
                    "class, so it cannot be asked for; it is defined in root/test."},
              problemsOf("2", "TST_Base", "\"root/interop\""));
    EXPECT_EQ(Texts{"TST_Base in root/none (instances): the namespace does not exist; load the "
                    "class's MOF there."},
              problemsOf("2", "TST_Base", "\"root/none\""));
    EXPECT_EQ(Texts{"TST_Base in root/test (associations): the class is not an association, so it "
                    "is never traversed."},
              problemsOf("3", "TST_Base"));
}

TEST(RegistrationCheck, LooksForNoLibraryOfAModuleThatIsPartOfTheProgram) {
    repository::Repository repository;
    fill(repository);
    Registration registration(repository.view(), interop);
    registration.addLinked(repository.view(), {"M", "P"}, "inside", {CIMName("TST_Base")});
    Texts found;
    for (const Finding& finding : registration.check(repository.view(), {})) {
        EXPECT_EQ(Finding::Severity::Note, finding.severity) << finding.text;
        found.push_back(finding.text);
    }
    EXPECT_EQ((Texts{"TST_Base in root/test (instances): provider \"P\" of module \"M\"",
                     "module \"M\": part of this program"}),
              found);
}

TEST(RegistrationCheck, TellsOfAProviderWithoutCapabilities) {
    EXPECT_EQ(Texts{"provider \"P\" of module \"M\": no capabilities are registered for it; it is "
                    "never asked."},
              check(moduleMof("M") + providerMof("M", "P"), {modulesDirectory()}).problems);
}

TEST(RegistrationCheck, TellsOfAStoppedModule) {
    EXPECT_EQ(
        Texts{"module \"M\": OperationalStatus says that it is stopped; its providers are "
              "blocked."},
        check(moduleMof("M", "toy", "OperationalStatus = {10};"), {modulesDirectory()}).problems);
}

TEST(RegistrationCheck, NamesTheDirectoriesThatWereSearched) {
    EXPECT_EQ(Texts{"module \"M\": libgone.so was not found in /nowhere, /elsewhere."},
              check(moduleMof("M", "gone"), {"/nowhere", "/elsewhere"}).problems);
    EXPECT_EQ(Texts{"module \"M\": libgone.so was not found in any directory: none is given."},
              check(moduleMof("M", "gone"), {}).problems);
}

TEST(RegistrationCheck, TellsWhatIsWrongWithALibrary) {
    const std::filesystem::path directory =
        std::filesystem::path(testing::TempDir()) / "routing_test_libraries";
    std::filesystem::create_directories(directory);
    std::ofstream(directory / "libgarbage.so") << "no library\n";
    const std::string file = (directory / "libgarbage.so").string();
    const Texts garbage = check(moduleMof("M", "garbage"), {directory}).problems;
    ASSERT_EQ(1U, garbage.size());
    EXPECT_EQ(0U,
              garbage[0].find("module \"M\": " + file + ": Cannot load library, error: " + file))
        << garbage[0];

    EXPECT_EQ(Texts{"module \"M\": " + (modulesDirectory() / "libnoentry.so").string() +
                    ": entry point not found."},
              check(moduleMof("M", "noentry"), {modulesDirectory()}).problems);
}

TEST(RegistrationCheck, FindsFunctionsThatNoLibraryHas) {
    const Texts problems = check(moduleMof("M", "unresolved"), {modulesDirectory()}).problems;
    ASSERT_EQ(1U, problems.size());
    EXPECT_NE(std::string::npos, problems[0].find("undefined symbol")) << problems[0];
    EXPECT_NE(std::string::npos, problems[0].find("madeNowhere")) << problems[0];
}

TEST(RegistrationCheck, BeginsWithWhatTheRegistrationLeftOut) {
    const Lines lines = check(providerMof("Gone", "P") + moduleMof("M"), {modulesDirectory()});
    EXPECT_EQ(Texts{"PG_Provider.Name=\"P\",ProviderModuleName=\"Gone\": The provider module "
                    "\"Gone\" is not registered."},
              lines.problems);
}

} // namespace
} // namespace embedded::routing::test
