// The template stands in Array.h. This header is here for sources that include it by its name.
#pragma once

#include <Pegasus/Common/Array.h>
