// Places in a sequence, found by the hashes of what stands there.
#pragma once

#include <cstdint>
#include <optional>
#include <unordered_map>

namespace embedded::text {

/// Thread-safety: as that of a container.
class PlaceIndex {
  public:
    void add(std::uint64_t hash, std::uint32_t place) { _places.emplace(hash, place); }

    /// A place that was added with this hash and of which `isIt(place)` is true, if there is one.
    template <class IsIt>
    std::optional<std::uint32_t> find(std::uint64_t hash, IsIt isIt) const {
        const auto [first, last] = _places.equal_range(hash);
        for (auto each = first; each != last; ++each)
            if (isIt(each->second))
                return each->second;
        return std::nullopt;
    }

    std::size_t size() const { return _places.size(); }

  private:
    std::unordered_multimap<std::uint64_t, std::uint32_t> _places;
};

} // namespace embedded::text
