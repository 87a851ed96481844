#include "CIMObjectRep.h"

namespace Pegasus {

std::shared_ptr<CIMObjectRep> CIMInstanceRep::clone() const {
    return std::make_shared<CIMInstanceRep>(*this);
}

CIMInstanceReads::CIMInstanceReads(const CIMObjectReads& x) : CIMElementReads(x) {
    if (!x.isInstance())
        throw DynamicCastFailedException();
}

CIMInstance::CIMInstance(const CIMName& className)
    : CIMInstanceReads(std::make_shared<CIMInstanceRep>(className)) {
}

void CIMInstance::setPath(const CIMObjectPath& path) {
    initialized(_rep).setPath(path);
}

CIMInstance& CIMInstance::addQualifier(const CIMQualifier& qualifier) {
    initialized(_rep).qualifiers.add(qualifier);
    return *this;
}

CIMQualifier CIMInstance::getQualifier(Uint32 index) {
    return initialized(_rep).qualifiers.at(index);
}

void CIMInstance::removeQualifier(Uint32 index) {
    initialized(_rep).qualifiers.remove(index);
}

CIMInstance& CIMInstance::addProperty(const CIMProperty& x) {
    initialized(_rep).addProperty(x);
    return *this;
}

CIMProperty CIMInstance::getProperty(Uint32 index) {
    return initialized(_rep).properties.at(index);
}

void CIMInstance::removeProperty(Uint32 index) {
    initialized(_rep).properties.remove(index);
}

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

CIMInstance CIMInstanceReads::clone() const {
    return RepAccess::make<CIMInstance>(initialized(_rep).clone());
}

Boolean CIMInstanceReads::identical(const CIMConstInstance& x) const {
    return initialized(_rep).identical(repOf(x));
}

void CIMInstance::instanceFilter(Boolean includeQualifiers, Boolean includeClassOrigin,
                                 const CIMPropertyList& propertyList) {
    initialized(_rep).filter(includeQualifiers, includeClassOrigin, propertyList);
}

CIMConstInstance::CIMConstInstance(const CIMName& className)
    : CIMInstanceReads(std::make_shared<CIMInstanceRep>(className)) {
}

CIMConstInstance& CIMConstInstance::operator=(const CIMInstance& x) {
    CIMInstanceReads::operator=(x);
    return *this;
}

} // namespace Pegasus
