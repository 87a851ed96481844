// What a class and an instance have in common.
#pragma once

#include <Pegasus/Common/Array.h>
#include <Pegasus/Common/CIMName.h>
#include <Pegasus/Common/CIMObjectPath.h>
#include <Pegasus/Common/CIMProperty.h>
#include <Pegasus/Common/CIMPropertyList.h>
#include <Pegasus/Common/CIMQualified.h>
#include <Pegasus/Common/CIMReads.h>
#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/Linkage.h>
#include <Pegasus/Common/String.h>

namespace Pegasus {

class CIMClass;
class CIMConstObject;
class CIMInstance;
class CIMObject;
struct CIMObjectRep;

/// The reads that classes and instances share, however they are handed out.
class PEGASUS_COMMON_LINKAGE CIMElementReads : public CIMReads<CIMObjectRep>,
                                               public CIMQualifiedReads<CIMElementReads> {
  public:
    /// The class name of the path.
    const CIMName& getClassName() const;
    const CIMObjectPath& getPath() const;

    /// The index of the property `name` (ignoring case), or PEG_NOT_FOUND.
    Uint32 findProperty(const CIMName& name) const;
    /// Throws IndexOutOfBoundsException unless `index` < getPropertyCount().
    CIMConstProperty getProperty(Uint32 index) const;
    Uint32 getPropertyCount() const;

  protected:
    using CIMReads::CIMReads;
};

/// Base of `Handle`, which adds to `Reads` that a class or an instance can be changed.
template <class Handle, class Reads>
class PEGASUS_COMMON_LINKAGE CIMElement : public CIMQualified<Handle, Reads> {
  public:
    using CIMQualified<Handle, Reads>::CIMQualified;

    /// The class name of `path` becomes the object's, so that its spelling may change. Key bindings
    /// and key properties are not compared. Throws UninitializedObjectException if `path` has no
    /// class name, and TypeMismatchException if it has another one (ignoring case).
    void setPath(const CIMObjectPath& path);

    /// The property is shared with the caller, not copied. Throws AlreadyExistsException if there
    /// is a property of that name (ignoring case), UninitializedObjectException if `x` is
    /// uninitialized, and TypeMismatchException if this is a class and `x` is a reference without a
    /// reference class.
    Handle& addProperty(const CIMProperty& x);
    using Reads::getProperty;
    CIMProperty getProperty(Uint32 index);
    /// Throws IndexOutOfBoundsException unless `index` < getPropertyCount().
    void removeProperty(Uint32 index);
};

/// The reads that CIMObject and CIMConstObject share. identical() compares as for two instances or
/// two classes; a class and an instance never are.
class PEGASUS_COMMON_LINKAGE CIMObjectReads
    : public CIMElementReads,
      public CIMCompared<CIMObjectReads, CIMObject, CIMConstObject> {
  public:
    Boolean isClass() const;
    Boolean isInstance() const;
    /// The object as CIM-XML, for people.
    String toString() const;

  protected:
    using CIMElementReads::CIMElementReads;
    CIMObjectReads() = default;
    explicit CIMObjectReads(const CIMElementReads& x) : CIMElementReads(x) {}
};

/// A class or an instance; a handle, see CIMReads. It shares its representation also with the
/// CIMClass or CIMInstance that it was made from.
class PEGASUS_COMMON_LINKAGE CIMObject : public CIMElement<CIMObject, CIMObjectReads> {
  public:
    CIMObject() = default;
    CIMObject(const CIMClass& x);
    CIMObject(const CIMInstance& x);

    /// As CIMInstance::instanceFilter; a class is filtered in the same way.
    void instanceFilter(Boolean includeQualifiers, Boolean includeClassOrigin,
                        const CIMPropertyList& propertyList);
};

/// A CIMObject that cannot be changed through this object.
class PEGASUS_COMMON_LINKAGE CIMConstObject : public CIMObjectReads {
  public:
    CIMConstObject() = default;
    CIMConstObject(const CIMElementReads& x) : CIMObjectReads(x) {}
};

} // namespace Pegasus
