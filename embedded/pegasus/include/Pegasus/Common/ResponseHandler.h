// Where a provider puts what it answers.
#pragma once

#include <Pegasus/Common/Array.h>
#include <Pegasus/Common/CIMInstance.h>
#include <Pegasus/Common/CIMObject.h>
#include <Pegasus/Common/CIMObjectPath.h>
#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/Linkage.h>
#include <Pegasus/Common/OperationContext.h>

namespace Pegasus {

/// The response to one request. A provider calls processing() (which may be left out), then
/// deliver() as often as the operation allows, then complete(); all that during the call that gave
/// it the handler. If the provider throws instead, what was delivered is dropped.
///
/// Thread-safety: a handler serves one call, and is not to be used from several threads at once.
class PEGASUS_COMMON_LINKAGE ResponseHandler {
  public:
    virtual ~ResponseHandler() = default;

    /// The provider has begun to answer.
    virtual void processing() = 0;
    /// The provider has delivered all that there is. An operation that answers one object throws
    /// CIMException CIM_ERR_FAILED if none was delivered.
    virtual void complete() = 0;

    /// What is to accompany the response, such as the language of its texts.
    void setContext(const OperationContext& context) { _context = context; }

  protected:
    ResponseHandler() = default;
    ResponseHandler(const ResponseHandler& handler) = default;
    ResponseHandler& operator=(const ResponseHandler& handler) = default;

    OperationContext getContext() const { return _context; }

  private:
    OperationContext _context;
};

/// Takes instances.
class PEGASUS_COMMON_LINKAGE InstanceResponseHandler : virtual public ResponseHandler {
  public:
    virtual void deliver(const CIMInstance& instance) = 0;
    virtual void deliver(const Array<CIMInstance>& instances) = 0;
};

/// Takes object paths.
class PEGASUS_COMMON_LINKAGE ObjectPathResponseHandler : virtual public ResponseHandler {
  public:
    virtual void deliver(const CIMObjectPath& objectPath) = 0;
    virtual void deliver(const Array<CIMObjectPath>& objectPaths) = 0;
};

/// Takes instances or classes, as association operations answer them.
class PEGASUS_COMMON_LINKAGE ObjectResponseHandler : virtual public ResponseHandler {
  public:
    virtual void deliver(const CIMObject& object) = 0;
    virtual void deliver(const Array<CIMObject>& objects) = 0;
};

} // namespace Pegasus
