#include "LoadedSchema.h"

using Pegasus::CIMName;
using Pegasus::Uint32;

const std::vector<std::string> commonFiles = {
    "schema/cim_schema.mof", "schema/pg_server.mof", "schema/orvex_switch.mof",
    "schema/orvex_serverprofile.mof", "samples/sample_switch.mof"};
const std::vector<std::string> interopFiles = {"schema/pg_registration.mof",
                                               "schema/serverprofile_registration.mof",
                                               "schema/serverobjects_registration.mof"};

std::string projectFile(const std::string& relative) {
    return SOURCE_DIRECTORY "/" + relative;
}

LoadedSchema::LoadedSchema() {
    const auto load = [this](const std::string& file, const Pegasus::CIMNamespaceName& where) {
        repository.load(embedded::mof::readFile(projectFile(file)), where);
    };
    for (const std::string& file : commonFiles) {
        load(file, home);
        load(file, interop);
    }
    for (const std::string& file : interopFiles)
        load(file, interop);
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
