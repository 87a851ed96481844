#pragma once

#include <Pegasus/Common/Array.h>
#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/Exception.h>
#include <Pegasus/Common/Linkage.h>
#include <Pegasus/Common/String.h>

namespace Pegasus {

/// What `Name`, a CIMName or a CIMNamespaceName, tells of itself. Names are compared without regard
/// to case; the case that they were given is kept.
template <class Name>
class PEGASUS_COMMON_LINKAGE CIMNameReads {
  public:
    /// The name as it was given; empty when null.
    const String& getString() const { return _name; }
    Boolean isNull() const { return _name.size() == 0; }
    void clear() { _name.clear(); }
    Boolean equal(const Name& name) const { return String::equalNoCase(_name, name._name); }
#ifdef PEGASUS_USE_EXPERIMENTAL_INTERFACES
    Boolean equal(const char* name) const { return String::equalNoCase(_name, name); }
#endif

    friend Boolean operator==(const Name& name1, const Name& name2) { return name1.equal(name2); }
    friend Boolean operator!=(const Name& name1, const Name& name2) { return !name1.equal(name2); }

  protected:
    CIMNameReads() = default;
    explicit CIMNameReads(const String& name) : _name(name) {}

    String _name;
};

/// The name of a class, property, method, parameter or qualifier, or null.
///
/// A name is a letter or '_', then letters, digits and '_', where the characters from U+0080 to
/// U+FFEF count as letters (DSP0004, "Identifiers"). Whoever gives something else, the empty
/// string included, gets an InvalidNameException.
class PEGASUS_COMMON_LINKAGE CIMName : public CIMNameReads<CIMName> {
  public:
    /// The null name.
    CIMName() = default;
    CIMName(const String& name);
    CIMName(const char* name) : CIMName(String(name)) {}
    CIMName& operator=(const String& name) { return *this = CIMName(name); }
#ifdef PEGASUS_USE_EXPERIMENTAL_INTERFACES
    CIMName& operator=(const char* name) { return *this = CIMName(name); }
#endif
    static Boolean legal(const String& name);
};

/// The name of a namespace, or null: CIM names separated by '/'. A leading '/' is accepted and
/// dropped. Whoever gives something else, the empty string included, gets an
/// InvalidNamespaceNameException.
class PEGASUS_COMMON_LINKAGE CIMNamespaceName : public CIMNameReads<CIMNamespaceName> {
  public:
    /// The null name.
    CIMNamespaceName() = default;
    CIMNamespaceName(const String& name);
    CIMNamespaceName(const char* name) : CIMNamespaceName(String(name)) {}
    CIMNamespaceName& operator=(const String& name) { return *this = CIMNamespaceName(name); }
#ifdef PEGASUS_USE_EXPERIMENTAL_INTERFACES
    CIMNamespaceName& operator=(const char* name) { return *this = CIMNamespaceName(name); }
#endif
    static Boolean legal(const String& name);
};

} // namespace Pegasus
