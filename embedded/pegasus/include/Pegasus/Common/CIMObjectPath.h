#pragma once

#include <Pegasus/Common/Array.h>
#include <Pegasus/Common/CIMName.h>
#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/Exception.h>
#include <Pegasus/Common/Linkage.h>
#include <Pegasus/Common/String.h>

namespace Pegasus {

class CIMObjectPath;
class CIMValue;
struct CIMKeyBindingRep;
struct CIMObjectPathRep;

/// One key of an instance: name, value and how the value is to be read. The value is always held
/// as text; that of a reference is the object path's text.
///
/// Thread-safety: as that of a String.
class PEGASUS_COMMON_LINKAGE CIMKeyBinding {
  public:
    enum Type { BOOLEAN, STRING, NUMERIC, REFERENCE };

    /// Null name, empty value, BOOLEAN.
    CIMKeyBinding();
    CIMKeyBinding(const CIMKeyBinding& x);
    CIMKeyBinding(const CIMName& name, const String& value, Type type);
    /// Integers and reals become NUMERIC, char16, string and datetime STRING. A null value
    /// becomes the empty text. Throws TypeMismatchException for an array and for an embedded
    /// object or instance.
    CIMKeyBinding(const CIMName& name, const CIMValue& value);
    ~CIMKeyBinding();
    CIMKeyBinding& operator=(const CIMKeyBinding& x);

    const CIMName& getName() const;
    void setName(const CIMName& name);
    const String& getValue() const;
    void setValue(const String& value);
    Type getType() const;
    void setType(Type type);

    /// Whether a key made from `value` would have this value.
    Boolean equal(CIMValue value);

  private:
    CIMKeyBindingRep* _rep; // null: as default-constructed
    friend struct CIMKeyBindingRep;
};

/// Same name without regard to case, same type, same value: numbers are compared as integers,
/// references as object paths, booleans without regard to case, strings exactly.
PEGASUS_COMMON_LINKAGE Boolean operator==(const CIMKeyBinding& x, const CIMKeyBinding& y);

/// Names a class or an instance: host, namespace, class name and key bindings, each of which may
/// be missing. Key bindings are kept sorted by name, without regard to case, in nested references
/// too.
///
/// The text form is
///
///     [//host/][namespace:]Class[.key=value,key=value]
///
/// where the values of strings and references stand in double quotes, with \ and " escaped by \.
///
/// Everything that gives it a host or key bindings throws MalformedObjectNameException when the
/// host is not a host name or address, or when the value of a reference key is not an object path.
///
/// Thread-safety: as that of a String, but see setKeyBindings.
class PEGASUS_COMMON_LINKAGE CIMObjectPath {
  public:
    CIMObjectPath();
    CIMObjectPath(const CIMObjectPath& x);
    /// Reads the text form. A quoted value that is itself the path of an instance becomes a
    /// REFERENCE, every other one a STRING. Throws MalformedObjectNameException.
    CIMObjectPath(const String& objectName);
    CIMObjectPath(const String& host, const CIMNamespaceName& nameSpace, const CIMName& className,
                  const Array<CIMKeyBinding>& keyBindings = Array<CIMKeyBinding>());
    ~CIMObjectPath();
    CIMObjectPath& operator=(const CIMObjectPath& x);
    CIMObjectPath& operator=(const String& objectName);

    void clear();
    void set(const String& host, const CIMNamespaceName& nameSpace, const CIMName& className,
             const Array<CIMKeyBinding>& keyBindings = Array<CIMKeyBinding>());
    void set(const String& objectName);

    const String& getHost() const;
    void setHost(const String& host);
    const CIMNamespaceName& getNameSpace() const;
    void setNameSpace(const CIMNamespaceName& nameSpace);
    const CIMName& getClassName() const;
    void setClassName(const CIMName& className);
    const Array<CIMKeyBinding>& getKeyBindings() const;
    /// Shares the caller's elements and sorts them where they are: the caller's array, and every
    /// copy that shares with it, is seen sorted afterwards. Not to be called on arrays that share
    /// elements from several threads at once. So too the constructor and set().
    void setKeyBindings(const Array<CIMKeyBinding>& keyBindings);

    String toString() const;
    /// Same host, namespace, class name (without regard to case) and key bindings. A missing host
    /// or namespace is equal only to a missing one.
    Boolean identical(const CIMObjectPath& x) const;
    /// Equal for paths that are identical.
    Uint32 makeHashCode() const;

  private:
    CIMObjectPathRep* _rep; // null: the empty path
    friend struct CIMObjectPathRep;
};

inline Boolean operator==(const CIMObjectPath& x, const CIMObjectPath& y) { return x.identical(y); }
inline Boolean operator!=(const CIMObjectPath& x, const CIMObjectPath& y) {
    return !x.identical(y);
}

} // namespace Pegasus
