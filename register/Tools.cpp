#include "register/Tools.h"

#include <unistd.h>

#include <cstdlib>
#include <sstream>

namespace registering {
namespace fs = std::filesystem;

namespace {

fs::path find(const char* name, const std::vector<fs::path>& directories) {
    for (const fs::path& directory : directories) {
        fs::path file = directory / name;
        std::error_code ignored;
        if (fs::is_regular_file(file, ignored) && access(file.c_str(), X_OK) == 0)
            return file;
    }
    return {};
}

} // namespace

// -uc and -aEV let a class that is there in another version be replaced, and take the release's
// classes whatever their versions and experimental marks are.
Arguments Tools::loadMof(const std::string& nameSpace, const fs::path& file) const {
    return {cimmof, "-uc", "-aEV", "-n", nameSpace, file};
}

Arguments Tools::listModules() const {
    return {cimprovider, "-l", "-s"};
}

Arguments Tools::enable(const std::string& module) const {
    return {cimprovider, "-e", "-m", module};
}

Arguments Tools::disable(const std::string& module) const {
    return {cimprovider, "-d", "-m", module};
}

Arguments Tools::removeModule(const std::string& module) const {
    return {cimprovider, "-r", "-m", module};
}

Arguments Tools::classNames(const std::string& nameSpace, const std::string& below) const {
    Arguments command{cimcli, "nc"};
    if (!below.empty())
        command.push_back(below);
    command.insert(command.end(), {"-di", "-n", nameSpace});
    return command;
}

Arguments Tools::getClass(const std::string& nameSpace, const std::string& name) const {
    return {cimcli, "gc", name, "-n", nameSpace};
}

Arguments Tools::deleteClass(const std::string& nameSpace, const std::string& name) const {
    return {cimcli, "dc", name, "-n", nameSpace};
}

Arguments Tools::instances(const std::string& nameSpace, const std::string& className) const {
    return {cimcli, "ei", className, "-n", nameSpace};
}

Arguments Tools::instanceNames(const std::string& nameSpace, const std::string& className) const {
    return {cimcli, "ni", className, "-n", nameSpace};
}

Arguments Tools::references(const std::string& nameSpace, const std::string& className) const {
    return {cimcli, "rn", className, "-n", nameSpace};
}

Arguments Tools::providerDirectories() const {
    return {cimconfig, "-g", "providerDir", "-c"};
}

std::vector<fs::path> toolDirectories(const fs::path& given) {
    if (!given.empty())
        return {given};
    std::vector<fs::path> result;
    if (const char* home = std::getenv("PEGASUS_HOME"); home != nullptr && *home != '\0')
        result.push_back(fs::path(home) / "bin");
    const char* path = std::getenv("PATH");
    std::istringstream directories(path == nullptr ? "" : path);
    for (std::string directory; std::getline(directories, directory, ':');)
        if (!directory.empty())
            result.emplace_back(directory);
    for (const char* directory : {"/usr/sbin", "/usr/bin", "/opt/tog-pegasus/bin"})
        result.emplace_back(directory);
    return result;
}

Tools findTools(const std::vector<fs::path>& directories, std::vector<std::string>& missing) {
    const auto needed = [&](const char* name) {
        fs::path file = find(name, directories);
        if (file.empty())
            missing.emplace_back(name);
        return file;
    };
    return {needed("cimmof"), needed("cimprovider"), needed("cimcli"),
            find("cimconfig", directories)};
}

} // namespace registering
