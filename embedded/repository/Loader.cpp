#include "repository/Loader.h"

#include "repository/ClassBuilder.h"
#include "repository/Qualifiers.h"
#include "repository/References.h"
#include "repository/Types.h"
#include "repository/ValueBuilder.h"

#include <Pegasus/Common/Exception.h>

#include <algorithm>
#include <memory>
#include <optional>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

namespace embedded::repository {

using namespace Pegasus;

namespace {

std::string description(const mof::InstanceDeclaration& declaration) {
    return "instance of " + declaration.className;
}

const ClassNode& classOf(const mof::InstanceDeclaration& declaration, const NameSpace& nameSpace) {
    const ClassNode* node = nameSpace.find(cimNameAt(declaration.className, declaration.where));
    if (!node)
        refuse(declaration.where, description(declaration),
               ": the class is not declared in namespace ", nameSpace.name());
    if (node->head.isAbstract())
        refuse(declaration.where, description(declaration),
               ": the class is abstract and has no instances");
    return *node;
}

/// REQUIRES: they are of one class.
bool areOfOneKind(const mof::InstanceDeclaration& a, const mof::InstanceDeclaration& b) {
    return std::equal(
        a.properties.begin(), a.properties.end(), b.properties.begin(), b.properties.end(),
        [](const auto& x, const auto& y) { return x.name == y.name; });
}

bool isWrittenAs(const mof::Value& a, const mof::Value& b) {
    return a.isArray == b.isArray &&
           std::equal(
               a.items.begin(), a.items.end(), b.items.begin(), b.items.end(),
               [](const mof::Literal& x, const mof::Literal& y) {
                   return x.kind == y.kind && x.text == y.text;
               });
}

void describe(std::string& text, const std::string& part) {
    text += std::to_string(part.size()) + ':' + part;
}

/// The same for lists that are written alike.
std::string described(const std::vector<mof::Qualifier>& qualifiers) {
    std::string text = "(";
    for (const mof::Qualifier& each : qualifiers) {
        describe(text, each.name);
        text += !each.value ? "-" : each.value->isArray ? "{" : "=";
        for (std::size_t i = 0; each.value && i < each.value->items.size(); ++i) {
            text += std::to_string(static_cast<int>(each.value->items[i].kind));
            describe(text, each.value->items[i].text);
        }
        for (const std::string& flavor : each.flavors)
            text += ',' + flavor;
        text += ';';
    }
    return text + ")";
}

/// Replaces the qualifiers that the class hands down to `built` by those and the ones that
/// `declaration` is written with.
void qualify(CIMInstance& built, const mof::InstanceDeclaration& declaration, const ClassForm& form,
             const NameSpace& home) {
    const CIMScope& scope = form.head().isAssociation() ? CIMScope::ASSOCIATION : CIMScope::CLASS;
    removeQualifiers(built, [](const auto&) { return true; });
    addQualifiers(built,
                  buildQualifiers(declaration.qualifiers, home.qualifiers(),
                                  {description(declaration), scope}, qualifiersOf(form.head())));
    for (const mof::PropertyInitializer& each : declaration.properties) {
        CIMProperty property =
            built.getProperty(built.findProperty(cimNameAt(each.name, each.where)));
        const bool isReference = property.getType() == CIMTYPE_REFERENCE;
        addQualifiers(property,
                      buildQualifiers(each.qualifiers, home.qualifiers(),
                                      {"property " + each.name,
                                       isReference ? CIMScope::REFERENCE : CIMScope::PROPERTY}));
    }
}

/// Loads the instances of a specification, and the aliases by which they name each other.
class InstanceLoader {
  public:
    /// `nameSpaces` holds all classes that the instances are of; no copy of it is made while this
    /// is in use.
    explicit InstanceLoader(NameSpaceList& nameSpaces) : _nameSpaces(nameSpaces) {}

    /// `declaration` must outlive this. Throws MofError for an instance of an unknown or abstract
    /// class, for a property that the class does not have and for an alias that is taken.
    void declare(const mof::InstanceDeclaration& declaration, const CIMNamespaceName& nameSpace) {
        PendingInstance instance;
        instance.declaration = &declaration;
        instance.kind = &kindOf(declaration, nameSpace);
        if (!declaration.alias.empty() &&
            !_aliases.emplace(folded(declaration.alias), _pending.size()).second)
            refuse(declaration.where, "alias ", declaration.alias, " is declared twice");
        _pending.push_back(std::move(instance));
    }

    /// Adds all that have been declared. Throws MofError for what is wrong with their values and
    /// for keys that are taken.
    void addAll() {
        for (PendingInstance& each : _pending)
            add(each);
    }

  private:
    /// How to make instances that give properties of the same names, spelt alike, of one class.
    /// Instances of a kind tend to stand together, and to be alike.
    struct Kind {
        const mof::InstanceDeclaration* first = nullptr; ///< one of the kind
        CIMNamespaceName nameSpace;
        const NameSpace* home = nullptr;
        InstanceStore* store = nullptr;

        // One for each property that is given.

        std::vector<Uint32> places;
        std::vector<ValueTarget> targets;

        std::vector<std::size_t> keys; ///< of the given ones, in the class's order
        Ref<Shape> unqualified;        ///< null until there is one

        // What the last instance was written with, and what it became. Those that are written
        // alike share it.

        const mof::InstanceDeclaration* last = nullptr;
        std::vector<CIMValue> lastValues;
    };

    struct PendingInstance {
        const mof::InstanceDeclaration* declaration = nullptr;
        Kind* kind = nullptr;
        std::optional<CIMObjectPath> path; ///< once it is known
        bool beingNamed = false;           ///< its path is being built, and must not be asked for
    };

    Kind& kindOf(const mof::InstanceDeclaration& declaration, const CIMNamespaceName& nameSpace) {
        auto& kinds = _kinds[declaration.className];
        const auto known = std::find_if(kinds.rbegin(), kinds.rend(), [&](const auto& each) {
            return areOfOneKind(*each->first, declaration) && each->nameSpace.equal(nameSpace);
        });
        if (known != kinds.rend())
            return **known;
        auto kind = std::make_unique<Kind>();
        NameSpace& home = _nameSpaces.change(nameSpace);
        const ClassNode& node = classOf(declaration, home);
        kind->first = &declaration;
        kind->nameSpace = nameSpace;
        kind->home = &home;
        kind->store = &home.changeInstancesOf(node);
        const ClassForm& form = kind->store->form();
        for (const mof::PropertyInitializer& each : declaration.properties) {
            const Uint32 place = form.find(cimNameAt(each.name, each.where));
            if (place == noIndex)
                refuse(each.where, "class ", declaration.className, " has no property ", each.name);
            if (std::find(kind->places.begin(), kind->places.end(), place) != kind->places.end())
                refuse(each.where, "property ", each.name, " is given twice");
            const CIMConstProperty& declared = form.properties()[place];
            kind->places.push_back(place);
            kind->targets.push_back({"property " + declaration.className + "." + each.name,
                                     declared.getType(), static_cast<bool>(declared.isArray()),
                                     declared.getArraySize()});
        }
        for (const Uint32 key : form.keys()) {
            const auto given = std::find(kind->places.begin(), kind->places.end(), key);
            if (given != kind->places.end())
                kind->keys.push_back(static_cast<std::size_t>(given - kind->places.begin()));
        }
        kinds.push_back(std::move(kind));
        return *kinds.back();
    }

    CIMValue valueOf(const PendingInstance& instance, std::size_t given) {
        const Kind& kind = *instance.kind;
        const mof::Value& value = instance.declaration->properties[given].value;
        if (kind.last && isWrittenAs(kind.last->properties[given].value, value))
            return kind.lastValues[given];
        const ValueTarget& target = kind.targets[given];
        return buildValue(value, target, [&](const mof::Literal& literal) {
            const CIMObjectPath path = readReference(literal, target.description, kind);
            const auto& declared = kind.store->form().properties()[kind.places[given]];
            checkTarget(path, declared.getReferenceClassName(), target.description, literal.where,
                        _nameSpaces, kind.nameSpace);
            return path;
        });
    }

    /// The values of the keys that are given, among all that are.
    std::vector<CIMValue> keyValuesOf(PendingInstance& instance) {
        std::vector<CIMValue> values(instance.kind->places.size());
        instance.beingNamed = true;
        for (const std::size_t key : instance.kind->keys)
            values[key] = valueOf(instance, key);
        instance.beingNamed = false;
        return values;
    }

    void name(PendingInstance& instance, const std::vector<CIMValue>& values) {
        const Kind& kind = *instance.kind;
        const mof::InstanceDeclaration& declaration = *instance.declaration;
        const auto placeOf = [&](Uint32 property) {
            return static_cast<std::size_t>(
                std::find(kind.places.begin(), kind.places.end(), property) - kind.places.begin());
        };
        try {
            instance.path = kind.store->form().path([&](Uint32 property) {
                const std::size_t given = placeOf(property);
                return given == values.size() ? nullptr : &values[given];
            });
        } catch (const MissingKey& missing) {
            const std::size_t given = placeOf(kind.store->form().find(missing.property));
            refuse(given == values.size() ? declaration.where
                                          : declaration.properties[given].value.where,
                   description(declaration), " has no value for key ", missing.property);
        }
    }

    CIMObjectPath readReference(const mof::Literal& literal, const std::string& description,
                                const Kind& kind) {
        if (literal.kind == mof::Literal::Kind::Alias)
            return followAlias(literal, description, kind);
        return withDeclaredKeys(parsePath(literal, description), description, literal.where,
                                _nameSpaces, kind.nameSpace);
    }

    CIMObjectPath followAlias(const mof::Literal& literal, const std::string& description,
                              const Kind& kind) {
        const auto found = _aliases.find(folded(literal.text));
        if (found == _aliases.end())
            refuse(literal.where, description, ": no instance has the alias ", literal.text);
        PendingInstance& target = _pending[found->second];
        if (target.beingNamed)
            refuse(literal.where, description, ": the keys of ", literal.text,
                   " depend on themselves");
        if (!target.path)
            name(target, keyValuesOf(target));
        CIMObjectPath path = *target.path;
        // A path that stays in its namespace does not name it.
        if (!target.kind->nameSpace.equal(kind.nameSpace))
            path.setNameSpace(target.kind->nameSpace);
        return path;
    }

    static Ref<Shape> shapeOf(const PendingInstance& instance) {
        Kind& kind = *instance.kind;
        const mof::InstanceDeclaration& declaration = *instance.declaration;
        const bool isQualified =
            !declaration.qualifiers.empty() ||
            std::any_of(declaration.properties.begin(), declaration.properties.end(),
                        [](const auto& each) { return !each.qualifiers.empty(); });
        if (!isQualified) {
            if (!kind.unqualified)
                kind.unqualified = kind.store->form().shape(kind.places);
            return kind.unqualified;
        }
        std::string written = described(declaration.qualifiers);
        for (const mof::PropertyInitializer& each : declaration.properties)
            written += described(each.qualifiers);
        return kind.store->form().shape(kind.places, written, [&](CIMInstance& example) {
            qualify(example, declaration, kind.store->form(), *kind.home);
        });
    }

    void add(PendingInstance& instance) {
        Kind& kind = *instance.kind;
        std::vector<CIMValue> values = keyValuesOf(instance);
        if (!instance.path)
            name(instance, values);
        for (std::size_t i = 0; i < values.size(); ++i)
            if (std::find(kind.keys.begin(), kind.keys.end(), i) == kind.keys.end())
                values[i] = valueOf(instance, i);
        const Ref<Stored> built =
            kind.store->form().stored(shapeOf(instance), *instance.path, values);
        if (!kind.store->add(built))
            refuse(instance.declaration->where, description(*instance.declaration),
                   ": there is one with these keys: ", instance.path->toString());
        kind.last = instance.declaration;
        kind.lastValues = std::move(values);
    }

    NameSpaceList& _nameSpaces;
    std::unordered_map<std::string, std::vector<std::unique_ptr<Kind>>> _kinds; ///< by class name
    std::vector<PendingInstance> _pending;
    std::unordered_map<std::string, std::size_t> _aliases; ///< folded, to the place in _pending
};

template <class T>
struct Placed {
    const T* declaration;
    CIMNamespaceName nameSpace;
};

const mof::Location& placeOf(const mof::Declaration& declaration) {
    return std::visit([](const auto& what) -> const mof::Location& { return what.where; },
                      declaration.what);
}

CIMNamespaceName nameSpaceOf(const mof::Declaration& declaration,
                             const CIMNamespaceName& otherwise) {
    if (!declaration.nameSpace)
        return otherwise;
    try {
        return CIMNamespaceName(String(declaration.nameSpace->c_str()));
    } catch (const Exception&) {
        refuse(placeOf(declaration), "\"", *declaration.nameSpace,
               "\" is not the name of a namespace");
    }
}

class Loader {
  public:
    explicit Loader(NameSpaceList& nameSpaces) : _nameSpaces(nameSpaces) {}

    void take(const mof::QualifierDeclaration& declaration, const CIMNamespaceName& nameSpace) {
        _nameSpaces.change(nameSpace).qualifiers().declare(declaration);
    }

    void take(const mof::ClassDeclaration& declaration, const CIMNamespaceName& nameSpace) {
        NameSpace& home = _nameSpaces.change(nameSpace);
        Ref<ClassNode> built = buildClass(declaration, home);
        const ClassNode* known = home.find(built->name());
        if (!known) {
            home.add(std::move(built));
        } else if (!sameClass(*known, *built)) {
            refuse(declaration.where, "class ", declaration.name,
                   " is declared already, in other words");
        }
        _classes.push_back({&declaration, nameSpace});
    }

    void take(const mof::InstanceDeclaration& declaration, const CIMNamespaceName& nameSpace) {
        _nameSpaces.change(nameSpace);
        _instances.push_back({&declaration, nameSpace});
    }

    void finish() {
        for (const auto& each : _classes)
            checkReferenceClasses(*each.declaration, *_nameSpaces.find(each.nameSpace));
        InstanceLoader loader(_nameSpaces);
        for (const auto& each : _instances)
            loader.declare(*each.declaration, each.nameSpace);
        loader.addAll();
    }

  private:
    NameSpaceList& _nameSpaces;
    std::vector<Placed<mof::ClassDeclaration>> _classes;
    std::vector<Placed<mof::InstanceDeclaration>> _instances;
};

} // namespace

void loadInto(NameSpaceList& nameSpaces, const mof::Specification& specification,
              const CIMNamespaceName& nameSpace) {
    Loader loader(nameSpaces);
    nameSpaces.change(nameSpace);
    for (const mof::Declaration& declaration : specification) {
        const CIMNamespaceName home = nameSpaceOf(declaration, nameSpace);
        std::visit([&](const auto& what) { loader.take(what, home); }, declaration.what);
    }
    loader.finish();
}

} // namespace embedded::repository
