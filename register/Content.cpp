#include "register/Content.h"

#include "register/Listings.h"

#include <cerrno>
#include <cstring>
#include <fstream>
#include <sstream>
#include <stdexcept>

namespace registering {
namespace fs = std::filesystem;

namespace {

std::string read(const fs::path& file) {
    std::ifstream stream(file, std::ios::binary);
    if (!stream)
        throw std::runtime_error(file.string() + ": " + std::strerror(errno));
    std::ostringstream text;
    text << stream.rdbuf();
    return text.str();
}

void addSchema(const fs::path& file, Schema& schema) {
    const std::string text = read(file);
    const std::string include = "#pragma include";
    for (const std::string& line : lines(text))
        if (line.compare(0, include.size(), include) == 0)
            addSchema(file.parent_path() /
                          line.substr(line.find('"') + 1, line.rfind('"') - line.find('"') - 1),
                      schema);
    const Mof mof = readMof(text, file);
    schema.classes.insert(schema.classes.end(), mof.classes.begin(), mof.classes.end());
    schema.qualifiers.insert(schema.qualifiers.end(), mof.qualifiers.begin(), mof.qualifiers.end());
}

Schema readSchema(const fs::path& file) {
    Schema schema{file, {}, {}};
    addSchema(file, schema);
    return schema;
}

Registration readRegistration(const fs::path& file) {
    Registration registration(readMof(read(file), file).instances);
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
