#include "register/Server.h"

namespace registering {
namespace {

// cimcli ends with the number of the CIM status (DSP0200) that the server answered.
constexpr int invalidNameSpace = 3;
constexpr int notSupported = 7;
constexpr int classHasChildren = 8;
constexpr int classHasInstances = 9;

[[noreturn]] void fail(const Arguments& command, const Outcome& outcome) {
    throw Failure("'" + commandText(command) + "' " + describe(outcome));
}

} // namespace

std::string Server::answer(const Run& run, const Arguments& command) const {
    const Outcome outcome = run(command);
    if (!outcome.ok())
        fail(command, outcome);
    return outcome.out;
}

std::optional<NameSet> Server::classes(const std::string& nameSpace) const {
    const Arguments command = onNameSpace("nc", nameSpace, "-di");
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
    return lines(answer(_ask, onName("nc", nameSpace, name, "-di")));
}

NameSet Server::associations(const std::string& nameSpace, const std::string& name) const {
    const std::vector<std::string> names =
        classesOfPaths(answer(_ask, onName("rn", nameSpace, name)));
    return NameSet(names.begin(), names.end());
}

std::string Server::classText(const std::string& nameSpace, const std::string& name) const {
    return answer(_ask, onName("gc", nameSpace, name));
}

NameSet Server::keys(const std::string& nameSpace, const std::string& name) const {
    const Arguments command = onName("gc", nameSpace, name, "-nlo");
    const Mof mof = readListing(answer(_ask, command), commandText(command));
    if (mof.classes.empty())
        throw Failure("'" + commandText(command) + "' shows no class");
    const std::vector<std::string>& names = mof.classes.front().keys;
    return NameSet(names.begin(), names.end());
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
