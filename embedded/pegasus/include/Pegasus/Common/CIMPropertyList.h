#pragma once

#include <Pegasus/Common/Array.h>
#include <Pegasus/Common/CIMName.h>
#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/Linkage.h>

namespace Pegasus {

struct CIMPropertyListRep;

/// Which properties a client asks for. Null means all of them, an empty list means none.
///
/// Thread-safety: as that of a String.
class PEGASUS_COMMON_LINKAGE CIMPropertyList {
  public:
    /// The null list.
    CIMPropertyList();
    CIMPropertyList(const CIMPropertyList& x);
    /// Throws UninitializedObjectException when one of the names is null.
    CIMPropertyList(const Array<CIMName>& propertyNames);
    ~CIMPropertyList();
    void set(const Array<CIMName>& propertyNames);
    CIMPropertyList& operator=(const CIMPropertyList& x);
    /// Makes it the null list.
    void clear();

    Boolean isNull() const;
    Uint32 size() const;
    /// Throws IndexOutOfBoundsException.
    const CIMName& operator[](Uint32 index) const;
    Array<CIMName> getPropertyNameArray() const;
    /// Whether the name is in the list; false for the null list.
    Boolean contains(const CIMName& name) const;
    /// Whether a client that gave this list wants the property: every one for the null list.
    Boolean useThisProperty(const CIMName& name) const;
    String toString() const;

    /// Makes it the list of these names, each once. Throws InvalidNameException.
    void append(Array<String>& propertyListArray);
    /// A number for a name, kept in step with the list by whoever uses it.
    Uint32 getCIMNameTag(Uint32 index) const;
    void appendCIMNameTag(Uint32 nameTag);

  private:
    friend struct CIMPropertyListRep;
    CIMPropertyListRep* _rep;
};

} // namespace Pegasus
