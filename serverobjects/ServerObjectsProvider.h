// Publishes the CIM server's own objects, which management clients ask for when they meet a server:
// its object manager, the communication mechanisms by which it is reached, and its namespaces.
#pragma once

#include "serverobjects/ServerFacts.h"

#include <Pegasus/Common/CIMInstance.h>
#include <Pegasus/Provider/CIMInstanceProvider.h>

#include <array>
#include <functional>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

namespace serverobjects {

/// A class that the provider publishes.
struct PublishedClass {
    const char* name;
    /// All its instances. Their paths have neither host nor namespace. Throws Pegasus::Exception
    /// where a text of the settings or the server is no CIM name.
    std::vector<Pegasus::CIMInstance> (*instances)(const Settings& settings,
                                                   const ServerFacts& facts);
};

/// The object manager, its communication mechanisms, its namespaces.
extern const std::array<PublishedClass, 3> publishedClasses;

/// The same objects in every namespace for which it is registered, but for those in which the
/// server publishes an object manager of its own: clients want exactly one. The objects are
/// CIM_ObjectManager, PG_CIMXMLCommunicationMechanism and PG_Namespace; they cannot be created,
/// modified or deleted.
///
/// The server is asked once, by the first request, and never for a class that this provider serves:
/// it would wait for itself. When that fails the request fails, and the next one asks again.
///
/// Thread-safety: all operations may be called from several threads at once.
class ServerObjectsProvider : public Pegasus::CIMInstanceProvider {
  public:
    /// `settings` is called by the first request; what it throws as std::exception, the request's
    /// client is told.
    explicit ServerObjectsProvider(std::function<Settings()> settings);

    void initialize(Pegasus::CIMOMHandle& cimom) override;
    /// Deletes this object.
    void terminate() override;

    void getInstance(const Pegasus::OperationContext& context,
                     const Pegasus::CIMObjectPath& instanceReference,
                     const Pegasus::Boolean includeQualifiers,
                     const Pegasus::Boolean includeClassOrigin,
                     const Pegasus::CIMPropertyList& propertyList,
                     Pegasus::InstanceResponseHandler& handler) override;
    void enumerateInstances(const Pegasus::OperationContext& context,
                            const Pegasus::CIMObjectPath& classReference,
                            const Pegasus::Boolean includeQualifiers,
                            const Pegasus::Boolean includeClassOrigin,
                            const Pegasus::CIMPropertyList& propertyList,
                            Pegasus::InstanceResponseHandler& handler) override;
    void enumerateInstanceNames(const Pegasus::OperationContext& context,
                                const Pegasus::CIMObjectPath& classReference,
                                Pegasus::ObjectPathResponseHandler& handler) override;
    void modifyInstance(const Pegasus::OperationContext& context,
                        const Pegasus::CIMObjectPath& instanceReference,
                        const Pegasus::CIMInstance& instanceObject,
                        const Pegasus::Boolean includeQualifiers,
                        const Pegasus::CIMPropertyList& propertyList,
                        Pegasus::ResponseHandler& handler) override;
    void createInstance(const Pegasus::OperationContext& context,
                        const Pegasus::CIMObjectPath& instanceReference,
                        const Pegasus::CIMInstance& instanceObject,
                        Pegasus::ObjectPathResponseHandler& handler) override;
    void deleteInstance(const Pegasus::OperationContext& context,
                        const Pegasus::CIMObjectPath& instanceReference,
                        Pegasus::ResponseHandler& handler) override;

  private:
    struct Known {
        Settings settings;
        ServerFacts facts;
        std::map<std::string, bool> publishedByServer; ///< by namespace in lower case
    };

    std::vector<Pegasus::CIMInstance> instances(const Pegasus::CIMObjectPath& request);
    bool serverPublishes(const Pegasus::CIMNamespaceName& nameSpace);

    const std::function<Settings()> _settings;
    std::mutex _mutex; ///< guards the handle and what is known
    Pegasus::CIMOMHandle _cimom;
    std::optional<Known> _known;
};

} // namespace serverobjects
