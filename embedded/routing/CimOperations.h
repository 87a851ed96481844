// The operations of a CIM server (DSP0200 clause 5.3.2), for its protocol side and its providers.
// routing::Router implements them; tests have implementations of their own.
#pragma once

#include <embedding/Operation.h>

#include <functional>
#include <vector>

namespace embedded::routing {

using Pegasus::embedding::allOf;
using Pegasus::embedding::Answer;
using Pegasus::embedding::Answered;
using Pegasus::embedding::Caller;
using Pegasus::embedding::Cursor;
using Pegasus::embedding::cursorOver;
using Pegasus::embedding::cursorOverAll;
using Pegasus::embedding::onlyOf;
using Pegasus::embedding::Operation;
using Pegasus::embedding::OperationKind;

/// Whether the operation answers with paths of instances.
inline bool returnsPaths(OperationKind kind) {
    return kind == OperationKind::EnumerateInstanceNames ||
           kind == OperationKind::AssociatorNames || kind == OperationKind::ReferenceNames;
}

/// The number of a registered module in this process.
struct Module {
    unsigned number;
    Pegasus::String name;
};

/// An operation that is ready to be performed.
struct Plan {
    /// The modules that perform() calls and may wait for, each once. They live as long as the
    /// object that made the plan. Without modules, perform() takes next to no time.
    std::vector<const Module*> modules;
    /// May be called once. Throws only std::bad_alloc, or Pegasus::CIMException with the status and
    /// message for the client. When it returns, every provider has answered: the cursor reads from
    /// memory alone and cannot fail.
    std::function<Answer()> perform;
};

/// A null CIMName or an empty String stands for a filter that the client left out. Objects are
/// returned as their provider gave them: the caller applies includeQualifiers, includeClassOrigin
/// and propertyList when it writes them. Here, all flags are applied to classes, and an enumeration
/// without deep inheritance drops the properties of subclasses.
///
/// An association operation whose objectName has no keys asks about its class, whether the client
/// wrote a CLASSNAME or an INSTANCENAME. No provider is asked; the answers are classes, to which
/// the flags and the property list are applied as GetClass does without LocalOnly.
///
/// Thread-safety: several threads may plan and perform at once.
class CimOperations {
  public:
    virtual ~CimOperations() = default;

    /// Throws Pegasus::CIMException, as Plan::perform. `operation` must outlive the plan and the
    /// answer.
    virtual Plan plan(const Operation& operation) = 0;

    Answer perform(const Operation& operation) { return plan(operation).perform(); }

    /// The names of a class's keys, in the order of its properties. Throws as GetClass does.
    virtual std::vector<Pegasus::CIMName> keyNames(const Pegasus::CIMNamespaceName& nameSpace,
                                                   const Pegasus::CIMName& className) = 0;

    virtual bool hasNameSpace(const Pegasus::CIMNamespaceName& nameSpace) = 0;
};

} // namespace embedded::routing
