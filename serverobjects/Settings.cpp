#include "serverobjects/Settings.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fstream>
#include <map>
#include <sstream>
#include <stdexcept>

namespace serverobjects {
namespace {

constexpr const char* space = " \t\r";

std::string trimmed(const std::string& text) {
    const std::size_t from = text.find_first_not_of(space);
    return from == std::string::npos ? ""
                                     : text.substr(from, text.find_last_not_of(space) + 1 - from);
}

void read(const std::string& value, std::string& member) { member = value; }

void read(const std::string& value, std::optional<std::string>& member) { member = value; }

void read(const std::string& value, std::vector<std::string>& member) {
    member.clear();
    std::istringstream stream(value);
    for (std::string item; std::getline(stream, item, ',');)
        member.push_back(trimmed(item));
}

void read(const std::string& value, std::vector<std::uint16_t>& member) {
    std::vector<std::string> items;
    read(value, items);
    member.clear();
    for (const std::string& item : items) {
        if (item.empty() || item.size() > 5 ||
            item.find_first_not_of("0123456789") != std::string::npos || std::stoul(item) > 65535)
            throw std::runtime_error("'" + item + "' is no number from 0 to 65535");
        member.push_back(static_cast<std::uint16_t>(std::stoul(item)));
    }
}

template <auto member>
void readMember(const std::string& value, Settings& settings) {
    read(value, settings.*member);
}

const std::map<std::string, void (*)(const std::string& value, Settings& settings)> keys{
    {"ServerNamespace", readMember<&Settings::serverNamespace>},
    {"SystemCreationClassName", readMember<&Settings::systemCreationClassName>},
    {"SystemName", readMember<&Settings::systemName>},
    {"Name", readMember<&Settings::name>},
    {"ElementName", readMember<&Settings::elementName>},
    {"Description", readMember<&Settings::description>},
    {"FunctionalProfilesSupported", readMember<&Settings::functionalProfiles>},
    {"AuthenticationMechanismsSupported", readMember<&Settings::authenticationMechanisms>},
    {"HttpAddress", readMember<&Settings::httpAddress>},
    {"HttpsAddress", readMember<&Settings::httpsAddress>},
    {"Namespaces", readMember<&Settings::nameSpaces>},
};

void readLine(const std::string& line, Settings& settings) {
    const std::size_t equals = line.find('=');
    if (equals == std::string::npos)
        throw std::runtime_error("'Key = value' is expected, not '" + line + "'");
    const std::string key = trimmed(line.substr(0, equals));
    const auto found = keys.find(key);
    if (found == keys.end()) {
        std::string known;
        for (const auto& [name, reader] : keys)
            known += (known.empty() ? "" : ", ") + name;
        throw std::runtime_error("there is no key '" + key + "'; the keys are " + known);
    }
    found->second(trimmed(line.substr(equals + 1)), settings);
}

} // namespace

Settings readSettings(std::istream& text, const std::string& origin) {
    Settings settings;
    unsigned number = 0;
    for (std::string line; std::getline(text, line);) {
        ++number;
        line = trimmed(line);
        if (line.empty() || line[0] == '#')
            continue;
        try {
            readLine(line, settings);
        } catch (const std::runtime_error& error) {
            throw std::runtime_error(origin + ":" + std::to_string(number) + ": " + error.what());
        }
    }
    return settings;
}

Settings settingsOf(const std::string& providerName) {
    if (providerName.empty() || providerName[0] == '.' ||
        providerName.find('/') != std::string::npos)
        throw std::runtime_error("the provider's name '" + providerName +
                                 "' cannot be that of a settings file");
    const std::string file = SERVEROBJECTS_SETTINGS_DIR "/" + providerName + ".conf";
    errno = 0;
    std::ifstream stream(file);
    if (!stream) {
        if (errno == ENOENT)
            return Settings();
        throw std::runtime_error(file + ": " + std::strerror(errno));
    }
    Settings settings = readSettings(stream, file);
    if (stream.bad())
        throw std::runtime_error(file + ": cannot be read");
    return settings;
}

} // namespace serverobjects
