// What the fuzz targets share. A target is one source file with LLVMFuzzerTestOneInput(), which
// ends the process when a rule is broken: by require(), by a sanitizer, or by an exception that
// nobody expected. In the preset "fuzz" libFuzzer makes the inputs; everywhere else replay.cpp
// plays those that are kept.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

/// Plays one input. Returns 0.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace fuzz {

/// Unless it `holds`, says on standard error which `rule` is broken and what was seen, and aborts.
void require(bool holds, const char* rule, std::string_view seen = {});

/// Whether `text` is a well-formed XML document. References to control characters, which the
/// writer of XML is meant to make of such characters, are no fault of it.
bool isWellFormed(std::string text);

/// An input as a row of choices; behind its end, each is the first one.
class Choices {
  public:
    explicit Choices(std::string_view bytes) : _bytes(bytes) {}

    std::size_t left() const { return _bytes.size(); }
    std::uint8_t byte();
    /// One of `count` numbers from 0 on. REQUIRES: 0 < count.
    std::size_t below(std::size_t count);
    /// True as often as not.
    bool flag() { return (byte() & 1U) != 0; }
    /// At most 255 bytes: as many as the next byte says.
    std::string text();
    template <class Container>
    const auto& of(const Container& container) {
        return container[below(container.size())];
    }

  private:
    std::string_view _bytes;
};

} // namespace fuzz
