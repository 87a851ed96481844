// What qualifiers and properties are read and changed through, for all handles.
#include "CIMObjectRep.h"

namespace Pegasus {

namespace {

template <class Handle>
auto& repBehind(const CIMQualifiedReads<Handle>* base) {
    return repOf(static_cast<const Handle&>(*base));
}

template <class Handle>
auto& repBehind(CIMQualified<Handle>* base) {
    return repOf(static_cast<Handle&>(*base));
}

} // namespace

template <class Reads>
Uint32 CIMQualifiedReads<Reads>::findQualifier(const CIMName& name) const {
    return repBehind(this).qualifiers.find(name);
}

template <class Reads>
CIMConstQualifier CIMQualifiedReads<Reads>::getQualifier(Uint32 index) const {
    return repBehind(this).qualifiers.at(index);
}

template <class Reads>
Uint32 CIMQualifiedReads<Reads>::getQualifierCount() const {
    return repBehind(this).qualifiers.count();
}

template <class Handle>
Handle& CIMQualified<Handle>::addQualifier(const CIMQualifier& x) {
    repBehind(this).qualifiers.add(x);
    return static_cast<Handle&>(*this);
}

template <class Handle>
CIMQualifier CIMQualified<Handle>::getQualifier(Uint32 index) {
    return repBehind(this).qualifiers.at(index);
}

template <class Handle>
void CIMQualified<Handle>::removeQualifier(Uint32 index) {
    repBehind(this).qualifiers.remove(index);
}

template <class Handle>
void CIMElement<Handle>::setPath(const CIMObjectPath& path) {
    repBehind<Handle>(this).setPath(path);
}

template <class Handle>
Handle& CIMElement<Handle>::addProperty(const CIMProperty& x) {
    repBehind<Handle>(this).addProperty(x);
    return static_cast<Handle&>(*this);
}

template <class Handle>
CIMProperty CIMElement<Handle>::getProperty(Uint32 index) {
    return repBehind<Handle>(this).properties.at(index);
}

template <class Handle>
void CIMElement<Handle>::removeProperty(Uint32 index) {
    repBehind<Handle>(this).properties.remove(index);
}

template class CIMQualifiedReads<CIMElementReads>;
template class CIMQualifiedReads<CIMMethodReads>;
template class CIMQualifiedReads<CIMParameterReads>;
template class CIMQualifiedReads<CIMPropertyReads>;
template class CIMQualified<CIMMethod>;
template class CIMQualified<CIMParameter>;
template class CIMQualified<CIMProperty>;
template class CIMElement<CIMClass>;
template class CIMElement<CIMInstance>;
template class CIMElement<CIMObject>;
template class CIMQualified<CIMClass>;
template class CIMQualified<CIMInstance>;
template class CIMQualified<CIMObject>;

} // namespace Pegasus
