// Header fields, found and taken apart.
#include "http/Message.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace embedded::http {
namespace {

TEST(Parametrized, ValueAndParametersComeTrimmedAndUnquoted) {
    const Parametrized type = parametrized(" text/xml ;charset = \"utf-8\"; x=y;z");
    EXPECT_EQ(type.value, "text/xml");
    ASSERT_EQ(type.parameters.size(), 2U);
    EXPECT_EQ(*findField(type.parameters, "CharSet"), "utf-8");
    EXPECT_EQ(*findField(type.parameters, "x"), "y");
    EXPECT_EQ(parametrized("\"http://a/b\"; ns=40").value, "http://a/b");
    EXPECT_EQ(parametrized("\"half").value, "\"half");
}

TEST(PercentCoding, EveryByteSurvivesARoundTrip) {
    std::string bytes;
    for (int byte = 0; byte < 256; ++byte)
        bytes += static_cast<char>(byte);
    EXPECT_EQ(percentDecoded(percentEncoded(bytes)), bytes);
    EXPECT_EQ(percentEncoded("aZ09-._~"), "aZ09-._~");
    EXPECT_EQ(percentDecoded("%c3%A4+"), "\xc3\xa4+");
}

TEST(PercentCoding, ABrokenEscapeIsRefused) {
    for (const std::string text : {"%", "%4", "%4g", "%g4", "a%%41"})
        EXPECT_THROW(percentDecoded(text), std::invalid_argument) << text;
}

} // namespace
} // namespace embedded::http
