// What the handles of everything that has qualifiers have in common.
#pragma once

#include <Pegasus/Common/CIMName.h>
#include <Pegasus/Common/CIMQualifier.h>
#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/Linkage.h>

namespace Pegasus {

/// Base of `Reads`, the reads that a handle and its const handle share.
template <class Reads>
class PEGASUS_COMMON_LINKAGE CIMQualifiedReads {
  public:
    /// The index of the qualifier `name` (ignoring case), or PEG_NOT_FOUND.
    Uint32 findQualifier(const CIMName& name) const;
    /// Throws IndexOutOfBoundsException unless `index` < getQualifierCount().
    CIMConstQualifier getQualifier(Uint32 index) const;
    Uint32 getQualifierCount() const;
};

/// Base of `Handle`, which adds to `Reads` that the qualifiers can be changed.
template <class Handle, class Reads>
class PEGASUS_COMMON_LINKAGE CIMQualified : public Reads {
  public:
    using Reads::Reads;

    /// Throws AlreadyExistsException if there is a qualifier of that name (ignoring case), and
    /// UninitializedObjectException if `x` is uninitialized.
    Handle& addQualifier(const CIMQualifier& x);
    using Reads::getQualifier;
    CIMQualifier getQualifier(Uint32 index);
    /// Throws IndexOutOfBoundsException unless `index` < getQualifierCount().
    void removeQualifier(Uint32 index);
};

} // namespace Pegasus
