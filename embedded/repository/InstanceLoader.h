// The instances of a MOF specification, and the aliases by which they name each other.
#pragma once

#include "mof/Mof.h"
#include "repository/InstanceBuilder.h"
#include "repository/NameSpaceList.h"

#include <map>
#include <optional>
#include <string>
#include <vector>

namespace embedded::repository {

class InstanceLoader {
  public:
    /// `nameSpaces` holds all classes that the instances are of.
    explicit InstanceLoader(NameSpaceList& nameSpaces) : _nameSpaces(nameSpaces) {}

    /// `declaration` must outlive this. Throws MofError for an instance of an unknown or abstract
    /// class, for a property that the class does not have and for an alias that is taken.
    void announce(const mof::InstanceDeclaration& declaration,
                  const Pegasus::CIMNamespaceName& nameSpace);
    /// Adds all that have been announced. Throws MofError for what is wrong with their values and
    /// for keys that are taken.
    void addAll();

  private:
    struct Announced {
        const mof::InstanceDeclaration* declaration = nullptr;
        Pegasus::CIMNamespaceName nameSpace;
        Pegasus::CIMConstClass cimClass;
        std::map<std::string, const mof::PropertyInitializer*> initializers; ///< by folded name
        std::optional<Pegasus::CIMObjectPath> path;                          ///< once it is known
        bool beingNamed = false; ///< its path is being built, and must not be asked for
    };

    ValueSource valuesOf(const Announced& instance);
    const Pegasus::CIMObjectPath& pathOf(Announced& instance);
    Pegasus::CIMObjectPath readReference(const mof::Literal& literal, const std::string& words,
                                         const Announced& instance);
    Pegasus::CIMObjectPath followAlias(const mof::Literal& literal, const std::string& words,
                                       const Announced& instance);
    /// Adds the qualifiers that the instance and its properties are written with.
    static void qualify(Pegasus::CIMInstance& built, const Announced& instance,
                        const NameSpace& home);
    void add(Announced& instance);

    NameSpaceList& _nameSpaces;
    std::vector<Announced> _announced;
    std::map<std::string, std::size_t> _aliases; ///< folded, to the place in _announced
};

} // namespace embedded::repository
