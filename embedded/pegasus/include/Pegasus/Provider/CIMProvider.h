// What every provider is.
#pragma once

#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/OperationContext.h>
#include <Pegasus/Common/ResponseHandler.h>
#include <Pegasus/Provider/CIMOMHandle.h>
#include <Pegasus/Provider/Linkage.h>
#include <Pegasus/Provider/ProviderException.h>

namespace Pegasus {

/// The life of a provider. The kinds of operations are interfaces of their own, each deriving
/// virtually from this one, so that one class can implement several.
///
/// A module makes its providers in the function
///
///     extern "C" PEGASUS_EXPORT Pegasus::CIMProvider*
///     PegasusCreateProvider(const Pegasus::String& providerName);
///
/// which answers null for a name that it does not know.
///
/// Thread-safety: initialize() is called once, before any other operation; operations may then
/// come in parallel.
class PEGASUS_PROVIDER_LINKAGE CIMProvider {
  public:
    virtual ~CIMProvider() = default;

    /// Gets the provider ready. `cimom` is valid during the call; a provider that wants to use it
    /// later copies it. Whatever is thrown here ends the provider's life: terminate() is called.
    virtual void initialize(CIMOMHandle& cimom) = 0;

    /// The provider is no longer used. Usually it deletes itself here: nobody else does.
    virtual void terminate() = 0;
};

} // namespace Pegasus
