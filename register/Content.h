// What the package brings into a server: the modules, and the MOF of the classes that they need.
#pragma once

#include "register/Names.h"
#include "register/Registration.h"

#include <filesystem>
#include <map>
#include <string>
#include <vector>

namespace registering {

/// A MOF file and all that it includes.
struct Schema {
    std::filesystem::path file;
    std::vector<Class> classes; ///< in the order in which they are declared
    std::vector<std::string> qualifiers;
};

/// A provider module.
struct Module {
    Registration registration;
    /// It publishes the server's own objects, as its settings file says, and only where the server
    /// does not do so itself.
    bool serverObjects;
};

/// The MOF files.
struct Content {
    Schema base;   ///< as much of the CIM schema as is needed, for a namespace that has none
    Schema server; ///< the classes of the server's own objects
    Schema own;    ///< the classes of the switch that the profile's module brings
    /// The profile's module first.
    std::vector<Module> modules;

    /// The key properties of each class of the schemas, inherited ones too.
    std::map<std::string, NameSet, NameLess> keys() const;
};

/// Reads the files in `directory`. Throws std::runtime_error, saying which file and what is wrong
/// with it.
Content readContent(const std::filesystem::path& directory);

} // namespace registering
