#include "cimxml/Arguments.h"

#include "cimxml/ElementRules.h"
#include "cimxml/Instances.h"
#include "cimxml/Names.h"
#include "cimxml/Rejection.h"
#include "cimxml/Text.h"
#include "cimxml/Values.h"

#include <set>
#include <string>
#include <vector>

namespace embedded::cimxml {

using namespace Pegasus;

namespace {

using Read = void (*)(const pugi::xml_node& value, const SoleKey& soleKey, Arguments& arguments);

[[noreturn]] void throwInvalid(const std::string& message) {
    throw CIMException(CIM_ERR_INVALID_PARAMETER, fromUtf8(message));
}

CIMName readNameText(const pugi::xml_node& value) {
    const std::string text = textOf(value);
    const String name = fromUtf8(text);
    if (!CIMName::legal(name)) {
        throwInvalid("The CIM name is not valid: " + text);
    }
    return CIMName(name);
}

template <bool Arguments::*member>
void readBooleanInto(const pugi::xml_node& value, const SoleKey&, Arguments& arguments) {
    try {
        arguments.*member = readBoolean(textOf(value));
    } catch (const CIMException& error) { // of a parameter, it makes the whole request invalid
        rejectNotValid(toUtf8(error.getMessage()));
    }
}

template <CIMName Arguments::*member>
void readClassInto(const pugi::xml_node& value, const SoleKey&, Arguments& arguments) {
    arguments.*member = readName(value.attribute("NAME"));
}

template <CIMName Arguments::*member>
void readNameInto(const pugi::xml_node& value, const SoleKey&, Arguments& arguments) {
    arguments.*member = readNameText(value);
}

template <String Arguments::*member>
void readStringInto(const pugi::xml_node& value, const SoleKey&, Arguments& arguments) {
    arguments.*member = fromUtf8(textOf(value));
}

void readInstanceNameInto(const pugi::xml_node& value, const SoleKey& key, Arguments& arguments) {
    arguments.instanceName = readInstanceName(value, key);
}

void readObjectName(const pugi::xml_node& value, const SoleKey& soleKey, Arguments& arguments) {
    arguments.objectIsClass = std::string_view(value.name()) == "CLASSNAME";
    if (arguments.objectIsClass) {
        arguments.objectName.setClassName(readName(value.attribute("NAME")));
    } else {
        arguments.objectName = readInstanceName(value, soleKey);
    }
}

void readNewInstance(const pugi::xml_node& value, const SoleKey& soleKey, Arguments& arguments) {
    arguments.instance = readInstance(value, soleKey);
}

void readModifiedInstance(const pugi::xml_node& value, const SoleKey& key, Arguments& arguments) {
    arguments.instance = readNamedInstance(value, key);
}

void readPropertyList(const pugi::xml_node& value, const SoleKey&, Arguments& arguments) {
    Array<CIMName> names;
    std::set<std::string> seen;
    for (const pugi::xml_node& item : value.children()) {
        if (item.type() != pugi::node_element) {
            continue;
        }
        const CIMName name = readNameText(item); // a VALUE.NULL is no name
        String folded = name.getString();
        folded.toLower();
        if (seen.insert(toUtf8(folded)).second) {
            names.append(name);
        }
    }
    arguments.propertyList.set(names);
}

struct Parameter {
    std::string_view name;
    std::string_view element; // that carries it
    Read read;
    bool Arguments::*flag = nullptr; // that a default goes to
    std::string_view otherElement = {};
};

template <bool Arguments::*member>
constexpr Parameter booleanParameter(std::string_view name) {
    return {name, "VALUE", readBooleanInto<member>, member};
}

// A name means the same in every operation that has it.
constexpr Parameter allParameters[] = {
    {"ClassName", "CLASSNAME", readClassInto<&Arguments::className>},
    {"InstanceName", "INSTANCENAME", readInstanceNameInto},
    {"ObjectName", "INSTANCENAME", readObjectName, nullptr, "CLASSNAME"},
    {"NewInstance", "INSTANCE", readNewInstance},
    {"ModifiedInstance", "VALUE.NAMEDINSTANCE", readModifiedInstance},
    {"AssocClass", "CLASSNAME", readClassInto<&Arguments::assocClass>},
    {"ResultClass", "CLASSNAME", readClassInto<&Arguments::resultClass>},
    {"Role", "VALUE", readStringInto<&Arguments::role>},
    {"ResultRole", "VALUE", readStringInto<&Arguments::resultRole>},
    {"PropertyName", "VALUE", readNameInto<&Arguments::propertyName>},
    {"QualifierName", "VALUE", readNameInto<&Arguments::qualifierName>},
    booleanParameter<&Arguments::localOnly>("LocalOnly"),
    booleanParameter<&Arguments::deepInheritance>("DeepInheritance"),
    booleanParameter<&Arguments::includeQualifiers>("IncludeQualifiers"),
    booleanParameter<&Arguments::includeClassOrigin>("IncludeClassOrigin"),
    {"PropertyList", "VALUE.ARRAY", readPropertyList},
};

// A parameter as one operation takes it, and what became of it in one request.
struct Expected {
    const Parameter* parameter;
    bool required;
    bool seen = false;  // in the request, with or without a value
    bool given = false; // with a value
};

bool consumeSuffix(std::string_view& text, std::string_view suffix) {
    const bool found =
        text.size() > suffix.size() && text.substr(text.size() - suffix.size()) == suffix;
    text.remove_suffix(found ? suffix.size() : 0);
    return found;
}

// Also sets the defaults in `arguments`.
std::vector<Expected> expectedOf(std::string_view parameters, Arguments& arguments) {
    std::vector<Expected> expected;
    while (!parameters.empty()) {
        const std::size_t end = std::min(parameters.find(' '), parameters.size());
        std::string_view name = parameters.substr(0, end);
        parameters.remove_prefix(std::min(end + 1, parameters.size()));
        const bool required = consumeSuffix(name, "!");
        const bool defaultsToTrue = consumeSuffix(name, "=TRUE");
        for (const Parameter& parameter : allParameters) {
            if (parameter.name == name) {
                expected.push_back({&parameter, required});
                if (defaultsToTrue) {
                    arguments.*parameter.flag = true;
                }
            }
        }
    }
    return expected;
}

pugi::xml_node elementIn(const pugi::xml_node& node) {
    return node.find_child(
        [](const pugi::xml_node& child) { return child.type() == pugi::node_element; });
}

void readOne(const pugi::xml_node& given, std::vector<Expected>& expected, const SoleKey& soleKey,
             Arguments& arguments) {
    const std::string name = given.attribute("NAME").value();
    for (Expected& candidate : expected) {
        const Parameter& parameter = *candidate.parameter;
        if (!String::equalNoCase(fromUtf8(name), fromUtf8(parameter.name))) {
            continue;
        }
        if (candidate.seen) {
            throwInvalid("Duplicated request input parameter.");
        }
        candidate.seen = true;
        const pugi::xml_node value = elementIn(given);
        if (!value) {
            return; // null: as if it were not there
        }
        if (value.name() != parameter.element && value.name() != parameter.otherElement) {
            rejectNotValid("parameter " + name + " as " + value.name());
        }
        candidate.given = true;
        parameter.read(value, soleKey, arguments);
        return;
    }
    throw CIMException(
        CIM_ERR_NOT_SUPPORTED,
        fromUtf8("Unrecognized or invalid request input parameter \"" + name + "\""));
}

} // namespace

Arguments readArguments(const pugi::xml_node& call, std::string_view parameters,
                        const SoleKey& soleKey) {
    Arguments arguments;
    std::vector<Expected> expected = expectedOf(parameters, arguments);
    try {
        for (const pugi::xml_node& given : call.children("IPARAMVALUE")) {
            readOne(given, expected, soleKey, arguments);
        }
    } catch (const CIMException&) {
        throw;
    } catch (const Exception& exception) {
        // The object model refuses it: a property twice, an illegal host, a wrong array size, ...
        throw CIMException(CIM_ERR_INVALID_PARAMETER, exception.getMessage());
    }
    for (const Expected& parameter : expected) {
        if (parameter.required && !parameter.given) {
            throwInvalid("Required parameter \"" + std::string(parameter.parameter->name) +
                         "\" missing from request.");
        }
    }
    return arguments;
}

} // namespace embedded::cimxml
