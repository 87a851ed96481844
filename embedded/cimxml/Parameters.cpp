#include "cimxml/Parameters.h"

#include "cimxml/Operations.h"
#include "embedding/Text.h"
#include "text/Ascii.h"

#include <string>
#include <string_view>

namespace embedded::cimxml {

using namespace Pegasus;
using namespace Pegasus::embedding;
using text::equalIgnoringCase;

namespace {

CIMName readNameText(const Element& value) {
    const std::string_view text = value.text();
    const String name = fromUtf8(text);
    if (!CIMName::legal(name))
        throwInvalid("The CIM name is not valid: " + std::string(text));
    return CIMName(name);
}

bool readBooleanText(const Element& value) {
    try {
        return readBoolean(value.text());
    } catch (const CIMException& error) { // of a parameter, it makes the whole request invalid
        rejectNotValid(utf8(error.getMessage()));
    }
}

template <bool Operation::*member>
void readBooleanInto(const Element& value, const SoleKey&, Call& call) {
    call.operation.*member = readBooleanText(value);
}

template <CIMName Operation::*member>
void readClassInto(const Element& value, const SoleKey&, Call& call) {
    call.operation.*member = readName(value.attribute("NAME"));
}

void readMemberName(const Element& value, const SoleKey&, Call& call) {
    call.operation.memberName = readNameText(value);
}

template <String Operation::*member>
void readStringInto(const Element& value, const SoleKey&, Call& call) {
    call.operation.*member = fromUtf8(value.text());
}

void readObjectName(const Element& value, const SoleKey& soleKey, Call& call) {
    call.objectIsClass = value.name() == "CLASSNAME";
    if (call.objectIsClass)
        call.operation.objectName.setClassName(readName(value.attribute("NAME")));
    else
        call.operation.objectName = readInstanceName(value, soleKey);
}

void readNewInstance(const Element& value, const SoleKey& soleKey, Call& call) {
    call.operation.instance = readInstance(value, soleKey);
}

void readModifiedInstance(const Element& value, const SoleKey& key, Call& call) {
    call.operation.instance = readNamedInstance(value, key);
}

void readPropertyList(const Element& value, const SoleKey&, Call& call) {
    Array<String> names;
    for (const Element& item : value.children())
        names.append(readNameText(item).getString()); // a VALUE.NULL is no name
    call.operation.propertyList.append(names);        // each once
}

// An unsigned integer of 32 bits, as the parameters of pulled enumerations have it.
Uint32 readCount(const Element& value) {
    const std::optional<Uint32> count = readUint32(value.text());
    if (!count)
        rejectNotValid("\"" + std::string(value.text()) + "\" is no unsigned integer of 32 bits");
    return *count;
}

void readFilter(const Element& value, const SoleKey&, Call& call) {
    call.pulled.isFiltered = call.pulled.isFiltered || !value.text().empty();
}

void readTimeOut(const Element& value, const SoleKey&, Call& call) {
    call.pulled.timeOut = std::chrono::seconds(readCount(value));
}

void readContinuing(const Element& value, const SoleKey&, Call& call) {
    call.pulled.continuesOnError = readBooleanText(value);
}

void readMaximum(const Element& value, const SoleKey&, Call& call) {
    call.pulled.maximum = readCount(value);
}

void readContext(const Element& value, const SoleKey&, Call& call) {
    call.pulled.context = value.text();
}

template <bool Operation::*member>
constexpr Parameter booleanParameter(std::string_view name) {
    return {name, "VALUE", readBooleanInto<member>, member};
}

// A name means the same in every operation that has it.
constexpr Parameter className{"ClassName", "CLASSNAME", readClassInto<&Operation::className>};
constexpr Parameter instanceName{"InstanceName", "INSTANCENAME", readObjectName};
constexpr Parameter objectName{"ObjectName", "INSTANCENAME", readObjectName, nullptr, "CLASSNAME"};
constexpr Parameter newInstance{"NewInstance", "INSTANCE", readNewInstance};
constexpr Parameter modifiedInstance{"ModifiedInstance", "VALUE.NAMEDINSTANCE",
                                     readModifiedInstance};
constexpr Parameter assocClass{"AssocClass", "CLASSNAME", readClassInto<&Operation::assocClass>};
constexpr Parameter resultClass{"ResultClass", "CLASSNAME", readClassInto<&Operation::resultClass>};
constexpr Parameter role{"Role", "VALUE", readStringInto<&Operation::role>};
constexpr Parameter resultRole{"ResultRole", "VALUE", readStringInto<&Operation::resultRole>};
constexpr Parameter propertyName{"PropertyName", "VALUE", readMemberName};
constexpr Parameter qualifierName{"QualifierName", "VALUE", readMemberName};
constexpr Parameter localOnly = booleanParameter<&Operation::localOnly>("LocalOnly");
constexpr Parameter deepInheritance =
    booleanParameter<&Operation::deepInheritance>("DeepInheritance");
constexpr Parameter includeQualifiers =
    booleanParameter<&Operation::includeQualifiers>("IncludeQualifiers");
constexpr Parameter includeClassOrigin =
    booleanParameter<&Operation::includeClassOrigin>("IncludeClassOrigin");
constexpr Parameter propertyList{"PropertyList", "VALUE.ARRAY", readPropertyList};
constexpr Parameter filterQueryLanguage{"FilterQueryLanguage", "VALUE", readFilter};
constexpr Parameter filterQuery{"FilterQuery", "VALUE", readFilter};
constexpr Parameter operationTimeout{"OperationTimeout", "VALUE", readTimeOut};
constexpr Parameter continueOnError{"ContinueOnError", "VALUE", readContinuing};
constexpr Parameter maxObjectCount{"MaxObjectCount", "VALUE", readMaximum};
constexpr Parameter enumerationContext{"EnumerationContext", "VALUE", readContext};

constexpr TakenParameter required(const Parameter& parameter) {
    return {parameter, Presence::Required};
}
constexpr TakenParameter on(const Parameter& parameter) {
    return {parameter, Presence::TrueIfAbsent};
}

/// An operation that opens an enumeration: its own parameters, and those that all have.
Signature opening(std::string_view name, OperationKind kind, ParameterList parameters) {
    parameters.insert(parameters.end(), {filterQueryLanguage, filterQuery, operationTimeout,
                                         continueOnError, maxObjectCount});
    return {name, kind, std::move(parameters), PullStep::Open};
}

// DSP0200 clause 5.3.2, the defaults included. LocalOnly of the instance operations is deprecated
// there and has no effect here, but clients send it.
const std::vector<Signature>& served() {
    static const std::vector<Signature> rows = {
        {"GetClass",
         OperationKind::GetClass,
         {required(className), on(localOnly), on(includeQualifiers), includeClassOrigin,
          propertyList}},
        {"EnumerateClasses",
         OperationKind::EnumerateClasses,
         {className, deepInheritance, on(localOnly), on(includeQualifiers), includeClassOrigin}},
        {"EnumerateClassNames", OperationKind::EnumerateClassNames, {className, deepInheritance}},
        {"GetInstance",
         OperationKind::GetInstance,
         {required(instanceName), on(localOnly), includeQualifiers, includeClassOrigin,
          propertyList}},
        {"EnumerateInstances",
         OperationKind::EnumerateInstances,
         {required(className), on(localOnly), on(deepInheritance), includeQualifiers,
          includeClassOrigin, propertyList}},
        {"EnumerateInstanceNames", OperationKind::EnumerateInstanceNames, {required(className)}},
        {"CreateInstance", OperationKind::CreateInstance, {required(newInstance)}},
        {"ModifyInstance",
         OperationKind::ModifyInstance,
         {required(modifiedInstance), on(includeQualifiers), propertyList}},
        {"DeleteInstance", OperationKind::DeleteInstance, {required(instanceName)}},
        {"GetProperty",
         OperationKind::GetProperty,
         {required(instanceName), required(propertyName)}},
        {"Associators",
         OperationKind::Associators,
         {required(objectName), assocClass, resultClass, role, resultRole, includeQualifiers,
          includeClassOrigin, propertyList}},
        {"AssociatorNames",
         OperationKind::AssociatorNames,
         {required(objectName), assocClass, resultClass, role, resultRole}},
        {"References",
         OperationKind::References,
         {required(objectName), resultClass, role, includeQualifiers, includeClassOrigin,
          propertyList}},
        {"ReferenceNames",
         OperationKind::ReferenceNames,
         {required(objectName), resultClass, role}},
        {"GetQualifier", OperationKind::GetQualifier, {required(qualifierName)}},
        {"EnumerateQualifiers", OperationKind::EnumerateQualifiers, {}},
        opening("OpenEnumerateInstances", OperationKind::EnumerateInstances,
                {required(className), on(deepInheritance), includeClassOrigin, propertyList}),
        opening("OpenEnumerateInstancePaths", OperationKind::EnumerateInstanceNames,
                {required(className)}),
        opening("OpenReferenceInstances", OperationKind::References,
                {required(instanceName), resultClass, role, includeClassOrigin, propertyList}),
        opening("OpenReferenceInstancePaths", OperationKind::ReferenceNames,
                {required(instanceName), resultClass, role}),
        opening("OpenAssociatorInstances", OperationKind::Associators,
                {required(instanceName), assocClass, resultClass, role, resultRole,
                 includeClassOrigin, propertyList}),
        opening("OpenAssociatorInstancePaths", OperationKind::AssociatorNames,
                {required(instanceName), assocClass, resultClass, role, resultRole}),
        {"PullInstancesWithPath",
         OperationKind::EnumerateInstances,
         {required(enumerationContext), required(maxObjectCount)},
         PullStep::Pull},
        {"PullInstancePaths",
         OperationKind::EnumerateInstanceNames,
         {required(enumerationContext), required(maxObjectCount)},
         PullStep::Pull},
        {"CloseEnumeration",
         OperationKind::EnumerateInstances,
         {required(enumerationContext)},
         PullStep::Close},
    };
    return rows;
}

// Operations that DSP0200 has and this server has not.
constexpr std::string_view notServed[] = {
    "CreateClass",     "ModifyClass", "DeleteClass",        "SetProperty",   "SetQualifier",
    "DeleteQualifier", "ExecQuery",   "OpenQueryInstances", "PullInstances", "EnumerationCount",
};

// What became of a parameter in one request: in it, and with a value.
struct Occurrence {
    bool seen = false;
    bool given = false;
};

void readOne(const Element& given, const ParameterList& parameters,
             std::vector<Occurrence>& occurrences, const SoleKey& soleKey, Call& call) {
    const std::string_view name = given.attribute("NAME").value;
    for (std::size_t i = 0; i < parameters.size(); ++i) {
        const Parameter& parameter = parameters[i].parameter;
        if (!equalIgnoringCase(name, parameter.name))
            continue;
        if (occurrences[i].seen)
            throwInvalid("Duplicated request input parameter.");
        occurrences[i].seen = true;
        const Element value = given.child();
        if (!value)
            return; // null: as if it were not there
        if (value.name() != parameter.element && value.name() != parameter.otherElement)
            rejectNotValid("parameter " + std::string(name) + " as " + std::string(value.name()));
        occurrences[i].given = true;
        parameter.read(value, soleKey, call);
        return;
    }
    throw CIMException(
        CIM_ERR_NOT_SUPPORTED,
        fromUtf8("Unrecognized or invalid request input parameter \"" + std::string(name) + "\""));
}

} // namespace

const Signature& signatureOf(const std::string& method) {
    for (const Signature& signature : served())
        if (equalIgnoringCase(method, signature.name))
            return signature;
    for (const std::string_view name : notServed)
        if (equalIgnoringCase(method, name))
            throw CIMException(CIM_ERR_NOT_SUPPORTED,
                               fromUtf8("This server does not support " + std::string(name) + "."));
    throw CIMException(CIM_ERR_NOT_SUPPORTED, fromUtf8("Unrecognized intrinsic method: " + method));
}

void readParameters(const Element& element, const ParameterList& parameters, const SoleKey& soleKey,
                    Call& call) {
    for (const TakenParameter& taken : parameters)
        if (taken.presence == Presence::TrueIfAbsent)
            call.operation.*taken.parameter.flag = true;
    std::vector<Occurrence> occurrences(parameters.size());
    try {
        for (const Element& given : element.children("IPARAMVALUE"))
            readOne(given, parameters, occurrences, soleKey, call);
    } catch (const CIMException&) {
        throw;
    } catch (const Exception& exception) {
        // The object model refuses it: a property twice, an illegal host, a wrong array size, ...
        throw CIMException(CIM_ERR_INVALID_PARAMETER, exception.getMessage());
    }
    for (std::size_t i = 0; i < parameters.size(); ++i) {
        if (parameters[i].presence == Presence::Required && !occurrences[i].given)
            throwInvalid("Required parameter \"" + std::string(parameters[i].parameter.name) +
                         "\" missing from request.");
    }
}

} // namespace embedded::cimxml
