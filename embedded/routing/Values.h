// Reads property values as texts of the standard library.
#pragma once

#include "embedding/Text.h"

#include <Pegasus/Common/Array.h>
#include <Pegasus/Common/CIMInstance.h>
#include <Pegasus/Common/CIMPropertyList.h>
#include <Pegasus/Common/String.h>

#include <optional>
#include <string>
#include <vector>

namespace embedded::routing {

using Pegasus::embedding::utf8;

/// The value of that property; none if there is no such property.
std::optional<Pegasus::CIMValue> valueOf(const Pegasus::CIMInstance& instance,
                                         const Pegasus::CIMName& property);
/// Whether `instance` has a value, not NULL and not an empty array, for that property.
bool hasValue(const Pegasus::CIMInstance& instance, const char* property);

// The value of that property; empty when there is none or when it has another type.

Pegasus::String stringOf(const Pegasus::CIMInstance& instance, const char* property);
std::vector<Pegasus::String> stringsOf(const Pegasus::CIMInstance& instance, const char* property);
std::optional<Pegasus::Uint16> numberOf(const Pegasus::CIMInstance& instance, const char* property);
std::vector<Pegasus::Uint16> numbersOf(const Pegasus::CIMInstance& instance, const char* property);

template <class T>
Pegasus::Array<T> arrayOf(const std::vector<T>& items) {
    Pegasus::Array<T> array;
    for (const T& item : items)
        array.append(item);
    return array;
}

/// The texts that `textOf` returns for each of `items`, with `separator` between them.
template <class Items, class TextOf>
std::string joined(const Items& items, const TextOf& textOf, const char* separator = ", ") {
    std::string all;
    const char* between = "";
    for (const auto& item : items) {
        all.append(between).append(textOf(item));
        between = separator;
    }
    return all;
}

/// A copy of `instance` with the properties of `propertyList` that it has, in the list's order.
/// REQUIRES: `propertyList` is not NULL.
Pegasus::CIMInstance withProperties(const Pegasus::CIMInstance& instance,
                                    const Pegasus::CIMPropertyList& propertyList);

/// `path` without host and namespace, as messages name an instance.
Pegasus::CIMObjectPath localPath(const Pegasus::CIMObjectPath& path);

} // namespace embedded::routing
