// Loads a MOF specification into namespaces.
#pragma once

#include "mof/Mof.h"
#include "repository/NameSpace.h"

namespace embedded::repository {

/// Adds the declarations to `nameSpaces`: qualifiers and classes as they come, then, when all
/// classes are known, the references between them and the instances. Instances may therefore use
/// aliases that are declared further down, and in circles, as long as no key depends on itself.
/// Throws MofError, and leaves `nameSpaces` half filled then.
void loadInto(NameSpaceList& nameSpaces, const mof::Specification& specification,
              const Pegasus::CIMNamespaceName& nameSpace);

} // namespace embedded::repository
