#include "ObjectPathReps.h"

#include "embedding/XmlWriter.h"

#include <algorithm>

namespace Pegasus::embedding {

namespace {

void appendLocalNamespacePath(std::string& out, const CIMNamespaceName& nameSpace) {
    appendElement(
        out, "LOCALNAMESPACEPATH",
        [&] {
            std::string name;
            appendEscaped(name, nameSpace.getString());
            for (std::size_t begin = 0; begin < name.size();) {
                const std::size_t end = std::min(name.find('/', begin), name.size());
                out.append("<NAMESPACE NAME=\"").append(name, begin, end - begin).append("\"/>\n");
                begin = end + 1;
            }
        });
}

void appendNamespacePath(std::string& out, const CIMObjectPath& path) {
    appendElement(
        out, "NAMESPACEPATH",
        [&] {
            out += "<HOST>";
            appendEscaped(out, path.getHost());
            out += "</HOST>\n";
            appendLocalNamespacePath(out, path.getNameSpace());
        });
}

void appendKeyValue(std::string& out, const CIMKeyBinding& key) {
    const CIMKeyBinding::Type type = key.getType();
    out += "<KEYVALUE VALUETYPE=\"";
    out += type == CIMKeyBinding::BOOLEAN   ? "boolean"
           : type == CIMKeyBinding::NUMERIC ? "numeric"
                                            : "string";
    out += "\">";
    appendEscaped(out, key.getValue());
    out += "</KEYVALUE>\n";
}

} // namespace

void appendClassName(std::string& out, const CIMName& className) {
    out += "<CLASSNAME";
    appendAttribute(out, "NAME", className.getString());
    out += "/>\n";
}

void appendInstanceName(std::string& out, const CIMObjectPath& path) {
    out += "<INSTANCENAME";
    appendAttribute(out, "CLASSNAME", path.getClassName().getString());
    out += ">\n";
    const Array<CIMKeyBinding>& keys = path.getKeyBindings();
    for (Uint32 i = 0; i < keys.size(); ++i) {
        out += "<KEYBINDING";
        appendAttribute(out, "NAME", keys[i].getName().getString());
        out += ">\n";
        if (keys[i].getType() == CIMKeyBinding::REFERENCE)
            appendReference(out, CIMKeyBindingRep::of(keys[i]).path());
        else
            appendKeyValue(out, keys[i]);
        out += "</KEYBINDING>\n";
    }
    out += "</INSTANCENAME>\n";
}

void appendInstancePath(std::string& out, const CIMObjectPath& path) {
    appendElement(
        out, "INSTANCEPATH",
        [&] {
            appendNamespacePath(out, path);
            appendInstanceName(out, path);
        });
}

void appendClassPath(std::string& out, const CIMObjectPath& path) {
    appendElement(
        out, "CLASSPATH",
        [&] {
            appendNamespacePath(out, path);
            appendClassName(out, path.getClassName());
        });
}

void appendReference(std::string& out, const CIMObjectPath& path) {
    appendElement(
        out, "VALUE.REFERENCE",
        [&] {
            if (path.getHost().size() != 0)
                appendInstancePath(out, path);
            else if (!path.getNameSpace().isNull())
                appendElement(
                    out, "LOCALINSTANCEPATH",
                    [&] {
                        appendLocalNamespacePath(out, path.getNameSpace());
                        appendInstanceName(out, path);
                    });
            else
                appendInstanceName(out, path);
        });
}

} // namespace Pegasus::embedding
