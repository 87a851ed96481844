#include "cimxml/Text.h"
#include "cimxml/Writer.h"

namespace embedded::cimxml {

using namespace Pegasus;

namespace {

// Those that have DSP0203's default are left out. TOINSTANCE is never written: servers of this
// kind do not, and no client asks for it.
void appendFlavor(std::string& out, const CIMFlavor& flavor) {
    if (!flavor.hasFlavor(CIMFlavor::OVERRIDABLE)) {
        out += " OVERRIDABLE=\"false\"";
    }
    if (!flavor.hasFlavor(CIMFlavor::TOSUBCLASS)) {
        out += " TOSUBCLASS=\"false\"";
    }
    if (flavor.hasFlavor(CIMFlavor::TRANSLATABLE)) {
        out += " TRANSLATABLE=\"true\"";
    }
}

// An embedded object goes over the wire as a string.
const char* wireType(CIMType type) {
    return cimTypeToString(type == CIMTYPE_OBJECT || type == CIMTYPE_INSTANCE ? CIMTYPE_STRING
                                                                              : type);
}

void appendTypeName(std::string& out, const char* type) {
    out.append(" TYPE=\"").append(type).append("\"");
}

void appendArraySize(std::string& out, Uint32 size) {
    if (size != 0) {
        out += " ARRAYSIZE=\"" + std::to_string(size) + '"';
    }
}

void appendEmbeddedObject(std::string& out, CIMType type) {
    if (type == CIMTYPE_OBJECT || type == CIMTYPE_INSTANCE) {
        // DSP0203 changed the spelling; clients of either version are served.
        const std::string kind = cimTypeToString(type);
        out += " EmbeddedObject=\"" + kind + "\" EMBEDDEDOBJECT=\"" + kind + '"';
    }
}

// Of a property or a method.
template <class Member>
void appendOrigin(std::string& out, const Member& member, bool includeClassOrigin) {
    if (includeClassOrigin && !member.getClassOrigin().isNull()) {
        appendAttribute(out, "CLASSORIGIN", member.getClassOrigin().getString());
    }
    if (member.getPropagated()) {
        out += " PROPAGATED=\"true\"";
    }
}

void appendReferenceClass(std::string& out, const CIMName& className) {
    if (!className.isNull()) {
        appendAttribute(out, "REFERENCECLASS", className.getString());
    }
}

template <class Qualified>
void appendQualifiers(std::string& out, const Qualified& element) {
    for (Uint32 i = 0; i < element.getQualifierCount(); ++i) {
        appendQualifier(out, element.getQualifier(i));
    }
}

template <class Holder>
void appendListedProperties(std::string& out, const Holder& holder, const InstanceFilter& filter) {
    const auto append = [&](Uint32 index) {
        appendProperty(out, holder.getProperty(index), filter.includeQualifiers,
                       filter.includeClassOrigin);
    };
    if (filter.propertyList.isNull()) {
        for (Uint32 i = 0; i < holder.getPropertyCount(); ++i) {
            append(i);
        }
        return;
    }
    for (Uint32 i = 0; i < filter.propertyList.size(); ++i) {
        if (const Uint32 index = holder.findProperty(filter.propertyList[i]);
            index != PEG_NOT_FOUND) {
            append(index);
        }
    }
}

void appendParameter(std::string& out, const CIMConstParameter& parameter) {
    const bool isReference = parameter.getType() == CIMTYPE_REFERENCE;
    const std::string name =
        isReference ? (parameter.isArray() ? "PARAMETER.REFARRAY" : "PARAMETER.REFERENCE")
                    : (parameter.isArray() ? "PARAMETER.ARRAY" : "PARAMETER");
    out += '<' + name;
    appendAttribute(out, "NAME", parameter.getName().getString());
    if (isReference) {
        appendReferenceClass(out, parameter.getReferenceClassName());
    } else {
        appendTypeName(out, cimTypeToString(parameter.getType()));
    }
    appendArraySize(out, parameter.getArraySize());
    out += ">\n";
    appendQualifiers(out, parameter);
    out += "</" + name + ">\n";
}

void appendMethod(std::string& out, const CIMConstMethod& method) {
    out += "<METHOD";
    appendAttribute(out, "NAME", method.getName().getString());
    appendTypeName(out, cimTypeToString(method.getType()));
    appendOrigin(out, method, true);
    out += ">\n";
    appendQualifiers(out, method);
    for (Uint32 i = 0; i < method.getParameterCount(); ++i) {
        appendParameter(out, method.getParameter(i));
    }
    out += "</METHOD>\n";
}

} // namespace

void appendQualifier(std::string& out, const CIMConstQualifier& qualifier) {
    out += "<QUALIFIER";
    appendAttribute(out, "NAME", qualifier.getName().getString());
    appendTypeName(out, wireType(qualifier.getType()));
    if (qualifier.getPropagated() != 0) {
        out += " PROPAGATED=\"true\"";
    }
    appendFlavor(out, qualifier.getFlavor());
    out += ">\n";
    appendValue(out, qualifier.getValue());
    out += "</QUALIFIER>\n";
}

void appendProperty(std::string& out, const CIMConstProperty& property, bool includeQualifiers,
                    bool includeClassOrigin) {
    const CIMType type = property.getType();
    const bool isReference = type == CIMTYPE_REFERENCE;
    const std::string name = isReference          ? "PROPERTY.REFERENCE"
                             : property.isArray() ? "PROPERTY.ARRAY"
                                                  : "PROPERTY";
    out += '<' + name;
    appendAttribute(out, "NAME", property.getName().getString());
    out += ' '; // so that the next attribute stands after two blanks
    appendReferenceClass(out, property.getReferenceClassName());
    appendOrigin(out, property, includeClassOrigin);
    if (!isReference) {
        appendTypeName(out, wireType(type));
        appendArraySize(out, property.getArraySize());
        appendEmbeddedObject(out, type);
    }
    out += ">\n";
    if (includeQualifiers) {
        appendQualifiers(out, property);
    }
    appendValue(out, property.getValue());
    out += "</" + name + ">\n";
}

void appendInstance(std::string& out, const CIMConstInstance& instance,
                    const InstanceFilter& filter) {
    out += "<INSTANCE";
    appendAttribute(out, "CLASSNAME", instance.getClassName().getString());
    out += " >\n";
    if (filter.includeQualifiers) {
        appendQualifiers(out, instance);
    }
    appendListedProperties(out, instance, filter);
    out += "</INSTANCE>\n";
}

void appendClass(std::string& out, const CIMConstClass& cimClass) {
    out += "<CLASS";
    appendAttribute(out, "NAME", cimClass.getClassName().getString());
    out += ' ';
    if (!cimClass.getSuperClassName().isNull()) {
        appendAttribute(out, "SUPERCLASS", cimClass.getSuperClassName().getString());
        out += ' ';
    }
    out += ">\n";
    appendQualifiers(out, cimClass);
    appendListedProperties(out, cimClass, InstanceFilter());
    for (Uint32 i = 0; i < cimClass.getMethodCount(); ++i) {
        appendMethod(out, cimClass.getMethod(i));
    }
    out += "</CLASS>\n";
}

void appendObject(std::string& out, const CIMObject& object, const InstanceFilter& filter) {
    if (object.isClass()) {
        appendClass(out, CIMConstClass(object));
    } else {
        appendInstance(out, CIMConstInstance(object), filter);
    }
}

void appendQualifierDeclaration(std::string& out, const CIMQualifierDecl& declaration) {
    struct ScopeAttribute {
        const char* name;
        const CIMScope& scope;
    };
    const ScopeAttribute scopes[] = {
        {"CLASS", CIMScope::CLASS},          {"ASSOCIATION", CIMScope::ASSOCIATION},
        {"REFERENCE", CIMScope::REFERENCE},  {"PROPERTY", CIMScope::PROPERTY},
        {"METHOD", CIMScope::METHOD},        {"PARAMETER", CIMScope::PARAMETER},
        {"INDICATION", CIMScope::INDICATION}};
    out += "<QUALIFIER.DECLARATION";
    appendAttribute(out, "NAME", declaration.getName().getString());
    appendTypeName(out, wireType(declaration.getType()));
    if (declaration.isArray()) {
        out += " ISARRAY=\"true\"";
        appendArraySize(out, declaration.getArraySize());
    }
    appendFlavor(out, declaration.getFlavor());
    out += ">\n";
    std::string scope;
    for (const ScopeAttribute& attribute : scopes) {
        if (declaration.getScope().hasScope(attribute.scope)) {
            scope.append(" ").append(attribute.name).append("=\"true\"");
        }
    }
    if (!scope.empty()) {
        out += "<SCOPE" + scope + "/>"; // no line feed here
    }
    appendValue(out, declaration.getValue());
    out += "</QUALIFIER.DECLARATION>\n";
}

} // namespace embedded::cimxml
