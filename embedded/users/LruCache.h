// A table of limited size, which drops the entry that was not used for the longest time.
#pragma once

#include <cstddef>
#include <list>
#include <unordered_map>
#include <utility>

namespace embedded::users {

/// Thread-safety: none.
template <class Key, class Value>
class LruCache {
  public:
    explicit LruCache(std::size_t bound) : _bound(bound) {}

    /// Null if there is none. Valid until the next change.
    Value* find(const Key& key) {
        const auto found = _places.find(key);
        return found == _places.end() ? nullptr : &found->second->second;
    }
    /// The entry of `key`, made if there is none. It becomes the one used last.
    Value& touch(const Key& key) {
        const auto found = _places.find(key);
        if (found != _places.end()) {
            _entries.splice(_entries.begin(), _entries, found->second);
            return found->second->second;
        }
        _entries.emplace_front(key, Value());
        try {
            _places.emplace(key, _entries.begin());
        } catch (...) {
            _entries.pop_front();
            throw;
        }
        if (_entries.size() > _bound) {
            _places.erase(_entries.back().first);
            _entries.pop_back();
        }
        return _entries.front().second;
    }
    void forget(const Key& key) {
        const auto found = _places.find(key);
        if (found == _places.end())
            return;
        _entries.erase(found->second);
        _places.erase(found);
    }
    void clear() noexcept {
        _places.clear();
        _entries.clear();
    }
    std::size_t size() const { return _entries.size(); }

  private:
    using Entries = std::list<std::pair<Key, Value>>;

    const std::size_t _bound;
    Entries _entries; // the one that was touched last comes first
    std::unordered_map<Key, typename Entries::iterator> _places;
};

} // namespace embedded::users
