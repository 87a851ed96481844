// Operations that write down what they were called with and answer what the test put there.
#pragma once

#include "host/CimOperations.h"

#include <Pegasus/Common/Exception.h>

#include <optional>
#include <string>
#include <vector>

namespace embedded::cimxml::test {

class FakeOperations : public host::CimOperations {
  public:
    /// One line a call: the operation and its arguments, separated by blanks. Flags are 0 or 1, a
    /// null or empty argument is "-", a property list is "[a,b]".
    std::vector<std::string> calls;
    host::Caller lastCaller;
    Pegasus::CIMInstance lastInstance; ///< given to createInstance or modifyInstance

    std::optional<Pegasus::CIMException> failure; ///< thrown by every operation when set
    Pegasus::CIMClass cimClass;
    Pegasus::Array<Pegasus::CIMClass> classes;
    Pegasus::Array<Pegasus::CIMName> classNames;
    Pegasus::CIMInstance instance;
    host::Answer<Pegasus::CIMInstance> instances;
    host::Answer<Pegasus::CIMObjectPath> paths;
    host::Answer<Pegasus::CIMObject> objects;
    Pegasus::CIMObjectPath createdPath;
    Pegasus::CIMValue value;
    Pegasus::CIMQualifierDecl qualifier;
    Pegasus::Array<Pegasus::CIMQualifierDecl> qualifiers;

    Pegasus::CIMClass getClass(const host::Caller&, const Pegasus::CIMNamespaceName&,
                               const Pegasus::CIMName&, bool, bool, bool,
                               const Pegasus::CIMPropertyList&) override;
    Pegasus::Array<Pegasus::CIMClass> enumerateClasses(const host::Caller&,
                                                       const Pegasus::CIMNamespaceName&,
                                                       const Pegasus::CIMName&, bool, bool, bool,
                                                       bool) override;
    Pegasus::Array<Pegasus::CIMName> enumerateClassNames(const host::Caller&,
                                                         const Pegasus::CIMNamespaceName&,
                                                         const Pegasus::CIMName&, bool) override;
    Pegasus::CIMInstance getInstance(const host::Caller&, const Pegasus::CIMNamespaceName&,
                                     const Pegasus::CIMObjectPath&, bool, bool,
                                     const Pegasus::CIMPropertyList&) override;
    host::Answer<Pegasus::CIMInstance> enumerateInstances(const host::Caller&,
                                                          const Pegasus::CIMNamespaceName&,
                                                          const Pegasus::CIMName&, bool, bool, bool,
                                                          const Pegasus::CIMPropertyList&) override;
    host::Answer<Pegasus::CIMObjectPath> enumerateInstanceNames(const host::Caller&,
                                                                const Pegasus::CIMNamespaceName&,
                                                                const Pegasus::CIMName&) override;
    Pegasus::CIMObjectPath createInstance(const host::Caller&, const Pegasus::CIMNamespaceName&,
                                          const Pegasus::CIMInstance&) override;
    void modifyInstance(const host::Caller&, const Pegasus::CIMNamespaceName&,
                        const Pegasus::CIMInstance&, bool,
                        const Pegasus::CIMPropertyList&) override;
    void deleteInstance(const host::Caller&, const Pegasus::CIMNamespaceName&,
                        const Pegasus::CIMObjectPath&) override;
    Pegasus::CIMValue getProperty(const host::Caller&, const Pegasus::CIMNamespaceName&,
                                  const Pegasus::CIMObjectPath&, const Pegasus::CIMName&) override;
    host::Answer<Pegasus::CIMObject>
    associators(const host::Caller&, const Pegasus::CIMNamespaceName&,
                const Pegasus::CIMObjectPath&, const Pegasus::CIMName&, const Pegasus::CIMName&,
                const Pegasus::String&, const Pegasus::String&, bool, bool,
                const Pegasus::CIMPropertyList&) override;
    host::Answer<Pegasus::CIMObjectPath>
    associatorNames(const host::Caller&, const Pegasus::CIMNamespaceName&,
                    const Pegasus::CIMObjectPath&, const Pegasus::CIMName&, const Pegasus::CIMName&,
                    const Pegasus::String&, const Pegasus::String&) override;
    host::Answer<Pegasus::CIMObject>
    references(const host::Caller&, const Pegasus::CIMNamespaceName&, const Pegasus::CIMObjectPath&,
               const Pegasus::CIMName&, const Pegasus::String&, bool, bool,
               const Pegasus::CIMPropertyList&) override;
    host::Answer<Pegasus::CIMObjectPath> referenceNames(const host::Caller&,
                                                        const Pegasus::CIMNamespaceName&,
                                                        const Pegasus::CIMObjectPath&,
                                                        const Pegasus::CIMName&,
                                                        const Pegasus::String&) override;
    Pegasus::CIMQualifierDecl getQualifier(const host::Caller&, const Pegasus::CIMNamespaceName&,
                                           const Pegasus::CIMName&) override;
    Pegasus::Array<Pegasus::CIMQualifierDecl>
    enumerateQualifiers(const host::Caller&, const Pegasus::CIMNamespaceName&) override;

  private:
    template <class... Arguments>
    void record(const host::Caller& caller, const char* operation, const Arguments&... arguments);
};

} // namespace embedded::cimxml::test
