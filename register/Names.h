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

inline bool sameName(const std::string& one, const std::string& other) {
    return lower(one) == lower(other);
}

struct NameLess {
    bool operator()(const std::string& one, const std::string& other) const {
        return lower(one) < lower(other);
    }
};

using NameSet = std::set<std::string, NameLess>;

/// Appends `name` unless `names` has it already.
inline void addName(std::vector<std::string>& names, const std::string& name) {
    const auto same = [&](const std::string& other) { return sameName(name, other); };
    if (std::none_of(names.begin(), names.end(), same))
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
