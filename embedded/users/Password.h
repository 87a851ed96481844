// Passwords as hashes that are slow on purpose, of the system's crypt library.
#pragma once

#include <string>
#include <string_view>

namespace embedded::users {

/// What is wrong with `password`, for the person who chooses it; empty if nothing is. Clients
/// cannot send control characters (NUL included), and send bytes that are not UTF-8 differently.
std::string passwordFault(std::string_view password);

/// A new hash of `password` by yescrypt at its default cost, with a new salt. Throws
/// std::invalid_argument for a faulty password, std::runtime_error if the library or its source of
/// random bytes fails. Takes some hundredths of a second, as matches() does.
std::string hashed(std::string_view password);

/// Whether `hash` is the hash of `password`. A faulty password takes as long as any other, and
/// matches nothing. REQUIRES: `hash` has no fault. Throws std::runtime_error if the library has no
/// memory. Thread-safe.
bool matches(std::string_view password, const std::string& hash);

/// What is wrong with a hash that was read; empty if nothing is. Only methods that the crypt
/// library considers safe are accepted.
std::string hashFault(const std::string& hash);

} // namespace embedded::users
