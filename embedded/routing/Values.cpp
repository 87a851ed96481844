#include "routing/Values.h"

#include <Pegasus/Common/CIMProperty.h>
#include <Pegasus/Common/CIMQualifier.h>

namespace embedded::routing {

using namespace Pegasus;

namespace {

CIMValue valueOf(const CIMInstance& instance, const char* property) {
    const Uint32 position = instance.findProperty(CIMName(property));
    return position == PEG_NOT_FOUND ? CIMValue() : instance.getProperty(position).getValue();
}

bool is(const CIMValue& value, CIMType type, bool array) {
    return !value.isNull() && value.getType() == type && value.isArray() == array;
}

template <class T>
std::optional<T> scalar(const CIMInstance& instance, const char* property, CIMType type) {
    const CIMValue value = valueOf(instance, property);
    if (!is(value, type, false))
        return std::nullopt;
    T result{};
    value.get(result);
    return result;
}

template <class T>
std::vector<T> array(const CIMInstance& instance, const char* property, CIMType type) {
    const CIMValue value = valueOf(instance, property);
    std::vector<T> result;
    if (is(value, type, true)) {
        Array<T> items;
        value.get(items);
        for (Uint32 i = 0; i < items.size(); ++i)
            result.push_back(items[i]);
    }
    return result;
}

} // namespace

bool hasValue(const CIMInstance& instance, const char* property) {
    const CIMValue value = valueOf(instance, property);
    return !value.isNull() && !(value.isArray() && value.getArraySize() == 0);
}

String stringOf(const CIMInstance& instance, const char* property) {
    return scalar<String>(instance, property, CIMTYPE_STRING).value_or(String());
}

std::vector<String> stringsOf(const CIMInstance& instance, const char* property) {
    return array<String>(instance, property, CIMTYPE_STRING);
}

std::optional<Uint16> numberOf(const CIMInstance& instance, const char* property) {
    return scalar<Uint16>(instance, property, CIMTYPE_UINT16);
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
