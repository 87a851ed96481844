#include "text/Ascii.h"

#include <gtest/gtest.h>

namespace embedded::text {
namespace {

TEST(Ascii, FoldsLettersAndNothingElse) {
    EXPECT_EQ(lowered("AZaz@[`{09_\xC3\x84"), "azaz@[`{09_\xC3\x84");
    EXPECT_EQ(upper('`'), '`');
    EXPECT_EQ(upper('a'), 'A');
    EXPECT_EQ(upper('z'), 'Z');
    EXPECT_EQ(upper('{'), '{');
    EXPECT_EQ(lower<unsigned short>(0x0141), 0x0141) << "whose low byte is a letter";
    EXPECT_TRUE(equalIgnoringCase("aZ_\xC3\x84", "Az_\xC3\x84"));
    EXPECT_FALSE(equalIgnoringCase("@", "`"));
    EXPECT_FALSE(equalIgnoringCase("a", "ab"));
    EXPECT_FALSE(equalIgnoringCase("\xC3\x84", "\xC3\xA4"));
}

TEST(Ascii, HasLettersAndDigits) {
    for (const char c : {'A', 'Z', 'a', 'z'})
        EXPECT_TRUE(isLetter(c) && !isDigit(c)) << c;
    for (const char c : {'0', '9'})
        EXPECT_TRUE(isDigit(c) && !isLetter(c)) << c;
    for (const char c : {'/', ':', '@', '[', '`', '{'})
        EXPECT_FALSE(isDigit(c) || isLetter(c)) << c;
}

TEST(Ascii, PrefixEndsAtTheFirstOtherByte) {
    for (std::size_t size = 0; size < 20; ++size) {
        const std::string plain(size, '\x7F');
        EXPECT_EQ(asciiPrefix(plain), size);
        for (std::size_t at = 0; at < size; ++at) {
            std::string text = plain;
            text[at] = '\x80';
            EXPECT_EQ(asciiPrefix(text), at);
        }
    }
}

TEST(Ascii, TrimsBothEnds) {
    EXPECT_EQ(trimmed(" \t\r\na b\n"), "a b");
    EXPECT_EQ(trimmed("\va\f"), "\va\f");
    EXPECT_EQ(trimmed(" \n"), "");
    EXPECT_EQ(trimmed(""), "");
}

} // namespace
} // namespace embedded::text
