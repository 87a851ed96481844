#include "register/Tools.h"

#include "register/Listings.h"
#include "register/Names.h"

#include <unistd.h>

#include <cstdlib>
#include <stdexcept>

namespace registering {
namespace fs = std::filesystem;

namespace {

std::string environment(const char* name) {
    const char* value = std::getenv(name);
    return value == nullptr ? "" : value;
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

Arguments Tools::onModule(const char* action, const std::string& module) const {
    return {cimprovider, action, "-m", named(module)};
}

Arguments Tools::onNameSpace(const char* command, const std::string& nameSpace,
                             const char* option) const {
    Arguments result{cimcli, command, "-n", space(nameSpace)};
    if (option != nullptr)
        result.emplace_back(option);
    return result;
}

Arguments Tools::onName(const char* command, const std::string& nameSpace, const std::string& name,
                        const char* option) const {
    Arguments result = onNameSpace(command, nameSpace, option);
    result.insert(result.begin() + 2, named(name));
    return result;
}

// A namespace is an instance of __Namespace in any other one, itself included: Name is relative to
// that.
Arguments Tools::deleteNameSpace(const std::string& nameSpace) const {
    return {cimcli, "di", "__Namespace.Name=\"\"", "-n", space(nameSpace)};
}

std::vector<fs::path> toolDirectories(const fs::path& given) {
    if (!given.empty())
        return {given};
    std::vector<fs::path> result;
    if (const std::string home = environment("PEGASUS_HOME"); !home.empty())
        result.push_back(fs::path(home) / "bin");
    const std::vector<fs::path> path = directoriesOf(environment("PATH"), "");
    result.insert(result.end(), path.begin(), path.end());
    for (const char* directory : {"/usr/sbin", "/usr/bin", "/opt/tog-pegasus/bin"})
        result.emplace_back(directory);
    return result;
}

fs::path findWalk() {
    std::error_code ignored;
    std::vector<fs::path> directories = directoriesOf(environment("PATH"), "");
    directories.insert(directories.begin(),
                       fs::read_symlink("/proc/self/exe", ignored).parent_path());
    return findFile("serverprofile-walk", directories, true);
}

fs::path findFile(const std::string& name, const std::vector<fs::path>& directories, bool program) {
    for (const fs::path& directory : directories) {
        fs::path file = directory / name;
        std::error_code ignored;
        if (program ? fs::is_regular_file(file, ignored) && access(file.c_str(), X_OK) == 0
                    : fs::exists(file, ignored))
            return file;
    }
    return {};
}

Tools findTools(const std::vector<fs::path>& directories, std::vector<std::string>& missing) {
    const auto needed = [&](const char* name) {
        fs::path file = findFile(name, directories, true);
        if (file.empty())
            missing.emplace_back(name);
        return file;
    };
    return {needed("cimmof"), needed("cimprovider"), needed("cimcli"),
            findFile("cimconfig", directories, true), findFile("cimserver", directories, true)};
}

} // namespace registering
