#include "ObjectPathParser.h"

#include "HostName.h"
#include "Numbers.h"
#include "ObjectPathReps.h"
#include "StringRep.h"
#include "text/Ascii.h"

#include <algorithm>

namespace Pegasus {

namespace {

/// Reads one text from left to right, as it is kept. No white space is skipped: it belongs to
/// nothing.
template <class Unit>
class Parser {
  public:
    Parser(const String& text, const Unit* units, Uint32 size)
        : _text(text), _at(units), _end(units + size) {}

    String host() {
        if (_end - _at < 2 || !is(_at[0], '/') || !is(_at[1], '/'))
            return String();
        const Unit* const begin = _at + 2;
        const Unit* const slash = find(begin, _end, '/');
        if (slash == _end)
            reject("missing slash after hostname");
        const String host = between(begin, slash);
        if (!isHost(host))
            reject("invalid hostname");
        // The slash stays: it counts as the one that a namespace may begin with.
        _at = slash;
        return host;
    }

    CIMNamespaceName nameSpace(bool hasHost) {
        const Unit* const dot = find(_at, _end, '.');
        const Unit* const colon = find(_at, dot, ':');
        if (colon == dot) {
            if (hasHost)
                reject("host specified, missing namespace");
            return CIMNamespaceName();
        }
        const String name = between(_at, colon);
        if (!CIMNamespaceName::legal(name))
            reject("invalid namespace name");
        _at = colon + 1;
        return CIMNamespaceName(name);
    }

    CIMName className() {
        const String name = upTo('.');
        if (!CIMName::legal(name))
            reject("class name " + name + " not a legal CIM name");
        return CIMName(name);
    }

    Array<CIMKeyBinding> keyBindings() {
        Array<CIMKeyBinding> keys;
        while (_at != _end) {
            if (find(_at, _end, '=') == _end)
                rejectPair("missing equal sign");
            const String name = upTo('=');
            if (!CIMName::legal(name))
                rejectPair("invalid key name:" + name);
            keys.append(_at != _end && is(*_at, '"') ? quotedKey(CIMName(name))
                                                     : plainKey(CIMName(name)));
        }
        return keys;
    }

  private:
    static bool is(Unit unit, char c) { return unitOf(unit) == unitOf(c); }

    static const Unit* find(const Unit* begin, const Unit* end, char c) {
        return std::find_if(begin, end, [&](Unit unit) { return is(unit, c); });
    }

    static String between(const Unit* begin, const Unit* end) {
        return String(begin, static_cast<Uint32>(end - begin));
    }

    /// What stands before the next `separator`, or all that is left; steps behind the separator.
    String upTo(char separator) {
        const Unit* const begin = _at;
        const Unit* const found = find(_at, _end, separator);
        _at = found == _end ? _end : found + 1;
        return between(begin, found);
    }

    CIMKeyBinding quotedKey(const CIMName& name) {
        String value;
        const Unit* run = ++_at; // what is taken over as it is
        for (;; ++_at) {
            if (_at == _end)
                rejectPair("missing quote in key value");
            if (is(*_at, '"'))
                break;
            if (is(*_at, '\\')) {
                value.append(run, static_cast<Uint32>(_at - run));
                run = ++_at;
                if (_at == _end || (!is(*_at, '\\') && !is(*_at, '"')))
                    rejectPair("malformed value");
            }
        }
        value.append(run, static_cast<Uint32>(_at - run));
        ++_at;
        if (_at != _end && !is(*_at++, ','))
            rejectPair("next key-value pair has to start with comma");
        return referenceOrString(name, value);
    }

    /// The text does not say which: a value that reads as the path of an instance is taken for
    /// one. Where there is an equal sign, what can be read has a key.
    static CIMKeyBinding referenceOrString(const CIMName& name, const String& value) {
        if (value.find(Char16('=')) != PEG_NOT_FOUND) {
            try {
                return CIMKeyBindingRep::keeping(name, CIMObjectPath(value));
            } catch (const MalformedObjectNameException&) {
                // A string then.
            }
        }
        return CIMKeyBinding(name, value, CIMKeyBinding::STRING);
    }

    CIMKeyBinding plainKey(const CIMName& name) {
        const String value = upTo(',');
        const Uint16 first = embedded::text::upper(value[0]);
        if (first == 'T' || first == 'F') {
            const String truth(first == 'T' ? "TRUE" : "FALSE");
            if (!String::equalNoCase(value, truth))
                rejectPair("value should be TRUE or FALSE");
            return CIMKeyBinding(name, truth, CIMKeyBinding::BOOLEAN);
        }
        Uint64 number = 0;
        Sint64 negative = 0;
        if (first == '-' && !numbers::parse(value, negative))
            rejectPair("invalid negative number value " + value);
        if (first != '-' && !numbers::parse(value, number))
            rejectPair("invalid number value " + value);
        return CIMKeyBinding(name, value, CIMKeyBinding::NUMERIC);
    }

    [[noreturn]] void reject(const String& reason) const { rejectObjectPath(_text, reason); }

    [[noreturn]] void rejectPair(const String& reason) const {
        reject("invalid key-value pair, " + reason);
    }

    const String& _text;
    const Unit* _at;
    const Unit* const _end;
};

} // namespace

void rejectObjectPath(const String& text, const String& reason) {
    throw MalformedObjectNameException(text + ", reason:\"" + reason + "\"");
}

void parseObjectPath(const String& text, String& host, CIMNamespaceName& nameSpace,
                     CIMName& className, Array<CIMKeyBinding>& keyBindings) {
    StringRep::visit(text, [&](const auto* units, Uint32 size) {
        Parser parser(text, units, size);
        host = parser.host();
        nameSpace = parser.nameSpace(host.size() != 0);
        className = parser.className();
        keyBindings = parser.keyBindings();
    });
}

} // namespace Pegasus
