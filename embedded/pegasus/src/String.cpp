#include "StringRep.h"

#include "embedding/Text.h"
#include "text/Utf8.h"

#include <Pegasus/Common/Exception.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <memory>
#include <type_traits>
#include <vector>

namespace Pegasus {

using namespace embedded::text;

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

Uint32 length(const char* text) { return static_cast<Uint32>(std::strlen(text)); }

bool isAscii(const char* text, Uint32 size) {
    return asciiPrefix(std::string_view(text, size)) == size;
}

bool isAscii(const Char16* units, Uint32 size) {
    return std::all_of(
        units, units + size, [](Uint16 unit) { return unit < 0x80; });
}

/// The places may overlap if the units are of one kind.
template <class To, class From>
void copyUnits(To* to, const From* from, Uint32 size) {
    if constexpr (std::is_same_v<To, From>)
        std::memmove(static_cast<void*>(to), from, size * sizeof(To));
    else
        std::transform(
            from, from + size, to, [](From unit) { return static_cast<To>(unitOf(unit)); });
}

template <class Unit>
void copyUnits(StringRep& to, Uint32 index, const Unit* from, Uint32 size) {
    if (to.isWide)
        copyUnits(to.units() + index, from, size);
    else
        copyUnits(to.chars() + index, from, size);
}

/// Null for an empty text. `units` are ASCII if they are of type char.
template <class Unit>
StringRep* makeRep(const Unit* units, Uint32 size) {
    if (size == 0)
        return nullptr;
    const bool isWide = std::is_same_v<Unit, Char16> && !isAscii(units, size);
    StringRep* const rep = StringRep::make(isWide, size);
    copyUnits(*rep, 0, units, size);
    rep->close(size);
    return rep;
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

StringRep* readUtf8(const char* text, Uint32 size) {
    if (isAscii(notNull(text), size))
        return makeRep(text, size);
    std::u16string units;
    const std::size_t invalid = appendUtf16(units, std::string_view(text, size));
    if (invalid != std::string_view::npos)
        reject(text, size, static_cast<Uint32>(invalid));
    const std::vector<Char16> copy(units.begin(), units.end());
    return makeRep(copy.data(), static_cast<Uint32>(copy.size()));
}

/// A copy of `rep`, which may be null, with room for more, not closed yet.
StringRep* copyWithRoom(const StringRep* rep, bool isWide, Uint32 capacity) {
    StringRep* const copy = StringRep::make(isWide, capacity);
    if (rep && rep->isWide)
        copyUnits(*copy, 0, static_cast<const Char16*>(rep->units()), rep->size);
    else if (rep)
        copyUnits(*copy, 0, rep->chars(), rep->size);
    return copy;
}

/// Makes `rep` one that nobody else sees, with at least this room.
StringRep& own(StringRep*& rep, Uint32 capacity) {
    if (rep && rep->hasOneOwner() && capacity <= rep->capacity)
        return *rep;
    const Uint32 size = rep ? rep->size : 0;
    StringRep* const copy = copyWithRoom(rep, rep && rep->isWide, std::max(capacity, size));
    copy->close(size);
    release(rep);
    rep = copy;
    return *rep;
}

/// The units may be some of `rep`, also of what it showed as UTF-16.
template <class Unit>
void appendTo(StringRep*& rep, const Unit* units, Uint32 n) {
    if (n == 0)
        return;
    const Uint32 size = rep ? rep->size : 0;
    const bool isWide =
        (rep && rep->isWide) || (std::is_same_v<Unit, Char16> && !isAscii(units, n));
    if (rep && rep->hasOneOwner() && rep->isWide == isWide && rep->capacity - size >= n) {
        copyUnits(*rep, size, units, n);
        rep->close(size + n);
        return;
    }
    StringRep* const larger = copyWithRoom(rep, isWide, std::max(size + n, size + size / 2));
    copyUnits(*larger, size, units, n);
    larger->close(size + n);
    release(rep);
    rep = larger;
}

int difference(Uint16 x, Uint16 y) { return static_cast<int>(x) - static_cast<int>(y); }

/// Calls `function(units1, size1, units2, size2)` with the texts as they are kept.
template <class Function>
auto visitBoth(const String& s1, const String& s2, const Function& function) {
    return StringRep::visit(
        s1,
        [&](const auto* p1, Uint32 size1) {
            return StringRep::visit(
                s2, [&](const auto* p2, Uint32 size2) { return function(p1, size1, p2, size2); });
        });
}

/// Compares the code units that both have as `fold` shows them, then the sizes.
template <class Fold>
int compareFolded(const String& s1, const String& s2, Fold fold) {
    return visitBoth(
        s1, s2,
        [&](const auto* p1, Uint32 size1, const auto* p2, Uint32 size2) {
            const Uint32 common = std::min(size1, size2);
            for (Uint32 i = 0; i < common; ++i)
                if (const Uint16 unit1 = unitOf(p1[i]), unit2 = unitOf(p2[i]); unit1 != unit2)
                    if (const int result = difference(fold(unit1), fold(unit2)))
                        return result;
            return size1 == size2 ? 0 : size1 < size2 ? -1 : 1;
        });
}

template <class Fold>
void foldAll(StringRep*& rep, Fold fold) {
    if (!rep)
        return;
    StringRep& mine = own(rep, 0);
    const auto foldUnits = [&](auto* units) {
        for (Uint32 i = 0; i < mine.size; ++i)
            units[i] = static_cast<std::decay_t<decltype(*units)>>(fold(unitOf(units[i])));
    };
    if (mine.isWide)
        foldUnits(mine.units());
    else
        foldUnits(mine.chars());
    mine.close(mine.size);
}

/// The text of a literal, if it is ASCII; null for none throws.
std::optional<std::string_view> asciiOf(const char* text) {
    const std::string_view view(notNull(text));
    if (asciiPrefix(view) != view.size())
        return std::nullopt;
    return view;
}

} // namespace

const Char16* StringRep::wideUnits() const {
    if (isWide)
        return units();
    Char16* widened = _widened.load(std::memory_order_acquire);
    if (widened)
        return widened;
    auto made = std::make_unique<Char16[]>(std::size_t{size} + 1);
    copyUnits(made.get(), chars(), size + 1);
    if (_widened.compare_exchange_strong(widened, made.get(), std::memory_order_acq_rel))
        return made.release();
    return widened; // another thread's
}

void StringRep::becomeWide() {
    if (isWide)
        return;
    wideUnits();
    isWide = true;
    capacity = size;
}

void StringRep::close(Uint32 newSize) {
    size = newSize;
    if (isWide) {
        units()[size] = 0;
    } else {
        chars()[size] = 0;
        delete[] _widened.exchange(nullptr, std::memory_order_acq_rel);
    }
}

const String String::EMPTY;

String::String() : _rep(nullptr) {}

String::String(const String& str) : _rep(share(str._rep)) {}

String::String(const String& str, Uint32 n) : _rep(nullptr) {
    if (n > str.size())
        throw IndexOutOfBoundsException();
    *this = str.subString(0, n);
}

String::String(const Char16* str) : _rep(makeRep(str, length(notNull(str)))) {}

String::String(const Char16* str, Uint32 n) : _rep(makeRep(notNull(str), n)) {}

String::String(const char* str) : _rep(readUtf8(str, length(notNull(str)))) {}

String::String(const char* str, Uint32 n) : _rep(readUtf8(str, n)) {}

String::~String() {
    release(_rep); // NOLINT(clang-analyzer-cplusplus.NewDelete): see Shared
}

String& String::assign(const String& str) {
    replace(_rep, str._rep);
    return *this;
}

void String::clear() { replace(_rep, static_cast<StringRep*>(nullptr)); }

void String::reserveCapacity(Uint32 capacity) { own(_rep, capacity); }

Uint32 String::size() const { return _rep ? _rep->size : 0; }

const Char16* String::getChar16Data() const { return _rep ? _rep->wideUnits() : nothing; }

CString String::getCString() const { return CString(embedding::utf8(*this)); }

Char16& String::operator[](Uint32 index) {
    if (index > size())
        throw IndexOutOfBoundsException();
    StringRep& mine = own(_rep, 0);
    mine.becomeWide();
    return mine.units()[index];
}

// NOLINTNEXTLINE(readability-const-return-type): the interface declares it so
const Char16 String::operator[](Uint32 index) const {
    if (index > size())
        throw IndexOutOfBoundsException();
    return StringRep::visit(
        *this, [&](const auto* units, Uint32) { return Char16(unitOf(units[index])); });
}

String& String::append(const Char16* str, Uint32 n) {
    appendTo(_rep, notNull(str), n);
    return *this;
}

String& String::append(const String& str) {
    if (!_rep)
        return assign(str);
    StringRep::visit(str, [&](const auto* units, Uint32 n) { appendTo(_rep, units, n); });
    return *this;
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
    StringRep& mine = own(_rep, 0);
    const Uint32 end = index + size;
    if (mine.isWide)
        copyUnits(mine.units() + index, mine.units() + end, mine.size - end);
    else
        copyUnits(mine.chars() + index, mine.chars() + end, mine.size - end);
    mine.close(mine.size - size);
}

String String::subString(Uint32 index, Uint32 n) const {
    if (index >= size())
        return String();
    n = std::min(n, size() - index);
    if (n == size())
        return *this;
    String part;
    part._rep = StringRep::visit(
        *this, [&](const auto* units, Uint32) { return makeRep(units + index, n); });
    return part;
}

Uint32 String::find(Uint32 index, Char16 c) const {
    if (index > size())
        throw IndexOutOfBoundsException();
    return StringRep::visit(*this, [&](const auto* begin, Uint32 size) {
        const auto* const end = begin + size;
        const auto* const found =
            std::find_if(begin + index, end, [&](auto unit) { return unitOf(unit) == Uint16(c); });
        return found == end ? PEG_NOT_FOUND : static_cast<Uint32>(found - begin);
    });
}

Uint32 String::find(const String& s) const {
    // An empty text is found nowhere.
    if (s.size() == 0)
        return PEG_NOT_FOUND;
    return visitBoth(*this, s, [](const auto* p1, Uint32 size1, const auto* p2, Uint32 size2) {
        const auto* const found = std::search(
            p1, p1 + size1, p2, p2 + size2, [](auto x, auto y) { return unitOf(x) == unitOf(y); });
        return found == p1 + size1 ? PEG_NOT_FOUND : static_cast<Uint32>(found - p1);
    });
}

Uint32 String::reverseFind(Char16 c) const {
    return StringRep::visit(
        *this,
        [&](const auto* units, Uint32 size) {
            for (Uint32 i = size; i > 0; --i)
                if (unitOf(units[i - 1]) == Uint16(c))
                    return i - 1;
            return PEG_NOT_FOUND;
        });
}

void String::toLower() { foldAll(_rep, lower<Uint16>); }

void String::toUpper() { foldAll(_rep, upper<Uint16>); }

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
    return visitBoth(
        s1, s2,
        [&](const auto* p1, Uint32 size1, const auto* p2, Uint32 size2) {
            for (Uint32 i = 0; i < n; ++i) {
                // The closing 0 of a shorter text takes part.
                const int result = difference(unitOf(p1[i]), unitOf(p2[i]));
                if (result != 0 || i == size1 || i == size2)
                    return result;
            }
            return 0;
        });
}

int String::compare(const String& s1, const String& s2) { return compareFolded(s1, s2, asIs); }

int String::compareNoCase(const String& s1, const String& s2) {
    return compareFolded(s1, s2, lower<Uint16>);
}

Boolean String::equal(const String& s1, const String& s2) {
    if (s1._rep == s2._rep)
        return true;
    if (s1.size() != s2.size())
        return false;
    const std::optional<std::string_view> ascii1 = StringRep::ascii(s1);
    const std::optional<std::string_view> ascii2 = StringRep::ascii(s2);
    return ascii1 && ascii2 ? *ascii1 == *ascii2 : compare(s1, s2) == 0;
}

Boolean String::equalNoCase(const String& s1, const String& s2) {
    if (s1._rep == s2._rep)
        return true;
    if (s1.size() != s2.size())
        return false;
    const std::optional<std::string_view> ascii1 = StringRep::ascii(s1);
    const std::optional<std::string_view> ascii2 = StringRep::ascii(s2);
    return ascii1 && ascii2 ? equalIgnoringCase(*ascii1, *ascii2) : compareNoCase(s1, s2) == 0;
}

// With the overloads for `const char*`, so that providers that ask for them find them.

Boolean String::equal(const String& s1, const char* s2) {
    const std::optional<std::string_view> ascii1 = StringRep::ascii(s1);
    const std::optional<std::string_view> ascii2 = asciiOf(s2);
    return ascii1 && ascii2 ? *ascii1 == *ascii2 : equal(s1, String(s2));
}

String& String::append(const char* str) { return append(str, length(notNull(str))); }

String& String::append(const char* str, Uint32 size) {
    if (!isAscii(notNull(str), size))
        return append(String(str, size));
    appendTo(_rep, str, size);
    return *this;
}

Boolean String::equalNoCase(const String& s1, const char* s2) {
    const std::optional<std::string_view> ascii1 = StringRep::ascii(s1);
    const std::optional<std::string_view> ascii2 = asciiOf(s2);
    return ascii1 && ascii2 ? equalIgnoringCase(*ascii1, *ascii2) : equalNoCase(s1, String(s2));
}

Boolean operator==(const String& str1, const char* str2) { return String::equal(str1, str2); }

std::ostream& operator<<(std::ostream& os, const String& str) {
    for (Uint32 i = 0; i < str.size(); ++i) {
        const Uint16 unit = str[i];
        if (unit < 0x100) {
            os << static_cast<char>(static_cast<unsigned char>(unit));
        } else {
            char hexadecimal[8];
            std::snprintf(hexadecimal, sizeof hexadecimal, "\\x%04X", static_cast<unsigned>(unit));
            os << hexadecimal;
        }
    }
    return os;
}

} // namespace Pegasus
