#include "Reps.h"

namespace Pegasus {

CIMObjectRep::CIMObjectRep(const CIMName& className) {
    if (className.isNull())
        throw UninitializedObjectException();
    _path.setClassName(className);
}

bool CIMObjectRep::identical(const CIMObjectRep& x) const {
    return isClass() == x.isClass() && _path.identical(x._path) &&
           qualifiers.identical(x.qualifiers) && properties.identical(x.properties);
}

void CIMObjectRep::addProperty(const CIMProperty& property) {
    properties.add(property, "property");
}

void CIMObjectRep::setPath(const CIMObjectPath& path) {
    if (path.getClassName().isNull())
        throw UninitializedObjectException();
    if (!path.getClassName().equal(className()))
        throw TypeMismatchException();
    _path = path;
}

void CIMObjectRep::filter(bool includeQualifiers, bool includeClassOrigin,
                          const CIMPropertyList& propertyList) {
    if (!includeQualifiers)
        qualifiers.clear();
    for (Uint32 index = properties.count(); index-- > 0;) {
        CIMPropertyRep& property = repOf(properties.at(index));
        if (!propertyList.isNull() && !propertyList.contains(property.name())) {
            properties.remove(index);
            continue;
        }
        if (!includeQualifiers)
            property.qualifiers.clear();
        if (!includeClassOrigin)
            property.classOrigin.clear();
    }
}

CIMObject::CIMObject(const CIMClass& x) : CIMElement(x) {}

CIMObject::CIMObject(const CIMInstance& x) : CIMElement(x) {}

const CIMName& CIMElementReads::getClassName() const { return initialized(_rep).className(); }

const CIMObjectPath& CIMElementReads::getPath() const { return initialized(_rep).path(); }

Uint32 CIMElementReads::findProperty(const CIMName& name) const {
    return initialized(_rep).properties.find(name);
}

CIMConstProperty CIMElementReads::getProperty(Uint32 index) const {
    return initialized(_rep).properties.at(index);
}

Uint32 CIMElementReads::getPropertyCount() const { return initialized(_rep).properties.count(); }

Boolean CIMObjectReads::isClass() const { return _rep && _rep->isClass(); }

Boolean CIMObjectReads::isInstance() const { return _rep && !_rep->isClass(); }

void CIMObject::instanceFilter(Boolean includeQualifiers, Boolean includeClassOrigin,
                               const CIMPropertyList& propertyList) {
    initialized(_rep).filter(includeQualifiers, includeClassOrigin, propertyList);
}

} // namespace Pegasus
