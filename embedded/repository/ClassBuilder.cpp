#include "repository/ClassBuilder.h"

#include "repository/References.h"
#include "repository/Types.h"
#include "repository/ValueBuilder.h"

#include <set>

namespace embedded::repository {

using namespace Pegasus;

namespace {

/// The qualifier `name` (in lower case) if it is written; else null.
const mof::Qualifier* findWritten(const std::vector<mof::Qualifier>& qualifiers,
                                  const std::string& name) {
    for (const mof::Qualifier& each : qualifiers)
        if (folded(each.name) == name)
            return &each;
    return nullptr;
}

/// Whether the boolean qualifier `name` (in lower case) is written and not FALSE.
bool isSwitchedOn(const std::vector<mof::Qualifier>& qualifiers, const std::string& name) {
    const mof::Qualifier* written = findWritten(qualifiers, name);
    return written && (!written->value || (written->value->items.size() == 1 &&
                                           written->value->items.front().boolean));
}

std::string description(const mof::ClassDeclaration& declaration) {
    return "class " + declaration.name;
}

/// Null for a root.
const ClassNode* superclassOf(const mof::ClassDeclaration& declaration,
                              const NameSpace& nameSpace) {
    if (declaration.superclass.empty())
        return nullptr;
    const ClassNode* found = nameSpace.find(cimNameAt(declaration.superclass, declaration.where));
    if (!found)
        refuse(declaration.where, description(declaration), ": its superclass ",
               declaration.superclass, " is not declared in namespace ", nameSpace.name());
    return found;
}

/// An association or indication takes the qualifiers of its own scope only, not those of plain
/// classes; what its superclass is, it is too.
CIMScope scopeOf(const mof::ClassDeclaration& declaration, const ClassNode* superclass) {
    if (isSwitchedOn(declaration.qualifiers, "association") ||
        (superclass && superclass->head.isAssociation()))
        return CIMScope::ASSOCIATION;
    if (isSwitchedOn(declaration.qualifiers, "indication") ||
        (superclass && isSet(superclass->head, "Indication")))
        return CIMScope::INDICATION;
    return CIMScope::CLASS;
}

/// DSP0004, qualifier Association: references are for associations, and an association is
/// derived from associations only.
void checkAssociation(const mof::ClassDeclaration& declaration, const ClassNode& built) {
    if (!built.head.isAssociation()) {
        for (const mof::Property& written : declaration.properties) {
            if (written.type == "ref")
                refuse(written.where, "reference ", declaration.name, ".", written.name,
                       " stands in a class without the qualifier Association");
        }
    } else if (built.superclass && !built.superclass->head.isAssociation()) {
        refuse(declaration.where, description(declaration),
               " is an association and cannot be derived from ", declaration.superclass,
               ", which is none");
    }
}

template <class Written>
void checkUnique(const std::vector<Written>& members, const std::string& kind) {
    std::set<std::string> names;
    for (const Written& each : members)
        if (!names.insert(folded(each.name)).second)
            refuse(each.where, kind, " ", each.name, " is declared twice");
}

void checkKnown(const std::string& type, const std::string& referenceClass,
                const std::string& member, const mof::Location& where, const NameSpace& nameSpace) {
    if (type == "ref" && !nameSpace.find(cimNameAt(referenceClass, where)))
        refuse(where, member, " refers to class ", referenceClass,
               ", which is not declared in namespace ", nameSpace.name());
}

/// A reference may take fewer classes than the one that it overrides, not others.
void checkNarrowed(const mof::Property& written, const std::string& member,
                   const ClassNode& superclass, const NameSpace& nameSpace) {
    const auto* overridden = superclass.properties.find(cimNameAt(written.name, written.where));
    if (written.type != "ref" || !overridden)
        return;
    const CIMName& wide = overridden->declared.getReferenceClassName();
    if (!nameSpace.isA(cimNameAt(written.referenceClass, written.where), wide))
        refuse(written.where, member, " overrides a reference to ", wide, ", and ",
               written.referenceClass, " is not derived from it");
}

std::string typeText(CIMType type, bool isArray, Uint32 arraySize) {
    const std::string size = arraySize == 0 ? "" : std::to_string(arraySize);
    return cimTypeToString(type) + (isArray ? "[" + size + "]" : std::string());
}

/// An element that names another one in its Override replaces one of that name.
void checkOverridesNothing(const std::vector<mof::Qualifier>& qualifiers,
                           const std::string& description) {
    const mof::Qualifier* written = findWritten(qualifiers, "override");
    if (written && written->value && written->value->items.size() == 1 &&
        written->value->items.front().kind != mof::Literal::Kind::Null)
        refuse(written->where, description, " overrides nothing: no superclass has it");
}

CIMName referenceClassOf(const std::string& type, const std::string& referenceClass,
                         const mof::Location& where) {
    return type == "ref" ? cimNameAt(referenceClass, where) : CIMName();
}

/// Builds the properties and methods that a class writes down, alone or over inherited ones.
class MemberBuilder {
  public:
    /// `superclass` is null for a root. All arguments must outlive this.
    MemberBuilder(const mof::ClassDeclaration& declaration, const NameSpace& nameSpace,
                  const ClassNode* superclass)
        : _declaration(declaration), _nameSpace(nameSpace), _superclass(superclass) {}

    // Both throw MofError for what has no meaning, an override with another type among it. What
    // class a reference takes is not looked at.

    CIMProperty property(const mof::Property& written) const {
        const bool isReference = written.type == "ref";
        const ValueTarget target{description(isReference ? "reference" : "property", written.name),
                                 cimTypeAt(written.type, written.where), written.isArray,
                                 written.arraySize};
        if (isReference && written.isArray)
            refuse(written.where, target.description, " cannot be an array");
        const CIMConstProperty inherited = overridden(written, target.description);
        const bool overrides = !inherited.isUninitialized();

        const ReferenceReader readPath = [&](const mof::Literal& literal) {
            return parsePath(literal, target.description);
        };
        const CIMValue value =
            written.value ? buildValue(*written.value, target, readPath) : nullValue(target);
        CIMProperty built(cimNameAt(written.name, written.where), value, written.arraySize,
                          referenceClassOf(written.type, written.referenceClass, written.where),
                          overrides ? inherited.getClassOrigin()
                                    : cimNameAt(_declaration.name, _declaration.where));
        const CIMScope& scope = isReference ? CIMScope::REFERENCE : CIMScope::PROPERTY;
        const QualifierList above = overrides ? qualifiersOf(inherited) : QualifierList();
        addQualifiers(built,
                      withRestricted(buildQualifiers(written.qualifiers, _nameSpace.qualifiers(),
                                                     {target.description, scope}, above),
                                     above));
        if (written.isArray && isSet(built, "Key"))
            refuse(written.where, target.description, " is an array and cannot be a key");
        return built;
    }

    CIMMethod method(const mof::Method& written) const {
        const std::string methodDescription = description("method", written.name);
        const CIMConstMethod inherited = overridden(written, methodDescription);
        const bool overrides = !inherited.isUninitialized();
        CIMMethod built(cimNameAt(written.name, written.where),
                        cimTypeAt(written.returnType, written.where),
                        overrides ? inherited.getClassOrigin()
                                  : cimNameAt(_declaration.name, _declaration.where));
        addQualifiers(built,
                      buildQualifiers(written.qualifiers, _nameSpace.qualifiers(),
                                      {methodDescription, CIMScope::METHOD},
                                      overrides ? qualifiersOf(inherited) : QualifierList()));
        for (const mof::Parameter& each : written.parameters) {
            if (built.findParameter(cimNameAt(each.name, each.where)) != noIndex)
                refuse(each.where, methodDescription, " has two parameters named ", each.name);
            built.addParameter(parameter(each, written.name));
        }
        return built;
    }

  private:
    std::string description(const char* kind, const std::string& member) const {
        return std::string(kind) + " " + _declaration.name + "." + member;
    }

    CIMConstProperty overridden(const mof::Property& written,
                                const std::string& description) const {
        const auto* found =
            _superclass ? _superclass->properties.find(cimNameAt(written.name, written.where))
                        : nullptr;
        if (!found) {
            checkOverridesNothing(written.qualifiers, description);
            return {};
        }
        CIMConstProperty inherited = found->declared;
        const std::string before =
            typeText(inherited.getType(), inherited.isArray(), inherited.getArraySize());
        const std::string now =
            typeText(cimTypeAt(written.type, written.where), written.isArray, written.arraySize);
        if (now != before)
            refuse(written.where, description, " overrides one of type ", before, " with type ",
                   now);
        return inherited;
    }

    CIMConstMethod overridden(const mof::Method& written, const std::string& description) const {
        const auto* found = _superclass
                                ? _superclass->methods.find(cimNameAt(written.name, written.where))
                                : nullptr;
        if (!found) {
            checkOverridesNothing(written.qualifiers, description);
            return {};
        }
        CIMConstMethod inherited = found->declared;
        if (inherited.getType() != cimTypeAt(written.returnType, written.where))
            refuse(written.where, description, " overrides one that returns ",
                   cimTypeToString(inherited.getType()), " with one that returns ",
                   written.returnType);
        return inherited;
    }

    CIMParameter parameter(const mof::Parameter& written, const std::string& methodName) const {
        CIMParameter built(cimNameAt(written.name, written.where),
                           cimTypeAt(written.type, written.where), written.isArray,
                           written.arraySize,
                           referenceClassOf(written.type, written.referenceClass, written.where));
        addQualifiers(built,
                      buildQualifiers(written.qualifiers, _nameSpace.qualifiers(),
                                      {description("parameter", methodName + "." + written.name),
                                       CIMScope::PARAMETER}));
        return built;
    }

    const mof::ClassDeclaration& _declaration;
    const NameSpace& _nameSpace;
    const ClassNode* _superclass;
};

} // namespace

Ref<ClassNode> buildClass(const mof::ClassDeclaration& declaration, const NameSpace& nameSpace) {
    checkUnique(declaration.properties, "property");
    checkUnique(declaration.methods, "method");
    const ClassNode* superclass = superclassOf(declaration, nameSpace);
    Ref<ClassNode> built(new ClassNode(cimNameAt(declaration.name, declaration.where), superclass,
                                       nameSpace.classCount()));
    ClassNode& node = built.change();
    addQualifiers(node.head,
                  buildQualifiers(declaration.qualifiers, nameSpace.qualifiers(),
                                  {description(declaration), scopeOf(declaration, superclass)},
                                  superclass ? qualifiersOf(superclass->head) : QualifierList()));
    checkAssociation(declaration, node);
    const MemberBuilder members(declaration, nameSpace, superclass);
    for (const mof::Property& written : declaration.properties)
        node.declare(members.property(written));
    for (const mof::Method& written : declaration.methods)
        node.declare(members.method(written));
    return built;
}

void checkReferenceClasses(const mof::ClassDeclaration& declaration, const NameSpace& nameSpace) {
    const ClassNode* superclass = superclassOf(declaration, nameSpace);
    for (const mof::Property& each : declaration.properties) {
        const std::string member = "reference " + declaration.name + "." + each.name;
        checkKnown(each.type, each.referenceClass, member, each.where, nameSpace);
        if (superclass)
            checkNarrowed(each, member, *superclass, nameSpace);
    }
    for (const mof::Method& method : declaration.methods) {
        for (const mof::Parameter& each : method.parameters)
            checkKnown(each.type, each.referenceClass,
                       "parameter " + declaration.name + "." + method.name + "." + each.name,
                       each.where, nameSpace);
    }
}

} // namespace embedded::repository
