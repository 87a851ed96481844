// A certificate that nobody else has signed, for the desk and for tests.
#pragma once

#include <chrono>
#include <string>
#include <vector>

namespace embedded::http {

struct SelfSigned {
    std::string certificate; ///< PEM
    std::string key;         ///< PEM, not encrypted
};

constexpr std::chrono::hours selfSignedValidity{24 * 397}; // what clients still take

/// A new key (EC, P-256) and its certificate, for servers and clients, from an hour ago on.
/// `names`: host names and addresses for which canBeCertified(), at least one; the first one is the
/// subject's name, too, up to 64 bytes of it. Throws std::runtime_error. Thread-safety: any thread.
SelfSigned makeSelfSigned(const std::vector<std::string>& names);

/// Whether `name` can be one of those: an address, or a host name, perhaps beginning with "*.".
bool canBeCertified(const std::string& name);

} // namespace embedded::http
