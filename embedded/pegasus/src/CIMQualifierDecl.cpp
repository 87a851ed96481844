#include <Pegasus/Common/CIMQualifierDecl.h>

#include "NamedElement.h"

namespace Pegasus {

struct CIMQualifierDeclRep : NamedElement {
    CIMQualifierDeclRep(const CIMName& name, const CIMValue& initialValue,
                        const CIMScope& initialScope, const CIMFlavor& initialFlavor,
                        Uint32 fixedArraySize)
        : NamedElement(name), value(initialValue), scope(initialScope), flavor(initialFlavor),
          arraySize(fixedArraySize) {}

    CIMValue value;
    CIMScope scope;
    CIMFlavor flavor;
    Uint32 arraySize;
};

CIMQualifierDecl::CIMQualifierDecl(const CIMName& name, const CIMValue& value,
                                   const CIMScope& scope, const CIMFlavor& flavor, Uint32 arraySize)
    : CIMReads(std::make_shared<CIMQualifierDeclRep>(name, value, scope, flavor, arraySize)) {}

const CIMName& CIMQualifierDecl::getName() const { return initialized(_rep).name(); }

CIMType CIMQualifierDecl::getType() const { return initialized(_rep).value.getType(); }

Boolean CIMQualifierDecl::isArray() const { return initialized(_rep).value.isArray(); }

const CIMValue& CIMQualifierDecl::getValue() const { return initialized(_rep).value; }

const CIMScope& CIMQualifierDecl::getScope() const { return initialized(_rep).scope; }

const CIMFlavor& CIMQualifierDecl::getFlavor() const { return initialized(_rep).flavor; }

Uint32 CIMQualifierDecl::getArraySize() const { return initialized(_rep).arraySize; }

} // namespace Pegasus
