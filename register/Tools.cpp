#include "register/Tools.h"

#include "register/Names.h"

#include <unistd.h>

#include <cstdlib>
#include <sstream>
#include <stdexcept>

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

std::vector<fs::path> pathDirectories() {
    const char* path = std::getenv("PATH");
    std::vector<fs::path> result;
    std::istringstream directories(path == nullptr ? "" : path);
    for (std::string directory; std::getline(directories, directory, ':');)
        if (!directory.empty())
            result.emplace_back(directory);
    return result;
}

// Where an odd text would be an option or a path to the tool that gets it, or mean something else.
const std::string& checked(bool isOne, const std::string& text, const char* what) {
    if (!isOne)
        throw std::runtime_error("'" + text + "' is no name of a " + what +
                                 ", and not handed to the server's tools");
    return text;
}

const std::string& space(const std::string& name) {
    return checked(isNameSpace(name), name, "namespace");
}

const std::string& named(const std::string& name) {
    return checked(isName(name), name, "class, qualifier or module");
}

} // namespace

// -aEV takes the package's classes whatever their versions and experimental marks are.
Arguments Tools::loadMof(const std::string& nameSpace, const fs::path& file, bool update) const {
    Arguments command{cimmof};
    if (update)
        command.emplace_back("-uc");
    command.insert(command.end(), {"-aEV", "-n", space(nameSpace), "-I", file.parent_path(), file});
    return command;
}

Arguments Tools::listModules() const {
    return {cimprovider, "-l", "-s"};
}

Arguments Tools::enable(const std::string& module) const {
    return {cimprovider, "-e", "-m", named(module)};
}

Arguments Tools::disable(const std::string& module) const {
    return {cimprovider, "-d", "-m", named(module)};
}

Arguments Tools::removeModule(const std::string& module) const {
    return {cimprovider, "-r", "-m", named(module)};
}

Arguments Tools::classNames(const std::string& nameSpace, const std::string& below) const {
    Arguments command{cimcli, "nc"};
    if (!below.empty())
        command.push_back(named(below));
    command.insert(command.end(), {"-di", "-n", space(nameSpace)});
    return command;
}

Arguments Tools::getClass(const std::string& nameSpace, const std::string& name,
                          bool inherited) const {
    Arguments command{cimcli, "gc", named(name), "-n", space(nameSpace)};
    if (inherited)
        command.emplace_back("-nlo");
    return command;
}

Arguments Tools::deleteClass(const std::string& nameSpace, const std::string& name) const {
    return {cimcli, "dc", named(name), "-n", space(nameSpace)};
}

Arguments Tools::qualifiers(const std::string& nameSpace) const {
    return {cimcli, "eq", "-n", space(nameSpace)};
}

Arguments Tools::deleteQualifier(const std::string& nameSpace, const std::string& name) const {
    return {cimcli, "dq", named(name), "-n", space(nameSpace)};
}

// A namespace is an instance of __Namespace in any other one, itself included: Name is relative to
// that.
Arguments Tools::deleteNameSpace(const std::string& nameSpace) const {
    return {cimcli, "di", "__Namespace.Name=\"\"", "-n", space(nameSpace)};
}

Arguments Tools::instances(const std::string& nameSpace, const std::string& className) const {
    return {cimcli, "ei", named(className), "-n", space(nameSpace)};
}

Arguments Tools::instanceNames(const std::string& nameSpace, const std::string& className) const {
    return {cimcli, "ni", named(className), "-n", space(nameSpace)};
}

Arguments Tools::references(const std::string& nameSpace, const std::string& className) const {
    return {cimcli, "rn", named(className), "-n", space(nameSpace)};
}

Arguments Tools::configured(const std::string& property) const {
    return {cimconfig, "-g", property, "-c"};
}

Arguments Tools::version() const {
    return {cimserver, "--version"};
}

std::vector<fs::path> toolDirectories(const fs::path& given) {
    if (!given.empty())
        return {given};
    std::vector<fs::path> result;
    if (const char* home = std::getenv("PEGASUS_HOME"); home != nullptr && *home != '\0')
        result.push_back(fs::path(home) / "bin");
    const std::vector<fs::path> path = pathDirectories();
    result.insert(result.end(), path.begin(), path.end());
    for (const char* directory : {"/usr/sbin", "/usr/bin", "/opt/tog-pegasus/bin"})
        result.emplace_back(directory);
    return result;
}

fs::path findWalk() {
    std::error_code ignored;
    std::vector<fs::path> directories = pathDirectories();
    directories.insert(directories.begin(),
                       fs::read_symlink("/proc/self/exe", ignored).parent_path());
    return find("serverprofile-walk", directories);
}

Tools findTools(const std::vector<fs::path>& directories, std::vector<std::string>& missing) {
    const auto needed = [&](const char* name) {
        fs::path file = find(name, directories);
        if (file.empty())
            missing.emplace_back(name);
        return file;
    };
    return {needed("cimmof"), needed("cimprovider"), needed("cimcli"),
            find("cimconfig", directories), find("cimserver", directories)};
}

} // namespace registering
