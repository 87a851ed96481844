#include "Reps.h"

namespace Pegasus {

CIMMethodReads::CIMMethodReads(const CIMName& name, CIMType type, const CIMName& classOrigin,
                               Boolean propagated)
    : CIMReads(std::make_shared<CIMMethodRep>(name, type, classOrigin, propagated)) {}

const CIMName& CIMMethodReads::getName() const { return initialized(_rep).name(); }

void CIMMethod::setName(const CIMName& name) { initialized(_rep).rename(name, "method"); }

CIMType CIMMethodReads::getType() const { return initialized(_rep).type; }

void CIMMethod::setType(CIMType type) { initialized(_rep).type = type; }

const CIMName& CIMMethodReads::getClassOrigin() const { return initialized(_rep).classOrigin; }

void CIMMethod::setClassOrigin(const CIMName& classOrigin) {
    initialized(_rep).classOrigin = classOrigin;
}

Boolean CIMMethodReads::getPropagated() const { return initialized(_rep).propagated; }

void CIMMethod::setPropagated(Boolean propagated) { initialized(_rep).propagated = propagated; }

CIMMethod& CIMMethod::addParameter(const CIMParameter& x) {
    initialized(_rep).parameters.add(x, "parameter");
    return *this;
}

Uint32 CIMMethodReads::findParameter(const CIMName& name) const {
    return initialized(_rep).parameters.find(name);
}

CIMParameter CIMMethod::getParameter(Uint32 index) {
    return initialized(_rep).parameters.at(index);
}

CIMConstParameter CIMMethodReads::getParameter(Uint32 index) const {
    return initialized(_rep).parameters.at(index);
}

void CIMMethod::removeParameter(Uint32 index) { initialized(_rep).parameters.remove(index); }

Uint32 CIMMethodReads::getParameterCount() const { return initialized(_rep).parameters.count(); }

} // namespace Pegasus
