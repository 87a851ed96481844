#include <Pegasus/Common/CIMQualifierDecl.h>

#include "NamedElement.h"

namespace Pegasus {

struct CIMQualifierDeclRep : NamedElement {
    CIMQualifierDeclRep(const CIMName& name, const CIMValue& initialValue,
                        const CIMScope& initialScope, const CIMFlavor& initialFlavor,
                        Uint32 fixedArraySize)
        : NamedElement(name), value(initialValue), scope(initialScope), flavor(initialFlavor),
          arraySize(fixedArraySize) {}

    bool identical(const CIMQualifierDeclRep& x) const {
        return name().equal(x.name()) && value.equal(x.value) && scope.equal(x.scope) &&
               arraySize == x.arraySize;
    }

    CIMValue value;
    CIMScope scope;
    CIMFlavor flavor;
    Uint32 arraySize;
};

CIMQualifierDecl::CIMQualifierDecl(const CIMName& name, const CIMValue& value,
                                   const CIMScope& scope, const CIMFlavor& flavor, Uint32 arraySize)
    : CIMQualifierDeclReads(
          std::make_shared<CIMQualifierDeclRep>(name, value, scope, flavor, arraySize)) {
}

const CIMName& CIMQualifierDeclReads::getName() const {
    return initialized(_rep).name();
}

void CIMQualifierDecl::setName(const CIMName& name) {
    initialized(_rep).rename(name, "qualifier declaration");
}

CIMType CIMQualifierDeclReads::getType() const {
    return initialized(_rep).value.getType();
}

Boolean CIMQualifierDeclReads::isArray() const {
    return initialized(_rep).value.isArray();
}

const CIMValue& CIMQualifierDeclReads::getValue() const {
    return initialized(_rep).value;
}

void CIMQualifierDecl::setValue(const CIMValue& value) {
    initialized(_rep).value = value;
}

const CIMScope& CIMQualifierDeclReads::getScope() const {
    return initialized(_rep).scope;
}

const CIMFlavor& CIMQualifierDeclReads::getFlavor() const {
    return initialized(_rep).flavor;
}

Uint32 CIMQualifierDeclReads::getArraySize() const {
    return initialized(_rep).arraySize;
}

Boolean CIMQualifierDeclReads::identical(const CIMConstQualifierDecl& x) const {
    return initialized(_rep).identical(repOf(x));
}

CIMQualifierDecl CIMQualifierDeclReads::clone() const {
    return RepAccess::make<CIMQualifierDecl>(
        std::make_shared<CIMQualifierDeclRep>(initialized(_rep)));
}

CIMConstQualifierDecl::CIMConstQualifierDecl(const CIMName& name, const CIMValue& value,
                                             const CIMScope& scope, const CIMFlavor& flavor,
                                             Uint32 arraySize)
    : CIMConstQualifierDecl(CIMQualifierDecl(name, value, scope, flavor, arraySize)) {
}

CIMConstQualifierDecl& CIMConstQualifierDecl::operator=(const CIMQualifierDecl& x) {
    CIMQualifierDeclReads::operator=(x);
    return *this;
}

} // namespace Pegasus
