#include "Server.h"

#include "mof/Mof.h"

#include <Pegasus/Common/CIMProperty.h>
#include <Pegasus/Common/CIMValue.h>

namespace embedded::routing::test {

using Pegasus::CIMInstance;
using Pegasus::CIMKeyBinding;
using Pegasus::CIMName;
using Pegasus::CIMNamespaceName;
using Pegasus::CIMObjectPath;
using Pegasus::String;
using Pegasus::Uint32;

const CIMNamespaceName nameSpace("root/test");
const CIMNamespaceName interop("root/interop");

namespace {

const char* const schema = R"(
Qualifier Key : boolean = false, Scope(property, reference), Flavor(DisableOverride);
Qualifier Association : boolean = false, Scope(association), Flavor(DisableOverride);
class TST_Base { [Key] string Id; string Text; };
class TST_Middle : TST_Base { string Extra; };
class TST_Leaf : TST_Middle { };
class TST_Other { [Key] string Id; };
[Association] class TST_Link { [Key] TST_Base REF Left; [Key] TST_Base REF Right; };
[Association] class TST_SubLink : TST_Link { };
[Association] class TST_OtherLink { [Key] TST_Base REF Source; [Key] TST_Other REF Target; };
)";

const char* const registrationSchema = R"(
Qualifier Key : boolean = false, Scope(property, reference), Flavor(DisableOverride);
class PG_ProviderModule {
    [Key] string Name; string Vendor; string Version; string InterfaceType;
    string InterfaceVersion; string Location; uint16 UserContext; string DesignatedUserContext;
    uint16 OperationalStatus[];
};
class PG_Provider { [Key] string ProviderModuleName; [Key] string Name; };
class PG_ProviderCapabilities {
    [Key] string ProviderModuleName; [Key] string ProviderName; [Key] string CapabilityID;
    uint16 ProviderType[]; string ClassName; string Namespaces[];
};
)";

std::string inInterop(const std::string& mof) {
    return "#pragma namespace(\"root/interop\")\n" + mof + "#pragma namespace(\"root/test\")\n";
}

std::string quoted(const std::string& string) {
    return "\"" + string + "\"";
}

repository::Repository& filled(repository::Repository& repository, const std::string& mof) {
    toy::reset();
    fill(repository, mof);
    return repository;
}

Operation operationOf(OperationKind kind, const Caller& caller, const CIMNamespaceName& nameSpace) {
    Operation operation;
    operation.kind = kind;
    operation.caller = caller;
    operation.nameSpace = nameSpace;
    return operation;
}

template <class Object>
Texts pathTexts(const Pegasus::Array<Object>& objects) {
    Texts result;
    for (Uint32 i = 0; i < objects.size(); ++i)
        result.push_back(text(objects[i].getPath().toString()));
    return result;
}

} // namespace

std::filesystem::path modulesDirectory() {
    return ROUTING_TEST_MODULES;
}

void fill(repository::Repository& repository, const std::string& mof) {
    repository.load(mof::readText(registrationSchema, "registration.mof"), interop);
    repository.load(mof::readText(schema, "schema.mof"), nameSpace);
    repository.load(mof::readText(mof, "test.mof"), nameSpace);
}

std::string moduleMof(const std::string& name, const std::string& location,
                      const std::string& more) {
    return inInterop("instance of PG_ProviderModule { Name = " + quoted(name) +
                     "; Vendor = \"v\"; Version = \"1\"; InterfaceType = \"C++Default\";"
                     " InterfaceVersion = \"2.6.0\"; Location = " +
                     quoted(location) + "; " + more + " };\n");
}

std::string providerMof(const std::string& module, const std::string& name) {
    return inInterop("instance of PG_Provider { ProviderModuleName = " + quoted(module) +
                     "; Name = " + quoted(name) + "; };\n");
}

std::string capabilityMof(const std::string& module, const std::string& provider,
                          const std::string& id, const std::string& types,
                          const std::string& className, const std::string& nameSpaces) {
    return inInterop(
        "instance of PG_ProviderCapabilities { ProviderModuleName = " + quoted(module) +
        "; ProviderName = " + quoted(provider) + "; CapabilityID = " + quoted(id) +
        "; ProviderType = {" + types + "}; ClassName = " + quoted(className) + "; Namespaces = {" +
        nameSpaces + "}; };\n");
}

std::string servedBy(const std::string& provider, const std::vector<std::string>& classNames) {
    std::string mof = moduleMof("M" + provider) + providerMof("M" + provider, provider);
    for (const std::string& className : classNames)
        mof += capabilityMof("M" + provider, provider, className, "2, 3", className);
    return mof;
}

template <class T>
Answers<T> Router::all(const Operation& operation) {
    const Answer answer = perform(operation);
    return {allOf<T>(answer), answer.sources};
}

Pegasus::CIMClass Router::getClass(const Caller& caller, const NameSpace& home, const Name& name,
                                   bool localOnly, bool qualifiers, bool origins,
                                   const List& list) {
    Operation operation = operationOf(OperationKind::GetClass, caller, home);
    operation.className = name;
    operation.localOnly = localOnly;
    operation.includeQualifiers = qualifiers;
    operation.includeClassOrigin = origins;
    operation.propertyList = list;
    return onlyOf<Pegasus::CIMClass>(perform(operation));
}

Pegasus::Array<Pegasus::CIMClass> Router::enumerateClasses(const Caller& caller,
                                                           const NameSpace& home, const Name& name,
                                                           bool deep, bool localOnly,
                                                           bool qualifiers, bool origins) {
    Operation operation = operationOf(OperationKind::EnumerateClasses, caller, home);
    operation.className = name;
    operation.deepInheritance = deep;
    operation.localOnly = localOnly;
    operation.includeQualifiers = qualifiers;
    operation.includeClassOrigin = origins;
    return all<Pegasus::CIMClass>(operation).objects;
}

Pegasus::Array<CIMName> Router::enumerateClassNames(const Caller& caller, const NameSpace& home,
                                                    const Name& name, bool deep) {
    Operation operation = operationOf(OperationKind::EnumerateClassNames, caller, home);
    operation.className = name;
    operation.deepInheritance = deep;
    return all<CIMName>(operation).objects;
}

CIMInstance Router::getInstance(const Caller& caller, const NameSpace& home, const Path& path,
                                bool qualifiers, bool origins, const List& list) {
    Operation operation = operationOf(OperationKind::GetInstance, caller, home);
    operation.objectName = path;
    operation.includeQualifiers = qualifiers;
    operation.includeClassOrigin = origins;
    operation.propertyList = list;
    return onlyOf<CIMInstance>(perform(operation));
}

Answers<CIMInstance> Router::enumerateInstances(const Caller& caller, const NameSpace& home,
                                                const Name& name, bool deep, bool qualifiers,
                                                bool origins, const List& list) {
    Operation operation = operationOf(OperationKind::EnumerateInstances, caller, home);
    operation.className = name;
    operation.deepInheritance = deep;
    operation.includeQualifiers = qualifiers;
    operation.includeClassOrigin = origins;
    operation.propertyList = list;
    return all<CIMInstance>(operation);
}

Answers<CIMObjectPath> Router::enumerateInstanceNames(const Caller& caller, const NameSpace& home,
                                                      const Name& name) {
    Operation operation = operationOf(OperationKind::EnumerateInstanceNames, caller, home);
    operation.className = name;
    return all<CIMObjectPath>(operation);
}

CIMObjectPath Router::createInstance(const Caller& caller, const NameSpace& home,
                                     const Instance& instance) {
    Operation operation = operationOf(OperationKind::CreateInstance, caller, home);
    operation.instance = instance;
    return onlyOf<CIMObjectPath>(perform(operation));
}

void Router::modifyInstance(const Caller& caller, const NameSpace& home, const Instance& instance,
                            bool qualifiers, const List& list) {
    Operation operation = operationOf(OperationKind::ModifyInstance, caller, home);
    operation.instance = instance;
    operation.includeQualifiers = qualifiers;
    operation.propertyList = list;
    perform(operation);
}

void Router::deleteInstance(const Caller& caller, const NameSpace& home, const Path& path) {
    Operation operation = operationOf(OperationKind::DeleteInstance, caller, home);
    operation.objectName = path;
    perform(operation);
}

Pegasus::CIMValue Router::getProperty(const Caller& caller, const NameSpace& home, const Path& path,
                                      const Name& property) {
    Operation operation = operationOf(OperationKind::GetProperty, caller, home);
    operation.objectName = path;
    operation.memberName = property;
    return onlyOf<Pegasus::CIMValue>(perform(operation));
}

Answers<Pegasus::CIMObject> Router::associators(const Caller& caller, const NameSpace& home,
                                                const Path& path, const Name& assocClass,
                                                const Name& resultClass, const Text& role,
                                                const Text& resultRole, bool qualifiers,
                                                bool origins, const List& list) {
    Operation operation = operationOf(OperationKind::Associators, caller, home);
    operation.objectName = path;
    operation.assocClass = assocClass;
    operation.resultClass = resultClass;
    operation.role = role;
    operation.resultRole = resultRole;
    operation.includeQualifiers = qualifiers;
    operation.includeClassOrigin = origins;
    operation.propertyList = list;
    return all<Pegasus::CIMObject>(operation);
}

Answers<CIMObjectPath> Router::associatorNames(const Caller& caller, const NameSpace& home,
                                               const Path& path, const Name& assocClass,
                                               const Name& resultClass, const Text& role,
                                               const Text& resultRole) {
    Operation operation = operationOf(OperationKind::AssociatorNames, caller, home);
    operation.objectName = path;
    operation.assocClass = assocClass;
    operation.resultClass = resultClass;
    operation.role = role;
    operation.resultRole = resultRole;
    return all<CIMObjectPath>(operation);
}

Answers<Pegasus::CIMObject> Router::references(const Caller& caller, const NameSpace& home,
                                               const Path& path, const Name& resultClass,
                                               const Text& role, bool qualifiers, bool origins,
                                               const List& list) {
    Operation operation = operationOf(OperationKind::References, caller, home);
    operation.objectName = path;
    operation.resultClass = resultClass;
    operation.role = role;
    operation.includeQualifiers = qualifiers;
    operation.includeClassOrigin = origins;
    operation.propertyList = list;
    return all<Pegasus::CIMObject>(operation);
}

Answers<CIMObjectPath> Router::referenceNames(const Caller& caller, const NameSpace& home,
                                              const Path& path, const Name& resultClass,
                                              const Text& role) {
    Operation operation = operationOf(OperationKind::ReferenceNames, caller, home);
    operation.objectName = path;
    operation.resultClass = resultClass;
    operation.role = role;
    return all<CIMObjectPath>(operation);
}

Pegasus::CIMQualifierDecl Router::getQualifier(const Caller& caller, const NameSpace& home,
                                               const Name& name) {
    Operation operation = operationOf(OperationKind::GetQualifier, caller, home);
    operation.memberName = name;
    return onlyOf<Pegasus::CIMQualifierDecl>(perform(operation));
}

Pegasus::Array<Pegasus::CIMQualifierDecl> Router::enumerateQualifiers(const Caller& caller,
                                                                      const NameSpace& home) {
    return all<Pegasus::CIMQualifierDecl>(
               operationOf(OperationKind::EnumerateQualifiers, caller, home))
        .objects;
}

Server::Server(const std::string& mof, bool keepLibraries)
    : modules(Registration(filled(repository, mof).view(), interop),
              {{modulesDirectory()},
               keepLibraries,
               [this](const std::string& line) {
                   const std::lock_guard<std::mutex> lock(_mutex);
                   _log.push_back(line);
               },
               {}}),
      router(repository, modules, "testhost", true), handles(router) {
}

Server::~Server() {
    modules.unloadAll();
    toy::reset();
}

std::vector<std::string> Server::log() const {
    const std::lock_guard<std::mutex> lock(_mutex);
    return _log;
}

Answers<CIMInstance> Server::enumerate(const char* className, bool deep,
                                       const Pegasus::CIMPropertyList& list) {
    return router.enumerateInstances({}, nameSpace, CIMName(className), deep, false, false, list);
}

CIMInstance Server::get(const CIMObjectPath& path) {
    return router.getInstance({}, nameSpace, path, false, false, {});
}

CIMObjectPath pathOf(const char* className, const char* id) {
    Pegasus::Array<CIMKeyBinding> keys;
    keys.append(CIMKeyBinding(CIMName("Id"), String(id), CIMKeyBinding::STRING));
    return CIMObjectPath(String(), CIMNamespaceName(), CIMName(className), keys);
}

CIMInstance instanceOf(const char* className, const char* id) {
    CIMInstance instance{CIMName(className)};
    instance.addProperty(Pegasus::CIMProperty(CIMName("Id"), Pegasus::CIMValue(String(id))));
    instance.setPath(pathOf(className, id));
    return instance;
}

std::string text(const String& string) {
    return static_cast<const char*>(string.getCString());
}

Texts texts(const Pegasus::Array<CIMObjectPath>& paths) {
    Texts result;
    for (Uint32 i = 0; i < paths.size(); ++i)
        result.push_back(text(paths[i].toString()));
    return result;
}
Texts texts(const Pegasus::Array<CIMInstance>& instances) {
    return pathTexts(instances);
}
Texts texts(const Pegasus::Array<Pegasus::CIMObject>& objects) {
    return pathTexts(objects);
}

} // namespace embedded::routing::test
