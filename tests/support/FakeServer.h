// A CIM server behind the provider's handle, for tests of the module's functions: it knows the
// classes and objects that a test gives it, fails when told to, and remembers what it was asked.
#pragma once

#include "embedding/CIMOMHandleRep.h"

#include <Pegasus/Provider/CIMOMHandle.h>

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace testsupport {

class FakeServer : public Pegasus::CIMOMHandleRep {
  public:
    /// Knows the classes of the module's own instances in "root/cimv2", as CIM 2.41 defines the
    /// properties that the module sets.
    static std::shared_ptr<FakeServer> withSchema();

    /// A handle on `server`. The server behind handles that are default-constructed afterwards,
    /// too.
    static Pegasus::CIMOMHandle handleTo(const std::shared_ptr<FakeServer>& server);

    /// Answers getClass for `cimClass` in `nameSpace`; replaces one of the same name.
    void define(const Pegasus::CIMClass& cimClass, const std::string& nameSpace = "root/cimv2");
    void forget(const std::string& className, const std::string& nameSpace = "root/cimv2");

    /// The objects that an enumeration of `className` finds in any namespace, in this order: their
    /// instances, whose paths are the names.
    void publish(const std::string& className, const std::vector<Pegasus::CIMInstance>& objects);
    /// Does the same with one object for each path.
    void publish(const std::string& className, const std::vector<std::string>& paths);

    /// What `operation` ("getClass", "enumerateInstanceNames", ...) on `className` does instead of
    /// answering, from now on; an empty function takes it back.
    void fail(const std::string& operation, const std::string& className,
              const std::function<void()>& how);
    /// Throws CIMException with that status and message.
    void fail(const std::string& operation, const std::string& className,
              Pegasus::CIMStatusCode status, const std::string& message = "");

    /// One line for each call: "operation nameSpace class-or-path flags", flags as "name=0|1".
    std::vector<std::string> calls;

    Pegasus::embedding::Answer perform(const Pegasus::embedding::Operation& operation) override;

  private:
    Pegasus::CIMClass classFor(const Pegasus::embedding::Operation& operation) const;
    Pegasus::CIMInstance instanceFor(const Pegasus::embedding::Operation& operation) const;
    const std::vector<Pegasus::CIMInstance>& objectsOf(const std::string& className) const;
    void failIfTold(const std::string& operation, const std::string& className) const;

    std::map<std::string, Pegasus::CIMClass> _classes; ///< by "nameSpace:class", lower case
    std::map<std::string, std::vector<Pegasus::CIMInstance>> _objects; ///< by class, lower case
    std::map<std::string, std::function<void()>> _failures; ///< by "operation class", lower case
};

/// A class named `name` with the properties ("type name" or "type[] name"; types string, uint16,
/// boolean), the first of which is its key.
Pegasus::CIMClass makeClass(const std::string& name, const std::vector<std::string>& properties);

/// UTF-8 text of a Pegasus string.
std::string text(const Pegasus::String& string);
/// The path in its text form.
std::string text(const Pegasus::CIMObjectPath& path);

} // namespace testsupport
