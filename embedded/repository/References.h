// Reference values in MOF: object paths written as strings, and what they may point to.
#pragma once

#include "mof/Mof.h"
#include "repository/NameSpace.h"

#include <Pegasus/Common/CIMObjectPath.h>

#include <string>

namespace embedded::repository {

/// The path that the string `literal` spells (DSP0004, "Object paths"). Throws MofError, which says
/// by `description` what the path is for, if it spells none.
Pegasus::CIMObjectPath parsePath(const mof::Literal& literal, const std::string& description);

/// Throws MofError at `where` unless an instance of `path`'s class may stand for `referenceClass`:
/// both are known and the one is derived from the other. A path into a namespace that is not
/// served here cannot be judged and is let through.
void checkTarget(const Pegasus::CIMObjectPath& path, const Pegasus::CIMName& referenceClass,
                 const std::string& description, const mof::Location& where,
                 const NameSpaceList& nameSpaces, const Pegasus::CIMNamespaceName& home);

/// `path` with its keys typed as its class declares them. The text of a path leaves open whether
/// a quoted key is a string or a reference, and the class knows.
/// Throws MofError at `where` for keys that the class does not have or that are missing. A path
/// without any keys names the class itself and stays as it is, as does one of an unknown class.
Pegasus::CIMObjectPath withDeclaredKeys(const Pegasus::CIMObjectPath& path,
                                        const std::string& description, const mof::Location& where,
                                        const NameSpaceList& nameSpaces,
                                        const Pegasus::CIMNamespaceName& home);

} // namespace embedded::repository
