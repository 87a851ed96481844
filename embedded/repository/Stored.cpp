#include "repository/Stored.h"

#include <algorithm>

namespace embedded::repository {

using namespace Pegasus;

const CIMValue& Stored::valueAt(Uint32 place) const {
    const auto& given = shape->given;
    const auto found = std::lower_bound(given.begin(), given.end(), place);
    if (found != given.end() && *found == place)
        return values[static_cast<std::size_t>(found - given.begin())];
    return shape->bare.getProperty(place).getValue();
}

std::optional<CIMValue> Stored::value(const CIMName& property) const {
    const Uint32 place = shape->bare.findProperty(property);
    return place == PEG_NOT_FOUND ? std::nullopt : std::optional(valueAt(place));
}

CIMInstance Stored::instance(bool withQualifiers) const {
    CIMInstance copy = (withQualifiers ? shape->whole : shape->bare).clone();
    for (std::size_t i = 0; i < shape->given.size(); ++i)
        copy.getProperty(shape->given[i]).setValue(values[i]);
    copy.setPath(path);
    return copy;
}

References Stored::references() const {
    References found;
    for (const Uint32 place : shape->references) {
        const CIMValue& value = valueAt(place);
        if (!value.isNull()) {
            CIMObjectPath target;
            value.get(target);
            found.emplace_back(shape->bare.getProperty(place).getName(), target);
        }
    }
    return found;
}

} // namespace embedded::repository
