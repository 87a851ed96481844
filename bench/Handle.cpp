#include "Handle.h"

#include <Pegasus/Common/Exception.h>

PEGASUS_USING_PEGASUS;

namespace bench {

std::vector<ReadBack>* readBacks = nullptr;

World& world() {
    static World theWorld;
    return theWorld;
}

namespace {

void note(ReadBack::Kind kind, const CIMNamespaceName& nameSpace, const CIMName& className,
          const CIMObjectPath& path = CIMObjectPath()) {
    if (readBacks != nullptr)
        readBacks->push_back({kind, nameSpace, className, path});
}

const World::Published& published(const CIMName& className) {
    for (const World::Published& one : world().published)
        if (one.className == className)
            return one;
    throw CIMException(CIM_ERR_INVALID_CLASS, className.getString());
}

} // namespace
} // namespace bench

using bench::ReadBack;

PEGASUS_NAMESPACE_BEGIN

CIMOMHandle::CIMOMHandle() {}

CIMOMHandle::CIMOMHandle(const CIMOMHandle&) {}

CIMOMHandle::~CIMOMHandle() {}

CIMOMHandle& CIMOMHandle::operator=(const CIMOMHandle&) { return *this; }

CIMClass CIMOMHandle::getClass(const OperationContext&, const CIMNamespaceName& nameSpace,
                               const CIMName& className, Boolean, Boolean, Boolean,
                               const CIMPropertyList&) {
    bench::note(ReadBack::Class, nameSpace, className);
    for (const CIMClass& one : bench::world().classes)
        if (one.getClassName() == className)
            return one;
    throw CIMException(CIM_ERR_NOT_FOUND, className.getString());
}

CIMInstance CIMOMHandle::getInstance(const OperationContext&, const CIMNamespaceName& nameSpace,
                                     const CIMObjectPath& path, Boolean, Boolean, Boolean,
                                     const CIMPropertyList&) {
    bench::note(ReadBack::Instance, nameSpace, CIMName(), path);
    const Array<CIMInstance>& instances = bench::published(path.getClassName()).instances;
    if (instances.size() == 0)
        throw CIMException(CIM_ERR_NOT_FOUND, path.toString());
    return instances[0]; // the class has one
}

Array<CIMInstance> CIMOMHandle::enumerateInstances(const OperationContext&,
                                                   const CIMNamespaceName& nameSpace,
                                                   const CIMName& className, Boolean, Boolean,
                                                   Boolean, Boolean, const CIMPropertyList&) {
    bench::note(ReadBack::Instances, nameSpace, className);
    return bench::published(className).instances;
}

Array<CIMObjectPath> CIMOMHandle::enumerateInstanceNames(const OperationContext&,
                                                         const CIMNamespaceName& nameSpace,
                                                         const CIMName& className) {
    bench::note(ReadBack::Names, nameSpace, className);
    return bench::published(className).names;
}

PEGASUS_NAMESPACE_END
