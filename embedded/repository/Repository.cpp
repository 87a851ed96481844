#include "repository/Repository.h"

#include "repository/GivenInstance.h"
#include "repository/Loader.h"
#include "repository/NameSpaceList.h"
#include "repository/PathMatch.h"
#include "threads/Locks.h"

#include <Pegasus/Common/Exception.h>

namespace embedded::repository {

using namespace Pegasus;

namespace {

[[noreturn]] void notFound(const CIMObjectPath& instanceName) {
    throw CIMException(CIM_ERR_NOT_FOUND, withoutPlace(instanceName).toString());
}

/// For changing.
InstanceStore& instancesOf(NameSpaceList& all, const CIMNamespaceName& nameSpace,
                           const CIMName& className) {
    if (!all.find(nameSpace))
        throw CIMException(CIM_ERR_INVALID_NAMESPACE, nameSpace.getString());
    NameSpace& home = all.change(nameSpace);
    const ClassNode* node = home.find(className);
    if (!node)
        throw CIMException(CIM_ERR_INVALID_CLASS, className.getString());
    return home.changeInstancesOf(*node);
}

} // namespace

using threads::Lock;
using threads::Mutex;

class Repository::Implementation {
  public:
    std::shared_ptr<const NameSpaceList> now() const {
        const Lock lock(_reading);
        return _now;
    }

    /// `change` works on a copy, which is thrown away if it throws.
    template <class Change>
    void write(Change change) {
        const Lock lock(_writing);
        auto next = std::make_shared<NameSpaceList>(*now());
        change(*next);
        publish(std::move(next));
    }

  private:
    void publish(std::shared_ptr<const NameSpaceList> next) REQUIRES(_writing) {
        // What was before goes when the lock has gone: there may be much to take down.
        const Lock lock(_reading);
        _now.swap(next);
    }

    mutable Mutex _writing; ///< held for the whole of a write
    mutable Mutex _reading; ///< held for as long as it takes to copy or change a pointer
    std::shared_ptr<const NameSpaceList>
        _now GUARDED_BY(_reading) = std::make_shared<NameSpaceList>();
};

Repository::Repository() : _implementation(std::make_unique<Implementation>()) {}

Repository::~Repository() = default;

View Repository::view() const { return View(_implementation->now()); }

void Repository::createNameSpace(const CIMNamespaceName& nameSpace) {
    if (nameSpace.isNull())
        throw CIMException(CIM_ERR_INVALID_PARAMETER, "a namespace must have a name");
    _implementation->write([&](NameSpaceList& all) { all.change(nameSpace); });
}

void Repository::load(const mof::Specification& specification, const CIMNamespaceName& nameSpace) {
    _implementation->write([&](NameSpaceList& all) { loadInto(all, specification, nameSpace); });
}

CIMObjectPath Repository::createInstance(const CIMNamespaceName& nameSpace,
                                         const CIMInstance& instance) {
    CIMObjectPath path;
    _implementation->write([&](NameSpaceList& all) {
        InstanceStore& store = instancesOf(all, nameSpace, instance.getClassName());
        ClassForm& form = store.form();
        if (form.head().isAbstract())
            throw CIMException(CIM_ERR_FAILED, String("class ") + form.className().getString() +
                                                   " is abstract and has no instances");
        const Ref<Stored> created = completedInstance(form, instance);
        path = created->path;
        if (!store.add(created)) {
            form.forgetLast();
            throw CIMException(CIM_ERR_ALREADY_EXISTS, path.toString());
        }
    });
    return path;
}

void Repository::modifyInstance(const CIMNamespaceName& nameSpace, const CIMInstance& instance,
                                const CIMPropertyList& propertyList) {
    _implementation->write([&](NameSpaceList& all) {
        InstanceStore& store = instancesOf(all, nameSpace, instance.getClassName());
        const Ref<Stored>* kept = store.find(instance.getPath());
        if (!kept)
            notFound(instance.getPath());
        store.replace(modifiedInstance(store.form(), **kept, instance, propertyList));
    });
}

void Repository::deleteInstance(const CIMNamespaceName& nameSpace,
                                const CIMObjectPath& instanceName) {
    _implementation->write([&](NameSpaceList& all) {
        if (!instancesOf(all, nameSpace, instanceName.getClassName()).remove(instanceName))
            notFound(instanceName);
    });
}

} // namespace embedded::repository
