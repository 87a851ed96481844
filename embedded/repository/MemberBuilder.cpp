#include "repository/MemberBuilder.h"

#include "repository/References.h"
#include "repository/Types.h"
#include "repository/ValueBuilder.h"

namespace embedded::repository {

using namespace Pegasus;

namespace {

std::string typeText(CIMType type, bool isArray, Uint32 arraySize) {
    const std::string size = arraySize == 0 ? "" : std::to_string(arraySize);
    return cimTypeToString(type) + (isArray ? "[" + size + "]" : std::string());
}

/// An element that names another one in its Override replaces one of that name.
void checkOverridesNothing(const std::vector<mof::Qualifier>& qualifiers,
                           const std::string& description) {
    const mof::Qualifier* written = findWritten(qualifiers, "override");
    if (written && written->value && written->value->items.size() == 1 &&
        written->value->items.front().kind != mof::Literal::Kind::Null)
        refuse(written->where, description, " overrides nothing: no superclass has it");
}

CIMName referenceClassOf(const std::string& type, const std::string& referenceClass,
                         const mof::Location& where) {
    return type == "ref" ? cimNameAt(referenceClass, where) : CIMName();
}

} // namespace

const mof::Qualifier* findWritten(const std::vector<mof::Qualifier>& qualifiers,
                                  const std::string& name) {
    for (const mof::Qualifier& each : qualifiers)
        if (folded(each.name) == name)
            return &each;
    return nullptr;
}

bool isSwitchedOn(const std::vector<mof::Qualifier>& qualifiers, const std::string& name) {
    const mof::Qualifier* written = findWritten(qualifiers, name);
    return written && (!written->value || (written->value->items.size() == 1 &&
                                           written->value->items.front().boolean));
}

std::string MemberBuilder::description(const char* kind, const std::string& member) const {
    return std::string(kind) + " " + _declaration.name + "." + member;
}

CIMConstProperty MemberBuilder::overridden(const mof::Property& written,
                                           const std::string& description) const {
    const auto* found = _superclass
                            ? _superclass->properties.find(cimNameAt(written.name, written.where))
                            : nullptr;
    if (!found) {
        checkOverridesNothing(written.qualifiers, description);
        return {};
    }
    CIMConstProperty inherited = found->declared;
    const std::string before =
        typeText(inherited.getType(), inherited.isArray(), inherited.getArraySize());
    const std::string now =
        typeText(cimTypeAt(written.type, written.where), written.isArray, written.arraySize);
    if (now != before)
        refuse(written.where, description, " overrides one of type ", before, " with type ", now);
    return inherited;
}

CIMProperty MemberBuilder::property(const mof::Property& written) const {
    const bool isReference = written.type == "ref";
    const ValueTarget target{description(isReference ? "reference" : "property", written.name),
                             cimTypeAt(written.type, written.where), written.isArray,
                             written.arraySize};
    if (isReference && written.isArray)
        refuse(written.where, target.description, " cannot be an array");
    const CIMConstProperty inherited = overridden(written, target.description);
    const bool overrides = !inherited.isUninitialized();

    const ReferenceReader readPath = [&](const mof::Literal& literal) {
        return parsePath(literal, target.description);
    };
    const CIMValue value =
        written.value ? buildValue(*written.value, target, readPath) : nullValue(target);
    CIMProperty built(cimNameAt(written.name, written.where), value, written.arraySize,
                      referenceClassOf(written.type, written.referenceClass, written.where),
                      overrides ? inherited.getClassOrigin()
                                : cimNameAt(_declaration.name, _declaration.where));
    const CIMScope& scope = isReference ? CIMScope::REFERENCE : CIMScope::PROPERTY;
    const QualifierList above = overrides ? qualifiersOf(inherited) : QualifierList();
    addQualifiers(built, withRestricted(buildQualifiers(written.qualifiers, _nameSpace.qualifiers(),
                                                        {target.description, scope}, above),
                                        above));
    if (written.isArray && isSet(built, "Key"))
        refuse(written.where, target.description, " is an array and cannot be a key");
    return built;
}

CIMConstMethod MemberBuilder::overridden(const mof::Method& written,
                                         const std::string& description) const {
    const auto* found =
        _superclass ? _superclass->methods.find(cimNameAt(written.name, written.where)) : nullptr;
    if (!found) {
        checkOverridesNothing(written.qualifiers, description);
        return {};
    }
    CIMConstMethod inherited = found->declared;
    if (inherited.getType() != cimTypeAt(written.returnType, written.where))
        refuse(written.where, description, " overrides one that returns ",
               cimTypeToString(inherited.getType()), " with one that returns ", written.returnType);
    return inherited;
}

CIMParameter MemberBuilder::parameter(const mof::Parameter& written,
                                      const std::string& methodName) const {
    CIMParameter built(cimNameAt(written.name, written.where),
                       cimTypeAt(written.type, written.where), written.isArray, written.arraySize,
                       referenceClassOf(written.type, written.referenceClass, written.where));
    addQualifiers(built, buildQualifiers(written.qualifiers, _nameSpace.qualifiers(),
                                         {description("parameter", methodName + "." + written.name),
                                          CIMScope::PARAMETER}));
    return built;
}

CIMMethod MemberBuilder::method(const mof::Method& written) const {
    const std::string methodDescription = description("method", written.name);
    const CIMConstMethod inherited = overridden(written, methodDescription);
    const bool overrides = !inherited.isUninitialized();
    CIMMethod built(
        cimNameAt(written.name, written.where), cimTypeAt(written.returnType, written.where),
        overrides ? inherited.getClassOrigin() : cimNameAt(_declaration.name, _declaration.where));
    addQualifiers(built, buildQualifiers(written.qualifiers, _nameSpace.qualifiers(),
                                         {methodDescription, CIMScope::METHOD},
                                         overrides ? qualifiersOf(inherited) : QualifierList()));
    for (const mof::Parameter& each : written.parameters) {
        if (built.findParameter(cimNameAt(each.name, each.where)) != noIndex)
            refuse(each.where, methodDescription, " has two parameters named ", each.name);
        built.addParameter(parameter(each, written.name));
    }
    return built;
}

} // namespace embedded::repository
