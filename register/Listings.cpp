#include "register/Listings.h"

#include "register/Names.h"

#include <algorithm>
#include <sstream>

namespace registering {
namespace {

constexpr const char* space = " \t\r";

} // namespace

std::vector<std::string> lines(const std::string& text) {
    std::vector<std::string> result;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);) {
        const std::size_t from = line.find_first_not_of(space);
        if (from != std::string::npos)
            result.push_back(line.substr(from, line.find_last_not_of(space) + 1 - from));
    }
    return result;
}

std::optional<std::string> moduleStatus(const std::string& listing, const std::string& module) {
    for (const std::string& line : lines(listing)) {
        const std::size_t end = std::min(line.find_first_of(space), line.size());
        if (line.substr(0, end) != module)
            continue;
        const std::size_t from = line.find_first_not_of(space, end);
        return from == std::string::npos ? "" : line.substr(from);
    }
    return std::nullopt;
}

std::vector<std::string> classesOfPaths(const std::string& listing) {
    std::vector<std::string> result;
    for (std::string line : lines(listing)) {
        // Only keys hold quotes; what stands before the first one may have a host and namespace.
        if (line.compare(0, 2, "//") == 0) {
            const std::size_t colon = line.find(':', line.find('/', 2));
            line = colon == std::string::npos ? "" : line.substr(colon + 1);
        }
        const std::string name = line.substr(0, line.find('.'));
        if (isName(name))
            result.push_back(name);
    }
    return result;
}

// Not read as MOF: it prints the scopes without commas.
std::vector<std::string> declaredQualifiers(const std::string& listing) {
    std::vector<std::string> result;
    for (const std::string& line : lines(listing)) {
        std::istringstream words(line);
        std::string keyword;
        std::string name;
        if (words >> keyword >> name && keyword == "Qualifier")
            result.push_back(name);
    }
    return result;
}

std::string configuredValue(const std::string& listing) {
    const std::string label = "Current value:";
    for (const std::string& line : lines(listing))
        if (line.compare(0, label.size(), label) == 0)
            return line.substr(std::min(line.find_first_not_of(space, label.size()), line.size()));
    return "";
}

std::vector<std::filesystem::path> directoriesOf(const std::string& list,
                                                 const std::filesystem::path& home) {
    std::vector<std::filesystem::path> result;
    std::istringstream directories(list);
    for (std::string directory; std::getline(directories, directory, ':');)
        if (!directory.empty())
            result.push_back(home / directory); // an absolute one stays as it is
    return result;
}

} // namespace registering
