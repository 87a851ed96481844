#include "repository/GivenInstance.h"

#include "repository/Types.h"

#include <Pegasus/Common/Exception.h>

#include <algorithm>
#include <optional>
#include <string>
#include <vector>

namespace embedded::repository {

using namespace Pegasus;

namespace {

/// Throws unless `given` has a value of the type of the property `declared`.
void checkType(const CIMConstProperty& declared, const CIMConstProperty& given) {
    const CIMValue& value = given.getValue();
    const Uint32 size = declared.getArraySize();
    if (declared.getValue().typeCompatible(value) &&
        (size == 0 || value.isNull() || value.getArraySize() == size))
        return;
    String message = String("property ") + declared.getName().getString() + " takes a " +
                     cimTypeToString(declared.getType());
    if (declared.isArray())
        message.append(" array");
    if (size != 0)
        message.append(String((" of " + std::to_string(size)).c_str()));
    throw CIMException(CIM_ERR_INVALID_PARAMETER, message);
}

/// Checks all properties of `given`; `unknown` is thrown for one that the class does not have.
template <class Unknown>
void checkGiven(const ClassForm& form, const CIMConstInstance& given, Unknown unknown) {
    for (Uint32 i = 0; i < given.getPropertyCount(); ++i) {
        const CIMConstProperty property = given.getProperty(i);
        const Uint32 place = form.find(property.getName());
        if (place == noIndex)
            throw unknown(property.getName());
        checkType(form.properties()[place], property);
    }
}

CIMException noSuchProperty(const CIMName& name) {
    return CIMException(CIM_ERR_NO_SUCH_PROPERTY, name.getString());
}

/// The value that `given` has for the property `declared`, if it has one.
std::optional<CIMValue> valueIn(const CIMConstInstance& given, const CIMConstProperty& declared) {
    const Uint32 position = given.findProperty(declared.getName());
    if (position == noIndex)
        return std::nullopt;
    const CIMValue& value = given.getProperty(position).getValue();
    return value.isNull()
               ? CIMValue(declared.getType(), declared.isArray(), declared.getArraySize())
               : value;
}

bool isNamedBy(const CIMPropertyList& list, const CIMName& name) {
    return list.isNull() || list.contains(name);
}

} // namespace

Ref<Stored> completedInstance(ClassForm& form, const CIMConstInstance& given) {
    checkGiven(form, given, [&](const CIMName& name) {
        return CIMException(CIM_ERR_INVALID_PARAMETER, String("class ") +
                                                           form.className().getString() +
                                                           " has no property " + name.getString());
    });
    std::vector<Uint32> places;
    std::vector<CIMValue> values;
    for (Uint32 i = 0; i < given.getPropertyCount(); ++i) {
        places.push_back(form.find(given.getProperty(i).getName()));
        values.push_back(*valueIn(given, form.properties()[places.back()]));
    }
    try {
        const auto path = form.path([&](Uint32 property) -> const CIMValue* {
            const auto found = std::find(places.begin(), places.end(), property);
            return found == places.end()
                       ? nullptr
                       : &values[static_cast<std::size_t>(found - places.begin())];
        });
        return form.stored(form.shape(places), path, values);
    } catch (const MissingKey& missing) {
        throw CIMException(CIM_ERR_INVALID_PARAMETER, String("key property ") +
                                                          missing.property.getString() +
                                                          " has no value");
    }
}

Ref<Stored> modifiedInstance(ClassForm& form, const Stored& kept, const CIMConstInstance& given,
                             const CIMPropertyList& list) {
    for (Uint32 i = 0; !list.isNull() && i < list.size(); ++i)
        if (form.find(list[i]) == noIndex)
            throw noSuchProperty(list[i]);
    checkGiven(form, given, noSuchProperty);
    std::vector<Shape::Member> members = kept.shape->members;
    std::vector<CIMValue> values;
    for (Uint32 i = 0; i < members.size(); ++i) {
        const CIMConstProperty& declared = form.properties()[members[i].property];
        const std::optional<CIMValue> value = valueIn(given, declared);
        CIMValue next = kept.valueAt(i);
        if (isNamedBy(list, declared.getName()) && (!list.isNull() || value)) {
            next = value.value_or(declared.getValue());
            if (form.isKey(members[i].property) && next != kept.valueAt(i))
                throw CIMException(CIM_ERR_INVALID_PARAMETER, String("key property ") +
                                                                  declared.getName().getString() +
                                                                  " cannot be modified");
            members[i].given = value.has_value();
        }
        if (members[i].given)
            values.push_back(next);
    }
    return form.stored(form.reshaped(kept.shape, members), kept.path, values);
}

} // namespace embedded::repository
