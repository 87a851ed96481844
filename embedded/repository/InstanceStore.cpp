#include "repository/InstanceStore.h"

#include <algorithm>
#include <utility>

namespace embedded::repository {

InstanceStore::Entries::const_iterator InstanceStore::locate(const PathKey& asked,
                                                             bool loosely) const {
    const auto [first, last] = _byKey.equal_range(asked.text());
    for (auto each = first; each != last; ++each) {
        const auto entry = _entries.find(each->second);
        const PathKey& kept = entry->second.key;
        if (loosely ? kept.matchesLoosely(asked) : kept.matches(asked)) {
            return entry;
        }
    }
    return _entries.end();
}

InstanceStore::Entries::const_iterator
InstanceStore::locate(const Pegasus::CIMObjectPath& path) const {
    const PathKey asked(path, _home);
    const auto exact = locate(asked, false);
    return exact != _entries.end() ? exact : locate(asked, true);
}

const Pegasus::CIMInstance* InstanceStore::find(const Pegasus::CIMObjectPath& path) const {
    const auto found = locate(path);
    return found == _entries.end() ? nullptr : &found->second.instance;
}

std::vector<Pegasus::CIMInstance> InstanceStore::all() const {
    std::vector<Pegasus::CIMInstance> instances;
    instances.reserve(_entries.size());
    for (const auto& [number, entry] : _entries) {
        instances.push_back(entry.instance);
    }
    return instances;
}

bool InstanceStore::add(const Pegasus::CIMInstance& instance) {
    PathKey key(instance.getPath(), _home);
    if (locate(key, false) != _entries.end()) {
        return false;
    }
    _byKey.emplace(key.text(), _next);
    _entries.emplace(_next, Entry{std::move(key), instance});
    ++_next;
    return true;
}

bool InstanceStore::replace(const Pegasus::CIMInstance& instance) {
    const auto found = locate(instance.getPath());
    if (found == _entries.end()) {
        return false;
    }
    _entries.at(found->first).instance = instance;
    return true;
}

bool InstanceStore::remove(const Pegasus::CIMObjectPath& path) {
    const auto found = locate(path);
    if (found == _entries.end()) {
        return false;
    }
    const auto [first, last] = _byKey.equal_range(found->second.key.text());
    _byKey.erase(
        std::find_if(first, last, [&](const auto& each) { return each.second == found->first; }));
    _entries.erase(found);
    return true;
}

} // namespace embedded::repository
