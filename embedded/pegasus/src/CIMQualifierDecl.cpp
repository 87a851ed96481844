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
    : _rep(std::make_shared<CIMQualifierDeclRep>(name, value, scope, flavor, arraySize)) {
}

CIMQualifierDecl::CIMQualifierDecl(std::shared_ptr<CIMQualifierDeclRep> rep)
    : _rep(std::move(rep)) {
}

const CIMName& CIMQualifierDecl::getName() const {
    return initialized(_rep).name();
}

void CIMQualifierDecl::setName(const CIMName& name) {
    initialized(_rep).rename(name, "qualifier declaration");
}

CIMType CIMQualifierDecl::getType() const {
    return initialized(_rep).value.getType();
}

Boolean CIMQualifierDecl::isArray() const {
    return initialized(_rep).value.isArray();
}

const CIMValue& CIMQualifierDecl::getValue() const {
    return initialized(_rep).value;
}

void CIMQualifierDecl::setValue(const CIMValue& value) {
    initialized(_rep).value = value;
}

const CIMScope& CIMQualifierDecl::getScope() const {
    return initialized(_rep).scope;
}

const CIMFlavor& CIMQualifierDecl::getFlavor() const {
    return initialized(_rep).flavor;
}

Uint32 CIMQualifierDecl::getArraySize() const {
    return initialized(_rep).arraySize;
}

Boolean CIMQualifierDecl::isUninitialized() const {
    return !_rep;
}

Boolean CIMQualifierDecl::identical(const CIMConstQualifierDecl& x) const {
    return initialized(_rep).identical(repOf(x));
}

CIMQualifierDecl CIMQualifierDecl::clone() const {
    return CIMQualifierDecl(std::make_shared<CIMQualifierDeclRep>(initialized(_rep)));
}

CIMConstQualifierDecl::CIMConstQualifierDecl(const CIMQualifierDecl& x) : _rep(RepAccess::rep(x)) {
}

CIMConstQualifierDecl::CIMConstQualifierDecl(const CIMName& name, const CIMValue& value,
                                             const CIMScope& scope, const CIMFlavor& flavor,
                                             Uint32 arraySize)
    : CIMConstQualifierDecl(CIMQualifierDecl(name, value, scope, flavor, arraySize)) {
}

CIMConstQualifierDecl& CIMConstQualifierDecl::operator=(const CIMQualifierDecl& x) {
    _rep = RepAccess::rep(x);
    return *this;
}

const CIMName& CIMConstQualifierDecl::getName() const {
    return initialized(_rep).name();
}

CIMType CIMConstQualifierDecl::getType() const {
    return initialized(_rep).value.getType();
}

Boolean CIMConstQualifierDecl::isArray() const {
    return initialized(_rep).value.isArray();
}

const CIMValue& CIMConstQualifierDecl::getValue() const {
    return initialized(_rep).value;
}

const CIMScope& CIMConstQualifierDecl::getScope() const {
    return initialized(_rep).scope;
}

const CIMFlavor& CIMConstQualifierDecl::getFlavor() const {
    return initialized(_rep).flavor;
}

Uint32 CIMConstQualifierDecl::getArraySize() const {
    return initialized(_rep).arraySize;
}

Boolean CIMConstQualifierDecl::isUninitialized() const {
    return !_rep;
}

Boolean CIMConstQualifierDecl::identical(const CIMConstQualifierDecl& x) const {
    return initialized(_rep).identical(repOf(x));
}

CIMQualifierDecl CIMConstQualifierDecl::clone() const {
    return RepAccess::make<CIMQualifierDecl>(
        std::make_shared<CIMQualifierDeclRep>(initialized(_rep)));
}

} // namespace Pegasus
