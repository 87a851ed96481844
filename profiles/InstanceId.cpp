#include "profiles/InstanceId.h"

#include "common/Trace.h"

#include <Pegasus/Provider/ProviderException.h>

PEGASUS_USING_PEGASUS;

namespace serverprofile {

namespace {

[[noreturn]] void fail(const char* complaint, const char* message) {
    if (complaint != nullptr)
        trace(complaint);
    throw CIMInvalidParameterException(String(message));
}

Uint32 positionOf(const CIMName& key, const CIMInstance& entry, const char* complaint) {
    const Uint32 position = entry.findProperty(key);
    if (position == PEG_NOT_FOUND)
        fail(complaint, "key InstanceId not present - internal error");
    return position;
}

} // namespace

Uint32 instanceIdPosition(const CIMInstance& entry, const char* complaint) {
    return positionOf(CIMName("InstanceID"), entry, complaint);
}

String instanceIdAt(const CIMInstance& entry, Uint32 position, const char* complaint) {
    const CIMValue value = entry.getProperty(position).getValue();
    if (value.getType() != CIMTYPE_STRING || value.isArray() || value.isNull())
        fail(complaint, "key InstanceId not present - internal error - 2");
    String instanceId;
    value.get(instanceId);
    return instanceId;
}

String instanceIdOf(const CIMInstance& entry, const CIMName& key) {
    return instanceIdAt(entry, positionOf(key, entry, nullptr));
}

} // namespace serverprofile
