#include "routing/Values.h"

#include <Pegasus/Common/CIMProperty.h>
#include <Pegasus/Common/CIMQualifier.h>

namespace embedded::routing {

using namespace Pegasus;

namespace {

// None if there is no such property, or if it has another type.
template <class T>
std::optional<T> get(const CIMInstance& instance, const char* property, CIMType type,
                     bool isArray = false) {
    const CIMValue value = valueOf(instance, CIMName(property)).value_or(CIMValue());
    if (value.isNull() || value.getType() != type || value.isArray() != isArray)
        return std::nullopt;
    T result{};
    value.get(result);
    return result;
}

template <class T>
std::vector<T> array(const CIMInstance& instance, const char* property, CIMType type) {
    const auto items = get<Array<T>>(instance, property, type, true).value_or(Array<T>());
    return {items.getData(), items.getData() + items.size()};
}

} // namespace

std::optional<CIMValue> valueOf(const CIMInstance& instance, const CIMName& property) {
    const Uint32 position = instance.findProperty(property);
    return position == PEG_NOT_FOUND ? std::nullopt
                                     : std::optional(instance.getProperty(position).getValue());
}

bool hasValue(const CIMInstance& instance, const char* property) {
    const CIMValue value = valueOf(instance, CIMName(property)).value_or(CIMValue());
    return !value.isNull() && !(value.isArray() && value.getArraySize() == 0);
}

String stringOf(const CIMInstance& instance, const char* property) {
    return get<String>(instance, property, CIMTYPE_STRING).value_or(String());
}

std::vector<String> stringsOf(const CIMInstance& instance, const char* property) {
    return array<String>(instance, property, CIMTYPE_STRING);
}

std::optional<Uint16> numberOf(const CIMInstance& instance, const char* property) {
    return get<Uint16>(instance, property, CIMTYPE_UINT16);
}

std::vector<Uint16> numbersOf(const CIMInstance& instance, const char* property) {
    return array<Uint16>(instance, property, CIMTYPE_UINT16);
}

CIMInstance withProperties(const CIMInstance& instance, const CIMPropertyList& propertyList) {
    CIMInstance result(instance.getClassName());
    result.setPath(instance.getPath());
    for (Uint32 i = 0; i < instance.getQualifierCount(); ++i)
        result.addQualifier(instance.getQualifier(i).clone());
    for (Uint32 i = 0; i < propertyList.size(); ++i) {
        const Uint32 position = instance.findProperty(propertyList[i]);
        if (position != PEG_NOT_FOUND)
            result.addProperty(instance.getProperty(position).clone());
    }
    return result;
}

CIMObjectPath localPath(const CIMObjectPath& path) {
    return CIMObjectPath(String(), CIMNamespaceName(), path.getClassName(), path.getKeyBindings());
}

} // namespace embedded::routing
