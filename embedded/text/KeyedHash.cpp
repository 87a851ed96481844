#include "text/KeyedHash.h"

#include <cstring>
#include <random>

namespace embedded::text {

const KeyedHash::Key& KeyedHash::processKey() {
    static const Key key = [] {
        std::random_device random;
        const auto word = [&] { return std::uint64_t{random()} << 32 | random(); };
        return Key{word(), word()};
    }();
    return key;
}

std::uint64_t keyedHash(std::string_view text) {
    KeyedHash hash;
    hash.add(text.size());
    std::uint64_t word = 0;
    for (; text.size() >= sizeof word; text.remove_prefix(sizeof word)) {
        std::memcpy(&word, text.data(), sizeof word);
        hash.add(word);
    }
    word = 0;
    if (!text.empty())
        std::memcpy(&word, text.data(), text.size());
    hash.add(word);
    return hash.value();
}

} // namespace embedded::text
