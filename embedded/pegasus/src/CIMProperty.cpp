#include "Reps.h"

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

CIMPropertyReads::CIMPropertyReads(const CIMName& name, const CIMValue& value, Uint32 arraySize,
                                   const CIMName& referenceClassName, const CIMName& classOrigin,
                                   Boolean propagated)
    : CIMReads(std::make_shared<CIMPropertyRep>(name, value, arraySize, referenceClassName,
                                                classOrigin, propagated)) {}

const CIMName& CIMPropertyReads::getName() const { return initialized(_rep).name(); }

void CIMProperty::setName(const CIMName& name) { initialized(_rep).rename(name, "property"); }

const CIMValue& CIMPropertyReads::getValue() const { return initialized(_rep).value; }

CIMType CIMPropertyReads::getType() const { return initialized(_rep).value.getType(); }

Boolean CIMPropertyReads::isArray() const { return initialized(_rep).value.isArray(); }

void CIMProperty::setValue(const CIMValue& value) { initialized(_rep).setValue(value); }

Uint32 CIMPropertyReads::getArraySize() const { return initialized(_rep).arraySize; }

const CIMName& CIMPropertyReads::getReferenceClassName() const {
    return initialized(_rep).referenceClassName;
}

const CIMName& CIMPropertyReads::getClassOrigin() const { return initialized(_rep).classOrigin; }

void CIMProperty::setClassOrigin(const CIMName& classOrigin) {
    initialized(_rep).classOrigin = classOrigin;
}

Boolean CIMPropertyReads::getPropagated() const { return initialized(_rep).propagated; }

void CIMProperty::setPropagated(Boolean propagated) { initialized(_rep).propagated = propagated; }

} // namespace Pegasus
