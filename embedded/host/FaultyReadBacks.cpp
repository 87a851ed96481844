#include "host/FaultyReadBacks.h"

namespace embedded::host {

using Pegasus::Array;
using Pegasus::CIMClass;
using Pegasus::CIMInstance;
using Pegasus::CIMName;
using Pegasus::CIMNamespaceName;
using Pegasus::CIMObject;
using Pegasus::CIMObjectPath;
using Pegasus::CIMPropertyList;
using Pegasus::CIMQualifierDecl;
using Pegasus::CIMValue;
using Pegasus::String;

namespace {

/// An uninitialised instance has no class: the server is the one to refuse it.
CIMName classOf(const CIMInstance& instance) {
    return instance.isUninitialized() ? CIMName() : instance.getClassName();
}

} // namespace

template <class Result, class... Parameters, class... Arguments>
Result FaultyReadBacks::ask(ReadBackOperation operation, const CIMName& className,
                            Result (CimOperations::*answer)(Parameters...),
                            const Arguments&... arguments) {
    return _faults.meet(operation, className) == Faults::Outcome::NoAnswer
               ? Result()
               : (_server.*answer)(arguments...);
}

CIMClass FaultyReadBacks::getClass(const Caller& caller, const CIMNamespaceName& nameSpace,
                                   const CIMName& className, bool localOnly, bool includeQualifiers,
                                   bool includeClassOrigin, const CIMPropertyList& propertyList) {
    return ask(ReadBackOperation::GetClass, className, &CimOperations::getClass, caller, nameSpace,
               className, localOnly, includeQualifiers, includeClassOrigin, propertyList);
}

Array<CIMClass> FaultyReadBacks::enumerateClasses(const Caller& caller,
                                                  const CIMNamespaceName& nameSpace,
                                                  const CIMName& className, bool deepInheritance,
                                                  bool localOnly, bool includeQualifiers,
                                                  bool includeClassOrigin) {
    return ask(ReadBackOperation::EnumerateClasses, className, &CimOperations::enumerateClasses,
               caller, nameSpace, className, deepInheritance, localOnly, includeQualifiers,
               includeClassOrigin);
}

Array<CIMName> FaultyReadBacks::enumerateClassNames(const Caller& caller,
                                                    const CIMNamespaceName& nameSpace,
                                                    const CIMName& className,
                                                    bool deepInheritance) {
    return ask(ReadBackOperation::EnumerateClassNames, className,
               &CimOperations::enumerateClassNames, caller, nameSpace, className, deepInheritance);
}

CIMInstance FaultyReadBacks::getInstance(const Caller& caller, const CIMNamespaceName& nameSpace,
                                         const CIMObjectPath& instanceName, bool includeQualifiers,
                                         bool includeClassOrigin,
                                         const CIMPropertyList& propertyList) {
    return ask(ReadBackOperation::GetInstance, instanceName.getClassName(),
               &CimOperations::getInstance, caller, nameSpace, instanceName, includeQualifiers,
               includeClassOrigin, propertyList);
}

Answer<CIMInstance>
FaultyReadBacks::enumerateInstances(const Caller& caller, const CIMNamespaceName& nameSpace,
                                    const CIMName& className, bool deepInheritance,
                                    bool includeQualifiers, bool includeClassOrigin,
                                    const CIMPropertyList& propertyList) {
    return ask(ReadBackOperation::EnumerateInstances, className, &CimOperations::enumerateInstances,
               caller, nameSpace, className, deepInheritance, includeQualifiers, includeClassOrigin,
               propertyList);
}

Answer<CIMObjectPath> FaultyReadBacks::enumerateInstanceNames(const Caller& caller,
                                                              const CIMNamespaceName& nameSpace,
                                                              const CIMName& className) {
    return ask(ReadBackOperation::EnumerateInstanceNames, className,
               &CimOperations::enumerateInstanceNames, caller, nameSpace, className);
}

CIMObjectPath FaultyReadBacks::createInstance(const Caller& caller,
                                              const CIMNamespaceName& nameSpace,
                                              const CIMInstance& newInstance) {
    return ask(ReadBackOperation::CreateInstance, classOf(newInstance),
               &CimOperations::createInstance, caller, nameSpace, newInstance);
}

void FaultyReadBacks::modifyInstance(const Caller& caller, const CIMNamespaceName& nameSpace,
                                     const CIMInstance& modifiedInstance, bool includeQualifiers,
                                     const CIMPropertyList& propertyList) {
    return ask(ReadBackOperation::ModifyInstance, classOf(modifiedInstance),
               &CimOperations::modifyInstance, caller, nameSpace, modifiedInstance,
               includeQualifiers, propertyList);
}

void FaultyReadBacks::deleteInstance(const Caller& caller, const CIMNamespaceName& nameSpace,
                                     const CIMObjectPath& instanceName) {
    return ask(ReadBackOperation::DeleteInstance, instanceName.getClassName(),
               &CimOperations::deleteInstance, caller, nameSpace, instanceName);
}

CIMValue FaultyReadBacks::getProperty(const Caller& caller, const CIMNamespaceName& nameSpace,
                                      const CIMObjectPath& instanceName,
                                      const CIMName& propertyName) {
    return ask(ReadBackOperation::GetProperty, instanceName.getClassName(),
               &CimOperations::getProperty, caller, nameSpace, instanceName, propertyName);
}

Answer<CIMObject>
FaultyReadBacks::associators(const Caller& caller, const CIMNamespaceName& nameSpace,
                             const CIMObjectPath& objectName, const CIMName& assocClass,
                             const CIMName& resultClass, const String& role,
                             const String& resultRole, bool includeQualifiers,
                             bool includeClassOrigin, const CIMPropertyList& propertyList) {
    return ask(ReadBackOperation::Associators, objectName.getClassName(),
               &CimOperations::associators, caller, nameSpace, objectName, assocClass, resultClass,
               role, resultRole, includeQualifiers, includeClassOrigin, propertyList);
}

Answer<CIMObjectPath>
FaultyReadBacks::associatorNames(const Caller& caller, const CIMNamespaceName& nameSpace,
                                 const CIMObjectPath& objectName, const CIMName& assocClass,
                                 const CIMName& resultClass, const String& role,
                                 const String& resultRole) {
    return ask(ReadBackOperation::AssociatorNames, objectName.getClassName(),
               &CimOperations::associatorNames, caller, nameSpace, objectName, assocClass,
               resultClass, role, resultRole);
}

Answer<CIMObject> FaultyReadBacks::references(const Caller& caller,
                                              const CIMNamespaceName& nameSpace,
                                              const CIMObjectPath& objectName,
                                              const CIMName& resultClass, const String& role,
                                              bool includeQualifiers, bool includeClassOrigin,
                                              const CIMPropertyList& propertyList) {
    return ask(ReadBackOperation::References, objectName.getClassName(), &CimOperations::references,
               caller, nameSpace, objectName, resultClass, role, includeQualifiers,
               includeClassOrigin, propertyList);
}

Answer<CIMObjectPath> FaultyReadBacks::referenceNames(const Caller& caller,
                                                      const CIMNamespaceName& nameSpace,
                                                      const CIMObjectPath& objectName,
                                                      const CIMName& resultClass,
                                                      const String& role) {
    return ask(ReadBackOperation::ReferenceNames, objectName.getClassName(),
               &CimOperations::referenceNames, caller, nameSpace, objectName, resultClass, role);
}

// Qualifiers cannot be asked for through a handle.

CIMQualifierDecl FaultyReadBacks::getQualifier(const Caller& caller,
                                               const CIMNamespaceName& nameSpace,
                                               const CIMName& qualifierName) {
    return _server.getQualifier(caller, nameSpace, qualifierName);
}

Array<CIMQualifierDecl> FaultyReadBacks::enumerateQualifiers(const Caller& caller,
                                                             const CIMNamespaceName& nameSpace) {
    return _server.enumerateQualifiers(caller, nameSpace);
}

} // namespace embedded::host
