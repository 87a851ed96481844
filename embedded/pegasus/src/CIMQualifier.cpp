#include "Reps.h"

namespace Pegasus {

CIMQualifierReads::CIMQualifierReads(const CIMName& name, const CIMValue& value,
                                     const CIMFlavor& flavor, Boolean propagated)
    : CIMReads(std::make_shared<CIMQualifierRep>(name, value, flavor, propagated)) {}

const CIMName& CIMQualifierReads::getName() const { return initialized(_rep).name(); }

void CIMQualifier::setName(const CIMName& name) { initialized(_rep).rename(name, "qualifier"); }

CIMType CIMQualifierReads::getType() const { return initialized(_rep).value.getType(); }

Boolean CIMQualifierReads::isArray() const { return initialized(_rep).value.isArray(); }

const CIMValue& CIMQualifierReads::getValue() const { return initialized(_rep).value; }

void CIMQualifier::setValue(const CIMValue& value) { initialized(_rep).value = value; }

void CIMQualifier::setFlavor(const CIMFlavor& flavor) { initialized(_rep).flavor = flavor; }

void CIMQualifier::unsetFlavor(const CIMFlavor& flavor) {
    initialized(_rep).flavor.removeFlavor(flavor);
}

const CIMFlavor& CIMQualifierReads::getFlavor() const { return initialized(_rep).flavor; }

Uint32 CIMQualifierReads::getPropagated() const { return initialized(_rep).propagated; }

void CIMQualifier::setPropagated(Boolean propagated) { initialized(_rep).propagated = propagated; }

} // namespace Pegasus
