// A class declaration to a resolved class: with all that it inherits, each element with its class
// of origin and marked as propagated where the class itself does not write it down.
//
// Properties and methods come in the order that OpenPegasus gives them: first those inherited that
// the class does not override, as its superclass has them, then those that it declares.
#pragma once

#include "mof/Mof.h"
#include "repository/NameSpace.h"

#include <Pegasus/Common/CIMClass.h>

namespace embedded::repository {

/// Throws MofError for a declaration without meaning in `nameSpace`. Whether the classes exist
/// that references and parameters name is not looked at: see checkReferenceClasses.
Pegasus::CIMClass buildClass(const mof::ClassDeclaration& declaration, const NameSpace& nameSpace);

/// Throws MofError at a reference or parameter whose class is unknown in `nameSpace`, and at a
/// reference that overrides one to a class that its own is not derived from. Left until all
/// classes are known, because classes and associations may name each other.
void checkReferenceClasses(const mof::ClassDeclaration& declaration, const NameSpace& nameSpace);

/// Whether `a` and `b`, both resolved, say the same.
bool sameClass(const Pegasus::CIMConstClass& a, const Pegasus::CIMConstClass& b);

} // namespace embedded::repository
