// What the toy module's providers do, told by the test that runs them.
//
// Stands in a library of its own, which the test program and the module share.
#pragma once

#include <Pegasus/Common/CIMInstance.h>
#include <Pegasus/Common/CIMObjectPath.h>
#include <Pegasus/Common/CIMPropertyList.h>
#include <Pegasus/Common/OperationContext.h>
#include <Pegasus/Common/ResponseHandler.h>
#include <Pegasus/Provider/CIMOMHandle.h>

#include <functional>
#include <string>
#include <vector>

namespace toy {

/// One request as it reached a provider. What an operation does not have stays empty or null.
struct Call {
    std::string operation;
    Pegasus::OperationContext context;
    Pegasus::CIMObjectPath path;
    Pegasus::CIMName associationClass;
    Pegasus::CIMName resultClass;
    Pegasus::String role;
    Pegasus::String resultRole;
    Pegasus::CIMPropertyList propertyList;
    Pegasus::CIMInstance instance;
    Pegasus::InstanceResponseHandler* instances = nullptr;
    Pegasus::ObjectPathResponseHandler* paths = nullptr;
    Pegasus::ObjectResponseHandler* objects = nullptr;
    Pegasus::CIMOMHandle* handle = nullptr;

    void complete() const;
};

/// Empty functions do nothing.
struct Script {
    std::function<void(Pegasus::CIMOMHandle&)> initialize;
    std::function<void(const Call&)> answer;
    std::function<void()> terminate;
};

/// Tells the provider of that name what to do, from its next call on.
void setScript(const std::string& provider, const Script& script);
Script scriptOf(const std::string& provider);

/// Events, in the order in which they were noted.
void note(const std::string& event);
std::vector<std::string> journal();

/// Forgets all scripts and events.
void reset();

} // namespace toy
