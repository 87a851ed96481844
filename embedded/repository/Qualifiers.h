// Qualifiers: their declarations, their use on an element, and what a subclass inherits of them
// (DSP0004, "Qualifiers").
#pragma once

#include "mof/Mof.h"
#include "repository/NamedList.h"
#include "repository/ValueBuilder.h"

#include <Pegasus/Common/CIMQualifier.h>
#include <Pegasus/Common/CIMQualifierDecl.h>
#include <Pegasus/Common/CIMScope.h>

#include <string>
#include <vector>

namespace embedded::repository {

using QualifierList = std::vector<Pegasus::CIMQualifier>;

/// The qualifier declarations of a namespace, in the order in which they were declared.
class QualifierTable {
  public:
    /// Null if `name` is not declared.
    const Pegasus::CIMQualifierDecl* find(const Pegasus::CIMName& name) const {
        return _declarations.find(name);
    }
    const NamedList<Pegasus::CIMQualifierDecl>& all() const { return _declarations; }

    /// One that is declared again in the same words is left alone.
    /// Throws MofError for a declaration without meaning, or in other words than before.
    void declare(const mof::QualifierDeclaration& declaration);

  private:
    NamedList<Pegasus::CIMQualifierDecl> _declarations;
};

/// An element that carries qualifiers.
struct Element {
    std::string description; ///< for errors: "property Speed"
    Pegasus::CIMScope scope;
};

/// The qualifiers of an element that is written with `used` and overrides one with `inherited`
/// (empty if it overrides none): those handed down, that is not RESTRICTED and not given anew,
/// marked as propagated and the last of them first, as OpenPegasus has them; then those given.
/// Throws MofError at a qualifier that is not declared in `table`, is out of scope, used
/// twice, of the wrong type, or that gives a DISABLEOVERRIDE one another value.
QualifierList buildQualifiers(const std::vector<mof::Qualifier>& used, const QualifierTable& table,
                              const Element& element, const QualifierList& inherited = {});

/// `list` with the RESTRICTED ones of `inherited` that it has not behind it. OpenPegasus hands them
/// down to a property all the same, and without a mark, so that LocalOnly shows them.
QualifierList withRestricted(QualifierList list, const QualifierList& inherited);

/// Copies of the qualifiers of a class, property, method or parameter.
template <class Holder>
QualifierList qualifiersOf(const Holder& holder) {
    QualifierList list;
    for (Pegasus::Uint32 i = 0; i < holder.getQualifierCount(); ++i)
        list.push_back(holder.getQualifier(i).clone());
    return list;
}

/// Whether `holder` has the boolean qualifier `name`, and it is TRUE.
template <class Holder>
bool isSet(const Holder& holder, const char* name) {
    const Pegasus::Uint32 index = holder.findQualifier(Pegasus::CIMName(name));
    return index != noIndex &&
           holder.getQualifier(index).getValue() == Pegasus::CIMValue(Pegasus::Boolean(true));
}

template <class Holder>
void addQualifiers(Holder& holder, const QualifierList& list) {
    for (const Pegasus::CIMQualifier& qualifier : list)
        holder.addQualifier(qualifier);
}

/// Removes those that `unwanted` holds for.
template <class Holder, class Predicate>
void removeQualifiers(Holder& holder, Predicate unwanted) {
    for (Pegasus::Uint32 i = holder.getQualifierCount(); i > 0; --i)
        if (unwanted(holder.getQualifier(i - 1)))
            holder.removeQualifier(i - 1);
}

} // namespace embedded::repository
