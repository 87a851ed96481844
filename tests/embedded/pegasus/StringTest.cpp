#include "Throws.h"

#include <Pegasus/Common/String.h>

#include <sstream>

using namespace Pegasus;
using apitest::text;
using apitest::throws;
using apitest::throwsOutOfBounds;

namespace {

const String abc("abc");

TEST(String, IsMadeOfUtf16CodeUnits) {
    EXPECT_EQ(String().size(), 0U);
    EXPECT_EQ(String("\xc3\xa4").size(), 1U);
    EXPECT_EQ(Uint16(String("\xe2\x82\xac")[0]), 0x20AC);
    const String beyond("\xf0\x9f\x98\x80");
    ASSERT_EQ(beyond.size(), 2U);
    EXPECT_EQ(Uint16(beyond[0]), 0xD83D);
    EXPECT_EQ(Uint16(beyond[1]), 0xDE00);
}

TEST(String, GivesUtf8Back) {
    for (const char* utf8 : {"", "abc", "\xc3\xa4", "\xe2\x82\xac", "\xf0\x9f\x98\x80", "\x7f"})
        EXPECT_EQ(text(String(utf8)), utf8);
    EXPECT_EQ(static_cast<const char*>(CString()), nullptr);
    const CString kept = abc.getCString();
    CString assigned;
    assigned = CString(kept);
    EXPECT_STREQ(assigned, "abc");
}

TEST(String, RejectsNullPointers) {
    const std::string message = "null pointer";
    EXPECT_TRUE(throws<Exception>([] { String x(static_cast<const char*>(nullptr)); }, message));
    EXPECT_TRUE(throws<Exception>([] { String x(static_cast<const Char16*>(nullptr)); }, message));
    EXPECT_TRUE(throws<Exception>([] { String().append(nullptr, 1); }, message));
}

TEST(String, RejectsWhatIsNotUtf8AndSaysWhere) {
    const struct {
        const char* bytes;
        const char* where;
    } cases[] = {
        {"\xff", "0 is not valid UTF-8 encoding:  0xFF"},
        {"ab\xc3", "2 is not valid UTF-8 encoding: ab 0xC3"},
        {"ab\xc3zz", "2 is not valid UTF-8 encoding: ab 0xC3 0x7A 0x7A"},
        {"\x80", "0 is not valid UTF-8 encoding:  0x80"},
        {"\xe2\x82", "0 is not valid UTF-8 encoding:  0xE2 0x82"},
        {"\xc0\x80", "0 is not valid UTF-8 encoding:  0xC0 0x80"},
        {"a\xe0\x80\x80", "1 is not valid UTF-8 encoding: a 0xE0 0x80 0x80"},
        {"a\xf0\x80\x80\x80", "1 is not valid UTF-8 encoding: a 0xF0 0x80 0x80 0x80"},
        {"\xf4\x90\x80\x80", "0 is not valid UTF-8 encoding:  0xF4 0x90 0x80 0x80"},
        {"a\xf8\x88\x80\x80\x80", "1 is not valid UTF-8 encoding: a 0xF8 0x88 0x80 0x80 0x80"},
        {"\xc3\xa4 x\xff", "4 is not valid UTF-8 encoding: \xc3\xa4 x 0xFF"},
        {"0123456789012345678901234567890123456789\xff"
         "abcdefghijklmnop",
         "40 is not valid UTF-8 encoding: 0123456789012345678901234567890123456789 0xFF 0x61 0x62 "
         "0x63 0x64 0x65 0x66 0x67 0x68 0x69 0x6A"},
        {"-0123456789012345678901234567890123456789\xff",
         "41 is not valid UTF-8 encoding: 0123456789012345678901234567890123456789 0xFF"},
    };
    for (const auto& c : cases) {
        const std::string message = std::string("The byte sequence starting at index ") + c.where;
        EXPECT_TRUE(throws<Exception>([&] { String x(c.bytes); }, message));
    }
    EXPECT_TRUE(throws<Exception>(
        [] { String x("a\xc3\xa4", 2); },
        "The byte sequence starting at index 1 is not valid UTF-8 encoding: a 0xC3"));
}

TEST(String, TakesTheFirstOfALongerText) {
    const Char16 units[] = {Char16('x'), Char16('y'), Char16(0)};
    EXPECT_EQ(text(String(units)), "xy");
    EXPECT_EQ(text(String(units, 1)), "x");
    EXPECT_EQ(String("x\0y", 3).size(), 3U);
    EXPECT_EQ(text(String("abc", 2)), "ab");
    EXPECT_EQ(text(String(abc, 2)), "ab");
    EXPECT_TRUE(throwsOutOfBounds([] { String x(abc, 4); }));
}

TEST(String, LetsItsClosingZeroBeRead) {
    String changeable("abc");
    EXPECT_EQ(Uint16(abc[3]), 0);
    EXPECT_EQ(Uint16(changeable[3]), 0);
    EXPECT_EQ(Uint16(abc.getChar16Data()[3]), 0);
    EXPECT_EQ(Uint16(*String::EMPTY.getChar16Data()), 0);
    EXPECT_TRUE(throwsOutOfBounds([] { static_cast<void>(abc[4]); }));
    EXPECT_TRUE(throwsOutOfBounds([&] { changeable[4] = 'x'; }));
}

TEST(String, SubStringClips) {
    EXPECT_EQ(text(abc.subString(1)), "bc");
    EXPECT_EQ(text(abc.subString(1, 1)), "b");
    EXPECT_EQ(text(abc.subString(0, 99)), "abc");
    EXPECT_EQ(text(abc.subString(1, 0)), "");
    EXPECT_EQ(text(abc.subString(3)), "");
    EXPECT_EQ(text(abc.subString(9, 2)), "");
}

TEST(String, RemovesWhatIsThere) {
    const auto removed = [](Uint32 index, Uint32 size) {
        String x("abcdef");
        x.remove(index, size);
        return text(x);
    };
    EXPECT_EQ(removed(2, 2), "abef");
    EXPECT_EQ(removed(2, PEG_NOT_FOUND), "ab");
    EXPECT_EQ(removed(6, PEG_NOT_FOUND), "abcdef");
    EXPECT_EQ(removed(6, 0), "abcdef");
    EXPECT_TRUE(throwsOutOfBounds([&] { removed(5, 2); }));
    EXPECT_TRUE(throwsOutOfBounds([&] { removed(7, 0); }));
}

TEST(String, FindsTheFirstMatch) {
    EXPECT_EQ(abc.find(Char16('b')), 1U);
    EXPECT_EQ(abc.find(Char16('z')), PEG_NOT_FOUND);
    EXPECT_EQ(abc.find(Char16(0)), PEG_NOT_FOUND);
    EXPECT_EQ(abc.find(1, Char16('b')), 1U);
    EXPECT_EQ(abc.find(2, Char16('b')), PEG_NOT_FOUND);
    EXPECT_TRUE(throwsOutOfBounds([] { static_cast<void>(abc.find(4, Char16('b'))); }));
    EXPECT_EQ(abc.find(String("bc")), 1U);
    EXPECT_EQ(String("aaab").find(String("aab")), 1U);
    EXPECT_EQ(abc.find(String("abcd")), PEG_NOT_FOUND);
    EXPECT_EQ(abc.find(String()), PEG_NOT_FOUND);
    EXPECT_EQ(String("abab").reverseFind(Char16('a')), 2U);
    EXPECT_EQ(String("abab").reverseFind(Char16('z')), PEG_NOT_FOUND);
    EXPECT_EQ(String().reverseFind(Char16('z')), PEG_NOT_FOUND);
}

TEST(String, AppendsAlsoFromItself) {
    String x("abc");
    x.append(x).append(x.getChar16Data() + 1, 2).append(Char16('!'));
    EXPECT_EQ(text(x), "abcabcbc!");
    x.assign(x.getChar16Data() + 6, 2);
    EXPECT_EQ(text(x), "bc");
    EXPECT_EQ(text(abc + String("d")), "abcd");
    x.appendPrintf("-%d-%s", 5, "\xc3\xa4");
    EXPECT_EQ(text(x), "bc-5-\xc3\xa4");
}

TEST(String, AssignsEveryForm) {
    const Char16 units[] = {Char16('x'), Char16('y'), Char16(0)};
    String x("old");
    EXPECT_EQ(text(x.assign(units)), "xy");
    EXPECT_EQ(text(x.assign(units, 1)), "x");
    EXPECT_EQ(text(x.assign("new")), "new");
    EXPECT_EQ(text(x.assign("new", 2)), "ne");
    EXPECT_EQ(text(x.assign(abc)), "abc");
    EXPECT_EQ(text(x = String("=")), "=");
    x.reserveCapacity(100);
    EXPECT_EQ(text(x), "=");
    x.clear();
    EXPECT_EQ(x.size(), 0U);
}

TEST(String, LowersAsciiOnly) {
    String x("A\xc3\x84Z[");
    x.toLower();
    EXPECT_EQ(text(x), "a\xc3\x84z[");
}

TEST(String, ComparesByCodeUnit) {
    const struct {
        const char* x;
        const char* y;
        int sign;
        int signNoCase;
    } cases[] = {
        {"abc", "abc", 0, 0},
        {"abc", "abd", -1, -1},
        {"ab", "abc", -1, -1},
        {"ABC", "abc", -1, 0},
        {"B", "a", -1, 1},
        {"_", "A", 1, -1},
        {"\xc3\x84", "\xc3\xa4", -1, -1},
        {"", "", 0, 0},
        {"", "a", -1, -1},
    };
    const auto sign = [](int x) { return x < 0 ? -1 : x > 0; };
    for (const auto& c : cases) {
        const String x(c.x);
        const String y(c.y);
        SCOPED_TRACE(std::string(c.x) + " " + c.y);
        EXPECT_EQ(sign(String::compare(x, y)), c.sign);
        EXPECT_EQ(sign(String::compare(y, x)), -c.sign);
        EXPECT_EQ(sign(String::compareNoCase(x, y)), c.signNoCase);
        EXPECT_EQ(String::equal(x, y), c.sign == 0);
        EXPECT_EQ(String::equalNoCase(x, y), c.signNoCase == 0);
        EXPECT_EQ(x == y, c.sign == 0);
        EXPECT_EQ(x != y, c.sign != 0);
        EXPECT_EQ(x == c.y, c.sign == 0);
        EXPECT_EQ(c.x == y, c.sign == 0);
        EXPECT_EQ(x < y, c.sign < 0);
        EXPECT_EQ(x <= y, c.sign <= 0);
        EXPECT_EQ(x > y, c.sign > 0);
        EXPECT_EQ(x >= y, c.sign >= 0);
    }
    EXPECT_EQ(String::compare("abc", "abd", 2), 0);
    EXPECT_LT(String::compare("ab", "abc", 3), 0);
    EXPECT_GT(String::compare("abc", "ab", 3), 0);
}

TEST(String, SharesItsTextUntilOneIsChanged) {
    String x("abc");
    const String y(x);
    EXPECT_EQ(x.getChar16Data(), y.getChar16Data());
    x[0] = 'z';
    EXPECT_EQ(text(x), "zbc");
    EXPECT_EQ(text(y), "abc");
    String z(y);
    z.append(Char16('d'));
    EXPECT_EQ(text(y), "abc");
    z = y;
    z.remove(0, 1);
    EXPECT_EQ(text(y), "abc");
    z = y;
    z.clear();
    EXPECT_EQ(text(y), "abc");
}

TEST(String, IsWrittenForDiagnostics) {
    std::ostringstream stream;
    stream << String("a\xc3\xa4\xe2\x82\xac\n");
    EXPECT_EQ(stream.str(), "a\xe4\\x20AC\n");
}

TEST(Char16, IsAsGoodAsAUint16) {
    const Char16 a('a');
    EXPECT_EQ(Uint16(Char16()), 0);
    EXPECT_EQ(Uint16(a), 0x61);
    EXPECT_TRUE(a == Char16('a'));
    EXPECT_TRUE(a == 'a');
    EXPECT_TRUE('a' == a);
    EXPECT_FALSE(a != Char16('a'));
    EXPECT_TRUE(a != 'b');
    EXPECT_TRUE('b' != a);
    Char16 assigned;
    assigned = Uint16(0x20AC);
    EXPECT_EQ(Uint16(assigned), 0x20AC);
}

/// However the characters are kept: as they came, written through a reference, or beside others.
TEST(String, IsTheSameHoweverItCameAbout) {
    String written("abX");
    written[2] = 'c';
    String shortened("abc\xe2\x82\xac");
    shortened.remove(3);
    const Char16 units[] = {Char16('a'), Char16('b'), Char16('c')};
    String grown;
    for (const Char16& unit : units)
        grown.append(unit);
    for (const String& x : {abc, written, shortened, grown, String(units, 3)}) {
        for (const String& y : {abc, written, shortened, grown, String(units, 3)}) {
            EXPECT_EQ(text(x), "abc");
            EXPECT_TRUE(x == y);
            EXPECT_TRUE(x == "abc");
            EXPECT_FALSE(x == "abd");
            EXPECT_EQ(String::compare(x, y), 0);
            EXPECT_EQ(String::compare(x, y, 9), 0);
            EXPECT_TRUE(String::equalNoCase(x, String("ABC")));
            EXPECT_TRUE(String::equalNoCase(String("ABC"), y));
            EXPECT_EQ(x.find(y), 0U);
            EXPECT_EQ(x.find(y.subString(1)), 1U);
            EXPECT_EQ(text(x + y), "abcabc");
            EXPECT_EQ(text(x + String("\xe2\x82\xac") + y), "abc\xe2\x82\xac"
                                                            "abc");
            EXPECT_EQ(Uint16(x.getChar16Data()[3]), 0);
        }
    }
}

TEST(String, ShowsItsTextAsItIsNow) {
    String x("ABC");
    EXPECT_EQ(Uint16(x.getChar16Data()[2]), 'C');
    x.toLower();
    EXPECT_EQ(Uint16(x.getChar16Data()[2]), 'c');
    x.append(Char16('d'));
    EXPECT_EQ(Uint16(x.getChar16Data()[3]), 'd');
    x.remove(0, 1);
    EXPECT_EQ(Uint16(x.getChar16Data()[0]), 'b');
    x.append(x.getChar16Data(), 2);
    EXPECT_EQ(text(x), "bcdbc");
    x[0] = 0x20AC;
    EXPECT_EQ(Uint16(x.getChar16Data()[0]), 0x20AC);
    x.append(x.getChar16Data(), 1);
    EXPECT_EQ(text(x), "\xe2\x82\xac"
                       "cdbc\xe2\x82\xac");
}

TEST(String, StaysWhatItWasWhenItsCopyIsWrittenInto) {
    String x("abc");
    const String y(x);
    EXPECT_EQ(x.getChar16Data(), y.getChar16Data());
    Char16& third = x[2];
    third = 'z';
    EXPECT_EQ(text(y), "abc");
    EXPECT_EQ(text(x), "abz");
    EXPECT_EQ(Uint16(x.getChar16Data()[2]), 'z');
}

} // namespace
