// The properties and methods that a class declaration writes down, alone or over inherited ones.
#pragma once

#include "mof/Mof.h"
#include "repository/NameSpace.h"

#include <Pegasus/Common/CIMClass.h>
#include <Pegasus/Common/CIMMethod.h>
#include <Pegasus/Common/CIMProperty.h>

#include <string>
#include <vector>

namespace embedded::repository {

/// The qualifier `name` (in lower case) if it is written; else null.
const mof::Qualifier* findWritten(const std::vector<mof::Qualifier>& qualifiers,
                                  const std::string& name);
/// Whether the boolean qualifier `name` (in lower case) is written and not FALSE.
bool isSwitchedOn(const std::vector<mof::Qualifier>& qualifiers, const std::string& name);

class MemberBuilder {
  public:
    /// `superclass` is null for a root. All arguments must outlive this.
    MemberBuilder(const mof::ClassDeclaration& declaration, const NameSpace& nameSpace,
                  const ClassNode* superclass)
        : _declaration(declaration), _nameSpace(nameSpace), _superclass(superclass) {}

    // Both throw MofError for what has no meaning, an override with another type among it. What
    // class a reference takes is not looked at.

    Pegasus::CIMProperty property(const mof::Property& written) const;
    Pegasus::CIMMethod method(const mof::Method& written) const;

  private:
    std::string description(const char* kind, const std::string& member) const;
    Pegasus::CIMConstProperty overridden(const mof::Property& written,
                                         const std::string& description) const;
    Pegasus::CIMConstMethod overridden(const mof::Method& written,
                                       const std::string& description) const;
    Pegasus::CIMParameter parameter(const mof::Parameter& written,
                                    const std::string& methodName) const;

    const mof::ClassDeclaration& _declaration;
    const NameSpace& _nameSpace;
    const ClassNode* _superclass;
};

} // namespace embedded::repository
