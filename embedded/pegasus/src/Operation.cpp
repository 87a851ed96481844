#include "embedding/Operation.h"

namespace Pegasus::embedding {

const char* operationName(OperationKind kind) {
    static constexpr const char* names[] = {
        "getClass",
        "enumerateClasses",
        "enumerateClassNames",
        "getInstance",
        "enumerateInstances",
        "enumerateInstanceNames",
        "createInstance",
        "modifyInstance",
        "deleteInstance",
        "getProperty",
        "associators",
        "associatorNames",
        "references",
        "referenceNames",
        "getQualifier",
        "enumerateQualifiers",
    };
    return names[static_cast<std::size_t>(kind)];
}

const CIMName& Operation::target() const {
    if (!instance.isUninitialized())
        return instance.getClassName();
    return objectName.getClassName().isNull() ? className : objectName.getClassName();
}

Cursor cursorOver(Answered only) {
    return [only = std::move(only), given = false](Answered& answered) mutable {
        if (given)
            return false;
        given = true;
        answered = std::move(only);
        return true;
    };
}

} // namespace Pegasus::embedding
