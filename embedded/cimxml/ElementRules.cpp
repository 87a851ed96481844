#include "cimxml/ElementRules.h"

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
constexpr std::string_view elements =
    " CIM MESSAGE SIMPLEREQ CORRELATOR IMETHODCALL METHODCALL IPARAMVALUE PARAMVALUE NAMESPACE "
    "HOST LOCALNAMESPACEPATH NAMESPACEPATH CLASSNAME LOCALCLASSPATH CLASSPATH INSTANCENAME "
    "LOCALINSTANCEPATH INSTANCEPATH KEYBINDING KEYVALUE VALUE VALUE.NULL VALUE.ARRAY "
    "VALUE.REFERENCE VALUE.REFARRAY VALUE.NAMEDINSTANCE INSTANCE QUALIFIER PROPERTY "
    "PROPERTY.ARRAY PROPERTY.REFERENCE CLASS METHOD PARAMETER PARAMETER.REFERENCE "
    "PARAMETER.ARRAY PARAMETER.REFARRAY QUALIFIER.DECLARATION SCOPE ";

using Tags = std::uint64_t; // a bit for each

// The bit of the element that is called so. In a constant, a name that is none does not compile.
constexpr Tags bitOf(std::string_view name) {
    std::size_t at = elements.find(name);
    while (elements[at - 1] != ' ' || elements[at + name.size()] != ' ')
        at = elements.find(name, at + 1);
    Tags bit = 1;
    for (; at != 1; --at)
        bit <<= elements[at - 1] == ' ' ? 1U : 0U;
    return bit;
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

/// Up to the first without a name.
using AttributeRules = std::array<AttributeRule, 9>;

// Of names with a space between; a required one begins with a star.
constexpr AttributeRules attributes(std::string_view names) {
    AttributeRules rules = {};
    for (AttributeRule& rule : rules) {
        rule.required = names.substr(0, 1) == "*";
        names.remove_prefix(rule.required ? 1 : 0);
        rule.name = names.substr(0, names.find(' '));
        names.remove_prefix(std::min(rule.name.size() + 1, names.size()));
    }
    return rules;
}

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

constexpr Particle qualifiers = any("QUALIFIER");
constexpr Particle properties = any("PROPERTY", "PROPERTY.ARRAY", "PROPERTY.REFERENCE");

// Responses have more elements; a request has no place for them.
constexpr Rule rules[] = {
    // Messages
    {"CIM", attributes("*CIMVERSION *DTDVERSION"), {{one("MESSAGE")}}},
    {"MESSAGE", attributes("*ID *PROTOCOLVERSION"), {{one("SIMPLEREQ")}}},
    {"SIMPLEREQ", {}, {{any("CORRELATOR"), one("IMETHODCALL", "METHODCALL")}}},
    {"CORRELATOR", attributes("*NAME *TYPE"), {{one("VALUE")}}},
    {"IMETHODCALL", attributes("*NAME"), {{one("LOCALNAMESPACEPATH"), any("IPARAMVALUE")}}},
    {"METHODCALL",
     attributes("*NAME"),
     {{one("LOCALCLASSPATH", "LOCALINSTANCEPATH"), any("PARAMVALUE")}}},
    {"IPARAMVALUE",
     attributes("*NAME"),
     {{optional("VALUE", "VALUE.ARRAY", "VALUE.REFERENCE", "CLASSNAME", "INSTANCENAME",
                "QUALIFIER.DECLARATION", "CLASS", "INSTANCE", "VALUE.NAMEDINSTANCE")}}},
    {"PARAMVALUE",
     attributes("*NAME PARAMTYPE EmbeddedObject EMBEDDEDOBJECT"),
     {{optional("VALUE", "VALUE.REFERENCE", "VALUE.ARRAY", "VALUE.REFARRAY", "CLASSNAME",
                "INSTANCENAME", "CLASS", "INSTANCE", "VALUE.NAMEDINSTANCE")}}},
    // Names and paths
    {"NAMESPACE", attributes("*NAME")},
    textRule("HOST"),
    {"LOCALNAMESPACEPATH", {}, {{several("NAMESPACE")}}},
    {"NAMESPACEPATH", {}, {{one("HOST"), one("LOCALNAMESPACEPATH")}}},
    {"CLASSNAME", attributes("*NAME")},
    {"LOCALCLASSPATH", {}, {{one("LOCALNAMESPACEPATH"), one("CLASSNAME")}}},
    {"CLASSPATH", {}, {{one("NAMESPACEPATH"), one("CLASSNAME")}}},
    {"INSTANCENAME",
     attributes("*CLASSNAME"),
     {{any("KEYBINDING")}},
     Model{{one("KEYVALUE", "VALUE.REFERENCE")}}},
    {"LOCALINSTANCEPATH", {}, {{one("LOCALNAMESPACEPATH"), one("INSTANCENAME")}}},
    {"INSTANCEPATH", {}, {{one("NAMESPACEPATH"), one("INSTANCENAME")}}},
    {"KEYBINDING", attributes("*NAME"), {{one("KEYVALUE", "VALUE.REFERENCE")}}},
    textRule("KEYVALUE", attributes("VALUETYPE TYPE")),
    // Values
    textRule("VALUE"),
    {"VALUE.NULL"},
    {"VALUE.ARRAY", {}, {{any("VALUE", "VALUE.NULL")}}},
    {"VALUE.REFERENCE",
     {},
     {{one("CLASSPATH", "LOCALCLASSPATH", "CLASSNAME", "INSTANCEPATH", "LOCALINSTANCEPATH",
           "INSTANCENAME")}}},
    {"VALUE.REFARRAY", {}, {{any("VALUE.REFERENCE", "VALUE.NULL")}}},
    {"VALUE.NAMEDINSTANCE", {}, {{one("INSTANCENAME"), one("INSTANCE")}}},
    // Declarations
    {"INSTANCE", attributes("*CLASSNAME"), {{qualifiers, properties}}},
    {"QUALIFIER",
     attributes("*NAME *TYPE PROPAGATED OVERRIDABLE TOSUBCLASS TOINSTANCE TRANSLATABLE"),
     {{optional("VALUE", "VALUE.ARRAY")}}},
    {"PROPERTY",
     attributes("*NAME *TYPE CLASSORIGIN PROPAGATED EmbeddedObject EMBEDDEDOBJECT"),
     {{qualifiers, optional("VALUE")}}},
    {"PROPERTY.ARRAY",
     attributes("*NAME *TYPE ARRAYSIZE CLASSORIGIN PROPAGATED EmbeddedObject EMBEDDEDOBJECT"),
     {{qualifiers, optional("VALUE.ARRAY")}}},
    {"PROPERTY.REFERENCE",
     attributes("*NAME REFERENCECLASS CLASSORIGIN PROPAGATED"),
     {{qualifiers, optional("VALUE.REFERENCE")}}},
    {"CLASS", attributes("*NAME SUPERCLASS"), {{qualifiers, properties, any("METHOD")}}},
    {"METHOD",
     attributes("*NAME TYPE CLASSORIGIN PROPAGATED"),
     {{qualifiers,
       any("PARAMETER", "PARAMETER.REFERENCE", "PARAMETER.ARRAY", "PARAMETER.REFARRAY")}}},
    {"PARAMETER", attributes("*NAME *TYPE"), {{qualifiers}}},
    {"PARAMETER.REFERENCE", attributes("*NAME REFERENCECLASS"), {{qualifiers}}},
    {"PARAMETER.ARRAY", attributes("*NAME *TYPE ARRAYSIZE"), {{qualifiers}}},
    {"PARAMETER.REFARRAY", attributes("*NAME REFERENCECLASS ARRAYSIZE"), {{qualifiers}}},
    {"QUALIFIER.DECLARATION",
     attributes("*NAME *TYPE ISARRAY ARRAYSIZE OVERRIDABLE TOSUBCLASS TOINSTANCE TRANSLATABLE"),
     {{optional("SCOPE"), optional("VALUE", "VALUE.ARRAY")}}},
    {"SCOPE", attributes("CLASS ASSOCIATION REFERENCE PROPERTY METHOD PARAMETER INDICATION")},
};

// A model or a list that fills its array would have no end. The rules have the order of the names.
static_assert([] {
    bool good = std::size(rules) <= 64;
    Tags bit = 1;
    for (const Rule& rule : rules) {
        good = good && bitOf(rule.name) == bit && !rule.name.empty() &&
               rule.attributes.back().name.empty() && rule.content.back().tags == 0 &&
               (!rule.otherContent || rule.otherContent->back().tags == 0);
        bit <<= 1U;
    }
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
        if (known[i].required && (seen >> i & 1U) == 0)
            rejectNotValid(std::string(element.name()) + " without attribute " +
                           std::string(known[i].name));
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
        matcher.take(Tags{1} << static_cast<std::size_t>(&childRule - rules));
        check(child, childRule);
    }
    matcher.end();
}

} // namespace

void checkElement(const Element& element) { check(element, ruleOf(element)); }

std::string_view knownElement(std::string_view name) {
    const Rule* const rule = findRule(name);
    return rule == nullptr ? std::string_view() : rule->name;
}

} // namespace embedded::cimxml
