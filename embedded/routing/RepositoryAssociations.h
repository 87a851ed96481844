// Association traversal over what the repository holds: its instances, and its classes.
#pragma once

#include "repository/Repository.h"

#include <Pegasus/Common/CIMObjectPath.h>

#include <vector>

namespace embedded::routing {

/// The filters of an association operation besides the association class; null or empty: not
/// given.
struct TraversalFilters {
    Pegasus::CIMName resultClass; ///< of the far end
    Pegasus::String role;         ///< of the source
    Pegasus::String resultRole;   ///< of the far end
};

/// Answers about one source within one namespace. `classes` are always the association classes to
/// look at, without their subclasses.
///
/// Thread-safety: as the repository's.
class RepositoryAssociations {
  public:
    using Names = std::vector<Pegasus::CIMName>;

    RepositoryAssociations(repository::View view, const Pegasus::CIMNamespaceName& nameSpace,
                           const Pegasus::CIMObjectPath& source, TraversalFilters filters);

    /// The association instances that refer to the source instance.
    std::vector<repository::StoredInstance> instances(const Names& classes) const;
    /// The far ends of those, each once.
    std::vector<Pegasus::CIMObjectPath> farInstances(const Names& classes) const;

    /// The association classes that can refer to an instance of the source's class.
    Names associationClasses(const Names& classes) const;
    /// The classes at the far ends of those, each once.
    Names farClasses(const Names& classes) const;

  private:
    std::vector<repository::StoredInstance>
    referrers(const Names& classes, const repository::GroupFilter& isWanted) const;
    bool isSource(const Pegasus::CIMObjectPath& reference) const;
    bool takesSource(const Pegasus::CIMName& referenceClass) const;
    bool isResult(const Pegasus::CIMObjectPath& reference) const;
    bool isResultClass(const Pegasus::CIMNamespaceName& nameSpace,
                       const Pegasus::CIMName& className) const;

    const repository::View _view;
    const Pegasus::CIMNamespaceName _nameSpace;
    const Pegasus::CIMObjectPath _source; ///< without host and namespace
    const TraversalFilters _filters;
};

} // namespace embedded::routing
