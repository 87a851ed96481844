#include "embedding/Text.h"

#include "StringRep.h"

#include "text/Utf8.h"

#include <algorithm>

namespace Pegasus::embedding {

std::string utf8(const String& text) {
    std::string out;
    appendUtf8(out, text);
    return out;
}

void appendUtf8(std::string& out, const String& text) {
    if (const std::optional<std::string_view> ascii = StringRep::ascii(text)) {
        out += *ascii;
        return;
    }
    const Char16* at = text.getChar16Data();
    const Char16* const end = at + text.size();
    while (at != end)
        embedded::text::appendUtf8(out, embedded::text::takeCharacter(at, end));
}

String fromUtf8(std::string_view text) {
    return text.empty() ? String() : String(text.data(), static_cast<Uint32>(text.size()));
}

std::string folded(const String& text) {
    std::string out = utf8(text);
    std::transform(out.begin(), out.end(), out.begin(), embedded::text::lower<char>);
    return out;
}

std::uint64_t foldedHash(const String& text) {
    return keyedHash(text, embedded::text::lower<Uint16>);
}

} // namespace Pegasus::embedding
