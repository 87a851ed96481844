// What a handle (CIMProperty, CIMMethod, ...) and its const handle have in common.
#pragma once

#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/Linkage.h>

#include <memory>
#include <utility>

namespace Pegasus {

/// Base of the reads that a handle and its const handle share. It holds what they refer to; the
/// const handle has no functions that change it.
///
/// Copies share one representation: what is changed through one is seen through all; clone() makes
/// an independent one. A default-constructed handle is uninitialized: all operations but
/// isUninitialized() and assignment throw UninitializedObjectException.
///
/// Thread-safety: the reference count is atomic; the representation is not synchronized.
template <class Rep>
class CIMReads {
  public:
    Boolean isUninitialized() const { return !_rep; }

  protected:
    CIMReads() = default;
    explicit CIMReads(std::shared_ptr<Rep> rep) : _rep(std::move(rep)) {}
    // Without moves: what is moved from stays as it is.
    CIMReads(const CIMReads& x) = default;
    CIMReads& operator=(const CIMReads& x) = default;
    ~CIMReads() = default;

    friend class RepAccess;
    std::shared_ptr<Rep> _rep;
};

/// Base of `Reads`, the reads that `Handle` and `ConstHandle` share.
template <class Reads, class Handle, class ConstHandle>
class PEGASUS_COMMON_LINKAGE CIMCompared {
  public:
    /// Whether all is the same that the comment of `Reads` lists, names ignoring case.
    Boolean identical(const ConstHandle& x) const;
    /// A deep copy, which belongs to no container.
    Handle clone() const;
};

} // namespace Pegasus
