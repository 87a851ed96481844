#pragma once

#include <Pegasus/Common/Char16.h>
#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/Linkage.h>
#include <Pegasus/Common/String.h>

#include <utility>

namespace Pegasus {

/// A sequence whose copies share their elements until one of them is changed.
///
/// The library holds this template ready for the CIM types, String, Char16 and the classes of the
/// CIM object model, and for nothing else: an array of an element type of one's own does not link.
///
/// An index behind the end throws IndexOutOfBoundsException. References and pointers to
/// elements are valid until the array is changed or destroyed.
///
/// Thread-safety: copies that share elements may be used from different threads; one object may
/// be read by several threads, or changed by one.
template <class T>
class PEGASUS_COMMON_LINKAGE Array {
  public:
    Array() = default;
    Array(const Array<T>& x);
    /// `size` elements, each as the element type's default constructor leaves it.
    Array(Uint32 size) : Array(size, T()) {}
    Array(Uint32 size, const T& x) : Array() { grow(size, x); }
    Array(const T* items, Uint32 size) : Array() { append(items, size); }
    ~Array();
    Array<T>& operator=(const Array<T>& x) {
        Array<T>(x).swap(*this);
        return *this;
    }

    void clear() { Array<T>().swap(*this); }
    /// A hint that `capacity` elements are to come.
    void reserveCapacity(Uint32 capacity);
    /// Appends `size` copies of `x`.
    void grow(Uint32 size, const T& x);
    void swap(Array<T>& x) { std::swap(_rep, x._rep); }

    Uint32 size() const;
    Uint32 getCapacity() const;
    const T* getData() const;

    T& operator[](Uint32 index);
    const T& operator[](Uint32 index) const;

    void append(const T& x) { insert(size(), &x, 1); }
    void append(const T* x, Uint32 size) { insert(this->size(), x, size); }
    void appendArray(const Array<T>& x) { insert(size(), x.getData(), x.size()); }
    void prepend(const T& x) { insert(0, &x, 1); }
    void prepend(const T* x, Uint32 size) { insert(0, x, size); }
    /// Inserts before the element at `index`, or at the end when `index` is size().
    void insert(Uint32 index, const T& x) { insert(index, &x, 1); }
    void insert(Uint32 index, const T* x, Uint32 size);
    void remove(Uint32 index) { remove(index, 1); }
    void remove(Uint32 index, Uint32 size);

  private:
    void* _rep = nullptr; // null: no elements
};

} // namespace Pegasus
