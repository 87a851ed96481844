#include "Server.h"

#include "mof/Mof.h"

#include <Pegasus/Common/CIMProperty.h>
#include <Pegasus/Common/CIMValue.h>

namespace embedded::routing::test {

using namespace Pegasus;

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

std::string quoted(const std::string& string) { return "\"" + string + "\""; }

repository::Repository& filled(repository::Repository& repository, const std::string& mof) {
    toy::reset();
    fill(repository, mof);
    return repository;
}

template <class Object>
Texts pathTexts(const Array<Object>& objects) {
    Texts result;
    for (Uint32 i = 0; i < objects.size(); ++i)
        result.push_back(text(objects[i].getPath().toString()));
    return result;
}

} // namespace

std::filesystem::path modulesDirectory() { return ROUTING_TEST_MODULES; }

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

Server::Server(const std::string& mof, bool keepLibraries)
    : modules(Registration(filled(repository, mof).view(), interop),
              {{modulesDirectory()},
               keepLibraries,
               [this](const std::string& line) {
                   const std::lock_guard<std::mutex> lock(_mutex);
                   _log.push_back(line);
               },
               {}}),
      router(repository, modules, "testhost", true), handles(router) {}

Server::~Server() {
    modules.unloadAll();
    toy::reset();
}

std::vector<std::string> Server::log() const {
    const std::lock_guard<std::mutex> lock(_mutex);
    return _log;
}

Answers<CIMInstance> Server::enumerate(const char* className, bool deep,
                                       const CIMPropertyList& list) {
    return router.enumerateInstances({}, nameSpace, CIMName(className), deep, false, false, list);
}

CIMInstance Server::get(const CIMObjectPath& path) {
    return router.getInstance({}, nameSpace, path, false, false, {});
}

CIMObjectPath pathOf(const char* className, const char* id) {
    Array<CIMKeyBinding> keys;
    keys.append(CIMKeyBinding(CIMName("Id"), String(id), CIMKeyBinding::STRING));
    return CIMObjectPath(String(), CIMNamespaceName(), CIMName(className), keys);
}

CIMInstance instanceOf(const char* className, const char* id) {
    CIMInstance instance{CIMName(className)};
    instance.addProperty(CIMProperty(CIMName("Id"), CIMValue(String(id))));
    instance.setPath(pathOf(className, id));
    return instance;
}

std::string text(const String& string) { return static_cast<const char*>(string.getCString()); }

Texts texts(const Array<CIMObjectPath>& paths) {
    Texts result;
    for (Uint32 i = 0; i < paths.size(); ++i)
        result.push_back(text(paths[i].toString()));
    return result;
}
Texts texts(const Array<CIMInstance>& instances) { return pathTexts(instances); }
Texts texts(const Array<CIMObject>& objects) { return pathTexts(objects); }

} // namespace embedded::routing::test
