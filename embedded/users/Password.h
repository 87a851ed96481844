// Passwords as hashes that are slow on purpose, of the system's crypt library.
#pragma once

#include <string>
#include <string_view>

namespace embedded::users {

/// What is wrong with `password`, for whoever chooses it; empty: nothing. Control characters, NUL
/// among them, cannot be sent, and bytes that are no UTF-8 are not the same at all clients.
std::string passwordFault(std::string_view password);

/// A new hash of `password`, with the default method and cost of yescrypt and a salt of its own.
/// Throws std::invalid_argument for a password that has a fault, std::runtime_error if the library
/// or its source of random bytes fails. Takes some hundredths of a second, as matches() does.
std::string hashed(std::string_view password);

/// Whether `hash` is of `password`. A password that has a fault takes as long as any other one and
/// matches nothing. `hash`: one that has no fault. Throws std::runtime_error if the library cannot
/// say, for want of memory. Thread-safe.
bool matches(std::string_view password, const std::string& hash);

/// What is wrong with a hash that was read; empty: nothing. Known are the methods that the crypt
/// library thinks safe.
std::string hashFault(const std::string& hash);

} // namespace embedded::users
