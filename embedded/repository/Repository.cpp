#include "repository/Repository.h"

#include "repository/ClassFilter.h"
#include "repository/GivenInstance.h"
#include "repository/Loader.h"
#include "repository/NameSpaceList.h"
#include "repository/PathMatch.h"

#include <Pegasus/Common/Exception.h>

#include <mutex>
#include <shared_mutex>

namespace embedded::repository {

namespace {

using Pegasus::CIMClass;
using Pegasus::CIMException;
using Pegasus::CIMInstance;
using Pegasus::CIMName;
using Pegasus::CIMNamespaceName;
using Pegasus::CIMObjectPath;
using Pegasus::CIMPropertyList;
using Pegasus::String;

[[noreturn]] void notFound(const CIMObjectPath& instanceName) {
    throw CIMException(Pegasus::CIM_ERR_NOT_FOUND, withoutPlace(instanceName).toString());
}

using Read = std::shared_lock<std::shared_mutex>;
using Write = std::unique_lock<std::shared_mutex>;

} // namespace

class Repository::Implementation {
  public:
    mutable std::shared_mutex mutex;
    NameSpaceList nameSpaces;

    // REQUIRES for all: the mutex is held, for writing by those that hand out what may be changed.

    const NameSpace& nameSpace(const CIMNamespaceName& name) const {
        const NameSpace* found = nameSpaces.find(name);
        if (!found) {
            throw CIMException(Pegasus::CIM_ERR_INVALID_NAMESPACE, name.getString());
        }
        return *found;
    }

    const NameSpace::ClassEntry& entry(const CIMNamespaceName& nameSpaceName,
                                       const CIMName& className,
                                       Pegasus::CIMStatusCode otherwise) const {
        const auto* found = nameSpace(nameSpaceName).find(className);
        if (!found) {
            throw CIMException(otherwise, className.getString());
        }
        return *found;
    }

    /// The class with its instances.
    const NameSpace::ClassEntry& instancesOf(const CIMNamespaceName& nameSpaceName,
                                             const CIMName& className) const {
        return entry(nameSpaceName, className, Pegasus::CIM_ERR_INVALID_CLASS);
    }

    NameSpace::ClassEntry& changeInstancesOf(const CIMNamespaceName& nameSpaceName,
                                             const CIMName& className) {
        instancesOf(nameSpaceName, className);
        return *nameSpaces.change(nameSpaceName).find(className);
    }
};

Repository::Repository() : _implementation(std::make_unique<Implementation>()) {
}

Repository::~Repository() = default;

void Repository::createNameSpace(const CIMNamespaceName& nameSpace) {
    if (nameSpace.isNull()) {
        throw CIMException(Pegasus::CIM_ERR_INVALID_PARAMETER, "a namespace must have a name");
    }
    const Write lock(_implementation->mutex);
    _implementation->nameSpaces.change(nameSpace);
}

bool Repository::hasNameSpace(const CIMNamespaceName& nameSpace) const {
    const Read lock(_implementation->mutex);
    return _implementation->nameSpaces.find(nameSpace) != nullptr;
}

std::vector<CIMNamespaceName> Repository::nameSpaces() const {
    const Read lock(_implementation->mutex);
    return _implementation->nameSpaces.names();
}

void Repository::load(const mof::Specification& specification, const CIMNamespaceName& nameSpace) {
    const Write lock(_implementation->mutex);
    NameSpaceList attempt = _implementation->nameSpaces;
    loadInto(attempt, specification, nameSpace);
    _implementation->nameSpaces = std::move(attempt);
}

bool Repository::hasClass(const CIMNamespaceName& nameSpace, const CIMName& className) const {
    const Read lock(_implementation->mutex);
    return _implementation->nameSpace(nameSpace).find(className) != nullptr;
}

CIMClass Repository::getClass(const CIMNamespaceName& nameSpace, const CIMName& className,
                              bool localOnly, bool includeQualifiers, bool includeClassOrigin,
                              const CIMPropertyList& propertyList) const {
    const Read lock(_implementation->mutex);
    return filteredClass(
        _implementation->entry(nameSpace, className, Pegasus::CIM_ERR_NOT_FOUND).resolved,
        localOnly, includeQualifiers, includeClassOrigin, propertyList);
}

std::vector<CIMName> Repository::subClassNames(const CIMNamespaceName& nameSpace,
                                               const CIMName& className, bool deep) const {
    const Read lock(_implementation->mutex);
    if (!className.isNull()) {
        _implementation->entry(nameSpace, className, Pegasus::CIM_ERR_INVALID_CLASS);
    }
    return _implementation->nameSpace(nameSpace).subClassNames(className, deep);
}

std::vector<CIMName> Repository::superClassNames(const CIMNamespaceName& nameSpace,
                                                 const CIMName& className) const {
    const Read lock(_implementation->mutex);
    _implementation->entry(nameSpace, className, Pegasus::CIM_ERR_INVALID_CLASS);
    return _implementation->nameSpace(nameSpace).superClassNames(className);
}

std::vector<CIMName> Repository::associationClassNames(const CIMNamespaceName& nameSpace,
                                                       const CIMName& sourceClass,
                                                       const CIMName& filter) const {
    const Read lock(_implementation->mutex);
    _implementation->entry(nameSpace, sourceClass, Pegasus::CIM_ERR_INVALID_PARAMETER);
    if (!filter.isNull()) {
        _implementation->entry(nameSpace, filter, Pegasus::CIM_ERR_INVALID_PARAMETER);
    }
    return _implementation->nameSpace(nameSpace).associationClassNames(sourceClass, filter);
}

CIMInstance Repository::getInstance(const CIMNamespaceName& nameSpace,
                                    const CIMObjectPath& instanceName) const {
    const Read lock(_implementation->mutex);
    const CIMInstance* found = _implementation->instancesOf(nameSpace, instanceName.getClassName())
                                   .instances.find(instanceName);
    if (!found) {
        notFound(instanceName);
    }
    return found->clone();
}

std::vector<CIMInstance> Repository::enumerateInstances(const CIMNamespaceName& nameSpace,
                                                        const CIMName& className) const {
    const Read lock(_implementation->mutex);
    std::vector<CIMInstance> instances =
        _implementation->instancesOf(nameSpace, className).instances.all();
    for (CIMInstance& each : instances) {
        each = each.clone();
    }
    return instances;
}

CIMObjectPath Repository::createInstance(const CIMNamespaceName& nameSpace,
                                         const CIMInstance& instance) {
    const Write lock(_implementation->mutex);
    auto& entry = _implementation->changeInstancesOf(nameSpace, instance.getClassName());
    if (entry.resolved.isAbstract()) {
        throw CIMException(Pegasus::CIM_ERR_FAILED, String("class ") +
                                                        entry.resolved.getClassName().getString() +
                                                        " is abstract and has no instances");
    }
    const CIMInstance created = completedInstance(entry.resolved, instance);
    if (!entry.instances.add(created)) {
        throw CIMException(Pegasus::CIM_ERR_ALREADY_EXISTS, created.getPath().toString());
    }
    return created.getPath();
}

void Repository::modifyInstance(const CIMNamespaceName& nameSpace, const CIMInstance& instance,
                                const CIMPropertyList& propertyList) {
    const Write lock(_implementation->mutex);
    auto& entry = _implementation->changeInstancesOf(nameSpace, instance.getClassName());
    const CIMInstance* kept = entry.instances.find(instance.getPath());
    if (!kept) {
        notFound(instance.getPath());
    }
    entry.instances.replace(modifiedInstance(*kept, instance, propertyList, entry.resolved));
}

void Repository::deleteInstance(const CIMNamespaceName& nameSpace,
                                const CIMObjectPath& instanceName) {
    const Write lock(_implementation->mutex);
    auto& entry = _implementation->changeInstancesOf(nameSpace, instanceName.getClassName());
    if (!entry.instances.remove(instanceName)) {
        notFound(instanceName);
    }
}

Pegasus::CIMQualifierDecl Repository::getQualifier(const CIMNamespaceName& nameSpace,
                                                   const CIMName& qualifierName) const {
    const Read lock(_implementation->mutex);
    const auto found = _implementation->nameSpace(nameSpace).qualifiers().find(qualifierName);
    if (!found) {
        throw CIMException(Pegasus::CIM_ERR_NOT_FOUND, qualifierName.getString());
    }
    return found->clone();
}

std::vector<Pegasus::CIMQualifierDecl>
Repository::enumerateQualifiers(const CIMNamespaceName& nameSpace) const {
    const Read lock(_implementation->mutex);
    std::vector<Pegasus::CIMQualifierDecl> declarations =
        _implementation->nameSpace(nameSpace).qualifiers().all();
    for (Pegasus::CIMQualifierDecl& each : declarations) {
        each = each.clone();
    }
    return declarations;
}

} // namespace embedded::repository
