// Embedded objects and instances.
#include "CIMValueHeld.h"

#include <Pegasus/Common/CIMInstance.h>
#include <Pegasus/Common/CIMObject.h>

namespace Pegasus {

namespace {

/// Copies of these share, so a value keeps and gives out clones.
struct Cloned {
    template <class T>
    static T copyOf(const T& x) {
        if (x.isUninitialized())
            throw UninitializedObjectException();
        return x.clone();
    }

    template <class T>
    static Array<T> copyOfAll(const Array<T>& x) {
        Array<T> copies;
        copies.reserveCapacity(x.size());
        for (Uint32 i = 0; i < x.size(); ++i)
            copies.append(copyOf(x[i]));
        return copies;
    }

    template <class T>
    static bool same(const T& x, const T& y) {
        return x.identical(y);
    }

    static String textOf(const CIMObject& x) { return x.toString(); }
};

} // namespace

CIM_VALUE_MEMBERS(Cloned, const CIMObject&, CIMObject, CIMTYPE_OBJECT)
CIM_VALUE_MEMBERS(Cloned, const CIMInstance&, CIMInstance, CIMTYPE_INSTANCE)

} // namespace Pegasus
