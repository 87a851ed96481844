// The members of Array<T>, for the sources that instantiate it:
//
//     template class Pegasus::Array<Pegasus::CIMName>;
#pragma once

#include "Shared.h"

#include <Pegasus/Common/Array.h>
#include <Pegasus/Common/Exception.h>

#include <algorithm>
#include <functional>
#include <iterator>
#include <memory>
#include <utility>

namespace Pegasus {
namespace arrays {

/// Elements beyond `size` are default-constructed: they hold no resources. Not a std::vector,
/// because one of bool has no elements to point at.
template <class T>
struct Rep : Shared {
    Uint32 size = 0;
    Uint32 capacity = 0;
    std::unique_ptr<T[]> items;

    Rep() = default;
    Rep(const Rep& x)
        : Shared(x), size(x.size), capacity(x.size), items(std::make_unique<T[]>(x.size)) {
        std::copy_n(x.items.get(), size, items.get());
    }

    void reserve(Uint32 wanted) {
        if (wanted <= capacity)
            return;
        const Uint32 roomy = std::max(wanted, capacity + capacity / 2);
        std::unique_ptr<T[]> larger = std::make_unique<T[]>(roomy);
        std::move(items.get(), items.get() + size, larger.get());
        items = std::move(larger);
        capacity = roomy;
    }

    /// Moves the elements from `index` on up by `n` and returns the first of the gap.
    T* openGap(Uint32 index, Uint32 n) {
        reserve(size + n);
        T* gap = items.get() + index;
        std::move_backward(gap, items.get() + size, items.get() + size + n);
        size += n;
        return gap;
    }

    void closeGap(Uint32 index, Uint32 n) {
        T* const end = items.get() + size;
        std::move(items.get() + index + n, end, items.get() + index);
        std::fill(end - n, end, T());
        size -= n;
    }
};

template <class T>
Rep<T>* rep(void* pointer) noexcept {
    return static_cast<Rep<T>*>(pointer);
}

/// As detach() for the untyped pointer that the header holds.
template <class T>
Rep<T>& detached(void*& pointer) {
    Rep<T>* typed = rep<T>(pointer);
    Rep<T>& own = detach(typed);
    pointer = typed;
    return own;
}

} // namespace arrays

template <class T>
Array<T>::Array() : _rep(nullptr) {
}

template <class T>
Array<T>::Array(const Array<T>& x) : _rep(share(arrays::rep<T>(x._rep))) {
}

template <class T>
Array<T>::Array(Uint32 size) : Array(size, T()) {
}

template <class T>
Array<T>::Array(Uint32 size, const T& x) : Array() {
    grow(size, x);
}

template <class T>
Array<T>::Array(const T* items, Uint32 size) : Array() {
    append(items, size);
}

template <class T>
Array<T>::~Array() {
    release(arrays::rep<T>(_rep));
}

template <class T>
Array<T>& Array<T>::operator=(const Array<T>& x) {
    Array<T>(x).swap(*this);
    return *this;
}

template <class T>
void Array<T>::clear() {
    Array<T>().swap(*this);
}

template <class T>
void Array<T>::reserveCapacity(Uint32 capacity) {
    arrays::detached<T>(_rep).reserve(capacity);
}

template <class T>
void Array<T>::grow(Uint32 size, const T& x) {
    // A copy, since `x` may be an element of this array.
    const T value = x; // NOLINT(performance-unnecessary-copy-initialization)
    T* gap = arrays::detached<T>(_rep).openGap(this->size(), size);
    std::fill_n(gap, size, value);
}

template <class T>
void Array<T>::swap(Array<T>& x) {
    std::swap(_rep, x._rep);
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
    return _rep ? arrays::rep<T>(_rep)->items.get() : nullptr;
}

template <class T>
T& Array<T>::operator[](Uint32 index) {
    if (index >= size())
        throw IndexOutOfBoundsException();
    return arrays::detached<T>(_rep).items[index];
}

template <class T>
const T& Array<T>::operator[](Uint32 index) const {
    if (index >= size())
        throw IndexOutOfBoundsException();
    return arrays::rep<T>(_rep)->items[index];
}

template <class T>
void Array<T>::append(const T& x) {
    insert(size(), &x, 1);
}

template <class T>
void Array<T>::append(const T* x, Uint32 size) {
    insert(this->size(), x, size);
}

template <class T>
void Array<T>::appendArray(const Array<T>& x) {
    insert(size(), x.getData(), x.size());
}

template <class T>
void Array<T>::prepend(const T& x) {
    insert(0, &x, 1);
}

template <class T>
void Array<T>::prepend(const T* x, Uint32 size) {
    insert(0, x, size);
}

template <class T>
void Array<T>::insert(Uint32 index, const T& x) {
    insert(index, &x, 1);
}

template <class T>
void Array<T>::insert(Uint32 index, const T* x, Uint32 size) {
    if (index > this->size())
        throw IndexOutOfBoundsException();
    if (size == 0)
        return;
    // Elements of this array may be inserted into it: then the old elements are kept while they
    // are copied.
    const T* const begin = getData();
    const bool ownElements =
        std::less_equal<>()(begin, x) && std::less<>()(x, begin + this->size());
    const Array<T> kept = ownElements ? *this : Array<T>();
    std::copy_n(x, size, arrays::detached<T>(_rep).openGap(index, size));
}

template <class T>
void Array<T>::remove(Uint32 index) {
    remove(index, 1);
}

template <class T>
void Array<T>::remove(Uint32 index, Uint32 size) {
    if (size == 0)
        return;
    if (index >= this->size() || size > this->size() - index)
        throw IndexOutOfBoundsException();
    arrays::detached<T>(_rep).closeGap(index, size);
}

} // namespace Pegasus
