#include "cimxml/ElementRules.h"

#include "text/Ascii.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <iterator>
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

/// Particles in sequence, up to the first without tags.
using Model = std::array<Particle, 4>;

struct AttributeRule {
    std::string_view name;
    bool required = false;
};

/// Up to the first without a name.
using AttributeRules = std::array<AttributeRule, 9>;

// The text before the first `end`, which is taken away with it.
constexpr std::string_view takeWord(std::string_view& text, char end = ' ') {
    const std::string_view word = text.substr(0, text.find(end));
    text.remove_prefix(std::min(word.size() + 1, text.size()));
    return word;
}

// Of names with a space between; a required one begins with a star.
constexpr AttributeRules attributeRules(std::string_view names) {
    AttributeRules rules = {};
    for (AttributeRule& rule : rules) {
        rule.name = takeWord(names);
        rule.required = rule.name.substr(0, 1) == "*";
        rule.name.remove_prefix(rule.required ? 1 : 0);
    }
    return rules;
}

// As a DTD writes it, but for a space instead of a comma: names with | between, and behind them ?
// for an optional one, * for any number, + for one or more.
constexpr Model model(std::string_view text) {
    Model particles = {};
    for (Particle& particle : particles) {
        std::string_view names = takeWord(text);
        const char last = names.empty() ? ' ' : names.back();
        particle.optional = last == '?' || last == '*';
        particle.repeated = last == '*' || last == '+';
        names.remove_suffix(particle.optional || particle.repeated ? 1 : 0);
        while (!names.empty())
            particle.tags |= bitOf(takeWord(names, '|'));
    }
    return particles;
}

struct Rule {
    constexpr Rule(std::string_view element, std::string_view withAttributes = {},
                   std::string_view holds = {}, std::string_view otherwise = {})
        : name(element), attributes(attributeRules(withAttributes)), holdsText(holds == "#PCDATA"),
          content(model(holdsText ? "" : holds)), otherContent(model(otherwise)) {}

    std::string_view name;
    AttributeRules attributes;
    bool holdsText;
    Model content;
    Model otherContent; // which the first child decides
};

// Responses have more elements; a request has no place for them.
constexpr Rule rules[] = {
    // Messages
    {"CIM", "*CIMVERSION *DTDVERSION", "MESSAGE"},
    {"MESSAGE", "*ID *PROTOCOLVERSION", "SIMPLEREQ"},
    {"SIMPLEREQ", "", "CORRELATOR* IMETHODCALL|METHODCALL"},
    {"CORRELATOR", "*NAME *TYPE", "VALUE"},
    {"IMETHODCALL", "*NAME", "LOCALNAMESPACEPATH IPARAMVALUE*"},
    {"METHODCALL", "*NAME", "LOCALCLASSPATH|LOCALINSTANCEPATH PARAMVALUE*"},
    {"IPARAMVALUE", "*NAME",
     "VALUE|VALUE.ARRAY|VALUE.REFERENCE|CLASSNAME|INSTANCENAME|QUALIFIER.DECLARATION|CLASS|"
     "INSTANCE|VALUE.NAMEDINSTANCE?"},
    {"PARAMVALUE", "*NAME PARAMTYPE EmbeddedObject EMBEDDEDOBJECT",
     "VALUE|VALUE.REFERENCE|VALUE.ARRAY|VALUE.REFARRAY|CLASSNAME|INSTANCENAME|CLASS|INSTANCE|"
     "VALUE.NAMEDINSTANCE?"},
    // Names and paths
    {"NAMESPACE", "*NAME"},
    {"HOST", "", "#PCDATA"},
    {"LOCALNAMESPACEPATH", "", "NAMESPACE+"},
    {"NAMESPACEPATH", "", "HOST LOCALNAMESPACEPATH"},
    {"CLASSNAME", "*NAME"},
    {"LOCALCLASSPATH", "", "LOCALNAMESPACEPATH CLASSNAME"},
    {"CLASSPATH", "", "NAMESPACEPATH CLASSNAME"},
    {"INSTANCENAME", "*CLASSNAME", "KEYBINDING*", "KEYVALUE|VALUE.REFERENCE"},
    {"LOCALINSTANCEPATH", "", "LOCALNAMESPACEPATH INSTANCENAME"},
    {"INSTANCEPATH", "", "NAMESPACEPATH INSTANCENAME"},
    {"KEYBINDING", "*NAME", "KEYVALUE|VALUE.REFERENCE"},
    {"KEYVALUE", "VALUETYPE TYPE", "#PCDATA"},
    // Values
    {"VALUE", "", "#PCDATA"},
    {"VALUE.NULL"},
    {"VALUE.ARRAY", "", "VALUE|VALUE.NULL*"},
    {"VALUE.REFERENCE", "",
     "CLASSPATH|LOCALCLASSPATH|CLASSNAME|INSTANCEPATH|LOCALINSTANCEPATH|INSTANCENAME"},
    {"VALUE.REFARRAY", "", "VALUE.REFERENCE|VALUE.NULL*"},
    {"VALUE.NAMEDINSTANCE", "", "INSTANCENAME INSTANCE"},
    // Declarations
    {"INSTANCE", "*CLASSNAME", "QUALIFIER* PROPERTY|PROPERTY.ARRAY|PROPERTY.REFERENCE*"},
    {"QUALIFIER", "*NAME *TYPE PROPAGATED OVERRIDABLE TOSUBCLASS TOINSTANCE TRANSLATABLE",
     "VALUE|VALUE.ARRAY?"},
    {"PROPERTY", "*NAME *TYPE CLASSORIGIN PROPAGATED EmbeddedObject EMBEDDEDOBJECT",
     "QUALIFIER* VALUE?"},
    {"PROPERTY.ARRAY", "*NAME *TYPE ARRAYSIZE CLASSORIGIN PROPAGATED EmbeddedObject EMBEDDEDOBJECT",
     "QUALIFIER* VALUE.ARRAY?"},
    {"PROPERTY.REFERENCE", "*NAME REFERENCECLASS CLASSORIGIN PROPAGATED",
     "QUALIFIER* VALUE.REFERENCE?"},
    {"CLASS", "*NAME SUPERCLASS", "QUALIFIER* PROPERTY|PROPERTY.ARRAY|PROPERTY.REFERENCE* METHOD*"},
    {"METHOD", "*NAME TYPE CLASSORIGIN PROPAGATED",
     "QUALIFIER* PARAMETER|PARAMETER.REFERENCE|PARAMETER.ARRAY|PARAMETER.REFARRAY*"},
    {"PARAMETER", "*NAME *TYPE", "QUALIFIER*"},
    {"PARAMETER.REFERENCE", "*NAME REFERENCECLASS", "QUALIFIER*"},
    {"PARAMETER.ARRAY", "*NAME *TYPE ARRAYSIZE", "QUALIFIER*"},
    {"PARAMETER.REFARRAY", "*NAME REFERENCECLASS ARRAYSIZE", "QUALIFIER*"},
    {"QUALIFIER.DECLARATION",
     "*NAME *TYPE ISARRAY ARRAYSIZE OVERRIDABLE TOSUBCLASS TOINSTANCE TRANSLATABLE",
     "SCOPE? VALUE|VALUE.ARRAY?"},
    {"SCOPE", "CLASS ASSOCIATION REFERENCE PROPERTY METHOD PARAMETER INDICATION"},
};

// A model or a list that fills its array would have no end. The rules have the order of the names.
static_assert([] {
    bool good = std::size(rules) <= 64;
    Tags bit = 1;
    for (const Rule& rule : rules) {
        good = good && bitOf(rule.name) == bit && !rule.name.empty() &&
               rule.attributes.back().name.empty() && rule.content.back().tags == 0 &&
               rule.otherContent.back().tags == 0;
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
        if ((_rule.otherContent.front().tags & child) != 0)
            _at = _rule.otherContent.begin();
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
