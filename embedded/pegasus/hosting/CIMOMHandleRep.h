// What stands behind a CIMOMHandle: the seam by which a host gives the provider library its
// server. Providers never see this header; hosts and tests implement it.
#pragma once

#include <Pegasus/Common/CIMClass.h>
#include <Pegasus/Common/CIMInstance.h>
#include <Pegasus/Common/CIMName.h>
#include <Pegasus/Common/CIMObject.h>
#include <Pegasus/Common/CIMObjectPath.h>
#include <Pegasus/Common/CIMParamValue.h>
#include <Pegasus/Common/CIMPropertyList.h>
#include <Pegasus/Common/CIMValue.h>
#include <Pegasus/Common/Linkage.h>
#include <Pegasus/Common/OperationContext.h>

#include <functional>
#include <memory>

namespace Pegasus {

/// The operations of CIMOMHandle, as a host answers them. Every operation may throw CIMException;
/// an operation that a host does not offer throws CIM_ERR_NOT_SUPPORTED, which is what the
/// definitions given here do, so that a host or a test states only what it answers.
///
/// Thread-safety: one object may be called from several threads at once.
class PEGASUS_COMMON_LINKAGE CIMOMHandleRep {
  public:
    virtual ~CIMOMHandleRep() = default;

    virtual CIMClass getClass(const OperationContext& context, const CIMNamespaceName& nameSpace,
                              const CIMName& className, Boolean localOnly,
                              Boolean includeQualifiers, Boolean includeClassOrigin,
                              const CIMPropertyList& propertyList);
    virtual Array<CIMClass> enumerateClasses(const OperationContext& context,
                                             const CIMNamespaceName& nameSpace,
                                             const CIMName& className, Boolean deepInheritance,
                                             Boolean localOnly, Boolean includeQualifiers,
                                             Boolean includeClassOrigin);
    virtual Array<CIMName> enumerateClassNames(const OperationContext& context,
                                               const CIMNamespaceName& nameSpace,
                                               const CIMName& className, Boolean deepInheritance);
    virtual void createClass(const OperationContext& context, const CIMNamespaceName& nameSpace,
                             const CIMClass& newClass);
    virtual void modifyClass(const OperationContext& context, const CIMNamespaceName& nameSpace,
                             const CIMClass& modifiedClass);
    virtual void deleteClass(const OperationContext& context, const CIMNamespaceName& nameSpace,
                             const CIMName& className);
    virtual CIMInstance getInstance(const OperationContext& context,
                                    const CIMNamespaceName& nameSpace,
                                    const CIMObjectPath& instanceName, Boolean localOnly,
                                    Boolean includeQualifiers, Boolean includeClassOrigin,
                                    const CIMPropertyList& propertyList);
    virtual Array<CIMInstance> enumerateInstances(const OperationContext& context,
                                                  const CIMNamespaceName& nameSpace,
                                                  const CIMName& className, Boolean deepInheritance,
                                                  Boolean localOnly, Boolean includeQualifiers,
                                                  Boolean includeClassOrigin,
                                                  const CIMPropertyList& propertyList);
    virtual Array<CIMObjectPath> enumerateInstanceNames(const OperationContext& context,
                                                        const CIMNamespaceName& nameSpace,
                                                        const CIMName& className);
    virtual CIMObjectPath createInstance(const OperationContext& context,
                                         const CIMNamespaceName& nameSpace,
                                         const CIMInstance& newInstance);
    virtual void modifyInstance(const OperationContext& context, const CIMNamespaceName& nameSpace,
                                const CIMInstance& modifiedInstance, Boolean includeQualifiers,
                                const CIMPropertyList& propertyList);
    virtual void deleteInstance(const OperationContext& context, const CIMNamespaceName& nameSpace,
                                const CIMObjectPath& instanceName);
    virtual Array<CIMObject> execQuery(const OperationContext& context,
                                       const CIMNamespaceName& nameSpace,
                                       const String& queryLanguage, const String& query);
    virtual Array<CIMObject> associators(const OperationContext& context,
                                         const CIMNamespaceName& nameSpace,
                                         const CIMObjectPath& objectName, const CIMName& assocClass,
                                         const CIMName& resultClass, const String& role,
                                         const String& resultRole, Boolean includeQualifiers,
                                         Boolean includeClassOrigin,
                                         const CIMPropertyList& propertyList);
    virtual Array<CIMObjectPath>
    associatorNames(const OperationContext& context, const CIMNamespaceName& nameSpace,
                    const CIMObjectPath& objectName, const CIMName& assocClass,
                    const CIMName& resultClass, const String& role, const String& resultRole);
    virtual Array<CIMObject> references(const OperationContext& context,
                                        const CIMNamespaceName& nameSpace,
                                        const CIMObjectPath& objectName, const CIMName& resultClass,
                                        const String& role, Boolean includeQualifiers,
                                        Boolean includeClassOrigin,
                                        const CIMPropertyList& propertyList);
    virtual Array<CIMObjectPath> referenceNames(const OperationContext& context,
                                                const CIMNamespaceName& nameSpace,
                                                const CIMObjectPath& objectName,
                                                const CIMName& resultClass, const String& role);
    virtual CIMValue getProperty(const OperationContext& context, const CIMNamespaceName& nameSpace,
                                 const CIMObjectPath& instanceName, const CIMName& propertyName);
    virtual void setProperty(const OperationContext& context, const CIMNamespaceName& nameSpace,
                             const CIMObjectPath& instanceName, const CIMName& propertyName,
                             const CIMValue& newValue);
    virtual CIMValue invokeMethod(const OperationContext& context,
                                  const CIMNamespaceName& nameSpace,
                                  const CIMObjectPath& instanceName, const CIMName& methodName,
                                  const Array<CIMParamValue>& inParameters,
                                  Array<CIMParamValue>& outParameters);
    /// For a host that unloads providers; these definitions do nothing.
    virtual void disallowProviderUnload();
    virtual void allowProviderUnload();
};

namespace hosting {

/// Makes what stands behind every CIMOMHandle that is default-constructed from now on (copies of
/// a handle share what stands behind it). One factory for the process; an empty function takes it
/// back. While there is none, every operation of such a handle throws CIMException
/// CIM_ERR_FAILED "no CIM server in this process", but for those about unloading, which do nothing.
///
/// Thread-safety: to be set before the first provider is loaded; then only read.
PEGASUS_COMMON_LINKAGE void
setHandleFactory(std::function<std::shared_ptr<CIMOMHandleRep>()> factory);

} // namespace hosting
} // namespace Pegasus
