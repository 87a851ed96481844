#include "cimxml/Instances.h"

#include "cimxml/Names.h"
#include "cimxml/Rejection.h"
#include "cimxml/Values.h"

#include <string_view>

namespace embedded::cimxml {

using namespace Pegasus;
using namespace Pegasus::embedding;

namespace {

// Each with the default that DSP0203 gives it.
struct FlavorAttribute {
    const char* name;
    const CIMFlavor& flavor;
    bool absent;
};

CIMFlavor readFlavor(const Element& element) {
    const FlavorAttribute attributes[] = {{"OVERRIDABLE", CIMFlavor::OVERRIDABLE, true},
                                          {"TOSUBCLASS", CIMFlavor::TOSUBCLASS, true},
                                          {"TOINSTANCE", CIMFlavor::TOINSTANCE, false},
                                          {"TRANSLATABLE", CIMFlavor::TRANSLATABLE, false}};
    CIMFlavor flavor = CIMFlavor::NONE;
    for (const FlavorAttribute& attribute : attributes)
        if (readFlag(element.attribute(attribute.name), attribute.absent))
            flavor.addFlavor(attribute.flavor);
    return flavor;
}

CIMQualifier readQualifier(const Element& element, const SoleKey& soleKey) {
    return CIMQualifier(readName(element.attribute("NAME")),
                        readValue(element, readType(element.attribute("TYPE")), false, soleKey),
                        readFlavor(element), readFlag(element.attribute("PROPAGATED"), false));
}

Uint32 readArraySize(const Attribute& attribute) {
    const std::optional<Uint32> size = readUint32(attribute.value);
    if (attribute && !size)
        rejectNotValid("ARRAYSIZE \"" + std::string(attribute.value) + "\"");
    return size.value_or(0);
}

// PROPERTY, PROPERTY.ARRAY or PROPERTY.REFERENCE.
CIMProperty readProperty(const Element& element, const SoleKey& soleKey) {
    checkMembers(element);
    const std::string_view kind = element.name();
    const bool isReference = kind == "PROPERTY.REFERENCE";
    const CIMType type = isReference ? CIMTYPE_REFERENCE : readType(element.attribute("TYPE"));
    CIMProperty property(readName(element.attribute("NAME")),
                         readValue(element, type, kind == "PROPERTY.ARRAY", soleKey),
                         readArraySize(element.attribute("ARRAYSIZE")),
                         readOptionalName(element.attribute("REFERENCECLASS")),
                         readOptionalName(element.attribute("CLASSORIGIN")),
                         readFlag(element.attribute("PROPAGATED"), false));
    for (const Element& qualifier : element.children("QUALIFIER"))
        property.addQualifier(readQualifier(qualifier, soleKey));
    return property;
}

} // namespace

CIMInstance readInstance(const Element& instance, const SoleKey& soleKey) {
    checkMembers(instance);
    CIMInstance result(readName(instance.attribute("CLASSNAME")));
    for (const Element& member : instance.children())
        if (member.name() == "QUALIFIER")
            result.addQualifier(readQualifier(member, soleKey));
        else
            result.addProperty(readProperty(member, soleKey));
    return result;
}

CIMInstance readNamedInstance(const Element& namedInstance, const SoleKey& soleKey) {
    CIMInstance result = readInstance(namedInstance.child("INSTANCE"), soleKey);
    result.setPath(readInstanceName(namedInstance.child("INSTANCENAME"), soleKey));
    return result;
}

} // namespace embedded::cimxml
