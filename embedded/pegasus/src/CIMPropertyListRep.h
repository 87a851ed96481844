// What stands behind a property list.
#pragma once

#include "Shared.h"
#include "text/PlaceIndex.h"

#include <Pegasus/Common/CIMPropertyList.h>

namespace Pegasus {

/// A list that is not null has one; so has a null list to which tags were added.
struct CIMPropertyListRep : Shared {
    bool isNull = true;
    Array<CIMName> names;
    embedded::text::PlaceIndex places; ///< of the names, or empty while they are few
    Array<Uint32> tags;

    static const CIMPropertyListRep& of(const CIMPropertyList& list);

    /// A place of `name`, or PEG_NOT_FOUND.
    Uint32 find(const CIMName& name) const;
    /// To be called when names were added.
    void index();
};

} // namespace Pegasus
