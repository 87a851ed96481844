#include "Reps.h"

namespace Pegasus {

std::shared_ptr<CIMObjectRep> CIMClassRep::clone() const {
    return std::make_shared<CIMClassRep>(*this);
}

bool CIMClassRep::identical(const CIMObjectRep& x) const {
    if (!CIMObjectRep::identical(x))
        return false;
    const auto& other = static_cast<const CIMClassRep&>(x);
    return superClassName.equal(other.superClassName) && methods.identical(other.methods);
}

void CIMClassRep::addProperty(const CIMProperty& property) {
    const CIMPropertyRep& rep = repOf(property);
    if (rep.value.getType() == CIMTYPE_REFERENCE && rep.referenceClassName.isNull())
        throw TypeMismatchException();
    CIMObjectRep::addProperty(property);
}

Array<CIMName> CIMClassRep::keyNames() const {
    Array<CIMName> names;
    for (const CIMProperty& property : properties) {
        const CIMPropertyRep& rep = repOf(property);
        if (rep.qualifiers.isTrue("Key"))
            names.append(rep.name());
    }
    return names;
}

CIMClassReads::CIMClassReads(const CIMObjectReads& x) : CIMElementReads(x) {
    if (!x.isClass())
        throw DynamicCastFailedException();
}

CIMClassReads::CIMClassReads(const CIMName& className, const CIMName& superClassName)
    : CIMElementReads(std::make_shared<CIMClassRep>(className, superClassName)) {}

Boolean CIMClassReads::isAssociation() const { return classRepOf(*this).isAssociation(); }

Boolean CIMClassReads::isAbstract() const { return classRepOf(*this).isAbstract(); }

const CIMName& CIMClassReads::getSuperClassName() const { return classRepOf(*this).superClassName; }

void CIMClass::setSuperClassName(const CIMName& superClassName) {
    classRepOf(*this).superClassName = superClassName;
}

CIMClass& CIMClass::addMethod(const CIMMethod& x) {
    classRepOf(*this).methods.add(x, "method");
    return *this;
}

Uint32 CIMClassReads::findMethod(const CIMName& name) const {
    return classRepOf(*this).methods.find(name);
}

CIMMethod CIMClass::getMethod(Uint32 index) { return classRepOf(*this).methods.at(index); }

CIMConstMethod CIMClassReads::getMethod(Uint32 index) const {
    return classRepOf(*this).methods.at(index);
}

void CIMClass::removeMethod(Uint32 index) { classRepOf(*this).methods.remove(index); }

Uint32 CIMClassReads::getMethodCount() const { return classRepOf(*this).methods.count(); }

void CIMClassReads::getKeyNames(Array<CIMName>& keyNames) const {
    keyNames = classRepOf(*this).keyNames();
}

Boolean CIMClassReads::hasKeys() const { return classRepOf(*this).hasKeys(); }

CIMInstance CIMClass::buildInstance(Boolean includeQualifiers, Boolean includeClassOrigin,
                                    const CIMPropertyList& propertyList) const {
    const CIMObjectRep& rep = initialized(_rep);
    CIMInstance instance(rep.className());
    for (const CIMQualifier& qualifier : rep.qualifiers)
        instance.addQualifier(qualifier.clone());
    for (const CIMProperty& property : rep.properties)
        instance.addProperty(property.clone());
    instance.instanceFilter(includeQualifiers, includeClassOrigin, propertyList);
    return instance;
}

} // namespace Pegasus
