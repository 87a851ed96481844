#include "repository/InstanceLoader.h"

#include "repository/Qualifiers.h"
#include "repository/References.h"
#include "repository/Types.h"
#include "repository/ValueBuilder.h"

namespace embedded::repository {

namespace {

using Pegasus::CIMConstClass;
using Pegasus::CIMConstProperty;
using Pegasus::CIMNamespaceName;
using Pegasus::CIMObjectPath;
using Pegasus::CIMScope;

std::string words(const mof::InstanceDeclaration& declaration) {
    return "instance of " + declaration.className;
}

CIMConstClass classOf(const mof::InstanceDeclaration& declaration, const NameSpace& nameSpace) {
    const auto* entry = nameSpace.find(cimNameAt(declaration.className, declaration.where));
    if (!entry) {
        throw mof::MofError(declaration.where, words(declaration) +
                                                   ": the class is not declared in namespace " +
                                                   toText(nameSpace.name().getString()));
    }
    if (entry->resolved.isAbstract()) {
        throw mof::MofError(declaration.where,
                            words(declaration) + ": the class is abstract and has no instances");
    }
    return entry->resolved;
}

} // namespace

void InstanceLoader::announce(const mof::InstanceDeclaration& declaration,
                              const CIMNamespaceName& nameSpace) {
    Announced instance;
    instance.declaration = &declaration;
    instance.nameSpace = nameSpace;
    instance.cimClass = classOf(declaration, *_nameSpaces.find(nameSpace));
    for (const mof::PropertyInitializer& each : declaration.properties) {
        const auto name = cimNameAt(each.name, each.where);
        if (instance.cimClass.findProperty(name) == nowhere) {
            throw mof::MofError(each.where,
                                "class " + declaration.className + " has no property " + each.name);
        }
        if (!instance.initializers.emplace(folded(name), &each).second) {
            throw mof::MofError(each.where, "property " + each.name + " is given twice");
        }
    }
    if (!declaration.alias.empty() &&
        !_aliases.emplace(folded(declaration.alias), _announced.size()).second) {
        throw mof::MofError(declaration.where, "alias " + declaration.alias + " is declared twice");
    }
    _announced.push_back(std::move(instance));
}

void InstanceLoader::addAll() {
    for (Announced& each : _announced) {
        add(each);
    }
}

ValueSource InstanceLoader::valuesOf(const Announced& instance) {
    return [&](const CIMConstProperty& declared) -> std::optional<Pegasus::CIMValue> {
        const auto found = instance.initializers.find(folded(declared.getName()));
        if (found == instance.initializers.end()) {
            return std::nullopt;
        }
        const mof::PropertyInitializer& initializer = *found->second;
        const ValueTarget target{
            "property " + instance.declaration->className + "." + initializer.name,
            declared.getType(), static_cast<bool>(declared.isArray()), declared.getArraySize()};
        return buildValue(initializer.value, target, [&](const mof::Literal& literal) {
            const CIMObjectPath path = readReference(literal, target.words, instance);
            checkTarget(path, declared.getReferenceClassName(), target.words, literal.where,
                        _nameSpaces, instance.nameSpace);
            return path;
        });
    };
}

const CIMObjectPath& InstanceLoader::pathOf(Announced& instance) {
    if (!instance.path) {
        instance.beingNamed = true;
        try {
            instance.path = buildPath(instance.cimClass, valuesOf(instance));
        } catch (const MissingKey& missing) {
            const auto found = instance.initializers.find(folded(missing.property));
            throw mof::MofError(found == instance.initializers.end() ? instance.declaration->where
                                                                     : found->second->value.where,
                                words(*instance.declaration) + " has no value for key " +
                                    toText(missing.property));
        }
        instance.beingNamed = false;
    }
    return *instance.path;
}

CIMObjectPath InstanceLoader::readReference(const mof::Literal& literal, const std::string& words,
                                            const Announced& instance) {
    if (literal.kind == mof::Literal::Kind::Alias) {
        return followAlias(literal, words, instance);
    }
    return withDeclaredKeys(parsePath(literal, words), words, literal.where, _nameSpaces,
                            instance.nameSpace);
}

CIMObjectPath InstanceLoader::followAlias(const mof::Literal& literal, const std::string& words,
                                          const Announced& instance) {
    const auto found = _aliases.find(folded(literal.text));
    if (found == _aliases.end()) {
        throw mof::MofError(literal.where, words + ": no instance has the alias " + literal.text);
    }
    Announced& target = _announced[found->second];
    if (target.beingNamed) {
        throw mof::MofError(literal.where,
                            words + ": the keys of " + literal.text + " depend on themselves");
    }
    CIMObjectPath path = pathOf(target);
    // A path that stays in its namespace does not name it.
    if (!target.nameSpace.equal(instance.nameSpace)) {
        path.setNameSpace(target.nameSpace);
    }
    return path;
}

void InstanceLoader::qualify(Pegasus::CIMInstance& built, const Announced& instance,
                             const NameSpace& home) {
    const CIMScope& scope =
        instance.cimClass.isAssociation() ? CIMScope::ASSOCIATION : CIMScope::CLASS;
    removeQualifiers(built, [](const auto&) { return true; });
    addQualifiers(built, buildQualifiers(instance.declaration->qualifiers, home.qualifiers(),
                                         {words(*instance.declaration), scope},
                                         qualifiersOf(instance.cimClass)));
    for (const mof::PropertyInitializer& each : instance.declaration->properties) {
        Pegasus::CIMProperty property =
            built.getProperty(built.findProperty(cimNameAt(each.name, each.where)));
        const bool isReference = property.getType() == Pegasus::CIMTYPE_REFERENCE;
        addQualifiers(property,
                      buildQualifiers(each.qualifiers, home.qualifiers(),
                                      {"property " + each.name,
                                       isReference ? CIMScope::REFERENCE : CIMScope::PROPERTY}));
    }
}

void InstanceLoader::add(Announced& instance) {
    const CIMObjectPath path = pathOf(instance);
    NameSpace::ClassEntry* entry =
        _nameSpaces.change(instance.nameSpace).find(instance.cimClass.getClassName());
    std::vector<Pegasus::CIMName> given;
    for (const mof::PropertyInitializer& each : instance.declaration->properties) {
        given.push_back(cimNameAt(each.name, each.where));
    }
    Pegasus::CIMInstance built = buildInstance(instance.cimClass, given, valuesOf(instance));
    qualify(built, instance, *_nameSpaces.find(instance.nameSpace));
    if (!entry->instances.add(built)) {
        throw mof::MofError(instance.declaration->where,
                            words(*instance.declaration) +
                                ": there is one with these keys: " + toText(path.toString()));
    }
}

} // namespace embedded::repository
