#include "cimxml/Operations.h"

#include "cimxml/Arguments.h"
#include "cimxml/Text.h"
#include "cimxml/Writer.h"

#include <string_view>

namespace embedded::cimxml {

using namespace Pegasus;

namespace {

struct Call {
    const host::Caller& caller;
    const CIMNamespaceName& nameSpace;
    const Arguments& arguments;
    host::CimOperations& operations;
};

// What stands in the IRETURNVALUE.
struct Returned {
    std::string content;
    unsigned legs = 1;
};

struct Operation {
    std::string_view name;
    std::string_view parameters; // see readArguments()
    Returned (*answer)(const Call& call);
};

template <class Append>
Returned one(const Append& append) {
    Returned returned;
    append(returned.content);
    return returned;
}

template <class T, class Append>
Returned all(const Array<T>& objects, unsigned legs, const Append& append) {
    Returned returned;
    returned.legs = legs;
    for (Uint32 i = 0; i < objects.size(); ++i) {
        append(returned.content, objects[i]);
    }
    return returned;
}

template <class T, class Append>
Returned all(const host::Answer<T>& answer, const Append& append) {
    return all(answer.objects, answer.legs, append);
}

InstanceFilter filterOf(const Arguments& arguments) {
    return {arguments.includeQualifiers, arguments.includeClassOrigin, arguments.propertyList};
}

void appendObjectWithPath(std::string& out, const CIMObject& object, const InstanceFilter& filter) {
    appendElement(out, "VALUE.OBJECTWITHPATH", [&] {
        (object.isClass() ? appendClassPath : appendInstancePath)(out, object.getPath());
        appendObject(out, object, filter);
    });
}

// Names of classes answer a question about a class. A client that wrote its class as an
// INSTANCENAME without keys gets theirs in that form, too: wbemcli, for one, reads no CLASSPATH.
Returned allObjectPaths(const Call& call, const host::Answer<CIMObjectPath>& answer) {
    const auto append = call.arguments.objectIsClass ? appendClassPath : appendInstancePath;
    return all(answer, [&](std::string& out, const CIMObjectPath& path) {
        appendElement(out, "OBJECTPATH", [&] { append(out, path); });
    });
}

void appendNamedInstance(std::string& out, const CIMInstance& instance,
                         const InstanceFilter& filter) {
    appendElement(out, "VALUE.NAMEDINSTANCE", [&] {
        appendInstanceName(out, instance.getPath());
        appendInstance(out, instance, filter);
    });
}

Returned getClass(const Call& call) {
    const Arguments& a = call.arguments;
    const CIMClass found =
        call.operations.getClass(call.caller, call.nameSpace, a.className, a.localOnly,
                                 a.includeQualifiers, a.includeClassOrigin, a.propertyList);
    return one([&](std::string& out) { appendClass(out, found); });
}

Returned enumerateClasses(const Call& call) {
    const Arguments& a = call.arguments;
    return all(call.operations.enumerateClasses(call.caller, call.nameSpace, a.className,
                                                a.deepInheritance, a.localOnly, a.includeQualifiers,
                                                a.includeClassOrigin),
               1, [](std::string& out, const CIMClass& found) { appendClass(out, found); });
}

Returned enumerateClassNames(const Call& call) {
    const Arguments& a = call.arguments;
    return all(call.operations.enumerateClassNames(call.caller, call.nameSpace, a.className,
                                                   a.deepInheritance),
               1, appendClassName);
}

Returned getInstance(const Call& call) {
    const Arguments& a = call.arguments;
    const CIMInstance found =
        call.operations.getInstance(call.caller, call.nameSpace, a.instanceName,
                                    a.includeQualifiers, a.includeClassOrigin, a.propertyList);
    return one([&](std::string& out) { appendInstance(out, found, filterOf(a)); });
}

Returned enumerateInstances(const Call& call) {
    const Arguments& a = call.arguments;
    const InstanceFilter filter = filterOf(a);
    return all(call.operations.enumerateInstances(call.caller, call.nameSpace, a.className,
                                                  a.deepInheritance, a.includeQualifiers,
                                                  a.includeClassOrigin, a.propertyList),
               [&](std::string& out, const CIMInstance& found) {
                   appendNamedInstance(out, found, filter);
               });
}

Returned enumerateInstanceNames(const Call& call) {
    return all(call.operations.enumerateInstanceNames(call.caller, call.nameSpace,
                                                      call.arguments.className),
               appendInstanceName);
}

Returned createInstance(const Call& call) {
    const CIMObjectPath created =
        call.operations.createInstance(call.caller, call.nameSpace, call.arguments.instance);
    return one([&](std::string& out) { appendInstanceName(out, created); });
}

Returned modifyInstance(const Call& call) {
    const Arguments& a = call.arguments;
    call.operations.modifyInstance(call.caller, call.nameSpace, a.instance, a.includeQualifiers,
                                   a.propertyList);
    return {};
}

Returned deleteInstance(const Call& call) {
    call.operations.deleteInstance(call.caller, call.nameSpace, call.arguments.instanceName);
    return {};
}

Returned getProperty(const Call& call) {
    const Arguments& a = call.arguments;
    const CIMValue value =
        call.operations.getProperty(call.caller, call.nameSpace, a.instanceName, a.propertyName);
    return one([&](std::string& out) { appendValue(out, value); });
}

Returned associators(const Call& call) {
    const Arguments& a = call.arguments;
    const InstanceFilter filter = filterOf(a);
    return all(call.operations.associators(call.caller, call.nameSpace, a.objectName, a.assocClass,
                                           a.resultClass, a.role, a.resultRole, a.includeQualifiers,
                                           a.includeClassOrigin, a.propertyList),
               [&](std::string& out, const CIMObject& found) {
                   appendObjectWithPath(out, found, filter);
               });
}

Returned associatorNames(const Call& call) {
    const Arguments& a = call.arguments;
    return allObjectPaths(
        call, call.operations.associatorNames(call.caller, call.nameSpace, a.objectName,
                                              a.assocClass, a.resultClass, a.role, a.resultRole));
}

Returned references(const Call& call) {
    const Arguments& a = call.arguments;
    const InstanceFilter filter = filterOf(a);
    return all(call.operations.references(call.caller, call.nameSpace, a.objectName, a.resultClass,
                                          a.role, a.includeQualifiers, a.includeClassOrigin,
                                          a.propertyList),
               [&](std::string& out, const CIMObject& found) {
                   appendObjectWithPath(out, found, filter);
               });
}

Returned referenceNames(const Call& call) {
    const Arguments& a = call.arguments;
    return allObjectPaths(call,
                          call.operations.referenceNames(call.caller, call.nameSpace, a.objectName,
                                                         a.resultClass, a.role));
}

Returned getQualifier(const Call& call) {
    const CIMQualifierDecl found =
        call.operations.getQualifier(call.caller, call.nameSpace, call.arguments.qualifierName);
    return one([&](std::string& out) { appendQualifierDeclaration(out, found); });
}

Returned enumerateQualifiers(const Call& call) {
    return all(call.operations.enumerateQualifiers(call.caller, call.nameSpace), 1,
               appendQualifierDeclaration);
}

// DSP0200 clause 5.3.2, the defaults included. LocalOnly of the instance operations is deprecated
// there and has no effect here, but clients send it.
constexpr Operation served[] = {
    {"GetClass", "ClassName! LocalOnly=TRUE IncludeQualifiers=TRUE IncludeClassOrigin PropertyList",
     getClass},
    {"EnumerateClasses",
     "ClassName DeepInheritance LocalOnly=TRUE IncludeQualifiers=TRUE IncludeClassOrigin",
     enumerateClasses},
    {"EnumerateClassNames", "ClassName DeepInheritance", enumerateClassNames},
    {"GetInstance",
     "InstanceName! LocalOnly=TRUE IncludeQualifiers IncludeClassOrigin PropertyList", getInstance},
    {"EnumerateInstances",
     "ClassName! LocalOnly=TRUE DeepInheritance=TRUE IncludeQualifiers IncludeClassOrigin "
     "PropertyList",
     enumerateInstances},
    {"EnumerateInstanceNames", "ClassName!", enumerateInstanceNames},
    {"CreateInstance", "NewInstance!", createInstance},
    {"ModifyInstance", "ModifiedInstance! IncludeQualifiers=TRUE PropertyList", modifyInstance},
    {"DeleteInstance", "InstanceName!", deleteInstance},
    {"GetProperty", "InstanceName! PropertyName!", getProperty},
    {"Associators",
     "ObjectName! AssocClass ResultClass Role ResultRole IncludeQualifiers IncludeClassOrigin "
     "PropertyList",
     associators},
    {"AssociatorNames", "ObjectName! AssocClass ResultClass Role ResultRole", associatorNames},
    {"References", "ObjectName! ResultClass Role IncludeQualifiers IncludeClassOrigin PropertyList",
     references},
    {"ReferenceNames", "ObjectName! ResultClass Role", referenceNames},
    {"GetQualifier", "QualifierName!", getQualifier},
    {"EnumerateQualifiers", "", enumerateQualifiers},
};

// Operations that DSP0200 has and this server has not.
constexpr std::string_view notServed[] = {
    "CreateClass",
    "ModifyClass",
    "DeleteClass",
    "SetProperty",
    "SetQualifier",
    "DeleteQualifier",
    "ExecQuery",
    "OpenEnumerateInstances",
    "OpenEnumerateInstancePaths",
    "OpenReferenceInstances",
    "OpenReferenceInstancePaths",
    "OpenAssociatorInstances",
    "OpenAssociatorInstancePaths",
    "OpenQueryInstances",
    "PullInstancesWithPath",
    "PullInstancePaths",
    "PullInstances",
    "CloseEnumeration",
    "EnumerationCount",
};

bool isNamed(const Request& request, std::string_view name) {
    return String::equalNoCase(fromUtf8(request.method), fromUtf8(name));
}

const Operation& operationOf(const Request& request) {
    for (const Operation& operation : served) {
        if (isNamed(request, operation.name)) {
            return operation;
        }
    }
    for (const std::string_view name : notServed) {
        if (isNamed(request, name)) {
            throw CIMException(CIM_ERR_NOT_SUPPORTED,
                               fromUtf8("This server does not support " + std::string(name) + "."));
        }
    }
    throw CIMException(CIM_ERR_NOT_SUPPORTED,
                       fromUtf8("Unrecognized intrinsic method: " + request.method));
}

} // namespace

std::string answerIntrinsic(const Request& request, const host::Caller& caller,
                            host::CimOperations& operations) {
    const Operation& operation = operationOf(request);
    const SoleKey soleKey = [&](const CIMName& className) {
        const CIMClass found = operations.getClass(caller, request.nameSpace, className, false,
                                                   true, false, CIMPropertyList());
        Array<CIMName> keys;
        found.getKeyNames(keys);
        if (keys.size() != 1) {
            throw CIMException(CIM_ERR_INVALID_PARAMETER,
                               String("A key value of class ") + className.getString() +
                                   String(" needs its name: the class has not exactly one key."));
        }
        return keys[0];
    };
    const Arguments arguments = readArguments(request.call, operation.parameters, soleKey);
    const Returned returned =
        operation.answer(Call{caller, request.nameSpace, arguments, operations});

    std::string content;
    if (!returned.content.empty() || returned.legs > 1) {
        appendElement(content, "IRETURNVALUE", [&] { content += returned.content; });
    }
    return content;
}

void answerExtrinsic(const Request& request, const host::Caller& caller,
                     host::CimOperations& operations) {
    const CIMClass found = operations.getClass(caller, request.nameSpace, request.className, false,
                                               false, false, CIMPropertyList());
    const String method = fromUtf8(request.method);
    if (found.findMethod(CIMName(method)) == PEG_NOT_FOUND) {
        throw CIMException(CIM_ERR_METHOD_NOT_FOUND, method);
    }
    throw CIMException(CIM_ERR_METHOD_NOT_AVAILABLE,
                       String("No provider for method ") + method + String(" of class ") +
                           request.className.getString() + String("."));
}

} // namespace embedded::cimxml
