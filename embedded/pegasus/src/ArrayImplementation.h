// The members of Array<T>, for the sources that instantiate it:
//
//     template class Pegasus::Array<Pegasus::CIMName>;
#pragma once

#include "Shared.h"

#include <Pegasus/Common/Array.h>
#include <Pegasus/Common/Exception.h>

#include <algorithm>
#include <memory>
#include <new>
#include <utility>

namespace Pegasus {
namespace arrays {

/// The elements stand behind the header, in the same allocation.
template <class T>
struct Rep : Shared {
    Uint32 size = 0;
    const Uint32 capacity;

    /// Without elements yet. `delete` ends it.
    static std::unique_ptr<Rep> make(Uint32 capacity) {
        void* const memory = ::operator new (offset() + std::size_t{capacity} * sizeof(T));
        return std::unique_ptr<Rep>(::new (memory) Rep(capacity));
    }
    // NOLINTNEXTLINE(misc-new-delete-overloads,cert-dcl54-cpp): make() asks for more than an object
    static void operator delete(void* memory) { ::operator delete(memory); }
    Rep(const Rep&) = delete;
    ~Rep() { std::destroy_n(items(), size); }

    T* items() { return reinterpret_cast<T*>(reinterpret_cast<char*>(this) + offset()); }

    /// Adds copies of the `n` elements from `from` on. REQUIRES: there is room.
    void append(const T* from, Uint32 n) {
        std::uninitialized_copy_n(from, n, items() + size);
        size += n;
    }

  private:
    explicit Rep(Uint32 room) : capacity(room) {}

    static constexpr std::size_t offset() {
        return (sizeof(Rep) + alignof(T) - 1) / alignof(T) * alignof(T);
    }
};

template <class T>
Rep<T>* rep(void* pointer) noexcept {
    return static_cast<Rep<T>*>(pointer);
}

/// Whether nobody else sees the elements, and there is room for `size`.
template <class T>
bool isOwn(void* pointer, Uint32 size) {
    return pointer && rep<T>(pointer)->hasOneOwner() && size <= rep<T>(pointer)->capacity;
}

/// Half as much again as there is, or more if that is wanted.
template <class T>
Uint32 roomy(void* pointer, Uint32 wanted) {
    const Uint32 size = pointer ? rep<T>(pointer)->size : 0;
    return std::max(wanted, size + size / 2);
}

/// Lets `pointer` be `other`.
template <class T>
void reset(void*& pointer, std::unique_ptr<Rep<T>> other) {
    release(rep<T>(pointer));
    pointer = other.release();
}

/// The elements, which nobody else sees, with room for at least `capacity`.
template <class T>
Rep<T>& own(void*& pointer, Uint32 capacity) {
    if (!isOwn<T>(pointer, capacity)) {
        const Uint32 size = pointer ? rep<T>(pointer)->size : 0;
        std::unique_ptr<Rep<T>> copy = Rep<T>::make(std::max(capacity, size));
        if (pointer)
            copy->append(rep<T>(pointer)->items(), size);
        reset(pointer, std::move(copy));
    }
    return *rep<T>(pointer);
}

} // namespace arrays

template <class T>
Array<T>::Array(const Array<T>& x) : _rep(share(arrays::rep<T>(x._rep))) {}

template <class T>
Array<T>::~Array() {
    release(arrays::rep<T>(_rep));
}

template <class T>
void Array<T>::reserveCapacity(Uint32 capacity) {
    arrays::own<T>(_rep, capacity);
}

template <class T>
void Array<T>::grow(Uint32 size, const T& x) {
    if (size == 0)
        return;
    // A copy, since `x` may be an element of this array.
    const T value = x; // NOLINT(performance-unnecessary-copy-initialization)
    const Uint32 wanted = this->size() + size;
    const bool hasRoom = arrays::isOwn<T>(_rep, wanted);
    arrays::Rep<T>& mine = arrays::own<T>(_rep, hasRoom ? wanted : arrays::roomy<T>(_rep, wanted));
    std::uninitialized_fill_n(mine.items() + mine.size, size, value);
    mine.size += size;
}

template <class T>
Uint32 Array<T>::size() const {
    return _rep ? arrays::rep<T>(_rep)->size : 0;
}

template <class T>
Uint32 Array<T>::getCapacity() const {
    return _rep ? arrays::rep<T>(_rep)->capacity : 0;
}

template <class T>
const T* Array<T>::getData() const {
    return _rep ? arrays::rep<T>(_rep)->items() : nullptr;
}

template <class T>
T& Array<T>::operator[](Uint32 index) {
    if (index >= size())
        throw IndexOutOfBoundsException();
    return arrays::own<T>(_rep, 0).items()[index];
}

template <class T>
const T& Array<T>::operator[](Uint32 index) const {
    if (index >= size())
        throw IndexOutOfBoundsException();
    return arrays::rep<T>(_rep)->items()[index];
}

template <class T>
void Array<T>::insert(Uint32 index, const T* x, Uint32 size) {
    if (index > this->size())
        throw IndexOutOfBoundsException();
    if (size == 0)
        return;
    const Uint32 oldSize = this->size();
    if (index == oldSize && arrays::isOwn<T>(_rep, oldSize + size)) {
        arrays::rep<T>(_rep)->append(x, size);
        return;
    }
    // The old elements stay until all is copied: `x` may be some of them.
    std::unique_ptr<arrays::Rep<T>> larger =
        arrays::Rep<T>::make(arrays::roomy<T>(_rep, oldSize + size));
    larger->append(getData(), index);
    larger->append(x, size);
    if (index < oldSize)
        larger->append(getData() + index, oldSize - index);
    arrays::reset<T>(_rep, std::move(larger));
}

template <class T>
void Array<T>::remove(Uint32 index, Uint32 size) {
    if (size == 0)
        return;
    if (index >= this->size() || size > this->size() - index)
        throw IndexOutOfBoundsException();
    arrays::Rep<T>& mine = arrays::own<T>(_rep, 0);
    T* const end = mine.items() + mine.size;
    std::move(mine.items() + index + size, end, mine.items() + index);
    std::destroy(end - size, end);
    mine.size -= size;
}

} // namespace Pegasus
