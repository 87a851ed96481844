// Characters on their way into a document.
#include "embedding/XmlWriter.h"

#include "embedding/Text.h"

#include <gtest/gtest.h>

#include <initializer_list>
#include <string_view>

using Pegasus::embedding::appendEscaped;
using Pegasus::embedding::utf8;

namespace {

std::string escaped(std::string_view text) {
    std::string out;
    appendEscaped(out, text);
    return out;
}

Pegasus::String stringOf(std::initializer_list<unsigned short> units) {
    Pegasus::String out;
    for (const unsigned short unit : units)
        out.append(Pegasus::Char16(unit));
    return out;
}

TEST(EscapedText, HidesMarkup) {
    EXPECT_EQ(escaped("<a b='\"&'>]]>"), "&lt;a b=&apos;&quot;&amp;&apos;&gt;]]&gt;");
}

TEST(EscapedText, SpellsControlCharactersAsNumbers) {
    EXPECT_EQ(escaped(std::string_view("\0\x01\t\n\r\x1F\x7F", 7)),
              "&#0;&#1;&#9;&#10;&#13;&#31;&#127;");
}

TEST(EscapedText, LeavesOtherLanguagesAlone) {
    EXPECT_EQ(escaped("\xC2\x85\xC3\xA9\xE2\x82\xAC"), "\xC2\x85\xC3\xA9\xE2\x82\xAC");
}

TEST(EscapedText, KeepsBlanksFromBeingTakenForLayout) {
    const std::pair<const char*, const char*> rows[] = {
        {"a b", "a b"},
        {" ", "&#32;"},
        {"  ", "&#32;&#32;"},
        {"   ", "&#32; &#32;"},
        {"    ", "&#32; &#32;&#32;"},
        {"a  b", "a &#32;b"},
        {"a   b", "a &#32; b"},
        {"a    b", "a &#32; &#32;b"},
        {"\t x", "&#9; x"},
        {"x \t ", "x &#9;&#32;"},
        {" a", "&#32;a"},
        {"a ", "a&#32;"},
    };
    for (const auto& [text, expected] : rows)
        EXPECT_EQ(escaped(text), expected);
}

/// What UTF-8 says is the same as what a String says, with and without a character that is not
/// ASCII.
TEST(EscapedText, OfAStringIsThatOfItsUtf8) {
    for (const std::string text : {"<a b='\"&'>]]>", "  a  b ", "\t x \x7f\r\n", " ", ""}) {
        for (const std::string tail : {"", "\xC3\xA9", "\xC3\xA9 "}) {
            const std::string whole = text + tail;
            std::string out;
            appendEscaped(out, Pegasus::String(whole.c_str()));
            EXPECT_EQ(out, escaped(whole));
        }
    }
}

TEST(EscapedText, ReplacesWhatNoDocumentCanHold) {
    const auto escapedUnits = [](std::initializer_list<unsigned short> units) {
        std::string out;
        appendEscaped(out, stringOf(units));
        return out;
    };
    const std::string replacement = "\xEF\xBF\xBD";
    EXPECT_EQ(escapedUnits({'a', 0x7E, 0x80, 0x7FF, 0x800, 0xFFFD, 0xD83D, 0xDE00}),
              "a~\xC2\x80\xDF\xBF\xE0\xA0\x80\xEF\xBF\xBD\xF0\x9F\x98\x80");
    EXPECT_EQ(escapedUnits({'a', 0xD800, 'b'}), "a" + replacement + "b");
    EXPECT_EQ(escapedUnits({0xDC00, 0xD800}), replacement + replacement);
    EXPECT_EQ(escapedUnits({0xD800, 0xD83D, 0xDE00}), replacement + "\xF0\x9F\x98\x80");
    EXPECT_EQ(escapedUnits({0xFFFE, 0xFFFF}), replacement + replacement);
}

TEST(Utf8Text, IsWhatTheStringSpells) {
    EXPECT_EQ(utf8(stringOf({'a', 0x7F, 0x80, 0x7FF, 0x800, 0xFFFF})),
              "a\x7F\xC2\x80\xDF\xBF\xE0\xA0\x80\xEF\xBF\xBF");
    EXPECT_EQ(utf8(stringOf({0xD83D, 0xDE00})), "\xF0\x9F\x98\x80");
    EXPECT_EQ(utf8(stringOf({0xDC00})), "\xED\xB0\x80");
    EXPECT_EQ(utf8(Pegasus::String("AbC\xC3\x84")), "AbC\xC3\x84");
    EXPECT_EQ(Pegasus::embedding::folded(Pegasus::String("AbC\xC3\x84")), "abc\xC3\x84");
    EXPECT_EQ(Pegasus::embedding::fromUtf8(std::string_view()).size(), 0U);
}

TEST(FoldedHash, IsTheSameForTextsThatDifferInCaseHoweverTheyAreKept) {
    using Pegasus::embedding::foldedHash;
    Pegasus::String written("AbC");
    written[0] = Pegasus::Char16('a'); // kept as UTF-16 from here on
    EXPECT_EQ(foldedHash(written), foldedHash("aBc"));
    EXPECT_EQ(foldedHash("Ab\xC3\x84"), foldedHash("aB\xC3\x84"));
    EXPECT_NE(foldedHash("ab"), foldedHash("ac"));
    EXPECT_NE(foldedHash("\xC3\x84"), foldedHash("\xC3\xA4"));
}

} // namespace
