#include "CIMPropertyRep.h"

namespace Pegasus {

CIMPropertyRep::CIMPropertyRep(const CIMName& name, const CIMValue& initialValue,
                               Uint32 fixedArraySize, const CIMName& referenceClass,
                               const CIMName& origin, bool isPropagated)
    : NamedElement(name), value(initialValue), arraySize(fixedArraySize),
      referenceClassName(referenceClass), classOrigin(origin), propagated(isPropagated) {
    checkSizeOf(value);
    const bool isReference = value.getType() == CIMTYPE_REFERENCE;
    if (isReference ? value.isArray() : !referenceClassName.isNull())
        throw TypeMismatchException();
}

bool CIMPropertyRep::identical(const CIMPropertyRep& x) const {
    return name().equal(x.name()) && value.equal(x.value) &&
           referenceClassName.equal(x.referenceClassName) && classOrigin.equal(x.classOrigin) &&
           propagated == x.propagated && qualifiers.identical(x.qualifiers);
}

void CIMPropertyRep::setValue(const CIMValue& newValue) {
    if (!value.typeCompatible(newValue))
        throw TypeMismatchException();
    checkSizeOf(newValue);
    value = newValue;
}

void CIMPropertyRep::checkSizeOf(const CIMValue& x) const {
    if (arraySize != 0 && (!x.isArray() || x.getArraySize() != arraySize))
        throw TypeMismatchException();
}

CIMProperty::CIMProperty(const CIMName& name, const CIMValue& value, Uint32 arraySize,
                         const CIMName& referenceClassName, const CIMName& classOrigin,
                         Boolean propagated)
    : _rep(std::make_shared<CIMPropertyRep>(name, value, arraySize, referenceClassName, classOrigin,
                                            propagated)) {
}

CIMProperty::CIMProperty(std::shared_ptr<CIMPropertyRep> rep) : _rep(std::move(rep)) {
}

const CIMName& CIMProperty::getName() const {
    return initialized(_rep).name();
}

void CIMProperty::setName(const CIMName& name) {
    initialized(_rep).rename(name, "property");
}

const CIMValue& CIMProperty::getValue() const {
    return initialized(_rep).value;
}

CIMType CIMProperty::getType() const {
    return initialized(_rep).value.getType();
}

Boolean CIMProperty::isArray() const {
    return initialized(_rep).value.isArray();
}

void CIMProperty::setValue(const CIMValue& value) {
    initialized(_rep).setValue(value);
}

Uint32 CIMProperty::getArraySize() const {
    return initialized(_rep).arraySize;
}

const CIMName& CIMProperty::getReferenceClassName() const {
    return initialized(_rep).referenceClassName;
}

const CIMName& CIMProperty::getClassOrigin() const {
    return initialized(_rep).classOrigin;
}

void CIMProperty::setClassOrigin(const CIMName& classOrigin) {
    initialized(_rep).classOrigin = classOrigin;
}

Boolean CIMProperty::getPropagated() const {
    return initialized(_rep).propagated;
}

void CIMProperty::setPropagated(Boolean propagated) {
    initialized(_rep).propagated = propagated;
}

CIMProperty& CIMProperty::addQualifier(const CIMQualifier& x) {
    initialized(_rep).qualifiers.add(x);
    return *this;
}

Uint32 CIMProperty::findQualifier(const CIMName& name) const {
    return initialized(_rep).qualifiers.find(name);
}

CIMQualifier CIMProperty::getQualifier(Uint32 index) {
    return initialized(_rep).qualifiers.at(index);
}

CIMConstQualifier CIMProperty::getQualifier(Uint32 index) const {
    return initialized(_rep).qualifiers.at(index);
}

void CIMProperty::removeQualifier(Uint32 index) {
    initialized(_rep).qualifiers.remove(index);
}

Uint32 CIMProperty::getQualifierCount() const {
    return initialized(_rep).qualifiers.count();
}

Boolean CIMProperty::identical(const CIMConstProperty& x) const {
    return initialized(_rep).identical(repOf(x));
}

CIMProperty CIMProperty::clone() const {
    return CIMProperty(std::make_shared<CIMPropertyRep>(initialized(_rep)));
}

Boolean CIMProperty::isUninitialized() const {
    return !_rep;
}

CIMConstProperty::CIMConstProperty(const CIMProperty& x) : _rep(RepAccess::rep(x)) {
}

CIMConstProperty::CIMConstProperty(const CIMName& name, const CIMValue& value, Uint32 arraySize,
                                   const CIMName& referenceClassName, const CIMName& classOrigin,
                                   Boolean propagated)
    : CIMConstProperty(
          CIMProperty(name, value, arraySize, referenceClassName, classOrigin, propagated)) {
}

CIMConstProperty& CIMConstProperty::operator=(const CIMProperty& x) {
    _rep = RepAccess::rep(x);
    return *this;
}

const CIMName& CIMConstProperty::getName() const {
    return initialized(_rep).name();
}

const CIMValue& CIMConstProperty::getValue() const {
    return initialized(_rep).value;
}

CIMType CIMConstProperty::getType() const {
    return initialized(_rep).value.getType();
}

Boolean CIMConstProperty::isArray() const {
    return initialized(_rep).value.isArray();
}

Uint32 CIMConstProperty::getArraySize() const {
    return initialized(_rep).arraySize;
}

const CIMName& CIMConstProperty::getReferenceClassName() const {
    return initialized(_rep).referenceClassName;
}

const CIMName& CIMConstProperty::getClassOrigin() const {
    return initialized(_rep).classOrigin;
}

Boolean CIMConstProperty::getPropagated() const {
    return initialized(_rep).propagated;
}

Uint32 CIMConstProperty::findQualifier(const CIMName& name) const {
    return initialized(_rep).qualifiers.find(name);
}

CIMConstQualifier CIMConstProperty::getQualifier(Uint32 index) const {
    return initialized(_rep).qualifiers.at(index);
}

Uint32 CIMConstProperty::getQualifierCount() const {
    return initialized(_rep).qualifiers.count();
}

Boolean CIMConstProperty::identical(const CIMConstProperty& x) const {
    return initialized(_rep).identical(repOf(x));
}

CIMProperty CIMConstProperty::clone() const {
    return RepAccess::make<CIMProperty>(std::make_shared<CIMPropertyRep>(initialized(_rep)));
}

Boolean CIMConstProperty::isUninitialized() const {
    return !_rep;
}

} // namespace Pegasus
