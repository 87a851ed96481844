// The server's answer to every operation: which providers and which part of the repository are
// asked, with what, and how their answers become one.
#pragma once

#include "repository/Repository.h"
#include "routing/CimOperations.h"
#include "routing/JoinedAnswer.h"
#include "routing/Provider.h"
#include "routing/ProviderModule.h"
#include "routing/RepositoryAssociations.h"

#include <vector>

namespace embedded::routing {

/// The name of this machine, as object paths carry it.
Pegasus::String localHostName();

/// Instance operations go to the provider of exactly the class that is named, an enumeration to
/// the provider of that class and to those of each of its subclasses, an association operation to
/// the providers of the association classes that can touch the source's class. Where none is
/// registered, the repository answers, from what it held when the operation was planned. Providers
/// are asked one after the other, in the repository's order of classes.
///
/// Instances of the repository are created, modified and deleted only if the server is `writable`,
/// and never where they would appear among those that a provider publishes: not of a subclass of
/// its class, nor of a superclass by which its objects are enumerated. Such a write is
/// CIM_ERR_ACCESS_DENIED. Namespaces are never created: CIM_ERR_NOT_SUPPORTED.
///
/// A write on behalf of a caller who may not write is CIM_ERR_ACCESS_DENIED, whoever would answer
/// it.
///
/// Thread-safety: several threads may plan and perform at once.
class Router : public CimOperations {
  public:
    /// `repository` and `modules` must outlive this object. `hostName` stands in the paths that
    /// providers are given, and completes those that they return.
    Router(repository::Repository& repository, const ProviderModules& modules,
           const Pegasus::String& hostName, bool writable = false);

    Plan plan(const Operation& operation) override;
    std::vector<Pegasus::CIMName> keyNames(const Pegasus::CIMNamespaceName& nameSpace,
                                           const Pegasus::CIMName& className) override {
        return _repository.view().keyNames(nameSpace, className);
    }
    bool hasNameSpace(const Pegasus::CIMNamespaceName& nameSpace) override {
        return _repository.view().hasNameSpace(nameSpace);
    }

  private:
    /// An operation, and what the repository held when it was planned.
    struct Question {
        const Operation& operation;
        repository::View view;

        void requireNameSpace() const;
        void requireClass(const Pegasus::CIMName& className) const;
    };
    /// What answers for the objects of a class: its provider, or null for the repository.
    struct Source {
        Pegasus::CIMName className;
        Provider* provider;
    };

    static Plan planSchema(const Question& question);
    Plan planGet(const Question& question) const;
    Plan planWrite(const Question& question);
    Plan planEnumeration(const Question& question) const;
    Plan planTraversal(const Question& question);

    Provider* providerOf(const Question& question, const Pegasus::CIMName& className) const;
    Pegasus::CIMObjectPath requestPath(const Operation& operation,
                                       const Pegasus::CIMObjectPath& objectName) const;
    void requireWritable(const Question& question, const Pegasus::CIMName& className) const;
    static Answer askToWrite(const Operation& operation, Provider& provider,
                             const Pegasus::CIMObjectPath& path);
    Answer enumerated(const Question& question, const Source& source,
                      const Pegasus::CIMPropertyList& propertyList) const;
    Answer traversed(const Operation& operation, const Source& source) const;
    Answer instanceObjects(const Question& question,
                           const std::vector<Pegasus::CIMObjectPath>& paths);
    void complete(const Operation& operation, Pegasus::CIMObjectPath& path) const;
    Cursor completed(const Operation& operation, Cursor cursor) const;

    repository::Repository& _repository;
    const ProviderModules& _modules;
    const Pegasus::String _hostName;
    const bool _writable;
};

} // namespace embedded::routing
