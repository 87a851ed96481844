// The server's own objects: what clients ask for when they meet a server.
//
// In every namespace that defines the classes there are one PG_ObjectManager, one PG_Namespace for
// every namespace served, and one PG_CIMXMLCommunicationMechanism: the same objects everywhere.
// Where a namespace was loaded with instances of such a class, these are its objects instead: a
// server can be shown as another one is.
#pragma once

#include "host/Provider.h"
#include "repository/Repository.h"

#include <vector>

namespace embedded::host {

/// What the server says of itself.
struct ServerIdentity {
    Pegasus::String hostName;    ///< SystemName, and the host in the objects' paths
    Pegasus::String name;        ///< the object manager's Name, unique on the host
    Pegasus::String elementName; ///< for people
    Pegasus::String version;     ///< "X.Y" or longer
    bool basicAuthentication = false;
};

/// The providers of those objects. Objects cannot be created, modified or deleted; the namespaces
/// are those that the repository has at the time of the request. `repository` must outlive what is
/// returned.
std::vector<BuiltIn> serverObjects(const repository::Repository& repository,
                                   const ServerIdentity& identity);

} // namespace embedded::host
