// The writer of the provider library, by the names that this room calls it.
#pragma once

#include "hosting/XmlWriter.h"

namespace embedded::cimxml {

using Pegasus::hosting::appendClass;
using Pegasus::hosting::appendClassName;
using Pegasus::hosting::appendClassPath;
using Pegasus::hosting::appendElement;
using Pegasus::hosting::appendInstance;
using Pegasus::hosting::appendInstanceName;
using Pegasus::hosting::appendInstancePath;
using Pegasus::hosting::appendObject;
using Pegasus::hosting::appendProperty;
using Pegasus::hosting::appendQualifier;
using Pegasus::hosting::appendQualifierDeclaration;
using Pegasus::hosting::appendReference;
using Pegasus::hosting::appendValue;
using Pegasus::hosting::InstanceFilter;

} // namespace embedded::cimxml
