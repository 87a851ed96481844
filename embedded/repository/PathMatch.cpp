#include "repository/PathMatch.h"

#include "repository/Integers.h"
#include "repository/Types.h"

#include <Pegasus/Common/Array.h>
#include <Pegasus/Common/Exception.h>

#include <algorithm>

namespace embedded::repository {

namespace {

using Pegasus::CIMKeyBinding;

/// Numbers have several spellings (0x1F, 31); anything else that came as a number keeps its own.
Pegasus::String canonicalNumber(const Pegasus::String& text) {
    const auto number = parseInteger(toText(text));
    if (!number) {
        return text;
    }
    const bool negative = number->negative && number->magnitude != 0;
    return Pegasus::String(((negative ? "-" : "") + std::to_string(number->magnitude)).c_str());
}

constexpr std::size_t usualLength = 160;

char16_t asIs(char16_t unit) {
    return unit;
}

char16_t lower(char16_t unit) {
    return unit >= 'A' && unit <= 'Z' ? static_cast<char16_t>(unit + ('a' - 'A')) : unit;
}

/// With its length in front, so that no value can be mistaken for the end of another one.
void append(std::u16string& out, const Pegasus::String& value, char16_t (*fold)(char16_t)) {
    const Pegasus::Uint32 size = value.size();
    out += static_cast<char16_t>(size & 0xFFFFU);
    out += static_cast<char16_t>(size >> 16U);
    const Pegasus::Char16* const units = value.getChar16Data();
    for (Pegasus::Uint32 i = 0; i < size; ++i) {
        out += fold(static_cast<char16_t>(Pegasus::Uint16(units[i])));
    }
}

} // namespace

PathKey::PathKey(const Pegasus::CIMObjectPath& path, const Pegasus::CIMNamespaceName& home)
    : _home(home) {
    _text.reserve(usualLength);
    add(path);
}

void PathKey::add(const Pegasus::CIMObjectPath& path) {
    append(_text, path.getClassName().getString(), lower);
    // A path keeps its keys sorted by name, whatever their case.
    const Pegasus::Array<CIMKeyBinding>& bindings = path.getKeyBindings();
    for (Pegasus::Uint32 i = 0; i < bindings.size(); ++i) {
        const CIMKeyBinding& binding = bindings[i];
        const Pegasus::String& value = binding.getValue();
        append(_text, binding.getName().getString(), lower);
        switch (binding.getType()) {
        case CIMKeyBinding::BOOLEAN:
            append(_text += u'b', value, lower);
            break;
        case CIMKeyBinding::NUMERIC:
            append(_text += u'n', canonicalNumber(value), asIs);
            break;
        case CIMKeyBinding::STRING:
            append(_text += u's', value, asIs);
            break;
        case CIMKeyBinding::REFERENCE:
            addReference(value);
            break;
        }
    }
}

void PathKey::addReference(const Pegasus::String& value) {
    try {
        const Pegasus::CIMObjectPath path{value};
        _places.push_back({path.getHost(), path.getNameSpace()});
        _text += u"r(";
        add(path);
        _text += u')';
    } catch (const Pegasus::Exception&) {
        append(_text += u"r?", value, asIs);
    }
}

bool PathKey::matches(const PathKey& asked, bool loosely) const {
    const auto samePlace = [&](const Place& kept, const Place& other) {
        if (kept.host.size() != 0 && !Pegasus::String::equalNoCase(kept.host, other.host)) {
            return false;
        }
        if (kept.nameSpace.isNull() && loosely) {
            return true;
        }
        return (kept.nameSpace.isNull() ? _home : kept.nameSpace)
            .equal(other.nameSpace.isNull() ? asked._home : other.nameSpace);
    };
    return _text == asked._text && std::equal(_places.begin(), _places.end(), asked._places.begin(),
                                              asked._places.end(), samePlace);
}

bool PathKey::matches(const PathKey& asked) const {
    return matches(asked, false);
}

bool PathKey::matchesLoosely(const PathKey& asked) const {
    return matches(asked, true);
}

Pegasus::CIMObjectPath withoutPlace(const Pegasus::CIMObjectPath& path) {
    return Pegasus::CIMObjectPath(Pegasus::String::EMPTY, Pegasus::CIMNamespaceName(),
                                  path.getClassName(), path.getKeyBindings());
}

} // namespace embedded::repository
