#pragma once

#include <Pegasus/Common/Config.h>

#ifndef PEGASUS_PROVIDER_LINKAGE
#define PEGASUS_PROVIDER_LINKAGE PEGASUS_EXPORT
#endif
