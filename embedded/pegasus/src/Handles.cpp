// What handles of several kinds have in common.
#include "Reps.h"

namespace Pegasus {

namespace {

template <class Rep>
std::shared_ptr<Rep> copyOf(const Rep& rep) {
    return std::make_shared<Rep>(rep);
}

std::shared_ptr<CIMObjectRep> copyOf(const CIMObjectRep& rep) { return rep.clone(); }

} // namespace

template <class Reads, class Handle, class ConstHandle>
Boolean CIMCompared<Reads, Handle, ConstHandle>::identical(const ConstHandle& x) const {
    return repOf(static_cast<const Reads&>(*this)).identical(repOf(x));
}

template <class Reads, class Handle, class ConstHandle>
Handle CIMCompared<Reads, Handle, ConstHandle>::clone() const {
    return RepAccess::make<Handle>(copyOf(repOf(static_cast<const Reads&>(*this))));
}

template <class Reads>
Uint32 CIMQualifiedReads<Reads>::findQualifier(const CIMName& name) const {
    return repOf(static_cast<const Reads&>(*this)).qualifiers.find(name);
}

template <class Reads>
CIMConstQualifier CIMQualifiedReads<Reads>::getQualifier(Uint32 index) const {
    return repOf(static_cast<const Reads&>(*this)).qualifiers.at(index);
}

template <class Reads>
Uint32 CIMQualifiedReads<Reads>::getQualifierCount() const {
    return repOf(static_cast<const Reads&>(*this)).qualifiers.count();
}

template <class Handle, class Reads>
Handle& CIMQualified<Handle, Reads>::addQualifier(const CIMQualifier& x) {
    repOf(*this).qualifiers.add(x);
    return static_cast<Handle&>(*this);
}

template <class Handle, class Reads>
CIMQualifier CIMQualified<Handle, Reads>::getQualifier(Uint32 index) {
    return repOf(*this).qualifiers.at(index);
}

template <class Handle, class Reads>
void CIMQualified<Handle, Reads>::removeQualifier(Uint32 index) {
    repOf(*this).qualifiers.remove(index);
}

template <class Handle, class Reads>
void CIMElement<Handle, Reads>::setPath(const CIMObjectPath& path) {
    repOf(*this).setPath(path);
}

template <class Handle, class Reads>
Handle& CIMElement<Handle, Reads>::addProperty(const CIMProperty& x) {
    repOf(*this).addProperty(x);
    return static_cast<Handle&>(*this);
}

template <class Handle, class Reads>
CIMProperty CIMElement<Handle, Reads>::getProperty(Uint32 index) {
    return repOf(*this).properties.at(index);
}

template <class Handle, class Reads>
void CIMElement<Handle, Reads>::removeProperty(Uint32 index) {
    repOf(*this).properties.remove(index);
}

template class CIMCompared<CIMQualifierReads, CIMQualifier, CIMConstQualifier>;
template class CIMCompared<CIMPropertyReads, CIMProperty, CIMConstProperty>;
template class CIMCompared<CIMParameterReads, CIMParameter, CIMConstParameter>;
template class CIMCompared<CIMMethodReads, CIMMethod, CIMConstMethod>;
template class CIMCompared<CIMObjectReads, CIMObject, CIMConstObject>;
template class CIMCompared<CIMInstanceReads, CIMInstance, CIMConstInstance>;
template class CIMCompared<CIMClassReads, CIMClass, CIMConstClass>;
template class CIMQualifiedReads<CIMElementReads>;
template class CIMQualifiedReads<CIMMethodReads>;
template class CIMQualifiedReads<CIMParameterReads>;
template class CIMQualifiedReads<CIMPropertyReads>;
template class CIMQualified<CIMMethod, CIMMethodReads>;
template class CIMQualified<CIMParameter, CIMParameterReads>;
template class CIMQualified<CIMProperty, CIMPropertyReads>;
template class CIMElement<CIMClass, CIMClassReads>;
template class CIMElement<CIMInstance, CIMInstanceReads>;
template class CIMElement<CIMObject, CIMObjectReads>;
template class CIMQualified<CIMClass, CIMClassReads>;
template class CIMQualified<CIMInstance, CIMInstanceReads>;
template class CIMQualified<CIMObject, CIMObjectReads>;

} // namespace Pegasus
