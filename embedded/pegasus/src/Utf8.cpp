#include "Utf8.h"

#include <Pegasus/Common/Exception.h>

#include <algorithm>
#include <cstdio>

namespace Pegasus::utf8 {

namespace {

/// A form of UTF-8 sequence (Unicode Standard, table 3-6): how it begins, how long it is, and the
/// least code point that needs it.
struct Form {
    unsigned char mask;
    unsigned char lead;
    Uint32 length;
    Uint32 least;
};

const Form forms[] = {
    {0x80, 0x00, 1, 0x0},
    {0xE0, 0xC0, 2, 0x80},
    {0xF0, 0xE0, 3, 0x800},
    {0xF8, 0xF0, 4, 0x10000},
};

constexpr Uint32 maximumCodePoint = 0x10FFFF;

/// Reads one code point and advances `at`; false when there is none.
bool readCodePoint(const unsigned char* bytes, Uint32 size, Uint32& at, Uint32& codePoint) {
    const unsigned char lead = bytes[at];
    for (const Form& form : forms) {
        if ((lead & form.mask) != form.lead)
            continue;
        if (form.length > size - at)
            return false;
        codePoint = lead & static_cast<unsigned char>(~form.mask);
        for (Uint32 i = 1; i < form.length; ++i) {
            if ((bytes[at + i] & 0xC0) != 0x80)
                return false;
            codePoint = codePoint << 6 | (bytes[at + i] & 0x3F);
        }
        at += form.length;
        return codePoint >= form.least && codePoint <= maximumCodePoint;
    }
    return false;
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

void appendCodePoint(std::string& text, Uint32 codePoint) {
    for (const Form* form = std::end(forms) - 1;; --form) {
        if (codePoint < form->least)
            continue;
        Uint32 shift = 6 * (form->length - 1);
        text += static_cast<char>(form->lead | codePoint >> shift);
        while (shift > 0) {
            shift -= 6;
            text += static_cast<char>(0x80 | (codePoint >> shift & 0x3F));
        }
        return;
    }
}

bool isHighSurrogate(Uint16 unit) {
    return unit >= 0xD800 && unit <= 0xDBFF;
}

bool isLowSurrogate(Uint16 unit) {
    return unit >= 0xDC00 && unit <= 0xDFFF;
}

} // namespace

void decode(const char* bytes, Uint32 size, std::vector<Char16>& units) {
    const auto* const unsignedBytes = reinterpret_cast<const unsigned char*>(bytes);
    units.reserve(units.size() + size);
    Uint32 at = 0;
    while (at < size) {
        const Uint32 begin = at;
        Uint32 codePoint = 0;
        if (!readCodePoint(unsignedBytes, size, at, codePoint))
            reject(bytes, size, begin);
        if (codePoint < 0x10000) {
            units.emplace_back(static_cast<Uint16>(codePoint));
        } else {
            const Uint32 offset = codePoint - 0x10000;
            units.emplace_back(static_cast<Uint16>(0xD800 + (offset >> 10)));
            units.emplace_back(static_cast<Uint16>(0xDC00 + (offset & 0x3FF)));
        }
    }
}

std::string encode(const Char16* units, Uint32 size) {
    std::string text;
    text.reserve(size);
    for (Uint32 i = 0; i < size; ++i) {
        Uint32 codePoint = units[i];
        if (isHighSurrogate(units[i]) && i + 1 < size && isLowSurrogate(units[i + 1])) {
            codePoint = 0x10000 + ((codePoint - 0xD800) << 10) + (units[i + 1] - 0xDC00U);
            ++i;
        }
        appendCodePoint(text, codePoint);
    }
    return text;
}

} // namespace Pegasus::utf8
