// The instances of one class, in the order in which they came, found by their paths.
#pragma once

#include "repository/PathMatch.h"

#include <Pegasus/Common/CIMInstance.h>
#include <Pegasus/Common/CIMName.h>

#include <cstdint>
#include <map>
#include <string>
#include <unordered_map>
#include <vector>

namespace embedded::repository {

/// Copies share the instances: nobody may change one that has been given to a store.
class InstanceStore {
  public:
    explicit InstanceStore(const Pegasus::CIMNamespaceName& home) : _home(home) {}

    /// Null if there is none. Valid until the store changes.
    const Pegasus::CIMInstance* find(const Pegasus::CIMObjectPath& path) const;
    std::vector<Pegasus::CIMInstance> all() const;

    /// False, with nothing added, if there is one with the path of `instance`.
    bool add(const Pegasus::CIMInstance& instance);
    /// False if there is none with the path of `instance`.
    bool replace(const Pegasus::CIMInstance& instance);
    /// False if there is none.
    bool remove(const Pegasus::CIMObjectPath& path);

  private:
    using Number = std::uint64_t;

    struct Entry {
        PathKey key;
        Pegasus::CIMInstance instance;
    };

    using Entries = std::map<Number, Entry>;

    Entries::const_iterator locate(const PathKey& asked, bool loosely) const;
    /// An exact match goes before a loose one; _entries.end() if there is neither.
    Entries::const_iterator locate(const Pegasus::CIMObjectPath& path) const;

    Pegasus::CIMNamespaceName _home;
    Entries _entries;
    std::unordered_multimap<std::string, Number> _byKey;
    Number _next = 0;
};

} // namespace embedded::repository
