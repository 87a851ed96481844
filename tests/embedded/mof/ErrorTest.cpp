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

TEST(MofLocation, OfNoFileHasLineAndColumn) {
    EXPECT_EQ(embedded::mof::Location().text(), ":1:1");
}

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
        {"class A_B { uint8 P[0]; };",
         "t.mof:1:21: unexpected '0', expected an array size from 1 to 4294967295 in decimal "
         "digits"},
        {"class A_B { uint8 P[0x2]; };",
         "t.mof:1:21: unexpected '0x2', expected an array size from 1 to 4294967295 in decimal "
         "digits"},
        {"class A_B { uint8 P[4294967296]; };",
         "t.mof:1:21: unexpected '4294967296', expected an array size from 1 to 4294967295 in "
         "decimal digits"},
        {"class A_B { uint8 P[-1]; };",
         "t.mof:1:21: unexpected '-1', expected an array size from 1 to 4294967295 in decimal "
         "digits"},
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
    const auto value = [](const std::string& written) {
        return "instance of A_B {\n\tP = " + written + ";\n};";
    };
    expectEach({
        {value("08"),
         "t.mof:2:6: unexpected '08', expected a number: 12, 0x1F, 017, 101b or 1.5e3"},
        {value("12ab"),
         "t.mof:2:6: unexpected '12ab', expected a number: 12, 0x1F, 017, 101b or 1.5e3"},
        {value("102b"),
         "t.mof:2:6: unexpected '102b', expected a number: 12, 0x1F, 017, 101b or 1.5e3"},
        {value("0x"),
         "t.mof:2:6: unexpected '0x', expected a number: 12, 0x1F, 017, 101b or 1.5e3"},
        {value("1e5"),
         "t.mof:2:6: unexpected '1e5', expected a number: 12, 0x1F, 017, 101b or 1.5e3"},
        {value("5."),
         "t.mof:2:6: unexpected '5.', expected a number: 12, 0x1F, 017, 101b or 1.5e3"},
        {value("1.5.2"),
         "t.mof:2:6: unexpected '1.5.2', expected a number: 12, 0x1F, 017, 101b or 1.5e3"},
        {value("1.5e+"),
         "t.mof:2:6: unexpected '1.5e+', expected a number: 12, 0x1F, 017, 101b or 1.5e3"},
        {value("+"), "t.mof:2:6: unexpected '+', expected a value, '{' or an alias"},
        {value("- 5"), "t.mof:2:6: unexpected '-', expected a value, '{' or an alias"},
        {value("$"), "t.mof:2:6: unexpected '$', expected a value, '{' or an alias"},
        {value("@"), "t.mof:2:6: unexpected '@', expected a value, '{' or an alias"},
        {value("\xF0\x9F\x98\x80"),
         "t.mof:2:6: unexpected '\xF0\x9F\x98\x80', expected a value, '{' or an alias"},
        {value("\"ab\\q\""),
         "t.mof:2:9: unexpected '\\q', expected an escape: \\b \\t \\n \\f \\r \\\" \\' \\\\ or "
         "\\x with 1 to 4 hexadecimal digits"},
        {value("\"\\xg\""),
         "t.mof:2:7: unexpected '\\x', expected an escape: \\b \\t \\n \\f \\r \\\" \\' \\\\ or "
         "\\x with 1 to 4 hexadecimal digits"},
        {value("\"\\\xC3\xB6\""),
         "t.mof:2:7: unexpected '\\\xC3\xB6', expected an escape: \\b \\t \\n \\f \\r \\\" \\' "
         "\\\\ or \\x with 1 to 4 hexadecimal digits"},
        {value("\"\\x0\""), "t.mof:2:7: unexpected '\\x0', expected a character other than U+0000"},
        {value("\"\\xD83D\""),
         "t.mof:2:7: unexpected '\\xD83D', expected a low surrogate after this high one"},
        {value("\"\\xD83Dx\\xDE00\""),
         "t.mof:2:7: unexpected '\\xD83D', expected a low surrogate after this high one"},
        {value("\"\\xDE00\""),
         "t.mof:2:7: unexpected '\\xDE00', expected a high surrogate before this low one"},
        {value("\"\\xDFFFx\""),
         "t.mof:2:7: unexpected '\\xDFFF', expected a high surrogate before this low one"},
        {value("\"\\xDBFF\\n\""),
         "t.mof:2:7: unexpected '\\xDBFF', expected a low surrogate after this high one"},
        {value("\"\\xD800\\xE000\""),
         "t.mof:2:7: unexpected '\\xD800\\xE000', expected a low surrogate after this high one"},
        {value("\"\\xD800\\x41\""),
         "t.mof:2:7: unexpected '\\xD800\\x41', expected a low surrogate after this high one"},
        {value("\"\\xD800\\\""),
         "t.mof:2:6: unexpected \"\\xD800\\\";, expected a closing '\"' on the same line"},
        {value("\"a\" \"b"),
         "t.mof:2:10: unexpected \"b;, expected a closing '\"' on the same line"},
        {value("\"a\r\nb\""),
         "t.mof:2:6: unexpected \"a, expected a closing '\"' on the same line"},
        {value("\"a\\"), "t.mof:2:6: unexpected \"a\\;, expected a closing '\"' on the same line"},
        {value("'a"), "t.mof:2:6: unexpected 'a;, expected a closing \"'\" on the same line"},
        {value("''"),
         "t.mof:2:6: unexpected '', expected one character up to U+FFFF between the quotes"},
        {value("'ab'"),
         "t.mof:2:6: unexpected 'ab', expected one character up to U+FFFF between the quotes"},
        {value("'\xF0\x9F\x98\x80'"),
         "t.mof:2:6: unexpected '\xF0\x9F\x98\x80', expected one character up to U+FFFF between "
         "the quotes"},
    });
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
        {"#pragma namespace (\"\")",
         "t.mof:1:20: unexpected \"\", expected a namespace name such as root/cimv2"},
        {"#pragma namespace (\"/\")",
         "t.mof:1:20: unexpected \"/\", expected a namespace name such as root/cimv2"},
        {"#pragma namespace (\"root//x\")",
         "t.mof:1:20: unexpected \"root//x\", expected a namespace name such as root/cimv2"},
        {"#pragma namespace (\"root/\")",
         "t.mof:1:20: unexpected \"root/\", expected a namespace name such as root/cimv2"},
        {"#pragma namespace (\"root/1x\")",
         "t.mof:1:20: unexpected \"root/1x\", expected a namespace name such as root/cimv2"},
        {"#pragma namespace (\"a b\")",
         "t.mof:1:20: unexpected \"a b\", expected a namespace name such as root/cimv2"},
    });
}
