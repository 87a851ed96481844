// The server's own objects as CIM instances.
#include "serverobjects/ServerObjectsProvider.h"

#include <Pegasus/Common/CIMProperty.h>
#include <Pegasus/Common/CIMValue.h>

#include <initializer_list>

PEGASUS_USING_PEGASUS;

namespace serverobjects {

namespace {

const char* const objectManagerClass = "CIM_ObjectManager";
const char* const mechanismClass = "PG_CIMXMLCommunicationMechanism";
const char* const nameSpaceClass = "PG_Namespace";

// Values of the properties, CIM schema 2.41.
constexpr Uint16 statusOk = 2;            // CIM_ManagedSystemElement.OperationalStatus
constexpr Uint16 communicationCimXml = 2; // ...CommunicationMechanism.CommunicationMechanism
constexpr Uint16 cimXmlVersion1 = 1;      // CIM_CIMXMLCommunicationMechanism.CIMXMLProtocolVersion
constexpr Uint16 notAdvertised = 2;       // ...CommunicationMechanism.AdvertiseTypes
constexpr Uint16 classInfoUnknown = 0;    // CIM_Namespace.ClassInfo
constexpr Uint16 classTypeCim = 2;        // CIM_Namespace.ClassType
constexpr Uint16 accessHttp = 2;          // PG_CIMXMLCommunicationMechanism.
constexpr Uint16 accessHttps = 3;         //   namespaceAccessProtocol

/// An instance that grows property by property, its keys being those of the path, too.
class Builder {
  public:
    explicit Builder(const char* className) : _instance(CIMName(className)) {}

    void key(const char* name, const String& value) {
        add(name, value);
        _keys.append(CIMKeyBinding(CIMName(name), value, CIMKeyBinding::STRING));
    }
    template <class T>
    void add(const char* name, const T& value) {
        _instance.addProperty(CIMProperty(CIMName(name), CIMValue(value)));
    }
    void add(const char* name, const std::vector<Uint16>& values) {
        Array<Uint16> array;
        for (const Uint16 value : values)
            array.append(value);
        add(name, array);
    }
    CIMInstance done() {
        _instance.setPath(
            CIMObjectPath(String(), CIMNamespaceName(), _instance.getClassName(), _keys));
        return _instance;
    }

  private:
    CIMInstance _instance;
    Array<CIMKeyBinding> _keys;
};

String text(const std::string& utf8) { return String(utf8.c_str()); }

/// What every service and access point of the system has.
Builder inSystem(const char* className, const ServerFacts& facts, const String& name) {
    Builder object(className);
    object.key("SystemCreationClassName", facts.systemCreationClassName);
    object.key("SystemName", facts.systemName);
    object.key("CreationClassName", className);
    object.key("Name", name);
    object.add("OperationalStatus", std::vector<Uint16>{statusOk});
    return object;
}

std::vector<CIMInstance> objectManager(const Settings& settings, const ServerFacts& facts) {
    Builder object = inSystem(objectManagerClass, facts, facts.name);
    object.add("ElementName", text(settings.elementName));
    object.add("Description",
               text(settings.description.empty() ? settings.elementName : settings.description));
    object.add("Started", Boolean(true));
    object.add("GatherStatisticalData", Boolean(false));
    return {object.done()};
}

std::vector<CIMInstance> communicationMechanisms(const Settings& settings,
                                                 const ServerFacts& facts) {
    std::vector<CIMInstance> mechanisms;
    for (const Access& access : facts.accesses) {
        const bool secure = access.scheme == String("https");
        Builder object =
            inSystem(mechanismClass, facts, access.scheme + String("://") + access.address);
        object.add("ElementName", String("CIM-XML over ") + access.scheme);
        object.add("CommunicationMechanism", communicationCimXml);
        object.add("FunctionalProfilesSupported", settings.functionalProfiles);
        object.add("MultipleOperationsSupported", Boolean(false));
        object.add("AuthenticationMechanismsSupported", facts.authenticationMechanisms);
        object.add("AdvertiseTypes", std::vector<Uint16>{notAdvertised});
        object.add("Version", String("1.0"));
        object.add("CIMXMLProtocolVersion", cimXmlVersion1);
        object.add("CIMValidated", Boolean(false));
        object.add("namespaceAccessProtocol", secure ? accessHttps : accessHttp);
        object.add("IPAddress", access.address);
        mechanisms.push_back(object.done());
    }
    return mechanisms;
}

std::vector<CIMInstance> nameSpaces(const Settings&, const ServerFacts& facts) {
    std::vector<CIMInstance> objects;
    for (const String& nameSpace : facts.nameSpaces) {
        Builder object(nameSpaceClass);
        object.key("SystemCreationClassName", facts.systemCreationClassName);
        object.key("SystemName", facts.systemName);
        object.key("ObjectManagerCreationClassName", objectManagerClass);
        object.key("ObjectManagerName", facts.name);
        object.key("CreationClassName", nameSpaceClass);
        object.key("Name", nameSpace);
        object.add("ElementName", nameSpace);
        object.add("ClassInfo", classInfoUnknown);
        object.add("ClassType", classTypeCim);
        objects.push_back(object.done());
    }
    return objects;
}

} // namespace

const std::array<PublishedClass, 3> publishedClasses{{
    {objectManagerClass, objectManager},
    {mechanismClass, communicationMechanisms},
    {nameSpaceClass, nameSpaces},
}};

} // namespace serverobjects
