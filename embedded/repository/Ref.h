// What snapshots share: counted objects that are never changed while somebody else sees them.
#pragma once

#include <boost/smart_ptr/intrusive_ptr.hpp>
#include <boost/smart_ptr/intrusive_ref_counter.hpp>

namespace embedded::repository {

/// Base of a T that is held by Refs. A copy has no owner yet.
template <class T>
using Counted = boost::intrusive_ref_counter<T>;

/// A share in a T, which derives from Counted<T>; may be null.
///
/// Thread-safety: as std::shared_ptr.
template <class T>
class Ref : public boost::intrusive_ptr<const T> {
  public:
    Ref() = default;
    explicit Ref(T* object) noexcept : boost::intrusive_ptr<const T>(object) {}

    /// The object, for changing: a copy of it where others have a share. REQUIRES: not null; for
    /// the change to be seen by nobody else, the Ref itself is in nothing that is shared.
    T& change() {
        // use_count() acquires: what another owner read before it let go was read before the
        // change.
        if (this->get()->use_count() != 1)
            *this = Ref(new T(*this->get()));
        return const_cast<T&>(*this->get()); // it was given as a T*
    }
};

} // namespace embedded::repository
