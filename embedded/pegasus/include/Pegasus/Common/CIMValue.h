#pragma once

#include <Pegasus/Common/Array.h>
#include <Pegasus/Common/CIMDateTime.h>
#include <Pegasus/Common/CIMObjectPath.h>
#include <Pegasus/Common/CIMType.h>
#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/Exception.h>
#include <Pegasus/Common/Linkage.h>
#include <Pegasus/Common/String.h>

#include <type_traits>

namespace Pegasus {

class CIMInstance;
class CIMObject;
struct CIMValueRep;

/// A value of one CIM type, or an array of such values, or a null of a type.
///
/// The C++ type of the argument decides the CIM type, so give it exactly: a string literal is a
/// pointer and becomes a boolean; write CIMValue(String("x")), CIMValue(Uint16(1)).
///
/// Thread-safety: as that of a String.
class PEGASUS_COMMON_LINKAGE CIMValue {
  public:
    /// A null boolean.
    CIMValue();
    /// A null of the type. `arraySize` is the fixed size of an array, 0 when it is not fixed.
    CIMValue(CIMType type, Boolean isArray, Uint32 arraySize = 0);
    CIMValue(const CIMValue& x);
    ~CIMValue();
    CIMValue& operator=(const CIMValue& x);

    /// An object or instance is copied, so that a later change of `x` does not reach this value.
    /// Throws UninitializedObjectException for one that is not initialised.
    CIMValue(Boolean x);
    CIMValue(Uint8 x);
    CIMValue(Sint8 x);
    CIMValue(Uint16 x);
    CIMValue(Sint16 x);
    CIMValue(Uint32 x);
    CIMValue(Sint32 x);
    CIMValue(Uint64 x);
    CIMValue(Sint64 x);
    CIMValue(Real32 x);
    CIMValue(Real64 x);
    CIMValue(const Char16& x);
    CIMValue(const String& x);
    CIMValue(const CIMDateTime& x);
    CIMValue(const CIMObjectPath& x);
    CIMValue(const CIMObject& x);
    CIMValue(const CIMInstance& x);
    CIMValue(const Array<Boolean>& x);
    CIMValue(const Array<Uint8>& x);
    CIMValue(const Array<Sint8>& x);
    CIMValue(const Array<Uint16>& x);
    CIMValue(const Array<Sint16>& x);
    CIMValue(const Array<Uint32>& x);
    CIMValue(const Array<Sint32>& x);
    CIMValue(const Array<Uint64>& x);
    CIMValue(const Array<Sint64>& x);
    CIMValue(const Array<Real32>& x);
    CIMValue(const Array<Real64>& x);
    CIMValue(const Array<Char16>& x);
    CIMValue(const Array<String>& x);
    CIMValue(const Array<CIMDateTime>& x);
    CIMValue(const Array<CIMObjectPath>& x);
    CIMValue(const Array<CIMObject>& x);
    CIMValue(const Array<CIMInstance>& x);

    void assign(const CIMValue& x);
    /// Makes it a null boolean.
    void clear();
    void setNullValue(CIMType type, Boolean isArray, Uint32 arraySize = 0);

    /// Same type, and both arrays or neither.
    Boolean typeCompatible(const CIMValue& x) const;
    Boolean isArray() const;
    Boolean isNull() const;
    /// Number of elements; 0 when it is not an array.
    Uint32 getArraySize() const;
    CIMType getType() const;

    /// As the constructors: the value takes the type of the argument.
    template <class T>
    void set(const T& x) {
        static_assert(!std::is_same_v<T, CIMValue>, "assign() takes another CIMValue");
        assign(CIMValue(x));
    }

    /// Leaves `x` as it is when the value is null. Throws TypeMismatchException unless `x` is of
    /// exactly this type.
    void get(Boolean& x) const;
    void get(Uint8& x) const;
    void get(Sint8& x) const;
    void get(Uint16& x) const;
    void get(Sint16& x) const;
    void get(Uint32& x) const;
    void get(Sint32& x) const;
    void get(Uint64& x) const;
    void get(Sint64& x) const;
    void get(Real32& x) const;
    void get(Real64& x) const;
    void get(Char16& x) const;
    void get(String& x) const;
    void get(CIMDateTime& x) const;
    void get(CIMObjectPath& x) const;
    void get(CIMObject& x) const;
    void get(CIMInstance& x) const;
    void get(Array<Boolean>& x) const;
    void get(Array<Uint8>& x) const;
    void get(Array<Sint8>& x) const;
    void get(Array<Uint16>& x) const;
    void get(Array<Sint16>& x) const;
    void get(Array<Uint32>& x) const;
    void get(Array<Sint32>& x) const;
    void get(Array<Uint64>& x) const;
    void get(Array<Sint64>& x) const;
    void get(Array<Real32>& x) const;
    void get(Array<Real64>& x) const;
    void get(Array<Char16>& x) const;
    void get(Array<String>& x) const;
    void get(Array<CIMDateTime>& x) const;
    void get(Array<CIMObjectPath>& x) const;
    void get(Array<CIMObject>& x) const;
    void get(Array<CIMInstance>& x) const;

    /// Same type, both null or neither, same value. Strings are compared exactly.
    Boolean equal(const CIMValue& x) const;
    /// For people: an empty text for null, "TRUE" and "FALSE", and a space behind each element of
    /// an array.
    String toString() const;

  private:
    CIMValueRep* _rep;
    friend struct CIMValueRep;
};

inline Boolean operator==(const CIMValue& x, const CIMValue& y) { return x.equal(y); }
inline Boolean operator!=(const CIMValue& x, const CIMValue& y) { return !x.equal(y); }

} // namespace Pegasus
