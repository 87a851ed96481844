// The server as providers meet it when faults are asked for.
#pragma once

#include "host/CimOperations.h"
#include "host/Faults.h"

namespace embedded::host {

/// Stands between providers' handles and the server: each operation suffers the faults first and
/// is the server's own otherwise. Clients, who ask the server itself, are not touched.
///
/// Thread-safety: as CimOperations.
class FaultyReadBacks : public CimOperations {
  public:
    /// `server` must outlive this object.
    FaultyReadBacks(CimOperations& server, Faults faults)
        : _server(server), _faults(std::move(faults)) {}

    Pegasus::CIMClass getClass(const Caller& caller, const Pegasus::CIMNamespaceName& nameSpace,
                               const Pegasus::CIMName& className, bool localOnly,
                               bool includeQualifiers, bool includeClassOrigin,
                               const Pegasus::CIMPropertyList& propertyList) override;
    Pegasus::Array<Pegasus::CIMClass>
    enumerateClasses(const Caller& caller, const Pegasus::CIMNamespaceName& nameSpace,
                     const Pegasus::CIMName& className, bool deepInheritance, bool localOnly,
                     bool includeQualifiers, bool includeClassOrigin) override;
    Pegasus::Array<Pegasus::CIMName> enumerateClassNames(const Caller& caller,
                                                         const Pegasus::CIMNamespaceName& nameSpace,
                                                         const Pegasus::CIMName& className,
                                                         bool deepInheritance) override;
    Pegasus::CIMInstance getInstance(const Caller& caller,
                                     const Pegasus::CIMNamespaceName& nameSpace,
                                     const Pegasus::CIMObjectPath& instanceName,
                                     bool includeQualifiers, bool includeClassOrigin,
                                     const Pegasus::CIMPropertyList& propertyList) override;
    Answer<Pegasus::CIMInstance>
    enumerateInstances(const Caller& caller, const Pegasus::CIMNamespaceName& nameSpace,
                       const Pegasus::CIMName& className, bool deepInheritance,
                       bool includeQualifiers, bool includeClassOrigin,
                       const Pegasus::CIMPropertyList& propertyList) override;
    Answer<Pegasus::CIMObjectPath>
    enumerateInstanceNames(const Caller& caller, const Pegasus::CIMNamespaceName& nameSpace,
                           const Pegasus::CIMName& className) override;
    Pegasus::CIMObjectPath createInstance(const Caller& caller,
                                          const Pegasus::CIMNamespaceName& nameSpace,
                                          const Pegasus::CIMInstance& newInstance) override;
    void modifyInstance(const Caller& caller, const Pegasus::CIMNamespaceName& nameSpace,
                        const Pegasus::CIMInstance& modifiedInstance, bool includeQualifiers,
                        const Pegasus::CIMPropertyList& propertyList) override;
    void deleteInstance(const Caller& caller, const Pegasus::CIMNamespaceName& nameSpace,
                        const Pegasus::CIMObjectPath& instanceName) override;
    Pegasus::CIMValue getProperty(const Caller& caller, const Pegasus::CIMNamespaceName& nameSpace,
                                  const Pegasus::CIMObjectPath& instanceName,
                                  const Pegasus::CIMName& propertyName) override;
    Answer<Pegasus::CIMObject>
    associators(const Caller& caller, const Pegasus::CIMNamespaceName& nameSpace,
                const Pegasus::CIMObjectPath& objectName, const Pegasus::CIMName& assocClass,
                const Pegasus::CIMName& resultClass, const Pegasus::String& role,
                const Pegasus::String& resultRole, bool includeQualifiers, bool includeClassOrigin,
                const Pegasus::CIMPropertyList& propertyList) override;
    Answer<Pegasus::CIMObjectPath>
    associatorNames(const Caller& caller, const Pegasus::CIMNamespaceName& nameSpace,
                    const Pegasus::CIMObjectPath& objectName, const Pegasus::CIMName& assocClass,
                    const Pegasus::CIMName& resultClass, const Pegasus::String& role,
                    const Pegasus::String& resultRole) override;
    Answer<Pegasus::CIMObject>
    references(const Caller& caller, const Pegasus::CIMNamespaceName& nameSpace,
               const Pegasus::CIMObjectPath& objectName, const Pegasus::CIMName& resultClass,
               const Pegasus::String& role, bool includeQualifiers, bool includeClassOrigin,
               const Pegasus::CIMPropertyList& propertyList) override;
    Answer<Pegasus::CIMObjectPath> referenceNames(const Caller& caller,
                                                  const Pegasus::CIMNamespaceName& nameSpace,
                                                  const Pegasus::CIMObjectPath& objectName,
                                                  const Pegasus::CIMName& resultClass,
                                                  const Pegasus::String& role) override;
    Pegasus::CIMQualifierDecl getQualifier(const Caller& caller,
                                           const Pegasus::CIMNamespaceName& nameSpace,
                                           const Pegasus::CIMName& qualifierName) override;
    Pegasus::Array<Pegasus::CIMQualifierDecl>
    enumerateQualifiers(const Caller& caller, const Pegasus::CIMNamespaceName& nameSpace) override;

  private:
    template <class Result, class... Parameters, class... Arguments>
    Result ask(ReadBackOperation operation, const Pegasus::CIMName& className,
               Result (CimOperations::*answer)(Parameters...), const Arguments&... arguments);

    CimOperations& _server;
    const Faults _faults;
};

} // namespace embedded::host
