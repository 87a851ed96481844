// Where a provider puts what it answers.
#pragma once

#include <Pegasus/Common/Array.h>
#include <Pegasus/Common/CIMClass.h>
#include <Pegasus/Common/CIMIndication.h>
#include <Pegasus/Common/CIMInstance.h>
#include <Pegasus/Common/CIMObject.h>
#include <Pegasus/Common/CIMObjectPath.h>
#include <Pegasus/Common/CIMParamValue.h>
#include <Pegasus/Common/CIMValue.h>
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
    virtual ~ResponseHandler();

    /// The provider has begun to answer.
    virtual void processing() = 0;
    /// The provider has delivered all that there is. An operation that answers one object throws
    /// CIMException CIM_ERR_FAILED if none was delivered.
    virtual void complete() = 0;

    /// What is to accompany the response, such as the language of its texts.
    void setContext(const OperationContext& context);

  protected:
    ResponseHandler();
    ResponseHandler(const ResponseHandler& handler);
    ResponseHandler& operator=(const ResponseHandler& handler);

    OperationContext getContext() const;

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

/// Takes a method's output parameters and its return value.
class PEGASUS_COMMON_LINKAGE MethodResultResponseHandler : virtual public ResponseHandler {
  public:
    virtual void deliverParamValue(const CIMParamValue& outParamValue) = 0;
    virtual void deliverParamValue(const Array<CIMParamValue>& outParamValues) = 0;
    virtual void deliver(const CIMValue& returnValue) = 0;
};

/// Takes indications, with or without a context of their own.
class PEGASUS_COMMON_LINKAGE IndicationResponseHandler : virtual public ResponseHandler {
  public:
    virtual void deliver(const CIMIndication& indication) = 0;
    virtual void deliver(const Array<CIMIndication>& indications) = 0;
    virtual void deliver(const OperationContext& context, const CIMIndication& indication) = 0;
    virtual void deliver(const OperationContext& context,
                         const Array<CIMIndication>& indications) = 0;
};

/// Takes instances or classes, as association operations answer them.
class PEGASUS_COMMON_LINKAGE ObjectResponseHandler : virtual public ResponseHandler {
  public:
    virtual void deliver(const CIMObject& object) = 0;
    virtual void deliver(const Array<CIMObject>& objects) = 0;
};

} // namespace Pegasus
