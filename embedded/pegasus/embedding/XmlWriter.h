// Objects as CIM-XML (DSP0201, DSP0203), for a reply and for CIMObject::toString(): each function
// appends one element (or nothing, or several, where it says so) with a line feed after each tag,
// in the layout that clients of such servers know byte for byte.
//
// Thread-safety: what is written may be read by other threads at the same time.
#pragma once

#include <Pegasus/Common/CIMClass.h>
#include <Pegasus/Common/CIMInstance.h>
#include <Pegasus/Common/CIMObject.h>
#include <Pegasus/Common/CIMObjectPath.h>
#include <Pegasus/Common/CIMPropertyList.h>
#include <Pegasus/Common/CIMQualifierDecl.h>
#include <Pegasus/Common/CIMValue.h>
#include <Pegasus/Common/Linkage.h>
#include <Pegasus/Common/String.h>

#include <string>
#include <string_view>

namespace Pegasus::embedding {

/// What of an instance is written (DSP0200 clause 5.3.2.2). The properties come, each once, in the
/// order of `propertyList`, or in their own when it is null; names the instance does not have are
/// passed over.
struct InstanceFilter {
    bool includeQualifiers = true;
    bool includeClassOrigin = true;
    CIMPropertyList propertyList;
};

// Characters

/// Appends `text` so that it reads back as it is, as element content and as attribute value.
/// Blanks that a reader might take for layout (first, last, after a blank) and control characters
/// are written as character references. Those below U+0020 but for tab, CR and LF are not XML 1.0
/// even so; clients of such servers know them in this form. What no XML document can hold (a lone
/// surrogate, U+FFFE, U+FFFF) becomes U+FFFD.
PEGASUS_COMMON_LINKAGE void appendEscaped(std::string& out, const String& text);
/// The same of UTF-8, which is valid.
PEGASUS_COMMON_LINKAGE void appendEscaped(std::string& out, std::string_view text);

/// Appends ` name="value"`.
PEGASUS_COMMON_LINKAGE void appendAttribute(std::string& out, std::string_view name,
                                            const String& value);

/// Appends `<name>`, what `content` appends, and `</name>`.
template <class Content>
void appendElement(std::string& out, std::string_view name, const Content& content) {
    (out += '<').append(name).append(">\n");
    content();
    out.append("</").append(name).append(">\n");
}

// Paths

PEGASUS_COMMON_LINKAGE void appendClassName(std::string& out, const CIMName& className);
PEGASUS_COMMON_LINKAGE void appendInstanceName(std::string& out, const CIMObjectPath& path);
/// INSTANCEPATH, whether host and namespace are set or not.
PEGASUS_COMMON_LINKAGE void appendInstancePath(std::string& out, const CIMObjectPath& path);
PEGASUS_COMMON_LINKAGE void appendClassPath(std::string& out, const CIMObjectPath& path);
/// VALUE.REFERENCE with INSTANCEPATH, LOCALINSTANCEPATH or INSTANCENAME, as host or namespace or
/// neither is set.
PEGASUS_COMMON_LINKAGE void appendReference(std::string& out, const CIMObjectPath& path);

// Values

/// VALUE, VALUE.ARRAY, VALUE.REFERENCE or VALUE.REFARRAY; nothing for null.
PEGASUS_COMMON_LINKAGE void appendValue(std::string& out, const CIMValue& value);

// Objects

PEGASUS_COMMON_LINKAGE void appendProperty(std::string& out, const CIMConstProperty& property,
                                           bool includeQualifiers, bool includeClassOrigin);
PEGASUS_COMMON_LINKAGE void appendInstance(std::string& out, const CIMConstInstance& instance,
                                           const InstanceFilter& filter);
/// All of it.
PEGASUS_COMMON_LINKAGE void appendClass(std::string& out, const CIMConstClass& cimClass);
/// INSTANCE or CLASS.
PEGASUS_COMMON_LINKAGE void appendObject(std::string& out, const CIMConstObject& object,
                                         const InstanceFilter& filter);
PEGASUS_COMMON_LINKAGE void appendQualifier(std::string& out, const CIMConstQualifier& qualifier);
PEGASUS_COMMON_LINKAGE void appendQualifierDeclaration(std::string& out,
                                                       const CIMQualifierDecl& declaration);

} // namespace Pegasus::embedding
