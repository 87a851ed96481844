#include "routing/RepositoryAssociations.h"

#include "repository/PathMatch.h"
#include "routing/Values.h"
#include "text/PlaceIndex.h"

#include <algorithm>
#include <utility>

namespace embedded::routing {

using namespace Pegasus;
using repository::References;
using repository::StoredInstance;

namespace {

/// What comes first of things that are equal.
template <class Target>
class EachOnce {
  public:
    void add(const Target& target) {
        const std::uint64_t hash = hashOf(target);
        if (!_places.find(hash, [&](std::uint32_t place) { return _all[place] == target; })) {
            _places.add(hash, static_cast<std::uint32_t>(_all.size()));
            _all.push_back(target);
        }
    }

    std::vector<Target> take() { return std::move(_all); }

  private:
    static std::uint64_t hashOf(const CIMObjectPath& path) { return path.makeHashCode(); }
    static std::uint64_t hashOf(const CIMName& name) {
        return Pegasus::embedding::foldedHash(name.getString());
    }

    std::vector<Target> _all;
    text::PlaceIndex _places;
};

bool hasRole(const CIMName& role, const String& wanted) {
    return wanted.size() == 0 || String::equalNoCase(role.getString(), wanted);
}

// The ends of an association: roles, each with a Target, which is an object (of an instance) or a
// class (of a class).

template <class Ends, class IsIt>
bool hasEnd(const Ends& ends, const String& role, IsIt isIt) {
    return std::any_of(
        ends.begin(), ends.end(),
        [&](const auto& end) { return hasRole(end.first, role) && isIt(end.second); });
}

/// Calls `visit` with each target that an association links to its end at `near`. The ends are told
/// apart by position: an association may link an object to itself.
template <class Ends, class IsResult, class Visit>
void forEachFarTarget(const Ends& ends, std::size_t near, const TraversalFilters& filters,
                      IsResult isResult, Visit visit) {
    if (!hasRole(ends[near].first, filters.role))
        return;
    for (std::size_t far = 0; far < ends.size(); ++far)
        if (far != near && hasRole(ends[far].first, filters.resultRole) &&
            isResult(ends[far].second))
            visit(ends[far].second);
}

/// Adds to `targets` what one association links to its near end.
template <class Target, class IsNear, class IsResult>
void addFarTargets(const std::vector<std::pair<CIMName, Target>>& ends,
                   const TraversalFilters& filters, IsNear isNear, IsResult isResult,
                   EachOnce<Target>& targets) {
    for (std::size_t near = 0; near < ends.size(); ++near) {
        if (isNear(ends[near].second))
            forEachFarTarget(
                ends, near, filters, isResult, [&](const Target& target) { targets.add(target); });
    }
}

} // namespace

RepositoryAssociations::RepositoryAssociations(repository::View view,
                                               const CIMNamespaceName& nameSpace,
                                               const CIMObjectPath& source,
                                               TraversalFilters filters)
    : _view(std::move(view)), _nameSpace(nameSpace), _source(localPath(source)),
      _filters(std::move(filters)) {}

/// The associations that refer to the source instance, are of a class with the roles of the filters
/// and of a group that is wanted.
std::vector<StoredInstance>
RepositoryAssociations::referrers(const Names& classes,
                                  const repository::GroupFilter& isWanted) const {
    std::vector<StoredInstance> found;
    for (const CIMName& className : classes) {
        const auto ends = _view.references(_nameSpace, className);
        const auto any = [](const CIMName&) { return true; };
        if (hasEnd(ends, _filters.role, any) && hasEnd(ends, _filters.resultRole, any))
            for (StoredInstance& each : _view.referrers(_nameSpace, className, _source, isWanted))
                found.push_back(std::move(each));
    }
    return found;
}

std::vector<StoredInstance> RepositoryAssociations::instances(const Names& classes) const {
    return referrers(
        classes, [&](const References& ends,
                     std::size_t near) { return hasRole(ends[near].first, _filters.role); });
}

std::vector<CIMObjectPath> RepositoryAssociations::farInstances(const Names& classes) const {
    const auto isFar = [&](const CIMObjectPath& target) { return isResult(target); };
    const auto leadsToResult = [&](const References& ends, std::size_t near) {
        bool found = false;
        forEachFarTarget(ends, near, _filters, isFar, [&](const CIMObjectPath&) { found = true; });
        return found;
    };
    EachOnce<CIMObjectPath> targets;
    for (const StoredInstance& each : referrers(classes, leadsToResult))
        addFarTargets(
            each.references(), _filters,
            [&](const CIMObjectPath& target) { return isSource(target); }, isFar, targets);
    return targets.take();
}

RepositoryAssociations::Names
RepositoryAssociations::associationClasses(const Names& classes) const {
    Names found;
    std::copy_if(classes.begin(), classes.end(), std::back_inserter(found),
                 [&](const CIMName& className) {
                     return hasEnd(_view.references(_nameSpace, className), _filters.role,
                                   [&](const CIMName& target) { return takesSource(target); });
                 });
    return found;
}

RepositoryAssociations::Names RepositoryAssociations::farClasses(const Names& classes) const {
    EachOnce<CIMName> targets;
    for (const CIMName& className : classes)
        addFarTargets(
            _view.references(_nameSpace, className), _filters,
            [&](const CIMName& target) { return takesSource(target); },
            [&](const CIMName& target) { return isResultClass(_nameSpace, target); }, targets);
    return targets.take();
}

/// A reference without a namespace means the one in which the association lives; the host in a
/// reference is this one whatever it calls itself.
bool RepositoryAssociations::isSource(const CIMObjectPath& reference) const {
    const CIMNamespaceName& nameSpace = reference.getNameSpace();
    return (nameSpace.isNull() || nameSpace.equal(_nameSpace)) &&
           repository::equalWithoutPlace(reference, _source);
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

} // namespace embedded::routing
