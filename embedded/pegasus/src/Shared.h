// Reference counting for the representations behind the value types: copies share one, and whoever
// changes it first makes one of its own.
#pragma once

#include <atomic>

namespace Pegasus {

/// Base of a representation that is shared. A new or copied one has one owner.
class Shared {
  public:
    Shared() noexcept : _owners(1) {}
    Shared(const Shared&) noexcept : _owners(1) {}
    Shared& operator=(const Shared&) = delete;

    void addOwner() noexcept { _owners.fetch_add(1, std::memory_order_relaxed); }
    /// True when the last owner has gone. clang's static analyzer does not follow the count and
    /// holds any owner for the last; that is why some destructors of handles silence it.
    bool dropOwner() noexcept { return _owners.fetch_sub(1, std::memory_order_acq_rel) == 1; }
    /// Acquire, so that what other owners did before they let go has happened before the caller's
    /// change.
    bool hasOneOwner() const noexcept { return _owners.load(std::memory_order_acquire) == 1; }

  protected:
    ~Shared() = default;

  private:
    std::atomic<unsigned> _owners;
};

/// The functions take null for "no representation".
template <class Rep>
Rep* share(Rep* rep) noexcept {
    if (rep)
        rep->addOwner();
    return rep;
}

template <class Rep>
void release(Rep* rep) noexcept {
    if (rep && rep->dropOwner())
        delete rep;
}

/// Lets go of `mine` and shares `other`; safe when they are one.
template <class Rep>
void replace(Rep*& mine, Rep* other) noexcept {
    Rep* previous = mine;
    mine = share(other);
    release(previous);
}

/// Makes `mine` a representation that nobody else sees, and returns it.
template <class Rep>
Rep& detach(Rep*& mine) {
    if (!mine) {
        mine = new Rep;
    } else if (!mine->hasOneOwner()) {
        Rep* own = new Rep(*mine);
        release(mine);
        mine = own;
    }
    return *mine;
}

} // namespace Pegasus
