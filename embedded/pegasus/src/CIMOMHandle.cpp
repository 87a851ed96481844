#include <Pegasus/Provider/CIMOMHandle.h>

#include "HandleFactory.h"

namespace Pegasus {

namespace {

CIMOMHandleRep& serverOf(const std::shared_ptr<CIMOMHandleRep>& rep) {
    if (!rep)
        throw CIMException(CIM_ERR_FAILED, "no CIM server in this process");
    return *rep;
}

} // namespace

CIMOMHandle::CIMOMHandle() : _rep(hosting::makeHandleRep()) {
}

CIMOMHandle::CIMOMHandle(const CIMOMHandle& handle) = default;

CIMOMHandle::~CIMOMHandle() = default;

CIMOMHandle& CIMOMHandle::operator=(const CIMOMHandle& handle) = default;

CIMClass CIMOMHandle::getClass(const OperationContext& context, const CIMNamespaceName& nameSpace,
                               const CIMName& className, Boolean localOnly,
                               Boolean includeQualifiers, Boolean includeClassOrigin,
                               const CIMPropertyList& propertyList) {
    return serverOf(_rep).getClass(context, nameSpace, className, localOnly, includeQualifiers,
                                   includeClassOrigin, propertyList);
}

Array<CIMClass> CIMOMHandle::enumerateClasses(const OperationContext& context,
                                              const CIMNamespaceName& nameSpace,
                                              const CIMName& className, Boolean deepInheritance,
                                              Boolean localOnly, Boolean includeQualifiers,
                                              Boolean includeClassOrigin) {
    return serverOf(_rep).enumerateClasses(context, nameSpace, className, deepInheritance,
                                           localOnly, includeQualifiers, includeClassOrigin);
}

Array<CIMName> CIMOMHandle::enumerateClassNames(const OperationContext& context,
                                                const CIMNamespaceName& nameSpace,
                                                const CIMName& className, Boolean deepInheritance) {
    return serverOf(_rep).enumerateClassNames(context, nameSpace, className, deepInheritance);
}

void CIMOMHandle::createClass(const OperationContext& context, const CIMNamespaceName& nameSpace,
                              const CIMClass& newClass) {
    serverOf(_rep).createClass(context, nameSpace, newClass);
}

void CIMOMHandle::modifyClass(const OperationContext& context, const CIMNamespaceName& nameSpace,
                              const CIMClass& modifiedClass) {
    serverOf(_rep).modifyClass(context, nameSpace, modifiedClass);
}

void CIMOMHandle::deleteClass(const OperationContext& context, const CIMNamespaceName& nameSpace,
                              const CIMName& className) {
    serverOf(_rep).deleteClass(context, nameSpace, className);
}

CIMInstance CIMOMHandle::getInstance(const OperationContext& context,
                                     const CIMNamespaceName& nameSpace,
                                     const CIMObjectPath& instanceName, Boolean localOnly,
                                     Boolean includeQualifiers, Boolean includeClassOrigin,
                                     const CIMPropertyList& propertyList) {
    return serverOf(_rep).getInstance(context, nameSpace, instanceName, localOnly,
                                      includeQualifiers, includeClassOrigin, propertyList);
}

Array<CIMInstance>
CIMOMHandle::enumerateInstances(const OperationContext& context, const CIMNamespaceName& nameSpace,
                                const CIMName& className, Boolean deepInheritance,
                                Boolean localOnly, Boolean includeQualifiers,
                                Boolean includeClassOrigin, const CIMPropertyList& propertyList) {
    return serverOf(_rep).enumerateInstances(context, nameSpace, className, deepInheritance,
                                             localOnly, includeQualifiers, includeClassOrigin,
                                             propertyList);
}

Array<CIMObjectPath> CIMOMHandle::enumerateInstanceNames(const OperationContext& context,
                                                         const CIMNamespaceName& nameSpace,
                                                         const CIMName& className) {
    return serverOf(_rep).enumerateInstanceNames(context, nameSpace, className);
}

CIMObjectPath CIMOMHandle::createInstance(const OperationContext& context,
                                          const CIMNamespaceName& nameSpace,
                                          const CIMInstance& newInstance) {
    return serverOf(_rep).createInstance(context, nameSpace, newInstance);
}

void CIMOMHandle::modifyInstance(const OperationContext& context, const CIMNamespaceName& nameSpace,
                                 const CIMInstance& modifiedInstance, Boolean includeQualifiers,
                                 const CIMPropertyList& propertyList) {
    serverOf(_rep).modifyInstance(context, nameSpace, modifiedInstance, includeQualifiers,
                                  propertyList);
}

void CIMOMHandle::deleteInstance(const OperationContext& context, const CIMNamespaceName& nameSpace,
                                 const CIMObjectPath& instanceName) {
    serverOf(_rep).deleteInstance(context, nameSpace, instanceName);
}

Array<CIMObject> CIMOMHandle::execQuery(const OperationContext& context,
                                        const CIMNamespaceName& nameSpace,
                                        const String& queryLanguage, const String& query) {
    return serverOf(_rep).execQuery(context, nameSpace, queryLanguage, query);
}

Array<CIMObject> CIMOMHandle::associators(const OperationContext& context,
                                          const CIMNamespaceName& nameSpace,
                                          const CIMObjectPath& objectName,
                                          const CIMName& assocClass, const CIMName& resultClass,
                                          const String& role, const String& resultRole,
                                          Boolean includeQualifiers, Boolean includeClassOrigin,
                                          const CIMPropertyList& propertyList) {
    return serverOf(_rep).associators(context, nameSpace, objectName, assocClass, resultClass, role,
                                      resultRole, includeQualifiers, includeClassOrigin,
                                      propertyList);
}

Array<CIMObjectPath> CIMOMHandle::associatorNames(const OperationContext& context,
                                                  const CIMNamespaceName& nameSpace,
                                                  const CIMObjectPath& objectName,
                                                  const CIMName& assocClass,
                                                  const CIMName& resultClass, const String& role,
                                                  const String& resultRole) {
    return serverOf(_rep).associatorNames(context, nameSpace, objectName, assocClass, resultClass,
                                          role, resultRole);
}

Array<CIMObject> CIMOMHandle::references(const OperationContext& context,
                                         const CIMNamespaceName& nameSpace,
                                         const CIMObjectPath& objectName,
                                         const CIMName& resultClass, const String& role,
                                         Boolean includeQualifiers, Boolean includeClassOrigin,
                                         const CIMPropertyList& propertyList) {
    return serverOf(_rep).references(context, nameSpace, objectName, resultClass, role,
                                     includeQualifiers, includeClassOrigin, propertyList);
}

Array<CIMObjectPath> CIMOMHandle::referenceNames(const OperationContext& context,
                                                 const CIMNamespaceName& nameSpace,
                                                 const CIMObjectPath& objectName,
                                                 const CIMName& resultClass, const String& role) {
    return serverOf(_rep).referenceNames(context, nameSpace, objectName, resultClass, role);
}

CIMValue CIMOMHandle::getProperty(const OperationContext& context,
                                  const CIMNamespaceName& nameSpace,
                                  const CIMObjectPath& instanceName, const CIMName& propertyName) {
    return serverOf(_rep).getProperty(context, nameSpace, instanceName, propertyName);
}

void CIMOMHandle::setProperty(const OperationContext& context, const CIMNamespaceName& nameSpace,
                              const CIMObjectPath& instanceName, const CIMName& propertyName,
                              const CIMValue& newValue) {
    serverOf(_rep).setProperty(context, nameSpace, instanceName, propertyName, newValue);
}

CIMValue CIMOMHandle::invokeMethod(const OperationContext& context,
                                   const CIMNamespaceName& nameSpace,
                                   const CIMObjectPath& instanceName, const CIMName& methodName,
                                   const Array<CIMParamValue>& inParameters,
                                   Array<CIMParamValue>& outParameters) {
    return serverOf(_rep).invokeMethod(context, nameSpace, instanceName, methodName, inParameters,
                                       outParameters);
}

// Where there is no server, nothing unloads the provider.

void CIMOMHandle::disallowProviderUnload() {
    if (_rep)
        _rep->disallowProviderUnload();
}

void CIMOMHandle::allowProviderUnload() {
    if (_rep)
        _rep->allowProviderUnload();
}

} // namespace Pegasus
