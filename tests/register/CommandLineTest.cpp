#include "register/CommandLine.h"

#include <gtest/gtest.h>

#include <initializer_list>
#include <string>
#include <utility>
#include <vector>

namespace registering {
namespace {

Settings settingsOf(std::initializer_list<const char*> options) {
    std::vector<const char*> arguments{"serverprofile-register", "status"};
    arguments.insert(arguments.end(), options.begin(), options.end());
    return readCommandLine(static_cast<int>(arguments.size()), arguments.data()).settings.value();
}

TEST(TheCommandLine, TakesAnEmptyValueForNone) {
    const std::pair<const char*, std::string Settings::*> options[] = {
        {"--mof", &Settings::mofDirectory},
        {"--settings-dir", &Settings::settingsDirectory},
        {"--record", &Settings::record},
    };
    for (const auto& [option, value] : options) {
        EXPECT_NE(settingsOf({}).*value, "") << option;
        EXPECT_EQ(settingsOf({option, ""}).*value, settingsOf({}).*value) << option;
        EXPECT_EQ(settingsOf({option, "/there"}).*value, "/there") << option;
    }
}

} // namespace
} // namespace registering
