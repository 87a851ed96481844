#pragma once

#include "ObjectPathReps.h"

namespace Pegasus {

/// Reads the text form of an object path into `path`, which is new; see CIMObjectPath. The key
/// bindings come in the order of the text. False, with the reason, if it is none: that is no
/// exception here, because any string may be tried.
bool parseObjectPath(const String& text, CIMObjectPathRep& path, String& reason);

} // namespace Pegasus
