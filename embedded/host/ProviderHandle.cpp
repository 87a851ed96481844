#include "host/ProviderHandle.h"

namespace embedded::host {

using Pegasus::Array;
using Pegasus::Boolean;
using Pegasus::CIMClass;
using Pegasus::CIMInstance;
using Pegasus::CIMName;
using Pegasus::CIMNamespaceName;
using Pegasus::CIMObject;
using Pegasus::CIMObjectPath;
using Pegasus::CIMPropertyList;
using Pegasus::IdentityContainer;
using Pegasus::OperationContext;
using Pegasus::String;

namespace {

/// Containers that are missing are those of nobody in particular.
Caller callerOf(const OperationContext& context) {
    Caller caller;
    if (context.contains(IdentityContainer::NAME)) {
        caller.userName = IdentityContainer(context.get(IdentityContainer::NAME)).getUserName();
    }
    return caller;
}

} // namespace

CIMClass ProviderHandle::getClass(const OperationContext& context,
                                  const CIMNamespaceName& nameSpace, const CIMName& className,
                                  Boolean localOnly, Boolean includeQualifiers,
                                  Boolean includeClassOrigin, const CIMPropertyList& propertyList) {
    return _operations.getClass(callerOf(context), nameSpace, className, localOnly,
                                includeQualifiers, includeClassOrigin, propertyList);
}

Array<CIMClass> ProviderHandle::enumerateClasses(const OperationContext& context,
                                                 const CIMNamespaceName& nameSpace,
                                                 const CIMName& className, Boolean deepInheritance,
                                                 Boolean localOnly, Boolean includeQualifiers,
                                                 Boolean includeClassOrigin) {
    return _operations.enumerateClasses(callerOf(context), nameSpace, className, deepInheritance,
                                        localOnly, includeQualifiers, includeClassOrigin);
}

Array<CIMName> ProviderHandle::enumerateClassNames(const OperationContext& context,
                                                   const CIMNamespaceName& nameSpace,
                                                   const CIMName& className,
                                                   Boolean deepInheritance) {
    return _operations.enumerateClassNames(callerOf(context), nameSpace, className,
                                           deepInheritance);
}

// LocalOnly is deprecated for instances (DSP0200 clause 5.3.2.2) and has no effect.

CIMInstance ProviderHandle::getInstance(const OperationContext& context,
                                        const CIMNamespaceName& nameSpace,
                                        const CIMObjectPath& instanceName, Boolean /*localOnly*/,
                                        Boolean includeQualifiers, Boolean includeClassOrigin,
                                        const CIMPropertyList& propertyList) {
    return _operations.getInstance(callerOf(context), nameSpace, instanceName, includeQualifiers,
                                   includeClassOrigin, propertyList);
}

Array<CIMInstance> ProviderHandle::enumerateInstances(
    const OperationContext& context, const CIMNamespaceName& nameSpace, const CIMName& className,
    Boolean deepInheritance, Boolean /*localOnly*/, Boolean includeQualifiers,
    Boolean includeClassOrigin, const CIMPropertyList& propertyList) {
    return _operations
        .enumerateInstances(callerOf(context), nameSpace, className, deepInheritance,
                            includeQualifiers, includeClassOrigin, propertyList)
        .objects;
}

Array<CIMObjectPath> ProviderHandle::enumerateInstanceNames(const OperationContext& context,
                                                            const CIMNamespaceName& nameSpace,
                                                            const CIMName& className) {
    return _operations.enumerateInstanceNames(callerOf(context), nameSpace, className).objects;
}

CIMObjectPath ProviderHandle::createInstance(const OperationContext& context,
                                             const CIMNamespaceName& nameSpace,
                                             const CIMInstance& newInstance) {
    return _operations.createInstance(callerOf(context), nameSpace, newInstance);
}

void ProviderHandle::modifyInstance(const OperationContext& context,
                                    const CIMNamespaceName& nameSpace,
                                    const CIMInstance& modifiedInstance, Boolean includeQualifiers,
                                    const CIMPropertyList& propertyList) {
    _operations.modifyInstance(callerOf(context), nameSpace, modifiedInstance, includeQualifiers,
                               propertyList);
}

void ProviderHandle::deleteInstance(const OperationContext& context,
                                    const CIMNamespaceName& nameSpace,
                                    const CIMObjectPath& instanceName) {
    _operations.deleteInstance(callerOf(context), nameSpace, instanceName);
}

Array<CIMObject> ProviderHandle::associators(const OperationContext& context,
                                             const CIMNamespaceName& nameSpace,
                                             const CIMObjectPath& objectName,
                                             const CIMName& assocClass, const CIMName& resultClass,
                                             const String& role, const String& resultRole,
                                             Boolean includeQualifiers, Boolean includeClassOrigin,
                                             const CIMPropertyList& propertyList) {
    return _operations
        .associators(callerOf(context), nameSpace, objectName, assocClass, resultClass, role,
                     resultRole, includeQualifiers, includeClassOrigin, propertyList)
        .objects;
}

Array<CIMObjectPath> ProviderHandle::associatorNames(const OperationContext& context,
                                                     const CIMNamespaceName& nameSpace,
                                                     const CIMObjectPath& objectName,
                                                     const CIMName& assocClass,
                                                     const CIMName& resultClass, const String& role,
                                                     const String& resultRole) {
    return _operations
        .associatorNames(callerOf(context), nameSpace, objectName, assocClass, resultClass, role,
                         resultRole)
        .objects;
}

Array<CIMObject> ProviderHandle::references(const OperationContext& context,
                                            const CIMNamespaceName& nameSpace,
                                            const CIMObjectPath& objectName,
                                            const CIMName& resultClass, const String& role,
                                            Boolean includeQualifiers, Boolean includeClassOrigin,
                                            const CIMPropertyList& propertyList) {
    return _operations
        .references(callerOf(context), nameSpace, objectName, resultClass, role, includeQualifiers,
                    includeClassOrigin, propertyList)
        .objects;
}

Array<CIMObjectPath> ProviderHandle::referenceNames(const OperationContext& context,
                                                    const CIMNamespaceName& nameSpace,
                                                    const CIMObjectPath& objectName,
                                                    const CIMName& resultClass,
                                                    const String& role) {
    return _operations.referenceNames(callerOf(context), nameSpace, objectName, resultClass, role)
        .objects;
}

Pegasus::CIMValue ProviderHandle::getProperty(const OperationContext& context,
                                              const CIMNamespaceName& nameSpace,
                                              const CIMObjectPath& instanceName,
                                              const CIMName& propertyName) {
    return _operations.getProperty(callerOf(context), nameSpace, instanceName, propertyName);
}

void ProviderHandle::disallowProviderUnload() {
}
void ProviderHandle::allowProviderUnload() {
}

ProviderHandles::ProviderHandles(CimOperations& operations) {
    Pegasus::hosting::setHandleFactory(
        [&operations] { return std::make_shared<ProviderHandle>(operations); });
}

ProviderHandles::~ProviderHandles() {
    Pegasus::hosting::setHandleFactory({});
}

} // namespace embedded::host
