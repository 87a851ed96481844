// A provider of methods.
#pragma once

#include <Pegasus/Common/Array.h>
#include <Pegasus/Common/CIMName.h>
#include <Pegasus/Common/CIMObjectPath.h>
#include <Pegasus/Common/CIMParamValue.h>
#include <Pegasus/Common/CIMValue.h>
#include <Pegasus/Common/Config.h>
#include <Pegasus/Provider/CIMProvider.h>
#include <Pegasus/Provider/Linkage.h>

namespace Pegasus {

/// The invocation of extrinsic methods, as it reaches a provider.
///
/// Thread-safety: operations come in parallel.
class PEGASUS_PROVIDER_LINKAGE CIMMethodProvider : public virtual CIMProvider {
  public:
    CIMMethodProvider();
    ~CIMMethodProvider() override;

    /// Invokes the method on the instance or class that `objectReference` names, and delivers
    /// output parameters and return value. May throw CIMException, such as
    /// CIMMethodNotFoundException.
    virtual void invokeMethod(const OperationContext& context, const CIMObjectPath& objectReference,
                              const CIMName& methodName, const Array<CIMParamValue>& inParameters,
                              MethodResultResponseHandler& handler) = 0;
};

} // namespace Pegasus
