// What the families around the object manager share: the far ends that the server owns, and how
// one named association is echoed.
#pragma once

#include "provider/Association.h"
#include "provider/ServerProfileProvider.h"

namespace serverprofile {

// The classes of the server's own objects, as they are read back.
constexpr const char* objectManagerClass = "CIM_ObjectManager";
constexpr const char* communicationMechanismClass = "CIM_CIMXMLCommunicationMechanism";
constexpr const char* namespaceClass = "CIM_Namespace";

// What is traced when the object managers cannot be read, as names or as instances.
inline const char* managersUnread(const Pegasus::Array<Pegasus::CIMObjectPath>&) {
    return " Quil exception ni for CIM_ObjectManager ";
}
inline const char* managersUnread(const Pegasus::Array<Pegasus::CIMInstance>&) {
    return " Quil exception ei for CIM_ObjectManager ";
}

/// The host's path: in "root/cimv2", whatever `nameSpace`. Traces the end of a host record.
Pegasus::CIMObjectPath hostPath(ServerProfileProvider& provider, const Pegasus::String& nameSpace);

/// Delivers the association of `cimClass` that `path` names, with `path` as its own path, between
/// the two traces. A key that is missing or holds no object path leaves its end empty, so that the
/// paths that the module gives out can be got whatever they lack.
Pegasus::CIMInstance echo(const AssociationClass& cimClass, const Pegasus::CIMObjectPath& path,
                          Pegasus::InstanceResponseHandler& handler, const char* startTrace,
                          const char* exitTrace);

} // namespace serverprofile
