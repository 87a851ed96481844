// What an Authorization field says, and what says nothing.
#include "users/Credentials.h"

#include <gtest/gtest.h>

namespace embedded::users {
namespace {

/// "name|password", or "none".
std::string read(const std::string& field) {
    const auto credentials = basicCredentials(field);
    return credentials ? credentials->name + "|" + credentials->password : "none";
}

TEST(Credentials, AreNameAndPasswordUpToTheFirstColon) {
    EXPECT_EQ(read("Basic QWxhZGRpbjpvcGVuIHNlc2FtZQ=="), "Aladdin|open sesame");
    EXPECT_EQ(read("basic  YTpiOmM= "), "a|b:c");
    EXPECT_EQ(read("BASIC Og=="), "|");
    EXPECT_EQ(read("Basic YTo="), "a|");
    EXPECT_EQ(read("Basic dGVzdDoxMjPCow=="), "test|123\xC2\xA3");
}

TEST(Credentials, AreNoneInAnotherSchemeOrForm) {
    for (const char* const field :
         {"", "Basic", "Basic ", "BasicYTpi", "Digest YTpi", "Bearer YTpi", "Basic YTpi=",
          "Basic YTpi====", "Basic Y=pi", "Basic YTp", "Basic YT pi", "Basic YTpi, Basic YTpi",
          "Basic YTp_", "Basic YWI=", "Basic YQA6Yg==", "Basic YTpiCg==", "Basic =", "Basic ===="})
        EXPECT_EQ(read(field), "none") << field;
    EXPECT_EQ(read("Basic " + std::string(4000, 'Y')), "none");
}

} // namespace
} // namespace embedded::users
