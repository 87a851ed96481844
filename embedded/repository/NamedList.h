// Elements in the order in which they came, found by their names whatever their case.
#pragma once

#include "repository/SharedTree.h"
#include "repository/Types.h"

#include <cstdint>
#include <utility>

namespace embedded::repository {

/// From one number to another, sorted by both: an index that may have several for one.
struct Link {
    std::uint64_t from = 0;
    std::uint64_t to = 0;

    std::pair<std::uint64_t, std::uint64_t> key() const { return {from, to}; }
};

/// Shows to `visit` what `links` has for `from`, in order, until it returns false.
template <class Visit>
void forEachLink(const SharedTree<Link>& links, std::uint64_t from, Visit visit) {
    links.forEachFrom(
        {from, 0}, [&](const Link& link) { return link.from == from && visit(link.to); });
}

template <class Element>
const auto& nameOf(const Element& element) {
    return element.getName();
}

template <class T>
const auto& nameOf(const Ref<T>& element) {
    return element->name();
}

/// Copies share their elements. Thread-safety: as that of SharedTree.
template <class Element>
class NamedList {
  public:
    std::size_t size() const { return _elements.size(); }
    /// The element with `index` others before it. REQUIRES: index < size().
    const Element& operator[](std::size_t index) const { return _elements[index].element; }

    /// Null if there is none.
    template <class Name>
    const Element* find(const Name& name) const {
        const Placed* found = locate(name);
        return found ? &found->element : nullptr;
    }

    /// As find(), for changing, but for its name.
    template <class Name>
    Element* change(const Name& name) {
        const Placed* found = locate(name);
        return found ? &_elements.change(found->place)->element : nullptr;
    }

    template <class Visit>
    void forEach(Visit visit) const {
        _elements.forEach([&](const Placed& each) { visit(each.element); });
    }

    /// At the end. REQUIRES: there is none of that name.
    void add(Element element) {
        _places.put({foldedHash(nameOf(element).getString()), _next});
        _elements.put({_next, std::move(element)});
        ++_next;
    }

    /// If there is one.
    template <class Name>
    void remove(const Name& name) {
        if (const Placed* found = locate(name)) {
            const std::uint64_t place = found->place;
            _places.erase({foldedHash(name.getString()), place});
            _elements.erase(place);
        }
    }

  private:
    struct Placed {
        std::uint64_t place;
        Element element;

        std::uint64_t key() const { return place; }
    };

    template <class Name>
    const Placed* locate(const Name& name) const {
        const Placed* found = nullptr;
        forEachLink(_places, foldedHash(name.getString()), [&](std::uint64_t place) {
            const Placed* each = _elements.find(place);
            found = nameOf(each->element).equal(name) ? each : nullptr;
            return !found;
        });
        return found;
    }

    SharedTree<Placed> _elements;
    SharedTree<Link> _places; ///< by the hash of the name
    std::uint64_t _next = 0;
};

} // namespace embedded::repository
