// CIM names and namespaces compare without regard to case.
#pragma once

#include <algorithm>
#include <set>
#include <string>
#include <vector>

namespace registering {

inline std::string lower(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(),
                   [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; });
    return text;
}

/// Whether a CIM name may hold the character. (Standards allow more; nobody here uses it.)
inline bool isNamePart(char c) {
    return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_';
}

/// Whether a text is a CIM name, such as that of a class.
inline bool isName(const std::string& text) {
    return !text.empty() && (text[0] < '0' || text[0] > '9') &&
           std::all_of(text.begin(), text.end(), isNamePart);
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
    return lower(one) == lower(other);
}

struct NameLess {
    bool operator()(const std::string& one, const std::string& other) const {
        return lower(one) < lower(other);
    }
};

using NameSet = std::set<std::string, NameLess>;

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

/// "a, b and c", for people.
inline std::string joined(const std::vector<std::string>& names) {
    std::string text;
    for (std::size_t i = 0; i < names.size(); ++i)
        text += (i == 0 ? "" : i + 1 == names.size() ? " and " : ", ") + names[i];
    return text;
}

} // namespace registering
