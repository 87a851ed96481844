#include "repository/ClassFilter.h"

#include "repository/Qualifiers.h"

namespace embedded::repository {

namespace {

using Pegasus::CIMClass;
using Pegasus::CIMMethod;
using Pegasus::CIMName;
using Pegasus::CIMProperty;
using Pegasus::Uint32;

bool listed(const Pegasus::CIMPropertyList& list, const CIMName& name) {
    if (list.isNull()) {
        return true;
    }
    for (Uint32 i = 0; i < list.size(); ++i) {
        if (list[i].equal(name)) {
            return true;
        }
    }
    return false;
}

struct Flags {
    bool localOnly;
    bool includeQualifiers;
    bool includeClassOrigin;
};

template <class Holder>
void filterQualifiers(Holder& holder, const Flags& flags) {
    removeQualifiers(holder, [&](const auto& qualifier) {
        return !flags.includeQualifiers || (flags.localOnly && qualifier.getPropagated());
    });
}

template <class Member>
void filterMember(Member& member, const Flags& flags) {
    filterQualifiers(member, flags);
    if (!flags.includeClassOrigin) {
        member.setClassOrigin(CIMName());
    }
}

} // namespace

CIMClass filteredClass(const Pegasus::CIMConstClass& resolved, bool localOnly,
                       bool includeQualifiers, bool includeClassOrigin,
                       const Pegasus::CIMPropertyList& propertyList) {
    const Flags flags{localOnly, includeQualifiers, includeClassOrigin};
    CIMClass shown = resolved.clone();
    filterQualifiers(shown, flags);
    for (Uint32 i = shown.getPropertyCount(); i > 0; --i) {
        CIMProperty property = shown.getProperty(i - 1);
        if ((localOnly && property.getPropagated()) || !listed(propertyList, property.getName())) {
            shown.removeProperty(i - 1);
        } else {
            filterMember(property, flags);
        }
    }
    for (Uint32 i = shown.getMethodCount(); i > 0; --i) {
        CIMMethod method = shown.getMethod(i - 1);
        if (localOnly && method.getPropagated()) {
            shown.removeMethod(i - 1);
            continue;
        }
        filterMember(method, flags);
        for (Uint32 j = 0; j < method.getParameterCount(); ++j) {
            Pegasus::CIMParameter parameter = method.getParameter(j);
            filterQualifiers(parameter, flags);
        }
    }
    return shown;
}

} // namespace embedded::repository
