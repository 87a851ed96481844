#include "cimxml/ElementRules.h"

#include "cimxml/Rejection.h"
#include "text/Ascii.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <iterator>
#include <optional>
#include <string_view>
#include <unordered_map>

namespace embedded::cimxml {
namespace {

// In the order of the rules below.
enum Tag : std::uint8_t {
    tagCim,
    tagMessage,
    tagSimpleReq,
    tagCorrelator,
    tagIMethodCall,
    tagMethodCall,
    tagIParamValue,
    tagParamValue,
    tagNamespace,
    tagHost,
    tagLocalNamespacePath,
    tagNamespacePath,
    tagClassName,
    tagLocalClassPath,
    tagClassPath,
    tagInstanceName,
    tagLocalInstancePath,
    tagInstancePath,
    tagKeyBinding,
    tagKeyValue,
    tagValue,
    tagValueNull,
    tagValueArray,
    tagValueReference,
    tagValueRefArray,
    tagValueNamedInstance,
    tagInstance,
    tagQualifier,
    tagProperty,
    tagPropertyArray,
    tagPropertyReference,
    tagClass,
    tagMethod,
    tagParameter,
    tagParameterReference,
    tagParameterArray,
    tagParameterRefArray,
    tagQualifierDeclaration,
    tagScope,
    tagCount
};

using Tags = std::uint64_t; // a bit for each
static_assert(tagCount <= 64);

constexpr Tags bitOf(std::size_t tag) {
    return Tags{1} << tag;
}

/// One of some elements, once or as the flags say.
struct Particle {
    Tags tags = 0;
    bool optional = false;
    bool repeated = false;
};

template <class... Some>
constexpr Particle one(Some... tags) {
    return {(bitOf(tags) | ...), false, false};
}

template <class... Some>
constexpr Particle optional(Some... tags) {
    return {(bitOf(tags) | ...), true, false};
}

template <class... Some>
constexpr Particle any(Some... tags) {
    return {(bitOf(tags) | ...), true, true};
}

template <class... Some>
constexpr Particle several(Some... tags) {
    return {(bitOf(tags) | ...), false, true};
}

/// Particles in sequence, up to the first without tags.
using Model = std::array<Particle, 4>;

struct AttributeRule {
    std::string_view name;
    bool required = false;
};

constexpr AttributeRule required(std::string_view name) {
    return {name, true};
}

/// Up to the first without a name.
using AttributeRules = std::array<AttributeRule, 9>;

struct Rule {
    std::string_view name;
    AttributeRules attributes = {};
    Model content = {};
    std::optional<Model> otherContent = {}; // which the first child decides
    bool holdsText = false;
};

constexpr Rule textRule(std::string_view name, AttributeRules attributes = {}) {
    return {name, attributes, {}, {}, true};
}

#define FLAVORS                                                                                    \
    {"OVERRIDABLE"}, {"TOSUBCLASS"}, {"TOINSTANCE"}, {                                             \
        "TRANSLATABLE"                                                                             \
    }
#define EMBEDDING                                                                                  \
    {"EmbeddedObject"}, {                                                                          \
        "EMBEDDEDOBJECT"                                                                           \
    }

constexpr Particle qualifiers = any(tagQualifier);
constexpr Particle properties = any(tagProperty, tagPropertyArray, tagPropertyReference);

// Responses have more elements; a request has no place for them.
constexpr std::array<Rule, tagCount> rules = {{
    // Messages
    {"CIM", {{required("CIMVERSION"), required("DTDVERSION")}}, {{one(tagMessage)}}},
    {"MESSAGE", {{required("ID"), required("PROTOCOLVERSION")}}, {{one(tagSimpleReq)}}},
    {"SIMPLEREQ", {}, {{any(tagCorrelator), one(tagIMethodCall, tagMethodCall)}}},
    {"CORRELATOR", {{required("NAME"), required("TYPE")}}, {{one(tagValue)}}},
    {"IMETHODCALL", {{required("NAME")}}, {{one(tagLocalNamespacePath), any(tagIParamValue)}}},
    {"METHODCALL",
     {{required("NAME")}},
     {{one(tagLocalClassPath, tagLocalInstancePath), any(tagParamValue)}}},
    {"IPARAMVALUE",
     {{required("NAME")}},
     {{optional(tagValue, tagValueArray, tagValueReference, tagClassName, tagInstanceName,
                tagQualifierDeclaration, tagClass, tagInstance, tagValueNamedInstance)}}},
    {"PARAMVALUE",
     {{required("NAME"), {"PARAMTYPE"}, EMBEDDING}},
     {{optional(tagValue, tagValueReference, tagValueArray, tagValueRefArray, tagClassName,
                tagInstanceName, tagClass, tagInstance, tagValueNamedInstance)}}},
    // Names and paths
    {"NAMESPACE", {{required("NAME")}}},
    textRule("HOST"),
    {"LOCALNAMESPACEPATH", {}, {{several(tagNamespace)}}},
    {"NAMESPACEPATH", {}, {{one(tagHost), one(tagLocalNamespacePath)}}},
    {"CLASSNAME", {{required("NAME")}}},
    {"LOCALCLASSPATH", {}, {{one(tagLocalNamespacePath), one(tagClassName)}}},
    {"CLASSPATH", {}, {{one(tagNamespacePath), one(tagClassName)}}},
    {"INSTANCENAME",
     {{required("CLASSNAME")}},
     {{any(tagKeyBinding)}},
     Model{{one(tagKeyValue, tagValueReference)}}},
    {"LOCALINSTANCEPATH", {}, {{one(tagLocalNamespacePath), one(tagInstanceName)}}},
    {"INSTANCEPATH", {}, {{one(tagNamespacePath), one(tagInstanceName)}}},
    {"KEYBINDING", {{required("NAME")}}, {{one(tagKeyValue, tagValueReference)}}},
    textRule("KEYVALUE", {{{"VALUETYPE"}, {"TYPE"}}}),
    // Values
    textRule("VALUE"),
    {"VALUE.NULL"},
    {"VALUE.ARRAY", {}, {{any(tagValue, tagValueNull)}}},
    {"VALUE.REFERENCE",
     {},
     {{one(tagClassPath, tagLocalClassPath, tagClassName, tagInstancePath, tagLocalInstancePath,
           tagInstanceName)}}},
    {"VALUE.REFARRAY", {}, {{any(tagValueReference, tagValueNull)}}},
    {"VALUE.NAMEDINSTANCE", {}, {{one(tagInstanceName), one(tagInstance)}}},
    // Declarations
    {"INSTANCE", {{required("CLASSNAME")}}, {{qualifiers, properties}}},
    {"QUALIFIER",
     {{required("NAME"), required("TYPE"), {"PROPAGATED"}, FLAVORS}},
     {{optional(tagValue, tagValueArray)}}},
    {"PROPERTY",
     {{required("NAME"), required("TYPE"), {"CLASSORIGIN"}, {"PROPAGATED"}, EMBEDDING}},
     {{qualifiers, optional(tagValue)}}},
    {"PROPERTY.ARRAY",
     {{required("NAME"),
       required("TYPE"),
       {"ARRAYSIZE"},
       {"CLASSORIGIN"},
       {"PROPAGATED"},
       EMBEDDING}},
     {{qualifiers, optional(tagValueArray)}}},
    {"PROPERTY.REFERENCE",
     {{required("NAME"), {"REFERENCECLASS"}, {"CLASSORIGIN"}, {"PROPAGATED"}}},
     {{qualifiers, optional(tagValueReference)}}},
    {"CLASS", {{required("NAME"), {"SUPERCLASS"}}}, {{qualifiers, properties, any(tagMethod)}}},
    {"METHOD",
     {{required("NAME"), {"TYPE"}, {"CLASSORIGIN"}, {"PROPAGATED"}}},
     {{qualifiers,
       any(tagParameter, tagParameterReference, tagParameterArray, tagParameterRefArray)}}},
    {"PARAMETER", {{required("NAME"), required("TYPE")}}, {{qualifiers}}},
    {"PARAMETER.REFERENCE", {{required("NAME"), {"REFERENCECLASS"}}}, {{qualifiers}}},
    {"PARAMETER.ARRAY", {{required("NAME"), required("TYPE"), {"ARRAYSIZE"}}}, {{qualifiers}}},
    {"PARAMETER.REFARRAY", {{required("NAME"), {"REFERENCECLASS"}, {"ARRAYSIZE"}}}, {{qualifiers}}},
    {"QUALIFIER.DECLARATION",
     {{required("NAME"), required("TYPE"), {"ISARRAY"}, {"ARRAYSIZE"}, FLAVORS}},
     {{optional(tagScope), optional(tagValue, tagValueArray)}}},
    {"SCOPE",
     {{{"CLASS"},
       {"ASSOCIATION"},
       {"REFERENCE"},
       {"PROPERTY"},
       {"METHOD"},
       {"PARAMETER"},
       {"INDICATION"}}}},
}};

#undef FLAVORS
#undef EMBEDDING

// A model or a list that fills its array would have no end.
static_assert([] {
    bool good = true;
    for (const Rule& rule : rules)
        good = good && !rule.name.empty() && rule.attributes.back().name.empty() &&
               rule.content.back().tags == 0 &&
               (!rule.otherContent || rule.otherContent->back().tags == 0);
    return good;
}());

const Rule* findRule(std::string_view name) {
    static const auto byName = [] {
        std::unordered_map<std::string_view, const Rule*> made;
        for (const Rule& rule : rules)
            made.emplace(rule.name, &rule);
        return made;
    }();
    const auto found = byName.find(name);
    return found == byName.end() ? nullptr : found->second;
}

const Rule& ruleOf(const Element& element) {
    const Rule* const rule = findRule(element.name());
    if (rule == nullptr)
        rejectNotValid("unknown element " + std::string(element.name()));
    return *rule;
}

void checkAttributes(const Element& element, const AttributeRules& known) {
    unsigned seen = 0; // a bit for each known one
    for (const Attribute* at = element.beginAttributes(); at != element.endAttributes(); ++at) {
        const auto* const rule =
            std::find_if(known.begin(), known.end(),
                         [&](const AttributeRule& row) { return row.name == at->name; });
        if (rule != known.end()) {
            seen |= 1U << static_cast<unsigned>(rule - known.begin());
        } else if (at->name.substr(0, 3) != "xml") {
            rejectNotValid(std::string(element.name()) + " with unknown attribute " +
                           std::string(at->name));
        }
    }
    for (std::size_t i = 0; !known[i].name.empty(); ++i) {
        if (known[i].required && (seen >> i & 1U) == 0) {
            rejectNotValid(std::string(element.name()) + " without attribute " +
                           std::string(known[i].name));
        }
    }
}

/// Takes the children of an element as its model allows. No particle can take what the next one
/// could, so taking as many as possible is enough.
class Matcher {
  public:
    Matcher(const Element& element, const Rule& rule) : _element(element), _rule(rule) {}

    void take(Tags child) {
        // Not only of the first child: for a later one, what begins there has been taken.
        if (_rule.otherContent && (_rule.otherContent->front().tags & child) != 0)
            _at = _rule.otherContent->begin();
        while ((_at->tags & child) == 0 || (_taken && !_at->repeated))
            leaveParticle();
        _taken = true;
    }

    void end() {
        while (_at->tags != 0)
            leaveParticle();
    }

  private:
    // There is always one more than a model has, without tags, which cannot be left.
    void leaveParticle() {
        if (!_taken && !_at->optional)
            rejectNotValid("missing or misplaced elements in " + std::string(_element.name()));
        ++_at;
        _taken = false;
    }

    const Element& _element;
    const Rule& _rule;
    Model::const_iterator _at = _rule.content.begin();
    bool _taken = false;
};

void check(const Element& element, const Rule& rule) {
    checkAttributes(element, rule.attributes);
    if (!rule.holdsText && (element.isMixed() || !text::trimmed(element.text()).empty()))
        rejectNotValid("text in " + std::string(element.name()));
    Matcher matcher(element, rule);
    for (const Element& child : element.children()) {
        const Rule& childRule = ruleOf(child);
        matcher.take(bitOf(static_cast<std::size_t>(&childRule - rules.data())));
        check(child, childRule);
    }
    matcher.end();
}

} // namespace

void checkElement(const Element& element) {
    check(element, ruleOf(element));
}

std::string_view knownElement(std::string_view name) {
    const Rule* const rule = findRule(name);
    return rule == nullptr ? std::string_view() : rule->name;
}

} // namespace embedded::cimxml
