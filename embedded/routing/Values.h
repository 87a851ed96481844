// Values of properties, paths and texts, as this room's messages and answers need them.
#pragma once

#include "embedding/Text.h"

#include <Pegasus/Common/CIMInstance.h>
#include <Pegasus/Common/CIMProperty.h>

#include <optional>
#include <string>

namespace embedded::routing {

using Pegasus::embedding::utf8;

/// The value of that property; none if there is no such property.
inline std::optional<Pegasus::CIMValue> valueOf(const Pegasus::CIMInstance& instance,
                                                const Pegasus::CIMName& property) {
    const Pegasus::Uint32 position = instance.findProperty(property);
    return position == Pegasus::PEG_NOT_FOUND
               ? std::nullopt
               : std::optional(instance.getProperty(position).getValue());
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

/// `path` without host and namespace, as messages name an instance.
inline Pegasus::CIMObjectPath localPath(const Pegasus::CIMObjectPath& path) {
    return Pegasus::CIMObjectPath(Pegasus::String(), Pegasus::CIMNamespaceName(),
                                  path.getClassName(), path.getKeyBindings());
}

} // namespace embedded::routing
