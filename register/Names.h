// CIM names and namespaces compare without regard to case.
#pragma once

#include "text/Ascii.h"

#include <algorithm>
#include <set>
#include <string>
#include <vector>

namespace registering {

/// Whether a text is a CIM name, such as that of a class. (Standards allow more; nobody here uses
/// it.)
inline bool isName(const std::string& name) {
    using namespace embedded::text;
    return !name.empty() && !isDigit(name[0]) && std::all_of(name.begin(), name.end(), [](char c) {
        return isDigit(c) || isLetter(c) || c == '_';
    });
}

/// Whether a text is a namespace: CIM names with slashes between them.
inline bool isNameSpace(const std::string& text) {
    for (std::size_t from = 0, slash = 0; slash != std::string::npos; from = slash + 1) {
        slash = text.find('/', from);
        if (!isName(text.substr(from, slash - from)))
            return false;
    }
    return true;
}

inline bool sameName(const std::string& one, const std::string& other) {
    return embedded::text::equalIgnoringCase(one, other);
}

struct NameLess {
    bool operator()(const std::string& one, const std::string& other) const {
        return embedded::text::lowered(one) < embedded::text::lowered(other);
    }
};

using NameSet = std::set<std::string, NameLess>;

inline bool sameNames(const NameSet& one, const NameSet& other) {
    return one.size() == other.size() &&
           std::equal(one.begin(), one.end(), other.begin(), sameName);
}

inline bool hasName(const std::vector<std::string>& names, const std::string& name) {
    return std::any_of(
        names.begin(), names.end(),
        [&](const std::string& other) { return sameName(name, other); });
}

/// Appends `name` unless `names` has it already.
inline void addName(std::vector<std::string>& names, const std::string& name) {
    if (!hasName(names, name))
        names.push_back(name);
}

/// Appends those of `more` that `names` has not already.
inline void addNames(std::vector<std::string>& names, const std::vector<std::string>& more) {
    for (const std::string& name : more)
        addName(names, name);
}

/// "a, b and c", for people.
inline std::string joined(const std::vector<std::string>& names) {
    std::string text;
    for (std::size_t i = 0; i < names.size(); ++i)
        text += (i == 0 ? "" : i + 1 == names.size() ? " and " : ", ") + names[i];
    return text;
}

} // namespace registering
