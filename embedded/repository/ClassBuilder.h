// Builds a class from its declaration. Each element gets its class of origin, and the qualifiers
// that it inherits from the element which it overrides.
#pragma once

#include "mof/Mof.h"
#include "repository/NameSpace.h"

namespace embedded::repository {

/// Throws MofError for a declaration without meaning in `nameSpace`. Whether the classes exist
/// that references and parameters name is not looked at: see checkReferenceClasses.
Ref<ClassNode> buildClass(const mof::ClassDeclaration& declaration, const NameSpace& nameSpace);

/// Throws MofError at a reference or parameter whose class is unknown in `nameSpace`, and at a
/// reference that overrides one to a class that its own is not derived from. Left until all
/// classes are known, because classes and associations may name each other.
void checkReferenceClasses(const mof::ClassDeclaration& declaration, const NameSpace& nameSpace);

} // namespace embedded::repository
