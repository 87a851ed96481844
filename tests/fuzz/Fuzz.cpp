#include "fuzz/Fuzz.h"

#include <expat.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <memory>

namespace fuzz {
namespace {

// "&#1;" to "&#31;" and "&#x1;" to "&#x1F;" become "&#9;", which is XML.
void tolerateControls(std::string& text) {
    for (std::size_t at = 0; (at = text.find("&#", at)) != std::string::npos; at += 2) {
        const std::size_t end = text.find(';', at);
        if (end == std::string::npos || end - at > 5)
            continue;
        const bool hexadecimal = text[at + 2] == 'x';
        const std::string digits = text.substr(at + (hexadecimal ? 3 : 2));
        if (std::strtoul(digits.c_str(), nullptr, hexadecimal ? 16 : 10) < 0x20)
            text.replace(at, end - at, "&#9");
    }
}

} // namespace

void require(bool holds, const char* rule, std::string_view seen) {
    if (holds)
        return;
    std::fprintf(stderr, "BROKEN RULE: %s\n%.*s\n", rule, static_cast<int>(seen.size()),
                 seen.data());
    std::abort();
}

bool isWellFormed(std::string text) {
    tolerateControls(text);
    const std::unique_ptr<XML_ParserStruct, void (*)(XML_Parser)> parser(
        XML_ParserCreate("UTF-8"), [](XML_Parser made) { XML_ParserFree(made); });
    return XML_Parse(parser.get(), text.data(), static_cast<int>(text.size()), XML_TRUE) ==
           XML_STATUS_OK;
}

std::uint8_t Choices::byte() {
    if (_bytes.empty())
        return 0;
    const auto first = static_cast<std::uint8_t>(_bytes.front());
    _bytes.remove_prefix(1);
    return first;
}

std::size_t Choices::below(std::size_t count) {
    const std::size_t chosen = count > 256 ? byte() * std::size_t{256} + byte() : byte();
    return chosen % count;
}

std::string Choices::text() {
    const std::size_t size = std::min<std::size_t>(byte(), _bytes.size());
    const std::string taken(_bytes.substr(0, size));
    _bytes.remove_prefix(size);
    return taken;
}

} // namespace fuzz
