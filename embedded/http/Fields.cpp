#include "http/Fields.h"

#include "text/Ascii.h"

#include <algorithm>
#include <charconv>
#include <stdexcept>
#include <string_view>

namespace embedded::http {
namespace {

constexpr const char* hexadecimal = "0123456789ABCDEF";

bool isUnreserved(char c) {
    return text::isDigit(c) || text::isLetter(c) || c == '-' || c == '.' || c == '_' || c == '~';
}

std::string trimmed(std::string_view text) { return std::string(text::trimmed(text)); }

std::string unquoted(const std::string& text) {
    if (text.size() >= 2 && text.front() == '"' && text.back() == '"')
        return text.substr(1, text.size() - 2);
    return text;
}

} // namespace

const std::string* findField(const Fields& fields, const std::string& name) {
    for (const auto& field : fields)
        if (text::equalIgnoringCase(field.first, name))
            return &field.second;
    return nullptr;
}

std::vector<std::string> listOf(const Fields& fields, const std::string& name) {
    std::vector<std::string> members;
    for (const auto& field : fields) {
        if (!text::equalIgnoringCase(field.first, name))
            continue;
        for (std::size_t begin = 0; begin <= field.second.size();) {
            const std::size_t end = std::min(field.second.find(',', begin), field.second.size());
            std::string member = trimmed(field.second.substr(begin, end - begin));
            if (!member.empty())
                members.push_back(std::move(member));
            begin = end + 1;
        }
    }
    return members;
}

Parametrized parametrized(const std::string& text) {
    Parametrized result;
    std::size_t end = text.find(';');
    result.value = unquoted(trimmed(text.substr(0, end)));
    while (end != std::string::npos) {
        const std::size_t begin = end + 1;
        end = text.find(';', begin);
        const std::string parameter = text.substr(begin, end - begin);
        const std::size_t equals = parameter.find('=');
        if (equals != std::string::npos)
            result.parameters.emplace_back(trimmed(parameter.substr(0, equals)),
                                           unquoted(trimmed(parameter.substr(equals + 1))));
    }
    return result;
}

std::string percentDecoded(const std::string& text) {
    std::string result;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] != '%') {
            result += text[i];
            continue;
        }
        unsigned char byte = 0;
        const char* const digits = text.data() + i + 1;
        const char* const end = std::min(digits + 2, text.data() + text.size());
        if (std::from_chars(digits, end, byte, 16).ptr != digits + 2)
            throw std::invalid_argument("not two hexadecimal digits after % in " + text);
        result += static_cast<char>(byte);
        i += 2;
    }
    return result;
}

std::string percentEncoded(const std::string& text) {
    std::string result;
    for (const char c : text) {
        if (isUnreserved(c)) {
            result += c;
            continue;
        }
        const auto byte = static_cast<unsigned char>(c);
        result += '%';
        result += hexadecimal[byte / 16];
        result += hexadecimal[byte % 16];
    }
    return result;
}

} // namespace embedded::http
