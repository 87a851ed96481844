#include "CIMObjectRep.h"

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

CIMObject::CIMObject(const CIMClass& x) : _rep(RepAccess::rep(x)) {
}

CIMObject::CIMObject(const CIMInstance& x) : _rep(RepAccess::rep(x)) {
}

CIMObject::CIMObject(std::shared_ptr<CIMObjectRep> rep) : _rep(std::move(rep)) {
}

const CIMName& CIMObject::getClassName() const {
    return initialized(_rep).className();
}

const CIMObjectPath& CIMObject::getPath() const {
    return initialized(_rep).path();
}

void CIMObject::setPath(const CIMObjectPath& path) {
    initialized(_rep).setPath(path);
}

CIMObject& CIMObject::addQualifier(const CIMQualifier& qualifier) {
    initialized(_rep).qualifiers.add(qualifier);
    return *this;
}

Uint32 CIMObject::findQualifier(const CIMName& name) const {
    return initialized(_rep).qualifiers.find(name);
}

CIMQualifier CIMObject::getQualifier(Uint32 index) {
    return initialized(_rep).qualifiers.at(index);
}

CIMConstQualifier CIMObject::getQualifier(Uint32 index) const {
    return initialized(_rep).qualifiers.at(index);
}

void CIMObject::removeQualifier(Uint32 index) {
    initialized(_rep).qualifiers.remove(index);
}

Uint32 CIMObject::getQualifierCount() const {
    return initialized(_rep).qualifiers.count();
}

CIMObject& CIMObject::addProperty(const CIMProperty& x) {
    initialized(_rep).addProperty(x);
    return *this;
}

Uint32 CIMObject::findProperty(const CIMName& name) const {
    return initialized(_rep).properties.find(name);
}

CIMProperty CIMObject::getProperty(Uint32 index) {
    return initialized(_rep).properties.at(index);
}

CIMConstProperty CIMObject::getProperty(Uint32 index) const {
    return initialized(_rep).properties.at(index);
}

void CIMObject::removeProperty(Uint32 index) {
    initialized(_rep).properties.remove(index);
}

Uint32 CIMObject::getPropertyCount() const {
    return initialized(_rep).properties.count();
}

CIMObject CIMObject::clone() const {
    return CIMObject(initialized(_rep).clone());
}

Boolean CIMObject::identical(const CIMConstObject& x) const {
    return initialized(_rep).identical(repOf(x));
}

Boolean CIMObject::isUninitialized() const {
    return !_rep;
}

Boolean CIMObject::isClass() const {
    return _rep && _rep->isClass();
}

Boolean CIMObject::isInstance() const {
    return _rep && !_rep->isClass();
}

void CIMObject::instanceFilter(Boolean includeQualifiers, Boolean includeClassOrigin,
                               const CIMPropertyList& propertyList) {
    initialized(_rep).filter(includeQualifiers, includeClassOrigin, propertyList);
}

CIMConstObject::CIMConstObject(const CIMObject& x) : _rep(RepAccess::rep(x)) {
}

CIMConstObject::CIMConstObject(const CIMClass& x) : _rep(RepAccess::rep(x)) {
}

CIMConstObject::CIMConstObject(const CIMInstance& x) : _rep(RepAccess::rep(x)) {
}

CIMConstObject::CIMConstObject(const CIMConstClass& x) : _rep(RepAccess::rep(x)) {
}

CIMConstObject::CIMConstObject(const CIMConstInstance& x) : _rep(RepAccess::rep(x)) {
}

const CIMName& CIMConstObject::getClassName() const {
    return initialized(_rep).className();
}

const CIMObjectPath& CIMConstObject::getPath() const {
    return initialized(_rep).path();
}

Uint32 CIMConstObject::findQualifier(const CIMName& name) const {
    return initialized(_rep).qualifiers.find(name);
}

CIMConstQualifier CIMConstObject::getQualifier(Uint32 index) const {
    return initialized(_rep).qualifiers.at(index);
}

Uint32 CIMConstObject::getQualifierCount() const {
    return initialized(_rep).qualifiers.count();
}

Uint32 CIMConstObject::findProperty(const CIMName& name) const {
    return initialized(_rep).properties.find(name);
}

CIMConstProperty CIMConstObject::getProperty(Uint32 index) const {
    return initialized(_rep).properties.at(index);
}

Uint32 CIMConstObject::getPropertyCount() const {
    return initialized(_rep).properties.count();
}

CIMObject CIMConstObject::clone() const {
    return RepAccess::make<CIMObject>(initialized(_rep).clone());
}

Boolean CIMConstObject::identical(const CIMConstObject& x) const {
    return initialized(_rep).identical(repOf(x));
}

Boolean CIMConstObject::isUninitialized() const {
    return !_rep;
}

Boolean CIMConstObject::isClass() const {
    return _rep && _rep->isClass();
}

Boolean CIMConstObject::isInstance() const {
    return _rep && !_rep->isClass();
}

} // namespace Pegasus
