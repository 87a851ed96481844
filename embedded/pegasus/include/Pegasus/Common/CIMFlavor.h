// How a qualifier travels: to subclasses, to instances, and whether it may be overridden there.
#pragma once

#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/Linkage.h>
#include <Pegasus/Common/String.h>

namespace Pegasus {

/// A set of qualifier flavors (DSP0004, qualifier flavors). A plain value: copies are independent.
class PEGASUS_COMMON_LINKAGE CIMFlavor {
  public:
    /// The empty set.
    constexpr CIMFlavor() = default;

    /// Adds every flavor of `flavor`. Opposites replace nothing: DISABLEOVERRIDE is a flavor of its
    /// own beside OVERRIDABLE, and RESTRICTED beside TOSUBCLASS.
    void addFlavor(const CIMFlavor& flavor) { _bits |= flavor._bits; }

    /// Takes every flavor of `flavor` out of the set.
    void removeFlavor(const CIMFlavor& flavor) { _bits &= ~flavor._bits; }

    /// True if all flavors of `flavor` are in the set; so always true for NONE.
    Boolean hasFlavor(const CIMFlavor& flavor) const {
        return (_bits & flavor._bits) == flavor._bits;
    }

    Boolean equal(const CIMFlavor& flavor) const { return _bits == flavor._bits; }

    /// The union of both sets.
    CIMFlavor operator+(const CIMFlavor& flavor) const { return CIMFlavor(_bits | flavor._bits); }

    /// The names of the flavors, as written in MOF, separated by a space.
    String toString() const;

    static const CIMFlavor NONE;
    static const CIMFlavor OVERRIDABLE;
    /// The same as OVERRIDABLE, by its MOF name.
    static const CIMFlavor ENABLEOVERRIDE;
    static const CIMFlavor DISABLEOVERRIDE;
    static const CIMFlavor TOSUBCLASS;
    /// The same as TOSUBCLASS, by its XML name.
    static const CIMFlavor TOSUBELEMENTS;
    static const CIMFlavor RESTRICTED;
    static const CIMFlavor TOINSTANCE;
    static const CIMFlavor TRANSLATABLE;
    /// OVERRIDABLE and TOSUBCLASS.
    static const CIMFlavor DEFAULTS;

  private:
    explicit constexpr CIMFlavor(Uint32 bits) : _bits(bits) {}

    Uint32 _bits = 0;
};

} // namespace Pegasus
