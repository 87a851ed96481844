// The instances of one class, in the order in which they came, found by their paths and, those of
// an association, by what they refer to.
#pragma once

#include "repository/ClassForm.h"
#include "repository/PathMatch.h"

#include <Pegasus/Common/CIMName.h>

#include <cstdint>
#include <memory>
#include <vector>

namespace embedded::repository {

/// Copies share the instances; a change copies a number of them that is bounded.
class InstanceStore : public Counted {
  public:
    struct Numbered {
        std::uint64_t number;
        Ref<Stored> instance;

        std::uint64_t key() const { return number; }
    };

    InstanceStore(const Pegasus::CIMNamespaceName& home, const ClassNode& node)
        : _home(home), _form(std::make_shared<ClassForm>(node)) {}

    /// For the one who changes the store; copies share it.
    ClassForm& form() { return *_form; }

    /// In the order in which they came.
    const SharedTree<Numbered>& all() const { return _instances; }
    /// Null if there is none. Valid until the store changes.
    const Ref<Stored>* find(const Pegasus::CIMObjectPath& path) const;
    /// Those with a reference that names `source`, in their order. A reference without a namespace
    /// means the one in which the association lives; the host in a reference is this one whatever
    /// it calls itself.
    std::vector<Ref<Stored>> referrers(const Pegasus::CIMObjectPath& source) const;

    /// False, with nothing added, if there is one with the path of `instance`.
    bool add(const Ref<Stored>& instance);
    /// REQUIRES: there is one with exactly the path of `instance`.
    void replace(const Ref<Stored>& instance);
    /// False if there is none.
    bool remove(const Pegasus::CIMObjectPath& path);

  private:
    /// With `loosely` an exact match goes before a loose one. Null if there is none.
    const Numbered* locate(const PathKey& asked, bool loosely) const;
    bool isHere(const Pegasus::CIMObjectPath& reference) const;
    template <class Change>
    void changeTargets(const Stored& instance, Change change);

    Pegasus::CIMNamespaceName _home;
    std::shared_ptr<ClassForm> _form;
    SharedTree<Numbered> _instances;
    SharedTree<Link> _byPath;   ///< from the hash of the key
    SharedTree<Link> _byTarget; ///< from the hash of what a reference names
    std::uint64_t _next = 0;
};

} // namespace embedded::repository
