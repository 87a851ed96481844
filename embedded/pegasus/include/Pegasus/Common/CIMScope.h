// Where a qualifier may stand.
#pragma once

#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/Linkage.h>
#include <Pegasus/Common/String.h>

namespace Pegasus {

/// A set of the elements that a qualifier type may be applied to (DSP0004, qualifier scope).
/// A plain value: copies are independent.
class PEGASUS_COMMON_LINKAGE CIMScope {
  public:
    /// The empty set.
    constexpr CIMScope() = default;

    /// True if all scopes of `scope` are in the set; so always true for NONE.
    Boolean hasScope(const CIMScope& scope) const { return (_bits & scope._bits) == scope._bits; }

    /// Adds every scope of `scope`.
    void addScope(const CIMScope& scope) { _bits |= scope._bits; }

    Boolean equal(const CIMScope& scope) const { return _bits == scope._bits; }

    /// The union of both sets.
    CIMScope operator+(const CIMScope& scope) const { return CIMScope(_bits | scope._bits); }

    /// The names of the scopes, as written in MOF, separated by a space.
    String toString() const;

    static const CIMScope NONE;
    static const CIMScope CLASS;
    static const CIMScope ASSOCIATION;
    static const CIMScope INDICATION;
    static const CIMScope PROPERTY;
    static const CIMScope REFERENCE;
    static const CIMScope METHOD;
    static const CIMScope PARAMETER;
    /// All of the others.
    static const CIMScope ANY;

  private:
    explicit constexpr CIMScope(Uint32 bits) : _bits(bits) {}

    Uint32 _bits = 0;
};

} // namespace Pegasus
