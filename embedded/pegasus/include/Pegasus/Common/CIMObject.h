// What a class and an instance have in common.
#pragma once

#include <Pegasus/Common/Array.h>
#include <Pegasus/Common/CIMName.h>
#include <Pegasus/Common/CIMObjectPath.h>
#include <Pegasus/Common/CIMProperty.h>
#include <Pegasus/Common/CIMPropertyList.h>
#include <Pegasus/Common/CIMQualifier.h>
#include <Pegasus/Common/CIMReads.h>
#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/Linkage.h>
#include <Pegasus/Common/String.h>

#include <memory>
#include <utility>

namespace Pegasus {

class CIMClass;
class CIMConstClass;
class CIMConstInstance;
class CIMConstObject;
class CIMInstance;
class CIMObject;
struct CIMObjectRep;

/// The reads that classes and instances share, however they are handed out.
class PEGASUS_COMMON_LINKAGE CIMElementReads : public CIMReads<CIMObjectRep> {
  public:
    /// The class name of the path.
    const CIMName& getClassName() const;
    const CIMObjectPath& getPath() const;

    /// The index of the qualifier `name` (ignoring case), or PEG_NOT_FOUND.
    Uint32 findQualifier(const CIMName& name) const;
    /// Throws IndexOutOfBoundsException unless `index` < getQualifierCount().
    CIMConstQualifier getQualifier(Uint32 index) const;
    Uint32 getQualifierCount() const;

    /// The index of the property `name` (ignoring case), or PEG_NOT_FOUND.
    Uint32 findProperty(const CIMName& name) const;
    /// Throws IndexOutOfBoundsException unless `index` < getPropertyCount().
    CIMConstProperty getProperty(Uint32 index) const;
    Uint32 getPropertyCount() const;

  protected:
    using CIMReads::CIMReads;
    ~CIMElementReads() = default;
};

/// The reads that CIMObject and CIMConstObject share.
class PEGASUS_COMMON_LINKAGE CIMObjectReads : public CIMElementReads {
  public:
    /// A deep copy of the same kind.
    CIMObject clone() const;
    /// As CIMInstance::identical and CIMClass::identical; a class and an instance never are.
    Boolean identical(const CIMConstObject& x) const;
    Boolean isClass() const;
    Boolean isInstance() const;
    /// The object as CIM-XML, for people.
    String toString() const;

  protected:
    using CIMElementReads::CIMElementReads;
    CIMObjectReads() = default;
    explicit CIMObjectReads(const CIMElementReads& x) : CIMElementReads(x) {}
    ~CIMObjectReads() = default;
};

/// A class or an instance.
///
/// Copies share one representation, also with the CIMClass or CIMInstance it was made from: what is
/// changed through one is seen through all; clone() makes an independent one. A default-constructed
/// object is uninitialized: all operations but isUninitialized() and assignment throw
/// UninitializedObjectException.
///
/// Thread-safety: the reference count is atomic; the representation is not synchronized.
class PEGASUS_COMMON_LINKAGE CIMObject : public CIMObjectReads {
  public:
    CIMObject() = default;
    CIMObject(const CIMObject& x) = default;
    CIMObject(const CIMClass& x);
    CIMObject(const CIMInstance& x);
    CIMObject& operator=(const CIMObject& x) = default;
    ~CIMObject() = default;

    /// As CIMInstance::setPath and CIMClass::setPath.
    void setPath(const CIMObjectPath& path);

    /// Throws AlreadyExistsException if there is a qualifier of that name (ignoring case), and
    /// UninitializedObjectException if `qualifier` is uninitialized.
    CIMObject& addQualifier(const CIMQualifier& qualifier);
    using CIMElementReads::getQualifier;
    CIMQualifier getQualifier(Uint32 index);
    /// Throws IndexOutOfBoundsException unless `index` < getQualifierCount().
    void removeQualifier(Uint32 index);

    /// As CIMInstance::addProperty and CIMClass::addProperty.
    CIMObject& addProperty(const CIMProperty& x);
    using CIMElementReads::getProperty;
    CIMProperty getProperty(Uint32 index);
    /// Throws IndexOutOfBoundsException unless `index` < getPropertyCount().
    void removeProperty(Uint32 index);

    /// As CIMInstance::instanceFilter; a class is filtered in the same way.
    void instanceFilter(Boolean includeQualifiers, Boolean includeClassOrigin,
                        const CIMPropertyList& propertyList);

  private:
    friend class RepAccess;
    explicit CIMObject(std::shared_ptr<CIMObjectRep> rep) : CIMObjectReads(std::move(rep)) {}
};

/// A CIMObject that cannot be changed through this object.
class PEGASUS_COMMON_LINKAGE CIMConstObject : public CIMObjectReads {
  public:
    CIMConstObject() = default;
    CIMConstObject(const CIMConstObject& x) = default;
    CIMConstObject(const CIMObject& x) : CIMObjectReads(x) {}
    CIMConstObject(const CIMClass& x);
    CIMConstObject(const CIMInstance& x);
    CIMConstObject(const CIMConstClass& x);
    CIMConstObject(const CIMConstInstance& x);
    CIMConstObject& operator=(const CIMConstObject& x) = default;
    ~CIMConstObject() = default;
};

} // namespace Pegasus
