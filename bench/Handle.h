// The CIM server behind the handle of the module under measurement: it answers what the module
// reads back from objects that were read once, and costs as little as it can.
//
// The members of Pegasus::CIMOMHandle are defined in Handle.cpp, in the program, and so come before
// those of the provider library, whichever that is: the module's calls end here on each of them.
#pragma once

#include <Pegasus/Common/Array.h>
#include <Pegasus/Common/CIMClass.h>
#include <Pegasus/Common/CIMInstance.h>
#include <Pegasus/Common/CIMName.h>
#include <Pegasus/Common/CIMObjectPath.h>
#include <Pegasus/Provider/CIMOMHandle.h>

#include <string>
#include <vector>

namespace bench {

/// A call that the module made.
struct ReadBack {
    enum Kind { Class, Instance, Instances, Names } kind;
    Pegasus::CIMNamespaceName nameSpace;
    Pegasus::CIMName className;  ///< of Class, Instances, Names
    Pegasus::CIMObjectPath path; ///< of Instance
};

/// What the server has. Answers share it, so nobody changes what was answered.
struct World {
    struct Published {
        Pegasus::CIMName className; ///< that is asked for
        Pegasus::Array<Pegasus::CIMObjectPath> names;
        Pegasus::Array<Pegasus::CIMInstance> instances;
    };
    std::vector<Pegasus::CIMClass> classes;
    std::vector<Published> published;
};

/// The world of this program; filled before the first call.
World& world();

/// Where calls are noted, if anywhere.
extern std::vector<ReadBack>* readBacks;

/// Fills the world from the file that world.py writes. Throws std::runtime_error that says file,
/// line and reason.
void readWorld(const std::string& file);

} // namespace bench
