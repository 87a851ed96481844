// The credentials that a client sends.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace embedded::users {

struct Credentials {
    std::string name;
    std::string password;
};

/// The credentials of an Authorization field "Basic BASE64" (RFC 7617); none if it has another
/// scheme or form, or if name or password have control characters. The name need not be a user's.
std::optional<Credentials> basicCredentials(std::string_view field);

} // namespace embedded::users
