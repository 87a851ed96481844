#include "CIMQualifierRep.h"

namespace Pegasus {

CIMQualifier::CIMQualifier(const CIMName& name, const CIMValue& value, const CIMFlavor& flavor,
                           Boolean propagated)
    : CIMQualifierReads(std::make_shared<CIMQualifierRep>(name, value, flavor, propagated)) {}

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

Boolean CIMQualifierReads::identical(const CIMConstQualifier& x) const {
    return initialized(_rep).identical(repOf(x));
}

CIMQualifier CIMQualifierReads::clone() const {
    return RepAccess::make<CIMQualifier>(std::make_shared<CIMQualifierRep>(initialized(_rep)));
}

} // namespace Pegasus
