#include "repository/NameSpace.h"

#include "repository/Types.h"

namespace embedded::repository {

using Pegasus::CIMConstClass;
using Pegasus::CIMName;

const NameSpace::ClassEntry* NameSpace::find(const CIMName& className) const {
    const auto found = _classes.find(folded(className));
    return found == _classes.end() ? nullptr : &found->second;
}

NameSpace::ClassEntry* NameSpace::find(const CIMName& className) {
    const auto found = _classes.find(folded(className));
    return found == _classes.end() ? nullptr : &found->second;
}

void NameSpace::add(const Pegasus::CIMClass& resolved) {
    const std::string key = folded(resolved.getClassName());
    _classes.emplace(key, ClassEntry{resolved, InstanceStore(_name)});
    _order.push_back(key);
}

bool NameSpace::isA(const CIMName& derived, const CIMName& base) const {
    const ClassEntry* entry = find(derived);
    while (entry) {
        if (entry->resolved.getClassName().equal(base)) {
            return true;
        }
        entry = find(entry->resolved.getSuperClassName());
    }
    return false;
}

std::vector<CIMName> NameSpace::subClassNames(const CIMName& className, bool deep) const {
    std::vector<CIMName> names;
    for (const std::string& key : _order) {
        const CIMConstClass& each = _classes.at(key).resolved;
        const CIMName& parent = each.getSuperClassName();
        const bool direct = className.isNull() ? parent.isNull() : parent.equal(className);
        const bool below = deep && (className.isNull() || isA(parent, className));
        if (direct || below) {
            names.push_back(each.getClassName());
        }
    }
    return names;
}

std::vector<CIMName> NameSpace::superClassNames(const CIMName& className) const {
    std::vector<CIMName> names;
    CIMName parent = find(className)->resolved.getSuperClassName();
    while (!parent.isNull()) {
        const CIMConstClass superclass = find(parent)->resolved;
        names.push_back(superclass.getClassName());
        parent = superclass.getSuperClassName();
    }
    return names;
}

std::vector<CIMName> NameSpace::associationClassNames(const CIMName& sourceClass,
                                                      const CIMName& filter) const {
    // That it is an association goes without asking: no other class has references.
    const auto takesSource = [&](const CIMConstClass& association) {
        for (Pegasus::Uint32 i = 0; i < association.getPropertyCount(); ++i) {
            const Pegasus::CIMConstProperty property = association.getProperty(i);
            if (property.getType() == Pegasus::CIMTYPE_REFERENCE &&
                isA(sourceClass, property.getReferenceClassName())) {
                return true;
            }
        }
        return false;
    };
    std::vector<CIMName> names;
    for (const std::string& key : _order) {
        const CIMConstClass each = _classes.at(key).resolved;
        if ((filter.isNull() || isA(each.getClassName(), filter)) && takesSource(each)) {
            names.push_back(each.getClassName());
        }
    }
    return names;
}

} // namespace embedded::repository
