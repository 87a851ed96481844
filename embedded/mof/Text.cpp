#include "mof/Text.h"

#include <algorithm>

namespace embedded::mof {

namespace {

// The lead bytes, and which second byte may follow them (RFC 3629, clause 4). All later bytes
// are 80..BF.
struct Form {
    unsigned char firstLead, lastLead;
    unsigned char lowestSecond, highestSecond;
    std::size_t length;
};

constexpr Form forms[] = {
    {0x00, 0x7F, 0x00, 0x00, 1}, {0xC2, 0xDF, 0x80, 0xBF, 2}, {0xE0, 0xE0, 0xA0, 0xBF, 3},
    {0xE1, 0xEC, 0x80, 0xBF, 3}, {0xED, 0xED, 0x80, 0x9F, 3}, {0xEE, 0xEF, 0x80, 0xBF, 3},
    {0xF0, 0xF0, 0x90, 0xBF, 4}, {0xF1, 0xF3, 0x80, 0xBF, 4}, {0xF4, 0xF4, 0x80, 0x8F, 4},
};

// The length of the character at the start of `text`, 0 when there is no valid one.
std::size_t characterLength(std::string_view text) {
    const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
    for (const Form& form : forms) {
        if (byte(0) < form.firstLead || byte(0) > form.lastLead)
            continue;
        if (text.size() < form.length)
            return 0;
        for (std::size_t i = 1; i < form.length; ++i) {
            const unsigned char lowest = i == 1 ? form.lowestSecond : 0x80;
            const unsigned char highest = i == 1 ? form.highestSecond : 0xBF;
            if (byte(i) < lowest || byte(i) > highest)
                return 0;
        }
        return form.length;
    }
    return 0;
}

} // namespace

std::size_t findInvalidUtf8(std::string_view text) {
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t length = characterLength(text.substr(at));
        if (length == 0)
            return at;
        at += length;
    }
    return std::string_view::npos;
}

std::size_t countCharacters(std::string_view text) {
    return static_cast<std::size_t>(std::count_if(text.begin(), text.end(), [](char c) {
        return (static_cast<unsigned char>(c) & 0xC0U) != 0x80U;
    }));
}

void appendUtf8(std::string& out, char32_t character) {
    const auto put = [&](char32_t byte) { out += static_cast<char>(byte); };
    const auto putTail = [&](unsigned shift) { put(0x80U | ((character >> shift) & 0x3FU)); };
    if (character < 0x80) {
        put(character);
    } else if (character < 0x800) {
        put(0xC0U | (character >> 6U));
        putTail(0);
    } else if (character < 0x10000) {
        put(0xE0U | (character >> 12U));
        putTail(6);
        putTail(0);
    } else {
        put(0xF0U | (character >> 18U));
        putTail(12);
        putTail(6);
        putTail(0);
    }
}

std::string toLower(std::string_view text) {
    std::string out(text);
    for (char& c : out) {
        if (c >= 'A' && c <= 'Z')
            c = static_cast<char>(c - 'A' + 'a');
    }
    return out;
}

} // namespace embedded::mof
