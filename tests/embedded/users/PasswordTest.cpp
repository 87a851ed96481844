// Hashes of passwords, and what is none.
#include "users/Password.h"

#include "limits/Limits.h"

#include <gtest/gtest.h>

#include <fstream>
#include <stdexcept>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace embedded::users {
namespace {

TEST(Password, HasAHashOfItsOwnEachTimeWhichItAloneMatches) {
    const std::string hash = hashed("geheim");
    EXPECT_EQ(hash.substr(0, 3), "$y$");
    EXPECT_NE(hash, hashed("geheim"));
    EXPECT_EQ(hashFault(hash), "");
    EXPECT_TRUE(matches("geheim", hash));
    for (const char* const other : {"Geheim", "gehei", "geheim ", "", "*"})
        EXPECT_FALSE(matches(other, hash)) << other;
}

TEST(Password, IsTakenAsAWhole) {
    const std::string longest(limits::password, 'x');
    const std::string hash = hashed(longest);
    EXPECT_TRUE(matches(longest, hash));
    EXPECT_FALSE(matches(longest.substr(1), hash));
    EXPECT_FALSE(matches(longest + "x", hash));
    EXPECT_FALSE(matches(std::string("geheim\0more", 11), hashed("geheim")));
    EXPECT_FALSE(matches("a\nb", hashed("?"))) << "whatever is hashed in its place";
}

TEST(Password, ThatCannotBeSentIsRefused) {
    for (const std::string& password :
         {std::string(), std::string(limits::password + 1, 'x'), std::string("a\0b", 3),
          std::string("a\nb"), std::string("a\x7F"), std::string("\xC2\x80"),
          std::string("\xFF")}) {
        EXPECT_NE(passwordFault(password), "");
        EXPECT_THROW(hashed(password), std::invalid_argument);
    }
    for (const char* const password : {":", " ", "p\xC3\xA4ss", "\\"})
        EXPECT_EQ(passwordFault(password), "") << password;
}

// Of "geheim", by other methods.
TEST(Password, MatchesAHashOfAnotherSafeMethod) {
    for (const char* const hash :
         {"$6$rounds=1000$saltsalt$vqVEzhF1x7x2p0VCWCzOM1GGIpJ62KqdREyqdHXfkzvqLwi."
          "vIVwX0AcTW9cDubiR4wA.zOlJTle4lioqe99c1",
          "$2b$04$abcdefghijklmnopqrstuuPWRtT5yx7FBi4dcf6ROhboeNunUrLQ.",
          "$gy$j7T$saltsalt$b9UFTOPvdlkDSqJJ..7Qbee1x/iObXXJLvGfguOf2i.",
          "$7$BU..../....ddx2HfDhFzwtSyoDr/4Wo/$3nb5KeYgI8bwryJYrgUX7IKGk6v/k6I4f0ZZG.UZK/9"}) {
        EXPECT_EQ(hashFault(hash), "");
        EXPECT_TRUE(matches("geheim", hash));
        EXPECT_FALSE(matches("geheim2", hash));
    }
}

TEST(Password, IsNotWrongForWantOfMemory) {
    const std::string hash = hashed("geheim");
    const pid_t child = ::fork();
    if (child == 0) {
        std::size_t pages = 0;
        std::ifstream("/proc/self/statm") >> pages;
        const rlimit none{pages * static_cast<std::size_t>(::getpagesize()) + limits::MiB,
                          RLIM_INFINITY};
        ::setrlimit(RLIMIT_AS, &none);
        try {
            matches("geheim", hash);
        } catch (const std::runtime_error&) {
            ::_exit(0);
        }
        ::_exit(1);
    }
    int status = -1;
    ASSERT_EQ(::waitpid(child, &status, 0), child);
    EXPECT_EQ(status, 0);
}

TEST(Hash, ThatNobodyCouldMatchOrThatIsWeakIsNone) {
    const std::string hash = hashed("geheim");
    for (const std::string& wrong :
         {std::string(), std::string("geheim"), std::string("*0"), std::string("!") + hash,
          hash.substr(0, hash.size() - 1), hash + "x", hash + ":", hash + "\r",
          std::string("$x$1$2"), std::string("$y$"), std::string("$1$salt$qJH7.N4xYta3aEG/dfqo/0"),
          std::string("abJnggxhB/yWI")})
        EXPECT_NE(hashFault(wrong), "") << wrong;
}

} // namespace
} // namespace embedded::users
