#include "ObjectXml.h"

#include "hosting/Text.h"

#include <Pegasus/Common/CIMClass.h>
#include <Pegasus/Common/CIMInstance.h>
#include <Pegasus/Common/CIMMethod.h>
#include <Pegasus/Common/CIMParameter.h>

#include <algorithm>
#include <string>

namespace Pegasus {

namespace {

std::string utf8Of(const String& text) {
    return hosting::utf8(text);
}

/// Characters that XML would read otherwise, and control characters and outer blanks, which it
/// would lose, are written as references.
std::string escaped(const String& text) {
    const std::string plain = utf8Of(text);
    std::string result;
    for (std::size_t i = 0; i < plain.size(); ++i) {
        const auto c = static_cast<unsigned char>(plain[i]);
        const bool outerBlank = c == ' ' && (i == 0 || i + 1 == plain.size());
        if (c == '&')
            result += "&amp;";
        else if (c == '<')
            result += "&lt;";
        else if (c == '>')
            result += "&gt;";
        else if (c == '"')
            result += "&quot;";
        else if (c == '\'')
            result += "&apos;";
        else if (c < 0x20 || c == 0x7F || outerBlank)
            result += "&#" + std::to_string(c) + ";";
        else
            result += plain[i];
    }
    return result;
}

/// Collects elements, each on lines of its own.
class Writer {
  public:
    void object(const CIMConstObject& object) {
        if (object.isClass())
            classElement(CIMConstClass(object));
        else
            instance(object);
    }

    std::string text;

  private:
    class Attributes {
      public:
        Attributes& add(const char* name, const String& value) {
            text += std::string(" ") + name + "=\"" + escaped(value) + "\"";
            return *this;
        }
        Attributes& addName(const char* name, const CIMName& value) {
            return value.isNull() ? *this : add(name, value.getString());
        }
        Attributes& addIf(bool condition, const char* name, const char* value) {
            return condition ? add(name, String(value)) : *this;
        }
        std::string text;
    };

    void open(const std::string& element, const Attributes& attributes = Attributes()) {
        text += "<" + element + attributes.text + ">\n";
    }

    void close(const std::string& element) { text += "</" + element + ">\n"; }

    void leaf(const std::string& element, const String& content,
              const Attributes& attributes = Attributes()) {
        text += "<" + element + attributes.text + ">" + escaped(content) + "</" + element + ">\n";
    }

    void instance(const CIMConstObject& object) {
        // The blank before '>' belongs to the form.
        text += "<INSTANCE" +
                Attributes().add("CLASSNAME", object.getClassName().getString()).text + " >\n";
        qualifiers(object);
        properties(object);
        close("INSTANCE");
    }

    void classElement(const CIMConstClass& cimClass) {
        const CIMName& superClass = cimClass.getSuperClassName();
        text += "<CLASS" + Attributes().add("NAME", cimClass.getClassName().getString()).text + " ";
        if (!superClass.isNull())
            text += Attributes().add("SUPERCLASS", superClass.getString()).text + " ";
        text += ">\n";
        qualifiers(cimClass);
        properties(cimClass);
        for (Uint32 i = 0; i < cimClass.getMethodCount(); ++i)
            method(cimClass.getMethod(i));
        close("CLASS");
    }

    template <class Element>
    void qualifiers(const Element& element) {
        for (Uint32 i = 0; i < element.getQualifierCount(); ++i)
            qualifier(element.getQualifier(i));
    }

    template <class Element>
    void properties(const Element& element) {
        for (Uint32 i = 0; i < element.getPropertyCount(); ++i)
            property(element.getProperty(i));
    }

    void qualifier(const CIMConstQualifier& qualifier) {
        const CIMFlavor& flavor = qualifier.getFlavor();
        open("QUALIFIER",
             Attributes()
                 .add("NAME", qualifier.getName().getString())
                 .add("TYPE", String(cimTypeToString(qualifier.getType())))
                 .addIf(qualifier.getPropagated() != 0, "PROPAGATED", "true")
                 .addIf(!flavor.hasFlavor(CIMFlavor::OVERRIDABLE), "OVERRIDABLE", "false")
                 .addIf(!flavor.hasFlavor(CIMFlavor::TOSUBCLASS), "TOSUBCLASS", "false")
                 .addIf(flavor.hasFlavor(CIMFlavor::TRANSLATABLE), "TRANSLATABLE", "true"));
        value(qualifier.getValue());
        close("QUALIFIER");
    }

    void property(const CIMConstProperty& property) {
        const CIMType type = property.getType();
        const bool isEmbedded = type == CIMTYPE_OBJECT || type == CIMTYPE_INSTANCE;
        const std::string element = type == CIMTYPE_REFERENCE ? "PROPERTY.REFERENCE"
                                    : property.isArray()      ? "PROPERTY.ARRAY"
                                                              : "PROPERTY";
        Attributes attributes;
        attributes.add("NAME", property.getName().getString());
        attributes.text += " "; // belongs to the form, like that of INSTANCE
        attributes.addName("CLASSORIGIN", property.getClassOrigin())
            .addIf(property.getPropagated(), "PROPAGATED", "true");
        if (type == CIMTYPE_REFERENCE)
            attributes.addName("REFERENCECLASS", property.getReferenceClassName());
        else
            attributes.add("TYPE", String(cimTypeToString(isEmbedded ? CIMTYPE_STRING : type)));
        addArraySize(attributes, property.getArraySize());
        if (isEmbedded) {
            attributes.add("EMBEDDEDOBJECT",
                           String(type == CIMTYPE_INSTANCE ? "instance" : "object"));
        }
        open(element, attributes);
        qualifiers(property);
        value(property.getValue());
        close(element);
    }

    void method(const CIMConstMethod& method) {
        open("METHOD", Attributes()
                           .add("NAME", method.getName().getString())
                           .add("TYPE", String(cimTypeToString(method.getType())))
                           .addName("CLASSORIGIN", method.getClassOrigin())
                           .addIf(method.getPropagated(), "PROPAGATED", "true"));
        qualifiers(method);
        for (Uint32 i = 0; i < method.getParameterCount(); ++i)
            parameter(method.getParameter(i));
        close("METHOD");
    }

    void parameter(const CIMConstParameter& parameter) {
        const bool isReference = parameter.getType() == CIMTYPE_REFERENCE;
        const std::string element =
            std::string("PARAMETER") + (isReference && parameter.isArray() ? ".REFARRAY"
                                        : isReference                      ? ".REFERENCE"
                                        : parameter.isArray()              ? ".ARRAY"
                                                                           : "");
        Attributes attributes;
        attributes.add("NAME", parameter.getName().getString());
        if (isReference)
            attributes.addName("REFERENCECLASS", parameter.getReferenceClassName());
        else
            attributes.add("TYPE", String(cimTypeToString(parameter.getType())));
        addArraySize(attributes, parameter.getArraySize());
        open(element, attributes);
        qualifiers(parameter);
        close(element);
    }

    static void addArraySize(Attributes& attributes, Uint32 size) {
        attributes.addIf(size != 0, "ARRAYSIZE", std::to_string(size).c_str());
    }

    void value(const CIMValue& value) {
        if (value.isNull())
            return;
        switch (value.getType()) {
        case CIMTYPE_STRING:
            return elements<String>(value);
        case CIMTYPE_OBJECT:
            return elements<CIMObject>(value);
        case CIMTYPE_INSTANCE:
            return elements<CIMInstance>(value);
        case CIMTYPE_REFERENCE:
            return elements<CIMObjectPath>(value);
        case CIMTYPE_CHAR16:
            return elements<Char16>(value);
        default:
            return words(value);
        }
    }

    template <class T>
    void elements(const CIMValue& value) {
        Array<T> array;
        if (!value.isArray()) {
            T scalar;
            value.get(scalar);
            return element(scalar);
        }
        value.get(array);
        const Array<T>& constant = array;
        open("VALUE.ARRAY");
        for (Uint32 i = 0; i < constant.size(); ++i)
            element(constant[i]);
        close("VALUE.ARRAY");
    }

    /// Of types whose texts have no blanks.
    void words(const CIMValue& value) {
        const String all = value.toString();
        if (!value.isArray())
            return leaf("VALUE", all);
        open("VALUE.ARRAY");
        Uint32 begin = 0;
        for (Uint32 i = 0; i < value.getArraySize(); ++i) {
            const Uint32 end = all.find(begin, Char16(' '));
            leaf("VALUE", all.subString(begin, end - begin));
            begin = end + 1;
        }
        close("VALUE.ARRAY");
    }

    void element(const String& x) { leaf("VALUE", x); }
    void element(const Char16& x) { leaf("VALUE", String(&x, 1)); }
    void element(const CIMConstObject& x) { leaf("VALUE", objectXml(x)); }
    void element(const CIMObject& x) { element(CIMConstObject(x)); }
    void element(const CIMInstance& x) { element(CIMConstObject(x)); }
    void element(const CIMObjectPath& x) {
        open("VALUE.REFERENCE");
        path(x);
        close("VALUE.REFERENCE");
    }

    void path(const CIMObjectPath& path) {
        const bool hasNameSpace = !path.getNameSpace().isNull();
        const bool hasHost = hasNameSpace && path.getHost().size() != 0;
        if (hasHost) {
            open("INSTANCEPATH");
            open("NAMESPACEPATH");
            leaf("HOST", path.getHost());
            nameSpace(path.getNameSpace());
            close("NAMESPACEPATH");
        } else if (hasNameSpace) {
            open("LOCALINSTANCEPATH");
            nameSpace(path.getNameSpace());
        }
        instanceName(path);
        if (hasNameSpace)
            close(hasHost ? "INSTANCEPATH" : "LOCALINSTANCEPATH");
    }

    void nameSpace(const CIMNamespaceName& name) {
        open("LOCALNAMESPACEPATH");
        const String& path = name.getString();
        for (Uint32 begin = 0; begin <= path.size();) {
            const Uint32 slash = std::min(path.find(begin, Char16('/')), path.size());
            text += "<NAMESPACE" +
                    Attributes().add("NAME", path.subString(begin, slash - begin)).text + "/>\n";
            begin = slash + 1;
        }
        close("LOCALNAMESPACEPATH");
    }

    void instanceName(const CIMObjectPath& path) {
        open("INSTANCENAME", Attributes().add("CLASSNAME", path.getClassName().getString()));
        const Array<CIMKeyBinding>& keys = path.getKeyBindings();
        for (Uint32 i = 0; i < keys.size(); ++i) {
            open("KEYBINDING", Attributes().add("NAME", keys[i].getName().getString()));
            if (keys[i].getType() == CIMKeyBinding::REFERENCE)
                element(CIMObjectPath(keys[i].getValue()));
            else
                leaf("KEYVALUE", keys[i].getValue(),
                     Attributes().add("VALUETYPE", valueType(keys[i])));
            close("KEYBINDING");
        }
        close("INSTANCENAME");
    }

    static String valueType(const CIMKeyBinding& key) {
        switch (key.getType()) {
        case CIMKeyBinding::BOOLEAN:
            return String("boolean");
        case CIMKeyBinding::NUMERIC:
            return String("numeric");
        default:
            return String("string");
        }
    }
};

} // namespace

String objectXml(const CIMConstObject& object) {
    Writer writer;
    writer.object(object);
    return String(writer.text.c_str(), static_cast<Uint32>(writer.text.size()));
}

String CIMObject::toString() const {
    return objectXml(*this);
}

String CIMConstObject::toString() const {
    return objectXml(*this);
}

} // namespace Pegasus
