#include "routing/Router.h"

#include "routing/ProviderCall.h"
#include "routing/Values.h"

#include <Pegasus/Common/CIMProperty.h>
#include <Pegasus/Common/CIMQualifier.h>
#include <Pegasus/Provider/CIMInstanceProvider.h>

#include <unistd.h>

#include <array>
#include <optional>

namespace embedded::routing {

using namespace Pegasus;
using repository::StoredInstance;

namespace {

/// The one object of `collector`, which a provider may have failed to deliver.
CIMInstance oneInstance(const InstanceCollector& collector, const CIMObjectPath& path) {
    if (collector.completedEmpty())
        throw CIMException(CIM_ERR_NOT_FOUND, String());
    if (collector.objects().size() == 0)
        throw CIMException(CIM_ERR_NOT_FOUND, localPath(path).toString());
    return collector.objects()[0];
}

/// What an instance answers to a GetProperty.
Cursor cursorOverValue(const std::optional<CIMValue>& value, const Operation& operation) {
    if (!value)
        throw CIMException(CIM_ERR_NO_SUCH_PROPERTY, operation.memberName.getString());
    return cursorOver(*value);
}

/// Whether an instance of the class stands for a namespace, so that creating one creates the other.
bool isNameSpaceClass(const CIMName& className) {
    const auto isCalled = [&](const char* name) {
        return String::equalNoCase(className.getString(), name);
    };
    return isCalled("CIM_Namespace") || isCalled("PG_Namespace") || isCalled("__Namespace");
}

CIMPropertyList listOf(const CIMName& name) { return CIMPropertyList(Array<CIMName>(&name, 1)); }

/// A copy of `instance` with the properties of `propertyList` that it has, in the list's order.
/// REQUIRES: `propertyList` is not NULL.
CIMInstance withProperties(const CIMInstance& instance, const CIMPropertyList& propertyList) {
    CIMInstance result(instance.getClassName());
    result.setPath(instance.getPath());
    for (Uint32 i = 0; i < instance.getQualifierCount(); ++i)
        result.addQualifier(instance.getQualifier(i).clone());
    for (Uint32 i = 0; i < propertyList.size(); ++i) {
        const Uint32 position = instance.findProperty(propertyList[i]);
        if (position != PEG_NOT_FOUND)
            result.addProperty(instance.getProperty(position).clone());
    }
    return result;
}

/// Whoever answers for what would be written.
void requireRole(const Caller& caller) {
    if (!caller.mayWrite)
        throw CIMException(CIM_ERR_ACCESS_DENIED,
                           caller.userName.size() == 0
                               ? String("Only a user with the role write may change something.")
                               : String("User ") + caller.userName +
                                     " may read only; it takes the role write.");
}

} // namespace

String localHostName() {
    std::array<char, 256> name{};
    // The last byte stays zero: a name that is cut off need not be terminated.
    return gethostname(name.data(), name.size() - 1) == 0 && name[0] != '\0' ? String(name.data())
                                                                             : String("localhost");
}

Router::Router(repository::Repository& repository, const ProviderModules& modules,
               const String& hostName, bool writable)
    : _repository(repository), _modules(modules), _hostName(hostName), _writable(writable) {}

Plan Router::plan(const Operation& operation) {
    return asCimErrors([&] {
        const Question question{operation, _repository.view()};
        switch (operation.kind) {
        case OperationKind::GetInstance:
        case OperationKind::GetProperty:
            return planGet(question);
        case OperationKind::CreateInstance:
        case OperationKind::ModifyInstance:
        case OperationKind::DeleteInstance:
            return planWrite(question);
        case OperationKind::EnumerateInstances:
        case OperationKind::EnumerateInstanceNames:
            return planEnumeration(question);
        case OperationKind::Associators:
        case OperationKind::AssociatorNames:
        case OperationKind::References:
        case OperationKind::ReferenceNames:
            return planTraversal(question);
        default:
            return planSchema(question);
        }
    });
}

void Router::Question::requireNameSpace() const {
    if (!view.hasNameSpace(operation.nameSpace))
        throw CIMException(CIM_ERR_INVALID_NAMESPACE, operation.nameSpace.getString());
}

void Router::Question::requireClass(const CIMName& className) const {
    requireNameSpace();
    if (!view.hasClass(operation.nameSpace, className))
        throw CIMException(CIM_ERR_INVALID_CLASS, className.getString());
}

Provider* Router::providerOf(const Question& question, const CIMName& className) const {
    return _modules.find(question.operation.nameSpace, className, ProviderType::Instance);
}

/// The path as a provider gets it: class and keys as the client spelled them.
CIMObjectPath Router::requestPath(const Operation& operation,
                                  const CIMObjectPath& objectName) const {
    return CIMObjectPath(_hostName, operation.nameSpace, objectName.getClassName(),
                         objectName.getKeyBindings());
}

// Classes and qualifiers: the repository's alone.

Plan Router::planSchema(const Question& question) {
    const auto& [operation, view] = question;
    const auto classOf = [&operation = operation, view = view](const CIMName& name) {
        return view.getClass(operation.nameSpace, name, operation.localOnly,
                             operation.includeQualifiers, operation.includeClassOrigin,
                             operation.propertyList);
    };
    switch (operation.kind) {
    case OperationKind::GetClass:
        return answered(cursorOver(classOf(operation.className)));
    case OperationKind::EnumerateClasses:
        return answered(madeOf(
            view.subClassNames(operation.nameSpace, operation.className, operation.deepInheritance),
            classOf));
    case OperationKind::EnumerateClassNames:
        return answered(cursorOverAll(view.subClassNames(operation.nameSpace, operation.className,
                                                         operation.deepInheritance)));
    case OperationKind::GetQualifier:
        return answered(cursorOver(view.getQualifier(operation.nameSpace, operation.memberName)));
    default:
        return answered(cursorOverAll(view.enumerateQualifiers(operation.nameSpace)));
    }
}

// Operations on one instance: the class that is named, and no other.

Plan Router::planGet(const Question& question) const {
    const Operation& operation = question.operation;
    const CIMName& className = operation.objectName.getClassName();
    question.requireClass(className);
    Provider* const provider = providerOf(question, className);
    const bool whole = operation.kind == OperationKind::GetInstance;
    if (provider == nullptr) {
        const StoredInstance stored =
            question.view.getInstance(operation.nameSpace, operation.objectName);
        return answered(whole ? cursorOver(stored.instance())
                              : cursorOverValue(stored.value(operation.memberName), operation));
    }
    return planned({&provider->module()}, [this, &operation, provider, whole]() -> Answer {
        const CIMObjectPath path = requestPath(operation, operation.objectName);
        InstanceCollector collector(Expected::One);
        callProvider<CIMInstanceProvider>(
            *provider, path.getClassName(), [&](CIMInstanceProvider& asked) {
                asked.getInstance(
                    contextFor(operation.caller), path, whole && operation.includeQualifiers,
                    whole && operation.includeClassOrigin,
                    whole ? operation.propertyList : listOf(operation.memberName), collector);
            });
        const CIMInstance instance = oneInstance(collector, path);
        return {whole ? cursorOver(instance)
                      : cursorOverValue(valueOf(instance, operation.memberName), operation)};
    });
}

/// REQUIRES: no provider is registered for the class itself.
void Router::requireWritable(const Question& question, const CIMName& className) const {
    if (!_writable)
        throw CIMException(
            CIM_ERR_ACCESS_DENIED,
            "The repository is read-only; start cimhost with --writable to change it.");
    const auto& [operation, view] = question;
    std::vector<CIMName> related = view.superClassNames(operation.nameSpace, className);
    const std::vector<CIMName> below = view.subClassNames(operation.nameSpace, className, true);
    related.insert(related.end(), below.begin(), below.end());
    for (const CIMName& name : related) {
        if (const Provider* const provider = providerOf(question, name))
            throw CIMException(CIM_ERR_ACCESS_DENIED,
                               String("Instances of ") + className.getString() +
                                   " cannot be changed: they appear among those of " +
                                   name.getString() + ", which provider " + provider->name() +
                                   " publishes.");
    }
}

Plan Router::planWrite(const Question& question) {
    const Operation& operation = question.operation;
    requireRole(operation.caller);
    const CIMObjectPath objectName = operation.kind == OperationKind::DeleteInstance
                                         ? operation.objectName
                                         : operation.instance.getPath();
    const CIMName& className = objectName.getClassName();
    Provider* const provider = providerOf(question, className);
    if (operation.kind == OperationKind::CreateInstance && provider == nullptr &&
        isNameSpaceClass(className)) {
        question.requireNameSpace();
        throw CIMException(CIM_ERR_NOT_SUPPORTED,
                           "Namespaces are not created by requests; start cimhost with "
                           "--namespace or --mof to add one.");
    }
    question.requireClass(className);
    if (provider != nullptr)
        return planned({&provider->module()}, [this, &operation, provider, objectName] {
            return askToWrite(operation, *provider, requestPath(operation, objectName));
        });
    requireWritable(question, className);
    return planned({}, [this, &operation]() -> Answer {
        switch (operation.kind) {
        case OperationKind::CreateInstance:
            return {
                cursorOver(_repository.createInstance(operation.nameSpace, operation.instance))};
        case OperationKind::ModifyInstance:
            _repository.modifyInstance(operation.nameSpace, operation.instance,
                                       operation.propertyList);
            return {};
        default:
            _repository.deleteInstance(operation.nameSpace, operation.objectName);
            return {};
        }
    });
}

Answer Router::askToWrite(const Operation& operation, Provider& provider,
                          const CIMObjectPath& path) {
    const OperationContext context = contextFor(operation.caller);
    PathCollector created(Expected::One);
    Acknowledgement done;
    callProvider<CIMInstanceProvider>(
        provider, path.getClassName(), [&](CIMInstanceProvider& asked) {
            switch (operation.kind) {
            case OperationKind::CreateInstance:
                return asked.createInstance(context, path, operation.instance, created);
            case OperationKind::ModifyInstance:
                return asked.modifyInstance(context, path, operation.instance,
                                            operation.includeQualifiers, operation.propertyList,
                                            done);
            default:
                return asked.deleteInstance(context, path, done);
            }
        });
    if (operation.kind != OperationKind::CreateInstance)
        return {};
    // A provider that names nothing has still created something.
    return {cursorOver(created.objects().size() == 0 ? CIMObjectPath() : created.objects()[0])};
}

// Enumerations: one source for the class and one for each of its subclasses.

Plan Router::planEnumeration(const Question& question) const {
    const auto& [operation, view] = question;
    question.requireClass(operation.className);
    std::vector<Source> sources{{operation.className, providerOf(question, operation.className)}};
    for (const CIMName& name : view.subClassNames(operation.nameSpace, operation.className, true))
        sources.push_back({name, providerOf(question, name)});
    std::vector<const Module*> modules;
    for (const Source& source : sources)
        addModule(modules, source.provider);
    // Without deep inheritance instances of subclasses show the properties that the class
    // asked for has, no more. Nobody after this one knows that list, so it is applied here.
    const bool ofThisClass = operation.kind == OperationKind::EnumerateInstances &&
                             !operation.deepInheritance && operation.propertyList.isNull();
    const auto ownProperties = [question] {
        const std::vector<CIMName> names =
            question.view.propertyNames(question.operation.nameSpace, question.operation.className);
        return CIMPropertyList(Array<CIMName>(names.data(), static_cast<Uint32>(names.size())));
    };
    const bool entersModules = !modules.empty();
    return planned(std::move(modules), [this, question, sources = std::move(sources), entersModules,
                                        ofThisClass, ownProperties] {
        // It is made for a provider, or for the first instance.
        CIMPropertyList list =
            ofThisClass && entersModules ? ownProperties() : question.operation.propertyList;
        JoinedAnswer joined;
        for (const Source& source : sources)
            joined.add([&] { return enumerated(question, source, list); });
        Answer answer = joined.take();
        if (ofThisClass)
            answer.next = mapped<CIMInstance>(std::move(answer.next),
                                              [list, ownProperties](CIMInstance& instance) mutable {
                                                  if (list.isNull())
                                                      list = ownProperties();
                                                  instance = withProperties(instance, list);
                                              });
        if (question.operation.fullPaths)
            answer.next = completed(question.operation, std::move(answer.next));
        return answer;
    });
}

Answer Router::enumerated(const Question& question, const Source& source,
                          const CIMPropertyList& list) const {
    const auto& [operation, view] = question;
    const bool names = operation.kind == OperationKind::EnumerateInstanceNames;
    if (source.provider == nullptr) {
        repository::InstanceList stored = view.instances(operation.nameSpace, source.className);
        return {
            names ? madeOf(std::move(stored), [](const StoredInstance& one) { return one.path(); })
                  : madeOf(std::move(stored),
                           [](const StoredInstance& one) { return one.instance(); })};
    }
    const OperationContext context = contextFor(operation.caller);
    const CIMObjectPath path(_hostName, operation.nameSpace, source.className);
    PathCollector paths(Expected::Any);
    InstanceCollector instances(Expected::Any);
    callProvider<CIMInstanceProvider>(*source.provider, source.className,
                                      [&, &operation = operation](CIMInstanceProvider& asked) {
                                          if (names)
                                              asked.enumerateInstanceNames(context, path, paths);
                                          else
                                              asked.enumerateInstances(
                                                  context, path, operation.includeQualifiers,
                                                  operation.includeClassOrigin, list, instances);
                                      });
    return names ? answerOver(paths.objects()) : answerOver(instances.objects());
}

} // namespace embedded::routing
