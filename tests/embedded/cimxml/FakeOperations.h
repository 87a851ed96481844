// Operations that write down what they were called with and answer what the test put there.
#pragma once

#include "routing/CimOperations.h"
#include "routing/Enumerations.h"

#include <Pegasus/Common/Exception.h>

#include <optional>
#include <string>
#include <vector>

namespace embedded::cimxml::test {

class FakeOperations : public routing::CimOperations {
  public:
    /// One line a call: the operation and its arguments, separated by blanks. Flags are 0 or 1, a
    /// null or empty argument is "-", a property list is "[a,b]".
    std::vector<std::string> calls;
    routing::Caller lastCaller;
    Pegasus::CIMInstance lastInstance; ///< given to createInstance or modifyInstance

    std::vector<const routing::Module*> modules;  ///< what plans say
    std::optional<Pegasus::CIMException> failure; ///< thrown by every operation when set
    Pegasus::CIMClass cimClass;
    Pegasus::Array<Pegasus::CIMClass> classes;
    Pegasus::CIMInstance instance;
    Pegasus::Array<Pegasus::CIMInstance> instances;
    Pegasus::Array<Pegasus::CIMObjectPath> paths;
    Pegasus::Array<Pegasus::CIMObject> objects;
    unsigned sources = 1; ///< of what has instances, paths or objects
    Pegasus::CIMObjectPath createdPath;
    Pegasus::CIMValue value;
    Pegasus::CIMQualifierDecl qualifier;
    Pegasus::Array<Pegasus::CIMQualifierDecl> qualifiers;

    routing::Enumerations enumerations; ///< that requests to this fake open

    routing::Plan plan(const routing::Operation& operation) override;
    /// Those of `cimClass`.
    std::vector<Pegasus::CIMName> keyNames(const Pegasus::CIMNamespaceName& nameSpace,
                                           const Pegasus::CIMName& className) override;
    bool hasNameSpace(const Pegasus::CIMNamespaceName&) override { return true; }

  private:
    routing::Answer answerTo(const routing::Operation& operation);
};

} // namespace embedded::cimxml::test
