#include "repository/Qualifiers.h"

#include "repository/Types.h"

#include <Pegasus/Common/CIMFlavor.h>
#include <Pegasus/Common/Exception.h>

#include <algorithm>
#include <iterator>
#include <utility>

namespace embedded::repository {

using namespace Pegasus;

namespace {

struct FlavorRow {
    const char* word;
    const CIMFlavor& flavor;
    const CIMFlavor& opposite; ///< NONE where there is none
};

const FlavorRow flavors[] = {
    {"enableoverride", CIMFlavor::ENABLEOVERRIDE, CIMFlavor::DISABLEOVERRIDE},
    {"disableoverride", CIMFlavor::DISABLEOVERRIDE, CIMFlavor::ENABLEOVERRIDE},
    {"tosubclass", CIMFlavor::TOSUBCLASS, CIMFlavor::RESTRICTED},
    {"restricted", CIMFlavor::RESTRICTED, CIMFlavor::TOSUBCLASS},
    {"toinstance", CIMFlavor::TOINSTANCE, CIMFlavor::NONE},
    {"translatable", CIMFlavor::TRANSLATABLE, CIMFlavor::NONE},
};

const std::pair<const char*, const CIMScope&> scopes[] = {
    {"class", CIMScope::CLASS},           {"association", CIMScope::ASSOCIATION},
    {"indication", CIMScope::INDICATION}, {"property", CIMScope::PROPERTY},
    {"reference", CIMScope::REFERENCE},   {"method", CIMScope::METHOD},
    {"parameter", CIMScope::PARAMETER},   {"any", CIMScope::ANY},
};

CIMFlavor withWords(CIMFlavor flavor, const std::vector<std::string>& description,
                    const mof::Location& where) {
    for (const std::string& word : description) {
        const auto* row = std::find_if(std::begin(flavors), std::end(flavors),
                                       [&](const FlavorRow& each) { return word == each.word; });
        if (row == std::end(flavors))
            refuse(where, "\"", word, "\" is not a flavor");
        flavor.removeFlavor(row->opposite);
        flavor.addFlavor(row->flavor);
    }
    return flavor;
}

CIMScope scopeOf(const mof::QualifierDeclaration& declaration) {
    CIMScope scope;
    for (const std::string& word : declaration.scopes) {
        const auto* row = std::find_if(std::begin(scopes), std::end(scopes),
                                       [&](const auto& each) { return word == each.first; });
        if (row == std::end(scopes))
            refuse(declaration.where, "\"", word, "\" is not a scope");
        scope.addScope(row->second);
    }
    return scope;
}

ValueTarget targetOf(const CIMQualifierDecl& declaration, const std::string& description) {
    return {description, declaration.getType(), declaration.isArray(), declaration.getArraySize()};
}

CIMQualifierDecl build(const mof::QualifierDeclaration& declaration) {
    const ValueTarget target{"qualifier " + declaration.name,
                             cimTypeAt(declaration.type, declaration.where), declaration.isArray,
                             declaration.arraySize};
    return CIMQualifierDecl(cimNameAt(declaration.name, declaration.where),
                            declaration.value ? buildValue(*declaration.value, target)
                                              : nullValue(target),
                            scopeOf(declaration),
                            withWords(CIMFlavor::DEFAULTS, declaration.flavors, declaration.where),
                            declaration.arraySize);
}

bool sameDeclaration(const CIMQualifierDecl& a, const CIMQualifierDecl& b) {
    return a.getType() == b.getType() && a.isArray() == b.isArray() &&
           a.getArraySize() == b.getArraySize() && a.getValue() == b.getValue() &&
           a.getScope().equal(b.getScope()) && a.getFlavor().equal(b.getFlavor());
}

/// Boolean qualifiers are switched on by their name alone; others are NULL then.
CIMValue valueOf(const mof::Qualifier& used, const ValueTarget& target) {
    if (used.value)
        return buildValue(*used.value, target);
    if (target.type == CIMTYPE_BOOLEAN && !target.isArray)
        return CIMValue(Boolean(true));
    return nullValue(target);
}

QualifierList::iterator findIn(QualifierList& list, const CIMName& name) {
    return std::find_if(
        list.begin(), list.end(),
        [&](const CIMQualifier& each) { return each.getName().equal(name); });
}

bool isRestricted(const CIMQualifier& qualifier) {
    return qualifier.getFlavor().hasFlavor(CIMFlavor::RESTRICTED);
}

/// `handedDown` is null where the element's superclass says nothing.
CIMQualifier build(const mof::Qualifier& used, const QualifierTable& table, const Element& element,
                   const CIMQualifier* handedDown) {
    const std::string description = "qualifier " + used.name + " of " + element.description;
    const CIMQualifierDecl* declaration = table.find(cimNameAt(used.name, used.where));
    if (!declaration)
        refuse(used.where, description, " is not declared");
    if (!declaration->getScope().hasScope(element.scope))
        refuse(used.where, description, " is out of its scope (",
               declaration->getScope().toString(), ")");
    const CIMValue value = valueOf(used, targetOf(*declaration, description));
    const CIMFlavor base = handedDown ? handedDown->getFlavor() : declaration->getFlavor();
    if (base.hasFlavor(CIMFlavor::DISABLEOVERRIDE) && handedDown && handedDown->getValue() != value)
        refuse(used.where, description, " cannot be overridden: a superclass sets it to ",
               handedDown->getValue().toString(), " with DISABLEOVERRIDE");
    return CIMQualifier(cimNameAt(used.name, used.where), value,
                        withWords(base, used.flavors, used.where));
}

} // namespace

void QualifierTable::declare(const mof::QualifierDeclaration& declaration) {
    const CIMQualifierDecl built = build(declaration);
    const CIMQualifierDecl* known = find(built.getName());
    if (!known) {
        _declarations.add(built);
    } else if (!sameDeclaration(*known, built)) {
        refuse(declaration.where, "qualifier ", declaration.name,
               " is declared already, in other words");
    }
}

QualifierList buildQualifiers(const std::vector<mof::Qualifier>& used, const QualifierTable& table,
                              const Element& element, const QualifierList& inherited) {
    QualifierList list;
    QualifierList above = inherited;
    for (const mof::Qualifier& each : used) {
        const CIMName name = cimNameAt(each.name, each.where);
        if (findIn(list, name) != list.end())
            refuse(each.where, "qualifier ", each.name, " of ", element.description,
                   " is given twice");
        const auto overridden = findIn(above, name);
        const bool handedDown = overridden != above.end() && !isRestricted(*overridden);
        list.push_back(build(each, table, element, handedDown ? &*overridden : nullptr));
    }
    for (const CIMQualifier& each : inherited) {
        if (!isRestricted(each) && findIn(list, each.getName()) == list.end()) {
            list.insert(list.begin(), each.clone());
            list.front().setPropagated(true);
        }
    }
    return list;
}

QualifierList withRestricted(QualifierList list, const QualifierList& inherited) {
    for (const CIMQualifier& each : inherited)
        if (isRestricted(each) && findIn(list, each.getName()) == list.end())
            list.push_back(each.clone());
    return list;
}

} // namespace embedded::repository
