// What is known of the CIM server: from its settings and from the server itself.
#pragma once

#include "serverobjects/Settings.h"

#include <Pegasus/Common/CIMName.h>
#include <Pegasus/Common/String.h>
#include <Pegasus/Provider/CIMOMHandle.h>

#include <vector>

namespace serverobjects {

/// A way to reach the server.
struct Access {
    Pegasus::String scheme;  ///< "http" or "https"
    Pegasus::String address; ///< HOST:PORT
};

struct ServerFacts {
    Pegasus::String systemCreationClassName;
    Pegasus::String systemName;
    Pegasus::String name; ///< of the object manager
    std::vector<Access> accesses;
    std::vector<std::uint16_t> authenticationMechanisms;
    std::vector<Pegasus::String> nameSpaces; ///< in the order of their names, each once
};

/// Whether the server publishes an object manager of its own in that namespace. Asks by the leaf
/// class PG_ObjectManager, which this room never publishes. Throws Pegasus::Exception when the
/// server cannot say.
bool publishesItself(Pegasus::CIMOMHandle& cimom, const Pegasus::CIMNamespaceName& nameSpace);

/// What `settings` say, completed by what the server says. Where the server publishes an object
/// manager of its own, its namespaces carry its name and system, so these are taken from it. Throws
/// Pegasus::Exception when the server cannot say.
ServerFacts findFacts(const Settings& settings, Pegasus::CIMOMHandle& cimom);

} // namespace serverobjects
