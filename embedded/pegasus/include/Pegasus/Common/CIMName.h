#pragma once

#include <Pegasus/Common/Array.h>
#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/Exception.h>
#include <Pegasus/Common/Linkage.h>
#include <Pegasus/Common/String.h>

namespace Pegasus {

/// The name of a class, property, method, parameter or qualifier, or null. Compared without
/// regard to case; the case it was given is kept.
///
/// A name is a letter or '_', then letters, digits and '_', where the characters from U+0080 to
/// U+FFEF count as letters (DSP0004, "Identifiers"). Whoever gives something else, the empty
/// string included, gets an InvalidNameException.
class PEGASUS_COMMON_LINKAGE CIMName {
  public:
    /// The null name.
    CIMName() = default;
    CIMName(const String& name);
    CIMName(const char* name) : CIMName(String(name)) {}
    CIMName& operator=(const String& name) { return *this = CIMName(name); }

    /// The name as it was given; empty when null.
    const String& getString() const { return _name; }
    Boolean isNull() const { return _name.size() == 0; }
    void clear() { _name.clear(); }
    Boolean equal(const CIMName& name) const { return String::equalNoCase(_name, name._name); }
    static Boolean legal(const String& name);

#ifdef PEGASUS_USE_EXPERIMENTAL_INTERFACES
    Boolean equal(const char* name) const;
    CIMName& operator=(const char* name) { return *this = CIMName(name); }
#endif

  private:
    String _name;
};

inline Boolean operator==(const CIMName& name1, const CIMName& name2) { return name1.equal(name2); }
inline Boolean operator!=(const CIMName& name1, const CIMName& name2) {
    return !name1.equal(name2);
}

/// The name of a namespace, or null: CIM names separated by '/'. Compared without regard to case.
/// A leading '/' is accepted and dropped. Whoever gives something else, the empty string included,
/// gets an InvalidNamespaceNameException.
class PEGASUS_COMMON_LINKAGE CIMNamespaceName {
  public:
    /// The null name.
    CIMNamespaceName() = default;
    CIMNamespaceName(const String& name);
    CIMNamespaceName(const char* name) : CIMNamespaceName(String(name)) {}
    CIMNamespaceName& operator=(const String& name) { return *this = CIMNamespaceName(name); }

    const String& getString() const { return _name; }
    Boolean isNull() const { return _name.size() == 0; }
    void clear() { _name.clear(); }
    Boolean equal(const CIMNamespaceName& name) const {
        return String::equalNoCase(_name, name._name);
    }
    static Boolean legal(const String& name);

#ifdef PEGASUS_USE_EXPERIMENTAL_INTERFACES
    Boolean equal(const char* name) const;
    CIMNamespaceName& operator=(const char* name) { return *this = CIMNamespaceName(name); }
#endif

  private:
    String _name;
};

inline Boolean operator==(const CIMNamespaceName& name1, const CIMNamespaceName& name2) {
    return name1.equal(name2);
}
inline Boolean operator!=(const CIMNamespaceName& name1, const CIMNamespaceName& name2) {
    return !name1.equal(name2);
}

} // namespace Pegasus
