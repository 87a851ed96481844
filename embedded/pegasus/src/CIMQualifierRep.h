#pragma once

#include "NamedElement.h"

#include <Pegasus/Common/CIMQualifier.h>

namespace Pegasus {

struct CIMQualifierRep : NamedElement {
    CIMQualifierRep(const CIMName& name, const CIMValue& initialValue,
                    const CIMFlavor& initialFlavor, bool isPropagated)
        : NamedElement(name), value(initialValue), flavor(initialFlavor), propagated(isPropagated) {
    }

    bool identical(const CIMQualifierRep& x) const {
        return name().equal(x.name()) && value.equal(x.value) && flavor.equal(x.flavor) &&
               propagated == x.propagated;
    }

    CIMValue value;
    CIMFlavor flavor;
    bool propagated;
};

/// The qualifiers of an element.
class Qualifiers : public NamedElements<CIMQualifier> {
  public:
    void add(const CIMQualifier& qualifier) {
        NamedElements<CIMQualifier>::add(qualifier, "qualifier");
    }

    /// Whether there is a qualifier of that name with the value true.
    bool isTrue(const CIMName& name) const {
        const Uint32 index = find(name);
        if (index == PEG_NOT_FOUND)
            return false;
        // Equal to a value that is boolean, no array and not null.
        return repOf(at(index)).value.equal(CIMValue(Boolean(true)));
    }
};

} // namespace Pegasus
