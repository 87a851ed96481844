#pragma once

#include <Pegasus/Common/String.h>

namespace Pegasus {

/// Whether `host` may stand in an object path: a host name (RFC 1123, and '_' in labels), an IPv4
/// address, or an IPv6 address in brackets, a link-local one with the interface it is reached by;
/// then, if wanted, ':' and a port. Names are not resolved.
bool isHost(const String& host);

} // namespace Pegasus
