#include "CIMObjectRep.h"
#include "DownCast.h"

namespace Pegasus {

std::shared_ptr<CIMObjectRep> CIMInstanceRep::clone() const {
    return std::make_shared<CIMInstanceRep>(*this);
}

CIMObjectPath CIMInstanceRep::buildPath(const CIMConstClass& cimClass) const {
    const Array<CIMName> keyNames = repOf(cimClass).keyNames();
    Array<CIMKeyBinding> keyBindings;
    for (Uint32 key = 0; key < keyNames.size(); ++key) {
        const Uint32 index = properties.find(keyNames[key]);
        if (index == PEG_NOT_FOUND)
            throw Exception("no such property: " + keyNames[key].getString());
        keyBindings.append(CIMKeyBinding(keyNames[key], repOf(properties.at(index)).value));
    }
    return CIMObjectPath(String::EMPTY, CIMNamespaceName(), className(), keyBindings);
}

CIMInstance::CIMInstance(const CIMObject& x) : _rep(downCast<CIMInstanceRep>(x)) {
}

CIMInstance::CIMInstance(const CIMName& className)
    : _rep(std::make_shared<CIMInstanceRep>(className)) {
}

CIMInstance::CIMInstance(std::shared_ptr<CIMInstanceRep> rep) : _rep(std::move(rep)) {
}

const CIMName& CIMInstance::getClassName() const {
    return initialized(_rep).className();
}

const CIMObjectPath& CIMInstance::getPath() const {
    return initialized(_rep).path();
}

void CIMInstance::setPath(const CIMObjectPath& path) {
    initialized(_rep).setPath(path);
}

CIMInstance& CIMInstance::addQualifier(const CIMQualifier& qualifier) {
    initialized(_rep).qualifiers.add(qualifier);
    return *this;
}

Uint32 CIMInstance::findQualifier(const CIMName& name) const {
    return initialized(_rep).qualifiers.find(name);
}

CIMQualifier CIMInstance::getQualifier(Uint32 index) {
    return initialized(_rep).qualifiers.at(index);
}

CIMConstQualifier CIMInstance::getQualifier(Uint32 index) const {
    return initialized(_rep).qualifiers.at(index);
}

void CIMInstance::removeQualifier(Uint32 index) {
    initialized(_rep).qualifiers.remove(index);
}

Uint32 CIMInstance::getQualifierCount() const {
    return initialized(_rep).qualifiers.count();
}

CIMInstance& CIMInstance::addProperty(const CIMProperty& x) {
    initialized(_rep).addProperty(x);
    return *this;
}

Uint32 CIMInstance::findProperty(const CIMName& name) const {
    return initialized(_rep).properties.find(name);
}

CIMProperty CIMInstance::getProperty(Uint32 index) {
    return initialized(_rep).properties.at(index);
}

CIMConstProperty CIMInstance::getProperty(Uint32 index) const {
    return initialized(_rep).properties.at(index);
}

void CIMInstance::removeProperty(Uint32 index) {
    initialized(_rep).properties.remove(index);
}

Uint32 CIMInstance::getPropertyCount() const {
    return initialized(_rep).properties.count();
}

CIMObjectPath CIMInstance::buildPath(const CIMConstClass& cimClass) const {
    return initialized(_rep).buildPath(cimClass);
}

CIMInstance CIMInstance::clone() const {
    return CIMInstance(std::make_shared<CIMInstanceRep>(initialized(_rep)));
}

Boolean CIMInstance::identical(const CIMConstInstance& x) const {
    return initialized(_rep).identical(repOf(x));
}

Boolean CIMInstance::isUninitialized() const {
    return !_rep;
}

void CIMInstance::instanceFilter(Boolean includeQualifiers, Boolean includeClassOrigin,
                                 const CIMPropertyList& propertyList) {
    initialized(_rep).filter(includeQualifiers, includeClassOrigin, propertyList);
}

CIMConstInstance::CIMConstInstance(const CIMInstance& x) : _rep(RepAccess::rep(x)) {
}

CIMConstInstance::CIMConstInstance(const CIMObject& x) : _rep(downCast<CIMInstanceRep>(x)) {
}

CIMConstInstance::CIMConstInstance(const CIMConstObject& x)
    : _rep(downCast<const CIMInstanceRep>(x)) {
}

CIMConstInstance::CIMConstInstance(const CIMName& className)
    : _rep(std::make_shared<CIMInstanceRep>(className)) {
}

CIMConstInstance& CIMConstInstance::operator=(const CIMInstance& x) {
    _rep = RepAccess::rep(x);
    return *this;
}

const CIMName& CIMConstInstance::getClassName() const {
    return initialized(_rep).className();
}

const CIMObjectPath& CIMConstInstance::getPath() const {
    return initialized(_rep).path();
}

Uint32 CIMConstInstance::findQualifier(const CIMName& name) const {
    return initialized(_rep).qualifiers.find(name);
}

CIMConstQualifier CIMConstInstance::getQualifier(Uint32 index) const {
    return initialized(_rep).qualifiers.at(index);
}

Uint32 CIMConstInstance::getQualifierCount() const {
    return initialized(_rep).qualifiers.count();
}

Uint32 CIMConstInstance::findProperty(const CIMName& name) const {
    return initialized(_rep).properties.find(name);
}

CIMConstProperty CIMConstInstance::getProperty(Uint32 index) const {
    return initialized(_rep).properties.at(index);
}

Uint32 CIMConstInstance::getPropertyCount() const {
    return initialized(_rep).properties.count();
}

CIMObjectPath CIMConstInstance::buildPath(const CIMConstClass& cimClass) const {
    return initialized(_rep).buildPath(cimClass);
}

CIMInstance CIMConstInstance::clone() const {
    return RepAccess::make<CIMInstance>(std::make_shared<CIMInstanceRep>(initialized(_rep)));
}

Boolean CIMConstInstance::identical(const CIMConstInstance& x) const {
    return initialized(_rep).identical(repOf(x));
}

Boolean CIMConstInstance::isUninitialized() const {
    return !_rep;
}

} // namespace Pegasus
