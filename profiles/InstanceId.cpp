#include "profiles/InstanceId.h"

#include "provider/Trace.h"

#include <Pegasus/Provider/ProviderException.h>

PEGASUS_USING_PEGASUS;

namespace serverprofile {

namespace {

[[noreturn]] void fail(const char* complaint, const char* message) {
    if (complaint != nullptr) {
        trace(complaint);
    }
    throw CIMInvalidParameterException(String(message));
}

} // namespace

Uint32 instanceIdPosition(const CIMInstance& entry, const char* complaint) {
    const Uint32 position = entry.findProperty(CIMName("InstanceID"));
    if (position == PEG_NOT_FOUND) {
        fail(complaint, "key InstanceId not present - internal error");
    }
    return position;
}

String instanceIdAt(const CIMInstance& entry, Uint32 position, const char* complaint) {
    const CIMValue value = entry.getProperty(position).getValue();
    if (value.getType() != CIMTYPE_STRING || value.isArray() || value.isNull()) {
        fail(complaint, "key InstanceId not present - internal error - 2");
    }
    String instanceId;
    value.get(instanceId);
    return instanceId;
}

String instanceIdOf(const CIMInstance& entry) {
    return instanceIdAt(entry, instanceIdPosition(entry));
}

} // namespace serverprofile
