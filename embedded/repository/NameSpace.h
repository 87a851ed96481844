// One namespace: its qualifier declarations, its classes and their instances.
//
// A plain value, with no locking and no status codes of its own. Copies share what they have in
// common; that is how a load can be tried on a copy and thrown away, and how a view stays as it is.
#pragma once

#include "repository/ClassNode.h"
#include "repository/InstanceStore.h"
#include "repository/Qualifiers.h"

#include <vector>

namespace embedded::repository {

class NameSpace : public Counted<NameSpace> {
  public:
    explicit NameSpace(const Pegasus::CIMNamespaceName& name) : _name(name) {}

    const Pegasus::CIMNamespaceName& name() const { return _name; }
    QualifierTable& qualifiers() { return _qualifiers; }
    const QualifierTable& qualifiers() const { return _qualifiers; }

    /// Null if there is none. The class stays where it is for as long as there is a copy of this.
    const ClassNode* find(const Pegasus::CIMName& className) const;
    std::uint64_t classCount() const { return _classes.size(); }
    /// REQUIRES: no class of that name; its superclass is there, its number is classCount().
    void add(Ref<ClassNode> node);

    /// Null if `node` has none and never had.
    const InstanceStore* instancesOf(const ClassNode& node) const;
    InstanceStore& changeInstancesOf(const ClassNode& node);

    /// Whether `derived` is `base` or is derived from it. False if either is unknown.
    bool isA(const Pegasus::CIMName& derived, const Pegasus::CIMName& base) const;

    /// In the order of declaration, which puts parents before their children; null stands above
    /// the roots.
    std::vector<Pegasus::CIMName> subClassNames(const ClassNode* node, bool deep) const;
    /// The association classes with a reference of the class of `source` or of a superclass of it,
    /// in the order of declaration; unless `filter` is null, those only that are below it or it.
    std::vector<Pegasus::CIMName> associationClassNames(const ClassNode& source,
                                                        const ClassNode* filter) const;

  private:
    struct Instances {
        std::uint64_t classNumber;
        Ref<InstanceStore> store;

        std::uint64_t key() const { return classNumber; }
    };

    std::vector<Pegasus::CIMName> namesOf(std::vector<std::uint64_t> numbers) const;

    Pegasus::CIMNamespaceName _name;
    QualifierTable _qualifiers;
    NamedList<Ref<ClassNode>> _classes; ///< by number
    SharedTree<Link> _subclasses;       ///< 0 for the roots, else the superclass's number plus one
    SharedTree<Link> _associations;     ///< from the hash of the class that a reference is of
    SharedTree<Instances> _instances;
};

/// All namespaces, in the order in which they were created. Copies share the namespaces until one
/// of them is changed, so that a copy is a place to try something out in.
class NameSpaceList {
  public:
    /// Null if there is none. Valid until the list changes.
    const NameSpace* find(const Pegasus::CIMNamespaceName& name) const;
    /// For changing; created if there is none. Valid until a copy of the list is made.
    NameSpace& change(const Pegasus::CIMNamespaceName& name);
    std::vector<Pegasus::CIMNamespaceName> names() const;

  private:
    NamedList<Ref<NameSpace>> _all;
};

} // namespace embedded::repository
