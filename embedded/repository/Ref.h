// What snapshots share: counted objects that are never changed while somebody else sees them.
#pragma once

#include <atomic>
#include <utility>

namespace embedded::repository {

/// Base of an object that is held by Refs. A copy has no owner yet.
class Counted {
  public:
    Counted() = default;
    Counted(const Counted&) noexcept {}
    Counted& operator=(const Counted&) = delete;

  protected:
    ~Counted() = default;

  private:
    template <class T>
    friend class Ref;

    mutable std::atomic<unsigned> _owners{0};
};

/// A share in a T, which derives from Counted; may be null.
///
/// Thread-safety: as std::shared_ptr.
template <class T>
class Ref {
  public:
    Ref() = default;
    explicit Ref(T* object) noexcept : _object(object) { hold(); }
    Ref(const Ref& other) noexcept : _object(other._object) { hold(); }
    Ref(Ref&& other) noexcept : _object(std::exchange(other._object, nullptr)) {}
    Ref& operator=(Ref other) noexcept {
        std::swap(_object, other._object);
        return *this;
    }
    ~Ref() {
        if (_object && _object->_owners.fetch_sub(1, std::memory_order_acq_rel) == 1)
            delete _object;
    }

    const T* get() const { return _object; }
    const T& operator*() const { return *_object; }
    const T* operator->() const { return _object; }
    explicit operator bool() const { return _object != nullptr; }

    /// The object, for changing: a copy of it where others have a share. REQUIRES: not null; for
    /// the change to be seen by nobody else, the Ref itself is in nothing that is shared.
    T& change() {
        // Acquire: what another owner read before it let go has been read before the change.
        T* own = _object;
        if (own->_owners.load(std::memory_order_acquire) != 1) {
            own = new T(*own);
            *this = Ref(own);
        }
        return *own;
    }

  private:
    void hold() noexcept {
        if (_object)
            _object->_owners.fetch_add(1, std::memory_order_relaxed);
    }

    T* _object = nullptr;
};

} // namespace embedded::repository
