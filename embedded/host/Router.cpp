#include "host/Router.h"

#include "host/Legs.h"
#include "host/ProviderCall.h"
#include "host/ResponseCollector.h"
#include "host/Values.h"

#include <Pegasus/Common/CIMProperty.h>
#include <Pegasus/Provider/CIMInstanceProvider.h>

#include <unistd.h>

#include <array>

namespace embedded::host {

using Pegasus::Array;
using Pegasus::CIMClass;
using Pegasus::CIMException;
using Pegasus::CIMInstance;
using Pegasus::CIMInstanceProvider;
using Pegasus::CIMName;
using Pegasus::CIMNamespaceName;
using Pegasus::CIMObjectPath;
using Pegasus::CIMPropertyList;
using Pegasus::String;
using Pegasus::Uint32;

namespace {

CIMException notFound(const CIMObjectPath& path) {
    return CIMException(Pegasus::CIM_ERR_NOT_FOUND, localPath(path).toString());
}

/// The one object of `collector`, which a provider may have failed to deliver.
CIMInstance oneInstance(const InstanceCollector& collector, const CIMObjectPath& path) {
    if (collector.completedEmpty()) {
        throw CIMException(Pegasus::CIM_ERR_NOT_FOUND, String());
    }
    if (collector.objects().size() == 0) {
        throw notFound(path);
    }
    return collector.objects()[0];
}

/// Whether an instance of the class stands for a namespace, so that creating one creates the other.
bool isNameSpaceClass(const CIMName& className) {
    const auto isCalled = [&](const char* name) {
        return String::equalNoCase(className.getString(), name);
    };
    return isCalled("CIM_Namespace") || isCalled("PG_Namespace") || isCalled("__Namespace");
}

CIMPropertyList allProperties(const CIMClass& cimClass) {
    Array<CIMName> names;
    for (Uint32 i = 0; i < cimClass.getPropertyCount(); ++i) {
        names.append(cimClass.getProperty(i).getName());
    }
    return CIMPropertyList(names);
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
    : _repository(repository), _modules(modules), _hostName(hostName), _writable(writable) {
}

void Router::requireNameSpace(const CIMNamespaceName& nameSpace) const {
    if (!_repository.hasNameSpace(nameSpace)) {
        throw CIMException(Pegasus::CIM_ERR_INVALID_NAMESPACE, nameSpace.getString());
    }
}

void Router::requireClass(const CIMNamespaceName& nameSpace, const CIMName& className) const {
    requireNameSpace(nameSpace);
    if (!_repository.hasClass(nameSpace, className)) {
        throw CIMException(Pegasus::CIM_ERR_INVALID_CLASS, className.getString());
    }
}

/// REQUIRES: no provider is registered for the class itself.
void Router::requireWritable(const CIMNamespaceName& nameSpace, const CIMName& className) const {
    if (!_writable) {
        throw CIMException(
            Pegasus::CIM_ERR_ACCESS_DENIED,
            "The repository is read-only; start cimhost with --writable to change it.");
    }
    std::vector<CIMName> related = _repository.superClassNames(nameSpace, className);
    const std::vector<CIMName> below = _repository.subClassNames(nameSpace, className, true);
    related.insert(related.end(), below.begin(), below.end());
    for (const CIMName& name : related) {
        if (const Provider* const provider =
                _modules.find(nameSpace, name, ProviderType::Instance)) {
            throw CIMException(Pegasus::CIM_ERR_ACCESS_DENIED,
                               String("Instances of ") + className.getString() +
                                   " cannot be changed: they appear among those of " +
                                   name.getString() + ", which provider " + provider->name() +
                                   " publishes.");
        }
    }
}

/// The path as a provider gets it: class and keys as the client spelled them.
CIMObjectPath Router::requestPath(const CIMNamespaceName& nameSpace,
                                  const CIMObjectPath& objectName) const {
    return CIMObjectPath(_hostName, nameSpace, objectName.getClassName(),
                         objectName.getKeyBindings());
}

// Classes and qualifiers: the repository's alone.

CIMClass Router::getClass(const Caller&, const CIMNamespaceName& nameSpace,
                          const CIMName& className, bool localOnly, bool includeQualifiers,
                          bool includeClassOrigin, const CIMPropertyList& propertyList) {
    return asCimErrors([&] {
        return _repository.getClass(nameSpace, className, localOnly, includeQualifiers,
                                    includeClassOrigin, propertyList);
    });
}

Array<CIMClass> Router::enumerateClasses(const Caller&, const CIMNamespaceName& nameSpace,
                                         const CIMName& className, bool deepInheritance,
                                         bool localOnly, bool includeQualifiers,
                                         bool includeClassOrigin) {
    return asCimErrors([&] {
        Array<CIMClass> classes;
        for (const CIMName& name :
             _repository.subClassNames(nameSpace, className, deepInheritance)) {
            classes.append(_repository.getClass(nameSpace, name, localOnly, includeQualifiers,
                                                includeClassOrigin));
        }
        return classes;
    });
}

Array<CIMName> Router::enumerateClassNames(const Caller&, const CIMNamespaceName& nameSpace,
                                           const CIMName& className, bool deepInheritance) {
    return asCimErrors(
        [&] { return arrayOf(_repository.subClassNames(nameSpace, className, deepInheritance)); });
}

Pegasus::CIMQualifierDecl Router::getQualifier(const Caller&, const CIMNamespaceName& nameSpace,
                                               const CIMName& qualifierName) {
    return asCimErrors([&] { return _repository.getQualifier(nameSpace, qualifierName); });
}

Array<Pegasus::CIMQualifierDecl> Router::enumerateQualifiers(const Caller&,
                                                             const CIMNamespaceName& nameSpace) {
    return asCimErrors([&] { return arrayOf(_repository.enumerateQualifiers(nameSpace)); });
}

// Operations on one instance: the class that is named, and no other.

/// `askProvider` gets the provider's interface and the path; `askRepository` nothing.
template <class AskProvider, class AskRepository>
auto Router::atInstance(const CIMNamespaceName& nameSpace, const CIMObjectPath& instanceName,
                        AskProvider askProvider, AskRepository askRepository) const {
    return asCimErrors([&] {
        const CIMName& className = instanceName.getClassName();
        requireClass(nameSpace, className);
        Provider* const provider = _modules.find(nameSpace, className, ProviderType::Instance);
        if (provider == nullptr) {
            return askRepository();
        }
        return askProvider(*provider, requestPath(nameSpace, instanceName));
    });
}

CIMInstance Router::getInstance(const Caller& caller, const CIMNamespaceName& nameSpace,
                                const CIMObjectPath& instanceName, bool includeQualifiers,
                                bool includeClassOrigin, const CIMPropertyList& propertyList) {
    return atInstance(
        nameSpace, instanceName,
        [&](Provider& provider, const CIMObjectPath& path) {
            InstanceCollector collector(Expected::One);
            callProvider<CIMInstanceProvider>(
                provider, path.getClassName(), [&](CIMInstanceProvider& asked) {
                    asked.getInstance(contextFor(caller), path, includeQualifiers,
                                      includeClassOrigin, propertyList, collector);
                });
            return oneInstance(collector, path);
        },
        [&] { return _repository.getInstance(nameSpace, instanceName); });
}

Pegasus::CIMValue Router::getProperty(const Caller& caller, const CIMNamespaceName& nameSpace,
                                      const CIMObjectPath& instanceName,
                                      const CIMName& propertyName) {
    return asCimErrors([&] {
        Array<CIMName> names;
        names.append(propertyName);
        const CIMInstance instance =
            getInstance(caller, nameSpace, instanceName, false, false, CIMPropertyList(names));
        const Uint32 position = instance.findProperty(propertyName);
        if (position == PEG_NOT_FOUND) {
            throw CIMException(Pegasus::CIM_ERR_NO_SUCH_PROPERTY, propertyName.getString());
        }
        return instance.getProperty(position).getValue();
    });
}

CIMObjectPath Router::createInstance(const Caller& caller, const CIMNamespaceName& nameSpace,
                                     const CIMInstance& newInstance) {
    return asCimErrors([&] {
        const CIMName& className = newInstance.getClassName();
        if (isNameSpaceClass(className) &&
            _modules.find(nameSpace, className, ProviderType::Instance) == nullptr) {
            requireNameSpace(nameSpace);
            throw CIMException(Pegasus::CIM_ERR_NOT_SUPPORTED,
                               "Namespaces are not created by requests; start cimhost with "
                               "--namespace or --mof to add one.");
        }
        return atInstance(
            nameSpace, newInstance.getPath(),
            [&](Provider& provider, const CIMObjectPath& path) {
                PathCollector collector(Expected::One);
                callProvider<CIMInstanceProvider>(
                    provider, path.getClassName(), [&](CIMInstanceProvider& asked) {
                        asked.createInstance(contextFor(caller), path, newInstance, collector);
                    });
                // A provider that names nothing has still created something.
                return collector.objects().size() == 0 ? CIMObjectPath() : collector.objects()[0];
            },
            [&] {
                requireWritable(nameSpace, newInstance.getClassName());
                return _repository.createInstance(nameSpace, newInstance);
            });
    });
}

void Router::modifyInstance(const Caller& caller, const CIMNamespaceName& nameSpace,
                            const CIMInstance& modifiedInstance, bool includeQualifiers,
                            const CIMPropertyList& propertyList) {
    asCimErrors([&] {
        atInstance(
            nameSpace, modifiedInstance.getPath(),
            [&](Provider& provider, const CIMObjectPath& path) {
                Acknowledgement acknowledgement;
                callProvider<CIMInstanceProvider>(
                    provider, path.getClassName(), [&](CIMInstanceProvider& asked) {
                        asked.modifyInstance(contextFor(caller), path, modifiedInstance,
                                             includeQualifiers, propertyList, acknowledgement);
                    });
            },
            [&] {
                requireWritable(nameSpace, modifiedInstance.getClassName());
                _repository.modifyInstance(nameSpace, modifiedInstance, propertyList);
            });
    });
}

void Router::deleteInstance(const Caller& caller, const CIMNamespaceName& nameSpace,
                            const CIMObjectPath& instanceName) {
    atInstance(
        nameSpace, instanceName,
        [&](Provider& provider, const CIMObjectPath& path) {
            Acknowledgement acknowledgement;
            callProvider<CIMInstanceProvider>(
                provider, path.getClassName(), [&](CIMInstanceProvider& asked) {
                    asked.deleteInstance(contextFor(caller), path, acknowledgement);
                });
        },
        [&] {
            requireWritable(nameSpace, instanceName.getClassName());
            _repository.deleteInstance(nameSpace, instanceName);
        });
}

// Enumerations: one leg for the class and one for each of its subclasses.

/// `askProvider` gets the provider's interface, the path of the leg's class and the collector,
/// `askRepository` the leg's class.
template <class Collector, class AskProvider, class AskRepository>
auto Router::enumerate(const CIMNamespaceName& nameSpace, const CIMName& className,
                       AskProvider askProvider, AskRepository askRepository) const {
    using Objects = std::decay_t<decltype(std::declval<Collector>().objects())>;
    requireClass(nameSpace, className);
    std::vector<CIMName> classNames = _repository.subClassNames(nameSpace, className, true);
    classNames.insert(classNames.begin(), className);
    Legs<std::decay_t<decltype(std::declval<Objects>()[0])>> legs;
    for (const CIMName& name : classNames) {
        legs.add([&]() -> Objects {
            Provider* const provider = _modules.find(nameSpace, name, ProviderType::Instance);
            if (provider == nullptr) {
                return arrayOf(askRepository(name));
            }
            Collector collector(Expected::Any);
            callProvider<CIMInstanceProvider>(*provider, name, [&](CIMInstanceProvider& asked) {
                askProvider(asked, CIMObjectPath(_hostName, nameSpace, name), collector);
            });
            return collector.objects();
        });
    }
    return legs.answer();
}

Answer<CIMInstance> Router::enumerateInstances(const Caller& caller,
                                               const CIMNamespaceName& nameSpace,
                                               const CIMName& className, bool deepInheritance,
                                               bool includeQualifiers, bool includeClassOrigin,
                                               const CIMPropertyList& propertyList) {
    return asCimErrors([&] {
        requireClass(nameSpace, className);
        // Without deep inheritance instances of subclasses show the properties that the class
        // asked for has, no more. Nobody after this one knows that list, so it is applied here.
        const bool ofThisClass = !deepInheritance && propertyList.isNull();
        const CIMPropertyList asked =
            ofThisClass ? allProperties(_repository.getClass(nameSpace, className)) : propertyList;
        Answer<CIMInstance> answer = enumerate<InstanceCollector>(
            nameSpace, className,
            [&](CIMInstanceProvider& provider, const CIMObjectPath& path,
                InstanceCollector& collector) {
                provider.enumerateInstances(contextFor(caller), path, includeQualifiers,
                                            includeClassOrigin, asked, collector);
            },
            [&](const CIMName& name) { return _repository.enumerateInstances(nameSpace, name); });
        for (Uint32 i = 0; ofThisClass && i < answer.objects.size(); ++i) {
            answer.objects[i] = withProperties(answer.objects[i], asked);
        }
        return answer;
    });
}

Answer<CIMObjectPath> Router::enumerateInstanceNames(const Caller& caller,
                                                     const CIMNamespaceName& nameSpace,
                                                     const CIMName& className) {
    return asCimErrors([&] {
        return enumerate<PathCollector>(
            nameSpace, className,
            [&](CIMInstanceProvider& provider, const CIMObjectPath& path,
                PathCollector& collector) {
                provider.enumerateInstanceNames(contextFor(caller), path, collector);
            },
            [&](const CIMName& name) {
                std::vector<CIMObjectPath> paths;
                for (const CIMInstance& instance :
                     _repository.enumerateInstances(nameSpace, name)) {
                    paths.push_back(instance.getPath());
                }
                return paths;
            });
    });
}

} // namespace embedded::host
