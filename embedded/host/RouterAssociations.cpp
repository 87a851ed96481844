// The association operations of the router. One mechanism: the candidates are the association
// classes that can touch the source's class; the repository is one leg, always; every candidate
// that is registered is one more.
#include "host/Legs.h"
#include "host/ProviderCall.h"
#include "host/ResponseCollector.h"
#include "host/Router.h"
#include "host/Values.h"

#include <Pegasus/Provider/CIMAssociationProvider.h>

namespace embedded::host {

using Pegasus::Array;
using Pegasus::CIMAssociationProvider;
using Pegasus::CIMException;
using Pegasus::CIMName;
using Pegasus::CIMNamespaceName;
using Pegasus::CIMObject;
using Pegasus::CIMObjectPath;
using Pegasus::CIMPropertyList;
using Pegasus::String;
using Pegasus::Uint32;

/// What the four operations have in common.
struct Router::Traversal {
    const Caller& caller;
    const CIMNamespaceName& nameSpace;
    const CIMObjectPath& objectName;
    const CIMName& associationClass; ///< the client's filter on the association classes
    TraversalFilters filters;
};

namespace {

using Names = RepositoryAssociations::Names;

void requireRole(const char* parameter, const String& role) {
    if (role.size() != 0 && !CIMName::legal(role)) {
        throw CIMException(Pegasus::CIM_ERR_INVALID_PARAMETER, String(parameter) + " " + role);
    }
}

Array<CIMObjectPath> classPaths(const Names& classNames) {
    Array<CIMObjectPath> paths;
    for (const CIMName& name : classNames) {
        paths.append(CIMObjectPath(String(), CIMNamespaceName(), name));
    }
    return paths;
}

} // namespace

/// `askProvider` gets the provider's interface, the path of the source, the candidate and the
/// collector. `askRepository` gets the associations and the candidates that no provider serves,
/// `askSchema`, for a source that is a class, the associations and all candidates; both return
/// Array<object>.
template <class Collector, class AskProvider, class AskRepository, class AskSchema>
auto Router::traverse(const Traversal& traversal, AskProvider askProvider,
                      AskRepository askRepository, AskSchema askSchema) const {
    using Objects = std::decay_t<decltype(std::declval<Collector>().objects())>;
    return asCimErrors([&] {
        const CIMNamespaceName& nameSpace = traversal.nameSpace;
        requireRole("role", traversal.filters.role);
        requireRole("resultrole", traversal.filters.resultRole);
        const Names candidates = _repository.associationClassNames(
            nameSpace, traversal.objectName.getClassName(), traversal.associationClass);
        if (!traversal.filters.resultClass.isNull()) {
            requireClass(nameSpace, traversal.filters.resultClass);
        }
        std::vector<std::pair<CIMName, Provider*>> served;
        Names unserved;
        for (const CIMName& candidate : candidates) {
            if (Provider* const provider =
                    _modules.find(nameSpace, candidate, ProviderType::Association)) {
                served.emplace_back(candidate, provider);
            } else {
                unserved.push_back(candidate);
            }
        }
        const RepositoryAssociations associations(_repository, nameSpace, traversal.objectName,
                                                  traversal.filters);
        Legs<std::decay_t<decltype(std::declval<Objects>()[0])>> legs;
        if (traversal.objectName.getKeyBindings().size() == 0) {
            legs.add([&] { return askSchema(associations, candidates); });
            served.clear();
        } else {
            legs.add([&] { return askRepository(associations, unserved); });
        }
        for (const auto& [candidate, provider] : served) {
            legs.add([&, candidate = candidate, provider = provider] {
                Collector collector(Expected::Any);
                callProvider<CIMAssociationProvider>(
                    *provider, candidate, [&](CIMAssociationProvider& asked) {
                        askProvider(asked, requestPath(nameSpace, traversal.objectName), candidate,
                                    collector);
                    });
                return Objects(collector.objects());
            });
        }
        auto answer = legs.answer();
        for (Uint32 i = 0; i < answer.objects.size(); ++i) {
            complete(nameSpace, answer.objects[i]);
        }
        return answer;
    });
}

/// Host and namespace are put in where a path has none; others stay, right or wrong.
void Router::complete(const CIMNamespaceName& nameSpace, CIMObjectPath& path) const {
    if (path.getHost().size() == 0) {
        path.setHost(_hostName);
    }
    if (path.getNameSpace().isNull()) {
        path.setNameSpace(nameSpace);
    }
}

void Router::complete(const CIMNamespaceName& nameSpace, CIMObject& object) const {
    CIMObjectPath path = object.getPath();
    complete(nameSpace, path);
    object.setPath(path);
}

/// The classes `classNames`, as the source's associations or far ends.
Array<CIMObject> Router::classObjects(const CIMNamespaceName& nameSpace, const Names& classNames,
                                      bool includeQualifiers, bool includeClassOrigin,
                                      const CIMPropertyList& propertyList) const {
    Array<CIMObject> objects;
    for (const CIMName& name : classNames) {
        objects.append(CIMObject(_repository.getClass(nameSpace, name, false, includeQualifiers,
                                                      includeClassOrigin, propertyList)));
    }
    return objects;
}

/// The instances that `paths` name, whoever serves them. A path that leads nowhere is left out:
/// associatorNames tells it, but there is no object to show.
Array<CIMObject> Router::instanceObjects(const Traversal& traversal,
                                         const std::vector<CIMObjectPath>& paths,
                                         bool includeQualifiers, bool includeClassOrigin,
                                         const CIMPropertyList& propertyList) {
    Array<CIMObject> objects;
    for (CIMObjectPath path : paths) {
        complete(traversal.nameSpace, path);
        try {
            Pegasus::CIMInstance instance =
                getInstance(traversal.caller, path.getNameSpace(), path, includeQualifiers,
                            includeClassOrigin, propertyList);
            instance.setPath(path);
            objects.append(CIMObject(instance));
        } catch (const CIMException& error) {
            if (error.getCode() != Pegasus::CIM_ERR_NOT_FOUND) {
                throw;
            }
        }
    }
    return objects;
}

Answer<CIMObject> Router::associators(const Caller& caller, const CIMNamespaceName& nameSpace,
                                      const CIMObjectPath& objectName, const CIMName& assocClass,
                                      const CIMName& resultClass, const String& role,
                                      const String& resultRole, bool includeQualifiers,
                                      bool includeClassOrigin,
                                      const CIMPropertyList& propertyList) {
    const Traversal traversal{
        caller, nameSpace, objectName, assocClass, {resultClass, role, resultRole}};
    return traverse<ObjectCollector>(
        traversal,
        [&](CIMAssociationProvider& provider, const CIMObjectPath& source, const CIMName& candidate,
            ObjectCollector& collector) {
            provider.associators(contextFor(caller), source, candidate, resultClass, role,
                                 resultRole, includeQualifiers, includeClassOrigin, propertyList,
                                 collector);
        },
        [&](const RepositoryAssociations& associations, const Names& classNames) {
            return instanceObjects(traversal, associations.farInstances(classNames),
                                   includeQualifiers, includeClassOrigin, propertyList);
        },
        [&](const RepositoryAssociations& associations, const Names& classNames) {
            return classObjects(nameSpace, associations.farClasses(classNames), includeQualifiers,
                                includeClassOrigin, propertyList);
        });
}

Answer<CIMObjectPath> Router::associatorNames(const Caller& caller,
                                              const CIMNamespaceName& nameSpace,
                                              const CIMObjectPath& objectName,
                                              const CIMName& assocClass, const CIMName& resultClass,
                                              const String& role, const String& resultRole) {
    return traverse<PathCollector>(
        {caller, nameSpace, objectName, assocClass, {resultClass, role, resultRole}},
        [&](CIMAssociationProvider& provider, const CIMObjectPath& source, const CIMName& candidate,
            PathCollector& collector) {
            provider.associatorNames(contextFor(caller), source, candidate, resultClass, role,
                                     resultRole, collector);
        },
        [&](const RepositoryAssociations& associations, const Names& classNames) {
            return arrayOf(associations.farInstances(classNames));
        },
        [&](const RepositoryAssociations& associations, const Names& classNames) {
            return classPaths(associations.farClasses(classNames));
        });
}

// For references the result class is the filter on the association classes.

Answer<CIMObject> Router::references(const Caller& caller, const CIMNamespaceName& nameSpace,
                                     const CIMObjectPath& objectName, const CIMName& resultClass,
                                     const String& role, bool includeQualifiers,
                                     bool includeClassOrigin, const CIMPropertyList& propertyList) {
    return traverse<ObjectCollector>(
        {caller, nameSpace, objectName, resultClass, {CIMName(), role, String()}},
        [&](CIMAssociationProvider& provider, const CIMObjectPath& source, const CIMName& candidate,
            ObjectCollector& collector) {
            provider.references(contextFor(caller), source, candidate, role, includeQualifiers,
                                includeClassOrigin, propertyList, collector);
        },
        [&](const RepositoryAssociations& associations, const Names& classNames) {
            Array<CIMObject> objects;
            for (const Pegasus::CIMInstance& instance : associations.instances(classNames)) {
                objects.append(CIMObject(instance));
            }
            return objects;
        },
        [&](const RepositoryAssociations& associations, const Names& classNames) {
            return classObjects(nameSpace, associations.associationClasses(classNames),
                                includeQualifiers, includeClassOrigin, propertyList);
        });
}

Answer<CIMObjectPath> Router::referenceNames(const Caller& caller,
                                             const CIMNamespaceName& nameSpace,
                                             const CIMObjectPath& objectName,
                                             const CIMName& resultClass, const String& role) {
    return traverse<PathCollector>(
        {caller, nameSpace, objectName, resultClass, {CIMName(), role, String()}},
        [&](CIMAssociationProvider& provider, const CIMObjectPath& source, const CIMName& candidate,
            PathCollector& collector) {
            provider.referenceNames(contextFor(caller), source, candidate, role, collector);
        },
        [&](const RepositoryAssociations& associations, const Names& classNames) {
            Array<CIMObjectPath> paths;
            for (const Pegasus::CIMInstance& instance : associations.instances(classNames)) {
                paths.append(instance.getPath());
            }
            return paths;
        },
        [&](const RepositoryAssociations& associations, const Names& classNames) {
            return classPaths(associations.associationClasses(classNames));
        });
}

} // namespace embedded::host
