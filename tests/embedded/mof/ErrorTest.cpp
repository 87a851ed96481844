// Each refusal says where, what stands there and what was expected.
#include "Read.h"

using embedded::mof::MofError;
using embedded::mof::readText;

namespace {

struct Case {
    std::string text;
    const char* message;
};

void expectEach(const std::vector<Case>& cases) {
    for (const Case& c : cases)
        EXPECT_EQ(refusal(c.text), c.message) << c.text;
}

} // namespace

TEST(MofLocation, OfNoFileHasLineAndColumn) { EXPECT_EQ(embedded::mof::Location().text(), ":1:1"); }

TEST(MofErrors, SyntaxErrorsNameTheTokenAndWhatWasExpected) {
    expectEach({
        {"clas A_B {};",
         "t.mof:1:1: unexpected 'clas', expected end of file, '[', '#pragma', 'class', 'instance' "
         "or 'qualifier'"},
        {"class A_B {}", "t.mof:1:13: unexpected end of file, expected ';'"},
        {"class A_B {\r\n\tuint8 P\r\n\tuint8 Q;\r\n};",
         "t.mof:3:2: unexpected 'uint8', expected '[', '(', ';' or '='"},
        {"class A_B { uint8 ref; };", "t.mof:1:19: unexpected 'ref', expected a name"},
        {"class A_B { uint8 P; class A_C {}; };",
         "t.mof:1:22: unexpected 'class', expected '}', '[', a name or a type"},
        {"class A_B { string ref X; };", "t.mof:1:20: unexpected 'ref', expected a name"},
        {"class A_B { A_C X; };", "t.mof:1:17: unexpected 'X', expected 'ref'"},
        {"class A_B { A_C ref X[]; };", "t.mof:1:22: unexpected '[', expected ';' or '='"},
        {"class A_B { uint8 P = ; };",
         "t.mof:1:23: unexpected ';', expected a value, '{' or an alias"},
        {"class A_B { uint8 P = {1,}; };", "t.mof:1:26: unexpected '}', expected a value"},
        {"class A_B { uint8 M(uint8 A,); };",
         "t.mof:1:29: unexpected ')', expected '[', a name or a type"},
        {"class A_B : {};", "t.mof:1:13: unexpected '{', expected a name"},
        {"class string {};", "t.mof:1:7: unexpected 'string', expected a name"},
        {"[Key(] class A_B {};", "t.mof:1:6: unexpected ']', expected a value"},
        {"[] class A_B {};", "t.mof:1:2: unexpected ']', expected a name or 'ref'"},
        {"[Key : Sometimes] class A_B {};", "t.mof:1:8: unexpected 'Sometimes', expected a flavor"},
        {"[Key] Qualifier Q : string, Scope(any);",
         "t.mof:1:7: unexpected 'Qualifier', expected 'class' or 'instance'"},
        {"qualifier Q : string;", "t.mof:1:21: unexpected ';', expected '[', ',' or '='"},
        {"qualifier Q : A_B, Scope(any);", "t.mof:1:15: unexpected 'A_B', expected a type"},
        {"qualifier Q : string, Scope();", "t.mof:1:29: unexpected ')', expected a scope"},
        {"qualifier Q : string, Scope(any), Flavor(Any);",
         "t.mof:1:42: unexpected 'Any', expected a flavor"},
        {"instance A_B {};", "t.mof:1:10: unexpected 'A_B', expected 'of'"},
        {"instance of A_B { P 5; };", "t.mof:1:21: unexpected '5', expected '='"},
        {"instance of A_B { P = {$a}; };", "t.mof:1:24: unexpected '$a', expected a value or '}'"},
        {"instance of A_B { P = \"a\" 5; };",
         "t.mof:1:27: unexpected '5', expected ';' or a string"},
        {"instance of A_B { null = 5; };",
         "t.mof:1:19: unexpected 'null', expected a name, '}' or '['"},
        {"instance of A_B as a {};", "t.mof:1:20: unexpected 'a', expected an alias"},
        {"class A_B {};;",
         "t.mof:1:14: unexpected ';', expected end of file, '[', '#pragma', 'class', 'instance' or "
         "'qualifier'"},
        {"instance of A_B { P = 1 \"" + std::string(38, 'x') + "\xC3\xB6yz\"; };",
         "t.mof:1:25: unexpected \"xxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxx..., expected ';'"},
        {"instance of A_B { P = 1\n\"a\tb\"; };",
         "t.mof:2:1: unexpected \"a\\x09b\", expected ';'"},
    });
}

TEST(MofErrors, LiteralsThatAreNoneAreNamed) {
    struct Bad {
        const char* written;
        int column;
        std::string token;
    };
    const std::pair<const char*, std::vector<Bad>> expectations[] = {
        {"a number: 12, 0x1F, 017, 101b or 1.5e3",
         {{"08", 6, "'08'"},
          {"12ab", 6, "'12ab'"},
          {"102b", 6, "'102b'"},
          {"0x", 6, "'0x'"},
          {"1e5", 6, "'1e5'"},
          {"5.", 6, "'5.'"},
          {"1.5.2", 6, "'1.5.2'"},
          {"1.5e+", 6, "'1.5e+'"}}},
        {"a value, '{' or an alias",
         {{"+", 6, "'+'"},
          {"- 5", 6, "'-'"},
          {"$", 6, "'$'"},
          {"@", 6, "'@'"},
          {"\xF0\x9F\x98\x80", 6, "'\xF0\x9F\x98\x80'"}}},
        {"an escape: \\b \\t \\n \\f \\r \\\" \\' \\\\ or \\x with 1 to 4 hexadecimal digits",
         {{"\"ab\\q\"", 9, "'\\q'"},
          {"\"\\xg\"", 7, "'\\x'"},
          {"\"\\\xC3\xB6\"", 7, "'\\\xC3\xB6'"}}},
        {"a character other than U+0000", {{"\"\\x0\"", 7, "'\\x0'"}}},
        {"a low surrogate after this high one",
         {{"\"\\xD83D\"", 7, "'\\xD83D'"},
          {"\"\\xD83Dx\\xDE00\"", 7, "'\\xD83D'"},
          {"\"\\xDBFF\\n\"", 7, "'\\xDBFF'"},
          {"\"\\xD800\\xE000\"", 7, "'\\xD800\\xE000'"},
          {"\"\\xD800\\x41\"", 7, "'\\xD800\\x41'"}}},
        {"a high surrogate before this low one",
         {{"\"\\xDE00\"", 7, "'\\xDE00'"}, {"\"\\xDFFFx\"", 7, "'\\xDFFF'"}}},
        {"a closing '\"' on the same line",
         {{"\"\\xD800\\\"", 6, "\"\\xD800\\\";"},
          {"\"a\" \"b", 10, "\"b;"},
          {"\"a\r\nb\"", 6, "\"a"},
          {"\"a\\", 6, "\"a\\;"}}},
        {"a closing \"'\" on the same line", {{"'a", 6, "'a;"}}},
        {"one character up to U+FFFF between the quotes",
         {{"''", 6, "''"}, {"'ab'", 6, "'ab'"}, {"'\xF0\x9F\x98\x80'", 6, "'\xF0\x9F\x98\x80'"}}},
    };
    for (const auto& [expected, literals] : expectations)
        for (const Bad& bad : literals)
            EXPECT_EQ(refusal(std::string("instance of A_B {\n\tP = ") + bad.written + ";\n};"),
                      "t.mof:2:" + std::to_string(bad.column) + ": unexpected " + bad.token +
                          ", expected " + expected);
}

TEST(MofErrors, ArraySizesAreDecimalAndFitInto32Bits) {
    for (const std::string size : {"0", "0x2", "4294967296", "-1"})
        EXPECT_EQ(refusal("class A_B { uint8 P[" + size + "]; };"),
                  "t.mof:1:21: unexpected '" + size +
                      "', expected an array size from 1 to 4294967295 in decimal digits");
}

TEST(MofErrors, NamespacesHaveNamesWithSlashesBetweenThem) {
    for (const std::string name : {"", "/", "root//x", "root/", "root/1x", "a b"})
        EXPECT_EQ(refusal("#pragma namespace (\"" + name + "\")"),
                  "t.mof:1:20: unexpected \"" + name +
                      "\", expected a namespace name such as root/cimv2");
}

TEST(MofErrors, TextThatDoesNotEndIsNamedWhereItBegins) {
    expectEach({
        {"class A_B {};\n /* open *", "t.mof:2:2: unexpected '/*', expected a closing '*/'"},
        {"class A_B {};\n \"open",
         "t.mof:2:2: unexpected \"open, expected a closing '\"' on the same line"},
        {"class A_B {};\n '", "t.mof:2:2: unexpected ', expected a closing \"'\" on the same line"},
        {"class A_B {\n", "t.mof:2:1: unexpected end of file, expected '}', '[', a name or a type"},
        {"class A_B {}; // end\n#", "t.mof:2:1: unexpected '#', expected '#pragma'"},
    });
}

TEST(MofErrors, BytesThatAreNoTextAreNamed) {
    const std::string nul(1, '\0');
    expectEach({
        {nul + "class A_B {};", "t.mof:1:1: unexpected byte 0x00, expected UTF-8 text"},
        {"class A_B {\n  " + nul + "};", "t.mof:2:3: unexpected byte 0x00, expected UTF-8 text"},
        {"// caf\xE9\nclass A_B {};", "t.mof:1:7: unexpected byte 0xE9, expected UTF-8 text"},
        {"\"\xC3\"", "t.mof:1:2: unexpected byte 0xC3, expected UTF-8 text"},
        {"\xC3", "t.mof:1:1: unexpected byte 0xC3, expected UTF-8 text"},
        {"\xFF\xFE", "t.mof:1:1: unexpected byte 0xFF, expected UTF-8 text"},
        {"\xC0\xAF", "t.mof:1:1: unexpected byte 0xC0, expected UTF-8 text"},
        {"\xED\xA0\x80", "t.mof:1:1: unexpected byte 0xED, expected UTF-8 text"},
        {"\xF4\x90\x80\x80", "t.mof:1:1: unexpected byte 0xF4, expected UTF-8 text"},
        {"class A_\xEF\xBF\xAF\xEF\xBF\xB0 {};",
         "t.mof:1:12: unexpected '\xEF\xBF\xB0', expected '{', ':' or 'as'"},
        {"\rclass\r;", "t.mof:1:8: unexpected ';', expected a name"},
        {"class\x01", "t.mof:1:6: unexpected '\\x01', expected a name"},
    });
}

TEST(MofErrors, PragmasThatMakeNoSenseAreNamed) {
    expectEach({
        {"#include \"x.mof\"", "t.mof:1:1: unexpected '#include', expected '#pragma'"},
        {"# pragma include (\"x.mof\")", "t.mof:1:1: unexpected '#', expected '#pragma'"},
        {"#pragma", "t.mof:1:8: unexpected end of file, expected a name"},
        {"#pragma (\"x\")", "t.mof:1:9: unexpected '(', expected a name"},
        {"#pragma include \"x.mof\"", "t.mof:1:17: unexpected \"x.mof\", expected '('"},
        {"#pragma include (5)", "t.mof:1:18: unexpected '5', expected a string"},
        {"#pragma include (\"x.mof\"",
         "t.mof:1:25: unexpected end of file, expected ')' or a string"},
    });
}
