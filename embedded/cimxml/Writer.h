// Objects on their way into a reply: each function appends one element (or nothing, or several,
// where it says so) with a line feed after each tag, in the layout that clients of such servers
// know byte for byte.
#pragma once

#include <Pegasus/Common/CIMClass.h>
#include <Pegasus/Common/CIMInstance.h>
#include <Pegasus/Common/CIMObject.h>
#include <Pegasus/Common/CIMObjectPath.h>
#include <Pegasus/Common/CIMPropertyList.h>
#include <Pegasus/Common/CIMQualifierDecl.h>
#include <Pegasus/Common/CIMValue.h>

#include <string>
#include <string_view>

namespace embedded::cimxml {

/// What of an instance is written (DSP0200 clause 5.3.2.2). The properties come in the order of
/// `propertyList`, or in their own when it is null; names the instance does not have are passed
/// over.
struct InstanceFilter {
    bool includeQualifiers = true;
    bool includeClassOrigin = true;
    Pegasus::CIMPropertyList propertyList;
};

/// Appends `<name>`, what `content` appends, and `</name>`.
template <class Content>
void appendElement(std::string& out, std::string_view name, const Content& content) {
    out.append("<").append(name).append(">\n");
    content();
    out.append("</").append(name).append(">\n");
}

// Paths

void appendClassName(std::string& out, const Pegasus::CIMName& className);
void appendInstanceName(std::string& out, const Pegasus::CIMObjectPath& path);
/// INSTANCEPATH, whether host and namespace are set or not.
void appendInstancePath(std::string& out, const Pegasus::CIMObjectPath& path);
void appendClassPath(std::string& out, const Pegasus::CIMObjectPath& path);
/// VALUE.REFERENCE with INSTANCEPATH, LOCALINSTANCEPATH or INSTANCENAME, as host or namespace or
/// neither is set.
void appendReference(std::string& out, const Pegasus::CIMObjectPath& path);

// Values

/// VALUE, VALUE.ARRAY, VALUE.REFERENCE or VALUE.REFARRAY; nothing for null.
void appendValue(std::string& out, const Pegasus::CIMValue& value);

// Objects

void appendProperty(std::string& out, const Pegasus::CIMConstProperty& property,
                    bool includeQualifiers, bool includeClassOrigin);
void appendInstance(std::string& out, const Pegasus::CIMConstInstance& instance,
                    const InstanceFilter& filter);
/// All of it.
void appendClass(std::string& out, const Pegasus::CIMConstClass& cimClass);
/// INSTANCE or CLASS.
void appendObject(std::string& out, const Pegasus::CIMObject& object, const InstanceFilter& filter);
void appendQualifier(std::string& out, const Pegasus::CIMConstQualifier& qualifier);
void appendQualifierDeclaration(std::string& out, const Pegasus::CIMQualifierDecl& declaration);

} // namespace embedded::cimxml
