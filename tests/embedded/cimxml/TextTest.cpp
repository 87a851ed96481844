// Characters on their way into a document.
#include "cimxml/Text.h"

#include <gtest/gtest.h>

#include <initializer_list>
#include <string_view>

namespace embedded::cimxml {
namespace {

std::string escaped(std::string_view text) {
    std::string out;
    appendEscaped(out, text);
    return out;
}

Pegasus::String stringOf(std::initializer_list<unsigned short> units) {
    Pegasus::String out;
    for (const unsigned short unit : units) {
        out.append(Pegasus::Char16(unit));
    }
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
    for (const auto& [text, expected] : rows) {
        EXPECT_EQ(escaped(text), expected);
    }
}

TEST(Utf8Text, IsWhatTheStringSpells) {
    EXPECT_EQ(toUtf8(stringOf({'a', 0x7F, 0x80, 0x7FF, 0x800, 0xFFFD})),
              "a\x7F\xC2\x80\xDF\xBF\xE0\xA0\x80\xEF\xBF\xBD");
    EXPECT_EQ(toUtf8(stringOf({0xD83D, 0xDE00})), "\xF0\x9F\x98\x80");
    EXPECT_EQ(toUtf8(stringOf({0xDBFF, 0xDFFF})), "\xF4\x8F\xBF\xBF");
}

TEST(Utf8Text, ReplacesWhatNoDocumentCanHold) {
    const std::string replacement = "\xEF\xBF\xBD";
    EXPECT_EQ(toUtf8(stringOf({'a', 0xD800, 'b'})), "a" + replacement + "b");
    EXPECT_EQ(toUtf8(stringOf({0xDC00, 0xD800})), replacement + replacement);
    EXPECT_EQ(toUtf8(stringOf({0xD800, 0xD83D, 0xDE00})), replacement + "\xF0\x9F\x98\x80");
    EXPECT_EQ(toUtf8(stringOf({0xFFFE, 0xFFFF})), replacement + replacement);
}

} // namespace
} // namespace embedded::cimxml
