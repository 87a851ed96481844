#include "text/Utf8.h"

#include <gtest/gtest.h>

namespace embedded::text {
namespace {

constexpr std::size_t npos = std::string_view::npos;

TEST(Utf8, IsInvalidWhereNoWholeCharacterBegins) {
    const struct {
        std::string_view text;
        std::size_t invalid;
    } rows[] = {
        {"", npos},
        {"a\x7F\xC2\x80\xDF\xBF\xE0\xA0\x80\xEF\xBF\xBF\xF0\x90\x80\x80\xF4\x8F\xBF\xBF", npos},
        {"\x80", 0},
        {"123456789\xC3", 9},
        {"a\xC3zz", 1},
        {"\xC3\xA4\xC0\x80", 2},
        {"a\xE0\x9F\xBF", 1},
        {"a\xED\xA0\x80", 1}, // a surrogate
        {"\xED\x9F\xBF\xEE\x80\x80", npos},
        {"a\xF0\x8F\xBF\xBF", 1},
        {"a\xF4\x90\x80\x80", 1},
        {"a\xF8\x88\x80\x80\x80", 1},
    };
    for (const auto& [text, invalid] : rows)
        EXPECT_EQ(findInvalidUtf8(text), invalid) << text;
}

TEST(Utf8, CountsCharacters) {
    EXPECT_EQ(countCharacters("a\xC3\xA4\xE2\x82\xAC\xF0\x9F\x98\x80"), 4U);
    EXPECT_EQ(countCharacters(""), 0U);
}

TEST(Utf8, IsAsLongAsTheCharacterNeeds) {
    std::string out;
    for (const char32_t character :
         std::u32string_view(U"\x7F\x80\u07FF\u0800\uFFFF\U00010000\U0010FFFF"))
        appendUtf8(out, character);
    EXPECT_EQ(out, "\x7F\xC2\x80\xDF\xBF\xE0\xA0\x80\xEF\xBF\xBF\xF0\x90\x80\x80\xF4\x8F\xBF\xBF");
    out.clear();
    appendUtf8(out, 0xDC00);
    EXPECT_EQ(out, "\xED\xB0\x80");
}

TEST(Utf8, BecomesUtf16) {
    std::u16string units = u"-";
    EXPECT_EQ(appendUtf16(units, "a\xC3\xA4\xE2\x82\xAC\xF0\x9F\x98\x80"), npos);
    EXPECT_EQ(units, u"-a\u00E4\u20AC\U0001F600");
}

TEST(Utf8, MayHaveSurrogatesOnTheWayToUtf16) {
    std::u16string units;
    EXPECT_EQ(appendUtf16(units, "a\xED\xA0\xBD\xED\xB8\x80z\xED\xBF\xBF"), npos);
    EXPECT_EQ(units, (std::u16string{u'a', 0xD83D, 0xDE00, u'z', 0xDFFF}));
}

TEST(Utf8, IsReadUpToWhatIsInvalid) {
    const std::pair<std::string_view, std::size_t> rows[] = {
        {"\xC3\xA4 x\xFF", 4}, {"\xED\xA0\x80\xED\xA0", 3}, {"\xED\xA0\x80\xED\xC0\x80", 3},
        {"\xED\xA0z", 0},      {"\xFF\xA0\x80", 0},
    };
    for (const auto& [text, invalid] : rows) {
        std::u16string units;
        EXPECT_EQ(appendUtf16(units, text), invalid);
    }
}

TEST(Utf16, IsTakenCharacterByCharacter) {
    const std::u16string units{u'a', 0xD83D, 0xDE00, 0xDE00, 0xDE00, 0xD83D, u'b', 0xD83D};
    const char16_t* at = units.data();
    const char16_t* const end = at + units.size();
    std::u32string characters;
    while (at != end)
        characters += takeCharacter(at, end);
    EXPECT_EQ(characters, (std::u32string{U'a', 0x1F600, 0xDE00, 0xDE00, 0xD83D, U'b', 0xD83D}));
}

TEST(Visible, IsOneLineWhateverTheTextHolds) {
    EXPECT_EQ(visible("plain, \u00e4, \u20ac, \U0001F600"), "plain, \u00e4, \u20ac, \U0001F600");
    EXPECT_EQ(visible("a\r\nb\tc\x1b[2J\x7f"), "a\\x0D\\x0Ab\\x09c\\x1B[2J\\x7F");
    EXPECT_EQ(visible(std::string_view("a\0b", 3)), "a\\x00b");
    // The controls U+0080 to U+009F, and their neighbour, which is none.
    EXPECT_EQ(visible("\u0080\u0085\u009b\u009f\u00a0"),
              "\\xC2\\x80\\xC2\\x85\\xC2\\x9B\\xC2\\x9F\u00a0");
    // Bytes that are no UTF-8: cut off, alone, a surrogate.
    EXPECT_EQ(visible("\xc3"), "\\xC3");
    EXPECT_EQ(visible("\x85z\xff"), "\\x85z\\xFF");
    EXPECT_EQ(visible("\xc2"), "\\xC2");
    EXPECT_EQ(visible("\xed\xa0\x80"), "\\xED\\xA0\\x80");
}

} // namespace
} // namespace embedded::text
