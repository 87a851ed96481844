// The server's own objects as CIM instances.
#pragma once

#include "serverobjects/ServerFacts.h"

#include <Pegasus/Common/CIMInstance.h>
#include <Pegasus/Common/CIMObjectPath.h>

#include <array>
#include <vector>

namespace serverobjects {

/// A class that this room publishes.
struct PublishedClass {
    const char* name;
    /// All its instances. Their paths have neither host nor namespace. Throws Pegasus::Exception
    /// where a text of the settings or the server is no CIM name.
    std::vector<Pegasus::CIMInstance> (*instances)(const Settings& settings,
                                                   const ServerFacts& facts);
};

/// The object manager, its communication mechanisms, its namespaces.
extern const std::array<PublishedClass, 3> publishedClasses;

} // namespace serverobjects
