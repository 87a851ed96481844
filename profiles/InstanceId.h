// The InstanceID of a catalogue entry, or what is wrong with it.
#pragma once

#include <Pegasus/Common/CIMInstance.h>
#include <Pegasus/Common/String.h>

namespace serverprofile {

/// The position of the property "InstanceID" in `entry`. When there is none, traces `complaint` if
/// one is given and throws CIMInvalidParameterException.
Pegasus::Uint32 instanceIdPosition(const Pegasus::CIMInstance& entry,
                                   const char* complaint = nullptr);

/// The text of the property at `position`. When it is not a string or has no value, traces
/// `complaint` if one is given and throws CIMInvalidParameterException.
Pegasus::String instanceIdAt(const Pegasus::CIMInstance& entry, Pegasus::Uint32 position,
                             const char* complaint = nullptr);

/// Both in one, without complaints. `key` is the name "InstanceID", from who has it already.
Pegasus::String instanceIdOf(const Pegasus::CIMInstance& entry, const Pegasus::CIMName& key);

} // namespace serverprofile
