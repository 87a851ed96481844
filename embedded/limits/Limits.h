// Every bound that clients can meet, and nothing else.
//
// What stands behind a constant is the item of the manual page (cimhost(1), LIMITS) that says what
// a client sees beyond it; there may be several. Each constant has a test (tests/limits).
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>

namespace embedded::limits {

constexpr std::size_t KiB = 1024; // bytes
constexpr std::size_t MiB = 1024 * KiB;

// Connections and requests, whatever is asked. A byte of a request counts from when it is there to
// when its reply is made.

constexpr std::uint32_t header = 64 * KiB;     ///< header of a request; a request
constexpr std::uint64_t body = 8 * MiB;        ///< body of a request; a request
constexpr std::size_t allRequests = 128 * MiB; ///< all requests
constexpr unsigned connections = 512;          ///< connections
constexpr unsigned refusals = 64;              ///< connections refused
constexpr std::chrono::seconds refusalTime{2}; ///< connections refused
constexpr std::chrono::minutes idleTime{5};    ///< waiting for a request
constexpr std::size_t leastTaken = 32 * KiB;   ///< taking a reply
constexpr std::size_t wholeReply = 64 * MiB;   ///< reply to an HTTP/1.0 client
// clang-format off
constexpr std::chrono::seconds requestTime{30}; ///< the rest of a request; taking a reply; TLS handshake
// clang-format on
constexpr std::size_t clientCertificates = 32 * KiB; ///< certificates of a client

// Requests at once. One that has to be read for long is read by a worker, as other connections are
// not to wait for it.

constexpr unsigned placesInModule = 4;            ///< requests inside a module
constexpr std::size_t shortRequest = 32 * KiB;    ///< long requests
constexpr unsigned processorsForALongRequest = 2; ///< long requests
constexpr std::chrono::seconds patience{30};      ///< requests inside a module; long requests

// Pulled enumerations. What a provider has delivered is kept until it is pulled; what the
// repository has is read when it is asked for.

constexpr std::size_t enumerations = 256;               ///< open enumerations
constexpr std::size_t enumerationsOfOneUser = 128;      ///< open enumerations
constexpr std::size_t enumerationObjects = 200000;      ///< objects of open enumerations
constexpr std::chrono::seconds enumerationTime{30};     ///< time between pulls
constexpr std::chrono::seconds enumerationLongest{300}; ///< time between pulls

// Documents. A request may be large, but what it costs must not grow beyond its size: an object of
// many members is copied where one of them changes, a reference within a key is quoted again at
// each level, and many errors show what a client has sent, some of which grows tenfold on the way.

/// A request with a reference within a reference needs 16.
constexpr std::size_t depth = 32; ///< elements in each other
/// DSP0203 has no element with more than ten.
constexpr std::size_t attributes = 16; ///< attributes of an element
/// What comes behind so many cannot make the document valid any more.
constexpr std::size_t unknownElements = 1000;    ///< elements that no request has
constexpr std::size_t members = 1000;            ///< properties, qualifiers, keys
constexpr unsigned referenceDepth = 3;           ///< references in keys
constexpr std::uint32_t referenceLength = 16384; ///< references in keys
constexpr std::uint32_t errorLength = 65536;     ///< message of an error
constexpr std::size_t errorDetail = 256;         ///< detail of a refusal

// Users. The hash of a password is slow on purpose, so one at a time is computed; whoever fails has
// to wait before the next attempt.

constexpr std::size_t userName = 256;              ///< users and passwords
constexpr std::size_t password = 511;              ///< users and passwords
constexpr unsigned placesToVerify = 1;             ///< passwords being checked
constexpr unsigned waitingToBeVerified = 64;       ///< passwords being checked
constexpr std::size_t remembered = 1000;           ///< passwords remembered
constexpr std::chrono::minutes rememberedTime{15}; ///< passwords remembered
constexpr unsigned freeFailures = 3;               ///< failed attempts
constexpr std::chrono::seconds slowestAttempts{8}; ///< failed attempts
constexpr std::chrono::minutes failureMemory{10};  ///< failed attempts
constexpr std::size_t failuresKept = 4096;         ///< failed attempts

// The log, of what clients can have written there.

constexpr unsigned logLines = 10;         ///< lines of a kind in the log
constexpr std::size_t logQueue = 1 * MiB; ///< the log

} // namespace embedded::limits
