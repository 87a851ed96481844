// The way back: what providers ask of the server that they run in.
#pragma once

#include "host/CimOperations.h"

#include <hosting/CIMOMHandleRep.h>

namespace embedded::host {

/// A CIMOMHandle's operations, answered by `operations` on the calling thread, on behalf of the
/// user that the operation context names. Messages carry no status name: there is no wire between.
/// Operations that the server does not offer throw CIM_ERR_NOT_SUPPORTED. Nothing is unloaded
/// while the server runs, so providers need not forbid it.
///
/// A call that would enter a module that waits for it gets CIM_ERR_FAILED at once.
///
/// Thread-safety: all operations may be called from several threads at once, threads of a
/// provider's own among them.
class ProviderHandle : public Pegasus::CIMOMHandleRep {
  public:
    explicit ProviderHandle(CimOperations& operations) : _operations(operations) {}

    Pegasus::CIMClass getClass(const Pegasus::OperationContext& context,
                               const Pegasus::CIMNamespaceName& nameSpace,
                               const Pegasus::CIMName& className, Pegasus::Boolean localOnly,
                               Pegasus::Boolean includeQualifiers,
                               Pegasus::Boolean includeClassOrigin,
                               const Pegasus::CIMPropertyList& propertyList) override;
    Pegasus::Array<Pegasus::CIMClass>
    enumerateClasses(const Pegasus::OperationContext& context,
                     const Pegasus::CIMNamespaceName& nameSpace, const Pegasus::CIMName& className,
                     Pegasus::Boolean deepInheritance, Pegasus::Boolean localOnly,
                     Pegasus::Boolean includeQualifiers,
                     Pegasus::Boolean includeClassOrigin) override;
    Pegasus::Array<Pegasus::CIMName> enumerateClassNames(const Pegasus::OperationContext& context,
                                                         const Pegasus::CIMNamespaceName& nameSpace,
                                                         const Pegasus::CIMName& className,
                                                         Pegasus::Boolean deepInheritance) override;
    Pegasus::CIMInstance getInstance(const Pegasus::OperationContext& context,
                                     const Pegasus::CIMNamespaceName& nameSpace,
                                     const Pegasus::CIMObjectPath& instanceName,
                                     Pegasus::Boolean localOnly, Pegasus::Boolean includeQualifiers,
                                     Pegasus::Boolean includeClassOrigin,
                                     const Pegasus::CIMPropertyList& propertyList) override;
    Pegasus::Array<Pegasus::CIMInstance> enumerateInstances(
        const Pegasus::OperationContext& context, const Pegasus::CIMNamespaceName& nameSpace,
        const Pegasus::CIMName& className, Pegasus::Boolean deepInheritance,
        Pegasus::Boolean localOnly, Pegasus::Boolean includeQualifiers,
        Pegasus::Boolean includeClassOrigin, const Pegasus::CIMPropertyList& propertyList) override;
    Pegasus::Array<Pegasus::CIMObjectPath>
    enumerateInstanceNames(const Pegasus::OperationContext& context,
                           const Pegasus::CIMNamespaceName& nameSpace,
                           const Pegasus::CIMName& className) override;
    Pegasus::CIMObjectPath createInstance(const Pegasus::OperationContext& context,
                                          const Pegasus::CIMNamespaceName& nameSpace,
                                          const Pegasus::CIMInstance& newInstance) override;
    void modifyInstance(const Pegasus::OperationContext& context,
                        const Pegasus::CIMNamespaceName& nameSpace,
                        const Pegasus::CIMInstance& modifiedInstance,
                        Pegasus::Boolean includeQualifiers,
                        const Pegasus::CIMPropertyList& propertyList) override;
    void deleteInstance(const Pegasus::OperationContext& context,
                        const Pegasus::CIMNamespaceName& nameSpace,
                        const Pegasus::CIMObjectPath& instanceName) override;
    Pegasus::Array<Pegasus::CIMObject> associators(
        const Pegasus::OperationContext& context, const Pegasus::CIMNamespaceName& nameSpace,
        const Pegasus::CIMObjectPath& objectName, const Pegasus::CIMName& assocClass,
        const Pegasus::CIMName& resultClass, const Pegasus::String& role,
        const Pegasus::String& resultRole, Pegasus::Boolean includeQualifiers,
        Pegasus::Boolean includeClassOrigin, const Pegasus::CIMPropertyList& propertyList) override;
    Pegasus::Array<Pegasus::CIMObjectPath>
    associatorNames(const Pegasus::OperationContext& context,
                    const Pegasus::CIMNamespaceName& nameSpace,
                    const Pegasus::CIMObjectPath& objectName, const Pegasus::CIMName& assocClass,
                    const Pegasus::CIMName& resultClass, const Pegasus::String& role,
                    const Pegasus::String& resultRole) override;
    Pegasus::Array<Pegasus::CIMObject>
    references(const Pegasus::OperationContext& context, const Pegasus::CIMNamespaceName& nameSpace,
               const Pegasus::CIMObjectPath& objectName, const Pegasus::CIMName& resultClass,
               const Pegasus::String& role, Pegasus::Boolean includeQualifiers,
               Pegasus::Boolean includeClassOrigin,
               const Pegasus::CIMPropertyList& propertyList) override;
    Pegasus::Array<Pegasus::CIMObjectPath>
    referenceNames(const Pegasus::OperationContext& context,
                   const Pegasus::CIMNamespaceName& nameSpace,
                   const Pegasus::CIMObjectPath& objectName, const Pegasus::CIMName& resultClass,
                   const Pegasus::String& role) override;
    Pegasus::CIMValue getProperty(const Pegasus::OperationContext& context,
                                  const Pegasus::CIMNamespaceName& nameSpace,
                                  const Pegasus::CIMObjectPath& instanceName,
                                  const Pegasus::CIMName& propertyName) override;
    void disallowProviderUnload() override;
    void allowProviderUnload() override;

  private:
    CimOperations& _operations;
};

/// While it lives, every CIMOMHandle that a provider gets or makes leads to `operations`. One at a
/// time in a process. REQUIRES: made before the first provider is loaded; outlived by
/// `operations`.
class ProviderHandles {
  public:
    explicit ProviderHandles(CimOperations& operations);
    ~ProviderHandles();
    ProviderHandles(const ProviderHandles&) = delete;
    ProviderHandles& operator=(const ProviderHandles&) = delete;
};

} // namespace embedded::host
