// The object managers as the far ends of what belongs to them: their communication mechanisms and
// their namespaces.
#pragma once

#include "common/OwnObjects.h"
#include "common/ReadBack.h"

namespace serverprofile {

/// The object managers of the request's namespace; none, and a trace, when they cannot be read.
template <class List>
List readManagers(const Request& request) {
    List managers;
    guarded<Pegasus::CIMException>(ReadBack(request.provider.cimomHandle(), request.nameSpace),
                                   managers, objectManagerClass, {managersUnread(managers)});
    return managers;
}

/// Delivers each object manager, in the order in which the server returned them.
template <class Handler>
void deliverManagers(const Request& request, Handler& handler) {
    deliverAll(handler, readManagers<typename FarEnds<Handler>::List>(request));
}

/// Delivers the association of `cimClass` between each object manager and `source`, which stands
/// first among the properties: on purpose.
template <class Handler>
void deliverManagerAssociations(const Request& request, const AssociationClass& cimClass,
                                const Pegasus::CIMObjectPath& source, Handler& handler) {
    const auto managers = readManagers<Pegasus::Array<Pegasus::CIMObjectPath>>(request);
    Association member(cimClass, request.nameSpace);
    member.to(source).secondPropertyFirst();
    for (Pegasus::Uint32 i = 0; i < managers.size(); ++i)
        deliver(handler, member.from(managers[i]));
}

} // namespace serverprofile
