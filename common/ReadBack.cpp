#include "common/ReadBack.h"

#include <Pegasus/Common/CIMPropertyList.h>
#include <Pegasus/Common/OperationContext.h>

PEGASUS_USING_PEGASUS;

namespace serverprofile {

namespace {
// The same for every read-back, whatever the client's request asks for.
constexpr bool deepInheritance = true;
constexpr bool localOnly = false;
constexpr bool includeQualifiers = true;
constexpr bool includeClassOrigin = true;
} // namespace

void ReadBack::into(Array<CIMObjectPath>& list, const char* className) const {
    list = _handle.enumerateInstanceNames(OperationContext(), CIMNamespaceName(_nameSpace),
                                          CIMName(className));
}

void ReadBack::into(Array<CIMInstance>& list, const char* className) const {
    list = _handle.enumerateInstances(OperationContext(), CIMNamespaceName(_nameSpace),
                                      CIMName(className), deepInheritance, localOnly,
                                      includeQualifiers, includeClassOrigin, CIMPropertyList());
}

void ReadBack::into(CIMInstance& instance, const CIMObjectPath& path) const {
    instance =
        _handle.getInstance(OperationContext(), CIMNamespaceName(_nameSpace), path, localOnly,
                            includeQualifiers, includeClassOrigin, CIMPropertyList());
}

CIMObjectPath firstOf(const Array<CIMObjectPath>& list) {
    return list.size() > 0 ? list[0] : CIMObjectPath();
}

void deliverAll(ObjectPathResponseHandler& handler, const Array<CIMObjectPath>& list) {
    for (Uint32 i = 0; i < list.size(); ++i)
        handler.deliver(list[i]);
}

void deliverAll(ObjectResponseHandler& handler, const Array<CIMInstance>& list) {
    for (Uint32 i = 0; i < list.size(); ++i)
        handler.deliver(CIMObject(list[i]));
}

} // namespace serverprofile
