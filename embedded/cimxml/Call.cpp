#include "cimxml/Call.h"

#include "cimxml/Objects.h"
#include "embedding/Text.h"
#include "text/Ascii.h"

#include <optional>
#include <string_view>
#include <utility>
#include <vector>

namespace embedded::cimxml {

using namespace Pegasus;
using namespace Pegasus::embedding;
using text::equalIgnoringCase;

namespace {

// The intrinsic operations and their parameters (DSP0200 clause 5.3.2).

struct Parameter {
    std::string_view name;
    std::string_view element; // that carries it
    void (*read)(const Element& value, const SoleKey& soleKey, Call& call);
    bool Operation::*flag = nullptr; // that a default goes to
    std::string_view otherElement = {};
};

enum class Presence { Optional, Required, TrueIfAbsent };

// A parameter as one operation takes it.
struct TakenParameter {
    constexpr TakenParameter(const Parameter& taken, Presence how = Presence::Optional)
        : parameter(taken), presence(how) {}

    Parameter parameter;
    Presence presence;
};

using ParameterList = std::vector<TakenParameter>;

// An operation as DSP0200 clause 5.3.2 declares it.
struct Signature {
    std::string_view name;
    OperationKind kind; // of what is pulled, as far as the operation says it
    ParameterList parameters;
    PullStep step = PullStep::None;
};

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

CIMName readClassName(const Element& value) { return readName(value.attribute("NAME")); }

String readString(const Element& value) { return fromUtf8(value.text()); }

std::string readContext(const Element& value) { return std::string(value.text()); }

// An unsigned integer of 32 bits, as the parameters of pulled enumerations have it.
Uint32 readCount(const Element& value) {
    const std::optional<Uint32> count = readUint32(value.text());
    if (!count)
        rejectNotValid("\"" + std::string(value.text()) + "\" is no unsigned integer of 32 bits");
    return *count;
}

std::chrono::seconds readSeconds(const Element& value) {
    return std::chrono::seconds(readCount(value));
}

// What most parameters are: a member of a part of the call.
template <auto part, auto member, auto read>
void readInto(const Element& value, const SoleKey&, Call& call) {
    call.*part.*member = read(value);
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

void readFilter(const Element& value, const SoleKey&, Call& call) {
    call.pulled.isFiltered = call.pulled.isFiltered || !value.text().empty();
}

template <auto member, auto read>
constexpr Parameter ofOperation(std::string_view name, std::string_view element) {
    return {name, element, readInto<&Call::operation, member, read>};
}

template <auto member, auto read>
constexpr Parameter ofPull(std::string_view name) {
    return {name, "VALUE", readInto<&Call::pulled, member, read>};
}

template <bool Operation::*member>
constexpr Parameter flag(std::string_view name) {
    return {name, "VALUE", readInto<&Call::operation, member, readBooleanText>, member};
}

// A name means the same in every operation that has it.
constexpr Parameter className =
    ofOperation<&Operation::className, readClassName>("ClassName", "CLASSNAME");
constexpr Parameter instanceName{"InstanceName", "INSTANCENAME", readObjectName};
constexpr Parameter objectName{"ObjectName", "INSTANCENAME", readObjectName, nullptr, "CLASSNAME"};
constexpr Parameter newInstance{"NewInstance", "INSTANCE", readNewInstance};
constexpr Parameter modifiedInstance{"ModifiedInstance", "VALUE.NAMEDINSTANCE",
                                     readModifiedInstance};
constexpr Parameter assocClass =
    ofOperation<&Operation::assocClass, readClassName>("AssocClass", "CLASSNAME");
constexpr Parameter resultClass =
    ofOperation<&Operation::resultClass, readClassName>("ResultClass", "CLASSNAME");
constexpr Parameter role = ofOperation<&Operation::role, readString>("Role", "VALUE");
constexpr Parameter resultRole =
    ofOperation<&Operation::resultRole, readString>("ResultRole", "VALUE");
constexpr Parameter propertyName =
    ofOperation<&Operation::memberName, readNameText>("PropertyName", "VALUE");
constexpr Parameter qualifierName =
    ofOperation<&Operation::memberName, readNameText>("QualifierName", "VALUE");
constexpr Parameter localOnly = flag<&Operation::localOnly>("LocalOnly");
constexpr Parameter deepInheritance = flag<&Operation::deepInheritance>("DeepInheritance");
constexpr Parameter includeQualifiers = flag<&Operation::includeQualifiers>("IncludeQualifiers");
constexpr Parameter includeClassOrigin = flag<&Operation::includeClassOrigin>("IncludeClassOrigin");
constexpr Parameter propertyList{"PropertyList", "VALUE.ARRAY", readPropertyList};
constexpr Parameter filterQueryLanguage{"FilterQueryLanguage", "VALUE", readFilter};
constexpr Parameter filterQuery{"FilterQuery", "VALUE", readFilter};
constexpr Parameter operationTimeout = ofPull<&Pulled::timeOut, readSeconds>("OperationTimeout");
constexpr Parameter continueOnError =
    ofPull<&Pulled::continuesOnError, readBooleanText>("ContinueOnError");
constexpr Parameter maxObjectCount = ofPull<&Pulled::maximum, readCount>("MaxObjectCount");
constexpr Parameter enumerationContext =
    ofPull<&Pulled::context, readContext>("EnumerationContext");

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

// The row of the operation `method`, ignoring case.
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

// Reads the IPARAMVALUEs of `element`, an IMETHODCALL that takes `parameters`, into `call`.
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

// In the order of the statuses in DSP0200 1.4, clause 5.3.2.24.
void checkOpening(const Call& call) {
    const Pulled& pulled = call.pulled;
    const CIMObjectPath& source = call.operation.objectName;
    if (!source.getClassName().isNull() && source.getKeyBindings().size() == 0)
        throw CIMException(CIM_ERR_INVALID_PARAMETER,
                           "InstanceName needs the keys of an instance.");
    if (pulled.timeOut.count() == 0 || pulled.timeOut > limits::enumerationLongest)
        throw CIMException(CIM_ERR_INVALID_OPERATION_TIMEOUT,
                           fromUtf8("OperationTimeout is from 1 to " +
                                    std::to_string(limits::enumerationLongest.count()) +
                                    " seconds."));
    if (pulled.continuesOnError)
        throw CIMException(CIM_ERR_CONTINUATION_ON_ERROR_NOT_SUPPORTED,
                           "This server does not continue an enumeration after an error.");
    if (pulled.isFiltered)
        throw CIMException(CIM_ERR_FILTERED_ENUMERATION_NOT_SUPPORTED,
                           "This server does not filter enumerations by queries.");
}

} // namespace

Call readCall(const Request& request, const routing::Caller& caller,
              routing::CimOperations& operations) {
    const Signature& signature = signatureOf(request.method);
    const SoleKey soleKey = [&](const CIMName& keyed) {
        const std::vector<CIMName> keys = operations.keyNames(request.nameSpace, keyed);
        if (keys.size() != 1)
            throw CIMException(CIM_ERR_INVALID_PARAMETER,
                               String("A key value of class ") + keyed.getString() +
                                   String(" needs its name: the class has not exactly one key."));
        return keys[0];
    };
    Call call;
    call.operation.kind = signature.kind;
    call.operation.caller = caller;
    call.operation.nameSpace = request.nameSpace;
    call.operation.fullPaths = signature.step == PullStep::Open;
    call.pulled.step = signature.step;
    readParameters(request.call, signature.parameters, soleKey, call);
    if (signature.step == PullStep::Open)
        checkOpening(call);
    return call;
}

} // namespace embedded::cimxml
