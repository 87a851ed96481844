#include "repository/PathMatch.h"

#include "embedding/References.h"
#include "repository/Integers.h"
#include "repository/Types.h"

#include <Pegasus/Common/Array.h>
#include <Pegasus/Common/Exception.h>

#include <algorithm>

namespace embedded::repository {

using namespace Pegasus;

namespace {

/// Numbers have several spellings (0x1F, 31); anything else that came as a number keeps its own.
String canonicalNumber(const String& text) {
    const auto number = parseInteger(toText(text));
    if (!number)
        return text;
    const bool negative = number->negative && number->magnitude != 0;
    return String(((negative ? "-" : "") + std::to_string(number->magnitude)).c_str());
}

constexpr std::size_t usualLength = 160;

enum class Case { Counts, Folded };

/// With its length in front, so that no value can be mistaken for the end of another one.
void append(std::string& out, const String& value, Case letters = Case::Folded) {
    const Uint32 size = value.size();
    for (unsigned shift = 0; shift < 32; shift += 8)
        out += static_cast<char>((size >> shift) & 0xFFU);
    const std::size_t begin = out.size();
    Pegasus::embedding::appendUtf8(out, value);
    if (letters == Case::Folded)
        std::transform(out.begin() + static_cast<std::ptrdiff_t>(begin), out.end(),
                       out.begin() + static_cast<std::ptrdiff_t>(begin), text::lower<char>);
}

} // namespace

PathKey::PathKey(const CIMObjectPath& path, const CIMNamespaceName& home) : _home(home) {
    _text.reserve(usualLength);
    add(path);
}

void PathKey::add(const CIMObjectPath& path) {
    append(_text, path.getClassName().getString());
    // A path keeps its keys sorted by name, whatever their case.
    const Array<CIMKeyBinding>& bindings = path.getKeyBindings();
    for (Uint32 i = 0; i < bindings.size(); ++i) {
        const CIMKeyBinding& binding = bindings[i];
        append(_text, binding.getName().getString());
        switch (binding.getType()) {
        case CIMKeyBinding::BOOLEAN:
            append(_text += 'b', binding.getValue());
            break;
        case CIMKeyBinding::NUMERIC:
            append(_text += 'n', canonicalNumber(binding.getValue()), Case::Counts);
            break;
        case CIMKeyBinding::STRING:
            append(_text += 's', binding.getValue(), Case::Counts);
            break;
        case CIMKeyBinding::REFERENCE:
            addReference(binding);
            break;
        }
    }
}

void PathKey::addReference(const CIMKeyBinding& key) {
    try {
        const CIMObjectPath path = Pegasus::embedding::referencedPath(key);
        _places.push_back({path.getHost(), path.getNameSpace()});
        _text += "r(";
        add(path);
        _text += ')';
    } catch (const Exception&) {
        append(_text += "r?", key.getValue(), Case::Counts);
    }
}

bool PathKey::matches(const PathKey& asked, bool loosely) const {
    const auto samePlace = [&](const Place& kept, const Place& other) {
        if (kept.host.size() != 0 && !String::equalNoCase(kept.host, other.host))
            return false;
        if (kept.nameSpace.isNull() && loosely)
            return true;
        return (kept.nameSpace.isNull() ? _home : kept.nameSpace)
            .equal(other.nameSpace.isNull() ? asked._home : other.nameSpace);
    };
    return _text == asked._text && std::equal(_places.begin(), _places.end(), asked._places.begin(),
                                              asked._places.end(), samePlace);
}

bool PathKey::matches(const PathKey& asked) const { return matches(asked, false); }

bool PathKey::matchesLoosely(const PathKey& asked) const { return matches(asked, true); }

CIMObjectPath withoutPlace(const CIMObjectPath& path) {
    return CIMObjectPath(String::EMPTY, CIMNamespaceName(), path.getClassName(),
                         path.getKeyBindings());
}

bool equalWithoutPlace(const CIMObjectPath& x, const CIMObjectPath& y) {
    const Array<CIMKeyBinding>& keys = x.getKeyBindings();
    const Array<CIMKeyBinding>& others = y.getKeyBindings();
    return x.getClassName() == y.getClassName() &&
           std::equal(keys.getData(), keys.getData() + keys.size(), others.getData(),
                      others.getData() + others.size());
}

} // namespace embedded::repository
