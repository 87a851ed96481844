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
std::string canonicalNumber(const std::string& text) {
    const auto number = parseInteger(text);
    if (!number) {
        return text;
    }
    const bool negative = number->negative && number->magnitude != 0;
    return (negative ? "-" : "") + std::to_string(number->magnitude);
}

/// With its length in front, so that no value can be mistaken for the end of another one.
std::string delimited(const std::string& value) {
    return std::to_string(value.size()) + ':' + value;
}

} // namespace

PathKey::PathKey(const Pegasus::CIMObjectPath& path, const Pegasus::CIMNamespaceName& home)
    : _home(folded(toText(home.getString()))) {
    add(path);
}

void PathKey::add(const Pegasus::CIMObjectPath& path) {
    _text += delimited(folded(path.getClassName()));
    // A path keeps its keys sorted by name, whatever their case.
    const Pegasus::Array<CIMKeyBinding>& bindings = path.getKeyBindings();
    for (Pegasus::Uint32 i = 0; i < bindings.size(); ++i) {
        const CIMKeyBinding& binding = bindings[i];
        const std::string value = toText(binding.getValue());
        _text += delimited(folded(binding.getName()));
        switch (binding.getType()) {
        case CIMKeyBinding::BOOLEAN:
            _text += 'b' + delimited(folded(value));
            break;
        case CIMKeyBinding::NUMERIC:
            _text += 'n' + delimited(canonicalNumber(value));
            break;
        case CIMKeyBinding::STRING:
            _text += 's' + delimited(value);
            break;
        case CIMKeyBinding::REFERENCE:
            addReference(value);
            break;
        }
    }
}

void PathKey::addReference(const std::string& value) {
    try {
        const Pegasus::CIMObjectPath path{Pegasus::String(value.c_str())};
        _places.push_back(
            {folded(toText(path.getHost())), folded(toText(path.getNameSpace().getString()))});
        _text += "r(";
        add(path);
        _text += ')';
    } catch (const Pegasus::Exception&) {
        _text += "r?" + delimited(value);
    }
}

bool PathKey::matches(const PathKey& asked, bool loosely) const {
    const auto samePlace = [&](const Place& kept, const Place& other) {
        if (!kept.host.empty() && kept.host != other.host) {
            return false;
        }
        if (kept.nameSpace.empty() && loosely) {
            return true;
        }
        return (kept.nameSpace.empty() ? _home : kept.nameSpace) ==
               (other.nameSpace.empty() ? asked._home : other.nameSpace);
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
