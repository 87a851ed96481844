// When do two object paths name the same instance of a class in one namespace?
//
// Host and namespace of the paths themselves do not count, nor do the order of the keys and the
// case of names; types of key bindings do (a "5" is not a 5). A reference key says where its
// instance is: no host stands for any host, no namespace for the one in which the path is kept.
#pragma once

#include <Pegasus/Common/CIMObjectPath.h>

#include <string>
#include <vector>

namespace embedded::repository {

class PathKey {
  public:
    /// `path` is kept, or looked for, in `home`. A reference key that cannot be parsed is
    /// compared by its text.
    PathKey(const Pegasus::CIMObjectPath& path, const Pegasus::CIMNamespaceName& home);

    /// All that counts except where the reference keys point to. Equal for paths that match.
    const std::string& text() const { return _text; }

    /// Whether the kept path of this key is the one that is `asked` for.
    bool matches(const PathKey& asked) const;
    /// As matches(), but a kept reference key without a namespace stands for any namespace:
    /// clients complete such keys with the namespace in which they believe the instance to be.
    bool matchesLoosely(const PathKey& asked) const;

  private:
    struct Place {
        Pegasus::String host;
        Pegasus::CIMNamespaceName nameSpace; ///< null: not said
    };

    void add(const Pegasus::CIMObjectPath& path);
    void addReference(const Pegasus::CIMKeyBinding& key);
    bool matches(const PathKey& asked, bool loosely) const;

    Pegasus::CIMNamespaceName _home;
    std::string _text;
    std::vector<Place> _places; ///< of the reference keys, as they come
};

/// `path` without host and namespace.
Pegasus::CIMObjectPath withoutPlace(const Pegasus::CIMObjectPath& path);
/// Whether both are equal without host and namespace.
bool equalWithoutPlace(const Pegasus::CIMObjectPath& x, const Pegasus::CIMObjectPath& y);

} // namespace embedded::repository
