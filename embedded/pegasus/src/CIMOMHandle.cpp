#include <Pegasus/Provider/CIMOMHandle.h>

#include "embedding/CIMOMHandleRep.h"

#include <Pegasus/Provider/ProviderException.h>

#include <utility>

namespace Pegasus {

using embedding::allOf;
using embedding::onlyOf;
using embedding::Operation;
using embedding::OperationKind;

namespace {

using HandleFactory = std::function<std::shared_ptr<CIMOMHandleRep>()>;

HandleFactory& handleFactory() {
    static HandleFactory factory;
    return factory;
}

CIMOMHandleRep& serverOf(const std::shared_ptr<CIMOMHandleRep>& rep) {
    if (!rep)
        throw CIMException(CIM_ERR_FAILED, "no CIM server in this process");
    return *rep;
}

/// Containers that are missing are those of nobody in particular.
embedding::Caller callerOf(const OperationContext& context) {
    embedding::Caller caller;
    if (context.contains(IdentityContainer::NAME))
        caller.userName = IdentityContainer(context.get(IdentityContainer::NAME)).getUserName();
    return caller;
}

/// `subject` is what is asked for, as the operation's kind takes it.
template <class Subject>
Operation of(OperationKind kind, const OperationContext& context, const CIMNamespaceName& nameSpace,
             Subject Operation::*place, const Subject& subject) {
    Operation operation;
    operation.kind = kind;
    operation.caller = callerOf(context);
    operation.nameSpace = nameSpace;
    operation.*place = subject;
    return operation;
}

/// An operation on the associations of `source`.
Operation leading(OperationKind kind, const OperationContext& context,
                  const CIMNamespaceName& nameSpace, const CIMObjectPath& source,
                  const CIMName& assocClass, const CIMName& resultClass, const String& role,
                  const String& resultRole) {
    Operation operation = of(kind, context, nameSpace, &Operation::objectName, source);
    operation.assocClass = assocClass;
    operation.resultClass = resultClass;
    operation.role = role;
    operation.resultRole = resultRole;
    return operation;
}

void include(Operation& operation, bool qualifiers, bool classOrigin,
             const CIMPropertyList& propertyList = {}) {
    operation.includeQualifiers = qualifiers;
    operation.includeClassOrigin = classOrigin;
    operation.propertyList = propertyList;
}

/// No host offers it, so nothing says what was asked.
[[noreturn]] void refuse(const std::shared_ptr<CIMOMHandleRep>& rep, const char* operation) {
    serverOf(rep);
    embedding::refuseOperation(operation);
}

} // namespace

embedding::Answer CIMOMHandleRep::perform(const Operation& operation) {
    embedding::refuseOperation(embedding::operationName(operation.kind));
}

void CIMOMHandleRep::disallowProviderUnload() {}

void CIMOMHandleRep::allowProviderUnload() {}

void embedding::setHandleFactory(HandleFactory factory) { handleFactory() = std::move(factory); }

void embedding::refuseOperation(const char* operation) {
    throw CIMNotSupportedException(String("this host does not offer ") + operation);
}

CIMOMHandle::CIMOMHandle() : _rep(handleFactory() ? handleFactory()() : nullptr) {}
CIMOMHandle::CIMOMHandle(const CIMOMHandle& handle) = default;
CIMOMHandle::~CIMOMHandle() = default;
CIMOMHandle& CIMOMHandle::operator=(const CIMOMHandle& handle) = default;

CIMClass CIMOMHandle::getClass(const OperationContext& context, const CIMNamespaceName& nameSpace,
                               const CIMName& className, Boolean localOnly,
                               Boolean includeQualifiers, Boolean includeClassOrigin,
                               const CIMPropertyList& propertyList) {
    Operation operation =
        of(OperationKind::GetClass, context, nameSpace, &Operation::className, className);
    operation.localOnly = localOnly;
    include(operation, includeQualifiers, includeClassOrigin, propertyList);
    return onlyOf<CIMClass>(serverOf(_rep).perform(operation));
}

Array<CIMClass> CIMOMHandle::enumerateClasses(const OperationContext& context,
                                              const CIMNamespaceName& nameSpace,
                                              const CIMName& className, Boolean deepInheritance,
                                              Boolean localOnly, Boolean includeQualifiers,
                                              Boolean includeClassOrigin) {
    Operation operation =
        of(OperationKind::EnumerateClasses, context, nameSpace, &Operation::className, className);
    operation.deepInheritance = deepInheritance;
    operation.localOnly = localOnly;
    include(operation, includeQualifiers, includeClassOrigin);
    return allOf<CIMClass>(serverOf(_rep).perform(operation));
}

Array<CIMName> CIMOMHandle::enumerateClassNames(const OperationContext& context,
                                                const CIMNamespaceName& nameSpace,
                                                const CIMName& className, Boolean deepInheritance) {
    Operation operation = of(OperationKind::EnumerateClassNames, context, nameSpace,
                             &Operation::className, className);
    operation.deepInheritance = deepInheritance;
    return allOf<CIMName>(serverOf(_rep).perform(operation));
}

void CIMOMHandle::createClass(const OperationContext&, const CIMNamespaceName&, const CIMClass&) {
    refuse(_rep, "createClass");
}

void CIMOMHandle::modifyClass(const OperationContext&, const CIMNamespaceName&, const CIMClass&) {
    refuse(_rep, "modifyClass");
}

void CIMOMHandle::deleteClass(const OperationContext&, const CIMNamespaceName&, const CIMName&) {
    refuse(_rep, "deleteClass");
}

CIMInstance CIMOMHandle::getInstance(const OperationContext& context,
                                     const CIMNamespaceName& nameSpace,
                                     const CIMObjectPath& instanceName, Boolean localOnly,
                                     Boolean includeQualifiers, Boolean includeClassOrigin,
                                     const CIMPropertyList& propertyList) {
    Operation operation =
        of(OperationKind::GetInstance, context, nameSpace, &Operation::objectName, instanceName);
    operation.localOnly = localOnly;
    include(operation, includeQualifiers, includeClassOrigin, propertyList);
    return onlyOf<CIMInstance>(serverOf(_rep).perform(operation));
}

Array<CIMInstance>
CIMOMHandle::enumerateInstances(const OperationContext& context, const CIMNamespaceName& nameSpace,
                                const CIMName& className, Boolean deepInheritance,
                                Boolean localOnly, Boolean includeQualifiers,
                                Boolean includeClassOrigin, const CIMPropertyList& propertyList) {
    Operation operation =
        of(OperationKind::EnumerateInstances, context, nameSpace, &Operation::className, className);
    operation.deepInheritance = deepInheritance;
    operation.localOnly = localOnly;
    include(operation, includeQualifiers, includeClassOrigin, propertyList);
    return allOf<CIMInstance>(serverOf(_rep).perform(operation));
}

Array<CIMObjectPath> CIMOMHandle::enumerateInstanceNames(const OperationContext& context,
                                                         const CIMNamespaceName& nameSpace,
                                                         const CIMName& className) {
    return allOf<CIMObjectPath>(
        serverOf(_rep).perform(of(OperationKind::EnumerateInstanceNames, context, nameSpace,
                                  &Operation::className, className)));
}

CIMObjectPath CIMOMHandle::createInstance(const OperationContext& context,
                                          const CIMNamespaceName& nameSpace,
                                          const CIMInstance& newInstance) {
    return onlyOf<CIMObjectPath>(serverOf(_rep).perform(
        of(OperationKind::CreateInstance, context, nameSpace, &Operation::instance, newInstance)));
}

void CIMOMHandle::modifyInstance(const OperationContext& context, const CIMNamespaceName& nameSpace,
                                 const CIMInstance& modifiedInstance, Boolean includeQualifiers,
                                 const CIMPropertyList& propertyList) {
    Operation operation = of(OperationKind::ModifyInstance, context, nameSpace,
                             &Operation::instance, modifiedInstance);
    operation.includeQualifiers = includeQualifiers;
    operation.propertyList = propertyList;
    serverOf(_rep).perform(operation);
}

void CIMOMHandle::deleteInstance(const OperationContext& context, const CIMNamespaceName& nameSpace,
                                 const CIMObjectPath& instanceName) {
    serverOf(_rep).perform(of(OperationKind::DeleteInstance, context, nameSpace,
                              &Operation::objectName, instanceName));
}

Array<CIMObject> CIMOMHandle::execQuery(const OperationContext&, const CIMNamespaceName&,
                                        const String&, const String&) {
    refuse(_rep, "execQuery");
}

Array<CIMObject> CIMOMHandle::associators(const OperationContext& context,
                                          const CIMNamespaceName& nameSpace,
                                          const CIMObjectPath& objectName,
                                          const CIMName& assocClass, const CIMName& resultClass,
                                          const String& role, const String& resultRole,
                                          Boolean includeQualifiers, Boolean includeClassOrigin,
                                          const CIMPropertyList& propertyList) {
    Operation operation = leading(OperationKind::Associators, context, nameSpace, objectName,
                                  assocClass, resultClass, role, resultRole);
    include(operation, includeQualifiers, includeClassOrigin, propertyList);
    return allOf<CIMObject>(serverOf(_rep).perform(operation));
}

Array<CIMObjectPath> CIMOMHandle::associatorNames(const OperationContext& context,
                                                  const CIMNamespaceName& nameSpace,
                                                  const CIMObjectPath& objectName,
                                                  const CIMName& assocClass,
                                                  const CIMName& resultClass, const String& role,
                                                  const String& resultRole) {
    return allOf<CIMObjectPath>(
        serverOf(_rep).perform(leading(OperationKind::AssociatorNames, context, nameSpace,
                                       objectName, assocClass, resultClass, role, resultRole)));
}

Array<CIMObject> CIMOMHandle::references(const OperationContext& context,
                                         const CIMNamespaceName& nameSpace,
                                         const CIMObjectPath& objectName,
                                         const CIMName& resultClass, const String& role,
                                         Boolean includeQualifiers, Boolean includeClassOrigin,
                                         const CIMPropertyList& propertyList) {
    Operation operation = leading(OperationKind::References, context, nameSpace, objectName,
                                  CIMName(), resultClass, role, String());
    include(operation, includeQualifiers, includeClassOrigin, propertyList);
    return allOf<CIMObject>(serverOf(_rep).perform(operation));
}

Array<CIMObjectPath> CIMOMHandle::referenceNames(const OperationContext& context,
                                                 const CIMNamespaceName& nameSpace,
                                                 const CIMObjectPath& objectName,
                                                 const CIMName& resultClass, const String& role) {
    return allOf<CIMObjectPath>(
        serverOf(_rep).perform(leading(OperationKind::ReferenceNames, context, nameSpace,
                                       objectName, CIMName(), resultClass, role, String())));
}

CIMValue CIMOMHandle::getProperty(const OperationContext& context,
                                  const CIMNamespaceName& nameSpace,
                                  const CIMObjectPath& instanceName, const CIMName& propertyName) {
    Operation operation =
        of(OperationKind::GetProperty, context, nameSpace, &Operation::objectName, instanceName);
    operation.memberName = propertyName;
    return onlyOf<CIMValue>(serverOf(_rep).perform(operation));
}

void CIMOMHandle::setProperty(const OperationContext&, const CIMNamespaceName&,
                              const CIMObjectPath&, const CIMName&, const CIMValue&) {
    refuse(_rep, "setProperty");
}

CIMValue CIMOMHandle::invokeMethod(const OperationContext&, const CIMNamespaceName&,
                                   const CIMObjectPath&, const CIMName&,
                                   const Array<CIMParamValue>&, Array<CIMParamValue>&) {
    refuse(_rep, "invokeMethod");
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
