#include "common/ClassTemplates.h"

#include "common/ServedClasses.h"
#include "common/Trace.h"

#include <Pegasus/Common/CIMPropertyList.h>
#include <Pegasus/Common/OperationContext.h>

#include <algorithm>
#include <vector>

PEGASUS_USING_PEGASUS;
using namespace serverprofile;

CIMClass _getClassFromCIMOM(CIMOMHandle& cimom, CIMNamespaceName& nameSpace, CIMName& className,
                            bool includeQualifiers) {
    trace("_getClassFromCIMOM(): className ", className);
    try {
        const bool localOnly = false;
        const bool includeClassOrigin = false;
        return cimom.getClass(OperationContext(), nameSpace, className, localOnly,
                              includeQualifiers, includeClassOrigin, CIMPropertyList());
    } catch (const CIMException&) {
        trace("_getClassFromCIMOM(): Exception hit ");
        trace("_getClassFromCIMOM(): Ecxeption className ", className);
        throw CIMException(CIM_ERR_NOT_FOUND, String());
    }
}

namespace {

/// The positions, in their order, of the properties of `cimClass` that an instance of `className`
/// carries.
std::vector<Uint32> carried(const CIMClass& cimClass, const CIMName& className) {
    std::vector<Uint32> positions;
    if (const ServedClass* const served = findClass(plain(className))) {
        for (const char* const name : served->properties) {
            const Uint32 position = cimClass.findProperty(CIMName(name));
            if (position != PEG_NOT_FOUND)
                positions.push_back(position);
        }
    }
    std::sort(positions.begin(), positions.end());
    return positions;
}

} // namespace

CIMInstance _instAddQualifieres(CIMOMHandle& cimom, CIMName className) {
    CIMNamespaceName nameSpace("root/cimv2");
    const bool includeQualifiers = true;
    CIMClass cimClass = _getClassFromCIMOM(cimom, nameSpace, className, includeQualifiers);

    // Elements taken from a class are shared with it, hence the clones.
    CIMInstance instance(cimClass.getClassName());
    for (Uint32 i = 0; i < cimClass.getQualifierCount(); ++i)
        instance.addQualifier(cimClass.getQualifier(i).clone());
    for (const Uint32 i : carried(cimClass, className))
        instance.addProperty(cimClass.getProperty(i).clone());
    return instance;
}

namespace serverprofile {

bool setIfDefined(CIMInstance& instance, const char* name, const CIMValue& value) {
    const Uint32 index = instance.findProperty(CIMName(name));
    if (index == PEG_NOT_FOUND)
        return false;
    instance.getProperty(index).setValue(value);
    return true;
}

void setTypedArray(CIMInstance& instance, const char* name, Uint16 element) {
    const Uint32 index = instance.findProperty(CIMName(name));
    if (index == PEG_NOT_FOUND)
        return;
    CIMProperty property = instance.getProperty(index);
    trace("Quil: temp msg 2", static_cast<Sint32>(property.getType()));
    Array<Uint16> elements;
    elements.append(element);
    property.setValue(CIMValue(elements));
}

} // namespace serverprofile
