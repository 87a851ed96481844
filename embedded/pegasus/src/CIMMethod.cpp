#include "CIMMethodRep.h"

namespace Pegasus {

CIMMethod::CIMMethod(const CIMName& name, CIMType type, const CIMName& classOrigin,
                     Boolean propagated)
    : _rep(std::make_shared<CIMMethodRep>(name, type, classOrigin, propagated)) {
}

CIMMethod::CIMMethod(std::shared_ptr<CIMMethodRep> rep) : _rep(std::move(rep)) {
}

const CIMName& CIMMethod::getName() const {
    return initialized(_rep).name();
}

void CIMMethod::setName(const CIMName& name) {
    initialized(_rep).rename(name, "method");
}

CIMType CIMMethod::getType() const {
    return initialized(_rep).type;
}

void CIMMethod::setType(CIMType type) {
    initialized(_rep).type = type;
}

const CIMName& CIMMethod::getClassOrigin() const {
    return initialized(_rep).classOrigin;
}

void CIMMethod::setClassOrigin(const CIMName& classOrigin) {
    initialized(_rep).classOrigin = classOrigin;
}

Boolean CIMMethod::getPropagated() const {
    return initialized(_rep).propagated;
}

void CIMMethod::setPropagated(Boolean propagated) {
    initialized(_rep).propagated = propagated;
}

CIMMethod& CIMMethod::addQualifier(const CIMQualifier& x) {
    initialized(_rep).qualifiers.add(x);
    return *this;
}

Uint32 CIMMethod::findQualifier(const CIMName& name) const {
    return initialized(_rep).qualifiers.find(name);
}

CIMQualifier CIMMethod::getQualifier(Uint32 index) {
    return initialized(_rep).qualifiers.at(index);
}

CIMConstQualifier CIMMethod::getQualifier(Uint32 index) const {
    return initialized(_rep).qualifiers.at(index);
}

void CIMMethod::removeQualifier(Uint32 index) {
    initialized(_rep).qualifiers.remove(index);
}

Uint32 CIMMethod::getQualifierCount() const {
    return initialized(_rep).qualifiers.count();
}

CIMMethod& CIMMethod::addParameter(const CIMParameter& x) {
    initialized(_rep).parameters.add(x, "parameter");
    return *this;
}

Uint32 CIMMethod::findParameter(const CIMName& name) const {
    return initialized(_rep).parameters.find(name);
}

CIMParameter CIMMethod::getParameter(Uint32 index) {
    return initialized(_rep).parameters.at(index);
}

CIMConstParameter CIMMethod::getParameter(Uint32 index) const {
    return initialized(_rep).parameters.at(index);
}

void CIMMethod::removeParameter(Uint32 index) {
    initialized(_rep).parameters.remove(index);
}

Uint32 CIMMethod::getParameterCount() const {
    return initialized(_rep).parameters.count();
}

Boolean CIMMethod::isUninitialized() const {
    return !_rep;
}

Boolean CIMMethod::identical(const CIMConstMethod& x) const {
    return initialized(_rep).identical(repOf(x));
}

CIMMethod CIMMethod::clone() const {
    return CIMMethod(std::make_shared<CIMMethodRep>(initialized(_rep)));
}

CIMConstMethod::CIMConstMethod(const CIMMethod& x) : _rep(RepAccess::rep(x)) {
}

CIMConstMethod::CIMConstMethod(const CIMName& name, CIMType type, const CIMName& classOrigin,
                               Boolean propagated)
    : CIMConstMethod(CIMMethod(name, type, classOrigin, propagated)) {
}

CIMConstMethod& CIMConstMethod::operator=(const CIMMethod& x) {
    _rep = RepAccess::rep(x);
    return *this;
}

const CIMName& CIMConstMethod::getName() const {
    return initialized(_rep).name();
}

CIMType CIMConstMethod::getType() const {
    return initialized(_rep).type;
}

const CIMName& CIMConstMethod::getClassOrigin() const {
    return initialized(_rep).classOrigin;
}

Boolean CIMConstMethod::getPropagated() const {
    return initialized(_rep).propagated;
}

Uint32 CIMConstMethod::findQualifier(const CIMName& name) const {
    return initialized(_rep).qualifiers.find(name);
}

CIMConstQualifier CIMConstMethod::getQualifier(Uint32 index) const {
    return initialized(_rep).qualifiers.at(index);
}

Uint32 CIMConstMethod::getQualifierCount() const {
    return initialized(_rep).qualifiers.count();
}

Uint32 CIMConstMethod::findParameter(const CIMName& name) const {
    return initialized(_rep).parameters.find(name);
}

CIMConstParameter CIMConstMethod::getParameter(Uint32 index) const {
    return initialized(_rep).parameters.at(index);
}

Uint32 CIMConstMethod::getParameterCount() const {
    return initialized(_rep).parameters.count();
}

Boolean CIMConstMethod::isUninitialized() const {
    return !_rep;
}

Boolean CIMConstMethod::identical(const CIMConstMethod& x) const {
    return initialized(_rep).identical(repOf(x));
}

CIMMethod CIMConstMethod::clone() const {
    return RepAccess::make<CIMMethod>(std::make_shared<CIMMethodRep>(initialized(_rep)));
}

} // namespace Pegasus
