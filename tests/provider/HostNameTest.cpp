// How the host name is found, and what is published of it.
#include "support/ModuleTest.h"
#include "support/Resolver.h"

PEGASUS_USING_PEGASUS;
using namespace testsupport;

namespace {

class HostNameTest : public ModuleTest {
  protected:
    HostNameTest() {
        resolver = Resolver();
        _hostName = String();
        serverprofile::hostNameBuffer[0] = '\0';
        OrvexOMHost(serverprofile::hostNameBuffer, 0);
    }

    /// Initializes; the answer is what is traced of the host name.
    std::string initialize() {
        for (const std::string& line : tracedBy([&] { provider.initialize(handle); })) {
            const std::string start = "ServerProfileProvider Quil initialize(): _hostName ";
            if (line.compare(0, start.size(), start) == 0)
                return line.substr(start.size());
        }
        return "not traced";
    }

    static std::string published() {
        return text(OrvexOMHost::getName()) + " " + text(OrvexOMHost::getNameFormat());
    }
};

} // namespace

TEST_F(HostNameTest, IsTheOfficialNameWhenTheResolverKnowsTheHost) {
    EXPECT_EQ(initialize(), "switch1.example.net");
    EXPECT_EQ(text(_getHostName()), "switch1.example.net");
    EXPECT_EQ(published(), "switch1.example.net Other");
    EXPECT_EQ(resolver.lookups, (Lines{"switch1"}));
    EXPECT_EQ(resolver.bufferSizes, (std::vector<std::size_t>{256}));
    EXPECT_EQ(text(provider.registeredProfiles()[0].getPath().getHost()), "switch1.example.net");
}

TEST_F(HostNameTest, IsTheShortNameWhenTheResolverDoesNotKnowTheHost) {
    resolver.officialName.reset();
    EXPECT_EQ(initialize(), "switch1");
    EXPECT_EQ(text(_getHostName()), "switch1");
    EXPECT_EQ(text(provider.registeredProfiles()[0].getPath().getHost()), "switch1");
    // Only a resolved name is published; the first start has none.
    EXPECT_EQ(published(), " IP");
    EXPECT_EQ(serverprofile::lookupPending, 1);
}

TEST_F(HostNameTest, KeepsThePublishedNameOfAnEarlierStartWhenALaterOneFails) {
    initialize();
    resolver.officialName.reset();
    resolver.shortName = "switch2";
    EXPECT_EQ(initialize(), "switch2");
    EXPECT_EQ(published(), "switch1.example.net IP");
    resolver.officialName = "switch2.example.net";
    EXPECT_EQ(initialize(), "switch2.example.net");
    EXPECT_EQ(published(), "switch2.example.net Other");
    EXPECT_EQ(serverprofile::lookupPending, 0);
}

TEST_F(HostNameTest, IsEmptyWhenNeitherNameIsKnown) {
    resolver.shortNameFails = true;
    resolver.officialName.reset();
    EXPECT_EQ(initialize(), "");
    EXPECT_EQ(published(), " IP");
    EXPECT_EQ(text(provider.registeredProfiles()[0].getPath()),
              "root/cimv2:CIM_RegisteredProfile.InstanceID=\"Orvex1\"");
}

TEST_F(HostNameTest, IsLookedUpEvenWhenTheShortNameIsNotKnown) {
    resolver.shortNameFails = true;
    EXPECT_EQ(initialize(), "switch1.example.net");
    EXPECT_EQ(resolver.lookups, (Lines{""}));
    EXPECT_EQ(published(), "switch1.example.net Other");
}

TEST_F(HostNameTest, TakesAnOfficialNameThatIsShorterThanTheShortOne) {
    resolver.shortName = "a-rather-long-short-name";
    resolver.officialName = "s1";
    EXPECT_EQ(initialize(), "s1");
    EXPECT_EQ(published(), "s1 Other");
}

TEST_F(HostNameTest, CutsAnOfficialNameThatDoesNotFit) {
    for (const std::size_t size : {254U, 255U, 256U, 257U, 5000U}) {
        SCOPED_TRACE(size);
        resolver.officialName = std::string(size, 'o');
        const std::string cut(std::min(size, std::size_t{255}), 'o');
        EXPECT_EQ(initialize(), cut);
        EXPECT_EQ(text(_getHostName()), cut);
        EXPECT_EQ(published(), cut + " Other");
    }
}

TEST_F(HostNameTest, TerminatesAShortNameThatFillsItsBuffer) {
    for (const std::size_t size : {254U, 255U, 256U, 257U, 5000U}) {
        SCOPED_TRACE(size);
        resolver = Resolver();
        resolver.officialName.reset();
        resolver.shortName = std::string(size, 's');
        const std::string cut(std::min(size, std::size_t{255}), 's');
        EXPECT_EQ(initialize(), cut);
        EXPECT_EQ(resolver.lookups, (Lines{cut}));
        EXPECT_EQ(text(_getHostName()), cut);
    }
}

TEST_F(HostNameTest, LookupIsPendingUntilTheResolverAnswers) {
    resolver.officialName.reset();
    initialize();
    EXPECT_EQ(serverprofile::lookupPending, 1);
    resolver.officialName = "switch1.example.net";
    initialize();
    EXPECT_EQ(serverprofile::lookupPending, 0);
}

TEST_F(HostNameTest, RequestWithoutInitializeLooksNothingUp) {
    provider.cimomHandle() = handle;
    provider.initData();
    EXPECT_TRUE(resolver.lookups.empty());
    EXPECT_TRUE(resolver.bufferSizes.empty());
}
