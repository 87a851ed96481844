#include "ObjectPathReps.h"
#include "StringRep.h"
#include "embedding/Text.h"
#include "text/Ascii.h"

namespace Pegasus {

namespace {

using embedding::fromUtf8;

/// Reads one text, in UTF-8, from left to right. No white space is skipped: it belongs to nothing.
/// What reads a part returns false, with the reason, if it is not there.
class Parser {
  public:
    Parser(std::string_view text, CIMObjectPathRep& path, String& reason)
        : _rest(text), _path(path), _reason(reason) {}

    bool read() { return readHost() && readNameSpace() && readClassName() && readKeyBindings(); }

  private:
    bool readHost() {
        if (_rest.substr(0, 2) != "//")
            return true;
        const std::size_t slash = _rest.find('/', 2);
        if (slash == std::string_view::npos)
            return reject("missing slash after hostname");
        _path.host = fromUtf8(_rest.substr(2, slash - 2));
        // The slash stays: it counts as the one that a namespace may begin with.
        _rest.remove_prefix(slash);
        return isHost(_path.host) || reject("invalid hostname");
    }

    bool readNameSpace() {
        const std::size_t colon = _rest.substr(0, _rest.find('.')).find(':');
        if (colon == std::string_view::npos)
            return _path.host.size() == 0 || reject("host specified, missing namespace");
        const String name = upTo(':');
        if (!CIMNamespaceName::legal(name))
            return reject("invalid namespace name");
        _path.nameSpace = name;
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
        while (!_rest.empty()) {
            if (_rest.find('=') == std::string_view::npos)
                return rejectPair("missing equal sign");
            const String name = upTo('=');
            if (!CIMName::legal(name))
                return rejectPair("invalid key name:" + name);
            const bool isQuoted = _rest.substr(0, 1) == "\"";
            if (!(isQuoted ? readQuotedKey(name) : readPlainKey(name)))
                return false;
        }
        return true;
    }

    /// What stands before the next `separator`, or all that is left; steps behind the separator.
    String upTo(char separator) {
        const std::size_t size = _rest.find(separator);
        const String part = fromUtf8(_rest.substr(0, size));
        _rest = size == std::string_view::npos ? std::string_view() : _rest.substr(size + 1);
        return part;
    }

    bool readQuotedKey(const CIMName& name) {
        std::string value;
        for (std::size_t begin = 1;;) {
            const std::size_t end = _rest.find_first_of("\\\"", begin);
            if (end == std::string_view::npos)
                return rejectPair("missing quote in key value");
            value.append(_rest, begin, end - begin);
            begin = end + 1;
            if (_rest[end] == '"') {
                _rest.remove_prefix(begin);
                break;
            }
            if (begin == _rest.size() || (_rest[begin] != '\\' && _rest[begin] != '"'))
                return rejectPair("malformed value");
            value += _rest[begin++];
        }
        if (!_rest.empty() && _rest.front() != ',')
            return rejectPair("next key-value pair has to start with comma");
        _rest.remove_prefix(_rest.empty() ? 0 : 1);
        _path.keyBindings.append(referenceOrString(name, fromUtf8(value)));
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

    std::string_view _rest; ///< what is still to be read
    CIMObjectPathRep& _path;
    String& _reason;
};

} // namespace

bool CIMObjectPathRep::parse(const String& text, String& reason) {
    if (const std::optional<std::string_view> ascii = StringRep::ascii(text))
        return Parser(*ascii, *this, reason).read();
    return Parser(embedding::utf8(text), *this, reason).read();
}

} // namespace Pegasus
