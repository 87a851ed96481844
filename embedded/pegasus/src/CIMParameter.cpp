#include "CIMParameterRep.h"

namespace Pegasus {

CIMParameterRep::CIMParameterRep(const CIMName& name, CIMType valueType, bool takesArray,
                                 Uint32 fixedArraySize, const CIMName& referenceClass)
    : NamedElement(name), type(valueType), isArray(takesArray), arraySize(fixedArraySize),
      referenceClassName(referenceClass) {
    const bool isReference = type == CIMTYPE_REFERENCE;
    if ((arraySize != 0 && !isArray) || isReference == referenceClassName.isNull())
        throw TypeMismatchException();
}

bool CIMParameterRep::identical(const CIMParameterRep& x) const {
    return name().equal(x.name()) && type == x.type &&
           referenceClassName.equal(x.referenceClassName) && qualifiers.identical(x.qualifiers);
}

CIMParameter::CIMParameter(const CIMName& name, CIMType type, Boolean isArray, Uint32 arraySize,
                           const CIMName& referenceClassName)
    : _rep(std::make_shared<CIMParameterRep>(name, type, isArray, arraySize, referenceClassName)) {
}

CIMParameter::CIMParameter(std::shared_ptr<CIMParameterRep> rep) : _rep(std::move(rep)) {
}

const CIMName& CIMParameter::getName() const {
    return initialized(_rep).name();
}

void CIMParameter::setName(const CIMName& name) {
    initialized(_rep).rename(name, "parameter");
}

Boolean CIMParameter::isArray() const {
    return initialized(_rep).isArray;
}

Uint32 CIMParameter::getArraySize() const {
    return initialized(_rep).arraySize;
}

const CIMName& CIMParameter::getReferenceClassName() const {
    return initialized(_rep).referenceClassName;
}

CIMType CIMParameter::getType() const {
    return initialized(_rep).type;
}

CIMParameter& CIMParameter::addQualifier(const CIMQualifier& x) {
    initialized(_rep).qualifiers.add(x);
    return *this;
}

Uint32 CIMParameter::findQualifier(const CIMName& name) const {
    return initialized(_rep).qualifiers.find(name);
}

CIMQualifier CIMParameter::getQualifier(Uint32 index) {
    return initialized(_rep).qualifiers.at(index);
}

CIMConstQualifier CIMParameter::getQualifier(Uint32 index) const {
    return initialized(_rep).qualifiers.at(index);
}

void CIMParameter::removeQualifier(Uint32 index) {
    initialized(_rep).qualifiers.remove(index);
}

Uint32 CIMParameter::getQualifierCount() const {
    return initialized(_rep).qualifiers.count();
}

Boolean CIMParameter::isUninitialized() const {
    return !_rep;
}

Boolean CIMParameter::identical(const CIMConstParameter& x) const {
    return initialized(_rep).identical(repOf(x));
}

CIMParameter CIMParameter::clone() const {
    return CIMParameter(std::make_shared<CIMParameterRep>(initialized(_rep)));
}

CIMConstParameter::CIMConstParameter(const CIMParameter& x) : _rep(RepAccess::rep(x)) {
}

CIMConstParameter::CIMConstParameter(const CIMName& name, CIMType type, Boolean isArray,
                                     Uint32 arraySize, const CIMName& referenceClassName)
    : CIMConstParameter(CIMParameter(name, type, isArray, arraySize, referenceClassName)) {
}

CIMConstParameter& CIMConstParameter::operator=(const CIMParameter& x) {
    _rep = RepAccess::rep(x);
    return *this;
}

const CIMName& CIMConstParameter::getName() const {
    return initialized(_rep).name();
}

Boolean CIMConstParameter::isArray() const {
    return initialized(_rep).isArray;
}

Uint32 CIMConstParameter::getArraySize() const {
    return initialized(_rep).arraySize;
}

const CIMName& CIMConstParameter::getReferenceClassName() const {
    return initialized(_rep).referenceClassName;
}

CIMType CIMConstParameter::getType() const {
    return initialized(_rep).type;
}

Uint32 CIMConstParameter::findQualifier(const CIMName& name) const {
    return initialized(_rep).qualifiers.find(name);
}

CIMConstQualifier CIMConstParameter::getQualifier(Uint32 index) const {
    return initialized(_rep).qualifiers.at(index);
}

Uint32 CIMConstParameter::getQualifierCount() const {
    return initialized(_rep).qualifiers.count();
}

Boolean CIMConstParameter::isUninitialized() const {
    return !_rep;
}

Boolean CIMConstParameter::identical(const CIMConstParameter& x) const {
    return initialized(_rep).identical(repOf(x));
}

CIMParameter CIMConstParameter::clone() const {
    return RepAccess::make<CIMParameter>(std::make_shared<CIMParameterRep>(initialized(_rep)));
}

} // namespace Pegasus
