// A hash for texts from outside. Its key is this process's own, so that a client cannot make up
// texts with the same hash.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace embedded::text {

/// SipHash-1-3 (Aumasson and Bernstein, "SipHash: a fast short-input PRF", 2012) of words. Not the
/// same in another process, nor in a library that has this code as a part of its own.
class KeyedHash {
  public:
    KeyedHash() : KeyedHash(processKey()) {}

    void add(std::uint64_t word) noexcept {
        _3 ^= word;
        round();
        _0 ^= word;
    }

    std::uint64_t value() const noexcept {
        KeyedHash last = *this;
        last._2 ^= 0xFF;
        for (int i = 0; i < 3; ++i)
            last.round();
        return last._0 ^ last._1 ^ last._2 ^ last._3;
    }

  private:
    struct Key {
        std::uint64_t low, high;
    };

    explicit KeyedHash(const Key& key) noexcept
        : _0(key.low ^ 0x736F6D6570736575U), _1(key.high ^ 0x646F72616E646F6DU),
          _2(key.low ^ 0x6C7967656E657261U), _3(key.high ^ 0x7465646279746573U) {}

    /// Made at the first call. Thread-safe.
    static const Key& processKey();

    static constexpr std::uint64_t turned(std::uint64_t word, unsigned bits) noexcept {
        return word << bits | word >> (64 - bits);
    }

    void round() noexcept {
        _0 += _1;
        _2 += _3;
        _1 = turned(_1, 13) ^ _0;
        _3 = turned(_3, 16) ^ _2;
        _0 = turned(_0, 32);
        _2 += _1;
        _0 += _3;
        _1 = turned(_1, 17) ^ _2;
        _3 = turned(_3, 21) ^ _0;
        _2 = turned(_2, 32);
    }

    std::uint64_t _0, _1, _2, _3;
};

/// The hash of a text.
std::uint64_t keyedHash(std::string_view text);

} // namespace embedded::text
