// A provider of associations.
#pragma once

#include <Pegasus/Common/Array.h>
#include <Pegasus/Common/CIMInstance.h>
#include <Pegasus/Common/CIMName.h>
#include <Pegasus/Common/CIMObjectPath.h>
#include <Pegasus/Common/CIMPropertyList.h>
#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/String.h>
#include <Pegasus/Provider/CIMProvider.h>
#include <Pegasus/Provider/Linkage.h>

namespace Pegasus {

/// The association operations of DSP0200, as they reach a provider. The server asks once for each
/// association class that the provider is registered for, by name, as `associationClass` of
/// associators and associatorNames and as `resultClass` of references and referenceNames. The other
/// filters are the client's: a null name or an empty role does not filter. What is delivered is not
/// filtered any more.
///
/// Every operation may throw CIMException with any of the status codes that DSP0200 has for it; the
/// client gets it, and nothing of what was delivered.
///
/// Thread-safety: operations come in parallel, also those that belong to one request.
class PEGASUS_PROVIDER_LINKAGE CIMAssociationProvider : public virtual CIMProvider {
  public:
    /// Delivers the objects at the other ends of the associations of `objectName`.
    virtual void associators(const OperationContext& context, const CIMObjectPath& objectName,
                             const CIMName& associationClass, const CIMName& resultClass,
                             const String& role, const String& resultRole,
                             const Boolean includeQualifiers, const Boolean includeClassOrigin,
                             const CIMPropertyList& propertyList,
                             ObjectResponseHandler& handler) = 0;

    /// Delivers the paths of the objects that associators() delivers.
    virtual void associatorNames(const OperationContext& context, const CIMObjectPath& objectName,
                                 const CIMName& associationClass, const CIMName& resultClass,
                                 const String& role, const String& resultRole,
                                 ObjectPathResponseHandler& handler) = 0;

    /// Delivers the associations of `objectName`.
    virtual void references(const OperationContext& context, const CIMObjectPath& objectName,
                            const CIMName& resultClass, const String& role,
                            const Boolean includeQualifiers, const Boolean includeClassOrigin,
                            const CIMPropertyList& propertyList,
                            ObjectResponseHandler& handler) = 0;

    /// Delivers the paths of the associations that references() delivers.
    virtual void referenceNames(const OperationContext& context, const CIMObjectPath& objectName,
                                const CIMName& resultClass, const String& role,
                                ObjectPathResponseHandler& handler) = 0;
};

} // namespace Pegasus
