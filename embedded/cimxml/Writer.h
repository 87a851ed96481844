// The writer of the provider library, by the names that this room calls it.
#pragma once

#include "embedding/XmlWriter.h"

namespace embedded::cimxml {

using Pegasus::embedding::appendClass;
using Pegasus::embedding::appendClassName;
using Pegasus::embedding::appendClassPath;
using Pegasus::embedding::appendElement;
using Pegasus::embedding::appendInstance;
using Pegasus::embedding::appendInstanceName;
using Pegasus::embedding::appendInstancePath;
using Pegasus::embedding::appendObject;
using Pegasus::embedding::appendProperty;
using Pegasus::embedding::appendQualifier;
using Pegasus::embedding::appendQualifierDeclaration;
using Pegasus::embedding::appendReference;
using Pegasus::embedding::appendValue;
using Pegasus::embedding::InstanceFilter;

} // namespace embedded::cimxml
