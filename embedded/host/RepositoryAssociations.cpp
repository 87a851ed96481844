#include "host/RepositoryAssociations.h"

#include "host/Values.h"

#include <Pegasus/Common/CIMClass.h>
#include <Pegasus/Common/CIMProperty.h>
#include <Pegasus/Common/CIMValue.h>
#include <Pegasus/Common/Exception.h>

#include <algorithm>
#include <utility>

namespace embedded::host {

using Pegasus::CIMName;
using Pegasus::CIMNamespaceName;
using Pegasus::CIMObjectPath;
using Pegasus::String;
using Pegasus::Uint32;
using repository::StoredInstance;

namespace {

/// One reference of an association: to an object (of an instance) or to a class (of a class).
template <class Target>
struct End {
    CIMName role;
    Target target;
};

std::vector<End<CIMObjectPath>> endsOf(const StoredInstance& association) {
    std::vector<End<CIMObjectPath>> ends;
    for (const auto& [role, target] : association.references()) {
        ends.push_back({role, target});
    }
    return ends;
}

std::vector<End<CIMName>> endsOf(const Pegasus::CIMClass& association) {
    std::vector<End<CIMName>> ends;
    for (Uint32 i = 0; i < association.getPropertyCount(); ++i) {
        const Pegasus::CIMConstProperty property = association.getProperty(i);
        if (property.getType() == Pegasus::CIMTYPE_REFERENCE) {
            ends.push_back({property.getName(), property.getReferenceClassName()});
        }
    }
    return ends;
}

bool hasRole(const CIMName& role, const String& wanted) {
    return wanted.size() == 0 || String::equalNoCase(role.getString(), wanted);
}

template <class Target, class IsNear>
bool isNearEnd(const End<Target>& end, const String& role, IsNear isNear) {
    return hasRole(end.role, role) && isNear(end.target);
}

template <class Target, class IsNear>
bool hasNearEnd(const std::vector<End<Target>>& ends, const String& role, IsNear isNear) {
    return std::any_of(ends.begin(), ends.end(),
                       [&](const auto& end) { return isNearEnd(end, role, isNear); });
}

/// Adds to `targets` what one association links to its near end. The ends are told apart by
/// position: an association may link an object to itself.
template <class Target, class IsNear, class IsResult>
void addFarTargets(const std::vector<End<Target>>& ends, const TraversalFilters& filters,
                   IsNear isNear, IsResult isResult, std::vector<Target>& targets) {
    for (std::size_t near = 0; near < ends.size(); ++near) {
        if (!isNearEnd(ends[near], filters.role, isNear)) {
            continue;
        }
        for (std::size_t far = 0; far < ends.size(); ++far) {
            const Target& target = ends[far].target;
            const bool wanted =
                far != near && hasRole(ends[far].role, filters.resultRole) && isResult(target);
            if (wanted && std::find(targets.begin(), targets.end(), target) == targets.end()) {
                targets.push_back(target);
            }
        }
    }
}

} // namespace

RepositoryAssociations::RepositoryAssociations(repository::View view,
                                               const CIMNamespaceName& nameSpace,
                                               const CIMObjectPath& source,
                                               TraversalFilters filters)
    : _view(std::move(view)), _nameSpace(nameSpace), _source(localPath(source)),
      _filters(std::move(filters)) {
}

std::vector<StoredInstance> RepositoryAssociations::instances(const Names& classes) const {
    std::vector<StoredInstance> found;
    for (const CIMName& className : classes) {
        for (const StoredInstance& each : _view.referrers(_nameSpace, className, _source)) {
            if (hasNearEnd(endsOf(each), _filters.role,
                           [&](const CIMObjectPath& target) { return isSource(target); })) {
                found.push_back(each);
            }
        }
    }
    return found;
}

std::vector<CIMObjectPath> RepositoryAssociations::farInstances(const Names& classes) const {
    std::vector<CIMObjectPath> targets;
    for (const StoredInstance& association : instances(classes)) {
        addFarTargets(
            endsOf(association), _filters,
            [&](const CIMObjectPath& target) { return isSource(target); },
            [&](const CIMObjectPath& target) { return isResult(target); }, targets);
    }
    return targets;
}

RepositoryAssociations::Names
RepositoryAssociations::associationClasses(const Names& classes) const {
    Names found;
    std::copy_if(classes.begin(), classes.end(), std::back_inserter(found),
                 [&](const CIMName& className) {
                     return hasNearEnd(endsOf(_view.getClass(_nameSpace, className, false, false)),
                                       _filters.role,
                                       [&](const CIMName& target) { return takesSource(target); });
                 });
    return found;
}

RepositoryAssociations::Names RepositoryAssociations::farClasses(const Names& classes) const {
    Names targets;
    for (const CIMName& className : classes) {
        addFarTargets(
            endsOf(_view.getClass(_nameSpace, className, false, false)), _filters,
            [&](const CIMName& target) { return takesSource(target); },
            [&](const CIMName& target) { return isResultClass(_nameSpace, target); }, targets);
    }
    return targets;
}

/// A reference without a namespace means the one in which the association lives; the host in a
/// reference is this one whatever it calls itself.
bool RepositoryAssociations::isSource(const CIMObjectPath& reference) const {
    const CIMNamespaceName& nameSpace = reference.getNameSpace();
    return (nameSpace.isNull() || nameSpace.equal(_nameSpace)) && localPath(reference) == _source;
}

bool RepositoryAssociations::takesSource(const CIMName& referenceClass) const {
    return _view.isA(_nameSpace, _source.getClassName(), referenceClass);
}

bool RepositoryAssociations::isResult(const CIMObjectPath& reference) const {
    const CIMNamespaceName& nameSpace = reference.getNameSpace();
    return isResultClass(nameSpace.isNull() ? _nameSpace : nameSpace, reference.getClassName());
}

/// A reference to a class that is not there is of no other class that could be asked for.
bool RepositoryAssociations::isResultClass(const CIMNamespaceName& nameSpace,
                                           const CIMName& className) const {
    return _filters.resultClass.isNull() || className.equal(_filters.resultClass) ||
           _view.isA(nameSpace, className, _filters.resultClass);
}

} // namespace embedded::host
