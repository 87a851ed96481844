#include "cimxml/ElementRules.h"

#include "cimxml/Rejection.h"

#include <algorithm>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace embedded::cimxml {
namespace {

struct Rule {
    // Separated by blanks; "!" marks the required ones.
    std::string_view attributes;
    // "#text", or content models separated by "/" of which one must match: particles in sequence
    // separated by ",", each a name or "(name|name)", once or as its "?", "*" or "+" says.
    std::string_view content;
};

#define FLAVORS "OVERRIDABLE TOSUBCLASS TOINSTANCE TRANSLATABLE"
#define PROPERTIES "(PROPERTY|PROPERTY.ARRAY|PROPERTY.REFERENCE)*"

// Responses have more elements; a request has no place for them.
const std::unordered_map<std::string_view, Rule>& rules() {
    static const std::unordered_map<std::string_view, Rule> table = {
        // Messages
        {"CIM", {"CIMVERSION! DTDVERSION!", "MESSAGE"}},
        {"MESSAGE", {"ID! PROTOCOLVERSION!", "SIMPLEREQ"}},
        {"SIMPLEREQ", {"", "CORRELATOR*,(IMETHODCALL|METHODCALL)"}},
        {"CORRELATOR", {"NAME! TYPE!", "VALUE"}},
        {"IMETHODCALL", {"NAME!", "LOCALNAMESPACEPATH,IPARAMVALUE*"}},
        {"METHODCALL", {"NAME!", "(LOCALCLASSPATH|LOCALINSTANCEPATH),PARAMVALUE*"}},
        {"IPARAMVALUE",
         {"NAME!",
          "(VALUE|VALUE.ARRAY|VALUE.REFERENCE|CLASSNAME|INSTANCENAME|QUALIFIER.DECLARATION|CLASS|"
          "INSTANCE|VALUE.NAMEDINSTANCE)?"}},
        {"PARAMVALUE",
         {"NAME! PARAMTYPE EmbeddedObject EMBEDDEDOBJECT",
          "(VALUE|VALUE.REFERENCE|VALUE.ARRAY|VALUE.REFARRAY|CLASSNAME|INSTANCENAME|CLASS|"
          "INSTANCE|VALUE.NAMEDINSTANCE)?"}},
        // Names and paths
        {"NAMESPACE", {"NAME!", ""}},
        {"HOST", {"", "#text"}},
        {"LOCALNAMESPACEPATH", {"", "NAMESPACE+"}},
        {"NAMESPACEPATH", {"", "HOST,LOCALNAMESPACEPATH"}},
        {"CLASSNAME", {"NAME!", ""}},
        {"LOCALCLASSPATH", {"", "LOCALNAMESPACEPATH,CLASSNAME"}},
        {"CLASSPATH", {"", "NAMESPACEPATH,CLASSNAME"}},
        {"INSTANCENAME", {"CLASSNAME!", "KEYBINDING*/KEYVALUE/VALUE.REFERENCE"}},
        {"LOCALINSTANCEPATH", {"", "LOCALNAMESPACEPATH,INSTANCENAME"}},
        {"INSTANCEPATH", {"", "NAMESPACEPATH,INSTANCENAME"}},
        {"KEYBINDING", {"NAME!", "(KEYVALUE|VALUE.REFERENCE)"}},
        {"KEYVALUE", {"VALUETYPE TYPE", "#text"}},
        // Values
        {"VALUE", {"", "#text"}},
        {"VALUE.NULL", {"", ""}},
        {"VALUE.ARRAY", {"", "(VALUE|VALUE.NULL)*"}},
        {"VALUE.REFERENCE",
         {"", "(CLASSPATH|LOCALCLASSPATH|CLASSNAME|INSTANCEPATH|LOCALINSTANCEPATH|INSTANCENAME)"}},
        {"VALUE.REFARRAY", {"", "(VALUE.REFERENCE|VALUE.NULL)*"}},
        {"VALUE.NAMEDINSTANCE", {"", "INSTANCENAME,INSTANCE"}},
        // Declarations
        {"INSTANCE", {"CLASSNAME!", "QUALIFIER*," PROPERTIES}},
        {"QUALIFIER", {"NAME! TYPE! PROPAGATED " FLAVORS, "(VALUE|VALUE.ARRAY)?"}},
        {"PROPERTY",
         {"NAME! TYPE! CLASSORIGIN PROPAGATED EmbeddedObject EMBEDDEDOBJECT", "QUALIFIER*,VALUE?"}},
        {"PROPERTY.ARRAY",
         {"NAME! TYPE! ARRAYSIZE CLASSORIGIN PROPAGATED EmbeddedObject EMBEDDEDOBJECT",
          "QUALIFIER*,VALUE.ARRAY?"}},
        {"PROPERTY.REFERENCE",
         {"NAME! REFERENCECLASS CLASSORIGIN PROPAGATED", "QUALIFIER*,VALUE.REFERENCE?"}},
        {"CLASS", {"NAME! SUPERCLASS", "QUALIFIER*," PROPERTIES ",METHOD*"}},
        {"METHOD",
         {"NAME! TYPE CLASSORIGIN PROPAGATED",
          "QUALIFIER*,(PARAMETER|PARAMETER.REFERENCE|PARAMETER.ARRAY|PARAMETER.REFARRAY)*"}},
        {"PARAMETER", {"NAME! TYPE!", "QUALIFIER*"}},
        {"PARAMETER.REFERENCE", {"NAME! REFERENCECLASS", "QUALIFIER*"}},
        {"PARAMETER.ARRAY", {"NAME! TYPE! ARRAYSIZE", "QUALIFIER*"}},
        {"PARAMETER.REFARRAY", {"NAME! REFERENCECLASS ARRAYSIZE", "QUALIFIER*"}},
        {"QUALIFIER.DECLARATION",
         {"NAME! TYPE! ISARRAY ARRAYSIZE " FLAVORS, "SCOPE?,(VALUE|VALUE.ARRAY)?"}},
        {"SCOPE", {"CLASS ASSOCIATION REFERENCE PROPERTY METHOD PARAMETER INDICATION", ""}},
    };
    return table;
}

#undef FLAVORS
#undef PROPERTIES

// Takes what stands before the next `separator` off the front of `text`.
std::string_view takeItem(std::string_view& text, char separator) {
    const std::size_t end = std::min(text.find(separator), text.size());
    const std::string_view item = text.substr(0, end);
    text.remove_prefix(std::min(end + 1, text.size()));
    return item;
}

bool isAmong(std::string_view names, std::string_view name) {
    while (!names.empty()) {
        if (takeItem(names, '|') == name) {
            return true;
        }
    }
    return false;
}

// No particle can take what the next one could, so taking as many as possible is enough.
bool matches(std::string_view model, const std::vector<std::string_view>& children) {
    std::size_t next = 0;
    while (!model.empty()) {
        std::string_view particle = takeItem(model, ',');
        const bool optional = particle.back() == '?' || particle.back() == '*';
        const bool repeated = particle.back() == '+' || particle.back() == '*';
        particle.remove_suffix(optional || repeated ? 1 : 0);
        if (particle.front() == '(') {
            particle = particle.substr(1, particle.size() - 2);
        }
        std::size_t taken = 0;
        while (next < children.size() && (repeated || taken == 0) &&
               isAmong(particle, children[next])) {
            ++next;
            ++taken;
        }
        if (taken == 0 && !optional) {
            return false;
        }
    }
    return next == children.size();
}

bool matchesOne(std::string_view models, const std::vector<std::string_view>& children) {
    do {
        if (matches(takeItem(models, '/'), children)) {
            return true;
        }
    } while (!models.empty());
    return false;
}

void checkAttributes(const pugi::xml_node& element, std::string_view attributes) {
    std::vector<std::string_view> known;
    while (!attributes.empty()) {
        std::string_view name = takeItem(attributes, ' ');
        const bool required = name.back() == '!';
        name.remove_suffix(required ? 1 : 0);
        known.push_back(name);
        if (required && !element.attribute(std::string(name).c_str())) {
            rejectNotValid(std::string(element.name()) + " without attribute " + std::string(name));
        }
    }
    for (const pugi::xml_attribute& attribute : element.attributes()) {
        const std::string_view name = attribute.name();
        if (std::find(known.begin(), known.end(), name) == known.end() &&
            name.substr(0, 3) != "xml") {
            rejectNotValid(std::string(element.name()) + " with unknown attribute " +
                           std::string(name));
        }
    }
}

bool isBlankText(std::string_view text) {
    return text.find_first_not_of(" \t\r\n") == std::string_view::npos;
}

} // namespace

void checkElement(const pugi::xml_node& element) {
    const auto rule = rules().find(element.name());
    if (rule == rules().end()) {
        rejectNotValid("unknown element " + std::string(element.name()));
    }
    checkAttributes(element, rule->second.attributes);

    const bool holdsText = rule->second.content == "#text";
    std::vector<std::string_view> children;
    for (const pugi::xml_node& child : element.children()) {
        if (child.type() == pugi::node_element) {
            children.emplace_back(child.name());
        } else if (!holdsText && !isBlankText(child.value())) {
            rejectNotValid("text in " + std::string(element.name()));
        }
    }
    if (holdsText ? !children.empty() : !matchesOne(rule->second.content, children)) {
        rejectNotValid("missing or misplaced elements in " + std::string(element.name()));
    }
    for (const pugi::xml_node& child : element.children()) {
        if (child.type() == pugi::node_element) {
            checkElement(child);
        }
    }
}

std::string textOf(const pugi::xml_node& element) {
    std::string text;
    for (const pugi::xml_node& piece : element.children()) {
        text += piece.value();
    }
    return text;
}

} // namespace embedded::cimxml
