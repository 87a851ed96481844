#include "register/ServerSettings.h"

#include "register/Files.h"

namespace registering {
namespace {

// The server lists its namespaces by what is below "root"; others have to be told.
std::string besideRoot(const std::vector<std::string>& nameSpaces) {
    std::string list;
    for (const std::string& nameSpace : nameSpaces)
        if (!sameName(nameSpace.substr(0, nameSpace.find('/')), "root"))
            list += (list.empty() ? "" : ", ") + nameSpace;
    return list.empty() ? "" : "Namespaces = " + list + "\n";
}

// FunctionalProfilesSupported are those of CIM_ObjectManagerCommunicationMechanism in the CIM
// schema: basic read, basic write, schema manipulation, instance manipulation, association
// traversal, qualifier declaration and indications, which OpenPegasus all has.
std::string textFor(const std::string& interop, const std::vector<std::string>& nameSpaces,
                    const std::string& version) {
    return "# What the provider of the server's own objects says of this server. Written by\n"
           "# serverprofile-register, which leaves the file alone once it was changed. The module\n"
           "# reads it when the server loads it.\n"
           "ServerNamespace = " +
           interop +
           "\nSystemCreationClassName = ORVEX_ObjectManagerHost\n"
           "ElementName = OpenPegasus\n"
           "Description = OpenPegasus" +
           (version.empty() ? "" : ", version " + version) +
           "\nFunctionalProfilesSupported = 2, 3, 4, 5, 6, 8, 9\n" + besideRoot(nameSpaces);
}

} // namespace

bool ServerSettings::ours(const std::optional<Record>& record) const {
    if (!found || *found == wanted)
        return true;
    if (!record)
        return false;
    const auto written = record->files.find(file);
    return written != record->files.end() && written->second == *found;
}

ServerSettings serverSettings(const Settings& settings, const Situation& situation,
                              const Server& server) {
    ServerSettings result;
    for (std::size_t i = 0; i < situation.modules.size(); ++i)
        if (situation.modules[i].serverObjects) {
            const Registration& registration = situation.content.modules[i].registration;
            result.file = settings.settingsDirectory / (registration.provider() + ".conf");
            result.wanted = textFor(settings.interop, situation.modules[i].wanted.nameSpaces(),
                                    server.version());
        }
    result.found = readFile(result.file);
    return result;
}

} // namespace registering
