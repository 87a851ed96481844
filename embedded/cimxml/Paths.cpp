#include "cimxml/Paths.h"

#include "cimxml/Names.h"
#include "cimxml/Rejection.h"
#include "cimxml/Values.h"
#include "embedding/Text.h"
#include "limits/Limits.h"

#include <Pegasus/Common/CIMValue.h>

namespace embedded::cimxml {

using namespace Pegasus;
using namespace Pegasus::embedding;

namespace {

// VALUETYPE names the kind; a TYPE without it implies one.
CIMKeyBinding::Type keyType(const Element& keyValue) {
    if (const Attribute kind = keyValue.attribute("VALUETYPE")) {
        const std::string_view name = kind.value;
        if (name == "string")
            return CIMKeyBinding::STRING;
        if (name == "boolean")
            return CIMKeyBinding::BOOLEAN;
        if (name == "numeric")
            return CIMKeyBinding::NUMERIC;
        rejectNotValid("VALUETYPE \"" + std::string(name) + "\"");
    }
    const Attribute type = keyValue.attribute("TYPE");
    switch (type ? readType(type) : CIMTYPE_STRING) {
    case CIMTYPE_BOOLEAN:
        return CIMKeyBinding::BOOLEAN;
    case CIMTYPE_STRING:
    case CIMTYPE_CHAR16:
    case CIMTYPE_DATETIME:
        return CIMKeyBinding::STRING;
    default:
        return CIMKeyBinding::NUMERIC;
    }
}

CIMKeyBinding readKeyValue(const CIMName& name, const Element& keyValue) {
    const CIMKeyBinding::Type type = keyType(keyValue);
    const std::string_view text = keyValue.text();
    switch (type) {
    case CIMKeyBinding::BOOLEAN:
        return CIMKeyBinding(name, CIMValue(readBoolean(text)));
    case CIMKeyBinding::NUMERIC:
        return CIMKeyBinding(name, readNumberText(text), type);
    default:
        return CIMKeyBinding(name, fromUtf8(text), type);
    }
}

// `holder` has one KEYVALUE or VALUE.REFERENCE.
CIMKeyBinding readKey(const CIMName& name, const Element& holder, const SoleKey& soleKey,
                      unsigned depth) {
    if (const Element keyValue = holder.child("KEYVALUE"))
        return readKeyValue(name, keyValue);
    const CIMObjectPath path = readReference(holder.child("VALUE.REFERENCE"), soleKey, depth + 1);
    if (path.toString().size() > limits::referenceLength)
        throwInvalid("A reference in a key is longer than " +
                     std::to_string(limits::referenceLength) + " characters.");
    return CIMKeyBinding(name, CIMValue(path));
}

} // namespace

void checkMembers(const Element& element) {
    std::size_t count = 0;
    for (Element child = element.child(); child; child = child.nextSibling())
        ++count;
    if (count > limits::members)
        throwInvalid("More than " + std::to_string(limits::members) + " elements in " +
                     std::string(element.name()) + ".");
}

CIMObjectPath readInstanceName(const Element& instanceName, const SoleKey& soleKey,
                               unsigned depth) {
    const CIMName className = readName(instanceName.attribute("CLASSNAME"));
    checkMembers(instanceName);
    Array<CIMKeyBinding> keys;
    for (const Element& key : instanceName.children("KEYBINDING"))
        keys.append(readKey(readName(key.attribute("NAME")), key, soleKey, depth));
    if (instanceName.child("KEYVALUE") || instanceName.child("VALUE.REFERENCE"))
        keys.append(readKey(soleKey(className), instanceName, soleKey, depth));
    return CIMObjectPath(String(), CIMNamespaceName(), className, keys);
}

CIMObjectPath readReference(const Element& reference, const SoleKey& soleKey, unsigned depth) {
    if (depth > limits::referenceDepth)
        throwInvalid("References in keys are nested deeper than " +
                     std::to_string(limits::referenceDepth) + ".");
    // VALUE.REFERENCE / [..PATH /] [NAMESPACEPATH / HOST, LOCALNAMESPACEPATH], ..NAME
    Element object = reference.child();
    String host;
    CIMNamespaceName nameSpace;
    if (const Element full = object.child("NAMESPACEPATH")) {
        host = fromUtf8(full.child("HOST").text());
        nameSpace = readNamespace(full.child("LOCALNAMESPACEPATH"));
    } else if (const Element local = object.child("LOCALNAMESPACEPATH")) {
        nameSpace = readNamespace(local);
    }
    if (!nameSpace.isNull())
        object = object.child().nextSibling(); // of two
    const bool isClass = object.name() == "CLASSNAME";
    CIMObjectPath path =
        isClass ? CIMObjectPath(String(), nameSpace, readName(object.attribute("NAME")))
                : readInstanceName(object, soleKey, depth);
    path.setNameSpace(nameSpace);
    path.setHost(host);
    return path;
}

} // namespace embedded::cimxml
