#include "register/Mof.h"

#include "register/Names.h"

#include <algorithm>
#include <regex>
#include <utility>

namespace registering {
namespace {

// The value of a qualifier, by which one without a value is true; null without the qualifier.
const mof::Literal* find(const std::vector<mof::Qualifier>& qualifiers, const char* name) {
    static const mof::Literal isThere{mof::Literal::Kind::Boolean, true, "", {}};
    for (const mof::Qualifier& qualifier : qualifiers)
        if (sameName(qualifier.name, name))
            return qualifier.value && !qualifier.value->items.empty()
                       ? &qualifier.value->items.front()
                       : &isThere;
    return nullptr;
}

bool isNull(const mof::PropertyInitializer& property) {
    return !property.value.isArray && property.value.items.front().kind == mof::Literal::Kind::Null;
}

Class summary(const mof::ClassDeclaration& declared) {
    Class result{declared.name, declared.superclass, "", {}, {}};
    if (const mof::Literal* version = find(declared.qualifiers, "Version"))
        result.version = version->text;
    for (const mof::Property& property : declared.properties) {
        if (!property.referenceClass.empty())
            addName(result.references, property.referenceClass);
        if (const mof::Literal* key = find(property.qualifiers, "Key"); key && key->boolean)
            result.keys.push_back(property.name);
    }
    return result;
}

Mof summary(mof::Specification declarations) {
    Mof result;
    for (mof::Declaration& declaration : declarations)
        if (auto* instance = std::get_if<Instance>(&declaration.what)) {
            auto& properties = instance->properties;
            properties.erase(std::remove_if(properties.begin(), properties.end(), isNull),
                             properties.end());
            result.instances.push_back(std::move(*instance));
        } else if (const auto* declared = std::get_if<mof::ClassDeclaration>(&declaration.what)) {
            result.classes.push_back(summary(*declared));
        } else {
            result.qualifiers.push_back(std::get<mof::QualifierDeclaration>(declaration.what).name);
        }
    return result;
}

std::string quoted(const std::string& text, char quote) {
    constexpr std::string_view escaped = "\b\t\n\f\r";
    constexpr std::string_view names = "btnfr";
    std::string result(1, quote);
    for (const char c : text)
        if (const std::size_t at = escaped.find(c); at != std::string_view::npos)
            result.append({'\\', names[at]});
        else if (c == quote || c == '\\')
            result.append({'\\', c});
        else
            result += c;
    return result + quote;
}

std::string written(const mof::Literal& literal) {
    switch (literal.kind) {
    case mof::Literal::Kind::String:
        return quoted(literal.text, '"');
    case mof::Literal::Kind::Character:
        return quoted(literal.text, '\'');
    default:
        return literal.text;
    }
}

std::string written(const mof::Value& value) {
    std::string items;
    for (const mof::Literal& item : value.items)
        items += (items.empty() ? "" : ", ") + written(item);
    return value.isArray ? "{" + items + "}" : items;
}

} // namespace

Mof readListing(const std::string& text, const std::string& origin) {
    // cimcli prints such a property by its inner type and without a semicolon; in MOF it is a
    // string.
    static const std::regex embedded(R"((^|\n +)(?:object|instance) (\w+(?:\[\d*\])?) *(?=\n))");
    return summary(mof::readText(std::regex_replace(text, embedded, "$1string $2;"), origin));
}

Mof readMofFile(const std::filesystem::path& file) { return summary(mof::readFile(file)); }

const mof::Value* find(const Instance& instance, const std::string& property) {
    for (const mof::PropertyInitializer& each : instance.properties)
        if (sameName(each.name, property))
            return &each.value;
    return nullptr;
}

std::vector<std::string> texts(const Instance& instance, const std::string& property) {
    std::vector<std::string> result;
    if (const mof::Value* value = find(instance, property))
        for (const mof::Literal& item : value->items)
            result.push_back(item.text);
    return result;
}

std::string text(const Instance& instance, const std::string& property) {
    const std::vector<std::string> all = texts(instance, property);
    return all.empty() ? "" : all.front();
}

std::string writeMof(const std::vector<Instance>& instances) {
    std::string text;
    for (const Instance& instance : instances) {
        text += "instance of " + instance.className + " {\n";
        for (const mof::PropertyInitializer& property : instance.properties)
            text += "    " + property.name + " = " + written(property.value) + ";\n";
        text += "};\n\n";
    }
    return text;
}

} // namespace registering
