#include <Pegasus/Common/CIMParamValue.h>

#include "RepAccess.h"

namespace Pegasus {

struct CIMParamValueRep {
    String name;
    CIMValue value;
    bool typed;
};

namespace {

const String& checkedName(const String& name) {
    if (name.size() == 0)
        throw UninitializedObjectException();
    return name;
}

} // namespace

CIMParamValue::CIMParamValue(String parameterName, CIMValue value, Boolean isTyped)
    : CIMReads(std::make_shared<CIMParamValueRep>(
          CIMParamValueRep{checkedName(parameterName), value, isTyped})) {}

String CIMParamValue::getParameterName() const { return initialized(_rep).name; }

CIMValue CIMParamValue::getValue() const { return initialized(_rep).value; }

Boolean CIMParamValue::isTyped() const { return initialized(_rep).typed; }

void CIMParamValue::setParameterName(String& parameterName) {
    initialized(_rep).name = checkedName(parameterName);
}

void CIMParamValue::setValue(CIMValue& value) { initialized(_rep).value = value; }

void CIMParamValue::setIsTyped(Boolean isTyped) { initialized(_rep).typed = isTyped; }

CIMParamValue CIMParamValue::clone() const {
    return RepAccess::make<CIMParamValue>(std::make_shared<CIMParamValueRep>(initialized(_rep)));
}

} // namespace Pegasus
