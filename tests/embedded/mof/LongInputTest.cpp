// Long lists cost neither stack nor more than their length in time.
#include "Read.h"

using namespace embedded::mof;

namespace {

constexpr int many = 50000;

std::string repeated(const std::string& part) {
    std::string out;
    out.reserve(part.size() * many);
    for (int i = 0; i < many; ++i)
        out += part;
    return out;
}

} // namespace

TEST(MofLongInput, ManyDeclarations) {
    EXPECT_EQ(readText(repeated("class A_B {};\n"), "t.mof").size(), std::size_t{many});
}

TEST(MofLongInput, ManyMembersValuesAndStrings) {
    const auto type = readOne<ClassDeclaration>("class A_B {" + repeated("uint8 P;") + "};");
    EXPECT_EQ(type.properties.size(), std::size_t{many});
    const auto instance = readOne<InstanceDeclaration>("instance of A_B { P = {1" + repeated(",1") +
                                                       "}; Q = " + repeated("\"ab\" ") + "; };");
    EXPECT_EQ(instance.properties.at(0).value.items.size(), std::size_t{many} + 1);
    EXPECT_EQ(instance.properties.at(1).value.items.at(0).text.size(), 2 * std::size_t{many});
}

TEST(MofLongInput, ManyQualifiersAndParameters) {
    const auto type = readOne<ClassDeclaration>(
        "[Q" + repeated(",Q") + "] class A_B { uint8 M(uint8 A" + repeated(",uint8 A") + "); };");
    EXPECT_EQ(type.qualifiers.size(), std::size_t{many} + 1);
    EXPECT_EQ(type.methods.at(0).parameters.size(), std::size_t{many} + 1);
}

TEST(MofLongInput, LongTokens) {
    EXPECT_EQ(readOne<ClassDeclaration>("class A_" + repeated("b") + " {};").name.size(),
              std::size_t{many} + 2);
    EXPECT_TRUE(readText("/*" + repeated("* / ") + "*/ //" + repeated("x"), "t.mof").empty());
    EXPECT_NE(refusal("/*" + repeated("* / ")), "");
    EXPECT_NE(refusal("\"" + repeated("\\\"")), "");
}

TEST(MofLongInput, DeepBracketsAreRefusedAtTheSecond) {
    EXPECT_EQ(refusal("instance of A_B { P = " + repeated("{")),
              "t.mof:1:24: unexpected '{', expected a value or '}'");
    EXPECT_EQ(refusal(repeated("[")), "t.mof:1:2: unexpected '[', expected a name or 'ref'");
}
