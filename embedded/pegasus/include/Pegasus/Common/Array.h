#pragma once

#include <Pegasus/Common/Char16.h>
#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/Linkage.h>
#include <Pegasus/Common/String.h>

namespace Pegasus {

/// A sequence whose copies share their elements until one of them is changed.
///
/// The library holds this template ready for the CIM types, String, Char16 and the classes of the
/// CIM object model, and for nothing else: an array of an element type of one's own does not link.
///
/// Every access behind the end throws IndexOutOfBoundsException. References and pointers to
/// elements are valid until the array is changed or destroyed.
///
/// Thread-safety: copies that share elements may be used from different threads; one object may
/// be read by several threads, or changed by one.
template <class T>
class PEGASUS_COMMON_LINKAGE Array {
  public:
    Array();
    Array(const Array<T>& x);
    /// `size` elements, each as the element type's default constructor leaves it.
    Array(Uint32 size);
    Array(Uint32 size, const T& x);
    Array(const T* items, Uint32 size);
    ~Array();
    Array<T>& operator=(const Array<T>& x);

    void clear();
    /// A hint that `capacity` elements are to come.
    void reserveCapacity(Uint32 capacity);
    /// Appends `size` copies of `x`.
    void grow(Uint32 size, const T& x);
    void swap(Array<T>& x);

    Uint32 size() const;
    Uint32 getCapacity() const;
    const T* getData() const;

    T& operator[](Uint32 index);
    const T& operator[](Uint32 index) const;

    void append(const T& x);
    void append(const T* x, Uint32 size);
    void appendArray(const Array<T>& x);
    void prepend(const T& x);
    void prepend(const T* x, Uint32 size);
    /// Inserts before the element at `index`, or at the end when `index` is size().
    void insert(Uint32 index, const T& x);
    void insert(Uint32 index, const T* x, Uint32 size);
    void remove(Uint32 index);
    void remove(Uint32 index, Uint32 size);

  private:
    void* _rep; // null: no elements
};

} // namespace Pegasus
