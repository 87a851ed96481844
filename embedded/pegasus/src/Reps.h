// What stands behind the handles of the object model.
#pragma once

#include "NamedElement.h"

#include <Pegasus/Common/CIMClass.h>

namespace Pegasus {

struct CIMQualifierRep : NamedElement {
    CIMQualifierRep(const CIMName& name, const CIMValue& initialValue,
                    const CIMFlavor& initialFlavor, bool isPropagated)
        : NamedElement(name), value(initialValue), flavor(initialFlavor), propagated(isPropagated) {
    }

    bool identical(const CIMQualifierRep& x) const {
        return name().equal(x.name()) && value.equal(x.value) && flavor.equal(x.flavor) &&
               propagated == x.propagated;
    }

    CIMValue value;
    CIMFlavor flavor;
    bool propagated;
};

/// The qualifiers of an element.
class Qualifiers : public NamedElements<CIMQualifier> {
  public:
    void add(const CIMQualifier& qualifier) {
        NamedElements<CIMQualifier>::add(qualifier, "qualifier");
    }

    /// Whether there is a qualifier of that name with the value true.
    bool isTrue(const CIMName& name) const {
        const Uint32 index = find(name);
        if (index == PEG_NOT_FOUND)
            return false;
        // Equal to a value that is boolean, no array and not null.
        return repOf(at(index)).value.equal(CIMValue(Boolean(true)));
    }
};

struct CIMParameterRep : NamedElement {
    /// Throws as the constructor of CIMParameter.
    CIMParameterRep(const CIMName& name, CIMType valueType, bool takesArray, Uint32 fixedArraySize,
                    const CIMName& referenceClass);

    bool identical(const CIMParameterRep& x) const;

    const CIMType type;
    const bool isArray;
    const Uint32 arraySize; // 0: not fixed
    const CIMName referenceClassName;
    Qualifiers qualifiers;
};

struct CIMMethodRep : NamedElement {
    CIMMethodRep(const CIMName& name, CIMType returnType, const CIMName& origin, bool isPropagated)
        : NamedElement(name), type(returnType), classOrigin(origin), propagated(isPropagated) {}

    bool identical(const CIMMethodRep& x) const {
        return name().equal(x.name()) && type == x.type && qualifiers.identical(x.qualifiers) &&
               parameters.identical(x.parameters);
    }

    CIMType type;
    CIMName classOrigin;
    bool propagated;
    Qualifiers qualifiers;
    NamedElements<CIMParameter> parameters;
};

struct CIMPropertyRep : NamedElement {
    /// Throws as the constructor of CIMProperty.
    CIMPropertyRep(const CIMName& name, const CIMValue& initialValue, Uint32 fixedArraySize,
                   const CIMName& referenceClass, const CIMName& origin, bool isPropagated);

    bool identical(const CIMPropertyRep& x) const;

    /// Throws as CIMProperty::setValue.
    void setValue(const CIMValue& newValue);

    CIMValue value;
    Uint32 arraySize; // 0: not fixed
    CIMName referenceClassName;
    CIMName classOrigin;
    bool propagated;
    Qualifiers qualifiers;

  private:
    void checkSizeOf(const CIMValue& x) const;
};

struct CIMObjectRep {
    /// Throws UninitializedObjectException if `className` is null.
    explicit CIMObjectRep(const CIMName& className);
    CIMObjectRep(const CIMObjectRep& x) = default;
    CIMObjectRep& operator=(const CIMObjectRep&) = delete;
    virtual ~CIMObjectRep() = default;

    virtual std::shared_ptr<CIMObjectRep> clone() const = 0;
    virtual bool isClass() const = 0;
    /// Compares what classes and instances have in common; an override, the rest.
    virtual bool identical(const CIMObjectRep& x) const;
    /// Throws as CIMClass::addProperty and CIMInstance::addProperty.
    virtual void addProperty(const CIMProperty& property);

    const CIMObjectPath& path() const { return _path; }
    /// The path is where the class name is kept.
    const CIMName& className() const { return _path.getClassName(); }
    /// Throws as CIMInstance::setPath.
    void setPath(const CIMObjectPath& path);
    /// As CIMInstance::instanceFilter.
    void filter(bool includeQualifiers, bool includeClassOrigin,
                const CIMPropertyList& propertyList);

    Qualifiers qualifiers;
    NamedElements<CIMProperty> properties;

  private:
    CIMObjectPath _path;
};

struct CIMInstanceRep : CIMObjectRep {
    using CIMObjectRep::CIMObjectRep;

    std::shared_ptr<CIMObjectRep> clone() const override;
    bool isClass() const override { return false; }
};

struct CIMClassRep : CIMObjectRep {
    CIMClassRep(const CIMName& className, const CIMName& superClass)
        : CIMObjectRep(className), superClassName(superClass) {}

    std::shared_ptr<CIMObjectRep> clone() const override;
    bool isClass() const override { return true; }
    bool identical(const CIMObjectRep& x) const override;
    void addProperty(const CIMProperty& property) override;

    bool isAssociation() const { return qualifiers.isTrue("Association"); }
    bool isAbstract() const { return qualifiers.isTrue("Abstract"); }
    Array<CIMName> keyNames() const;
    bool hasKeys() const { return keyNames().size() != 0; }

    CIMName superClassName;
    NamedElements<CIMMethod> methods;
};

/// What stands behind a CIMClass or a CIMConstClass, which is never that of an instance.
inline CIMClassRep& classRepOf(const CIMClassReads& cimClass) {
    return static_cast<CIMClassRep&>(initialized(RepAccess::rep(cimClass)));
}

} // namespace Pegasus
