#include "profiles/ProfileAssociations.h"

#include "common/ReadBack.h"

PEGASUS_USING_PEGASUS;

namespace serverprofile {

Conformance readConformance(const Request& request, const ConformanceRow& row) {
    Array<CIMObjectPath> elements;
    guarded(ReadBack(request.provider.cimomHandle(), request.nameSpace), elements, row.elementClass,
            {row.failure});
    return {elements, conforming(request, row.profile, row.elementClass)};
}

Sint32 sourceIndex(const Request& request, const CatalogueHalf& half, const String& keyValue) {
    return static_cast<Sint32>(request.provider.findRegProfIndex(keyValue, half.of(request)));
}

} // namespace serverprofile
