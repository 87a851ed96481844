// Elements that are found by their name in a class, instance, property, method or parameter.
#pragma once

#include "RepAccess.h"
#include "embedding/Text.h"
#include "text/PlaceIndex.h"

#include <Pegasus/Common/CIMName.h>

#include <atomic>
#include <memory>
#include <vector>

namespace Pegasus {

/// The name of an element, which cannot be changed while a container finds the element by it.
class NamedElement {
  public:
    /// Throws UninitializedObjectException if `name` is null.
    explicit NamedElement(const CIMName& name) : _name(checked(name)) {}
    /// The copy is in no container.
    NamedElement(const NamedElement& x) : _name(x._name) {}
    NamedElement& operator=(const NamedElement&) = delete;

    const CIMName& name() const { return _name; }

    /// `kind` is what the message calls the element.
    void rename(const CIMName& name, const char* kind) {
        checked(name);
        if (_containers != 0)
            throw Exception(String("Attempted to change the name of a ") + kind +
                            " already in a container.");
        _name = name;
    }

    void enterContainer() { ++_containers; }
    void leaveContainer() { --_containers; }

  private:
    static const CIMName& checked(const CIMName& name) {
        if (name.isNull())
            throw UninitializedObjectException();
        return name;
    }

    CIMName _name;
    // Elements of one class may be added to instances of several threads.
    std::atomic<unsigned> _containers{0};
};

/// A container of elements in the order of their insertion. `Handle` is what they are handed out
/// as, and shares them; a copy of the container has copies of the elements.
template <class Handle>
class NamedElements {
  public:
    NamedElements() = default;
    NamedElements(const NamedElements& x) {
        _elements.reserve(x._elements.size());
        for (const Handle& element : x._elements)
            insert(element.clone());
    }
    NamedElements& operator=(const NamedElements&) = delete;
    ~NamedElements() { clear(); }

    /// `kind` is what the message of AlreadyExistsException calls the element.
    void add(const Handle& element, const char* kind) {
        const CIMName& name = repOf(element).name();
        if (find(name) != PEG_NOT_FOUND)
            throw AlreadyExistsException(String(kind) + " \"" + name.getString() + "\"");
        insert(element);
        if (count() > indexedFrom)
            addToIndex();
    }

    Uint32 find(const CIMName& name) const {
        const auto isIt = [&](Uint32 index) { return repOf(_elements[index]).name().equal(name); };
        if (_index)
            return _index->find(embedding::foldedHash(name.getString()), isIt)
                .value_or(PEG_NOT_FOUND);
        for (Uint32 index = 0; index < count(); ++index)
            if (isIt(index))
                return index;
        return PEG_NOT_FOUND;
    }

    const Handle& at(Uint32 index) const {
        if (index >= count())
            throw IndexOutOfBoundsException();
        return _elements[index];
    }

    void remove(Uint32 index) {
        repOf(at(index)).leaveContainer();
        _elements.erase(_elements.begin() + index);
        _index.reset();
    }

    void clear() {
        for (const Handle& element : _elements)
            repOf(element).leaveContainer();
        _elements.clear();
        _index.reset();
    }

    Uint32 count() const { return static_cast<Uint32>(_elements.size()); }

    bool identical(const NamedElements& x) const {
        if (count() != x.count())
            return false;
        for (Uint32 index = 0; index < count(); ++index)
            if (!_elements[index].identical(x._elements[index]))
                return false;
        return true;
    }

    auto begin() const { return _elements.begin(); }
    auto end() const { return _elements.end(); }

  private:
    void insert(const Handle& element) {
        _elements.push_back(element);
        repOf(element).enterContainer();
    }

    /// Completes the index after an element was added, or makes it.
    void addToIndex() {
        if (!_index)
            _index = std::make_unique<embedded::text::PlaceIndex>();
        for (auto next = static_cast<Uint32>(_index->size()); next < count(); ++next)
            _index->add(embedding::foldedHash(repOf(_elements[next]).name().getString()), next);
    }

    /// Fewer are found faster by looking at each.
    static constexpr Uint32 indexedFrom = 32;

    std::vector<Handle> _elements;
    std::unique_ptr<embedded::text::PlaceIndex> _index; ///< of all elements; null until it pays
};

} // namespace Pegasus
