#include "register/Content.h"

#include <stdexcept>

namespace registering {
namespace fs = std::filesystem;

namespace {

Schema readSchema(const fs::path& file) {
    Mof mof = readMofFile(file);
    return {file, std::move(mof.classes), std::move(mof.qualifiers)};
}

Registration readRegistration(const fs::path& file) {
    Registration registration(readMofFile(file).instances);
    if (registration.module().empty() || registration.capabilities().empty())
        throw std::runtime_error(file.string() + ": registers no module with capabilities");
    return registration;
}

} // namespace

std::map<std::string, NameSet, NameLess> Content::keys() const {
    std::map<std::string, NameSet, NameLess> result;
    for (const Schema* schema : {&base, &server, &own})
        for (const Class& declared : schema->classes) {
            NameSet keys(declared.keys.begin(), declared.keys.end());
            const auto above = result.find(declared.superclass);
            if (above != result.end())
                keys.insert(above->second.begin(), above->second.end());
            result.emplace(declared.name, std::move(keys));
        }
    return result;
}

Content readContent(const fs::path& directory) {
    return {readSchema(directory / "cim_schema.mof"),
            readSchema(directory / "pg_server.mof"),
            readSchema(directory / "orvex_serverprofile.mof"),
            {{readRegistration(directory / "serverprofile_registration.mof"), false},
             {readRegistration(directory / "serverobjects_registration.mof"), true}}};
}

} // namespace registering
