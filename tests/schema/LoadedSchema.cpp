#include "LoadedSchema.h"

#include <filesystem>
#include <fstream>
#include <regex>

using Pegasus::CIMName;
using Pegasus::CIMNamespaceName;
using Pegasus::Uint32;

std::vector<std::pair<std::string, std::string>> loadedFiles() {
    std::vector<std::pair<std::string, std::string>> files;
    for (const char* const configuration : {"samples/switch.conf", "schema/serverprofile.conf"}) {
        const std::filesystem::path path = projectFile(configuration);
        std::ifstream text(path);
        static const std::regex mof("mof = ([^=]*)=(.*)");
        std::smatch found;
        for (std::string line; std::getline(text, line);)
            if (std::regex_match(line, found, mof))
                files.emplace_back(found[1],
                                   (path.parent_path() / found[2].str()).lexically_normal());
    }
    files.emplace_back("root/PG_InterOp", projectFile("schema/serverobjects_registration.mof"));
    return files;
}

std::string projectFile(const std::string& relative) { return SOURCE_DIRECTORY "/" + relative; }

LoadedSchema::LoadedSchema() {
    for (const auto& [nameSpace, file] : loadedFiles())
        repository.load(embedded::mof::readFile(file), CIMNamespaceName(nameSpace.c_str()));
}

std::vector<Pegasus::CIMInstance>
LoadedSchema::instancesOf(const Pegasus::CIMNamespaceName& nameSpace, const char* className) const {
    std::vector<Pegasus::CIMInstance> instances;
    const auto list = repository.view().instances(nameSpace, CIMName(className));
    for (std::size_t i = 0; i < list.size(); ++i)
        instances.push_back(list[i].instance());
    return instances;
}

std::string LoadedSchema::text(const Pegasus::String& value) {
    return static_cast<const char*>(value.getCString());
}

Pegasus::CIMClass LoadedSchema::classNamed(const std::string& name) const {
    return repository.view().getClass(home, CIMName(name.c_str()));
}

std::vector<std::string> LoadedSchema::listQualifier(const std::string& className,
                                                     const std::string& property,
                                                     const std::string& qualifier) const {
    const Pegasus::CIMClass type = classNamed(className);
    const auto declared = type.getProperty(type.findProperty(CIMName(property.c_str())));
    Pegasus::Array<Pegasus::String> values;
    declared.getQualifier(declared.findQualifier(CIMName(qualifier.c_str())))
        .getValue()
        .get(values);
    std::vector<std::string> out;
    for (Uint32 i = 0; i < values.size(); ++i)
        out.push_back(text(values[i]));
    return out;
}

std::string LoadedSchema::value(const Pegasus::CIMInstance& instance, const char* property) {
    const Uint32 index = instance.findProperty(CIMName(property));
    return index == PEG_NOT_FOUND ? "" : text(instance.getProperty(index).getValue().toString());
}
