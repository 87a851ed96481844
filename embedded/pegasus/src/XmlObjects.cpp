#include "CIMPropertyListRep.h"
#include "Reps.h"

#include "embedding/Text.h"
#include "embedding/XmlWriter.h"

#include <algorithm>
#include <charconv>
#include <utility>
#include <vector>

namespace Pegasus {

namespace embedding {

namespace {

/// Those that have DSP0203's default are left out. TOINSTANCE is never written: servers of this
/// kind do not, and no client asks for it.
void appendFlavor(std::string& out, const CIMFlavor& flavor) {
    if (!flavor.hasFlavor(CIMFlavor::OVERRIDABLE))
        out += " OVERRIDABLE=\"false\"";
    if (!flavor.hasFlavor(CIMFlavor::TOSUBCLASS))
        out += " TOSUBCLASS=\"false\"";
    if (flavor.hasFlavor(CIMFlavor::TRANSLATABLE))
        out += " TRANSLATABLE=\"true\"";
}

/// An embedded object goes over the wire as a string.
bool isEmbedded(CIMType type) { return type == CIMTYPE_OBJECT || type == CIMTYPE_INSTANCE; }

void appendType(std::string& out, CIMType type) {
    out.append(" TYPE=\"").append(cimTypeToString(type)) += '"';
}

void appendWireType(std::string& out, CIMType type) {
    appendType(out, isEmbedded(type) ? CIMTYPE_STRING : type);
}

void appendArraySize(std::string& out, Uint32 size) {
    if (size != 0) {
        char digits[10];
        const std::to_chars_result end = std::to_chars(digits, digits + sizeof digits, size);
        out.append(" ARRAYSIZE=\"").append(digits, end.ptr) += '"';
    }
}

void appendReferenceClass(std::string& out, const CIMName& className) {
    if (!className.isNull())
        appendAttribute(out, "REFERENCECLASS", className.getString());
}

/// Of a property or a method.
template <class Member>
void appendOrigin(std::string& out, const Member& member, bool includeClassOrigin) {
    if (includeClassOrigin && !member.classOrigin.isNull())
        appendAttribute(out, "CLASSORIGIN", member.classOrigin.getString());
    if (member.propagated)
        out += " PROPAGATED=\"true\"";
}

void append(std::string& out, const CIMQualifierRep& qualifier) {
    out += "<QUALIFIER";
    appendAttribute(out, "NAME", qualifier.name().getString());
    appendType(out, qualifier.value.getType());
    if (qualifier.propagated)
        out += " PROPAGATED=\"true\"";
    appendFlavor(out, qualifier.flavor);
    out += ">\n";
    appendValue(out, qualifier.value);
    out += "</QUALIFIER>\n";
}

void append(std::string& out, const CIMParameterRep& parameter);
void append(std::string& out, const CIMMethodRep& method);

template <class Handle>
void appendAll(std::string& out, const NamedElements<Handle>& elements) {
    for (const Handle& element : elements)
        append(out, repOf(element));
}

void append(std::string& out, const CIMPropertyRep& property, bool includeQualifiers,
            bool includeClassOrigin) {
    const CIMType type = property.value.getType();
    const bool isReference = type == CIMTYPE_REFERENCE;
    const std::string_view name = isReference                ? "PROPERTY.REFERENCE"
                                  : property.value.isArray() ? "PROPERTY.ARRAY"
                                                             : "PROPERTY";
    (out += '<').append(name);
    appendAttribute(out, "NAME", property.name().getString());
    out += ' '; // so that the next attribute stands after two blanks
    appendReferenceClass(out, property.referenceClassName);
    appendOrigin(out, property, includeClassOrigin);
    if (!isReference) {
        appendWireType(out, type);
        appendArraySize(out, property.arraySize);
        // DSP0203 changed the spelling; clients of either version are served.
        if (type == CIMTYPE_OBJECT)
            out += R"( EmbeddedObject="object" EMBEDDEDOBJECT="object")";
        else if (type == CIMTYPE_INSTANCE)
            out += R"( EmbeddedObject="instance" EMBEDDEDOBJECT="instance")";
    }
    out += ">\n";
    if (includeQualifiers)
        appendAll(out, property.qualifiers);
    appendValue(out, property.value);
    out.append("</").append(name).append(">\n");
}

void appendProperties(std::string& out, const CIMObjectRep& object, const InstanceFilter& filter) {
    const auto appendOne = [&](const CIMProperty& property) {
        append(out, repOf(property), filter.includeQualifiers, filter.includeClassOrigin);
    };
    if (filter.propertyList.isNull()) {
        for (const CIMProperty& property : object.properties)
            appendOne(property);
        return;
    }
    // The list may be longer than there are properties: each of these is looked for in it.
    std::vector<std::pair<Uint32, const CIMProperty*>> wanted;
    for (const CIMProperty& property : object.properties) {
        const Uint32 place =
            CIMPropertyListRep::of(filter.propertyList).find(repOf(property).name());
        if (place != PEG_NOT_FOUND)
            wanted.emplace_back(place, &property);
    }
    std::sort(wanted.begin(), wanted.end());
    for (const auto& [place, property] : wanted)
        appendOne(*property);
}

void append(std::string& out, const CIMParameterRep& parameter) {
    const bool isReference = parameter.type == CIMTYPE_REFERENCE;
    const std::string_view name =
        isReference ? (parameter.isArray ? "PARAMETER.REFARRAY" : "PARAMETER.REFERENCE")
                    : (parameter.isArray ? "PARAMETER.ARRAY" : "PARAMETER");
    (out += '<').append(name);
    appendAttribute(out, "NAME", parameter.name().getString());
    if (isReference)
        appendReferenceClass(out, parameter.referenceClassName);
    else
        appendType(out, parameter.type);
    appendArraySize(out, parameter.arraySize);
    out += ">\n";
    appendAll(out, parameter.qualifiers);
    out.append("</").append(name).append(">\n");
}

void append(std::string& out, const CIMMethodRep& method) {
    out += "<METHOD";
    appendAttribute(out, "NAME", method.name().getString());
    appendType(out, method.type);
    appendOrigin(out, method, true);
    out += ">\n";
    appendAll(out, method.qualifiers);
    appendAll(out, method.parameters);
    out += "</METHOD>\n";
}

void append(std::string& out, const CIMClassRep& cimClass) {
    out += "<CLASS";
    appendAttribute(out, "NAME", cimClass.className().getString());
    out += ' ';
    if (!cimClass.superClassName.isNull()) {
        appendAttribute(out, "SUPERCLASS", cimClass.superClassName.getString());
        out += ' ';
    }
    out += ">\n";
    appendAll(out, cimClass.qualifiers);
    appendProperties(out, cimClass, InstanceFilter());
    appendAll(out, cimClass.methods);
    out += "</CLASS>\n";
}

void append(std::string& out, const CIMObjectRep& object, const InstanceFilter& filter) {
    if (object.isClass())
        return append(out, static_cast<const CIMClassRep&>(object));
    out += "<INSTANCE";
    appendAttribute(out, "CLASSNAME", object.className().getString());
    out += " >\n";
    if (filter.includeQualifiers)
        appendAll(out, object.qualifiers);
    appendProperties(out, object, filter);
    out += "</INSTANCE>\n";
}

} // namespace

void appendQualifier(std::string& out, const CIMConstQualifier& qualifier) {
    append(out, repOf(qualifier));
}

void appendProperty(std::string& out, const CIMConstProperty& property, bool includeQualifiers,
                    bool includeClassOrigin) {
    append(out, repOf(property), includeQualifiers, includeClassOrigin);
}

void appendInstance(std::string& out, const CIMConstInstance& instance,
                    const InstanceFilter& filter) {
    append(out, repOf(instance), filter);
}

void appendClass(std::string& out, const CIMConstClass& cimClass) {
    append(out, classRepOf(cimClass));
}

void appendObject(std::string& out, const CIMConstObject& object, const InstanceFilter& filter) {
    append(out, repOf(object), filter);
}

void appendQualifierDeclaration(std::string& out, const CIMQualifierDecl& declaration) {
    struct ScopeAttribute {
        const char* attribute;
        const CIMScope& scope;
    };
    const ScopeAttribute scopes[] = {{" CLASS=\"true\"", CIMScope::CLASS},
                                     {" ASSOCIATION=\"true\"", CIMScope::ASSOCIATION},
                                     {" REFERENCE=\"true\"", CIMScope::REFERENCE},
                                     {" PROPERTY=\"true\"", CIMScope::PROPERTY},
                                     {" METHOD=\"true\"", CIMScope::METHOD},
                                     {" PARAMETER=\"true\"", CIMScope::PARAMETER},
                                     {" INDICATION=\"true\"", CIMScope::INDICATION}};
    out += "<QUALIFIER.DECLARATION";
    appendAttribute(out, "NAME", declaration.getName().getString());
    appendWireType(out, declaration.getType());
    if (declaration.isArray()) {
        out += " ISARRAY=\"true\"";
        appendArraySize(out, declaration.getArraySize());
    }
    appendFlavor(out, declaration.getFlavor());
    out += ">\n";
    std::string scope;
    for (const auto& [attribute, kind] : scopes)
        if (declaration.getScope().hasScope(kind))
            scope += attribute;
    if (!scope.empty())
        out.append("<SCOPE").append(scope).append("/>"); // no line feed here
    appendValue(out, declaration.getValue());
    out += "</QUALIFIER.DECLARATION>\n";
}

} // namespace embedding

String CIMObjectReads::toString() const {
    std::string text;
    embedding::append(text, initialized(_rep), embedding::InstanceFilter());
    return embedding::fromUtf8(text);
}

} // namespace Pegasus
