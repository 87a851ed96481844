#include "repository/InstanceBuilder.h"

#include "repository/Qualifiers.h"

#include <Pegasus/Common/Array.h>

#include <algorithm>

namespace embedded::repository {

namespace {

using Pegasus::CIMConstClass;
using Pegasus::CIMConstProperty;
using Pegasus::CIMObjectPath;
using Pegasus::CIMValue;
using Pegasus::Uint32;

bool names(const CIMValue& key) {
    if (key.isNull()) {
        return false;
    }
    if (key.getType() != Pegasus::CIMTYPE_REFERENCE) {
        return true;
    }
    CIMObjectPath path;
    key.get(path);
    return !path.getClassName().isNull();
}

} // namespace

CIMObjectPath buildPath(const CIMConstClass& cimClass, const ValueSource& source) {
    Pegasus::Array<Pegasus::CIMKeyBinding> keys;
    for (Uint32 i = 0; i < cimClass.getPropertyCount(); ++i) {
        const CIMConstProperty declared = cimClass.getProperty(i);
        if (!isSet(declared, "Key")) {
            continue;
        }
        const CIMValue value = source(declared).value_or(declared.getValue());
        if (!names(value)) {
            throw MissingKey{declared.getName()};
        }
        keys.append(Pegasus::CIMKeyBinding(declared.getName(), value));
    }
    return CIMObjectPath(Pegasus::String::EMPTY, Pegasus::CIMNamespaceName(),
                         cimClass.getClassName(), keys);
}

Pegasus::CIMInstance buildInstance(const CIMConstClass& cimClass,
                                   const std::vector<Pegasus::CIMName>& given,
                                   const ValueSource& source) {
    Pegasus::CIMInstance instance(cimClass.getClassName());
    addQualifiers(instance, buildQualifiers({}, {}, {}, qualifiersOf(cimClass)));
    const auto add = [&](const CIMConstProperty& declared) {
        const std::optional<CIMValue> value = source(declared);
        instance.addProperty(Pegasus::CIMProperty(
            declared.getName(), value.value_or(declared.getValue()), declared.getArraySize(),
            declared.getReferenceClassName(), declared.getClassOrigin(), !value));
    };
    for (Uint32 i = 0; i < cimClass.getPropertyCount(); ++i) {
        const CIMConstProperty declared = cimClass.getProperty(i);
        const bool isGiven = std::any_of(given.begin(), given.end(), [&](const auto& name) {
            return declared.getName().equal(name);
        });
        if (!isGiven) {
            add(declared);
        }
    }
    for (const Pegasus::CIMName& name : given) {
        add(cimClass.getProperty(cimClass.findProperty(name)));
    }
    instance.setPath(buildPath(cimClass, source));
    return instance;
}

} // namespace embedded::repository
