// What a handle (CIMProperty, CIMMethod, ...) and its const handle have in common.
#pragma once

#include <Pegasus/Common/Config.h>

#include <memory>
#include <utility>

namespace Pegasus {

/// Base of the reads that a handle and its const handle share. It holds what they refer to; the
/// const handle has no functions that change it.
template <class Rep>
class CIMReads {
  public:
    Boolean isUninitialized() const { return !_rep; }

  protected:
    CIMReads() = default;
    explicit CIMReads(std::shared_ptr<Rep> rep) : _rep(std::move(rep)) {}
    CIMReads(const CIMReads& x) = default;
    CIMReads& operator=(const CIMReads& x) = default;
    ~CIMReads() = default;

    friend class RepAccess;
    std::shared_ptr<Rep> _rep;
};

} // namespace Pegasus
