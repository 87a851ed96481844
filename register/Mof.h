// A small reader of MOF: as much as the package's files need and what cimcli prints of classes,
// instances and qualifiers.
#pragma once

#include <string>
#include <vector>

namespace registering {

/// A property of an instance. The items are MOF literals as they were written, strings with their
/// quotes (and joined, where they were written in pieces).
struct Property {
    std::string name;
    bool isArray = false;
    std::vector<std::string> items;
};

/// An instance; properties that are NULL are not in it.
struct Instance {
    std::string className;
    std::vector<Property> properties;

    /// The property of that name, or null.
    const Property* find(const std::string& name) const;
    /// A property's items, strings without their quotes; empty without the property.
    std::vector<std::string> texts(const std::string& name) const;
    /// The first of these, or "".
    std::string text(const std::string& name) const;
};

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
    std::vector<Instance> instances;
    std::vector<std::string> qualifiers; ///< the names of those that are declared
};

/// Reads MOF text. Pragmas are passed over.
/// Throws std::runtime_error with "origin:line: ..." where the text is no such MOF.
Mof readMof(const std::string& text, const std::string& origin);

/// Instances as MOF that readMof and the server's compiler read.
std::string writeMof(const std::vector<Instance>& instances);

/// A text as a MOF string literal. The text may not hold what MOF would have to escape.
std::string quoted(const std::string& text);

} // namespace registering
