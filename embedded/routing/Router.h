// Answers every operation: asks the right providers and the repository, and joins their answers.
#pragma once

#include "repository/Repository.h"
#include "routing/CimOperations.h"
#include "routing/JoinedAnswer.h"
#include "routing/ProviderModule.h"
#include "routing/RepositoryAssociations.h"

#include <vector>

namespace embedded::routing {

/// The name of this machine in object paths.
Pegasus::String localHostName();

/// Instance operations go to the provider of exactly the class that they name, an enumeration to
/// the providers of that class and of each of its subclasses, an association operation to the
/// providers of the association classes that can refer to the source's class. Without a registered
/// provider, the repository answers, as it was when the operation was planned. Providers are asked
/// one after the other, in the repository's order of classes.
///
/// Clients may create, modify and delete instances of the repository only if the server is
/// `writable`, and never among the instances that a provider publishes: neither of a subclass of
/// its class, nor of a superclass whose enumeration includes its objects. Other writes get
/// CIM_ERR_ACCESS_DENIED. Creating a namespace gets CIM_ERR_NOT_SUPPORTED.
///
/// A write of a caller without that right gets CIM_ERR_ACCESS_DENIED, even where a provider would
/// answer it.
///
/// Thread-safety: several threads may plan and perform at once.
class Router : public CimOperations {
  public:
    /// `repository` and `modules` must outlive this object. `hostName` is the host in paths that
    /// providers get, and in paths that they return without one.
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
    /// The provider of a class, or null if the repository has its objects.
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
