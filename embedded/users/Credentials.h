// What a client says of who it is.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace embedded::users {

struct Credentials {
    std::string name;
    std::string password;
};

/// The credentials of an Authorization field of the scheme Basic (RFC 7617), which has the form
/// "Basic BASE64"; none if it is of another scheme or form. A name may be any one, also one that no
/// user has; it and the password have no control characters.
std::optional<Credentials> basicCredentials(std::string_view field);

} // namespace embedded::users
