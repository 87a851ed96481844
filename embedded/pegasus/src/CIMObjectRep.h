// What stands behind classes and instances.
#pragma once

#include "CIMMethodRep.h"
#include "CIMPropertyRep.h"

#include <Pegasus/Common/CIMClass.h>
#include <Pegasus/Common/CIMInstance.h>
#include <Pegasus/Common/CIMObject.h>

namespace Pegasus {

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
