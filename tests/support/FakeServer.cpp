#include "support/FakeServer.h"

#include <Pegasus/Common/CIMProperty.h>
#include <Pegasus/Common/CIMQualifier.h>

#include <algorithm>
#include <cctype>
#include <stdexcept>

PEGASUS_USING_PEGASUS;

namespace testsupport {

using embedding::OperationKind;

namespace {

std::string lower(std::string name) {
    std::transform(name.begin(), name.end(), name.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return name;
}

CIMType typeNamed(const std::string& name) {
    const std::map<std::string, CIMType> types = {
        {"string", CIMTYPE_STRING}, {"uint16", CIMTYPE_UINT16}, {"boolean", CIMTYPE_BOOLEAN}};
    const auto found = types.find(name);
    if (found == types.end())
        throw std::invalid_argument("no such type in a test's class: " + name);
    return found->second;
}

std::string flag(const char* name, bool value) {
    return std::string(" ") + name + "=" + (value ? "1" : "0");
}

std::string listFlag(const CIMPropertyList& list) {
    return list.isNull() ? " properties=all" : " properties=some";
}

} // namespace

std::string text(const String& string) { return static_cast<const char*>(string.getCString()); }

std::string text(const CIMObjectPath& path) { return text(path.toString()); }

CIMClass makeClass(const std::string& name, const std::vector<std::string>& properties) {
    CIMClass cimClass{CIMName(name.c_str())};
    for (const std::string& property : properties) {
        const std::size_t blank = property.find(' ');
        std::string type = property.substr(0, blank);
        const bool isArray = type.size() > 2 && type.substr(type.size() - 2) == "[]";
        if (isArray)
            type.resize(type.size() - 2);
        CIMProperty declared(CIMName(property.substr(blank + 1).c_str()),
                             CIMValue(typeNamed(type), isArray));
        if (cimClass.getPropertyCount() == 0)
            declared.addQualifier(CIMQualifier(CIMName("Key"), CIMValue(Boolean(true))));
        cimClass.addProperty(declared);
    }
    return cimClass;
}

std::shared_ptr<FakeServer> FakeServer::withSchema() {
    auto server = std::make_shared<FakeServer>();
    for (const char* name : {"CIM_RegisteredProfile", "CIM_RegisteredSubProfile"}) {
        CIMClass profile =
            makeClass(name, {"string InstanceID", "string Caption", "uint16 RegisteredOrganization",
                             "string OtherRegisteredOrganization", "string RegisteredName",
                             "string RegisteredVersion", "uint16[] AdvertiseTypes",
                             "string[] AdvertiseTypeDescriptions"});
        profile.addQualifier(CIMQualifier(CIMName("Version"), CIMValue(String("2.41.0"))));
        profile.addQualifier(
            CIMQualifier(CIMName("Description"), CIMValue(String("A profile of the tests."))));
        server->define(profile);
    }
    server->define(makeClass("ORVEX_ObjectManagerHost",
                             {"string CreationClassName", "string Name", "string NameFormat",
                              "string Description", "string ElementName",
                              "uint16[] OperationalStatus", "string PrimaryOwnerName"}));
    server->define(
        makeClass("ORVEX_SoftwareIdentity",
                  {"string InstanceID", "string Name", "string VersionString",
                   "string Manufacturer", "uint16[] Classifications", "string SerialNumber"}));
    return server;
}

CIMOMHandle FakeServer::handleTo(const std::shared_ptr<FakeServer>& server) {
    embedding::setHandleFactory([server] { return server; });
    return CIMOMHandle();
}

void FakeServer::define(const CIMClass& cimClass, const std::string& nameSpace) {
    _classes[lower(nameSpace + ":" + text(cimClass.getClassName().getString()))] = cimClass;
}

void FakeServer::forget(const std::string& className, const std::string& nameSpace) {
    _classes.erase(lower(nameSpace + ":" + className));
}

void FakeServer::publish(const std::string& className, const std::vector<CIMInstance>& objects) {
    _objects[lower(className)] = objects;
}

void FakeServer::publish(const std::string& className, const std::vector<std::string>& paths) {
    std::vector<CIMInstance> objects;
    for (const std::string& path : paths) {
        const CIMObjectPath name{String(path.c_str())};
        CIMInstance object(name.getClassName());
        object.setPath(name);
        objects.push_back(object);
    }
    publish(className, objects);
}

void FakeServer::fail(const std::string& operation, const std::string& className,
                      const std::function<void()>& how) {
    _failures[lower(operation + " " + className)] = how;
}

void FakeServer::fail(const std::string& operation, const std::string& className,
                      CIMStatusCode status, const std::string& message) {
    fail(
        operation, className,
        [status, message] { throw CIMException(status, String(message.c_str())); });
}

void FakeServer::failIfTold(const std::string& operation, const std::string& className) const {
    const auto failure = _failures.find(lower(operation + " " + className));
    if (failure != _failures.end() && failure->second)
        failure->second();
}

const std::vector<CIMInstance>& FakeServer::objectsOf(const std::string& className) const {
    static const std::vector<CIMInstance> none;
    const auto found = _objects.find(lower(className));
    return found != _objects.end() ? found->second : none;
}

embedding::Answer FakeServer::perform(const embedding::Operation& operation) {
    const std::string name = embedding::operationName(operation.kind);
    const std::string className = text(operation.target().getString());
    const bool ofInstance = operation.kind == OperationKind::GetInstance;
    std::string flags;
    if (operation.kind != OperationKind::EnumerateInstanceNames)
        flags = (operation.kind == OperationKind::EnumerateInstances
                     ? flag("deep", operation.deepInheritance)
                     : "") +
                flag("localOnly", operation.localOnly) +
                flag("qualifiers", operation.includeQualifiers) +
                flag("origin", operation.includeClassOrigin) + listFlag(operation.propertyList);
    calls.push_back(name + " " + text(operation.nameSpace.getString()) + " " +
                    (ofInstance ? text(operation.objectName) : className) + flags);
    failIfTold(name, className);
    switch (operation.kind) {
    case OperationKind::GetClass:
        return {embedding::cursorOver(classFor(operation))};
    case OperationKind::GetInstance:
        return {embedding::cursorOver(instanceFor(operation))};
    case OperationKind::EnumerateInstances:
        return {embedding::cursorOverAll(objectsOf(className))};
    case OperationKind::EnumerateInstanceNames: {
        std::vector<CIMObjectPath> paths;
        for (const CIMInstance& object : objectsOf(className))
            paths.push_back(object.getPath());
        return {embedding::cursorOverAll(paths)};
    }
    default:
        return CIMOMHandleRep::perform(operation);
    }
}

CIMClass FakeServer::classFor(const embedding::Operation& operation) const {
    const auto found = _classes.find(
        lower(text(operation.nameSpace.getString()) + ":" + text(operation.className.getString())));
    if (found == _classes.end())
        throw CIMException(CIM_ERR_NOT_FOUND, operation.className.getString());
    return found->second;
}

CIMInstance FakeServer::instanceFor(const embedding::Operation& operation) const {
    const CIMObjectPath& name = operation.objectName;
    for (const CIMInstance& object : objectsOf(text(name.getClassName().getString()))) {
        CIMObjectPath mine = object.getPath();
        mine.setHost(name.getHost());
        mine.setNameSpace(name.getNameSpace());
        if (mine.identical(name))
            return object;
    }
    throw CIMException(CIM_ERR_NOT_FOUND, name.toString());
}

} // namespace testsupport
