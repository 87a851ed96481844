#include "serverobjects/Settings.h"

#include <gtest/gtest.h>

#include <sstream>
#include <stdexcept>

namespace serverobjects {
namespace {

Settings read(const std::string& text) {
    std::istringstream stream(text);
    return readSettings(stream, "x.conf");
}

std::string errorOf(const std::string& text) {
    try {
        read(text);
        return "no error";
    } catch (const std::runtime_error& error) {
        return error.what();
    }
}

TEST(Settings, EveryKeyIsRead) {
    const Settings settings = read("# of a test\n"
                                   "\n"
                                   "ServerNamespace = root/PG_InterOp\r\n"
                                   "  SystemCreationClassName=TST_System\n"
                                   "SystemName = a = b\n"
                                   "Name = the name\n"
                                   "ElementName = element\n"
                                   "Description = some text, version 1.2\n"
                                   "FunctionalProfilesSupported = 2, 3,65535\n"
                                   "AuthenticationMechanismsSupported = 3\n"
                                   "HttpAddress = h:1\n"
                                   "HttpsAddress = h:2\n"
                                   "Namespaces = interop , root/x");
    EXPECT_TRUE(settings.askServer);
    EXPECT_EQ("root/PG_InterOp", settings.serverNamespace);
    EXPECT_EQ("TST_System", settings.systemCreationClassName);
    EXPECT_EQ("a = b", settings.systemName);
    EXPECT_EQ("the name", settings.name);
    EXPECT_EQ("element", settings.elementName);
    EXPECT_EQ("some text, version 1.2", settings.description);
    EXPECT_EQ((std::vector<std::uint16_t>{2, 3, 65535}), settings.functionalProfiles);
    EXPECT_EQ(std::vector<std::uint16_t>{3}, settings.authenticationMechanisms);
    EXPECT_EQ("h:1", settings.httpAddress);
    EXPECT_EQ("h:2", settings.httpsAddress);
    EXPECT_EQ((std::vector<std::string>{"interop", "root/x"}), settings.nameSpaces);
}

TEST(Settings, WhatIsNotSaidIsNotClaimed) {
    const Settings settings = read("");
    EXPECT_EQ("CIM_ComputerSystem", settings.systemCreationClassName);
    EXPECT_FALSE(settings.systemName);
    EXPECT_EQ((std::vector<std::uint16_t>{2, 6}), settings.functionalProfiles);
    EXPECT_EQ(std::vector<std::uint16_t>{0}, settings.authenticationMechanisms);
    EXPECT_EQ("", settings.serverNamespace + settings.httpAddress + settings.httpsAddress);
}

TEST(Settings, AnErrorSaysWhereAndWhat) {
    EXPECT_EQ("x.conf:2: 'Key = value' is expected, not 'nothing'", errorOf("#\nnothing\n"));
    EXPECT_EQ(0U, errorOf("Naem = x")
                      .find("x.conf:1: there is no key 'Naem'; the keys are "
                            "AuthenticationMechanismsSupported, Description,"));
    for (const char* number : {"65536", "-1", "", "two", "123456789012345678901234567890"})
        EXPECT_EQ("x.conf:1: '" + std::string(number) + "' is no number from 0 to 65535",
                  errorOf("FunctionalProfilesSupported = 2, " + std::string(number) + ", 3"));
}

TEST(Settings, AreFoundByANameThatStaysInTheFolder) {
    for (const char* name : {"", ".", "..", "../x", "/etc/x", ".hidden"})
        EXPECT_THROW(settingsOf(name), std::runtime_error) << name;
}

TEST(Settings, WithoutAFileAreTheDefaults) {
    EXPECT_EQ("CIM server", settingsOf("no-provider-has-this-name").elementName);
}

} // namespace
} // namespace serverobjects
