// The instances of one class in the order of their creation. They are found by their paths, and
// those of an association also by the objects that they refer to.
#pragma once

#include "repository/ClassForm.h"
#include "repository/PathMatch.h"

#include <Pegasus/Common/CIMName.h>

#include <cstdint>
#include <functional>
#include <memory>
#include <tuple>
#include <vector>

namespace embedded::repository {

/// Decides which associations of an object are wanted, once for each group of them. The
/// associations of a group have references of the same roles to objects of the same classes and
/// namespaces, and name the object in the same role. `references` are those of one association of
/// the group; the one at `near` names the object. An empty function wants all.
using GroupFilter = std::function<bool(const References& references, std::size_t near)>;

/// Copies share the instances; a change copies a bounded number of them.
class InstanceStore : public Counted<InstanceStore> {
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
    /// The instances with a reference to `source`, in their order. A reference without a namespace
    /// means the association's; the host in a reference is ignored. Instances that are not wanted
    /// cost time only for each group.
    std::vector<Ref<Stored>> referrers(const Pegasus::CIMObjectPath& source,
                                       const GroupFilter& isWanted) const;

    /// False, with nothing added, if there is one with the path of `instance`.
    bool add(const Ref<Stored>& instance);
    /// REQUIRES: there is one with exactly the path of `instance`.
    void replace(const Ref<Stored>& instance);
    /// False if there is none.
    bool remove(const Pegasus::CIMObjectPath& path);

  private:
    /// A reference to an object in this namespace. Those of one group stand together, in the order
    /// of their instances. That two groups share a hash of 64 bits with a key of the process is not
    /// to be expected.
    struct Referrer {
        Pegasus::Uint32 target; ///< the hash of what it names
        Pegasus::Uint32 near;   ///< its place among the references of its instance
        std::uint64_t ends;     ///< the hash of their roles, namespaces and classes
        std::uint64_t number;   ///< of the instance

        std::tuple<Pegasus::Uint32, Pegasus::Uint32, std::uint64_t, std::uint64_t> key() const {
            return {target, near, ends, number};
        }
        bool isLike(const Referrer& x) const {
            return target == x.target && near == x.near && ends == x.ends;
        }
    };

    /// With `loosely` an exact match goes before a loose one. Null if there is none.
    const Numbered* locate(const PathKey& asked, bool loosely) const;
    bool isHere(const Pegasus::CIMObjectPath& reference) const;
    std::vector<Referrer> referrersOf(const Numbered& association) const;
    void put(const Numbered& instance);
    void forgetReferrers(const Numbered& association);

    Pegasus::CIMNamespaceName _home;
    std::shared_ptr<ClassForm> _form;
    SharedTree<Numbered> _instances;
    SharedTree<Link> _byPath; ///< from the hash of the key
    SharedTree<Referrer> _referrers;
    std::uint64_t _next = 0;
};

} // namespace embedded::repository
