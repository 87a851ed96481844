// The instances of a MOF specification, and the aliases by which they name each other.
#pragma once

#include "mof/Mof.h"
#include "repository/NameSpaceList.h"
#include "repository/ValueBuilder.h"

#include <memory>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

namespace embedded::repository {

class InstanceLoader {
  public:
    /// `nameSpaces` holds all classes that the instances are of; no copy of it is made while this
    /// is in use.
    explicit InstanceLoader(NameSpaceList& nameSpaces) : _nameSpaces(nameSpaces) {}

    /// `declaration` must outlive this. Throws MofError for an instance of an unknown or abstract
    /// class, for a property that the class does not have and for an alias that is taken.
    void declare(const mof::InstanceDeclaration& declaration,
                 const Pegasus::CIMNamespaceName& nameSpace);
    /// Adds all that have been declared. Throws MofError for what is wrong with their values and
    /// for keys that are taken.
    void addAll();

  private:
    /// How to make instances that give properties of the same names, spelt alike, of one class.
    /// Instances of a kind tend to stand together, and to be alike.
    struct Kind {
        const mof::InstanceDeclaration* first = nullptr; ///< one of the kind
        Pegasus::CIMNamespaceName nameSpace;
        const NameSpace* home = nullptr;
        InstanceStore* store = nullptr;

        // One for each property that is given.

        std::vector<Pegasus::Uint32> places;
        std::vector<ValueTarget> targets;

        std::vector<std::size_t> keys; ///< of the given ones, in the class's order
        Ref<Shape> unqualified;        ///< null until there is one

        // What the last instance was written with, and what it became. Those that are written
        // alike share it.

        const mof::InstanceDeclaration* last = nullptr;
        std::vector<Pegasus::CIMValue> lastValues;
    };

    struct PendingInstance {
        const mof::InstanceDeclaration* declaration = nullptr;
        Kind* kind = nullptr;
        std::optional<Pegasus::CIMObjectPath> path; ///< once it is known
        bool beingNamed = false; ///< its path is being built, and must not be asked for
    };

    Kind& kindOf(const mof::InstanceDeclaration& declaration,
                 const Pegasus::CIMNamespaceName& nameSpace);
    Pegasus::CIMValue valueOf(const PendingInstance& instance, std::size_t given);
    /// The values of the keys that are given, among all that are.
    std::vector<Pegasus::CIMValue> keyValuesOf(PendingInstance& instance);
    void name(PendingInstance& instance, const std::vector<Pegasus::CIMValue>& values);
    Pegasus::CIMObjectPath readReference(const mof::Literal& literal,
                                         const std::string& description, const Kind& kind);
    Pegasus::CIMObjectPath followAlias(const mof::Literal& literal, const std::string& description,
                                       const Kind& kind);
    static Ref<Shape> shapeOf(const PendingInstance& instance);
    void add(PendingInstance& instance);

    NameSpaceList& _nameSpaces;
    std::unordered_map<std::string, std::vector<std::unique_ptr<Kind>>> _kinds; ///< by class name
    std::vector<PendingInstance> _pending;
    std::unordered_map<std::string, std::size_t> _aliases; ///< folded, to the place in _pending
};

} // namespace embedded::repository
