#include "repository/ClassBuilder.h"

#include "repository/MemberBuilder.h"
#include "repository/Types.h"

#include <algorithm>
#include <set>

namespace embedded::repository {

namespace {

using Pegasus::CIMClass;
using Pegasus::CIMConstClass;
using Pegasus::CIMConstMethod;
using Pegasus::CIMConstProperty;
using Pegasus::CIMName;
using Pegasus::CIMScope;
using Pegasus::Uint32;

std::string words(const mof::ClassDeclaration& declaration) {
    return "class " + declaration.name;
}

CIMConstClass superclassOf(const mof::ClassDeclaration& declaration, const NameSpace& nameSpace) {
    if (declaration.superclass.empty()) {
        return {};
    }
    const auto* entry = nameSpace.find(cimNameAt(declaration.superclass, declaration.where));
    if (!entry) {
        throw mof::MofError(declaration.where, words(declaration) + ": its superclass " +
                                                   declaration.superclass +
                                                   " is not declared in namespace " +
                                                   toText(nameSpace.name().getString()));
    }
    return entry->resolved;
}

/// An association or indication takes the qualifiers of its own scope only, not those of plain
/// classes; what its superclass is, it is too.
CIMScope scopeOf(const mof::ClassDeclaration& declaration, const CIMConstClass& superclass) {
    const bool derived = !superclass.isUninitialized();
    if (isSwitchedOn(declaration.qualifiers, "association") ||
        (derived && superclass.isAssociation())) {
        return CIMScope::ASSOCIATION;
    }
    if (isSwitchedOn(declaration.qualifiers, "indication") ||
        (derived && isSet(superclass, "Indication"))) {
        return CIMScope::INDICATION;
    }
    return CIMScope::CLASS;
}

/// DSP0004, qualifier Association: references are for associations, and an association is
/// derived from associations only.
void checkAssociation(const mof::ClassDeclaration& declaration, const CIMClass& built,
                      const CIMConstClass& superclass) {
    if (!built.isAssociation()) {
        for (const mof::Property& written : declaration.properties) {
            if (written.type == "ref") {
                throw mof::MofError(written.where,
                                    "reference " + declaration.name + "." + written.name +
                                        " stands in a class without the qualifier Association");
            }
        }
    } else if (!superclass.isUninitialized() && !superclass.isAssociation()) {
        throw mof::MofError(declaration.where,
                            words(declaration) + " is an association and cannot be derived from " +
                                declaration.superclass + ", which is none");
    }
}

template <class Written>
void checkUnique(const std::vector<Written>& members, const std::string& kind) {
    std::set<std::string> names;
    for (const Written& each : members) {
        if (!names.insert(folded(each.name)).second) {
            throw mof::MofError(each.where, kind + " " + each.name + " is declared twice");
        }
    }
}

/// `member` of the superclass as a subclass shows it that does not write it down.
template <class Member>
auto handedDown(const Member& member) {
    auto copy = member.clone();
    copy.setPropagated(true);
    return copy;
}

template <class Written>
bool isWritten(const std::vector<Written>& members, const CIMName& name) {
    return std::any_of(members.begin(), members.end(),
                       [&](const Written& each) { return folded(each.name) == folded(name); });
}

void addProperties(CIMClass& built, const mof::ClassDeclaration& declaration,
                   const CIMConstClass& superclass, const MemberBuilder& members) {
    const Uint32 inherited = superclass.isUninitialized() ? 0 : superclass.getPropertyCount();
    for (Uint32 i = 0; i < inherited; ++i) {
        const CIMConstProperty above = superclass.getProperty(i);
        if (!isWritten(declaration.properties, above.getName())) {
            built.addProperty(handedDown(above));
        }
    }
    for (const mof::Property& written : declaration.properties) {
        built.addProperty(members.property(written));
    }
}

void addMethods(CIMClass& built, const mof::ClassDeclaration& declaration,
                const CIMConstClass& superclass, const MemberBuilder& members) {
    const Uint32 inherited = superclass.isUninitialized() ? 0 : superclass.getMethodCount();
    for (Uint32 i = 0; i < inherited; ++i) {
        const CIMConstMethod above = superclass.getMethod(i);
        if (!isWritten(declaration.methods, above.getName())) {
            built.addMethod(handedDown(above));
        }
    }
    for (const mof::Method& written : declaration.methods) {
        built.addMethod(members.method(written));
    }
}

void checkKnown(const std::string& type, const std::string& referenceClass,
                const std::string& member, const mof::Location& where, const NameSpace& nameSpace) {
    if (type == "ref" && !nameSpace.find(cimNameAt(referenceClass, where))) {
        throw mof::MofError(where, member + " refers to class " + referenceClass +
                                       ", which is not declared in namespace " +
                                       toText(nameSpace.name().getString()));
    }
}

/// A reference may take fewer classes than the one that it overrides, not others.
void checkNarrowed(const mof::Property& written, const std::string& member,
                   const CIMConstClass& superclass, const NameSpace& nameSpace) {
    const Uint32 position = superclass.findProperty(cimNameAt(written.name, written.where));
    if (written.type != "ref" || position == nowhere) {
        return;
    }
    const CIMName& wide = superclass.getProperty(position).getReferenceClassName();
    if (!nameSpace.isA(cimNameAt(written.referenceClass, written.where), wide)) {
        throw mof::MofError(written.where, member + " overrides a reference to " + toText(wide) +
                                               ", and " + written.referenceClass +
                                               " is not derived from it");
    }
}

} // namespace

CIMClass buildClass(const mof::ClassDeclaration& declaration, const NameSpace& nameSpace) {
    checkUnique(declaration.properties, "property");
    checkUnique(declaration.methods, "method");
    const CIMConstClass superclass = superclassOf(declaration, nameSpace);
    const bool derived = !superclass.isUninitialized();
    CIMClass built(cimNameAt(declaration.name, declaration.where),
                   derived ? superclass.getClassName() : CIMName());
    addQualifiers(built, buildQualifiers(declaration.qualifiers, nameSpace.qualifiers(),
                                         {words(declaration), scopeOf(declaration, superclass)},
                                         derived ? qualifiersOf(superclass) : QualifierList()));
    checkAssociation(declaration, built, superclass);
    const MemberBuilder members(declaration, nameSpace, superclass);
    addProperties(built, declaration, superclass, members);
    addMethods(built, declaration, superclass, members);
    return built;
}

void checkReferenceClasses(const mof::ClassDeclaration& declaration, const NameSpace& nameSpace) {
    const CIMConstClass superclass = superclassOf(declaration, nameSpace);
    for (const mof::Property& each : declaration.properties) {
        const std::string member = "reference " + declaration.name + "." + each.name;
        checkKnown(each.type, each.referenceClass, member, each.where, nameSpace);
        if (!superclass.isUninitialized()) {
            checkNarrowed(each, member, superclass, nameSpace);
        }
    }
    for (const mof::Method& method : declaration.methods) {
        for (const mof::Parameter& each : method.parameters) {
            checkKnown(each.type, each.referenceClass,
                       "parameter " + declaration.name + "." + method.name + "." + each.name,
                       each.where, nameSpace);
        }
    }
}

bool sameClass(const CIMConstClass& a, const CIMConstClass& b) {
    if (!a.identical(b)) {
        return false;
    }
    // identical() leaves out the sizes of arrays.
    for (Uint32 i = 0; i < a.getPropertyCount(); ++i) {
        if (a.getProperty(i).getArraySize() != b.getProperty(i).getArraySize()) {
            return false;
        }
    }
    return true;
}

} // namespace embedded::repository
