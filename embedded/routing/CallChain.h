// Which provider modules wait, on this thread, for the answer to a read-back.
//
// A read-back runs on the thread of the provider that makes it, so the modules that wait for it
// are the ones that this thread has entered and not left.
#pragma once

#include <Pegasus/Common/CIMName.h>
#include <Pegasus/Common/String.h>

namespace embedded::routing {

/// Stands for one stay of this thread inside a module.
///
/// Thread-safety: an object belongs to the thread that made it; chains of threads are separate.
class ModuleStay {
  public:
    /// Throws CIMException CIM_ERR_FAILED, naming the module and `className`, when this thread is
    /// inside `module` already: the module would have to answer the question while it waits for
    /// the answer.
    ModuleStay(const Pegasus::String& module, const Pegasus::CIMName& className);
    ~ModuleStay();
    ModuleStay(const ModuleStay&) = delete;
    ModuleStay& operator=(const ModuleStay&) = delete;

  private:
    const Pegasus::String& _module;
    const ModuleStay* const _outer;
};

} // namespace embedded::routing
