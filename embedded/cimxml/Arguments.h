// The parameters of intrinsic operations (DSP0200 clause 5.3.2).
#pragma once

#include "cimxml/Paths.h"

#include <Pegasus/Common/CIMInstance.h>
#include <Pegasus/Common/CIMPropertyList.h>

#include <pugixml.hpp>

#include <string_view>

namespace embedded::cimxml {

/// All parameters of all operations; one that was not given has its default, or is null or empty.
struct Arguments {
    Pegasus::CIMName className;
    Pegasus::CIMObjectPath instanceName;
    Pegasus::CIMObjectPath objectName;
    bool objectIsClass = false;    ///< ObjectName came as a CLASSNAME
    Pegasus::CIMInstance instance; ///< NewInstance or ModifiedInstance
    Pegasus::CIMName assocClass;
    Pegasus::CIMName resultClass;
    Pegasus::String role;
    Pegasus::String resultRole;
    Pegasus::CIMName propertyName;
    Pegasus::CIMName qualifierName;
    bool localOnly = false;
    bool deepInheritance = false;
    bool includeQualifiers = false;
    bool includeClassOrigin = false;
    Pegasus::CIMPropertyList propertyList; ///< each name once, in its first spelling
};

/// Reads the IPARAMVALUEs of `call`. `parameters` says what the operation takes: names separated
/// by blanks, "!" after a required one, "=TRUE" after a Boolean whose default is not FALSE.
///
/// Throws Pegasus::CIMException for a parameter that is missing, unknown, there twice or of an
/// illegal value, and RequestRejected for one that is of the wrong kind.
Arguments readArguments(const pugi::xml_node& call, std::string_view parameters,
                        const SoleKey& soleKey);

} // namespace embedded::cimxml
