#include "repository/ClassBuilder.h"

#include "repository/MemberBuilder.h"
#include "repository/Types.h"

#include <set>

namespace embedded::repository {

using namespace Pegasus;

namespace {

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
