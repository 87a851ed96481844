// Constants: what they are and what they say.
#include "Read.h"

using namespace embedded::mof;

namespace {

Literal literalOf(const std::string& written) {
    return readOne<InstanceDeclaration>("instance of A_B { P = " + written + "; };")
        .properties.at(0)
        .value.items.at(0);
}

struct Case {
    const char* written;
    Literal::Kind kind;
    const char* text;
};

void expectEach(const std::vector<Case>& cases) {
    for (const Case& c : cases) {
        SCOPED_TRACE(c.written);
        const Literal read = literalOf(c.written);
        EXPECT_EQ(read.kind, c.kind);
        EXPECT_EQ(read.text, c.text);
    }
}

} // namespace

TEST(MofLiterals, NumbersKeepTheirDigits) {
    using Kind = Literal::Kind;
    expectEach({{"0", Kind::Integer, "0"},
                {"12", Kind::Integer, "12"},
                {"-12", Kind::Integer, "-12"},
                {"+12", Kind::Integer, "+12"},
                {"18446744073709551615", Kind::Integer, "18446744073709551615"},
                {"0x1Ff", Kind::Integer, "0x1Ff"},
                {"-0X1F", Kind::Integer, "-0X1F"},
                {"017", Kind::Integer, "017"},
                {"101b", Kind::Integer, "101b"},
                {"-1B", Kind::Integer, "-1B"},
                {"1.5", Kind::Real, "1.5"},
                {".5", Kind::Real, ".5"},
                {"-1.5E+10", Kind::Real, "-1.5E+10"},
                {"1.5e3", Kind::Real, "1.5e3"},
                {"0.5e-3", Kind::Real, "0.5e-3"}});
}

TEST(MofLiterals, WordsAreBooleansOrNull) {
    EXPECT_EQ(literalOf("True").kind, Literal::Kind::Boolean);
    EXPECT_TRUE(literalOf("True").boolean);
    EXPECT_EQ(literalOf("FALSE").kind, Literal::Kind::Boolean);
    EXPECT_FALSE(literalOf("FALSE").boolean);
    EXPECT_EQ(literalOf("Null").kind, Literal::Kind::Null);
}

TEST(MofLiterals, StringsAreWithoutQuotesAndEscapes) {
    using Kind = Literal::Kind;
    expectEach({{R"("")", Kind::String, ""},
                {R"("plain")", Kind::String, "plain"},
                {R"("\b\t\n\f\r\"\'\\")", Kind::String, "\b\t\n\f\r\"'\\"},
                {R"("'")", Kind::String, "'"},
                {R"("\x41\X42")", Kind::String, "AB"},
                {R"("\x9")", Kind::String, "\t"},
                {R"("\xE9!")", Kind::String, "\xC3\xA9!"},
                {R"("\x00410")", Kind::String, "A0"},
                {R"("\x263A")", Kind::String, "\xE2\x98\xBA"},
                {R"("\xD7FF\xE000\xFFFD")", Kind::String, "\xED\x9F\xBF\xEE\x80\x80\xEF\xBF\xBD"},
                {R"("\xD83D\XDE00")", Kind::String, "\xF0\x9F\x98\x80"},
                {R"("\xD83D\xDE00")", Kind::String, "\xF0\x9F\x98\x80"},
                {"\"\xC3\xB6\xF0\x9F\x98\x80\"", Kind::String, "\xC3\xB6\xF0\x9F\x98\x80"},
                {"\"/* no */ // comment\"", Kind::String, "/* no */ // comment"},
                {"\"\t\"", Kind::String, "\t"}});
}

TEST(MofLiterals, AdjacentStringsAreOne) {
    expectEach({{R"("a" "b")", Literal::Kind::String, "ab"},
                {"\"a\"\r\n// x\r\n/* y */\"b\"\"c\"", Literal::Kind::String, "abc"}});
}

TEST(MofLiterals, CharactersAreOneCharacter) {
    using Kind = Literal::Kind;
    expectEach({{"'a'", Kind::Character, "a"},
                {"'\\''", Kind::Character, "'"},
                {"'\"'", Kind::Character, "\""},
                {"'\\x263A'", Kind::Character, "\xE2\x98\xBA"},
                {"'\xE2\x98\xBA'", Kind::Character, "\xE2\x98\xBA"}});
}

TEST(MofLiterals, ArraysHoldAnyNumberOfConstants) {
    const auto read = readOne<InstanceDeclaration>(
        "instance of A_B { P = {}; Q = {null}; R = {\"a\" \"b\", 1, true, 'c'}; };");
    EXPECT_TRUE(read.properties.at(0).value.isArray);
    EXPECT_TRUE(read.properties.at(0).value.items.empty());
    EXPECT_EQ(read.properties.at(1).value.items.at(0).kind, Literal::Kind::Null);
    const auto& items = read.properties.at(2).value.items;
    ASSERT_EQ(items.size(), 4U);
    EXPECT_EQ(items[0].text, "ab");
    EXPECT_EQ(items[3].kind, Literal::Kind::Character);
}
