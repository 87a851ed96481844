// What is needed of a class to make its instances.
#pragma once

#include "repository/ClassNode.h"
#include "repository/Stored.h"

#include <functional>
#include <string>
#include <unordered_map>
#include <vector>

namespace embedded::repository {

/// Thrown where a key has neither a value nor a default.
struct MissingKey {
    Pegasus::CIMName property;
};

/// Thread-safety: one thread at a time.
class ClassForm {
  public:
    explicit ClassForm(const ClassNode& node);

    const Pegasus::CIMName& className() const { return _head.getClassName(); }
    /// Name and qualifiers only.
    const Pegasus::CIMClass& head() const { return _head; }
    /// In the class's order.
    const std::vector<Pegasus::CIMConstProperty>& properties() const { return _properties; }
    /// The places of the keys among the properties.
    const std::vector<Pegasus::Uint32>& keys() const { return _keys; }
    bool isKey(Pegasus::Uint32 property) const;
    /// The place of a property, or `noIndex`.
    Pegasus::Uint32 find(const Pegasus::CIMName& property) const;

    /// The shape of an instance that gives the properties at the places `given`. As in OpenPegasus,
    /// properties with the class's defaults stand before those given, in the class's order.
    /// `qualify` changes the qualifiers of a new shape's example, which has those that the class
    /// hands down; `written` identifies that change. Both may be empty.
    Ref<Shape> shape(const std::vector<Pegasus::Uint32>& given, const std::string& written = {},
                     const std::function<void(Pegasus::CIMInstance&)>& qualify = {});
    /// `shape` with members that differ only in whether they are given.
    Ref<Shape> reshaped(const Ref<Shape>& shape, const std::vector<Shape::Member>& members);

    /// Returns the value given for a property; null for the class's default.
    using ValueSource = std::function<const Pegasus::CIMValue*(Pegasus::Uint32 property)>;

    /// Class and keys, without host and namespace. Asks `source` for the keys only. Throws
    /// MissingKey.
    Pegasus::CIMObjectPath path(const ValueSource& source) const;

    /// The instance to be kept. `values` have the types of the properties that `shape` gives.
    Ref<Stored> stored(const Ref<Shape>& shape, const Pegasus::CIMObjectPath& path,
                       const std::vector<Pegasus::CIMValue>& values);
    /// To be called if the last instance that stored() made is not kept.
    void forgetLast() { _last = {}; }

  private:
    Ref<Shape> keep(std::vector<Shape::Member> members, const std::string& written,
                    const std::function<Pegasus::CIMInstance()>& makeExample);

    Pegasus::CIMClass _head;
    std::vector<Pegasus::CIMConstProperty> _properties;
    std::vector<Pegasus::Uint32> _keys;
    std::unordered_map<std::string, Pegasus::Uint32> _places; ///< by folded name
    std::unordered_map<std::string, Ref<Shape>> _shapes;
    Ref<Stored> _last; ///< what stored() has made last
};

} // namespace embedded::repository
