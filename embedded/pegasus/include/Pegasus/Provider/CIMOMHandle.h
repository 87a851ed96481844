// A provider's way back into the server that hosts it.
#pragma once

#include <Pegasus/Common/Array.h>
#include <Pegasus/Common/CIMClass.h>
#include <Pegasus/Common/CIMInstance.h>
#include <Pegasus/Common/CIMName.h>
#include <Pegasus/Common/CIMObject.h>
#include <Pegasus/Common/CIMObjectPath.h>
#include <Pegasus/Common/CIMParamValue.h>
#include <Pegasus/Common/CIMPropertyList.h>
#include <Pegasus/Common/CIMValue.h>
#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/OperationContext.h>
#include <Pegasus/Common/ResponseHandler.h>
#include <Pegasus/Provider/Linkage.h>

#include <memory>

namespace Pegasus {

class CIMOMHandleRep;

/// The operations of DSP0200 on the server in whose process the provider runs. `context` is that of
/// the request that the provider is serving, so that the server knows on whose behalf it is asked.
/// Copies of a handle share one connection to the server.
///
/// Every operation throws CIMException with the status code that the server answers, and
/// CIM_ERR_FAILED if there is no server in this process.
///
/// Thread-safety: several threads may call operations at once, as far as the server behind the
/// handle allows; assignment is not synchronized. An operation may be served on another thread:
/// holding a lock that the serving code wants is a deadlock.
class PEGASUS_PROVIDER_LINKAGE CIMOMHandle {
  public:
    CIMOMHandle();
    CIMOMHandle(const CIMOMHandle& handle);
    ~CIMOMHandle();
    CIMOMHandle& operator=(const CIMOMHandle& handle);

    CIMClass getClass(const OperationContext& context, const CIMNamespaceName& nameSpace,
                      const CIMName& className, Boolean localOnly, Boolean includeQualifiers,
                      Boolean includeClassOrigin, const CIMPropertyList& propertyList);
    Array<CIMClass> enumerateClasses(const OperationContext& context,
                                     const CIMNamespaceName& nameSpace, const CIMName& className,
                                     Boolean deepInheritance, Boolean localOnly,
                                     Boolean includeQualifiers, Boolean includeClassOrigin);
    Array<CIMName> enumerateClassNames(const OperationContext& context,
                                       const CIMNamespaceName& nameSpace, const CIMName& className,
                                       Boolean deepInheritance);
    void createClass(const OperationContext& context, const CIMNamespaceName& nameSpace,
                     const CIMClass& newClass);
    void modifyClass(const OperationContext& context, const CIMNamespaceName& nameSpace,
                     const CIMClass& modifiedClass);
    void deleteClass(const OperationContext& context, const CIMNamespaceName& nameSpace,
                     const CIMName& className);
    CIMInstance getInstance(const OperationContext& context, const CIMNamespaceName& nameSpace,
                            const CIMObjectPath& instanceName, Boolean localOnly,
                            Boolean includeQualifiers, Boolean includeClassOrigin,
                            const CIMPropertyList& propertyList);
    Array<CIMInstance> enumerateInstances(const OperationContext& context,
                                          const CIMNamespaceName& nameSpace,
                                          const CIMName& className, Boolean deepInheritance,
                                          Boolean localOnly, Boolean includeQualifiers,
                                          Boolean includeClassOrigin,
                                          const CIMPropertyList& propertyList);
    Array<CIMObjectPath> enumerateInstanceNames(const OperationContext& context,
                                                const CIMNamespaceName& nameSpace,
                                                const CIMName& className);
    CIMObjectPath createInstance(const OperationContext& context, const CIMNamespaceName& nameSpace,
                                 const CIMInstance& newInstance);
    void modifyInstance(const OperationContext& context, const CIMNamespaceName& nameSpace,
                        const CIMInstance& modifiedInstance, Boolean includeQualifiers,
                        const CIMPropertyList& propertyList);
    void deleteInstance(const OperationContext& context, const CIMNamespaceName& nameSpace,
                        const CIMObjectPath& instanceName);
    Array<CIMObject> execQuery(const OperationContext& context, const CIMNamespaceName& nameSpace,
                               const String& queryLanguage, const String& query);
    Array<CIMObject> associators(const OperationContext& context, const CIMNamespaceName& nameSpace,
                                 const CIMObjectPath& objectName, const CIMName& assocClass,
                                 const CIMName& resultClass, const String& role,
                                 const String& resultRole, Boolean includeQualifiers,
                                 Boolean includeClassOrigin, const CIMPropertyList& propertyList);
    Array<CIMObjectPath> associatorNames(const OperationContext& context,
                                         const CIMNamespaceName& nameSpace,
                                         const CIMObjectPath& objectName, const CIMName& assocClass,
                                         const CIMName& resultClass, const String& role,
                                         const String& resultRole);
    Array<CIMObject> references(const OperationContext& context, const CIMNamespaceName& nameSpace,
                                const CIMObjectPath& objectName, const CIMName& resultClass,
                                const String& role, Boolean includeQualifiers,
                                Boolean includeClassOrigin, const CIMPropertyList& propertyList);
    Array<CIMObjectPath> referenceNames(const OperationContext& context,
                                        const CIMNamespaceName& nameSpace,
                                        const CIMObjectPath& objectName, const CIMName& resultClass,
                                        const String& role);
    CIMValue getProperty(const OperationContext& context, const CIMNamespaceName& nameSpace,
                         const CIMObjectPath& instanceName, const CIMName& propertyName);
    void setProperty(const OperationContext& context, const CIMNamespaceName& nameSpace,
                     const CIMObjectPath& instanceName, const CIMName& propertyName,
                     const CIMValue& newValue);
    CIMValue invokeMethod(const OperationContext& context, const CIMNamespaceName& nameSpace,
                          const CIMObjectPath& instanceName, const CIMName& methodName,
                          const Array<CIMParamValue>& inParameters,
                          Array<CIMParamValue>& outParameters);

    /// Keeps the server from unloading the provider for want of requests, until
    /// allowProviderUnload() was called as often.
    void disallowProviderUnload();
    void allowProviderUnload();

  private:
    std::shared_ptr<CIMOMHandleRep> _rep;
};

} // namespace Pegasus
