// The flags of GetClass (DSP0200 clause 5.3.2.1).
#pragma once

#include <Pegasus/Common/CIMClass.h>
#include <Pegasus/Common/CIMPropertyList.h>

namespace embedded::repository {

/// A copy of `resolved` that shows what is asked for. `localOnly` leaves out what is propagated:
/// properties, methods and qualifiers; `propertyList` narrows the properties further.
Pegasus::CIMClass filteredClass(const Pegasus::CIMConstClass& resolved, bool localOnly,
                                bool includeQualifiers, bool includeClassOrigin,
                                const Pegasus::CIMPropertyList& propertyList);

} // namespace embedded::repository
