#include "register/Server.h"

#include <unistd.h>

#include <algorithm>
#include <regex>
#include <sstream>

namespace registering {
namespace fs = std::filesystem;

namespace {

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

// cimcli ends with the number of the CIM status (DSP0200) that the server answered.
constexpr int invalidNameSpace = 3;
constexpr int notSupported = 7;
constexpr int classHasChildren = 8;
constexpr int classHasInstances = 9;

[[noreturn]] void fail(const Arguments& command, const Outcome& outcome) {
    throw Failure("'" + commandText(command) + "' " + describe(outcome));
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
                             const std::vector<std::string>& options) const {
    Arguments result{cimcli, command, "-n", space(nameSpace)};
    result.insert(result.end(), options.begin(), options.end());
    return result;
}

Arguments Tools::onName(const char* command, const std::string& nameSpace, const std::string& name,
                        const std::vector<std::string>& options) const {
    Arguments result = onNameSpace(command, nameSpace, options);
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

std::vector<std::string> lines(const std::string& text) {
    std::vector<std::string> result;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);)
        if (const std::string_view trimmed = embedded::text::trimmed(line); !trimmed.empty())
            result.emplace_back(trimmed);
    return result;
}

std::optional<std::string> moduleStatus(const std::string& listing, const std::string& module) {
    for (const std::string& line : lines(listing)) {
        std::istringstream words(line);
        std::string name;
        std::string status;
        if (words >> name && name == module) {
            std::getline(words >> std::ws, status);
            return status;
        }
    }
    return std::nullopt;
}

std::vector<std::string> classesOfPaths(const std::string& listing) {
    // Only keys hold quotes; what stands before the first one may have a host and namespace.
    static const std::regex path(R"(^(?://[^/]*/[^:]*:)?([A-Za-z_]\w*)(?:\.|$))");
    std::vector<std::string> result;
    std::smatch found;
    for (const std::string& line : lines(listing))
        if (std::regex_search(line, found, path))
            result.push_back(found[1]);
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
            return std::string(
                embedded::text::trimmed(std::string_view(line).substr(label.size())));
    return "";
}

std::vector<fs::path> directoriesOf(const std::string& list, const fs::path& home) {
    std::vector<fs::path> result;
    std::istringstream directories(list);
    for (std::string directory; std::getline(directories, directory, ':');)
        if (!directory.empty())
            result.push_back(home / directory); // an absolute one stays as it is
    return result;
}

std::string Server::answer(const Run& run, const Arguments& command) const {
    const Outcome outcome = run(command);
    if (!outcome.ok())
        fail(command, outcome);
    return outcome.out;
}

std::optional<NameSet> Server::classes(const std::string& nameSpace) const {
    const Arguments command = onNameSpace("nc", nameSpace, {"-di"});
    const Outcome outcome = _ask(command);
    if (outcome.exitCode == invalidNameSpace)
        return std::nullopt;
    if (!outcome.ok())
        fail(command, outcome);
    const std::vector<std::string> names = lines(outcome.out);
    return NameSet(names.begin(), names.end());
}

std::vector<std::string> Server::subclasses(const std::string& nameSpace,
                                            const std::string& name) const {
    return lines(answer(_ask, onName("nc", nameSpace, name, {"-di"})));
}

NameSet Server::associations(const std::string& nameSpace, const std::string& name) const {
    const std::vector<std::string> names =
        classesOfPaths(answer(_ask, onName("rn", nameSpace, name)));
    return NameSet(names.begin(), names.end());
}

std::string Server::classText(const std::string& nameSpace, const std::string& name) const {
    return answer(_ask, onName("gc", nameSpace, name));
}

std::map<std::string, std::string> Server::classTexts(const std::string& nameSpace,
                                                      const std::vector<std::string>& names,
                                                      const NameSet& there, bool whole) const {
    static const std::regex title(R"(\n// =+\n// (\w+)\n// =+\n)");
    const std::vector<std::string> options(whole ? 1 : 0, "-nlo");
    std::map<std::string, std::string> all;
    if (!there.empty() && 2 * names.size() > there.size()) {
        std::vector<std::string> deep = options;
        deep.emplace_back("-di");
        const std::string text = answer(_ask, onNameSpace("ec", nameSpace, deep));
        const std::sregex_iterator end;
        for (std::sregex_iterator at(text.begin(), text.end(), title), next = at; at != end;
             at = next) {
            ++next;
            const auto to = next == end ? text.size() : static_cast<std::size_t>(next->position());
            const auto from = static_cast<std::size_t>(at->position());
            all[(*at)[1]] = text.substr(from, to - from);
        }
    }
    std::map<std::string, std::string> result;
    for (const std::string& name : names)
        if (const auto found = all.find(name); found != all.end())
            result.insert(*found);
        else if (there.count(name) != 0)
            result[name] = answer(_ask, onName("gc", nameSpace, name, options));
    return result;
}

std::vector<std::string> Server::qualifiers(const std::string& nameSpace) const {
    return declaredQualifiers(answer(_ask, onNameSpace("eq", nameSpace)));
}

Answer Server::instanceNames(const std::string& nameSpace, const std::string& className) const {
    const Outcome outcome = _ask(onName("ni", nameSpace, className));
    if (outcome.ok())
        return {"", classesOfPaths(outcome.out)};
    return {describe(outcome), {}, outcome.exitCode == notSupported};
}

std::vector<Instance> Server::registrations(const std::string& interop) const {
    std::vector<Instance> result;
    for (const char* name : {"PG_ProviderModule", "PG_Provider", "PG_ProviderCapabilities"}) {
        const Arguments command = onName("ei", interop, name);
        const Mof mof = readListing(answer(_ask, command), commandText(command));
        result.insert(result.end(), mof.instances.begin(), mof.instances.end());
    }
    return result;
}

std::optional<std::string> Server::status(const std::string& module) const {
    return moduleStatus(answer(_ask, listModules()), module);
}

std::string Server::configured(const std::string& property) const {
    if (cimconfig.empty())
        return "";
    const Outcome outcome = _ask({cimconfig, "-g", property, "-c"});
    return configuredValue(outcome.ok() ? outcome.out : "");
}

std::vector<std::filesystem::path> Server::providerDirectories() const {
    return directoriesOf(configured("providerDir"), environment("PEGASUS_HOME"));
}

std::string Server::version() const {
    if (cimserver.empty())
        return "";
    const Outcome outcome = _ask({cimserver, "--version"});
    const std::vector<std::string> said = lines(outcome.ok() ? outcome.out : "");
    return said.size() == 1 && said[0].find_first_not_of("0123456789.") == std::string::npos
               ? said[0]
               : "";
}

bool Server::deleteClass(const std::string& nameSpace, const std::string& name) const {
    const Arguments command = onName("dc", nameSpace, name);
    const Outcome outcome = _change(command);
    if (outcome.exitCode == classHasChildren || outcome.exitCode == classHasInstances)
        return false;
    if (!outcome.ok())
        fail(command, outcome);
    return true;
}

} // namespace registering
