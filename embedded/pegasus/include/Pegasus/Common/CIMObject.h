// What a class and an instance have in common.
#pragma once

#include <Pegasus/Common/Array.h>
#include <Pegasus/Common/CIMName.h>
#include <Pegasus/Common/CIMObjectPath.h>
#include <Pegasus/Common/CIMProperty.h>
#include <Pegasus/Common/CIMPropertyList.h>
#include <Pegasus/Common/CIMQualifier.h>
#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/Linkage.h>
#include <Pegasus/Common/String.h>

#include <memory>

namespace Pegasus {

class CIMClass;
class CIMConstClass;
class CIMConstInstance;
class CIMConstObject;
class CIMInstance;
struct CIMObjectRep;

/// A class or an instance.
///
/// Copies share one representation, also with the CIMClass or CIMInstance it was made from: what is
/// changed through one is seen through all; clone() makes an independent one. A default-constructed
/// object is uninitialized: all operations but isUninitialized() and assignment throw
/// UninitializedObjectException.
///
/// Thread-safety: the reference count is atomic; the representation is not synchronized.
class PEGASUS_COMMON_LINKAGE CIMObject {
  public:
    CIMObject() = default;
    CIMObject(const CIMObject& x) = default;
    CIMObject(const CIMClass& x);
    CIMObject(const CIMInstance& x);
    CIMObject& operator=(const CIMObject& x) = default;
    ~CIMObject() = default;

    const CIMName& getClassName() const;
    const CIMObjectPath& getPath() const;
    /// As CIMInstance::setPath and CIMClass::setPath.
    void setPath(const CIMObjectPath& path);

    /// Throws AlreadyExistsException if there is a qualifier of that name (ignoring case), and
    /// UninitializedObjectException if `qualifier` is uninitialized.
    CIMObject& addQualifier(const CIMQualifier& qualifier);
    /// The index of the qualifier `name` (ignoring case), or PEG_NOT_FOUND.
    Uint32 findQualifier(const CIMName& name) const;
    /// Throws IndexOutOfBoundsException unless `index` < getQualifierCount().
    CIMQualifier getQualifier(Uint32 index);
    CIMConstQualifier getQualifier(Uint32 index) const;
    /// Throws IndexOutOfBoundsException unless `index` < getQualifierCount().
    void removeQualifier(Uint32 index);
    Uint32 getQualifierCount() const;

    /// As CIMInstance::addProperty and CIMClass::addProperty.
    CIMObject& addProperty(const CIMProperty& x);
    /// The index of the property `name` (ignoring case), or PEG_NOT_FOUND.
    Uint32 findProperty(const CIMName& name) const;
    /// Throws IndexOutOfBoundsException unless `index` < getPropertyCount().
    CIMProperty getProperty(Uint32 index);
    CIMConstProperty getProperty(Uint32 index) const;
    /// Throws IndexOutOfBoundsException unless `index` < getPropertyCount().
    void removeProperty(Uint32 index);
    Uint32 getPropertyCount() const;

    /// A deep copy of the same kind.
    CIMObject clone() const;
    /// As CIMInstance::identical and CIMClass::identical; a class and an instance never are.
    Boolean identical(const CIMConstObject& x) const;
    Boolean isUninitialized() const;
    Boolean isClass() const;
    Boolean isInstance() const;
    /// The object as CIM-XML, for people.
    String toString() const;

    /// As CIMInstance::instanceFilter; a class is filtered in the same way.
    void instanceFilter(Boolean includeQualifiers, Boolean includeClassOrigin,
                        const CIMPropertyList& propertyList);

  private:
    friend class RepAccess;
    explicit CIMObject(std::shared_ptr<CIMObjectRep> rep);
    std::shared_ptr<CIMObjectRep> _rep;
};

/// A CIMObject that cannot be changed through this object.
class PEGASUS_COMMON_LINKAGE CIMConstObject {
  public:
    CIMConstObject() = default;
    CIMConstObject(const CIMConstObject& x) = default;
    CIMConstObject(const CIMObject& x);
    CIMConstObject(const CIMClass& x);
    CIMConstObject(const CIMInstance& x);
    CIMConstObject(const CIMConstClass& x);
    CIMConstObject(const CIMConstInstance& x);
    CIMConstObject& operator=(const CIMConstObject& x) = default;
    ~CIMConstObject() = default;

    const CIMName& getClassName() const;
    const CIMObjectPath& getPath() const;
    Uint32 findQualifier(const CIMName& name) const;
    CIMConstQualifier getQualifier(Uint32 index) const;
    Uint32 getQualifierCount() const;
    Uint32 findProperty(const CIMName& name) const;
    CIMConstProperty getProperty(Uint32 index) const;
    Uint32 getPropertyCount() const;
    /// A deep copy, which can be changed.
    CIMObject clone() const;
    Boolean identical(const CIMConstObject& x) const;
    Boolean isUninitialized() const;
    Boolean isClass() const;
    Boolean isInstance() const;
    String toString() const;

  private:
    friend class RepAccess;
    std::shared_ptr<const CIMObjectRep> _rep;
};

} // namespace Pegasus
