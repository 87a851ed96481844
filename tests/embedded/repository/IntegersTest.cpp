#include "repository/Integers.h"

#include <gtest/gtest.h>

namespace embedded::repository {

namespace {

std::string shown(const std::string& digits) {
    const auto integer = parseInteger(digits);
    if (!integer)
        return "none";
    return (integer->negative ? "-" : "") + std::to_string(integer->magnitude);
}

TEST(Integers, AreReadInFourNotations) {
    const std::pair<const char*, const char*> cases[] = {
        {"0", "0"},
        {"42", "42"},
        {"-42", "-42"},
        {"+7", "7"},
        {"0x1F", "31"},
        {"-0XfF", "-255"},
        {"0x1b", "27"},
        {"017", "15"},
        {"-010", "-8"},
        {"101b", "5"},
        {"-11B", "-3"},
        {"0b", "0"},
        {"", "none"},
        {"-", "none"},
        {"08", "none"},
        {"12b", "none"},
        {"0x", "none"},
        {"1.5", "none"},
        {"--1", "none"},
        {"b", "none"},
        {"18446744073709551615", "18446744073709551615"},
        {"18446744073709551616", "none"},
        {"0x10000000000000000", "none"},
    };
    for (const auto& [digits, expected] : cases)
        EXPECT_EQ(shown(digits), expected) << digits;
}

TEST(Integers, NarrowExactlyTheRangeOfTheType) {
    for (int value = -400; value <= 400; ++value) {
        const Integer integer{value < 0, static_cast<std::uint64_t>(value < 0 ? -value : value)};
        const auto asUnsigned = narrowed<std::uint8_t>(integer);
        const auto asSigned = narrowed<std::int8_t>(integer);
        EXPECT_EQ(asUnsigned.has_value(), value >= 0 && value <= 255) << value;
        EXPECT_EQ(asSigned.has_value(), value >= -128 && value <= 127) << value;
        EXPECT_EQ(asUnsigned.value_or(static_cast<std::uint8_t>(value)),
                  static_cast<std::uint8_t>(value));
        EXPECT_EQ(asSigned.value_or(static_cast<std::int8_t>(value)),
                  static_cast<std::int8_t>(value));
    }
}

TEST(Integers, NarrowToTheEndsOfTheWidestTypes) {
    const std::uint64_t half = std::uint64_t{1} << 63;
    EXPECT_EQ(narrowed<std::int64_t>({true, half}), std::numeric_limits<std::int64_t>::min());
    EXPECT_EQ(narrowed<std::int64_t>({true, half + 1}), std::nullopt);
    EXPECT_EQ(narrowed<std::int64_t>({false, half}), std::nullopt);
    EXPECT_EQ(narrowed<std::uint64_t>({false, ~std::uint64_t{0}}), ~std::uint64_t{0});
    EXPECT_EQ(narrowed<std::uint64_t>({true, 0}), 0U);
}

} // namespace
} // namespace embedded::repository
