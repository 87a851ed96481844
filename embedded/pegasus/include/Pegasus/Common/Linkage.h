#pragma once

#include <Pegasus/Common/Config.h>

#ifndef PEGASUS_COMMON_LINKAGE
#define PEGASUS_COMMON_LINKAGE PEGASUS_EXPORT
#endif
