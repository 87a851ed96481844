#include "repository/GivenInstance.h"

#include "repository/InstanceBuilder.h"
#include "repository/Qualifiers.h"

#include <Pegasus/Common/Exception.h>

#include <string>
#include <vector>

namespace embedded::repository {

namespace {

using Pegasus::CIMConstClass;
using Pegasus::CIMConstInstance;
using Pegasus::CIMConstProperty;
using Pegasus::CIMException;
using Pegasus::CIMInstance;
using Pegasus::CIMName;
using Pegasus::CIMPropertyList;
using Pegasus::CIMValue;
using Pegasus::String;
using Pegasus::Uint32;

/// Throws unless `given` has a value of the type of the property `declared`.
void checkType(const CIMConstProperty& declared, const CIMConstProperty& given) {
    const CIMValue& value = given.getValue();
    const Uint32 size = declared.getArraySize();
    if (declared.getValue().typeCompatible(value) &&
        (size == 0 || value.isNull() || value.getArraySize() == size)) {
        return;
    }
    String message = String("property ") + declared.getName().getString() + " takes a " +
                     Pegasus::cimTypeToString(declared.getType());
    if (declared.isArray()) {
        message.append(" array");
    }
    if (size != 0) {
        message.append(String((" of " + std::to_string(size)).c_str()));
    }
    throw CIMException(Pegasus::CIM_ERR_INVALID_PARAMETER, message);
}

/// Checks all properties of `given`; `unknown` is thrown for one that the class does not have.
template <class Unknown>
void checkGiven(const CIMConstClass& cimClass, const CIMConstInstance& given, Unknown unknown) {
    for (Uint32 i = 0; i < given.getPropertyCount(); ++i) {
        const CIMConstProperty property = given.getProperty(i);
        const Uint32 position = cimClass.findProperty(property.getName());
        if (position == nowhere) {
            throw unknown(property.getName());
        }
        checkType(cimClass.getProperty(position), property);
    }
}

CIMException noSuchProperty(const CIMName& name) {
    return CIMException(Pegasus::CIM_ERR_NO_SUCH_PROPERTY, name.getString());
}

ValueSource valuesOf(const CIMConstInstance& instance) {
    return [instance](const CIMConstProperty& declared) -> std::optional<CIMValue> {
        const Uint32 position = instance.findProperty(declared.getName());
        if (position == nowhere) {
            return std::nullopt;
        }
        const CIMValue& value = instance.getProperty(position).getValue();
        if (value.isNull()) {
            return CIMValue(declared.getType(), declared.isArray(), declared.getArraySize());
        }
        return value;
    };
}

bool isNamedBy(const CIMPropertyList& list, const CIMName& name) {
    return list.isNull() || list.contains(name);
}

} // namespace

CIMInstance completedInstance(const CIMConstClass& cimClass, const CIMConstInstance& given) {
    checkGiven(cimClass, given, [&](const CIMName& name) {
        return CIMException(Pegasus::CIM_ERR_INVALID_PARAMETER,
                            String("class ") + cimClass.getClassName().getString() +
                                " has no property " + name.getString());
    });
    try {
        std::vector<CIMName> names;
        for (Uint32 i = 0; i < given.getPropertyCount(); ++i) {
            names.push_back(given.getProperty(i).getName());
        }
        return buildInstance(cimClass, names, valuesOf(given));
    } catch (const MissingKey& missing) {
        throw CIMException(Pegasus::CIM_ERR_INVALID_PARAMETER, String("key property ") +
                                                                   missing.property.getString() +
                                                                   " has no value");
    }
}

CIMInstance modifiedInstance(const CIMConstInstance& kept, const CIMConstInstance& given,
                             const CIMPropertyList& list, const CIMConstClass& cimClass) {
    for (Uint32 i = 0; !list.isNull() && i < list.size(); ++i) {
        if (cimClass.findProperty(list[i]) == nowhere) {
            throw noSuchProperty(list[i]);
        }
    }
    checkGiven(cimClass, given, noSuchProperty);
    const ValueSource values = valuesOf(given);
    CIMInstance result = kept.clone();
    for (Uint32 i = 0; i < result.getPropertyCount(); ++i) {
        Pegasus::CIMProperty property = result.getProperty(i);
        const CIMConstProperty declared =
            cimClass.getProperty(cimClass.findProperty(property.getName()));
        const std::optional<CIMValue> value = values(declared);
        if (!isNamedBy(list, property.getName()) || (list.isNull() && !value)) {
            continue;
        }
        const CIMValue next = value.value_or(declared.getValue());
        if (isSet(declared, "Key") && next != property.getValue()) {
            throw CIMException(Pegasus::CIM_ERR_INVALID_PARAMETER,
                               String("key property ") + property.getName().getString() +
                                   " cannot be modified");
        }
        property.setValue(next);
        property.setPropagated(!value);
    }
    return result;
}

} // namespace embedded::repository
