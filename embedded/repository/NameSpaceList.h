// All namespaces, in the order in which they were created.
#pragma once

#include "repository/NameSpace.h"

namespace embedded::repository {

/// Copies share the namespaces until one of them is changed, so that a copy is a place to try
/// something out in.
class NameSpaceList {
  public:
    /// Null if there is none. Valid until the list changes.
    const NameSpace* find(const Pegasus::CIMNamespaceName& name) const;
    /// For changing; created if there is none. Valid until a copy of the list is made.
    NameSpace& change(const Pegasus::CIMNamespaceName& name);
    std::vector<Pegasus::CIMNamespaceName> names() const;

  private:
    NamedList<Ref<NameSpace>> _all;
};

} // namespace embedded::repository
