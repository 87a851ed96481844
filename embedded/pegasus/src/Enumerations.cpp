// The names of status codes and types.
#include <Pegasus/Common/CIMStatusCode.h>
#include <Pegasus/Common/CIMType.h>

#include <cstddef>

namespace Pegasus {

namespace {

template <std::size_t count>
const char* nameOf(int number, const char* const (&names)[count]) {
    const auto index = static_cast<std::size_t>(number);
    return index < count ? names[index] : nullptr;
}

} // namespace

const char* cimStatusCodeToString(CIMStatusCode code) {
    // In the order of their numbers; 18 and 19 are none.
    static const char* const names[] = {
        "CIM_ERR_SUCCESS",
        "CIM_ERR_FAILED",
        "CIM_ERR_ACCESS_DENIED",
        "CIM_ERR_INVALID_NAMESPACE",
        "CIM_ERR_INVALID_PARAMETER",
        "CIM_ERR_INVALID_CLASS",
        "CIM_ERR_NOT_FOUND",
        "CIM_ERR_NOT_SUPPORTED",
        "CIM_ERR_CLASS_HAS_CHILDREN",
        "CIM_ERR_CLASS_HAS_INSTANCES",
        "CIM_ERR_INVALID_SUPERCLASS",
        "CIM_ERR_ALREADY_EXISTS",
        "CIM_ERR_NO_SUCH_PROPERTY",
        "CIM_ERR_TYPE_MISMATCH",
        "CIM_ERR_QUERY_LANGUAGE_NOT_SUPPORTED",
        "CIM_ERR_INVALID_QUERY",
        "CIM_ERR_METHOD_NOT_AVAILABLE",
        "CIM_ERR_METHOD_NOT_FOUND",
        nullptr,
        nullptr,
        "CIM_ERR_NAMESPACE_NOT_EMPTY",
        "CIM_ERR_INVALID_ENUMERATION_CONTEXT",
        "CIM_ERR_INVALID_OPERATION_TIMEOUT",
        "CIM_ERR_PULL_HAS_BEEN_ABANDONED",
        "CIM_ERR_PULL_CANNOT_BE_ABANDONED",
        "CIM_ERR_FILTERED_ENUMERATION_NOT_SUPPORTED",
        "CIM_ERR_CONTINUATION_ON_ERROR_NOT_SUPPORTED",
        "CIM_ERR_SERVER_LIMITS_EXCEEDED",
        "CIM_ERR_SERVER_IS_SHUTTING_DOWN",
    };
    const char* const name = nameOf(code, names);
    return name ? name : "Unrecognized CIM status code";
}

const char* cimTypeToString(const CIMType type) {
    // In the order of CIMType.
    static const char* const names[] = {"boolean", "uint8",   "sint8",  "uint16",   "sint16",
                                        "uint32",  "sint32",  "uint64", "sint64",   "real32",
                                        "real64",  "char16",  "string", "datetime", "reference",
                                        "object",  "instance"};
    return nameOf(type, names);
}

} // namespace Pegasus
