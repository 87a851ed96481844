// What this program reads of MOF: of the package's files, and of what cimcli prints.
#pragma once

#include "mof/Mof.h"

#include <filesystem>
#include <string>
#include <vector>

namespace registering {

namespace mof = embedded::mof;

using Instance = mof::InstanceDeclaration;

/// What is read of a class.
struct Class {
    std::string name;
    std::string superclass;              ///< "" without one
    std::string version;                 ///< of the qualifier Version; "" without one
    std::vector<std::string> references; ///< the classes that its references point to
    std::vector<std::string> keys;       ///< the key properties that it declares itself
};

struct Mof {
    std::vector<Class> classes;
    std::vector<Instance> instances;     ///< without the properties that are NULL
    std::vector<std::string> qualifiers; ///< the names of those that are declared
};

/// Reads classes or instances as cimcli prints them: MOF, but for properties that are embedded
/// objects. `origin` names the text in errors. Throws mof::MofError, whose text begins with
/// "origin:line:column: ", for any other text.
Mof readListing(const std::string& text, const std::string& origin);

/// Reads a MOF file and the files that it includes. Throws mof::MofError, also for a file that
/// cannot be read.
Mof readMofFile(const std::filesystem::path& file);

/// The value of a property, or null if the instance has none.
const mof::Value* find(const Instance& instance, const std::string& property);

/// The items of a property's value; empty without the property.
std::vector<std::string> texts(const Instance& instance, const std::string& property);

/// The first of these, or "".
std::string text(const Instance& instance, const std::string& property);

/// Instances as MOF.
std::string writeMof(const std::vector<Instance>& instances);

} // namespace registering
