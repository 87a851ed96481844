#include "Reps.h"

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

CIMParameterReads::CIMParameterReads(const CIMName& name, CIMType type, Boolean isArray,
                                     Uint32 arraySize, const CIMName& referenceClassName)
    : CIMReads(
          std::make_shared<CIMParameterRep>(name, type, isArray, arraySize, referenceClassName)) {}

const CIMName& CIMParameterReads::getName() const { return initialized(_rep).name(); }

void CIMParameter::setName(const CIMName& name) { initialized(_rep).rename(name, "parameter"); }

Boolean CIMParameterReads::isArray() const { return initialized(_rep).isArray; }

Uint32 CIMParameterReads::getArraySize() const { return initialized(_rep).arraySize; }

const CIMName& CIMParameterReads::getReferenceClassName() const {
    return initialized(_rep).referenceClassName;
}

CIMType CIMParameterReads::getType() const { return initialized(_rep).type; }

} // namespace Pegasus
