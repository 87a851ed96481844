// Texts of values, read and written and read again: the second reading gives what the first gave.
// The first byte says what the rest is: see the table at the end.
#include "fuzz/Fuzz.h"

#include "cimxml/Document.h"
#include "cimxml/Message.h"
#include "cimxml/Objects.h"
#include "http/Message.h"
#include "repository/Integers.h"
#include "repository/PathMatch.h"
#include "text/Utf8.h"

#include <Pegasus/Common/CIMDateTime.h>
#include <Pegasus/Common/CIMObjectPath.h>
#include <Pegasus/Common/CIMValue.h>
#include <Pegasus/Common/Exception.h>
#include <embedding/Text.h>
#include <embedding/XmlWriter.h>

#include <array>
#include <optional>
#include <string>

namespace {

using namespace Pegasus;
using embedded::cimxml::Document;
using embedded::cimxml::RequestRejected;
using embedding::fromUtf8;
using embedding::utf8;
using fuzz::require;

// What `read` gives, or nothing when it refuses.
template <class Read>
auto readOrRefused(const Read& read) -> std::optional<decltype(read())> {
    try {
        return read();
    } catch (const Exception&) {
        return std::nullopt;
    } catch (const RequestRejected&) {
        return std::nullopt;
    }
}

CIMName noSoleKey(const CIMName&) {
    throw CIMException(CIM_ERR_INVALID_PARAMETER, "a key without a name");
}

std::string document(const std::string& element) { return "<?xml version=\"1.0\"?>" + element; }

// Whether it has what no XML document can hold, and so is not given back.
bool isOutsideXml(const String& text) {
    const Char16* at = text.getChar16Data();
    for (const Char16* const end = at + text.size(); at != end;) {
        const char32_t character = embedded::text::takeCharacter(at, end);
        if ((character < 0x20 && character != '\t' && character != '\n' && character != '\r') ||
            (character >= 0xD800 && character < 0xE000) || character == 0xFFFE ||
            character == 0xFFFF)
            return true;
    }
    return false;
}

// Object paths

void checkPathAsXml(const CIMObjectPath& path, const std::string& seen) {
    std::string xml;
    embedding::appendInstanceName(xml, path);
    require(fuzz::isWellFormed(xml), "a path is written as XML", xml);
    const auto again = readOrRefused([&] {
        const Document read(document(xml));
        return embedded::cimxml::readInstanceName(read.root(), noSoleKey);
    });
    if (again && !isOutsideXml(path.toString()))
        require(again->identical(CIMObjectPath(String(), CIMNamespaceName(), path.getClassName(),
                                               path.getKeyBindings())),
                "a path is read as it was written as XML", seen + "\n" + xml);
}

void checkPath(const std::string& text) {
    const auto path = readOrRefused([&] { return CIMObjectPath(fromUtf8(text)); });
    if (!path)
        return;
    const String written = path->toString();
    const CIMObjectPath again(written);
    const std::string seen = text + "\n" + utf8(written) + "\n" + utf8(again.toString());
    require(again.identical(*path), "a path is read as it was written", seen);
    require(again.toString() == written, "a path is written as it was read", seen);
    require(again.makeHashCode() == path->makeHashCode(), "same paths, same hash codes", seen);
    const CIMNamespaceName home("root/home");
    const embedded::repository::PathKey key(*path, home);
    require(key.matches(embedded::repository::PathKey(again, home)), "same paths match", seen);
    if (path->getKeyBindings().size() != 0)
        checkPathAsXml(*path, seen);
}

// Datetimes

void checkOrder(const CIMDateTime& one, const CIMDateTime& other, const std::string& seen) {
    require((one < other) == (other > one) && (one <= other) == (other >= one) &&
                (one < other) != (one >= other) && one.equal(other) == (one == other) &&
                (one != other) != (one == other),
            "datetimes have an order", seen);
    const Sint64 difference = CIMDateTime::getDifference(one, other);
    require(difference == static_cast<Sint64>(other.toMicroSeconds() - one.toMicroSeconds()),
            "a difference is that of the microseconds", seen);
}

void checkArithmetic(const CIMDateTime& one, const CIMDateTime& other, const std::string& seen) {
    const auto sum = readOrRefused([&] { return one + other; });
    if (!sum || one.toString().find(Char16('*')) != PEG_NOT_FOUND ||
        other.toString().find(Char16('*')) != PEG_NOT_FOUND)
        return;
    require((*sum - other).toString() == one.toString(), "what was added can be taken away",
            seen + "\n" + utf8(sum->toString()));
}

void checkDateTimes(const std::string& text) {
    const auto read = [&](std::size_t at) {
        return readOrRefused(
            [&] { return CIMDateTime(fromUtf8(text.substr(std::min(at, text.size()), 25))); });
    };
    const auto one = read(0);
    if (!one)
        return;
    const String written = one->toString();
    const CIMDateTime again(written);
    require(again.toString() == written && again.equal(*one) &&
                again.isInterval() == one->isInterval(),
            "a datetime is read as it was written", text + "\n" + utf8(written));
    const auto other = read(25);
    if (!other)
        return;
    if (one->isInterval() == other->isInterval())
        checkOrder(*one, *other, text);
    checkArithmetic(*one, *other, text);
    for (const Uint64 factor : {Uint64{0}, Uint64{3}, ~Uint64{0}}) {
        readOrRefused([&] { return *one * factor; });
        readOrRefused([&] { return *one / factor; });
    }
    readOrRefused([&] { return *one / *other; });
    readOrRefused([&] { return *one - *other; });
}

// Strings

void checkAsXml(const String& text) {
    std::string xml = "<V a=\"";
    embedding::appendEscaped(xml, text);
    xml += "\">";
    embedding::appendEscaped(xml, text);
    xml += "</V>";
    require(fuzz::isWellFormed(xml), "a text is written as XML", xml);
    if (isOutsideXml(text))
        return;
    const Document read(document(xml));
    require(read.root().text() == utf8(text), "a text is read as it was written as XML", xml);
    require(read.root().attribute("a").value == utf8(text),
            "a text is read as it was written as an attribute", xml);
}

void checkName(const String& text) {
    const auto name = readOrRefused([&] { return CIMName(text); });
    require(name.has_value() == CIMName::legal(text), "a name is legal or refused", utf8(text));
    if (name)
        require(name->equal(CIMName(fromUtf8(embedding::folded(*name)))), "a name has no case",
                utf8(text));
    const auto nameSpace = readOrRefused([&] { return CIMNamespaceName(text); });
    require(nameSpace.has_value() == CIMNamespaceName::legal(text),
            "a namespace is legal or refused", utf8(text));
}

void checkBytes(const std::string& bytes) {
    namespace http = embedded::http;
    require(http::percentDecoded(http::percentEncoded(bytes)) == bytes,
            "%-escapes give back what was escaped", bytes);
    const bool valid = embedded::text::findInvalidUtf8(bytes) == std::string_view::npos;
    const auto text = readOrRefused([&] { return fromUtf8(bytes); });
    require(text || !valid, "valid UTF-8 is taken", bytes);
    if (!text)
        return;
    require(utf8(*text) == bytes || !valid, "UTF-8 is given back", bytes);
    checkName(*text);
    checkAsXml(*text);
}

void checkUnits(const std::string& bytes) {
    String text;
    for (std::size_t i = 0; i + 1 < bytes.size(); i += 2)
        text.append(Char16(static_cast<Uint16>(static_cast<unsigned char>(bytes[i]) * 256U +
                                               static_cast<unsigned char>(bytes[i + 1]))));
    require(fromUtf8(utf8(text)) == text, "UTF-16 is given back", utf8(text));
    checkAsXml(text);
}

// Typed values

CIMValue valueOf(const std::string& content, CIMType type) {
    const Document read(document("<PROPERTY>" + content + "</PROPERTY>"));
    return embedded::cimxml::readValue(read.root(), type, false, noSoleKey);
}

void checkValue(const std::string& text) {
    if (text.empty())
        return;
    const auto type =
        static_cast<CIMType>(static_cast<unsigned char>(text[0]) % 14); // up to datetime
    const auto value = readOrRefused([&] {
        std::string content = "<VALUE>";
        embedding::appendEscaped(content, fromUtf8(text.substr(1)));
        return valueOf(content + "</VALUE>", type);
    });
    if (!value)
        return;
    std::string written;
    embedding::appendValue(written, *value);
    const CIMValue again = valueOf(written, type);
    std::string rewritten;
    embedding::appendValue(rewritten, again);
    require(again.getType() == type && rewritten == written, "what was read is written as it was",
            text + "\n" + written + "\n" + rewritten);
    // What is written of a real32 has a digit too few to tell it from its neighbours.
    const bool isCut = type == CIMTYPE_REAL32;
    require(isCut || again.toString() == value->toString(), "a value is read as it was written",
            text + "\n" + written);
    const bool isNaN = (type == CIMTYPE_REAL32 || type == CIMTYPE_REAL64) &&
                       utf8(value->toString()).find("nan") != std::string::npos;
    CIMKeyBinding key(CIMName("Key"), *value);
    require(key.equal(isCut ? *value : again) || isNaN,
            "a key is that of its value, but for NaN, which equals nothing", text + "\n" + written);
}

void checkInteger(const std::string& text) {
    using namespace embedded::repository;
    const std::optional<Integer> integer = parseInteger(text);
    if (!integer)
        return;
    const std::string digits = (integer->negative ? "-" : "") + std::to_string(integer->magnitude);
    const std::optional<Integer> again = parseInteger(digits);
    require(again && again->magnitude == integer->magnitude && again->negative == integer->negative,
            "an integer is read as it was written", text + "\n" + digits);
    if (const auto small = narrowed<std::int8_t>(*integer))
        require(*small == narrowed<std::int64_t>(*integer), "an integer is the same in each size",
                text);
    if (const auto all = narrowed<std::uint64_t>(*integer))
        require(*all == integer->magnitude, "an integer is its magnitude", text);
}

struct Kind {
    char letter;
    void (*check)(const std::string& text);
};

constexpr std::array<Kind, 6> kinds = {{{'p', checkPath},
                                        {'d', checkDateTimes},
                                        {'s', checkBytes},
                                        {'u', checkUnits},
                                        {'v', checkValue},
                                        {'i', checkInteger}}};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string bytes(data, data + size);
    for (const Kind& kind : kinds)
        if (!bytes.empty() && kind.letter == bytes[0])
            kind.check(bytes.substr(1));
    return 0;
}
