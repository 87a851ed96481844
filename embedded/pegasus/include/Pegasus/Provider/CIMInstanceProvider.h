// A provider of instances.
#pragma once

#include <Pegasus/Common/Array.h>
#include <Pegasus/Common/CIMInstance.h>
#include <Pegasus/Common/CIMObjectPath.h>
#include <Pegasus/Common/CIMPropertyList.h>
#include <Pegasus/Common/Config.h>
#include <Pegasus/Provider/CIMProvider.h>
#include <Pegasus/Provider/Linkage.h>

namespace Pegasus {

/// The instance operations of DSP0200, as they reach a provider. The class of an operation is the
/// class name of its object path: a provider answers for exactly that class, the server asks for
/// subclasses itself. The object path has host and namespace. A null property list stands for all
/// properties.
///
/// Every operation may throw CIMException with any of the status codes that DSP0200 has for it; the
/// client gets it, and nothing of what was delivered.
///
/// Thread-safety: operations come in parallel.
class PEGASUS_PROVIDER_LINKAGE CIMInstanceProvider : public virtual CIMProvider {
  public:
    /// Delivers the one instance that `instanceReference` names, or throws
    /// CIMObjectNotFoundException.
    virtual void getInstance(const OperationContext& context,
                             const CIMObjectPath& instanceReference,
                             const Boolean includeQualifiers, const Boolean includeClassOrigin,
                             const CIMPropertyList& propertyList,
                             InstanceResponseHandler& handler) = 0;

    /// Delivers all instances of the class, with their paths.
    virtual void
    enumerateInstances(const OperationContext& context, const CIMObjectPath& classReference,
                       const Boolean includeQualifiers, const Boolean includeClassOrigin,
                       const CIMPropertyList& propertyList, InstanceResponseHandler& handler) = 0;

    /// Delivers the paths of all instances of the class.
    virtual void enumerateInstanceNames(const OperationContext& context,
                                        const CIMObjectPath& classReference,
                                        ObjectPathResponseHandler& handler) = 0;

    /// Gives the properties in `propertyList` the values that they have in `instanceObject`.
    virtual void modifyInstance(const OperationContext& context,
                                const CIMObjectPath& instanceReference,
                                const CIMInstance& instanceObject, const Boolean includeQualifiers,
                                const CIMPropertyList& propertyList, ResponseHandler& handler) = 0;

    /// Makes an instance and delivers its path.
    virtual void createInstance(const OperationContext& context,
                                const CIMObjectPath& instanceReference,
                                const CIMInstance& instanceObject,
                                ObjectPathResponseHandler& handler) = 0;

    virtual void deleteInstance(const OperationContext& context,
                                const CIMObjectPath& instanceReference,
                                ResponseHandler& handler) = 0;
};

} // namespace Pegasus
