#include "FakeOperations.h"

#include "cimxml/Text.h"

namespace embedded::cimxml::test {

using namespace Pegasus;
using host::Answer;
using host::Caller;

namespace {

std::string show(bool flag) {
    return flag ? "1" : "0";
}

std::string show(const String& text) {
    return text.size() == 0 ? "-" : toUtf8(text);
}

std::string show(const CIMName& name) {
    return name.isNull() ? "-" : toUtf8(name.getString());
}

std::string show(const CIMNamespaceName& name) {
    return toUtf8(name.getString());
}

std::string show(const CIMObjectPath& path) {
    return toUtf8(path.toString());
}

std::string show(const CIMPropertyList& list) {
    if (list.isNull()) {
        return "-";
    }
    std::string out = "[";
    for (Uint32 i = 0; i < list.size(); ++i) {
        out += (i == 0 ? "" : ",") + show(list[i]);
    }
    return out + "]";
}

std::string show(const CIMInstance& instance) {
    return show(instance.getPath());
}

} // namespace

template <class... Arguments>
void FakeOperations::record(const Caller& caller, const char* operation,
                            const Arguments&... arguments) {
    std::string line = operation;
    ((line += " " + show(arguments)), ...);
    calls.push_back(line);
    lastCaller = caller;
    if (failure) {
        throw *failure;
    }
}

CIMClass FakeOperations::getClass(const Caller& caller, const CIMNamespaceName& nameSpace,
                                  const CIMName& className, bool localOnly, bool includeQualifiers,
                                  bool includeClassOrigin, const CIMPropertyList& propertyList) {
    record(caller, "getClass", nameSpace, className, localOnly, includeQualifiers,
           includeClassOrigin, propertyList);
    return cimClass;
}

Array<CIMClass> FakeOperations::enumerateClasses(const Caller& caller,
                                                 const CIMNamespaceName& nameSpace,
                                                 const CIMName& className, bool deepInheritance,
                                                 bool localOnly, bool includeQualifiers,
                                                 bool includeClassOrigin) {
    record(caller, "enumerateClasses", nameSpace, className, deepInheritance, localOnly,
           includeQualifiers, includeClassOrigin);
    return classes;
}

Array<CIMName> FakeOperations::enumerateClassNames(const Caller& caller,
                                                   const CIMNamespaceName& nameSpace,
                                                   const CIMName& className, bool deepInheritance) {
    record(caller, "enumerateClassNames", nameSpace, className, deepInheritance);
    return classNames;
}

CIMInstance FakeOperations::getInstance(const Caller& caller, const CIMNamespaceName& nameSpace,
                                        const CIMObjectPath& instanceName, bool includeQualifiers,
                                        bool includeClassOrigin,
                                        const CIMPropertyList& propertyList) {
    record(caller, "getInstance", nameSpace, instanceName, includeQualifiers, includeClassOrigin,
           propertyList);
    return instance;
}

Answer<CIMInstance> FakeOperations::enumerateInstances(const Caller& caller,
                                                       const CIMNamespaceName& nameSpace,
                                                       const CIMName& className,
                                                       bool deepInheritance, bool includeQualifiers,
                                                       bool includeClassOrigin,
                                                       const CIMPropertyList& propertyList) {
    record(caller, "enumerateInstances", nameSpace, className, deepInheritance, includeQualifiers,
           includeClassOrigin, propertyList);
    return instances;
}

Answer<CIMObjectPath> FakeOperations::enumerateInstanceNames(const Caller& caller,
                                                             const CIMNamespaceName& nameSpace,
                                                             const CIMName& className) {
    record(caller, "enumerateInstanceNames", nameSpace, className);
    return paths;
}

CIMObjectPath FakeOperations::createInstance(const Caller& caller,
                                             const CIMNamespaceName& nameSpace,
                                             const CIMInstance& newInstance) {
    lastInstance = newInstance;
    record(caller, "createInstance", nameSpace, newInstance);
    return createdPath;
}

void FakeOperations::modifyInstance(const Caller& caller, const CIMNamespaceName& nameSpace,
                                    const CIMInstance& modifiedInstance, bool includeQualifiers,
                                    const CIMPropertyList& propertyList) {
    lastInstance = modifiedInstance;
    record(caller, "modifyInstance", nameSpace, modifiedInstance, includeQualifiers, propertyList);
}

void FakeOperations::deleteInstance(const Caller& caller, const CIMNamespaceName& nameSpace,
                                    const CIMObjectPath& instanceName) {
    record(caller, "deleteInstance", nameSpace, instanceName);
}

CIMValue FakeOperations::getProperty(const Caller& caller, const CIMNamespaceName& nameSpace,
                                     const CIMObjectPath& instanceName,
                                     const CIMName& propertyName) {
    record(caller, "getProperty", nameSpace, instanceName, propertyName);
    return value;
}

Answer<CIMObject> FakeOperations::associators(const Caller& caller,
                                              const CIMNamespaceName& nameSpace,
                                              const CIMObjectPath& objectName,
                                              const CIMName& assocClass, const CIMName& resultClass,
                                              const String& role, const String& resultRole,
                                              bool includeQualifiers, bool includeClassOrigin,
                                              const CIMPropertyList& propertyList) {
    record(caller, "associators", nameSpace, objectName, assocClass, resultClass, role, resultRole,
           includeQualifiers, includeClassOrigin, propertyList);
    return objects;
}

Answer<CIMObjectPath>
FakeOperations::associatorNames(const Caller& caller, const CIMNamespaceName& nameSpace,
                                const CIMObjectPath& objectName, const CIMName& assocClass,
                                const CIMName& resultClass, const String& role,
                                const String& resultRole) {
    record(caller, "associatorNames", nameSpace, objectName, assocClass, resultClass, role,
           resultRole);
    return paths;
}

Answer<CIMObject> FakeOperations::references(const Caller& caller,
                                             const CIMNamespaceName& nameSpace,
                                             const CIMObjectPath& objectName,
                                             const CIMName& resultClass, const String& role,
                                             bool includeQualifiers, bool includeClassOrigin,
                                             const CIMPropertyList& propertyList) {
    record(caller, "references", nameSpace, objectName, resultClass, role, includeQualifiers,
           includeClassOrigin, propertyList);
    return objects;
}

Answer<CIMObjectPath> FakeOperations::referenceNames(const Caller& caller,
                                                     const CIMNamespaceName& nameSpace,
                                                     const CIMObjectPath& objectName,
                                                     const CIMName& resultClass,
                                                     const String& role) {
    record(caller, "referenceNames", nameSpace, objectName, resultClass, role);
    return paths;
}

CIMQualifierDecl FakeOperations::getQualifier(const Caller& caller,
                                              const CIMNamespaceName& nameSpace,
                                              const CIMName& qualifierName) {
    record(caller, "getQualifier", nameSpace, qualifierName);
    return qualifier;
}

Array<CIMQualifierDecl> FakeOperations::enumerateQualifiers(const Caller& caller,
                                                            const CIMNamespaceName& nameSpace) {
    record(caller, "enumerateQualifiers", nameSpace);
    return qualifiers;
}

} // namespace embedded::cimxml::test
