#include "host/ServerObjects.h"

#include "host/Values.h"

#include <Pegasus/Common/CIMProperty.h>
#include <Pegasus/Common/CIMValue.h>
#include <Pegasus/Provider/CIMInstanceProvider.h>

#include <utility>

namespace embedded::host {

using Pegasus::Array;
using Pegasus::Boolean;
using Pegasus::CIMInstance;
using Pegasus::CIMKeyBinding;
using Pegasus::CIMName;
using Pegasus::CIMNamespaceName;
using Pegasus::CIMObjectPath;
using Pegasus::CIMPropertyList;
using Pegasus::CIMValue;
using Pegasus::OperationContext;
using Pegasus::String;
using Pegasus::Uint16;

namespace {

// The classes of the objects, and of the system that they belong to.
const char* const objectManagerClass = "PG_ObjectManager";
const char* const nameSpaceClass = "PG_Namespace";
const char* const communicationClass = "PG_CIMXMLCommunicationMechanism";
const char* const systemClass = "CIM_ComputerSystem";

// Values of the properties (CIM schema 2.41). For the functional profiles: Basic Read, Instance
// Manipulation, Association Traversal. SetProperty, which is all of Basic Write, is not offered.
const std::vector<Uint16> functionalProfiles{2, 5, 6};
constexpr Uint16 statusOk = 2;
constexpr Uint16 communicationCimXml = 2;
constexpr Uint16 cimXmlVersion1 = 1;
constexpr Uint16 authenticationNone = 2;
constexpr Uint16 authenticationBasic = 3;
constexpr Uint16 classTypeCim = 2;
constexpr Uint16 classInfoOther = 1;

/// An instance that grows property by property, its keys being those of the path, too.
class Builder {
  public:
    explicit Builder(const char* className) : _instance(CIMName(className)) {}

    void key(const char* name, const String& value) {
        add(name, CIMValue(value));
        _keys.append(CIMKeyBinding(CIMName(name), value, CIMKeyBinding::STRING));
    }
    void add(const char* name, const CIMValue& value) {
        _instance.addProperty(Pegasus::CIMProperty(CIMName(name), value));
    }
    CIMInstance at(const String& host, const CIMNamespaceName& nameSpace) {
        _instance.setPath(CIMObjectPath(host, nameSpace, _instance.getClassName(), _keys));
        return _instance;
    }

  private:
    CIMInstance _instance;
    Array<CIMKeyBinding> _keys;
};

CIMValue list(const std::vector<Uint16>& numbers) {
    return CIMValue(arrayOf(numbers));
}

/// The keys that every service and access point has.
Builder inSystem(const char* className, const ServerIdentity& identity) {
    Builder object(className);
    object.key("SystemCreationClassName", systemClass);
    object.key("SystemName", identity.hostName);
    object.key("CreationClassName", className);
    object.key("Name", identity.name);
    object.add("ElementName", CIMValue(identity.elementName));
    object.add("OperationalStatus", list({statusOk}));
    return object;
}

Builder objectManager(const ServerIdentity& identity) {
    Builder object = inSystem(objectManagerClass, identity);
    object.add("Description",
               CIMValue(identity.elementName + String(", version ") + identity.version));
    object.add("Started", CIMValue(Boolean(true)));
    object.add("GatherStatisticalData", CIMValue(Boolean(false)));
    return object;
}

Builder communicationMechanism(const ServerIdentity& identity) {
    Builder object = inSystem(communicationClass, identity);
    object.add("Description", CIMValue(String("CIM operations in XML over HTTP")));
    object.add("CommunicationMechanism", CIMValue(communicationCimXml));
    object.add("CIMXMLProtocolVersion", CIMValue(cimXmlVersion1));
    object.add("Version", CIMValue(String("1.0")));
    object.add("FunctionalProfilesSupported", list(functionalProfiles));
    object.add("MultipleOperationsSupported", CIMValue(Boolean(false)));
    object.add("AuthenticationMechanismsSupported",
               list({identity.basicAuthentication ? authenticationBasic : authenticationNone}));
    return object;
}

Builder nameSpaceObject(const ServerIdentity& identity, const CIMNamespaceName& nameSpace) {
    Builder object(nameSpaceClass);
    object.key("SystemCreationClassName", systemClass);
    object.key("SystemName", identity.hostName);
    object.key("ObjectManagerCreationClassName", objectManagerClass);
    object.key("ObjectManagerName", identity.name);
    object.key("CreationClassName", nameSpaceClass);
    object.key("Name", nameSpace.getString());
    object.add("ElementName", CIMValue(nameSpace.getString()));
    // ClassInfo is required though deprecated, and has no value for CIM after 2.8.
    object.add("ClassInfo", CIMValue(classInfoOther));
    object.add("DescriptionOfClassInfo", CIMValue(String("CIM schema 2.41")));
    object.add("ClassType", CIMValue(classTypeCim));
    object.add("ClassTypeVersion", CIMValue(String("2.41.0")));
    return object;
}

/// The objects of one of the classes: what was loaded of it, or else what the server makes up.
class ServerObjects : public Pegasus::CIMInstanceProvider {
  public:
    using Objects = std::function<std::vector<Builder>()>;

    ServerObjects(const repository::Repository& repository, const String& hostName, Objects objects)
        : _repository(repository), _hostName(hostName), _objects(std::move(objects)) {}

    void initialize(Pegasus::CIMOMHandle&) override {}
    void terminate() override {}

    void getInstance(const OperationContext&, const CIMObjectPath& instanceReference, const Boolean,
                     const Boolean, const CIMPropertyList& propertyList,
                     Pegasus::InstanceResponseHandler& handler) override {
        for (const CIMInstance& instance : at(instanceReference)) {
            if (localPath(instance.getPath()) == localPath(instanceReference)) {
                handler.processing();
                handler.deliver(selected(instance, propertyList));
                handler.complete();
                return;
            }
        }
        throw Pegasus::CIMObjectNotFoundException(localPath(instanceReference).toString());
    }

    void enumerateInstances(const OperationContext&, const CIMObjectPath& classReference,
                            const Boolean, const Boolean, const CIMPropertyList& propertyList,
                            Pegasus::InstanceResponseHandler& handler) override {
        handler.processing();
        for (const CIMInstance& instance : at(classReference)) {
            handler.deliver(selected(instance, propertyList));
        }
        handler.complete();
    }

    void enumerateInstanceNames(const OperationContext&, const CIMObjectPath& classReference,
                                Pegasus::ObjectPathResponseHandler& handler) override {
        handler.processing();
        for (const CIMInstance& instance : at(classReference)) {
            handler.deliver(instance.getPath());
        }
        handler.complete();
    }

    void modifyInstance(const OperationContext&, const CIMObjectPath&, const CIMInstance&,
                        const Boolean, const CIMPropertyList&, Pegasus::ResponseHandler&) override {
        refuse();
    }

    void createInstance(const OperationContext&, const CIMObjectPath&, const CIMInstance&,
                        Pegasus::ObjectPathResponseHandler&) override {
        refuse();
    }

    void deleteInstance(const OperationContext&, const CIMObjectPath&,
                        Pegasus::ResponseHandler&) override {
        refuse();
    }

  private:
    [[noreturn]] static void refuse() {
        throw Pegasus::CIMNotSupportedException("The server's own objects cannot be changed.");
    }

    static CIMInstance selected(const CIMInstance& instance, const CIMPropertyList& propertyList) {
        return propertyList.isNull() ? instance : withProperties(instance, propertyList);
    }

    std::vector<CIMInstance> at(const CIMObjectPath& request) const {
        std::vector<CIMInstance> instances =
            _repository.enumerateInstances(request.getNameSpace(), request.getClassName());
        for (CIMInstance& loaded : instances) {
            CIMObjectPath path = loaded.getPath();
            path.setHost(_hostName);
            path.setNameSpace(request.getNameSpace());
            loaded.setPath(path);
        }
        if (instances.empty()) {
            for (Builder& object : _objects()) {
                instances.push_back(object.at(_hostName, request.getNameSpace()));
            }
        }
        return instances;
    }

    const repository::Repository& _repository;
    const String _hostName;
    const Objects _objects;
};

} // namespace

std::vector<BuiltIn> serverObjects(const repository::Repository& repository,
                                   const ServerIdentity& identity) {
    const auto builtIn = [&](const char* className, ServerObjects::Objects objects) {
        return BuiltIn{
            CIMName(className), ProviderType::Instance,
            std::make_shared<ServerObjects>(repository, identity.hostName, std::move(objects))};
    };
    return {
        builtIn(objectManagerClass, [identity] { return std::vector{objectManager(identity)}; }),
        builtIn(communicationClass,
                [identity] { return std::vector{communicationMechanism(identity)}; }),
        builtIn(nameSpaceClass, [identity, &repository] {
            std::vector<Builder> objects;
            for (const CIMNamespaceName& nameSpace : repository.nameSpaces()) {
                objects.push_back(nameSpaceObject(identity, nameSpace));
            }
            return objects;
        })};
}

} // namespace embedded::host
