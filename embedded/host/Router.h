// The server's answer to every operation: which providers and which part of the repository are
// asked, with what, and how their answers become one.
#pragma once

#include "host/CimOperations.h"
#include "host/Provider.h"
#include "host/ProviderModule.h"
#include "host/RepositoryAssociations.h"
#include "repository/Repository.h"

#include <string>
#include <utility>
#include <vector>

namespace embedded::host {

/// The name of this machine, as object paths carry it.
Pegasus::String localHostName();

/// Instance operations go to the provider of exactly the class that is named, an enumeration to
/// the provider of that class and to those of each of its subclasses, an association operation to
/// the providers of the association classes that can touch the source's class. Where none is
/// registered, the repository answers. Providers are asked one after the other, in the repository's
/// order of classes.
///
/// Instances of the repository are created, modified and deleted only if the server is `writable`,
/// and never where they would appear among those that a provider publishes: not of a subclass of
/// its class, nor of a superclass by which its objects are enumerated. Such a write is
/// CIM_ERR_ACCESS_DENIED. Namespaces are never created: CIM_ERR_NOT_SUPPORTED.
///
/// Thread-safety: all operations may be called from several threads at once.
class Router : public CimOperations {
  public:
    /// `repository` and `modules` must outlive this object. `hostName` stands in the paths that
    /// providers are given, and completes those that they return.
    Router(repository::Repository& repository, const ProviderModules& modules,
           const Pegasus::String& hostName, bool writable = false);

    Pegasus::CIMClass getClass(const Caller& caller, const Pegasus::CIMNamespaceName& nameSpace,
                               const Pegasus::CIMName& className, bool localOnly,
                               bool includeQualifiers, bool includeClassOrigin,
                               const Pegasus::CIMPropertyList& propertyList) override;
    Pegasus::Array<Pegasus::CIMClass>
    enumerateClasses(const Caller& caller, const Pegasus::CIMNamespaceName& nameSpace,
                     const Pegasus::CIMName& className, bool deepInheritance, bool localOnly,
                     bool includeQualifiers, bool includeClassOrigin) override;
    Pegasus::Array<Pegasus::CIMName> enumerateClassNames(const Caller& caller,
                                                         const Pegasus::CIMNamespaceName& nameSpace,
                                                         const Pegasus::CIMName& className,
                                                         bool deepInheritance) override;

    Pegasus::CIMInstance getInstance(const Caller& caller,
                                     const Pegasus::CIMNamespaceName& nameSpace,
                                     const Pegasus::CIMObjectPath& instanceName,
                                     bool includeQualifiers, bool includeClassOrigin,
                                     const Pegasus::CIMPropertyList& propertyList) override;
    Answer<Pegasus::CIMInstance>
    enumerateInstances(const Caller& caller, const Pegasus::CIMNamespaceName& nameSpace,
                       const Pegasus::CIMName& className, bool deepInheritance,
                       bool includeQualifiers, bool includeClassOrigin,
                       const Pegasus::CIMPropertyList& propertyList) override;
    Answer<Pegasus::CIMObjectPath>
    enumerateInstanceNames(const Caller& caller, const Pegasus::CIMNamespaceName& nameSpace,
                           const Pegasus::CIMName& className) override;
    Pegasus::CIMObjectPath createInstance(const Caller& caller,
                                          const Pegasus::CIMNamespaceName& nameSpace,
                                          const Pegasus::CIMInstance& newInstance) override;
    void modifyInstance(const Caller& caller, const Pegasus::CIMNamespaceName& nameSpace,
                        const Pegasus::CIMInstance& modifiedInstance, bool includeQualifiers,
                        const Pegasus::CIMPropertyList& propertyList) override;
    void deleteInstance(const Caller& caller, const Pegasus::CIMNamespaceName& nameSpace,
                        const Pegasus::CIMObjectPath& instanceName) override;
    Pegasus::CIMValue getProperty(const Caller& caller, const Pegasus::CIMNamespaceName& nameSpace,
                                  const Pegasus::CIMObjectPath& instanceName,
                                  const Pegasus::CIMName& propertyName) override;

    Answer<Pegasus::CIMObject>
    associators(const Caller& caller, const Pegasus::CIMNamespaceName& nameSpace,
                const Pegasus::CIMObjectPath& objectName, const Pegasus::CIMName& assocClass,
                const Pegasus::CIMName& resultClass, const Pegasus::String& role,
                const Pegasus::String& resultRole, bool includeQualifiers, bool includeClassOrigin,
                const Pegasus::CIMPropertyList& propertyList) override;
    Answer<Pegasus::CIMObjectPath>
    associatorNames(const Caller& caller, const Pegasus::CIMNamespaceName& nameSpace,
                    const Pegasus::CIMObjectPath& objectName, const Pegasus::CIMName& assocClass,
                    const Pegasus::CIMName& resultClass, const Pegasus::String& role,
                    const Pegasus::String& resultRole) override;
    Answer<Pegasus::CIMObject>
    references(const Caller& caller, const Pegasus::CIMNamespaceName& nameSpace,
               const Pegasus::CIMObjectPath& objectName, const Pegasus::CIMName& resultClass,
               const Pegasus::String& role, bool includeQualifiers, bool includeClassOrigin,
               const Pegasus::CIMPropertyList& propertyList) override;
    Answer<Pegasus::CIMObjectPath> referenceNames(const Caller& caller,
                                                  const Pegasus::CIMNamespaceName& nameSpace,
                                                  const Pegasus::CIMObjectPath& objectName,
                                                  const Pegasus::CIMName& resultClass,
                                                  const Pegasus::String& role) override;

    Pegasus::CIMQualifierDecl getQualifier(const Caller& caller,
                                           const Pegasus::CIMNamespaceName& nameSpace,
                                           const Pegasus::CIMName& qualifierName) override;
    Pegasus::Array<Pegasus::CIMQualifierDecl>
    enumerateQualifiers(const Caller& caller, const Pegasus::CIMNamespaceName& nameSpace) override;

  private:
    struct Traversal;
    void requireNameSpace(const Pegasus::CIMNamespaceName& nameSpace) const;
    void requireClass(const Pegasus::CIMNamespaceName& nameSpace,
                      const Pegasus::CIMName& className) const;
    void requireWritable(const Pegasus::CIMNamespaceName& nameSpace,
                         const Pegasus::CIMName& className) const;
    Pegasus::CIMObjectPath requestPath(const Pegasus::CIMNamespaceName& nameSpace,
                                       const Pegasus::CIMObjectPath& objectName) const;

    template <class Collector, class AskProvider, class AskRepository>
    auto enumerate(const Pegasus::CIMNamespaceName& nameSpace, const Pegasus::CIMName& className,
                   AskProvider askProvider, AskRepository askRepository) const;
    template <class AskProvider, class AskRepository>
    auto atInstance(const Pegasus::CIMNamespaceName& nameSpace,
                    const Pegasus::CIMObjectPath& instanceName, AskProvider askProvider,
                    AskRepository askRepository) const;
    template <class Collector, class AskProvider, class AskRepository, class AskSchema>
    auto traverse(const Traversal& traversal, AskProvider askProvider, AskRepository askRepository,
                  AskSchema askSchema) const;

    Pegasus::Array<Pegasus::CIMObject>
    classObjects(const Pegasus::CIMNamespaceName& nameSpace,
                 const std::vector<Pegasus::CIMName>& classNames, bool includeQualifiers,
                 bool includeClassOrigin, const Pegasus::CIMPropertyList& propertyList) const;
    Pegasus::Array<Pegasus::CIMObject>
    instanceObjects(const Traversal& traversal, const std::vector<Pegasus::CIMObjectPath>& paths,
                    bool includeQualifiers, bool includeClassOrigin,
                    const Pegasus::CIMPropertyList& propertyList);
    void complete(const Pegasus::CIMNamespaceName& nameSpace, Pegasus::CIMObjectPath& path) const;
    void complete(const Pegasus::CIMNamespaceName& nameSpace, Pegasus::CIMObject& object) const;

    repository::Repository& _repository;
    const ProviderModules& _modules;
    const Pegasus::String _hostName;
    const bool _writable;
};

} // namespace embedded::host
