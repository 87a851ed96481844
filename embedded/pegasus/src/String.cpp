#include "Shared.h"

#include "hosting/Text.h"
#include "text/Ascii.h"
#include "text/Utf8.h"

#include <Pegasus/Common/Exception.h>
#include <Pegasus/Common/String.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <functional>
#include <vector>

namespace Pegasus {

using namespace embedded::text;

/// The code units, closed by a 0.
struct StringRep : Shared {
    std::vector<Char16> units{Char16(0)};

    Uint32 size() const { return static_cast<Uint32>(units.size() - 1); }
};

namespace {

const Char16 nothing[1];

template <class Character>
const Character* notNull(const Character* text) {
    if (!text)
        throw Exception(String("null pointer"));
    return text;
}

Uint32 length(const Char16* text) {
    Uint32 size = 0;
    while (Uint16(text[size]) != 0)
        ++size;
    return size;
}

Uint32 length(const char* text) {
    return static_cast<Uint32>(std::strlen(text));
}

/// `units` are to be given closed by a 0.
StringRep* makeRep(std::vector<Char16>&& units) {
    auto* rep = new StringRep;
    rep->units = std::move(units);
    return rep;
}

StringRep* makeRep(const Char16* units, Uint32 size) {
    std::vector<Char16> copy(notNull(units), units + size);
    copy.emplace_back(0);
    return makeRep(std::move(copy));
}

/// Shows some of what stands before the offence, and the offending bytes in hexadecimal.
[[noreturn]] void reject(const char* bytes, Uint32 size, Uint32 at) {
    constexpr Uint32 shownBefore = 40;
    constexpr Uint32 shownFrom = 11;
    Uint32 begin = at > shownBefore ? at - shownBefore : 0;
    while (begin < at && (static_cast<unsigned char>(bytes[begin]) & 0xC0) == 0x80)
        ++begin;
    std::string message = "The byte sequence starting at index " + std::to_string(at) +
                          " is not valid UTF-8 encoding: " + std::string(bytes + begin, bytes + at);
    for (Uint32 i = at; i < std::min(size, at + shownFrom); ++i) {
        char hexadecimal[8];
        std::snprintf(hexadecimal, sizeof hexadecimal, " 0x%02X",
                      static_cast<unsigned>(static_cast<unsigned char>(bytes[i])));
        message += hexadecimal;
    }
    throw Exception(String(message.c_str()));
}

StringRep* makeRep(const char* text, Uint32 size) {
    std::u16string units;
    const std::size_t invalid = appendUtf16(units, std::string_view(notNull(text), size));
    if (invalid != std::string_view::npos)
        reject(text, size, static_cast<Uint32>(invalid));
    std::vector<Char16> copy(units.begin(), units.end());
    copy.emplace_back(0);
    return makeRep(std::move(copy));
}

int difference(Uint16 x, Uint16 y) {
    return static_cast<int>(x) - static_cast<int>(y);
}

/// Compares the code units that both have as `fold` shows them, then the sizes.
template <class Fold>
int compareFolded(const String& s1, const String& s2, Fold fold) {
    const Char16* const p1 = s1.getChar16Data();
    const Char16* const p2 = s2.getChar16Data();
    const Uint32 common = std::min(s1.size(), s2.size());
    for (Uint32 i = 0; i < common; ++i) {
        if (const int result = difference(fold(p1[i]), fold(p2[i])))
            return result;
    }
    if (s1.size() == s2.size())
        return 0;
    return s1.size() < s2.size() ? -1 : 1;
}

Uint16 asIs(Uint16 unit) {
    return unit;
}

} // namespace

const String String::EMPTY;

String::String() : _rep(nullptr) {
}

String::String(const String& str) : _rep(share(str._rep)) {
}

String::String(const String& str, Uint32 n) : _rep(nullptr) {
    if (n > str.size())
        throw IndexOutOfBoundsException();
    _rep = n == str.size() ? share(str._rep) : makeRep(str.getChar16Data(), n);
}

String::String(const Char16* str) : _rep(makeRep(str, length(notNull(str)))) {
}

String::String(const Char16* str, Uint32 n) : _rep(makeRep(str, n)) {
}

String::String(const char* str) : _rep(makeRep(str, length(notNull(str)))) {
}

String::String(const char* str, Uint32 n) : _rep(makeRep(str, n)) {
}

String::~String() {
    release(_rep); // NOLINT(clang-analyzer-cplusplus.NewDelete): see Shared
}

String& String::operator=(const String& str) {
    assign(str);
    return *this;
}

String& String::assign(const String& str) {
    replace(_rep, str._rep);
    return *this;
}

String& String::assign(const Char16* str) {
    return assign(String(str));
}

String& String::assign(const Char16* str, Uint32 n) {
    return assign(String(str, n));
}

String& String::assign(const char* str) {
    return assign(String(str));
}

String& String::assign(const char* str, Uint32 n) {
    return assign(String(str, n));
}

void String::clear() {
    replace(_rep, static_cast<StringRep*>(nullptr));
}

void String::reserveCapacity(Uint32 capacity) {
    detach(_rep).units.reserve(capacity + std::size_t{1});
}

Uint32 String::size() const {
    return _rep ? _rep->size() : 0;
}

const Char16* String::getChar16Data() const {
    return _rep ? _rep->units.data() : nothing;
}

CString String::getCString() const {
    const std::string text = hosting::utf8(*this);
    char* const copy = new char[text.size() + 1];
    std::memcpy(copy, text.c_str(), text.size() + 1);
    return CString(copy);
}

Char16& String::operator[](Uint32 index) {
    if (index > size())
        throw IndexOutOfBoundsException();
    return detach(_rep).units[index];
}

// NOLINTNEXTLINE(readability-const-return-type): the interface declares it so
const Char16 String::operator[](Uint32 index) const {
    if (index > size())
        throw IndexOutOfBoundsException();
    return getChar16Data()[index];
}

String& String::append(const Char16& c) {
    const Char16 copy = c;
    return append(&copy, 1);
}

String& String::append(const Char16* str, Uint32 n) {
    notNull(str);
    // Parts of this text may be appended to it: then the old text is kept while it is copied.
    const Char16* const begin = getChar16Data();
    const bool ownText =
        std::less_equal<>()(begin, str) && std::less_equal<>()(str, begin + size());
    const String kept = ownText ? *this : String();
    std::vector<Char16>& units = detach(_rep).units;
    units.insert(units.end() - 1, str, str + n);
    return *this;
}

String& String::append(const String& str) {
    return append(str.getChar16Data(), str.size());
}

void String::remove(Uint32 index, Uint32 size) {
    if (index > this->size())
        throw IndexOutOfBoundsException();
    const Uint32 rest = this->size() - index;
    if (size == PEG_NOT_FOUND)
        size = rest;
    if (size > rest)
        throw IndexOutOfBoundsException();
    if (size == 0)
        return;
    std::vector<Char16>& units = detach(_rep).units;
    units.erase(units.begin() + index, units.begin() + index + size);
}

String String::subString(Uint32 index, Uint32 n) const {
    if (index >= size())
        return String();
    return String(getChar16Data() + index, std::min(n, size() - index));
}

Uint32 String::find(Char16 c) const {
    return find(0, c);
}

Uint32 String::find(Uint32 index, Char16 c) const {
    if (index > size())
        throw IndexOutOfBoundsException();
    const Char16* const begin = getChar16Data();
    const Char16* const found = std::find(begin + index, begin + size(), c);
    return found == begin + size() ? PEG_NOT_FOUND : static_cast<Uint32>(found - begin);
}

Uint32 String::find(const String& s) const {
    // An empty text is found nowhere.
    if (s.size() == 0)
        return PEG_NOT_FOUND;
    const Char16* const begin = getChar16Data();
    const Char16* const wanted = s.getChar16Data();
    const Char16* const found = std::search(begin, begin + size(), wanted, wanted + s.size());
    return found == begin + size() ? PEG_NOT_FOUND : static_cast<Uint32>(found - begin);
}

Uint32 String::reverseFind(Char16 c) const {
    const Char16* const begin = getChar16Data();
    for (Uint32 i = size(); i > 0; --i) {
        if (begin[i - 1] == c)
            return i - 1;
    }
    return PEG_NOT_FOUND;
}

void String::toLower() {
    for (Char16& unit : detach(_rep).units)
        unit = lower<Uint16>(unit);
}

void String::toUpper() {
    for (Char16& unit : detach(_rep).units)
        unit = upper<Uint16>(unit);
}

// NOLINTNEXTLINE(cert-dcl50-cpp): the interface declares it so
void String::appendPrintf(const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    va_list again;
    va_copy(again, arguments);
    const int size = std::vsnprintf(nullptr, 0, format, arguments);
    va_end(arguments);
    std::vector<char> text(static_cast<std::size_t>(std::max(size, 0)) + 1);
    std::vsnprintf(text.data(), text.size(), format, again);
    va_end(again);
    append(String(text.data()));
}

int String::compare(const String& s1, const String& s2, Uint32 n) {
    const Char16* const p1 = s1.getChar16Data();
    const Char16* const p2 = s2.getChar16Data();
    for (Uint32 i = 0; i < n; ++i) {
        // The closing 0 of a shorter text takes part.
        const int result = difference(p1[i], p2[i]);
        if (result != 0 || i == s1.size() || i == s2.size())
            return result;
    }
    return 0;
}

int String::compare(const String& s1, const String& s2) {
    return compareFolded(s1, s2, asIs);
}

int String::compareNoCase(const String& s1, const String& s2) {
    return compareFolded(s1, s2, lower<Uint16>);
}

Boolean String::equal(const String& s1, const String& s2) {
    return s1._rep == s2._rep || (s1.size() == s2.size() && compare(s1, s2) == 0);
}

Boolean String::equalNoCase(const String& s1, const String& s2) {
    return s1._rep == s2._rep || (s1.size() == s2.size() && compareNoCase(s1, s2) == 0);
}

// With the overloads for `const char*`, so that providers that ask for them find them.

String::String(const String& s1, const String& s2) : String(s1) {
    append(s2);
}

String::String(const String& s1, const char* s2) : String(s1, String(s2)) {
}

String::String(const char* s1, const String& s2) : String(String(s1), s2) {
}

String& String::operator=(const char* str) {
    assign(str);
    return *this;
}

Uint32 String::find(const char* s) const {
    return find(String(s));
}

Boolean String::equal(const String& s1, const char* s2) {
    return equal(s1, String(s2));
}

int String::compare(const String& s1, const char* s2) {
    return compare(s1, String(s2));
}

String& String::append(const char* str) {
    return append(String(str));
}

String& String::append(const char* str, Uint32 size) {
    return append(String(str, size));
}

Boolean String::equalNoCase(const String& s1, const char* s2) {
    return equalNoCase(s1, String(s2));
}

Boolean operator==(const String& str1, const String& str2) {
    return String::equal(str1, str2);
}

Boolean operator==(const String& str1, const char* str2) {
    return String::equal(str1, str2);
}

Boolean operator==(const char* str1, const String& str2) {
    return String::equal(str2, str1);
}

Boolean operator!=(const String& str1, const String& str2) {
    return !String::equal(str1, str2);
}

Boolean operator<(const String& str1, const String& str2) {
    return String::compare(str1, str2) < 0;
}

Boolean operator<=(const String& str1, const String& str2) {
    return String::compare(str1, str2) <= 0;
}

Boolean operator>(const String& str1, const String& str2) {
    return String::compare(str1, str2) > 0;
}

Boolean operator>=(const String& str1, const String& str2) {
    return String::compare(str1, str2) >= 0;
}

String operator+(const String& str1, const String& str2) {
    return String(str1, str2);
}

std::ostream& operator<<(std::ostream& os, const String& str) {
    const Char16* const units = str.getChar16Data();
    for (Uint32 i = 0; i < str.size(); ++i) {
        if (units[i] < 0x100) {
            os << static_cast<char>(static_cast<unsigned char>(units[i]));
        } else {
            char hexadecimal[8];
            std::snprintf(hexadecimal, sizeof hexadecimal, "\\x%04X",
                          static_cast<unsigned>(units[i]));
            os << hexadecimal;
        }
    }
    return os;
}

} // namespace Pegasus
