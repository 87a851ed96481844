// Header fields: found by name, taken apart, escaped.
#pragma once

#include <string>
#include <utility>
#include <vector>

namespace embedded::http {

/// Header fields in the order in which they came or shall go; names keep their spelling.
using Fields = std::vector<std::pair<std::string, std::string>>;

/// The value of the first field named `name` (case ignored), or nullptr.
const std::string* findField(const Fields& fields, const std::string& name);

/// The members of all fields named `name` (case ignored), which are lists with commas (RFC 9110
/// clause 5.6.1), trimmed; empty ones are left out.
std::vector<std::string> listOf(const Fields& fields, const std::string& name);

/// A field value of the form `value; name=value; ...` (RFC 9110 clause 5.6.6), quotes removed.
struct Parametrized {
    std::string value;
    Fields parameters;
};

Parametrized parametrized(const std::string& text);

/// `text` with its %-escapes resolved; throws std::invalid_argument for one that is not two
/// hexadecimal digits.
std::string percentDecoded(const std::string& text);

/// `text` with everything escaped but the unreserved characters of RFC 3986 clause 2.3.
std::string percentEncoded(const std::string& text);

} // namespace embedded::http
