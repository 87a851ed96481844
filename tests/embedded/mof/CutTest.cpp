// A text that ends too early is refused with a place in it, or is whole as far as it goes.
#include "Read.h"
#include "Sample.h"

using namespace embedded::mof;

namespace {

// The offset of a place; past the end when there is no such line or column.
std::size_t offsetOf(const std::string& text, const Location& where) {
    std::size_t begin = 0;
    for (unsigned line = 1; line < where.line; ++line) {
        const std::size_t end = text.find('\n', begin);
        if (end == std::string::npos)
            return text.size() + 1;
        begin = end + 1;
    }
    return begin + where.column - 1;
}

void expectReadOrRefused(const std::string& text) {
    try {
        readText(text, "t.mof");
    } catch (const MofError& error) {
        EXPECT_LE(offsetOf(text, error.where()), text.size()) << error.what();
        EXPECT_NE(std::string(error.what()).find("expected"), std::string::npos) << error.what();
    }
}

} // namespace

TEST(MofCutOff, TheWholeSampleIsRead) { EXPECT_EQ(readText(sampleText, "t.mof").size(), 10U); }

TEST(MofCutOff, AfterAnyByteIsReadOrRefusedWithAPlaceInTheText) {
    for (std::size_t length = 0; length <= sampleText.size(); ++length)
        expectReadOrRefused(sampleText.substr(0, length));
}

// Within a declaration there is nothing that may be left out: only cuts between declarations
// are read.
TEST(MofCutOff, NoCutDeclarationIsRead) {
    const std::string whole = "class A_B { uint8 P[2] = {1, 2}; string M(A_B ref X); };";
    const std::string instance = "[Q] instance of A_B as $i { P = {\"a\" \"b\"}; R = $x; };";
    const std::string qualifier = "Qualifier Q : string[] = {}, Scope(any), Flavor(ToSubclass);";
    for (const std::string& text : {whole, instance, qualifier}) {
        EXPECT_EQ(readText(text, "t.mof").size(), 1U);
        for (std::size_t length = 1; length < text.size(); ++length)
            EXPECT_NE(refusal(text.substr(0, length)), "") << text.substr(0, length);
    }
}

TEST(MofCutOff, ALostOrStrayByteAnywhereIsReadOrRefused) {
    for (std::size_t at = 0; at < sampleText.size(); ++at) {
        std::string lost = sampleText;
        lost.erase(at, 1);
        expectReadOrRefused(lost);
        for (const char stray : {'\0', '"', '\'', '\\', '{', ';', '*', '\n'}) {
            std::string more = sampleText;
            more.insert(at, 1, stray);
            expectReadOrRefused(more);
        }
    }
}
