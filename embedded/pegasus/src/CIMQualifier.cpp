#include "CIMQualifierRep.h"

namespace Pegasus {

CIMQualifier::CIMQualifier(const CIMName& name, const CIMValue& value, const CIMFlavor& flavor,
                           Boolean propagated)
    : _rep(std::make_shared<CIMQualifierRep>(name, value, flavor, propagated)) {
}

CIMQualifier::CIMQualifier(std::shared_ptr<CIMQualifierRep> rep) : _rep(std::move(rep)) {
}

const CIMName& CIMQualifier::getName() const {
    return initialized(_rep).name();
}

void CIMQualifier::setName(const CIMName& name) {
    initialized(_rep).rename(name, "qualifier");
}

CIMType CIMQualifier::getType() const {
    return initialized(_rep).value.getType();
}

Boolean CIMQualifier::isArray() const {
    return initialized(_rep).value.isArray();
}

const CIMValue& CIMQualifier::getValue() const {
    return initialized(_rep).value;
}

void CIMQualifier::setValue(const CIMValue& value) {
    initialized(_rep).value = value;
}

void CIMQualifier::setFlavor(const CIMFlavor& flavor) {
    initialized(_rep).flavor = flavor;
}

void CIMQualifier::unsetFlavor(const CIMFlavor& flavor) {
    initialized(_rep).flavor.removeFlavor(flavor);
}

const CIMFlavor& CIMQualifier::getFlavor() const {
    return initialized(_rep).flavor;
}

Uint32 CIMQualifier::getPropagated() const {
    return initialized(_rep).propagated;
}

void CIMQualifier::setPropagated(Boolean propagated) {
    initialized(_rep).propagated = propagated;
}

Boolean CIMQualifier::isUninitialized() const {
    return !_rep;
}

Boolean CIMQualifier::identical(const CIMConstQualifier& x) const {
    return initialized(_rep).identical(repOf(x));
}

CIMQualifier CIMQualifier::clone() const {
    return CIMQualifier(std::make_shared<CIMQualifierRep>(initialized(_rep)));
}

CIMConstQualifier::CIMConstQualifier(const CIMQualifier& x) : _rep(RepAccess::rep(x)) {
}

CIMConstQualifier::CIMConstQualifier(const CIMName& name, const CIMValue& value,
                                     const CIMFlavor& flavor, Boolean propagated)
    : CIMConstQualifier(CIMQualifier(name, value, flavor, propagated)) {
}

CIMConstQualifier& CIMConstQualifier::operator=(const CIMQualifier& x) {
    _rep = RepAccess::rep(x);
    return *this;
}

const CIMName& CIMConstQualifier::getName() const {
    return initialized(_rep).name();
}

CIMType CIMConstQualifier::getType() const {
    return initialized(_rep).value.getType();
}

Boolean CIMConstQualifier::isArray() const {
    return initialized(_rep).value.isArray();
}

const CIMValue& CIMConstQualifier::getValue() const {
    return initialized(_rep).value;
}

const CIMFlavor& CIMConstQualifier::getFlavor() const {
    return initialized(_rep).flavor;
}

Uint32 CIMConstQualifier::getPropagated() const {
    return initialized(_rep).propagated;
}

Boolean CIMConstQualifier::isUninitialized() const {
    return !_rep;
}

Boolean CIMConstQualifier::identical(const CIMConstQualifier& x) const {
    return initialized(_rep).identical(repOf(x));
}

CIMQualifier CIMConstQualifier::clone() const {
    return RepAccess::make<CIMQualifier>(std::make_shared<CIMQualifierRep>(initialized(_rep)));
}

} // namespace Pegasus
