// The association operations of the router. One mechanism: the candidates are the association
// classes that can touch the source's class; the repository is one source, always; the
// provider of every registered candidate is one more.
#include "routing/ProviderCall.h"
#include "routing/Router.h"
#include "routing/Values.h"

#include <Pegasus/Provider/CIMAssociationProvider.h>

#include <optional>

namespace embedded::routing {

using namespace Pegasus;
using repository::StoredInstance;

namespace {

using Names = RepositoryAssociations::Names;

void requireRole(const char* parameter, const String& role) {
    if (role.size() != 0 && !CIMName::legal(role))
        throw CIMException(CIM_ERR_INVALID_PARAMETER, String(parameter) + " " + role);
}

/// Whether the far ends of associations are asked for, or else the associations themselves.
bool asksForFarEnds(const Operation& operation) {
    return operation.kind == OperationKind::Associators ||
           operation.kind == OperationKind::AssociatorNames;
}

/// What the schema answers about a source that is a class.
Cursor classesAt(const Operation& operation, const repository::View& view,
                 const RepositoryAssociations& associations, const Names& candidates) {
    Names found = asksForFarEnds(operation) ? associations.farClasses(candidates)
                                            : associations.associationClasses(candidates);
    if (returnsPaths(operation.kind))
        return madeOf(
            std::move(found),
            [](const CIMName& name) { return CIMObjectPath(String(), CIMNamespaceName(), name); });
    return madeOf(std::move(found), [&operation, view](const CIMName& name) {
        return CIMObject(view.getClass(operation.nameSpace, name, false,
                                       operation.includeQualifiers, operation.includeClassOrigin,
                                       operation.propertyList));
    });
}

/// The far end of a stored association: an instance of the repository, or one that was got.
struct FarEnd {
    CIMObjectPath path;
    std::optional<StoredInstance> stored;
    CIMInstance got;

    CIMObject object() const {
        CIMInstance instance = stored ? stored->instance() : got;
        instance.setPath(path);
        return CIMObject(instance);
    }
};

} // namespace

Plan Router::planTraversal(const Question& question) {
    const auto& [operation, view] = question;
    const bool farEnds = asksForFarEnds(operation);
    requireRole("role", operation.role);
    requireRole("resultrole", operation.resultRole);
    // For references the result class is the filter on the association classes.
    const Names candidates =
        view.associationClassNames(operation.nameSpace, operation.objectName.getClassName(),
                                   farEnds ? operation.assocClass : operation.resultClass);
    const CIMName resultClass = farEnds ? operation.resultClass : CIMName();
    if (!resultClass.isNull())
        question.requireClass(resultClass);
    const RepositoryAssociations associations(view, operation.nameSpace, operation.objectName,
                                              {resultClass, operation.role, operation.resultRole});
    if (operation.objectName.getKeyBindings().size() == 0)
        return answered(completed(operation, classesAt(operation, view, associations, candidates)));

    std::vector<Source> served;
    Names unserved;
    for (const CIMName& candidate : candidates)
        if (Provider* const provider =
                _modules.find(operation.nameSpace, candidate, ProviderType::Association))
            served.push_back({candidate, provider});
        else
            unserved.push_back(candidate);
    std::vector<StoredInstance> stored;
    std::vector<CIMObjectPath> farPaths;
    if (farEnds) {
        farPaths = associations.farInstances(unserved);
        for (CIMObjectPath& path : farPaths)
            complete(operation, path);
    } else {
        stored = associations.instances(unserved);
    }
    std::vector<const Module*> modules;
    for (const Source& source : served)
        addModule(modules, source.provider);
    if (operation.kind == OperationKind::Associators) {
        for (const CIMObjectPath& path : farPaths)
            addModule(modules, _modules.find(path.getNameSpace(), path.getClassName(),
                                             ProviderType::Instance));
    }
    return planned(std::move(modules), [this, question, served = std::move(served),
                                        stored = std::move(stored),
                                        farPaths = std::move(farPaths)]() mutable {
        const Operation& asked = question.operation;
        JoinedAnswer joined;
        joined.add([&] {
            switch (asked.kind) {
            case OperationKind::Associators:
                return instanceObjects(question, farPaths);
            case OperationKind::AssociatorNames:
                return answerOver(std::move(farPaths));
            case OperationKind::References:
                return answerOver(std::move(stored), [](const StoredInstance& one) {
                    return CIMObject(one.instance());
                });
            default:
                return answerOver(std::move(stored),
                                  [](const StoredInstance& one) { return one.path(); });
            }
        });
        for (const Source& source : served)
            joined.add([&] { return traversed(asked, source); });
        Answer answer = joined.take();
        answer.next = completed(asked, std::move(answer.next));
        return answer;
    });
}

Answer Router::traversed(const Operation& operation, const Source& source) const {
    const OperationContext context = contextFor(operation.caller);
    const CIMObjectPath path = requestPath(operation, operation.objectName);
    const CIMName& candidate = source.className;
    PathCollector paths(Expected::Any);
    ObjectCollector objects(Expected::Any);
    callProvider<CIMAssociationProvider>(
        *source.provider, candidate, [&](CIMAssociationProvider& asked) {
            switch (operation.kind) {
            case OperationKind::Associators:
                return asked.associators(context, path, candidate, operation.resultClass,
                                         operation.role, operation.resultRole,
                                         operation.includeQualifiers, operation.includeClassOrigin,
                                         operation.propertyList, objects);
            case OperationKind::AssociatorNames:
                return asked.associatorNames(context, path, candidate, operation.resultClass,
                                             operation.role, operation.resultRole, paths);
            case OperationKind::References:
                return asked.references(context, path, candidate, operation.role,
                                        operation.includeQualifiers, operation.includeClassOrigin,
                                        operation.propertyList, objects);
            default:
                return asked.referenceNames(context, path, candidate, operation.role, paths);
            }
        });
    return returnsPaths(operation.kind) ? answerOver(paths.objects())
                                        : answerOver(objects.objects());
}

/// The instances that `paths` name, whoever serves them. A path that leads nowhere is left out:
/// associatorNames tells it, but there is no object to show.
Answer Router::instanceObjects(const Question& question, const std::vector<CIMObjectPath>& paths) {
    std::vector<FarEnd> found;
    for (const CIMObjectPath& path : paths) {
        Operation get = question.operation;
        get.kind = OperationKind::GetInstance;
        get.nameSpace = path.getNameSpace();
        get.objectName = path;
        const Question there{get, question.view};
        try {
            there.requireClass(path.getClassName());
            if (providerOf(there, path.getClassName()) == nullptr)
                found.push_back({path, question.view.getInstance(get.nameSpace, path), {}});
            else
                found.push_back({path, std::nullopt, onlyOf<CIMInstance>(perform(get))});
        } catch (const CIMException& error) {
            if (error.getCode() != CIM_ERR_NOT_FOUND)
                throw;
        }
    }
    return answerOver(std::move(found), [](const FarEnd& end) { return end.object(); });
}

/// Host and namespace are put in where a path has none; others stay, right or wrong.
void Router::complete(const Operation& operation, CIMObjectPath& path) const {
    if (path.getHost().size() == 0)
        path.setHost(_hostName);
    if (path.getNameSpace().isNull())
        path.setNameSpace(operation.nameSpace);
}

Cursor Router::completed(const Operation& operation, Cursor cursor) const {
    if (returnsPaths(operation.kind))
        return mapped<CIMObjectPath>(std::move(cursor), [this, &operation](CIMObjectPath& path) {
            complete(operation, path);
        });
    const auto completeObject = [this, &operation](auto& object) {
        CIMObjectPath path = object.getPath();
        complete(operation, path);
        object.setPath(path);
    };
    return operation.kind == OperationKind::EnumerateInstances
               ? mapped<CIMInstance>(std::move(cursor), completeObject)
               : mapped<CIMObject>(std::move(cursor), completeObject);
}

} // namespace embedded::routing
