#include "serverobjects/ServerObjectsProvider.h"

#include <utility>

PEGASUS_USING_PEGASUS;

namespace serverobjects {

namespace {

/// The path without host and namespace: what tells an object from the others of this server.
CIMObjectPath localPath(const CIMObjectPath& path) {
    return CIMObjectPath(String(), CIMNamespaceName(), path.getClassName(), path.getKeyBindings());
}

[[noreturn]] void refuse() {
    throw CIMNotSupportedException("The CIM server's own objects cannot be changed.");
}

} // namespace

ServerObjectsProvider::ServerObjectsProvider(std::function<Settings()> settings)
    : _settings(std::move(settings)) {}

void ServerObjectsProvider::initialize(CIMOMHandle& cimom) {
    const std::lock_guard<std::mutex> lock(_mutex);
    _cimom = cimom;
}

void ServerObjectsProvider::terminate() { delete this; }

/// REQUIRES: the mutex is held, and the settings are known.
bool ServerObjectsProvider::serverPublishes(const CIMNamespaceName& nameSpace) {
    if (!_known->settings.askServer)
        return false;
    String folded = nameSpace.getString();
    folded.toLower();
    const std::string name(static_cast<const char*>(folded.getCString()));
    auto found = _known->publishedByServer.find(name);
    if (found == _known->publishedByServer.end())
        found = _known->publishedByServer.emplace(name, publishesItself(_cimom, nameSpace)).first;
    return found->second;
}

std::vector<CIMInstance> ServerObjectsProvider::instances(const CIMObjectPath& request) {
    const std::lock_guard<std::mutex> lock(_mutex);
    if (!_known) {
        Settings settings = _settings();
        ServerFacts facts = findFacts(settings, _cimom);
        _known = Known{std::move(settings), std::move(facts), {}};
    }
    std::vector<CIMInstance> found;
    for (const PublishedClass& published : publishedClasses)
        if (request.getClassName().equal(CIMName(published.name)) &&
            !serverPublishes(request.getNameSpace()))
            found = published.instances(_known->settings, _known->facts);
    for (CIMInstance& instance : found) {
        CIMObjectPath path = instance.getPath();
        path.setHost(request.getHost());
        path.setNameSpace(request.getNameSpace());
        instance.setPath(path);
    }
    return found;
}

void ServerObjectsProvider::getInstance(const OperationContext&,
                                        const CIMObjectPath& instanceReference, const Boolean,
                                        const Boolean, const CIMPropertyList&,
                                        InstanceResponseHandler& handler) {
    const CIMObjectPath wanted = localPath(instanceReference);
    for (const CIMInstance& instance : instances(instanceReference)) {
        if (localPath(instance.getPath()) == wanted) {
            handler.processing();
            handler.deliver(instance);
            handler.complete();
            return;
        }
    }
    throw CIMObjectNotFoundException(wanted.toString());
}

void ServerObjectsProvider::enumerateInstances(const OperationContext&,
                                               const CIMObjectPath& classReference, const Boolean,
                                               const Boolean, const CIMPropertyList&,
                                               InstanceResponseHandler& handler) {
    const std::vector<CIMInstance> found = instances(classReference);
    handler.processing();
    for (const CIMInstance& instance : found)
        handler.deliver(instance);
    handler.complete();
}

void ServerObjectsProvider::enumerateInstanceNames(const OperationContext&,
                                                   const CIMObjectPath& classReference,
                                                   ObjectPathResponseHandler& handler) {
    const std::vector<CIMInstance> found = instances(classReference);
    handler.processing();
    for (const CIMInstance& instance : found)
        handler.deliver(instance.getPath());
    handler.complete();
}

void ServerObjectsProvider::modifyInstance(const OperationContext&, const CIMObjectPath&,
                                           const CIMInstance&, const Boolean,
                                           const CIMPropertyList&, ResponseHandler&) {
    refuse();
}

void ServerObjectsProvider::createInstance(const OperationContext&, const CIMObjectPath&,
                                           const CIMInstance&, ObjectPathResponseHandler&) {
    refuse();
}

void ServerObjectsProvider::deleteInstance(const OperationContext&, const CIMObjectPath&,
                                           ResponseHandler&) {
    refuse();
}

} // namespace serverobjects
