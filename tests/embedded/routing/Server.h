// A whole server for a test: a small schema, what the test registers, and the toy module.
#pragma once

#include "modules/Script.h"
#include "repository/Repository.h"
#include "routing/ProviderHandle.h"
#include "routing/ProviderModule.h"
#include "routing/Registration.h"
#include "routing/Router.h"

#include <Pegasus/Common/Exception.h>

#include <filesystem>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

namespace embedded::routing::test {

/// The namespaces of the schema below and of the registration.
extern const Pegasus::CIMNamespaceName nameSpace;
extern const Pegasus::CIMNamespaceName interop;

/// Where the test modules are.
std::filesystem::path modulesDirectory();

/// A repository with the schema
///
///     TST_Base <- TST_Middle <- TST_Leaf      keys Id; TST_Middle adds Extra
///     TST_Other                               key Id; not related
///     TST_Link (Left, Right: TST_Base) <- TST_SubLink
///     TST_OtherLink (Source: TST_Base, Target: TST_Other)
///
/// in `nameSpace`, the registration classes in `interop`, and then `mof`.
void fill(repository::Repository& repository, const std::string& mof = {});

// MOF of the registration instances, already in the interop namespace.

std::string moduleMof(const std::string& name, const std::string& location = "toy",
                      const std::string& more = {});
std::string providerMof(const std::string& module, const std::string& name);
/// `types` and `nameSpaces` as they stand between braces.
std::string capabilityMof(const std::string& module, const std::string& provider,
                          const std::string& id, const std::string& types,
                          const std::string& className,
                          const std::string& nameSpaces = "\"root/test\"");
/// A module "M<provider>" in the toy library with that one provider and, for each class, instance
/// and association capabilities in `nameSpace`.
std::string servedBy(const std::string& provider, const std::vector<std::string>& classNames);

/// What an operation answered, all of it.
template <class T>
struct Answers {
    Pegasus::Array<T> objects;
    unsigned sources = 1;
};

/// A router that is asked with a function for each operation.
class Router : public routing::Router {
  public:
    using routing::Router::Router;
    using Name = Pegasus::CIMName;
    using NameSpace = Pegasus::CIMNamespaceName;
    using Path = Pegasus::CIMObjectPath;
    using Instance = Pegasus::CIMInstance;
    using List = Pegasus::CIMPropertyList;
    using Text = Pegasus::String;

    Pegasus::CIMClass getClass(const Caller& caller, const NameSpace& home, const Name& name,
                               bool localOnly, bool qualifiers, bool origins, const List& list) {
        Operation operation = asking(OperationKind::GetClass, caller, home);
        operation.className = name;
        operation.localOnly = localOnly;
        operation.includeQualifiers = qualifiers;
        operation.includeClassOrigin = origins;
        operation.propertyList = list;
        return onlyOf<Pegasus::CIMClass>(perform(operation));
    }
    Pegasus::Array<Pegasus::CIMClass> enumerateClasses(const Caller& caller, const NameSpace& home,
                                                       const Name& name, bool deep, bool localOnly,
                                                       bool qualifiers, bool origins) {
        Operation operation = asking(OperationKind::EnumerateClasses, caller, home);
        operation.className = name;
        operation.deepInheritance = deep;
        operation.localOnly = localOnly;
        operation.includeQualifiers = qualifiers;
        operation.includeClassOrigin = origins;
        return all<Pegasus::CIMClass>(operation).objects;
    }
    Pegasus::Array<Name> enumerateClassNames(const Caller& caller, const NameSpace& home,
                                             const Name& name, bool deep) {
        Operation operation = asking(OperationKind::EnumerateClassNames, caller, home);
        operation.className = name;
        operation.deepInheritance = deep;
        return all<Name>(operation).objects;
    }
    Instance getInstance(const Caller& caller, const NameSpace& home, const Path& path,
                         bool qualifiers, bool origins, const List& list) {
        Operation operation = asking(OperationKind::GetInstance, caller, home);
        operation.objectName = path;
        operation.includeQualifiers = qualifiers;
        operation.includeClassOrigin = origins;
        operation.propertyList = list;
        return onlyOf<Instance>(perform(operation));
    }
    Answers<Instance> enumerateInstances(const Caller& caller, const NameSpace& home,
                                         const Name& name, bool deep, bool qualifiers, bool origins,
                                         const List& list) {
        Operation operation = asking(OperationKind::EnumerateInstances, caller, home);
        operation.className = name;
        operation.deepInheritance = deep;
        operation.includeQualifiers = qualifiers;
        operation.includeClassOrigin = origins;
        operation.propertyList = list;
        return all<Instance>(operation);
    }
    Answers<Path> enumerateInstanceNames(const Caller& caller, const NameSpace& home,
                                         const Name& name) {
        Operation operation = asking(OperationKind::EnumerateInstanceNames, caller, home);
        operation.className = name;
        return all<Path>(operation);
    }
    Path createInstance(const Caller& caller, const NameSpace& home, const Instance& instance) {
        Operation operation = asking(OperationKind::CreateInstance, caller, home);
        operation.instance = instance;
        return onlyOf<Path>(perform(operation));
    }
    void modifyInstance(const Caller& caller, const NameSpace& home, const Instance& instance,
                        bool qualifiers, const List& list) {
        Operation operation = asking(OperationKind::ModifyInstance, caller, home);
        operation.instance = instance;
        operation.includeQualifiers = qualifiers;
        operation.propertyList = list;
        perform(operation);
    }
    void deleteInstance(const Caller& caller, const NameSpace& home, const Path& path) {
        Operation operation = asking(OperationKind::DeleteInstance, caller, home);
        operation.objectName = path;
        perform(operation);
    }
    Pegasus::CIMValue getProperty(const Caller& caller, const NameSpace& home, const Path& path,
                                  const Name& property) {
        Operation operation = asking(OperationKind::GetProperty, caller, home);
        operation.objectName = path;
        operation.memberName = property;
        return onlyOf<Pegasus::CIMValue>(perform(operation));
    }
    Answers<Pegasus::CIMObject> associators(const Caller& caller, const NameSpace& home,
                                            const Path& path, const Name& assocClass,
                                            const Name& resultClass, const Text& role,
                                            const Text& resultRole, bool qualifiers, bool origins,
                                            const List& list) {
        Operation operation = asking(OperationKind::Associators, caller, home);
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
    Answers<Path> associatorNames(const Caller& caller, const NameSpace& home, const Path& path,
                                  const Name& assocClass, const Name& resultClass, const Text& role,
                                  const Text& resultRole) {
        Operation operation = asking(OperationKind::AssociatorNames, caller, home);
        operation.objectName = path;
        operation.assocClass = assocClass;
        operation.resultClass = resultClass;
        operation.role = role;
        operation.resultRole = resultRole;
        return all<Path>(operation);
    }
    Answers<Pegasus::CIMObject> references(const Caller& caller, const NameSpace& home,
                                           const Path& path, const Name& resultClass,
                                           const Text& role, bool qualifiers, bool origins,
                                           const List& list) {
        Operation operation = asking(OperationKind::References, caller, home);
        operation.objectName = path;
        operation.resultClass = resultClass;
        operation.role = role;
        operation.includeQualifiers = qualifiers;
        operation.includeClassOrigin = origins;
        operation.propertyList = list;
        return all<Pegasus::CIMObject>(operation);
    }
    Answers<Path> referenceNames(const Caller& caller, const NameSpace& home, const Path& path,
                                 const Name& resultClass, const Text& role) {
        Operation operation = asking(OperationKind::ReferenceNames, caller, home);
        operation.objectName = path;
        operation.resultClass = resultClass;
        operation.role = role;
        return all<Path>(operation);
    }
    Pegasus::CIMQualifierDecl getQualifier(const Caller& caller, const NameSpace& home,
                                           const Name& name) {
        Operation operation = asking(OperationKind::GetQualifier, caller, home);
        operation.memberName = name;
        return onlyOf<Pegasus::CIMQualifierDecl>(perform(operation));
    }
    Pegasus::Array<Pegasus::CIMQualifierDecl> enumerateQualifiers(const Caller& caller,
                                                                  const NameSpace& home) {
        return all<Pegasus::CIMQualifierDecl>(
                   asking(OperationKind::EnumerateQualifiers, caller, home))
            .objects;
    }

  private:
    static Operation asking(OperationKind kind, const Caller& caller, const NameSpace& home) {
        Operation operation;
        operation.kind = kind;
        operation.caller = caller;
        operation.nameSpace = home;
        return operation;
    }
    template <class T>
    Answers<T> all(const Operation& operation) {
        const Answer answer = perform(operation);
        return {allOf<T>(answer), answer.sources};
    }
};

/// One server at a time, writable; scripts and journal are forgotten with it.
class Server {
  public:
    explicit Server(const std::string& mof = {}, bool keepLibraries = false);
    ~Server();

    std::vector<std::string> log() const;

  private:
    mutable std::mutex _mutex;
    std::vector<std::string> _log;

  public:
    repository::Repository repository;
    ProviderModules modules;
    Router router;
    ProviderHandles handles;

    // The operations with what most tests leave out.
    Answers<Pegasus::CIMInstance> enumerate(const char* className, bool deep = true,
                                            const Pegasus::CIMPropertyList& list = {});
    Pegasus::CIMInstance get(const Pegasus::CIMObjectPath& path);
};

/// `Class.Id="id"`, in no namespace.
Pegasus::CIMObjectPath pathOf(const char* className, const char* id);
/// An instance with that path and key property.
Pegasus::CIMInstance instanceOf(const char* className, const char* id);

/// "code: message" of the CIMException that `operation` throws, "no error" when it throws none.
template <class Operation>
std::string errorOf(Operation operation) {
    try {
        operation();
        return "no error";
    } catch (const Pegasus::CIMException& error) {
        return std::to_string(error.getCode()) + ": " +
               static_cast<const char*>(error.getMessage().getCString());
    }
}

std::string text(const Pegasus::String& string);
/// The paths as texts, or the paths of the objects.
std::vector<std::string> texts(const Pegasus::Array<Pegasus::CIMObjectPath>& paths);
std::vector<std::string> texts(const Pegasus::Array<Pegasus::CIMInstance>& instances);
std::vector<std::string> texts(const Pegasus::Array<Pegasus::CIMObject>& objects);

using Texts = std::vector<std::string>;

} // namespace embedded::routing::test
