#include "Reps.h"

namespace Pegasus {

std::shared_ptr<CIMObjectRep> CIMInstanceRep::clone() const {
    return std::make_shared<CIMInstanceRep>(*this);
}

CIMInstanceReads::CIMInstanceReads(const CIMObjectReads& x) : CIMElementReads(x) {
    if (!x.isInstance())
        throw DynamicCastFailedException();
}

CIMInstanceReads::CIMInstanceReads(const CIMName& className)
    : CIMElementReads(std::make_shared<CIMInstanceRep>(className)) {}

CIMObjectPath CIMInstanceReads::buildPath(const CIMConstClass& cimClass) const {
    const CIMObjectRep& rep = initialized(_rep);
    const Array<CIMName> keyNames = classRepOf(cimClass).keyNames();
    Array<CIMKeyBinding> keyBindings;
    for (Uint32 key = 0; key < keyNames.size(); ++key) {
        const Uint32 index = rep.properties.find(keyNames[key]);
        if (index == PEG_NOT_FOUND)
            throw Exception("no such property: " + keyNames[key].getString());
        keyBindings.append(CIMKeyBinding(keyNames[key], repOf(rep.properties.at(index)).value));
    }
    return CIMObjectPath(String::EMPTY, CIMNamespaceName(), rep.className(), keyBindings);
}

void CIMInstance::instanceFilter(Boolean includeQualifiers, Boolean includeClassOrigin,
                                 const CIMPropertyList& propertyList) {
    initialized(_rep).filter(includeQualifiers, includeClassOrigin, propertyList);
}

} // namespace Pegasus
