#include "repository/Repository.h"
#include "repository/Types.h"
#include <Pegasus/Common/CIMProperty.h>
#include <algorithm>
namespace embedded::repository {
using namespace Pegasus;
std::vector<std::pair<CIMName, CIMObjectPath>> StoredInstance::references() const {
    std::vector<std::pair<CIMName, CIMObjectPath>> r;
    const CIMConstInstance c = _i;
    for (Uint32 i = 0; i < c.getPropertyCount(); ++i) {
        const CIMConstProperty p = c.getProperty(i);
        if (p.getType() == CIMTYPE_REFERENCE && !p.getValue().isNull()) {
            CIMObjectPath t; p.getValue().get(t); r.emplace_back(p.getName(), t);
        }
    }
    return r;
}
bool View::hasNameSpace(const CIMNamespaceName& ns) const { return _r->hasNameSpace(ns); }
bool View::hasClass(const CIMNamespaceName& ns, const CIMName& c) const { return _r->hasClass(ns, c); }
CIMClass View::getClass(const CIMNamespaceName& n, const CIMName& c, bool l, bool q, bool o, const CIMPropertyList& p) const { return _r->getClass(n, c, l, q, o, p); }
std::vector<CIMName> View::subClassNames(const CIMNamespaceName& n, const CIMName& c, bool d) const { return _r->subClassNames(n, c, d); }
std::vector<CIMName> View::superClassNames(const CIMNamespaceName& n, const CIMName& c) const { return _r->superClassNames(n, c); }
bool View::isA(const CIMNamespaceName& n, const CIMName& d, const CIMName& b) const {
    if (!_r->hasNameSpace(n) || !_r->hasClass(n, d)) return false;
    const auto above = _r->superClassNames(n, d);
    return d.equal(b) || std::find(above.begin(), above.end(), b) != above.end();
}
std::vector<CIMName> View::keyNames(const CIMNamespaceName& n, const CIMName& c) const {
    Array<CIMName> keys; getClass(n, c).getKeyNames(keys);
    std::vector<CIMName> r; for (Uint32 i = 0; i < keys.size(); ++i) r.push_back(keys[i]);
    return r;
}
std::vector<CIMName> View::associationClassNames(const CIMNamespaceName& n, const CIMName& s, const CIMName& f) const { return _r->associationClassNames(n, s, f); }
StoredInstance View::getInstance(const CIMNamespaceName& n, const CIMObjectPath& p) const { return StoredInstance(_r->getInstance(n, p)); }
InstanceList View::instances(const CIMNamespaceName& n, const CIMName& c) const { return InstanceList(_r->enumerateInstances(n, c)); }
std::vector<StoredInstance> View::referrers(const CIMNamespaceName& n, const CIMName& c, const CIMObjectPath& s) const {
    std::vector<StoredInstance> r;
    for (const CIMInstance& i : _r->enumerateInstances(n, c)) {
        const StoredInstance stored(i);
        for (const auto& [role, target] : stored.references()) {
            CIMObjectPath local(String(), CIMNamespaceName(), target.getClassName(), target.getKeyBindings());
            if ((target.getNameSpace().isNull() || target.getNameSpace().equal(n)) && local == s) { r.push_back(stored); break; }
        }
    }
    return r;
}
CIMQualifierDecl View::getQualifier(const CIMNamespaceName& n, const CIMName& q) const { return _r->getQualifier(n, q); }
std::vector<CIMQualifierDecl> View::enumerateQualifiers(const CIMNamespaceName& n) const { return _r->enumerateQualifiers(n); }
}
