// One namespace: its qualifier declarations, its resolved classes and their instances.
//
// A plain value, with no locking and no status codes of its own. Copying one is cheap, since
// classes and instances are shared and never changed once they are in; that is how a load can be
// tried on a copy and thrown away.
#pragma once

#include "repository/InstanceStore.h"
#include "repository/Qualifiers.h"

#include <Pegasus/Common/CIMClass.h>
#include <Pegasus/Common/CIMName.h>

#include <map>
#include <string>
#include <vector>

namespace embedded::repository {

class NameSpace {
  public:
    explicit NameSpace(const Pegasus::CIMNamespaceName& name) : _name(name) {}

    const Pegasus::CIMNamespaceName& name() const { return _name; }
    QualifierTable& qualifiers() { return _qualifiers; }
    const QualifierTable& qualifiers() const { return _qualifiers; }

    struct ClassEntry {
        Pegasus::CIMClass resolved; ///< with all that it inherits
        InstanceStore instances;
    };

    /// Null if there is none.
    const ClassEntry* find(const Pegasus::CIMName& className) const;
    ClassEntry* find(const Pegasus::CIMName& className);
    /// REQUIRES: no class of that name; its superclass is there.
    void add(const Pegasus::CIMClass& resolved);

    /// Whether `derived` is `base` or is derived from it. False if `derived` is unknown.
    bool isA(const Pegasus::CIMName& derived, const Pegasus::CIMName& base) const;

    // The names come in the order of declaration, which puts parents before their children.
    // REQUIRES: the classes that are named are known; a null name stands above the roots.

    std::vector<Pegasus::CIMName> subClassNames(const Pegasus::CIMName& className, bool deep) const;
    std::vector<Pegasus::CIMName> superClassNames(const Pegasus::CIMName& className) const;
    std::vector<Pegasus::CIMName> associationClassNames(const Pegasus::CIMName& sourceClass,
                                                        const Pegasus::CIMName& filter) const;

  private:
    Pegasus::CIMNamespaceName _name;
    QualifierTable _qualifiers;
    std::map<std::string, ClassEntry> _classes; ///< by folded name
    std::vector<std::string> _order;            ///< folded names, as declared
};

} // namespace embedded::repository
