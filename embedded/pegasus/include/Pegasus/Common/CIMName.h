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
    CIMName();
    CIMName(const String& name);
    CIMName(const char* name);
    CIMName(const CIMName& name) = default;
    CIMName& operator=(const CIMName& name);
    CIMName& operator=(const String& name);

    /// The name as it was given; empty when null.
    const String& getString() const;
    Boolean isNull() const;
    void clear();
    Boolean equal(const CIMName& name) const;
    static Boolean legal(const String& name);

#ifdef PEGASUS_USE_EXPERIMENTAL_INTERFACES
    Boolean equal(const char* name) const;
    CIMName& operator=(const char* name);
#endif

  private:
    String _name;
};

PEGASUS_COMMON_LINKAGE Boolean operator==(const CIMName& name1, const CIMName& name2);
PEGASUS_COMMON_LINKAGE Boolean operator!=(const CIMName& name1, const CIMName& name2);

/// The name of a namespace, or null: CIM names separated by '/'. Compared without regard to case.
/// A leading '/' is accepted and dropped. Whoever gives something else, the empty string included,
/// gets an InvalidNamespaceNameException.
class PEGASUS_COMMON_LINKAGE CIMNamespaceName {
  public:
    /// The null name.
    CIMNamespaceName();
    CIMNamespaceName(const String& name);
    CIMNamespaceName(const char* name);
    CIMNamespaceName(const CIMNamespaceName& name) = default;
    CIMNamespaceName& operator=(const CIMNamespaceName& name);
    CIMNamespaceName& operator=(const String& name);

    const String& getString() const;
    Boolean isNull() const;
    void clear();
    Boolean equal(const CIMNamespaceName& name) const;
    static Boolean legal(const String& name);

#ifdef PEGASUS_USE_EXPERIMENTAL_INTERFACES
    Boolean equal(const char* name) const;
    CIMNamespaceName& operator=(const char* name);
#endif

  private:
    String _name;
};

PEGASUS_COMMON_LINKAGE Boolean operator==(const CIMNamespaceName& name1,
                                          const CIMNamespaceName& name2);
PEGASUS_COMMON_LINKAGE Boolean operator!=(const CIMNamespaceName& name1,
                                          const CIMNamespaceName& name2);

} // namespace Pegasus
