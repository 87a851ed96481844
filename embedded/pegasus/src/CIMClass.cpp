#include "CIMObjectRep.h"
#include "DownCast.h"

namespace Pegasus {

std::shared_ptr<CIMObjectRep> CIMClassRep::clone() const {
    return std::make_shared<CIMClassRep>(*this);
}

bool CIMClassRep::identical(const CIMObjectRep& x) const {
    if (!CIMObjectRep::identical(x))
        return false;
    const auto& other = static_cast<const CIMClassRep&>(x);
    return superClassName.equal(other.superClassName) && methods.identical(other.methods);
}

void CIMClassRep::addProperty(const CIMProperty& property) {
    const CIMPropertyRep& rep = repOf(property);
    if (rep.value.getType() == CIMTYPE_REFERENCE && rep.referenceClassName.isNull())
        throw TypeMismatchException();
    CIMObjectRep::addProperty(property);
}

Array<CIMName> CIMClassRep::keyNames() const {
    Array<CIMName> names;
    for (const CIMProperty& property : properties) {
        const CIMPropertyRep& rep = repOf(property);
        if (rep.qualifiers.isTrue("Key"))
            names.append(rep.name());
    }
    return names;
}

CIMClass::CIMClass(const CIMObject& x) : _rep(downCast<CIMClassRep>(x)) {
}

CIMClass::CIMClass(const CIMName& className, const CIMName& superClassName)
    : _rep(std::make_shared<CIMClassRep>(className, superClassName)) {
}

CIMClass::CIMClass(std::shared_ptr<CIMClassRep> rep) : _rep(std::move(rep)) {
}

Boolean CIMClass::isAssociation() const {
    return initialized(_rep).isAssociation();
}

Boolean CIMClass::isAbstract() const {
    return initialized(_rep).isAbstract();
}

const CIMName& CIMClass::getClassName() const {
    return initialized(_rep).className();
}

const CIMObjectPath& CIMClass::getPath() const {
    return initialized(_rep).path();
}

void CIMClass::setPath(const CIMObjectPath& path) {
    initialized(_rep).setPath(path);
}

const CIMName& CIMClass::getSuperClassName() const {
    return initialized(_rep).superClassName;
}

void CIMClass::setSuperClassName(const CIMName& superClassName) {
    initialized(_rep).superClassName = superClassName;
}

CIMClass& CIMClass::addQualifier(const CIMQualifier& qualifier) {
    initialized(_rep).qualifiers.add(qualifier);
    return *this;
}

Uint32 CIMClass::findQualifier(const CIMName& name) const {
    return initialized(_rep).qualifiers.find(name);
}

CIMQualifier CIMClass::getQualifier(Uint32 index) {
    return initialized(_rep).qualifiers.at(index);
}

CIMConstQualifier CIMClass::getQualifier(Uint32 index) const {
    return initialized(_rep).qualifiers.at(index);
}

void CIMClass::removeQualifier(Uint32 index) {
    initialized(_rep).qualifiers.remove(index);
}

Uint32 CIMClass::getQualifierCount() const {
    return initialized(_rep).qualifiers.count();
}

CIMClass& CIMClass::addProperty(const CIMProperty& x) {
    initialized(_rep).addProperty(x);
    return *this;
}

Uint32 CIMClass::findProperty(const CIMName& name) const {
    return initialized(_rep).properties.find(name);
}

CIMProperty CIMClass::getProperty(Uint32 index) {
    return initialized(_rep).properties.at(index);
}

CIMConstProperty CIMClass::getProperty(Uint32 index) const {
    return initialized(_rep).properties.at(index);
}

void CIMClass::removeProperty(Uint32 index) {
    initialized(_rep).properties.remove(index);
}

Uint32 CIMClass::getPropertyCount() const {
    return initialized(_rep).properties.count();
}

CIMClass& CIMClass::addMethod(const CIMMethod& x) {
    initialized(_rep).methods.add(x, "method");
    return *this;
}

Uint32 CIMClass::findMethod(const CIMName& name) const {
    return initialized(_rep).methods.find(name);
}

CIMMethod CIMClass::getMethod(Uint32 index) {
    return initialized(_rep).methods.at(index);
}

CIMConstMethod CIMClass::getMethod(Uint32 index) const {
    return initialized(_rep).methods.at(index);
}

void CIMClass::removeMethod(Uint32 index) {
    initialized(_rep).methods.remove(index);
}

Uint32 CIMClass::getMethodCount() const {
    return initialized(_rep).methods.count();
}

void CIMClass::getKeyNames(Array<CIMName>& keyNames) const {
    keyNames = initialized(_rep).keyNames();
}

Boolean CIMClass::hasKeys() const {
    return initialized(_rep).hasKeys();
}

CIMClass CIMClass::clone() const {
    return CIMClass(std::make_shared<CIMClassRep>(initialized(_rep)));
}

Boolean CIMClass::identical(const CIMConstClass& x) const {
    return initialized(_rep).identical(repOf(x));
}

Boolean CIMClass::isUninitialized() const {
    return !_rep;
}

CIMInstance CIMClass::buildInstance(Boolean includeQualifiers, Boolean includeClassOrigin,
                                    const CIMPropertyList& propertyList) const {
    const CIMClassRep& rep = initialized(_rep);
    CIMInstance instance(rep.className());
    for (const CIMQualifier& qualifier : rep.qualifiers)
        instance.addQualifier(qualifier.clone());
    for (const CIMProperty& property : rep.properties)
        instance.addProperty(property.clone());
    instance.instanceFilter(includeQualifiers, includeClassOrigin, propertyList);
    return instance;
}

CIMConstClass::CIMConstClass(const CIMClass& x) : _rep(RepAccess::rep(x)) {
}

CIMConstClass::CIMConstClass(const CIMObject& x) : _rep(downCast<CIMClassRep>(x)) {
}

CIMConstClass::CIMConstClass(const CIMConstObject& x) : _rep(downCast<const CIMClassRep>(x)) {
}

CIMConstClass::CIMConstClass(const CIMName& className, const CIMName& superClassName)
    : _rep(std::make_shared<CIMClassRep>(className, superClassName)) {
}

CIMConstClass& CIMConstClass::operator=(const CIMClass& x) {
    _rep = RepAccess::rep(x);
    return *this;
}

Boolean CIMConstClass::isAssociation() const {
    return initialized(_rep).isAssociation();
}

Boolean CIMConstClass::isAbstract() const {
    return initialized(_rep).isAbstract();
}

const CIMName& CIMConstClass::getClassName() const {
    return initialized(_rep).className();
}

const CIMObjectPath& CIMConstClass::getPath() const {
    return initialized(_rep).path();
}

const CIMName& CIMConstClass::getSuperClassName() const {
    return initialized(_rep).superClassName;
}

Uint32 CIMConstClass::findQualifier(const CIMName& name) const {
    return initialized(_rep).qualifiers.find(name);
}

CIMConstQualifier CIMConstClass::getQualifier(Uint32 index) const {
    return initialized(_rep).qualifiers.at(index);
}

Uint32 CIMConstClass::getQualifierCount() const {
    return initialized(_rep).qualifiers.count();
}

Uint32 CIMConstClass::findProperty(const CIMName& name) const {
    return initialized(_rep).properties.find(name);
}

CIMConstProperty CIMConstClass::getProperty(Uint32 index) const {
    return initialized(_rep).properties.at(index);
}

Uint32 CIMConstClass::getPropertyCount() const {
    return initialized(_rep).properties.count();
}

Uint32 CIMConstClass::findMethod(const CIMName& name) const {
    return initialized(_rep).methods.find(name);
}

CIMConstMethod CIMConstClass::getMethod(Uint32 index) const {
    return initialized(_rep).methods.at(index);
}

Uint32 CIMConstClass::getMethodCount() const {
    return initialized(_rep).methods.count();
}

void CIMConstClass::getKeyNames(Array<CIMName>& keyNames) const {
    keyNames = initialized(_rep).keyNames();
}

Boolean CIMConstClass::hasKeys() const {
    return initialized(_rep).hasKeys();
}

CIMClass CIMConstClass::clone() const {
    return RepAccess::make<CIMClass>(std::make_shared<CIMClassRep>(initialized(_rep)));
}

Boolean CIMConstClass::identical(const CIMConstClass& x) const {
    return initialized(_rep).identical(repOf(x));
}

Boolean CIMConstClass::isUninitialized() const {
    return !_rep;
}

} // namespace Pegasus
