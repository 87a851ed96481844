#include "cimxml/Parameters.h"

#include "cimxml/Instances.h"
#include "cimxml/Names.h"
#include "cimxml/Operations.h"
#include "cimxml/Rejection.h"
#include "cimxml/Text.h"
#include "cimxml/Values.h"

#include <charconv>
#include <string>
#include <string_view>

namespace embedded::cimxml {

using namespace Pegasus;
using routing::Operation;

namespace {

using Read = void (*)(const Element& value, const SoleKey& soleKey, Call& call);

[[noreturn]] void throwInvalid(const std::string& message) {
    throw CIMException(CIM_ERR_INVALID_PARAMETER, fromUtf8(message));
}

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
        rejectNotValid(toUtf8(error.getMessage()));
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
    const std::string_view text = value.text();
    Uint32 count = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), count);
    if (text.empty() || error != std::errc() || end != text.data() + text.size())
        rejectNotValid("\"" + std::string(text) + "\" is no unsigned integer of 32 bits");
    return count;
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

struct Parameter {
    std::string_view name;
    std::string_view element; // that carries it
    Read read;
    bool Operation::*flag = nullptr; // that a default goes to
    std::string_view otherElement = {};
};

template <bool Operation::*member>
constexpr Parameter booleanParameter(std::string_view name) {
    return {name, "VALUE", readBooleanInto<member>, member};
}

// In the order of ParameterName.
constexpr Parameter allParameters[] = {
    {"ClassName", "CLASSNAME", readClassInto<&Operation::className>},
    {"InstanceName", "INSTANCENAME", readObjectName},
    {"ObjectName", "INSTANCENAME", readObjectName, nullptr, "CLASSNAME"},
    {"NewInstance", "INSTANCE", readNewInstance},
    {"ModifiedInstance", "VALUE.NAMEDINSTANCE", readModifiedInstance},
    {"AssocClass", "CLASSNAME", readClassInto<&Operation::assocClass>},
    {"ResultClass", "CLASSNAME", readClassInto<&Operation::resultClass>},
    {"Role", "VALUE", readStringInto<&Operation::role>},
    {"ResultRole", "VALUE", readStringInto<&Operation::resultRole>},
    {"PropertyName", "VALUE", readMemberName},
    {"QualifierName", "VALUE", readMemberName},
    booleanParameter<&Operation::localOnly>("LocalOnly"),
    booleanParameter<&Operation::deepInheritance>("DeepInheritance"),
    booleanParameter<&Operation::includeQualifiers>("IncludeQualifiers"),
    booleanParameter<&Operation::includeClassOrigin>("IncludeClassOrigin"),
    {"PropertyList", "VALUE.ARRAY", readPropertyList},
    {"FilterQueryLanguage", "VALUE", readFilter},
    {"FilterQuery", "VALUE", readFilter},
    {"OperationTimeout", "VALUE", readTimeOut},
    {"ContinueOnError", "VALUE", readContinuing},
    {"MaxObjectCount", "VALUE", readMaximum},
    {"EnumerationContext", "VALUE", readContext},
};

const Parameter& parameterOf(const TakenParameter& taken) {
    return allParameters[static_cast<std::size_t>(taken.name)];
}

// What became of a parameter in one request: in it, and with a value.
struct Fate {
    bool seen = false;
    bool given = false;
};

void readOne(const Element& given, const ParameterList& parameters, std::vector<Fate>& fates,
             const SoleKey& soleKey, Call& call) {
    const std::string_view name = given.attribute("NAME").value;
    for (std::size_t i = 0; i < parameters.size(); ++i) {
        const Parameter& parameter = parameterOf(parameters[i]);
        if (!equalIgnoringCase(name, parameter.name))
            continue;
        if (fates[i].seen)
            throwInvalid("Duplicated request input parameter.");
        fates[i].seen = true;
        const Element value = given.child();
        if (!value)
            return; // null: as if it were not there
        if (value.name() != parameter.element && value.name() != parameter.otherElement)
            rejectNotValid("parameter " + std::string(name) + " as " + std::string(value.name()));
        fates[i].given = true;
        parameter.read(value, soleKey, call);
        return;
    }
    throw CIMException(
        CIM_ERR_NOT_SUPPORTED,
        fromUtf8("Unrecognized or invalid request input parameter \"" + std::string(name) + "\""));
}

} // namespace

void readParameters(const Element& element, const ParameterList& parameters, const SoleKey& soleKey,
                    Call& call) {
    for (const TakenParameter& taken : parameters)
        if (taken.presence == Presence::TrueIfAbsent)
            call.operation.*parameterOf(taken).flag = true;
    std::vector<Fate> fates(parameters.size());
    try {
        for (const Element& given : element.children("IPARAMVALUE"))
            readOne(given, parameters, fates, soleKey, call);
    } catch (const CIMException&) {
        throw;
    } catch (const Exception& exception) {
        // The object model refuses it: a property twice, an illegal host, a wrong array size, ...
        throw CIMException(CIM_ERR_INVALID_PARAMETER, exception.getMessage());
    }
    for (std::size_t i = 0; i < parameters.size(); ++i) {
        if (parameters[i].presence == Presence::Required && !fates[i].given) {
            throwInvalid("Required parameter \"" + std::string(parameterOf(parameters[i]).name) +
                         "\" missing from request.");
        }
    }
}

} // namespace embedded::cimxml
