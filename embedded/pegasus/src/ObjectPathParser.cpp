#include "ObjectPathParser.h"

#include "HostName.h"
#include "Numbers.h"
#include "text/Ascii.h"

#include <algorithm>

namespace Pegasus {

namespace {

/// Reads one text from left to right. No white space is skipped: it belongs to nothing.
class Parser {
  public:
    explicit Parser(const String& text)
        : _text(text), _at(text.getChar16Data()), _end(_at + text.size()) {}

    String host() {
        if (_end - _at < 2 || _at[0] != '/' || _at[1] != '/')
            return String();
        const Char16* const begin = _at + 2;
        const Char16* const slash = std::find(begin, _end, Char16('/'));
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
        const Char16* const dot = std::find(_at, _end, Char16('.'));
        const Char16* const colon = std::find(_at, dot, Char16(':'));
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
            if (std::find(_at, _end, Char16('=')) == _end)
                rejectPair("missing equal sign");
            const String name = upTo('=');
            if (!CIMName::legal(name))
                rejectPair("invalid key name:" + name);
            keys.append(_at != _end && *_at == '"' ? quotedKey(CIMName(name))
                                                   : plainKey(CIMName(name)));
        }
        return keys;
    }

  private:
    static String between(const Char16* begin, const Char16* end) {
        return String(begin, static_cast<Uint32>(end - begin));
    }

    /// What stands before the next `separator`, or all that is left; steps behind the separator.
    String upTo(char separator) {
        const Char16* const begin = _at;
        const Char16* const found =
            std::find(_at, _end, Char16(static_cast<unsigned char>(separator)));
        _at = found == _end ? _end : found + 1;
        return between(begin, found);
    }

    CIMKeyBinding quotedKey(const CIMName& name) {
        String value;
        for (++_at;; ++_at) {
            if (_at == _end)
                rejectPair("missing quote in key value");
            if (*_at == '"')
                break;
            if (*_at == '\\') {
                ++_at;
                if (_at == _end || (*_at != '\\' && *_at != '"'))
                    rejectPair("malformed value");
            }
            value.append(*_at);
        }
        ++_at;
        if (_at != _end && *_at++ != ',')
            rejectPair("next key-value pair has to start with comma");
        return referenceOrString(name, value);
    }

    /// The text does not say which: a value that reads as the path of an instance is taken for
    /// one. Where there is an equal sign, what can be read has a key.
    static CIMKeyBinding referenceOrString(const CIMName& name, const String& value) {
        if (value.find(Char16('=')) != PEG_NOT_FOUND) {
            try {
                return CIMKeyBinding(name, CIMObjectPath(value).toString(),
                                     CIMKeyBinding::REFERENCE);
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
    const Char16* _at;
    const Char16* const _end;
};

} // namespace

void rejectObjectPath(const String& text, const String& reason) {
    throw MalformedObjectNameException(text + ", reason:\"" + reason + "\"");
}

void parseObjectPath(const String& text, String& host, CIMNamespaceName& nameSpace,
                     CIMName& className, Array<CIMKeyBinding>& keyBindings) {
    Parser parser(text);
    host = parser.host();
    nameSpace = parser.nameSpace(host.size() != 0);
    className = parser.className();
    keyBindings = parser.keyBindings();
}

} // namespace Pegasus
