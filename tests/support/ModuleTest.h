// A provider before a server that knows its classes, and the texts by which its tests compare.
#pragma once

#include "common/ModuleState.h"
#include "provider/ServerProfileProvider.h"
#include "support/FakeServer.h"
#include "support/Trace.h"

#include <Pegasus/Common/CIMType.h>

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace testsupport {

using Lines = std::vector<std::string>;

/// The parts one after the other.
inline Lines joined(const std::vector<Lines>& parts) {
    Lines all;
    for (const Lines& part : parts)
        all.insert(all.end(), part.begin(), part.end());
    return all;
}

inline Lines repeated(unsigned times, const std::string& line) { return Lines(times, line); }

/// The messages of the init gate of `operation`, passed without waiting.
inline Lines gateLines(const std::string& operation) {
    return {"Quil " + operation + "(): Start BEFoRE MUTEX _initInProgress 0",
            "Quil " + operation + "(): Start AFTER MUTEX _initInProgress 0",
            "Quil " + operation + "(): Start _initInProgress 0"};
}

/// The messages of one catalogue entry of `className` being built.
inline Lines entryLines(const std::string& className) {
    return {"Quil - buildRegisteredProfileInstance() STart - " + className,
            "Quil - buildRegisteredProfileInstance() - Regprof",
            "_getClassFromCIMOM(): className " + className};
}

/// The messages of the catalogue being built.
inline Lines catalogueLines() {
    Lines all = {"Quil initData(): Start InitInProgress 1"};
    for (const char* className :
         {"CIM_RegisteredProfile", "CIM_RegisteredProfile", "CIM_RegisteredSubProfile",
          "CIM_RegisteredSubProfile", "CIM_RegisteredSubProfile", "CIM_RegisteredProfile"})
        all = joined({all, entryLines(className)});
    return joined({all, {"OrvexOMHost - destructor(): Start ", "Quil initData(): Exit "}});
}

using Keys = std::vector<std::pair<std::string, std::string>>;

/// A path as a server hands it to a provider; the keys are strings.
inline Pegasus::CIMObjectPath pathOf(const std::string& className, const Keys& keys = {},
                                     const std::string& nameSpace = "root/cimv2") {
    Pegasus::Array<Pegasus::CIMKeyBinding> bindings;
    for (const auto& [name, value] : keys)
        bindings.append(Pegasus::CIMKeyBinding(Pegasus::CIMName(name.c_str()),
                                               Pegasus::String(value.c_str()),
                                               Pegasus::CIMKeyBinding::STRING));
    return Pegasus::CIMObjectPath(Pegasus::String("client.example.net"),
                                  Pegasus::CIMNamespaceName(nameSpace.c_str()),
                                  Pegasus::CIMName(className.c_str()), bindings);
}

/// "Name: type value" ("null" for none); arrays as "type[]".
inline std::string describe(const Pegasus::CIMConstProperty& property) {
    const Pegasus::CIMValue value = property.getValue();
    return text(property.getName().getString()) + ": " + Pegasus::cimTypeToString(value.getType()) +
           (value.isArray() ? "[] " : " ") + (value.isNull() ? "null" : text(value.toString()));
}

/// All properties in their order.
inline Lines describe(const Pegasus::CIMInstance& instance) {
    const Pegasus::CIMConstInstance readable = instance;
    Lines all;
    for (Pegasus::Uint32 i = 0; i < readable.getPropertyCount(); ++i)
        all.push_back(describe(readable.getProperty(i)));
    return all;
}

/// "Name=type value" of every key binding in its order.
inline Lines describeKeys(const Pegasus::CIMObjectPath& path) {
    static const char* const types[] = {"boolean", "string", "numeric", "reference"};
    const Pegasus::Array<Pegasus::CIMKeyBinding> keys = path.getKeyBindings();
    Lines all;
    for (Pegasus::Uint32 i = 0; i < keys.size(); ++i)
        all.push_back(text(keys[i].getName().getString()) + "=" + types[keys[i].getType()] + " " +
                      text(keys[i].getValue()));
    return all;
}

/// Each test begins as after the load of the module, but for a known host.
class ModuleTest : public testing::Test {
  protected:
    ModuleTest() {
        _hostName = Pegasus::String("switch1.example.net");
        serverprofile::copyHostName(serverprofile::hostNameBuffer, "switch1.example.net");
        serverprofile::lookupPending = 0;
        serverprofile::dataBuildInProgress = 0;
        // Published to the class, not to an object.
        OrvexOMHost(serverprofile::hostNameBuffer, serverprofile::lookupPending);
    }

    /// Builds the catalogue as a request does that finds none.
    void buildCatalogue() {
        provider.cimomHandle() = handle;
        tracedBy([&] { provider.initData(); });
    }

    std::shared_ptr<FakeServer> server = FakeServer::withSchema();
    Pegasus::CIMOMHandle handle = FakeServer::handleTo(server);
    ServerProfileProvider provider;
};

} // namespace testsupport
