#include "ObjectPathParser.h"

#include "HostName.h"
#include "Numbers.h"
#include "ObjectPathReps.h"
#include "StringRep.h"
#include "text/Ascii.h"

#include <algorithm>
#include <vector>

namespace Pegasus {

namespace {

/// Reads one text from left to right, as it is kept. No white space is skipped: it belongs to
/// nothing. What reads a part returns false, with the reason, if it is not there.
template <class Unit>
class Parser {
  public:
    Parser(const Unit* units, Uint32 size, CIMObjectPathRep& path, String& reason)
        : _at(units), _end(units + size), _path(path), _reason(reason) {}

    bool read() { return readHost() && readNameSpace() && readClassName() && readKeyBindings(); }

  private:
    bool readHost() {
        if (_end - _at < 2 || !is(_at[0], '/') || !is(_at[1], '/'))
            return true;
        const Unit* const begin = _at + 2;
        const Unit* const slash = find(begin, _end, '/');
        if (slash == _end)
            return reject("missing slash after hostname");
        _path.host = between(begin, slash);
        // The slash stays: it counts as the one that a namespace may begin with.
        _at = slash;
        return isHost(_path.host) || reject("invalid hostname");
    }

    bool readNameSpace() {
        const Unit* const dot = find(_at, _end, '.');
        const Unit* const colon = find(_at, dot, ':');
        if (colon == dot)
            return _path.host.size() == 0 || reject("host specified, missing namespace");
        const String name = between(_at, colon);
        if (!CIMNamespaceName::legal(name))
            return reject("invalid namespace name");
        _path.nameSpace = name;
        _at = colon + 1;
        return true;
    }

    bool readClassName() {
        const String name = upTo('.');
        if (!CIMName::legal(name))
            return reject("class name " + name + " not a legal CIM name");
        _path.className = name;
        return true;
    }

    bool readKeyBindings() {
        while (_at != _end) {
            if (find(_at, _end, '=') == _end)
                return rejectPair("missing equal sign");
            const String name = upTo('=');
            if (!CIMName::legal(name))
                return rejectPair("invalid key name:" + name);
            if (!(_at != _end && is(*_at, '"') ? readQuotedKey(name) : readPlainKey(name)))
                return false;
        }
        return true;
    }

    static bool is(Unit unit, char c) { return unitOf(unit) == unitOf(c); }

    static const Unit* find(const Unit* begin, const Unit* end, char c) {
        return std::find_if(
            begin, end, [&](Unit unit) { return is(unit, c); });
    }

    static String between(const Unit* begin, const Unit* end) {
        return begin == end ? String() : String(begin, static_cast<Uint32>(end - begin));
    }

    static String unescaped(const Unit* begin, const Unit* end) {
        std::vector<Unit> text(begin, end);
        Unit* to = text.data();
        for (const Unit* at = begin; at != end; ++at)
            *to++ = is(*at, '\\') ? *++at : *at;
        return between(text.data(), to);
    }

    /// What stands before the next `separator`, or all that is left; steps behind the separator.
    String upTo(char separator) {
        const Unit* const begin = _at;
        const Unit* const found = find(_at, _end, separator);
        _at = found == _end ? _end : found + 1;
        return between(begin, found);
    }

    bool readQuotedKey(const CIMName& name) {
        const Unit* const begin = ++_at;
        bool hasEscapes = false;
        for (; _at != _end && !is(*_at, '"'); ++_at) {
            if (!is(*_at, '\\'))
                continue;
            hasEscapes = true;
            ++_at;
            if (_at == _end || (!is(*_at, '\\') && !is(*_at, '"')))
                return rejectPair("malformed value");
        }
        if (_at == _end)
            return rejectPair("missing quote in key value");
        const String value = hasEscapes ? unescaped(begin, _at) : between(begin, _at);
        ++_at;
        if (_at != _end && !is(*_at++, ','))
            return rejectPair("next key-value pair has to start with comma");
        _path.keyBindings.append(referenceOrString(name, value));
        return true;
    }

    /// The text does not say which: a value that reads as the path of an instance is taken for
    /// one. Where there is an equal sign, what can be read has a key.
    static CIMKeyBinding referenceOrString(const CIMName& name, const String& value) {
        if (value.find(Char16('=')) != PEG_NOT_FOUND) {
            CIMObjectPath path;
            String reason;
            if (CIMObjectPathRep::read(value, path, reason))
                return CIMKeyBindingRep::keeping(name, path);
        }
        return CIMKeyBinding(name, value, CIMKeyBinding::STRING);
    }

    bool readPlainKey(const CIMName& name) {
        const String value = upTo(',');
        const Uint16 first = embedded::text::upper(value[0]);
        if (first == 'T' || first == 'F') {
            const String truth(first == 'T' ? "TRUE" : "FALSE");
            if (!String::equalNoCase(value, truth))
                return rejectPair("value should be TRUE or FALSE");
            _path.keyBindings.append(CIMKeyBinding(name, truth, CIMKeyBinding::BOOLEAN));
            return true;
        }
        Uint64 number = 0;
        Sint64 negative = 0;
        if (first == '-' && !numbers::parse(value, negative))
            return rejectPair("invalid negative number value " + value);
        if (first != '-' && !numbers::parse(value, number))
            return rejectPair("invalid number value " + value);
        _path.keyBindings.append(CIMKeyBinding(name, value, CIMKeyBinding::NUMERIC));
        return true;
    }

    bool reject(const String& reason) {
        _reason = reason;
        return false;
    }

    bool rejectPair(const String& reason) { return reject("invalid key-value pair, " + reason); }

    const Unit* _at;
    const Unit* const _end;
    CIMObjectPathRep& _path;
    String& _reason;
};

} // namespace

bool parseObjectPath(const String& text, CIMObjectPathRep& path, String& reason) {
    return StringRep::visit(
        text,
        [&](const auto* units, Uint32 size) { return Parser(units, size, path, reason).read(); });
}

} // namespace Pegasus
